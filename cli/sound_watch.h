// The sound of a process with everything noted that the process asks of it: which players it makes,
// of what, whether they could be made, how loud they play.
#pragma once

#include "desktop/audio/audio.h"
#include "desktop/result/result.h"
#include "platform/av_foundation.h"

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::cli {

// A player that was asked for.
struct PlayerRequest {
    std::string path;  // "" for one of data
    bool isMade = false;
    bool isStarted = false;                   // play was sent and succeeded
    float volume = 1;                         // when it was started
    std::optional<desktop::Problem> problem;  // why it could not be made
};

class WatchedAudio final : public platform::Audio {
  public:
    explicit WatchedAudio(desktop::DesktopAudio& audio) : audio_(audio) {}

    [[nodiscard]] platform::AudioSessionRef sharedInstance() override {
        return audio_.sharedInstance();
    }

    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithContentsOfURL(
        const std::string& path) override;
    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<platform::Data>& data) override;

    // The last one; null when none was asked for.
    [[nodiscard]] std::shared_ptr<const PlayerRequest> lastRequest() const { return last_; }

  private:
    platform::AudioPlayerRef noted(const platform::AudioPlayerRef& player, std::string path);

    desktop::DesktopAudio& audio_;
    std::shared_ptr<PlayerRequest> last_;
};

}  // namespace velmoranth::cli
