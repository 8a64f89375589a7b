// The shared audio session: remembers its category and whether it is active, and refuses what is no
// category as the platform does.
#pragma once

#include "platform/av_foundation.h"

#include <functional>
#include <string>
#include <vector>

namespace velmoranth::desktop {

class RecordedAudioSession final : public platform::AudioSession {
  public:
    // What the session does to the rest of the device. Either may be empty.
    struct Device {
        // The session is active and its category lets no other audio play.
        std::function<void()> interruptOthers;
        // Whether a sound of the process plays, which keeps the session active.
        std::function<bool()> isPlaying;
    };

    RecordedAudioSession() = default;

    explicit RecordedAudioSession(Device device) : device_(std::move(device)) {}

    [[nodiscard]] std::string className() const override { return "AVAudioSession"; }

    // False, and nothing changes, for a name that is no category of iOS 12 and 13.
    bool setCategory(const std::string& category) override;

    // False, and nothing changes, when it should become inactive while a sound plays.
    bool setActive(bool active) override;

    // The one in force; the platform's default until one is set.
    [[nodiscard]] const std::string& category() const { return category_; }

    [[nodiscard]] bool isActive() const { return active_; }

    // Every category asked for, refused ones included, in order.
    [[nodiscard]] const std::vector<std::string>& requests() const { return requests_; }

  private:
    void apply();

    Device device_;
    std::string category_ = "AVAudioSessionCategorySoloAmbient";
    bool active_ = false;
    std::vector<std::string> requests_;
};

}  // namespace velmoranth::desktop
