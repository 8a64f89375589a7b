// The encoders and muxers are FFmpeg's, as the decoders under test are: what a file sounds like is
// compared with the samples that it was made from.
#include "tests/support/sounds/sounds.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <numbers>
#include <stdexcept>

namespace velmoranth::tests {

namespace {

void check(int result, const char* step) {
    if (result < 0) {
        throw std::runtime_error(std::string("a sound file cannot be made: ") + step);
    }
}

struct Free {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }

    void operator()(AVFormatContext* context) const { avformat_free_context(context); }

    void operator()(AVFrame* frame) const { av_frame_free(&frame); }

    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

// A file in memory, as the muxer writes it.
struct Output {
    std::string bytes;
    std::size_t position = 0;
};

// The bytes are const from FFmpeg 7 on.
template <class Byte>
int writeBytes(void* opaque, Byte* bytes, int count) {
    Output& output = *static_cast<Output*>(opaque);
    const auto size = static_cast<std::size_t>(count);
    output.bytes.resize(std::max(output.bytes.size(), output.position + size));
    std::copy_n(bytes, size, output.bytes.begin() + static_cast<std::ptrdiff_t>(output.position));
    output.position += size;
    return count;
}

std::int64_t seek(void* opaque, std::int64_t offset, int whence) {
    Output& output = *static_cast<Output*>(opaque);
    if (whence == AVSEEK_SIZE) {
        return static_cast<std::int64_t>(output.bytes.size());
    }
    check(whence == SEEK_SET ? 0 : -1, "seek");
    output.position = static_cast<std::size_t>(offset);
    return offset;
}

// One sample as the encoder takes it.
void store(std::uint8_t* at, AVSampleFormat format, float sample) {
    const auto integer = [&](double scale) { return std::llround(sample * scale); };
    switch (format) {
        case AV_SAMPLE_FMT_U8:
        case AV_SAMPLE_FMT_U8P:
            *at = static_cast<std::uint8_t>(integer(127) + 128);
            return;
        case AV_SAMPLE_FMT_S16:
        case AV_SAMPLE_FMT_S16P: {
            const auto value = static_cast<std::int16_t>(
                std::clamp<std::int64_t>(integer(32768), INT16_MIN, INT16_MAX));
            std::memcpy(at, &value, sizeof value);
            return;
        }
        case AV_SAMPLE_FMT_S32:
        case AV_SAMPLE_FMT_S32P: {
            const auto value = static_cast<std::int32_t>(
                std::clamp<std::int64_t>(integer(2147483648.0), INT32_MIN, INT32_MAX));
            std::memcpy(at, &value, sizeof value);
            return;
        }
        case AV_SAMPLE_FMT_FLT:
        case AV_SAMPLE_FMT_FLTP:
            std::memcpy(at, &sample, sizeof sample);
            return;
        case AV_SAMPLE_FMT_DBL:
        case AV_SAMPLE_FMT_DBLP: {
            const double value = sample;
            std::memcpy(at, &value, sizeof value);
            return;
        }
        default:
            check(-1, "sample format");
    }
}

void fill(AVFrame& frame, std::span<const float> samples) {
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool planar = av_sample_fmt_is_planar(format) != 0;
    const auto bytes = static_cast<std::size_t>(av_get_bytes_per_sample(format));
    const auto channels = static_cast<std::size_t>(frame.ch_layout.nb_channels);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        std::uint8_t* const at = planar ? frame.extended_data[i % channels] + i / channels * bytes
                                        : frame.extended_data[0] + i * bytes;
        store(at, format, samples[i]);
    }
}

// The first one that the encoder takes.
AVSampleFormat sampleFormatOf(const AVCodec* codec) {
#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(61, 13, 100)
    const void* formats = nullptr;
    check(avcodec_get_supported_config(nullptr, codec, AV_CODEC_CONFIG_SAMPLE_FORMAT, 0, &formats,
                                       nullptr),
          "sample formats");
    return *static_cast<const AVSampleFormat*>(formats);
#else
    return codec->sample_fmts[0];
#endif
}

// What the encoder makes of the samples, a packet at a time.
struct Encoder {
    std::unique_ptr<AVCodecContext, Free> context;

    Encoder(const std::string& name, int sampleRate, int channels, bool globalHeader) {
        const AVCodec* const codec = avcodec_find_encoder_by_name(name.c_str());
        check(codec == nullptr ? -1 : 0, name.c_str());
        av_log_set_level(AV_LOG_ERROR);  // no chat of the encoders
        context.reset(avcodec_alloc_context3(codec));
        context->sample_rate = sampleRate;
        context->sample_fmt = sampleFormatOf(codec);
        av_channel_layout_default(&context->ch_layout, channels);
        context->bit_rate = std::int64_t{64000} * channels;
        context->flags |= globalHeader ? AV_CODEC_FLAG_GLOBAL_HEADER : 0;
        check(avcodec_open2(context.get(), codec, nullptr), "codec");
    }

