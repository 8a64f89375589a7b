// FFmpeg, the one library that reads every kind of sound file that the phone plays. It is loaded
// with the first sound (shared_library.h says why) and kept on a short lead: it reads through our
// callbacks alone, so no file can make it open another one; containers and codecs are those of the
// tables below, each by the one implementation named there; a budget bounds what it reads without a
// sample coming out, and a cap what it takes of memory at once. Results are converted to
// interleaved stereo floats; mono goes to both sides at its own level.
#include "desktop/audio/sound_decoder.h"

#include "desktop/audio/shared_library.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

namespace {

// --- The library
// ----------------------------------------------------------------------------------------

// NOLINTBEGIN(cppcoreguidelines-macro-usage): the one list of the functions, for members and
// look-up.
#define VELMORANTH_FFMPEG_FUNCTIONS(FUNCTION) \
    FUNCTION(av_channel_layout_copy)          \
    FUNCTION(av_channel_layout_compare)       \
    FUNCTION(av_channel_layout_default)       \
    FUNCTION(av_channel_layout_uninit)        \
    FUNCTION(av_find_input_format)            \
    FUNCTION(av_frame_alloc)                  \
    FUNCTION(av_frame_free)                   \
    FUNCTION(av_frame_unref)                  \
    FUNCTION(av_free)                         \
    FUNCTION(av_freep)                        \
    FUNCTION(av_get_bits_per_sample)          \
    FUNCTION(av_get_bytes_per_sample)         \
    FUNCTION(av_log_set_callback)             \
    FUNCTION(av_malloc)                       \
    FUNCTION(av_max_alloc)                    \
    FUNCTION(av_packet_alloc)                 \
    FUNCTION(av_packet_free)                  \
    FUNCTION(av_packet_unref)                 \
    FUNCTION(av_read_frame)                   \
    FUNCTION(av_sample_fmt_is_planar)         \
    FUNCTION(avcodec_alloc_context3)          \
    FUNCTION(avcodec_find_decoder_by_name)    \
    FUNCTION(avcodec_free_context)            \
    FUNCTION(avcodec_get_name)                \
    FUNCTION(avcodec_open2)                   \
    FUNCTION(avcodec_parameters_to_context)   \
    FUNCTION(avcodec_receive_frame)           \
    FUNCTION(avcodec_send_packet)             \
    FUNCTION(avformat_alloc_context)          \
    FUNCTION(avformat_close_input)            \
    FUNCTION(avformat_open_input)             \
    FUNCTION(avio_alloc_context)              \
    FUNCTION(avio_context_free)               \
    FUNCTION(swr_alloc_set_opts2)             \
    FUNCTION(swr_convert)                     \
    FUNCTION(swr_free)                        \
    FUNCTION(swr_get_out_samples)             \
    FUNCTION(swr_init)                        \
    FUNCTION(swr_set_matrix)
// NOLINTEND(cppcoreguidelines-macro-usage)

// More than one allocation of a sound that is as it should be: the index of ten hours of AAC.
constexpr std::size_t kMaxAllocation = std::size_t{32} * 1024 * 1024;

struct Ffmpeg {
#define VELMORANTH_MEMBER(name) decltype(&::name) name = nullptr;
    VELMORANTH_FFMPEG_FUNCTIONS(VELMORANTH_MEMBER)
#undef VELMORANTH_MEMBER
};

void dropLogLine(void* /*context*/, int /*level*/, const char* /*format*/,
                 std::va_list /*arguments*/) {}

Result<Ffmpeg> loadFfmpeg() {
    // It brings those that the other functions are in.
    constexpr const char* kLibrary = "libavformat.so." AV_STRINGIFY(LIBAVFORMAT_VERSION_MAJOR);
    const auto library = SharedLibrary::load(kLibrary);
    if (!library) {
        return tl::unexpected(Problem{"sounds cannot be read without " + library.error().message});
    }
    Ffmpeg ffmpeg;
    const char* missing = nullptr;
#define VELMORANTH_FIND(name)                 \
    if (!library->find(#name, ffmpeg.name)) { \
        missing = #name;                      \
    }
    VELMORANTH_FFMPEG_FUNCTIONS(VELMORANTH_FIND)
#undef VELMORANTH_FIND
    if (missing != nullptr) {
        return tl::unexpected(
            Problem{std::string("sounds cannot be read: ") + kLibrary + " lacks " + missing});
    }
    ffmpeg.av_log_set_callback(dropLogLine);
    ffmpeg.av_max_alloc(kMaxAllocation);
    return ffmpeg;
}

const Result<Ffmpeg>& loadedFfmpeg() {
    static const Result<Ffmpeg> loaded = loadFfmpeg();
    return loaded;
}

// Only where loadedFfmpeg() has succeeded.
const Ffmpeg& ffmpeg() {
    return *loadedFfmpeg();
}

struct Free {
    void operator()(AVFormatContext* context) const { ffmpeg().avformat_close_input(&context); }

    void operator()(AVCodecContext* context) const { ffmpeg().avcodec_free_context(&context); }

    void operator()(AVFrame* frame) const { ffmpeg().av_frame_free(&frame); }

    void operator()(AVPacket* packet) const { ffmpeg().av_packet_free(&packet); }

    void operator()(SwrContext* context) const { ffmpeg().swr_free(&context); }

    void operator()(AVIOContext* context) const {
        ffmpeg().av_freep(&context->buffer);
        ffmpeg().avio_context_free(&context);
    }
};

template <class T>
using Owned = std::unique_ptr<T, Free>;

// --- What is played
// ----------------------------------------------------------------------------------------

constexpr std::size_t kSniffedBytes = 12;

struct Container {
    const char* demuxer;
    std::string_view magic;  // a dot is any byte
};

// In this order.
constexpr std::array<Container, 6> kContainers{{{"caf", "caff"},
                                                {"aiff", "FORM....AIFF"},
                                                {"aiff", "FORM....AIFC"},
                                                {"wav", "RIFF....WAVE"},
                                                {"mov", "....ftyp"},
                                                {"mp3", "ID3"}}};

bool startsWith(std::span<const std::uint8_t> head, std::string_view magic) {
    return head.size() >= magic.size() &&
           std::equal(magic.begin(), magic.end(), head.begin(), [](char wanted, std::uint8_t byte) {
               return wanted == '.' || static_cast<std::uint8_t>(wanted) == byte;
           });
}

// The name of the demuxer; null for what is no sound file.
const char* containerOf(std::span<const std::uint8_t> head) {
    for (const Container& container : kContainers) {
        if (startsWith(head, container.magic)) {
            return container.demuxer;
        }
    }
    // The first frame of a bare stream: eleven bits of synchronisation; then two of a version of
    // which one does not exist, and two of a layer, which are 0 in ADTS and 1 in MP3.
    if (head.size() >= 2 && head[0] == 0xFF && (head[1] & 0xE0) == 0xE0) {
        const int version = (head[1] >> 3) & 3;
        const int layer = (head[1] >> 1) & 3;
        if (layer == 0 && version >= 2) {
            return "aac";
        }
        if (layer == 1 && version != 1) {
            return "mp3";
        }
    }
    return nullptr;
}

struct Codec {
    AVCodecID id;
    const char* decoder;
};

constexpr auto kCodecs = std::to_array<Codec>({{AV_CODEC_ID_PCM_S8, "pcm_s8"},
                                               {AV_CODEC_ID_PCM_U8, "pcm_u8"},
                                               {AV_CODEC_ID_PCM_S16BE, "pcm_s16be"},
                                               {AV_CODEC_ID_PCM_S16LE, "pcm_s16le"},
                                               {AV_CODEC_ID_PCM_S24BE, "pcm_s24be"},
                                               {AV_CODEC_ID_PCM_S24LE, "pcm_s24le"},
                                               {AV_CODEC_ID_PCM_S32BE, "pcm_s32be"},
                                               {AV_CODEC_ID_PCM_S32LE, "pcm_s32le"},
                                               {AV_CODEC_ID_PCM_F32BE, "pcm_f32be"},
                                               {AV_CODEC_ID_PCM_F32LE, "pcm_f32le"},
                                               {AV_CODEC_ID_PCM_F64BE, "pcm_f64be"},
                                               {AV_CODEC_ID_PCM_F64LE, "pcm_f64le"},
                                               {AV_CODEC_ID_PCM_ALAW, "pcm_alaw"},
                                               {AV_CODEC_ID_PCM_MULAW, "pcm_mulaw"},
                                               {AV_CODEC_ID_ADPCM_IMA_QT, "adpcm_ima_qt"},
                                               {AV_CODEC_ID_ADPCM_IMA_WAV, "adpcm_ima_wav"},
                                               {AV_CODEC_ID_ADPCM_MS, "adpcm_ms"},
                                               {AV_CODEC_ID_AAC, "aac"},
                                               {AV_CODEC_ID_ALAC, "alac"},
                                               {AV_CODEC_ID_ILBC, "ilbc"},
                                               {AV_CODEC_ID_MP3, "mp3float"}});

constexpr int kMaxChannels = 8;
constexpr int kMinSampleRate = 1000;
constexpr int kMaxSampleRate = 384000;
constexpr int kMaxPacketBytes = 1 << 20;
constexpr std::int64_t kMaxSamplesInFrame = 1 << 20;  // of all channels
// What a file may make us read, and how many packets, without a sample coming out.
constexpr std::int64_t kReadBudget = std::int64_t{32} * 1024 * 1024;
constexpr int kMaxFruitlessPackets = 1000;
// Frames of the file that are converted at a time.
constexpr int kSliceFrames = 1024;

std::optional<std::string> objectionTo(int channels, int sampleRate) {
    if (channels < 1 || channels > kMaxChannels) {
        return "the sound has " + std::to_string(channels) + " channels; 1 to " +
               std::to_string(kMaxChannels) + " can be played";
    }
    if (sampleRate < kMinSampleRate || sampleRate > kMaxSampleRate) {
        return "the sound's sample rate is " + std::to_string(sampleRate) + " Hz; " +
               std::to_string(kMinSampleRate) + " to " + std::to_string(kMaxSampleRate) +
               " can be played";
    }
    return std::nullopt;
}

// --- Reading
// ----------------------------------------------------------------------------------------

// The file as the library's callbacks see it.
struct Input {
    SoundFile file;
    std::int64_t position = 0;
    std::int64_t budget = kReadBudget;  // bytes
};

Input& inputOf(void* opaque) {
    return *static_cast<Input*>(opaque);
}

int readBytes(void* opaque, std::uint8_t* bytes, int count) {
    // Every call costs something, so that many small ones come to an end as well.
    constexpr std::int64_t kCallCost = 4096;
    Input& input = inputOf(opaque);
    if (input.budget <= 0) {
        return AVERROR(EIO);
    }
    const std::size_t got =
        input.file.readAt(static_cast<std::uint64_t>(input.position),
                          std::span(bytes, static_cast<std::size_t>(std::max(count, 0))));
    input.position += static_cast<std::int64_t>(got);
    input.budget -= std::max(static_cast<std::int64_t>(got), kCallCost);
    return got == 0 ? AVERROR_EOF : static_cast<int>(got);
}

std::int64_t seek(void* opaque, std::int64_t offset, int whence) {
    Input& input = inputOf(opaque);
    const auto size = static_cast<std::int64_t>(input.file.size());
    std::int64_t base = 0;
    switch (whence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return size;
        case SEEK_SET:
            break;
        case SEEK_CUR:
            base = input.position;
            break;
        case SEEK_END:
            base = size;
            break;
        default:
            return AVERROR(EINVAL);
    }
    std::int64_t position = 0;
    if (__builtin_add_overflow(base, offset, &position) || position < 0) {
        return AVERROR(EINVAL);
    }
    input.position = position;
    return position;
}

int refuseOtherFile(AVFormatContext* /*context*/, AVIOContext** /*io*/, const char* /*url*/,
                    int /*flags*/, AVDictionary** /*options*/) {
    return AVERROR(EACCES);
}

// What a CAF file says of its packets: how much of what is decoded is the sound itself. FFmpeg does
// not apply it.
struct Trim {
    std::int64_t skipped = 0;         // frames before the sound
    std::int64_t frames = INT64_MAX;  // frames of the sound
};

std::int64_t bigEndian(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes) {
        value = value << 8 | byte;
    }
    return static_cast<std::int64_t>(value);
}

// The chunk `pakt`: number of packets, valid frames (64 bits each), priming frames, remainder (32
// bits each). Apple Core Audio Format Specification 1.0, "Packet Table Chunk".
Trim trimOfCaf(const SoundFile& file) {
    constexpr std::uint64_t kFileHeader = 8;
    constexpr std::size_t kChunkHeader = 12;
    constexpr std::size_t kTableHeader = 24;
    constexpr int kMaxChunks = 64;
    constexpr std::int64_t kMaxPriming = kMaxSampleRate;  // a second, at the least
    std::uint64_t offset = kFileHeader;
    for (int i = 0; i < kMaxChunks; ++i) {
        std::array<std::uint8_t, kChunkHeader + kTableHeader> bytes{};
        const std::size_t got = file.readAt(offset, bytes);
        const std::span<const std::uint8_t> chunk(bytes);
        if (got < kChunkHeader) {
            break;
        }
        const std::int64_t size = bigEndian(chunk.subspan(4, 8));
        if (startsWith(chunk, "pakt") && got == bytes.size()) {
            const std::int64_t valid = bigEndian(chunk.subspan(kChunkHeader + 8, 8));
            const std::int64_t priming = bigEndian(chunk.subspan(kChunkHeader + 16, 4));
            if (valid > 0 && priming <= kMaxPriming) {
                return {priming, valid};
            }
            break;
        }
        if (size < 0 || static_cast<std::uint64_t>(size) > file.size()) {
            break;  // to the end of the file, or past it
        }
        offset += kChunkHeader + static_cast<std::uint64_t>(size);
    }
    return {};
}

// --- Decoding
// ----------------------------------------------------------------------------------------

class FfmpegDecoder final : public SoundDecoder {
  public:
    FfmpegDecoder(const SoundFile& file, int sampleRate)
        : input_{.file = file}, sampleRate_(sampleRate) {}

