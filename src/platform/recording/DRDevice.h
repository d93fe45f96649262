// A recorder as pages see it: a cheap handle that may be copied, compared and kept. It stays
// usable after the recorder is gone, then reporting that it is not valid. Any thread.
#pragma once

#include "DRMSF.h"
#include "Result.h"

#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <optional>

class Recorder;

class DRDevice
{
public:
    // No device; everything reads as absent.
    DRDevice() = default;
    explicit DRDevice(std::shared_ptr<Recorder> recorder)
        : m_recorder(std::move(recorder))
    {
    }

    // All recorders attached now, in the order in which they came.
    [[nodiscard]] static QList<DRDevice> devices();

    [[nodiscard]] bool isNull() const { return !m_recorder; }
    [[nodiscard]] bool isValid() const;

    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString ioRegistryEntryPath() const;
    [[nodiscard]] bool writesCD() const;
    [[nodiscard]] bool writesDVD() const;

    // The whole maps, with the keys of DRKeys.h: what never changes, and the state of now.
    [[nodiscard]] QVariantMap info() const;
    [[nodiscard]] QVariantMap status() const;

    [[nodiscard]] bool trayIsOpen() const;
    [[nodiscard]] bool mediaIsPresent() const;
    [[nodiscard]] bool mediaIsTransitioning() const;
    [[nodiscard]] bool mediaIsBusy() const;
    [[nodiscard]] bool mediaIsBlank() const;
    [[nodiscard]] bool mediaIsAppendable() const;
    [[nodiscard]] bool mediaIsErasable() const;
    [[nodiscard]] bool mediaIsOverwritable() const;
    [[nodiscard]] bool mediaIsReserved() const;
    [[nodiscard]] QString mediaType() const;
    [[nodiscard]] QString bsdName() const;

    // Null without a medium.
    [[nodiscard]] std::optional<DRMSF> mediaSpaceFree() const;
    [[nodiscard]] std::optional<DRMSF> mediaSpaceUsed() const;
    [[nodiscard]] std::optional<DRMSF> mediaSpaceOverwritable() const;

    // False when another program holds the recorder. Each needs its release.
    bool acquireExclusiveAccess() const;
    void releaseExclusiveAccess() const;
    bool acquireMediaReservation() const;
    void releaseMediaReservation() const;

    // False, with the reason in the log, while a job runs and where there is nothing to eject.
    bool ejectMedia() const;

    // Types of blank media that can be inserted by command; empty for a real tray.
    [[nodiscard]] QStringList insertableMedia() const;
    [[nodiscard]] Result<> insertBlankMedium(const QString &type) const;

    [[nodiscard]] const std::shared_ptr<Recorder> &recorder() const { return m_recorder; }

    bool operator==(const DRDevice &) const = default;

private:
    [[nodiscard]] QVariantMap mediaInfo() const;
    [[nodiscard]] std::optional<DRMSF> space(QLatin1StringView key) const;

    std::shared_ptr<Recorder> m_recorder;
};

Q_DECLARE_METATYPE(DRDevice)
