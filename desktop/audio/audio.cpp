#include "desktop/audio/audio.h"

#include "desktop/audio/sound_decoder.h"
#include "desktop/audio/sound_file.h"

#include "record/operations.h"
#include "record/recorder.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmoranth::desktop {

namespace {

// Its mixer and output outlive it.
class DesktopAudioPlayer final : public platform::AudioPlayer {
  public:
    DesktopAudioPlayer(SoundFile file, std::unique_ptr<SoundDecoder> decoder, Mixer& mixer,
                       SoundOutput& output, std::shared_ptr<platform::AudioSession> session)
        : file_(std::move(file)),
          decoder_(std::move(decoder)),
          mixer_(mixer),
          output_(output),
          session_(std::move(session)) {}

    [[nodiscard]] std::string className() const override { return "AVAudioPlayer"; }

    void setVolume(float volume) override {
        record::tell(*this, record::messageOf("AudioPlayer", "setVolume"), volume);
        volume_ = std::isnan(volume) ? 0 : std::clamp(volume, 0.0F, 1.0F);
        if (voice_ != nullptr) {
            voice_->setVolume(volume_);
        }
    }

    // Neither kept nor called: no delegate here handles what a player has to tell.
    void setDelegate(platform::Object& delegate) override {
        record::tell(*this, record::messageOf("AudioPlayer", "setDelegate"), delegate);
    }

    bool prepareToPlay() override {
        return record::tell(*this, record::messageOf("AudioPlayer", "prepareToPlay"))
            .answered(isPlaying() || prepare());
    }

    bool play() override {
        const record::Told told = record::tell(*this, record::messageOf("AudioPlayer", "play"));
        const record::InPlatform platform;
        return told.answered(isPlaying() || start());
    }

  private:
    [[nodiscard]] bool isPlaying() const { return voice_ != nullptr && voice_->isPlaying(); }

    // A decoder at the start of the sound.
    bool prepare() {
        if (decoder_ == nullptr) {
            auto decoder = SoundDecoder::open(file_, mixer_.sampleRate());
            if (decoder) {
                decoder_ = std::move(*decoder);
            }
        }
        return decoder_ != nullptr;
    }

    bool start() {
        if (!prepare()) {
            return false;
        }
        session_->setActive(true);
        output_.open();
        voice_ = mixer_.start(std::move(decoder_), file_.name(), volume_);
        return true;
    }

    const SoundFile file_;
    std::unique_ptr<SoundDecoder> decoder_;  // null once it plays
    Mixer& mixer_;
    SoundOutput& output_;
    const std::shared_ptr<platform::AudioSession> session_;
    float volume_ = 1;
    std::shared_ptr<Voice> voice_;
};

}  // namespace

DesktopAudio::DesktopAudio(std::shared_ptr<const DeviceRoot> root, Mixer& mixer,
                           SoundOutput& output)
    : root_(std::move(root)),
      mixer_(mixer),
      output_(output),
      session_(std::make_shared<RecordedAudioSession>(
          RecordedAudioSession::Device{.interruptOthers = [&mixer] { mixer.interruptOtherAudio(); },
                                       .isPlaying = [&mixer] { return mixer.isPlaying(); }})) {}

platform::AudioPlayerRef DesktopAudio::audioPlayerWithContentsOfURL(const std::string& path) {
    auto player = playerOf(SoundFile::open(*root_, path));
    record::noteTried(path, lastProblem_ ? lastProblem_->message : "");
    return player;
}

platform::AudioPlayerRef DesktopAudio::audioPlayerWithData(
    const std::optional<platform::Data>& data) {
    if (!data) {
        return playerOf(tl::unexpected(Problem{"no data"}));
    }
    return playerOf(SoundFile::ofData(*data, "data of " + std::to_string(data->size()) + " bytes"));
}

platform::AudioPlayerRef DesktopAudio::playerOf(const Result<SoundFile>& file) {
    auto decoder = file.and_then(
        [this](const SoundFile& sound) { return SoundDecoder::open(sound, mixer_.sampleRate()); });
    if (!decoder) {
        lastProblem_ = std::move(decoder.error());
        return nullptr;
    }
    lastProblem_.reset();
    return std::make_shared<DesktopAudioPlayer>(*file, std::move(*decoder), mixer_, output_,
                                                session_);
}

}  // namespace velmoranth::desktop
