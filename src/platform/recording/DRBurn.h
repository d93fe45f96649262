// A burn: made for one recorder, set up, started once. A handle that may be copied and compared;
// main thread.
#pragma once

#include "DRJob.h"
#include "DRTrack.h"

class DRBurn
{
public:
    // No burn.
    DRBurn() = default;

    [[nodiscard]] static DRBurn initWithDevice(const DRDevice &device);

    // The content of a disc that is to be the image file as it is.
    [[nodiscard]] static QList<DRTrack> layoutForImageFile(const QString &path);

    [[nodiscard]] bool isNull() const { return !m_data; }
    [[nodiscard]] DRDevice device() const;

    // KB (1,000 bytes) per second; without it the recorder chooses.
    void setRequestedBurnSpeed(float speed);
    void setAppendable(bool appendable);
    void setVerifyDisc(bool verify);

    // What else the burn is told, by key: DRCDTextKey holds a DRCDTextBlock, or a list of them in
    // the order of the languages. Other keys are kept and mean nothing.
    [[nodiscard]] QVariantMap properties() const;
    void setProperties(const QVariantMap &properties);

    // Starts the burn in the background and returns. Its progress and its end come as
    // DRBurnStatusChangedNotification about this burn.
    void writeLayout(const QList<DRTrack> &tracks);
    void writeLayout(const DRTrack &track) { writeLayout(QList<DRTrack>{track}); }

    // The burn ends with DRStatusStateFailed as soon as it can.
    void abort();

    // Why it failed, for a person; empty otherwise.
    [[nodiscard]] QString errorText() const;

    bool operator==(const DRBurn &) const = default;

private:
    struct Data;

    std::shared_ptr<Data> m_data;
};

Q_DECLARE_METATYPE(DRBurn)
