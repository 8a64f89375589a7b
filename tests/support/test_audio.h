// An audio session and players that nobody hears. A player is made for every file that the device
// has and for data that is there, whatever they hold; records call it by that.
#pragma once

#include "platform/av_foundation.h"

#include "record/words.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace velmoranth::tests {

class TestAudioSession final : public platform::AudioSession {
  public:
    [[nodiscard]] std::string className() const override { return "AVAudioSession"; }

    bool setCategory(const std::string& category) override;
    bool setActive(bool active) override;

    // What the session answers.
    bool succeeds = true;
};

class TestAudioPlayer final : public platform::AudioPlayer, public record::Named {
  public:
    // Its own deallocation is told as a message.
    static constexpr const char* kDealloc = "-[AVAudioPlayer dealloc]";

    explicit TestAudioPlayer(std::string name, bool isNamed = true)
        : name_(std::move(name)), isNamed_(isNamed) {}

    TestAudioPlayer(const TestAudioPlayer&) = delete;
    TestAudioPlayer& operator=(const TestAudioPlayer&) = delete;
    ~TestAudioPlayer() override;

    [[nodiscard]] std::string className() const override { return "AVAudioPlayer"; }

    [[nodiscard]] std::string nameInRecords() const override { return isNamed_ ? name_ : ""; }

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
    const std::string name_;
    const bool isNamed_;
    const platform::Object* delegate_ = nullptr;
    float volume_ = 1;
};

class TestAudio final : public platform::Audio {
  public:
    // Whether a file of the device is there (and no folder).
    using IsFile = std::function<bool(const std::string& path)>;

    explicit TestAudio(IsFile isFile) : isFile_(std::move(isFile)) {}

    [[nodiscard]] platform::AudioSessionRef sharedInstance() override { return session_; }

    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithContentsOfURL(
        const std::string& path) override;
    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<platform::Data>& data) override;

    [[nodiscard]] const std::shared_ptr<TestAudioSession>& session() const { return session_; }

    // Whether records call the players by their files, or like any other object.
    bool namesPlayers = true;

  private:
    IsFile isFile_;
    std::shared_ptr<TestAudioSession> session_ = std::make_shared<TestAudioSession>();
};

}  // namespace velmoranth::tests
