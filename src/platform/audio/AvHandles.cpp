#include "AvHandles.h"

#include <QLoggingCategory>

#include <array>
#include <mutex>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

namespace {

Q_LOGGING_CATEGORY(audioLog, "maplorn.audio", QtInfoMsg)

void writeLog(void *context, int level, const char *format, va_list arguments)
{
    if (level > AV_LOG_WARNING || !audioLog().isDebugEnabled())
        return;
    std::array<char, 1024> line{};
    int printPrefix = 1;
    av_log_format_line2(context, level, format, arguments, line.data(),
                        static_cast<int>(line.size()), &printPrefix);
    qCDebug(audioLog).noquote() << QString::fromLocal8Bit(line.data()).trimmed();
}

}

void AvDelete::operator()(AVCodecContext *context) const
{
    avcodec_free_context(&context);
}

void AvDelete::operator()(AVFormatContext *context) const
{
    avformat_close_input(&context);
}

void AvDelete::operator()(AVFrame *frame) const
{
    av_frame_free(&frame);
}

void AvDelete::operator()(AVIOContext *context) const
{
    av_freep(static_cast<void *>(&context->buffer));
    avio_context_free(&context);
}

void AvDelete::operator()(AVPacket *packet) const
{
    av_packet_free(&packet);
}

void AvDelete::operator()(SwrContext *context) const
{
    swr_free(&context);
}

void Av::captureLog()
{
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_callback(writeLog); });
}
