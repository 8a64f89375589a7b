#include "tests/support/test_audio.h"

#include "record/operations.h"
#include "record/recorder.h"

namespace velmoranth::tests {

using record::messageOf;

bool TestAudioSession::setCategory(const std::string& category) {
    return record::tell(*this, messageOf("AudioSession", "setCategory"), category)
        .answered(succeeds);
}

bool TestAudioSession::setActive(bool active) {
    return record::tell(*this, messageOf("AudioSession", "setActive"), active).answered(succeeds);
}

TestAudioPlayer::~TestAudioPlayer() {
    if (isNamed_) {
        record::tell(*this, kDealloc);
    }
}

void TestAudioPlayer::setVolume(float volume) {
    record::tell(*this, messageOf("AudioPlayer", "setVolume"), volume);
    volume_ = volume;
}

void TestAudioPlayer::setDelegate(platform::Object& delegate) {
    record::tell(*this, messageOf("AudioPlayer", "setDelegate"), delegate);
    delegate_ = &delegate;
}

bool TestAudioPlayer::prepareToPlay() {
    return record::tell(*this, messageOf("AudioPlayer", "prepareToPlay")).answered(true);
}

bool TestAudioPlayer::play() {
    return record::tell(*this, messageOf("AudioPlayer", "play")).answered(true);
}

platform::AudioPlayerRef TestAudio::audioPlayerWithContentsOfURL(const std::string& path) {
    return isFile_(path) ? std::make_shared<TestAudioPlayer>(path, namesPlayers) : nullptr;
}

platform::AudioPlayerRef TestAudio::audioPlayerWithData(const std::optional<platform::Data>& data) {
    return data ? std::make_shared<TestAudioPlayer>(
                      "data of " + std::to_string(data->size()) + " bytes", namesPlayers)
                : nullptr;
}

}  // namespace velmoranth::tests
