#include "tests/support/recording_audio.h"

#include "record/operations.h"
#include "record/recorder.h"

#include <array>
#include <cstdio>

namespace velmoranth::tests {

bool RecordingAudioSession::setCategory(const std::string& category) {
    record::tell(*this, record::messageOf("AudioSession", "setCategory"), category);
    journal_.write("session category " + category);
    return succeeds;
}

bool RecordingAudioSession::setActive(bool active) {
    record::tell(*this, record::messageOf("AudioSession", "setActive"), active);
    journal_.write(active ? "session active" : "session inactive");
    return succeeds;
}

RecordingAudioPlayer::~RecordingAudioPlayer() {
    if (*journalIsThere_) {
        journal_.write("player gone " + name_);
    }
}

void RecordingAudioPlayer::setVolume(float volume) {
    record::tell(*this, record::messageOf("AudioPlayer", "setVolume"), static_cast<double>(volume));
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.9g", static_cast<double>(volume));
    journal_.write("player volume " + std::string(text.data()));
    volume_ = volume;
}

void RecordingAudioPlayer::setDelegate(platform::Object& delegate) {
    record::tell(*this, record::messageOf("AudioPlayer", "setDelegate"), delegate);
    journal_.write("player delegate " + delegate.className());
    delegate_ = &delegate;
}

bool RecordingAudioPlayer::prepareToPlay() {
    record::tell(*this, record::messageOf("AudioPlayer", "prepareToPlay"));
    journal_.write("player prepare " + name_);
    return true;
}

bool RecordingAudioPlayer::play() {
    record::tell(*this, record::messageOf("AudioPlayer", "play"));
    journal_.write("player play " + name_);
    return true;
}

platform::AudioSessionRef RecordingAudio::sharedInstance() {
    journal_.write("session shared");
    return session_;
}

platform::AudioPlayerRef RecordingAudio::audioPlayerWithContentsOfURL(const std::string& path) {
    journal_.write("player of file " + path);
    return isFile_(path) ? std::make_shared<RecordingAudioPlayer>(journal_, path, isThere_)
                         : nullptr;
}

platform::AudioPlayerRef RecordingAudio::audioPlayerWithData(
    const std::optional<platform::Data>& data) {
    const std::string name =
        data ? "data of " + std::to_string(data->size()) + " bytes" : std::string("nil data");
    journal_.write("player of " + name);
    return data ? std::make_shared<RecordingAudioPlayer>(journal_, name, isThere_) : nullptr;
}

}  // namespace velmoranth::tests
