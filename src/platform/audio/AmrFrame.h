// The frames of AMR speech, told by their first byte. Any thread.
#pragma once

#include <QtGlobal>

namespace AmrFrame {

constexpr int perSecond = 50;

// Bytes, the first one included; 0 for a byte that begins no frame.
[[nodiscard]] int size(uchar first, bool isWide);

// Whether it stands for a pause, or for nothing that arrived, instead of speech.
[[nodiscard]] bool isPause(uchar first, bool isWide);

}
