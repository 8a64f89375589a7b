// The shared audio session: remembers its category and whether it is active, and refuses what is no
// category as the platform does.
#pragma once

#include "platform/av_foundation.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::desktop {

class RecordedAudioSession final : public platform::AudioSession {
  public:
    [[nodiscard]] std::string className() const override { return "AVAudioSession"; }

    // False, and nothing changes, for a name that is no category of iOS 12 and 13.
    bool setCategory(const std::string& category) override;

    bool setActive(bool active) override {
        active_ = active;
        return true;
    }

    // The one in force; the platform's default until one is set.
    [[nodiscard]] const std::string& category() const { return category_; }

    [[nodiscard]] bool isActive() const { return active_; }

    // Every category asked for, refused ones included, in order.
    [[nodiscard]] const std::vector<std::string>& requests() const { return requests_; }

  private:
    std::string category_ = "AVAudioSessionCategorySoloAmbient";
    bool active_ = false;
    std::vector<std::string> requests_;
};

// Of a process that plays nothing.
class SilentAudio final : public platform::Audio {
  public:
    [[nodiscard]] platform::AudioSessionRef sharedInstance() override { return session_; }

    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithContentsOfURL(
        const std::string& /*path*/) override {
        return nullptr;
    }

    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<platform::Data>& /*data*/) override {
        return nullptr;
    }

  private:
    platform::AudioSessionRef session_ = std::make_shared<RecordedAudioSession>();
};

}  // namespace velmoranth::desktop
