// Owners of FFmpeg's objects, and what all users of FFmpeg here share. Any thread.
#pragma once

#include <QString>

#include <memory>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;
struct SwrContext;

struct AvDelete
{
    void operator()(AVCodecContext *context) const;
    void operator()(AVFormatContext *context) const;
    void operator()(AVFrame *frame) const;
    void operator()(AVIOContext *context) const;
    void operator()(AVPacket *packet) const;
    void operator()(SwrContext *context) const;
};

template <typename T>
using AvHandle = std::unique_ptr<T, AvDelete>;

namespace Av {

// Sends what FFmpeg has to say to the category maplorn.audio instead of the standard error.
void captureLog();

// The limits within which a file's own words about itself are believed.
constexpr int lowestRate = 1000; // samples a second
constexpr int highestRate = 768'000;
constexpr int mostChannels = 64;
constexpr qint64 longest = 1000LL * 3600; // seconds

}
