// The audio session and players, every message in the journal. A player is made for every file that
// the device has and for data that is there, whatever they hold; nothing is heard.
#pragma once

#include "platform/av_foundation.h"
#include "tests/support/journal.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velmoranth::tests {

class RecordingAudioSession final : public platform::AudioSession {
  public:
    explicit RecordingAudioSession(Journal& journal) : journal_(journal) {}

    [[nodiscard]] std::string className() const override { return "AVAudioSession"; }

    bool setCategory(const std::string& category) override;
    bool setActive(bool active) override;

    // What the session answers.
    bool succeeds = true;

  private:
    Journal& journal_;
};

// Says in the journal when it is gone.
class RecordingAudioPlayer final : public platform::AudioPlayer {
  public:
    // `journalIsThere` turns false with the journal: the engine keeps its last player to the end of
    // the process.
    RecordingAudioPlayer(
        Journal& journal, std::string name,
        std::shared_ptr<const bool> journalIsThere = std::make_shared<const bool>(true))
        : journal_(journal), name_(std::move(name)), journalIsThere_(std::move(journalIsThere)) {}

    ~RecordingAudioPlayer() override;

    [[nodiscard]] std::string className() const override { return "AVAudioPlayer"; }

    void setVolume(float volume) override;
    void setDelegate(platform::Object& delegate) override;
    bool prepareToPlay() override;
    bool play() override;

    // Not owned; null until set.
    [[nodiscard]] const platform::Object* delegate() const { return delegate_; }

    [[nodiscard]] float volume() const { return volume_; }

    // The file, or "data of N bytes".
    [[nodiscard]] const std::string& name() const { return name_; }

  private:
    Journal& journal_;
    std::string name_;
    std::shared_ptr<const bool> journalIsThere_;
    const platform::Object* delegate_ = nullptr;
    float volume_ = 1;
};

class RecordingAudio final : public platform::Audio {
  public:
    // Whether a file of the device is there (and no folder).
    using IsFile = std::function<bool(const std::string& path)>;

    RecordingAudio(Journal& journal, IsFile isFile)
        : journal_(journal),
          isFile_(std::move(isFile)),
          session_(std::make_shared<RecordingAudioSession>(journal)) {}

    ~RecordingAudio() override { *isThere_ = false; }

    [[nodiscard]] platform::AudioSessionRef sharedInstance() override;
    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithContentsOfURL(
        const std::string& path) override;
    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<platform::Data>& data) override;

    [[nodiscard]] const std::shared_ptr<RecordingAudioSession>& session() const { return session_; }

  private:
    Journal& journal_;
    IsFile isFile_;
    std::shared_ptr<RecordingAudioSession> session_;
    std::shared_ptr<bool> isThere_ = std::make_shared<bool>(true);
};

}  // namespace velmoranth::tests
