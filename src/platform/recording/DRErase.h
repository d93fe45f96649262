// The erasing of the medium in one recorder: made, set up, started once. A handle that may be
// copied and compared; main thread.
#pragma once

#include "DRJob.h"
#include "Recorder.h"

inline constexpr EraseType DREraseTypeQuick = EraseType::Quick;
inline constexpr EraseType DREraseTypeComplete = EraseType::Complete;

class DRErase
{
public:
    // No erase.
    DRErase() = default;

    [[nodiscard]] static DRErase initWithDevice(const DRDevice &device);

    [[nodiscard]] bool isNull() const { return !m_data; }
    [[nodiscard]] DRDevice device() const;

    void setEraseType(EraseType type);

    // Starts in the background and returns. Progress and end come as
    // DREraseStatusChangedNotification about this erase.
    void start();

    // Ends as failed as soon as the recorder can; the medium is then not usable until erased.
    void abort();

    // Why it failed, for a person; empty otherwise.
    [[nodiscard]] QString errorText() const;

    bool operator==(const DRErase &) const = default;

private:
    struct Data;

    std::shared_ptr<Data> m_data;
};

Q_DECLARE_METATYPE(DRErase)
