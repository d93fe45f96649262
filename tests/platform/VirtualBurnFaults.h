// The faults that a burn into a virtual recorder meets, be it of data or of sound: a test of either
// runs these as well. Main thread.
#pragma once

#include "Recorder.h"
#include "VirtualDrive.h"

#include <QObject>

class VirtualBurnFaults : public QObject
{
    Q_OBJECT

protected:
    // What is burned, and verified; and the files of the medium that it becomes.
    [[nodiscard]] virtual BurnRequest request() const = 0;
    [[nodiscard]] virtual QStringList contentFiles() const = 0;

    [[nodiscard]] VirtualRecorder &recorder() const { return m_drive->recorder(); }
    [[nodiscard]] DRDevice device() const { return m_drive->device(); }

    void verifyUntouched() const; // blank as before
    void verifyUnusable() const;  // as an aborted disc is: something is on it, nothing is readable
    void verifyRefused(const BurnRequest &request, const QString &reason) const;

    // Changes a byte of a file of the medium.
    void changeByte(const QString &name, qint64 position) const;

    // Burns with the medium on a disk of that size, which is full at a state, if one is given.
    void burnOnFullDisk(const char *size, const QString &filledAt,
                        const BurnRequest &request) const;

    std::unique_ptr<VirtualDrive> m_drive;

private Q_SLOTS:
    void cleanup() { m_drive.reset(); }
    void cancelledBeforeWriting();
    void cancelled_data();
    void cancelled();
    void mediumPulledOut_data();
    void mediumPulledOut();
    void exchangedMediumIsNotTouched_data() { mediumPulledOut_data(); }
    void exchangedMediumIsNotTouched();
};
