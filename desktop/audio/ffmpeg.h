// FFmpeg, the one library that reads every kind of sound file that the phone plays: its functions,
// and the owners of what they make. It is loaded with the first sound; shared_library.h says why.
// For the sources of this folder that decode: no other header includes this one.
#pragma once

#include "desktop/result/result.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libavutil/log.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include <memory>

namespace velmoranth::desktop {

// The one list, for the members and for their look-up.
// clang-format off: many on a line.
#define VELMORANTH_FFMPEG_FUNCTIONS(FUNCTION) \
    FUNCTION(av_channel_layout_copy) FUNCTION(av_channel_layout_compare) \
    FUNCTION(av_channel_layout_default) FUNCTION(av_channel_layout_uninit) \
    FUNCTION(av_find_input_format) FUNCTION(av_frame_alloc) FUNCTION(av_frame_free) \
    FUNCTION(av_free) FUNCTION(av_freep) \
    FUNCTION(av_get_bits_per_sample) FUNCTION(av_get_bytes_per_sample) \
    FUNCTION(av_log_set_callback) FUNCTION(av_malloc) FUNCTION(av_max_alloc) \
    FUNCTION(av_opt_set_double) FUNCTION(av_packet_alloc) FUNCTION(av_packet_free) FUNCTION(av_packet_unref) \
    FUNCTION(av_read_frame) FUNCTION(av_sample_fmt_is_planar) FUNCTION(avcodec_alloc_context3) \
    FUNCTION(avcodec_find_decoder_by_name) FUNCTION(avcodec_free_context) \
    FUNCTION(avcodec_get_name) FUNCTION(avcodec_open2) FUNCTION(avcodec_parameters_to_context) \
    FUNCTION(avcodec_receive_frame) FUNCTION(avcodec_send_packet) \
    FUNCTION(avformat_alloc_context) FUNCTION(avformat_close_input) \
    FUNCTION(avformat_open_input) FUNCTION(avio_alloc_context) FUNCTION(avio_context_free) \
    FUNCTION(swr_alloc_set_opts2) FUNCTION(swr_convert) FUNCTION(swr_free) \
    FUNCTION(swr_get_out_samples) FUNCTION(swr_init) FUNCTION(swr_set_matrix)
// clang-format on

struct Ffmpeg {
// NOLINTNEXTLINE(bugprone-macro-parentheses): a declaration.
#define VELMORANTH_MEMBER(name) decltype(&::name) name = nullptr;
    // NOLINTNEXTLINE(readability-identifier-naming): the library's own names.
    VELMORANTH_FFMPEG_FUNCTIONS(VELMORANTH_MEMBER)
#undef VELMORANTH_MEMBER
};

// Loads the library the first time. It says nothing on its own and allocates no more than is right
// for a sound; both hold for the whole process.
[[nodiscard]] const Result<Ffmpeg>& loadedFfmpeg();

// Only where loadedFfmpeg() has succeeded.
[[nodiscard]] inline const Ffmpeg& ffmpeg() {
    return *loadedFfmpeg();
}

struct FreeFfmpeg {
    void operator()(AVFormatContext* context) const { ffmpeg().avformat_close_input(&context); }

    void operator()(AVCodecContext* context) const { ffmpeg().avcodec_free_context(&context); }

    void operator()(AVFrame* frame) const { ffmpeg().av_frame_free(&frame); }

    void operator()(AVPacket* packet) const { ffmpeg().av_packet_free(&packet); }

    void operator()(SwrContext* context) const { ffmpeg().swr_free(&context); }

    void operator()(AVIOContext* context) const {
        ffmpeg().av_freep(static_cast<void*>(&context->buffer));
        ffmpeg().avio_context_free(&context);
    }
};

template <class T>
using Owned = std::unique_ptr<T, FreeFfmpeg>;

}  // namespace velmoranth::desktop
