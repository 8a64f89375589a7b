#include "desktop/audio/mixer.h"

#include <algorithm>
#include <utility>

namespace velmoranth::desktop {

Voice::Voice(std::unique_ptr<SoundStream> sound, std::string name, float volume)
    : sound_(std::move(sound)), name_(std::move(name)), volume_(volume) {}

std::shared_ptr<Voice> Mixer::start(std::unique_ptr<SoundStream> sound, std::string name,
                                    float volume) {
    const std::lock_guard lock(mutex_);
    return add(std::move(sound), std::move(name), volume);
}

void Mixer::startOtherAudio(std::unique_ptr<SoundStream> sound, std::string name, float volume) {
    const std::lock_guard lock(mutex_);
    VoiceRef voice = add(std::move(sound), std::move(name), volume);
    entries_.back().otherAudio = std::move(voice);
}

void Mixer::interruptOtherAudio() {
    const std::lock_guard lock(mutex_);
    std::erase_if(entries_, [this](const Entry& entry) {
        if (entry.otherAudio == nullptr) {
            return false;
        }
        entry.otherAudio->ended_ = true;
        end(entry.number, position_, VoiceEnding::interrupted);
        return true;
    });
}

bool Mixer::isOtherAudioPlaying() const {
    const std::lock_guard lock(mutex_);
    return std::any_of(entries_.begin(), entries_.end(),
                       [](const Entry& entry) { return entry.otherAudio != nullptr; });
}

void Mixer::render(std::span<float> stereo) {
    {
        const std::lock_guard lock(mutex_);
        removeStopped();
        for (const Entry& entry : entries_) {
            if (VoiceRef voice = entry.voice.lock()) {
                playing_.push_back(std::move(voice));
            }
        }
    }
    // Not locked: a voice may wait for its file, and whoever starts another must not wait with it.
    std::fill(stereo.begin(), stereo.end(), 0.0F);
    samples_.resize(stereo.size());
    const std::size_t frames = stereo.size() / kChannels;
    std::vector<std::pair<VoiceRef, std::size_t>> finished;
    for (VoiceRef& voice : playing_) {
        const std::size_t got = std::min(voice->sound_->read(samples_), frames);
        const float volume = voice->volume_;
        for (std::size_t i = 0; i < got * kChannels; ++i) {
            stereo[i] += samples_[i] * volume;
        }
        if (got < frames) {
            finished.emplace_back(std::move(voice), got);
        }
    }
    for (float& sample : stereo) {
        sample = std::clamp(sample, -1.0F, 1.0F);
    }

    // Of two that end with the same frame the older one first.
    std::sort(finished.begin(), finished.end(), [](const auto& a, const auto& b) {
        return std::pair(a.second, a.first->number_) < std::pair(b.second, b.first->number_);
    });
    const std::lock_guard lock(mutex_);
    for (const auto& [voice, length] : finished) {
        // Other audio may have been interrupted since.
        if (std::erase_if(entries_, [number = voice->number_](const Entry& entry) {
                return entry.number == number;
            }) > 0) {
            voice->ended_ = true;
            end(voice->number_, position_ + length, VoiceEnding::finished);
        }
    }
    position_ += frames;
    playing_.clear();
}

bool Mixer::isPlaying() const {
    const std::lock_guard lock(mutex_);
    return std::any_of(entries_.begin(), entries_.end(), [](const Entry& entry) {
        return entry.otherAudio == nullptr && !entry.voice.expired();
    });
}

std::uint64_t Mixer::position() const {
    const std::lock_guard lock(mutex_);
    return position_;
}

void Mixer::setObserver(MixerObserver* observer) {
    const std::lock_guard lock(mutex_);
    observer_ = observer;
}

Mixer::VoiceRef Mixer::add(std::unique_ptr<SoundStream> sound, std::string name, float volume) {
    removeStopped();
    const VoiceRef voice(new Voice(std::move(sound), std::move(name), volume));
    voice->number_ = ++lastNumber_;
    if (observer_ != nullptr) {
        MixerObserver::Start start{voice->number_, voice->name_, volume, position_, {}};
        for (const Entry& entry : entries_) {
            if (const VoiceRef other = entry.voice.lock()) {
                start.over.push_back(other->name_);
            }
        }
        observer_->voiceStarted(start);
    }
    entries_.push_back({voice, nullptr, voice->number_});
    return voice;
}

void Mixer::removeStopped() {
    std::erase_if(entries_, [this](const Entry& entry) {
        if (!entry.voice.expired()) {
            return false;
        }
        end(entry.number, position_, VoiceEnding::stopped);
        return true;
    });
}

void Mixer::end(std::uint64_t number, std::uint64_t frame, VoiceEnding ending) {
    if (observer_ != nullptr) {
        observer_->voiceEnded(number, frame, ending);
    }
}

}  // namespace velmoranth::desktop
