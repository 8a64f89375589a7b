#include "desktop/audio/frame_converter.h"

#include "desktop/audio/ffmpeg.h"
#include "desktop/audio/sound_kinds.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace velmoranth::desktop {

namespace {

void append(SwrContext& resampler, const std::uint8_t** planes, int frames,
            std::vector<float>& samples) {
    const int room = ffmpeg().swr_get_out_samples(&resampler, frames);
    if (room <= 0) {
        return;
    }
    const std::size_t before = samples.size();
    samples.resize(before + static_cast<std::size_t>(room) * kChannels);
    auto* out = reinterpret_cast<std::uint8_t*>(samples.data() + before);
    const int got = ffmpeg().swr_convert(&resampler, &out, room, planes, frames);
    samples.resize(before + static_cast<std::size_t>(std::max(got, 0)) * kChannels);
}

}  // namespace

// What the frames are like, and the resampler for them.
struct FrameConverter::State {
    Owned<SwrContext> resampler;
    AVChannelLayout layout{};
    int format = AV_SAMPLE_FMT_NONE;
    int rate = 0;

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    ~State() { ffmpeg().av_channel_layout_uninit(&layout); }

    [[nodiscard]] bool fits(const AVFrame& frame) const {
        return frame.sample_rate == rate && frame.format == format &&
               ffmpeg().av_channel_layout_compare(&frame.ch_layout, &layout) == 0;
    }

    // Makes the resampler, from channels in that order, which it only reads.
    [[nodiscard]] bool begin(AVChannelLayout& from, int sampleRate);
};

bool FrameConverter::State::begin(AVChannelLayout& from, int sampleRate) {
    AVChannelLayout stereo{};
    ffmpeg().av_channel_layout_default(&stereo, static_cast<int>(kChannels));
    SwrContext* context = nullptr;
    bool made =
        ffmpeg().swr_alloc_set_opts2(&context, &stereo, AV_SAMPLE_FMT_FLT, sampleRate, &from,
                                     static_cast<AVSampleFormat>(format), rate, 0, nullptr) == 0;
    resampler.reset(context);
    // Channels that are mixed into one are no louder than full level together.
    made = made && ffmpeg().av_opt_set_double(context, "rematrix_maxval", 1, 0) == 0;
    if (made && from.nb_channels == 1) {
        // The library's own choice is 3 dB quieter.
        constexpr std::array<double, kChannels> kBothSides{1, 1};
        made = ffmpeg().swr_set_matrix(context, kBothSides.data(), 1) == 0;
    }
    return made && ffmpeg().swr_init(context) == 0;
}

FrameConverter::FrameConverter(int sampleRate) : sampleRate_(sampleRate) {}

FrameConverter::~FrameConverter() = default;

bool FrameConverter::prepare(const AVFrame& frame, std::vector<float>& samples) {
    if (state_ != nullptr && state_->fits(frame)) {
        return true;
    }
    drain(samples);
    state_ = std::make_unique<State>();
    state_->format = frame.format;
    state_->rate = frame.sample_rate;
    if (ffmpeg().av_channel_layout_copy(&state_->layout, &frame.ch_layout) < 0) {
        return false;
    }
    // An order of channels that the resampler does not know is taken for the usual one: a sound is
    // heard rather than refused.
    AVChannelLayout usual{};
    ffmpeg().av_channel_layout_default(&usual, state_->layout.nb_channels);
    const bool ordered = state_->layout.order != AV_CHANNEL_ORDER_UNSPEC;
    const bool made = (ordered && state_->begin(state_->layout, sampleRate_)) ||
                      state_->begin(usual, sampleRate_);
    ffmpeg().av_channel_layout_uninit(&usual);
    return made;
}

void FrameConverter::convert(const AVFrame& frame, int start, int count,
                             std::vector<float>& samples) {
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool planar = ffmpeg().av_sample_fmt_is_planar(format) != 0;
    const std::ptrdiff_t step =
        static_cast<std::ptrdiff_t>(ffmpeg().av_get_bytes_per_sample(format)) *
        (planar ? 1 : frame.ch_layout.nb_channels);
    std::array<const std::uint8_t*, kMaxChannels> planes{};
    const auto planeCount = static_cast<std::size_t>(planar ? frame.ch_layout.nb_channels : 1);
    for (std::size_t i = 0; i < std::min(planeCount, planes.size()); ++i) {
        planes[i] = frame.extended_data[i] + start * step;
    }
    append(*state_->resampler, planes.data(), count, samples);
}

void FrameConverter::drain(std::vector<float>& samples) {
    if (state_ != nullptr && state_->resampler != nullptr) {
        append(*state_->resampler, nullptr, 0, samples);
    }
}

int FrameConverter::channels() const {
    return state_ == nullptr ? 0 : state_->layout.nb_channels;
}

int FrameConverter::inputRate() const {
    return state_ == nullptr ? 0 : state_->rate;
}

}  // namespace velmoranth::desktop
