// FFmpeg on a short lead. It reads through our callbacks alone, so no file can make it open another
// one; containers and codecs are those of sound_kinds.h, each by the one implementation named
// there; a budget bounds what it reads without a sample coming out, and a cap what it allocates at
// once.
#include "desktop/audio/sound_decoder.h"

#include "desktop/audio/caf_packets.h"
#include "desktop/audio/ffmpeg.h"
#include "desktop/audio/frame_converter.h"
#include "desktop/audio/sound_kinds.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

namespace {

// --- Reading
// ----------------------------------------------------------------------------------------

constexpr int kMaxPacketBytes = 1 << 20;
constexpr std::int64_t kMaxSamplesInFrame = 1 << 20;  // of all channels
// What a file may make us read, and how many packets, without a sample coming out.
constexpr std::int64_t kReadBudget = std::int64_t{32} * 1024 * 1024;
constexpr int kMaxFruitlessPackets = 1000;
// Frames of the file that are converted at a time.
constexpr int kSliceFrames = 1024;

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

// --- Decoding
// ----------------------------------------------------------------------------------------

class FfmpegDecoder final : public SoundDecoder {
  public:
    FfmpegDecoder(const SoundFile& file, int sampleRate)
        : input_{.file = file}, sampleRate_(sampleRate), converter_(sampleRate) {}

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

    void endWith(std::string message) {
        problem_ = Problem{std::move(message), input_.file.name()};
    }

    // Destroyed from below upwards: the container before what it reads through.
    Input input_;
    const int sampleRate_;
    SoundFormat format_;
    std::optional<Problem> problem_;
    Owned<AVIOContext> io_;
    Owned<AVFormatContext> container_;
    const AVStream* stream_ = nullptr;
    Owned<AVCodecContext> codec_;
    Owned<AVPacket> packet_;
    Owned<AVFrame> frame_;
    FrameConverter converter_;
    CafTrim trim_;
    int sliceStart_ = 0;           // in the frame at hand
    int frameEnd_ = 0;             // of what is to be played of it; 0 when there is none at hand
    std::uint64_t dataStart_ = 0;  // of the first packet in the file, as far as it is known
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
    const char* const name = decoderOf(format_.codec);
    const AVCodec* const decoder =
        name == nullptr ? nullptr : ffmpeg().avcodec_find_decoder_by_name(name);
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
        trim_ = cafTrimOf(input_.file);
        if (trim_.frames != CafTrim().frames) {
            format_.seconds = static_cast<double>(trim_.frames) / parameters.sample_rate;
        }
    }
    return {};
}

// With the first frame at hand, which knows best.
void FfmpegDecoder::describe() {
    format_.channels = converter_.channels();
    format_.sampleRate = converter_.inputRate();
    const std::int64_t duration = stream_->duration;
    const int bits = ffmpeg().av_get_bits_per_sample(stream_->codecpar->codec_id);
    if (format_.seconds) {
        return;
    }
    if (duration != AV_NOPTS_VALUE && duration > 0) {
        format_.seconds = static_cast<double>(duration) * av_q2d(stream_->time_base);
    } else if (bits > 0) {
        format_.seconds = static_cast<double>(input_.file.size() - dataStart_) * 8 /
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
            const int count = std::min(kSliceFrames, frameEnd_ - sliceStart_);
            converter_.convert(*frame_, sliceStart_, count, pending_);
            sliceStart_ += count;
            continue;
        }
        const int received = trim_.frames > 0
                                 ? ffmpeg().avcodec_receive_frame(codec_.get(), frame_.get())
                                 : AVERROR_EOF;
        const bool goesOn =
            received == 0 ? beginFrame() : received == AVERROR(EAGAIN) && sendPacket();
        if (!goesOn) {
            converter_.drain(pending_);
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
    if (dataStart_ == 0 && packet_->pos > 0) {
        dataStart_ = std::min(static_cast<std::uint64_t>(packet_->pos), input_.file.size());
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
    if (!converter_.prepare(frame, pending_)) {
        endWith("the sound cannot be converted");
        return false;
    }
    const std::int64_t skipped = std::min<std::int64_t>(trim_.skipped, frame.nb_samples);
    const std::int64_t played = std::min(frame.nb_samples - skipped, trim_.frames);
    trim_.skipped -= skipped;
    if (trim_.frames != CafTrim().frames) {
        trim_.frames -= played;
    }
    sliceStart_ = static_cast<int>(skipped);
    frameEnd_ = static_cast<int>(skipped + played);
    return true;
}

}  // namespace

bool canDecodeSounds() {
    return loadedFfmpeg().has_value();
}

Result<std::unique_ptr<SoundDecoder>> SoundDecoder::open(const SoundFile& file, int sampleRate) {
    auto decoder = std::make_unique<FfmpegDecoder>(file, sampleRate);
    if (auto started = decoder->start(); !started) {
        return tl::unexpected(std::move(started.error()));
    }
    return decoder;
}

}  // namespace velmoranth::desktop