    void encode(const std::vector<float>& samples, const std::function<void(AVPacket&)>& take) {
        constexpr int kFrames = 1024;  // of one AVFrame, where the encoder does not say
        const int channels = context->ch_layout.nb_channels;
        const bool isFixed = context->frame_size > 0;
        const auto step =
            static_cast<std::size_t>((isFixed ? context->frame_size : kFrames) * channels);
        for (std::size_t start = 0; start < samples.size(); start += step) {
            const auto part =
                std::span(samples).subspan(start, std::min(step, samples.size() - start));
            const std::unique_ptr<AVFrame, Free> frame(av_frame_alloc());
            // A whole one for codecs of fixed frames: the rest is silent.
            frame->nb_samples = static_cast<int>(isFixed ? step : part.size()) / channels;
            frame->format = context->sample_fmt;
            frame->sample_rate = context->sample_rate;
            frame->pts = static_cast<std::int64_t>(start) / channels;
            check(av_channel_layout_copy(&frame->ch_layout, &context->ch_layout), "layout");
            check(av_frame_get_buffer(frame.get(), 0), "frame buffer");
            av_samples_set_silence(frame->extended_data, 0, frame->nb_samples, channels,
                                   context->sample_fmt);
            fill(*frame, part);
            send(frame.get(), take);
        }
        send(nullptr, take);
    }

  private:
    void send(const AVFrame* frame, const std::function<void(AVPacket&)>& take) const {
        const std::unique_ptr<AVPacket, Free> packet(av_packet_alloc());
        check(avcodec_send_frame(context.get(), frame), "frame");
        while (avcodec_receive_packet(context.get(), packet.get()) == 0) {
            take(*packet);
            av_packet_unref(packet.get());
        }
    }
};

// The size of a packet in the table of a CAF file: seven bits a byte.
std::string variableLength(std::size_t value) {
    std::string text(1, static_cast<char>(value & 0x7F));
    while ((value >>= 7) != 0) {
        text.insert(text.begin(), static_cast<char>(value | 0x80));
    }
    return text;
}

// With a length of four bytes, as the phone's own tools write it.
std::string descriptor(int tag, const std::string& contents) {
    return std::string(1, static_cast<char>(tag)) + "\x80\x80\x80" +
           static_cast<char>(contents.size()) + contents;
}

}  // namespace

std::vector<float> samplesOf(const Tone& tone) {
    const auto frames = static_cast<std::size_t>(std::llround(tone.seconds * tone.sampleRate));
    const auto channels = static_cast<std::size_t>(tone.channels);
    std::vector<float> samples(frames * channels);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double seconds = static_cast<double>(i / channels) / tone.sampleRate;
        samples[i] = static_cast<float>(tone.level *
                                        std::sin(2 * std::numbers::pi * tone.frequency * seconds));
    }
    return samples;
}

std::string soundFile(const std::string& muxer, const std::string& encoder,
                      const std::vector<float>& samples, int sampleRate, int channels) {
    if (muxer == "caf" && encoder == "aac") {
        return aacCaf(samples, sampleRate, channels);
    }
    AVFormatContext* made = nullptr;
    check(avformat_alloc_output_context2(&made, nullptr, muxer.c_str(), nullptr), "muxer");
    const std::unique_ptr<AVFormatContext, Free> file(made);
    Encoder source(encoder, sampleRate, channels, (file->oformat->flags & AVFMT_GLOBALHEADER) != 0);
    AVStream* const stream = avformat_new_stream(file.get(), nullptr);
    stream->time_base = {1, sampleRate};
    check(avcodec_parameters_from_context(stream->codecpar, source.context.get()), "parameters");
    Output output;
    constexpr int kBufferBytes = 4096;
    AVIOContext* io = avio_alloc_context(static_cast<std::uint8_t*>(av_malloc(kBufferBytes)),
                                         kBufferBytes, 1, &output, nullptr, writeBytes, seek);
    file->pb = io;
    check(avformat_write_header(file.get(), nullptr), "header");
    source.encode(samples, [&](AVPacket& packet) {
        packet.stream_index = 0;
        av_packet_rescale_ts(&packet, source.context->time_base, stream->time_base);
        check(av_write_frame(file.get(), &packet), "packet");
    });
    check(av_write_trailer(file.get()), "trailer");
    avio_flush(io);
    av_freep(&io->buffer);
    avio_context_free(&io);
    return output.bytes;
}