    ~FfmpegDecoder() override {
        if (ready_) {
            ffmpeg().av_channel_layout_uninit(&layout_);
        }
    }

    // Everything up to the first samples.
    [[nodiscard]] Result<void> start();

    [[nodiscard]] std::size_t read(std::span<float> stereo) override;

    [[nodiscard]] const SoundFormat& format() const override { return format_; }

    [[nodiscard]] const std::optional<Problem>& problem() const override { return problem_; }

  private:
    [[nodiscard]] tl::unexpected<Problem> failure(std::string message) const {
        return tl::unexpected(Problem{std::move(message), input_.file.name()});
    }

    [[nodiscard]] Result<void> openContainer();
    [[nodiscard]] Result<void> openCodec();
    void describe();
    // Makes more samples pending; false when the sound is over.
    [[nodiscard]] bool decodeMore();
    // Gives the decoder a packet, or the end; false when the sound cannot go on.
    [[nodiscard]] bool sendPacket();
    // Takes the decoder's next frame apart; false for one that cannot be played.
    [[nodiscard]] bool beginFrame();
    [[nodiscard]] bool makeResampler();
    // Converts the next slice of the frame at hand, or what the resampler still holds.
    void convertSlice();
    void drainResampler();
    void convert(const std::uint8_t** planes, int frames);