// By hand, since the library reads such files and does not write them. The decoder's settings are
// an MPEG-4 elementary stream descriptor, as in MP4 files; the table has the size of every packet.
std::string aacCaf(const std::vector<float>& samples, int sampleRate, int channels,
                   const CafPackets& packets) {
    Encoder source("aac", sampleRate, channels, true);
    std::string sizes;
    std::string data;
    std::size_t count = 0;
    source.encode(samples, [&](AVPacket& packet) {
        const auto size = static_cast<std::size_t>(packet.size);
        sizes += variableLength(size);
        data.append(reinterpret_cast<const char*>(packet.data), size);
        ++count;
    });
    const std::string settings(reinterpret_cast<const char*>(source.context->extradata),
                               static_cast<std::size_t>(source.context->extradata_size));
    const std::string stream = descriptor(
        3, bigEndian(0, 3) +
               descriptor(4, bigEndian(0x4015, 2) + bigEndian(0, 11) + descriptor(5, settings)));
    const auto valid = packets.valid.value_or(static_cast<std::int64_t>(count) * 1024);
    const std::string table =
        bigEndian(count, 8) + bigEndian(static_cast<std::uint64_t>(valid), 8) +
        bigEndian(packets.priming, 4) + bigEndian(packets.remainder, 4) + sizes;
    return rawCaf({.sampleRate = static_cast<double>(sampleRate),
                   .format = "aac ",
                   .flags = 0,
                   .bytesPerPacket = 0,
                   .framesPerPacket = 1024,
                   .channels = static_cast<std::uint32_t>(channels),
                   .bits = 0,
                   .chunks = cafChunk("kuki", static_cast<std::int64_t>(stream.size()), stream) +
                             cafChunk("pakt", static_cast<std::int64_t>(table.size()), table),
                   .data = data});
}

std::string soundFile(const std::string& muxer, const std::string& encoder, const Tone& tone) {
    return soundFile(muxer, encoder, samplesOf(tone), tone.sampleRate, tone.channels);
}

std::string cafFile(const Tone& tone) {
    return soundFile("caf", "pcm_s16le", tone);
}

std::string bigEndian(std::uint64_t value, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) {
        text.push_back(i < 8 ? static_cast<char>(value >> (8 * i)) : '\0');
    }
    return text;
}

std::string cafChunk(std::string_view type, std::int64_t size, std::string_view contents) {
    return std::string(type) + bigEndian(static_cast<std::uint64_t>(size), 8) +
           std::string(contents);
}

std::string rawCaf(const RawCaf& caf) {
    const std::string description =
        bigEndian(std::bit_cast<std::uint64_t>(caf.sampleRate), 8) + caf.format +
        bigEndian(caf.flags, 4) + bigEndian(caf.bytesPerPacket, 4) +
        bigEndian(caf.framesPerPacket, 4) + bigEndian(caf.channels, 4) + bigEndian(caf.bits, 4);
    return "caff" + bigEndian(1, 2) + bigEndian(0, 2) + cafChunk("desc", 32, description) +
           caf.chunks + cafChunk("data", caf.dataSize, bigEndian(0, 4) + caf.data);
}

double levelOf(std::span<const float> stereo, double frequency, int sampleRate, std::size_t side) {
    double real = 0;
    double imaginary = 0;
    const std::size_t frames = stereo.size() / 2;
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2 * std::numbers::pi * frequency * static_cast<double>(i) / sampleRate;
        real += stereo[i * 2 + side] * std::cos(angle);
        imaginary += stereo[i * 2 + side] * std::sin(angle);
    }
    return frames == 0 ? 0 : 2 * std::hypot(real, imaginary) / static_cast<double>(frames);
}

double frequencyOf(std::span<const float> stereo, int sampleRate, std::size_t side) {
    double first = -1;
    double last = -1;
    int crossings = 0;
    for (std::size_t i = 1; i < stereo.size() / 2; ++i) {
        const double before = stereo[(i - 1) * 2 + side];
        const double after = stereo[i * 2 + side];
        if (before < 0 && after >= 0) {
            last = static_cast<double>(i) - after / (after - before);
            if (first < 0) {
                first = last;
            } else {
                ++crossings;
            }
        }
    }
    return crossings == 0 ? 0 : crossings * sampleRate / (last - first);
}

float peakOf(std::span<const float> stereo) {
    float peak = 0;
    for (const float sample : stereo) {
        peak = std::max(peak, std::abs(sample));
    }
    return peak;
}

}  // namespace velmoranth::tests