    void endWith(std::string message) {
        problem_ = Problem{std::move(message), input_.file.name()};
    }

    // Destroyed from below upwards: the container before what it reads through.
    Input input_;
    const int sampleRate_;
    SoundFormat format_;
    std::optional<Problem> problem_;
    bool ready_ = false;  // the library is there
    Owned<AVIOContext> io_;
    Owned<AVFormatContext> container_;
    const AVStream* stream_ = nullptr;
    Owned<AVCodecContext> codec_;
    Owned<AVPacket> packet_;
    Owned<AVFrame> frame_;
    Owned<SwrContext> resampler_;
    // What the resampler takes.
    AVChannelLayout layout_{};
    int sampleFormat_ = AV_SAMPLE_FMT_NONE;
    int rate_ = 0;
    Trim trim_;
    int sliceStart_ = 0;  // in the frame at hand
    int frameEnd_ = 0;    // of what is to be played of it; 0 when there is none at hand
    int fruitless_ = 0;
    bool inputEnded_ = false;
    bool ended_ = false;
    std::vector<float> pending_;
    std::size_t pendingStart_ = 0;
};

Result<void> FfmpegDecoder::start() {
    const Result<Ffmpeg>& loaded = loadedFfmpeg();
    if (!loaded) {
        return failure(loaded.error().message);
    }
    ready_ = true;
    if (sampleRate_ < kMinSampleRate || sampleRate_ > kMaxSampleRate) {
        return failure("sound cannot be played at " + std::to_string(sampleRate_) + " Hz");
    }
    return openContainer()
        .and_then([this] { return openCodec(); })
        .and_then([this]() -> Result<void> {
            if (!decodeMore()) {
                return problem_ ? Result<void>(tl::unexpected(*problem_))
                                : failure("there is no sound in the file");
            }
            describe();
            return {};
        });
}

Result<void> FfmpegDecoder::openContainer() {
    constexpr std::size_t kBufferBytes = 16384;
    std::array<std::uint8_t, kSniffedBytes> head{};
    const std::size_t got = input_.file.readAt(0, head);
    if (got == 0) {
        return failure(input_.file.size() == 0 ? "the file is empty" : "the file cannot be read");
    }
    const char* const name = containerOf(std::span(head).first(got));
    if (name == nullptr) {
        return failure("not a sound file of a kind that can be played");
    }
    format_.container = name;
    const AVInputFormat* const demuxer = ffmpeg().av_find_input_format(name);
    auto* const buffer = static_cast<std::uint8_t*>(ffmpeg().av_malloc(kBufferBytes));
    if (demuxer == nullptr || buffer == nullptr) {
        ffmpeg().av_free(buffer);
        return failure("files of the kind " + format_.container + " cannot be read");
    }
    io_.reset(
        ffmpeg().avio_alloc_context(buffer, kBufferBytes, 0, &input_, readBytes, nullptr, seek));
    AVFormatContext* context = io_ == nullptr ? nullptr : ffmpeg().avformat_alloc_context();
    if (context == nullptr) {
        return failure("out of memory");
    }
    context->pb = io_.get();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->io_open = refuseOtherFile;
    context->max_streams = kMaxChannels;
    // Frees the context when it fails.
    if (ffmpeg().avformat_open_input(&context, nullptr, demuxer, nullptr) < 0) {
        return failure("the " + format_.container + " file is damaged");
    }
    container_.reset(context);
    return {};
}

Result<void> FfmpegDecoder::openCodec() {
    for (AVStream* const stream : std::span(container_->streams, container_->nb_streams)) {
        if (stream_ == nullptr && stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
            stream_ = stream;
        } else {
            stream->discard = AVDISCARD_ALL;
        }
    }
    if (stream_ == nullptr) {
        return failure("there is no sound in the file");
    }
    const AVCodecParameters& parameters = *stream_->codecpar;
    format_.codec = ffmpeg().avcodec_get_name(parameters.codec_id);
    const auto* const known = std::find_if(kCodecs.begin(), kCodecs.end(), [&](const Codec& codec) {
        return codec.id == parameters.codec_id;
    });
    const AVCodec* const decoder =
        known == kCodecs.end() ? nullptr : ffmpeg().avcodec_find_decoder_by_name(known->decoder);
    if (decoder == nullptr) {
        return failure("sound of the kind " + format_.codec + " cannot be played");
    }
    // The frames of a bare stream say it themselves.
    const bool bare = format_.container == "mp3" || format_.container == "aac";
    if (const auto objection =
            objectionTo(parameters.ch_layout.nb_channels, parameters.sample_rate);
        objection && !bare) {
        return failure(*objection);
    }
    codec_.reset(ffmpeg().avcodec_alloc_context3(decoder));
    packet_.reset(ffmpeg().av_packet_alloc());
    frame_.reset(ffmpeg().av_frame_alloc());
    if (codec_ == nullptr || packet_ == nullptr || frame_ == nullptr) {
        return failure("out of memory");
    }
    if (ffmpeg().avcodec_parameters_to_context(codec_.get(), &parameters) < 0) {
        return failure("the " + format_.container + " file is damaged");
    }
    codec_->thread_count = 1;
    codec_->max_samples = kMaxSamplesInFrame;
    codec_->pkt_timebase = stream_->time_base;
    if (ffmpeg().avcodec_open2(codec_.get(), decoder, nullptr) < 0) {
        return failure("the " + format_.codec + " sound is damaged");
    }
    if (format_.container == "caf") {
        trim_ = trimOfCaf(input_.file);
    }
    return {};
}

// With the first frame at hand, which knows best.
void FfmpegDecoder::describe() {
    format_.channels = layout_.nb_channels;
    format_.sampleRate = rate_;
    const std::int64_t duration = stream_->duration;
    const int bits = ffmpeg().av_get_bits_per_sample(stream_->codecpar->codec_id);
    if (trim_.frames != INT64_MAX) {
        format_.seconds = static_cast<double>(trim_.frames) / stream_->codecpar->sample_rate;
    } else if (duration != AV_NOPTS_VALUE && duration > 0) {
        format_.seconds = static_cast<double>(duration) * av_q2d(stream_->time_base);
    } else if (bits > 0) {
        format_.seconds = static_cast<double>(input_.file.size()) * 8 /
                          (static_cast<double>(bits) * format_.channels * format_.sampleRate);
    }
}

std::size_t FfmpegDecoder::read(std::span<float> stereo) {
    std::size_t written = 0;
    const std::size_t wanted = stereo.size() - stereo.size() % kChannels;
    while (written < wanted) {
        if (pendingStart_ == pending_.size() && !decodeMore()) {
            break;
        }
        const std::size_t count = std::min(wanted - written, pending_.size() - pendingStart_);
        std::copy_n(pending_.begin() + static_cast<std::ptrdiff_t>(pendingStart_), count,
                    stereo.begin() + static_cast<std::ptrdiff_t>(written));
        pendingStart_ += count;
        written += count;
    }
    return written / kChannels;
}

bool FfmpegDecoder::decodeMore() {
    pending_.clear();
    pendingStart_ = 0;
    while (pending_.empty() && !ended_) {
        if (sliceStart_ < frameEnd_) {
            convertSlice();
            continue;
        }
        const int received = trim_.frames > 0
                                 ? ffmpeg().avcodec_receive_frame(codec_.get(), frame_.get())
                                 : AVERROR_EOF;
        const bool goesOn =
            received == 0 ? beginFrame() : received == AVERROR(EAGAIN) && sendPacket();
        if (!goesOn) {
            drainResampler();
            ended_ = true;
        }
    }
    if (!pending_.empty()) {
        fruitless_ = 0;
        input_.budget = kReadBudget;
    }
    return !pending_.empty();
}

bool FfmpegDecoder::sendPacket() {
    if (++fruitless_ > kMaxFruitlessPackets) {
        endWith("the sound is damaged: nothing can be played of " +
                std::to_string(kMaxFruitlessPackets) + " packets in a row");
        return false;
    }
    const int got =
        inputEnded_ ? AVERROR_EOF : ffmpeg().av_read_frame(container_.get(), packet_.get());
    if (got < 0) {
        if (got != AVERROR_EOF) {
            endWith("the sound is damaged");
        }
        inputEnded_ = true;
        // The decoder hands out what it holds back.
        return ffmpeg().avcodec_send_packet(codec_.get(), nullptr) == 0;
    }
    const bool tooLarge = packet_->size > kMaxPacketBytes;
    if (tooLarge) {
        endWith("the sound is damaged: a packet of " + std::to_string(packet_->size) + " bytes");
    } else if (packet_->stream_index == stream_->index) {
        // A damaged packet is left out.
        static_cast<void>(ffmpeg().avcodec_send_packet(codec_.get(), packet_.get()));
    }
    ffmpeg().av_packet_unref(packet_.get());
    return !tooLarge;
}

bool FfmpegDecoder::beginFrame() {
    const AVFrame& frame = *frame_;
    if (const auto objection = objectionTo(frame.ch_layout.nb_channels, frame.sample_rate)) {
        endWith(*objection);
        return false;
    }
    const bool asBefore = resampler_ != nullptr && frame.sample_rate == rate_ &&
                          frame.format == sampleFormat_ &&
                          ffmpeg().av_channel_layout_compare(&frame.ch_layout, &layout_) == 0;
    if (!asBefore) {
        drainResampler();
        if (!makeResampler()) {
            endWith("the sound cannot be converted");
            return false;
        }
    }
    const std::int64_t skipped = std::min<std::int64_t>(trim_.skipped, frame.nb_samples);
    const std::int64_t played = std::min(frame.nb_samples - skipped, trim_.frames);
    trim_.skipped -= skipped;
    if (trim_.frames != INT64_MAX) {
        trim_.frames -= played;
    }
    sliceStart_ = static_cast<int>(skipped);
    frameEnd_ = static_cast<int>(skipped + played);
    return true;
}

bool FfmpegDecoder::makeResampler() {
    resampler_.reset();
    rate_ = frame_->sample_rate;
    sampleFormat_ = frame_->format;
    if (ffmpeg().av_channel_layout_copy(&layout_, &frame_->ch_layout) < 0) {
        return false;
    }
    AVChannelLayout input{};
    AVChannelLayout stereo{};
    if (layout_.order == AV_CHANNEL_ORDER_UNSPEC) {
        ffmpeg().av_channel_layout_default(&input, layout_.nb_channels);
    } else if (ffmpeg().av_channel_layout_copy(&input, &layout_) < 0) {
        return false;
    }
    ffmpeg().av_channel_layout_default(&stereo, static_cast<int>(kChannels));
    SwrContext* context = nullptr;
    int made =
        ffmpeg().swr_alloc_set_opts2(&context, &stereo, AV_SAMPLE_FMT_FLT, sampleRate_, &input,
                                     static_cast<AVSampleFormat>(sampleFormat_), rate_, 0, nullptr);
    ffmpeg().av_channel_layout_uninit(&input);
    resampler_.reset(context);
    if (made == 0 && layout_.nb_channels == 1) {
        // The library's own choice is 3 dB quieter.
        constexpr std::array<double, kChannels> kBothSides{1, 1};
        made = ffmpeg().swr_set_matrix(context, kBothSides.data(), 1);
    }
    return made == 0 && ffmpeg().swr_init(context) == 0;
}

void FfmpegDecoder::convertSlice() {
    const int frames = std::min(kSliceFrames, frameEnd_ - sliceStart_);
    const auto format = static_cast<AVSampleFormat>(sampleFormat_);
    const bool planar = ffmpeg().av_sample_fmt_is_planar(format) != 0;
    const int bytes = ffmpeg().av_get_bytes_per_sample(format);
    const int channels = layout_.nb_channels;
    std::array<const std::uint8_t*, kMaxChannels> planes{};
    for (int i = 0; i < (planar ? channels : 1); ++i) {
        planes[static_cast<std::size_t>(i)] =
            frame_->extended_data[i] +
            static_cast<std::ptrdiff_t>(sliceStart_) * bytes * (planar ? 1 : channels);
    }
    convert(planes.data(), frames);
    sliceStart_ += frames;
}

void FfmpegDecoder::drainResampler() {
    if (resampler_ != nullptr) {
        convert(nullptr, 0);
    }
}

// Appends to what is pending.
void FfmpegDecoder::convert(const std::uint8_t** planes, int frames) {
    const int room = ffmpeg().swr_get_out_samples(resampler_.get(), frames);
    if (room <= 0) {
        return;
    }
    const std::size_t before = pending_.size();
    pending_.resize(before + static_cast<std::size_t>(room) * kChannels);
    auto* out = reinterpret_cast<std::uint8_t*>(pending_.data() + before);
    const int got = ffmpeg().swr_convert(resampler_.get(), &out, room, planes, frames);
    pending_.resize(before + static_cast<std::size_t>(std::max(got, 0)) * kChannels);
}

}  // namespace

Result<std::unique_ptr<SoundDecoder>> SoundDecoder::open(const SoundFile& file, int sampleRate) {
    auto decoder = std::make_unique<FfmpegDecoder>(file, sampleRate);
    if (auto started = decoder->start(); !started) {
        return tl::unexpected(std::move(started.error()));
    }
    return decoder;
}

}  // namespace velmoranth::desktop
