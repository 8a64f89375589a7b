// The platform's sound on Linux: players of files and of data over a mixer, and the one audio
// session of the process, which decides whether other audio of the device goes on.
#pragma once

#include "desktop/audio/audio_session.h"
#include "desktop/audio/mixer.h"
#include "desktop/audio/sound_file.h"
#include "desktop/audio/sound_output.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/av_foundation.h"

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::desktop {

class DesktopAudio final : public platform::Audio {
  public:
    // The mixer and the output outlive all players. The output is opened when a player plays for
    // the first time.
    DesktopAudio(std::shared_ptr<const DeviceRoot> root, Mixer& mixer, SoundOutput& output);

    [[nodiscard]] platform::AudioSessionRef sharedInstance() override { return session_; }

    // The file stays open while the player is there. Its voice has the path as its name.
    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithContentsOfURL(
        const std::string& path) override;
    // Its voice is called "data of N bytes".
    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<platform::Data>& data) override;

    [[nodiscard]] const std::shared_ptr<RecordedAudioSession>& session() const { return session_; }

    // Why the last player could not be made, which the platform's messages do not tell; none when
    // it could.
    [[nodiscard]] const std::optional<Problem>& lastProblem() const { return lastProblem_; }

  private:
    [[nodiscard]] platform::AudioPlayerRef playerOf(const Result<SoundFile>& file);

    std::shared_ptr<const DeviceRoot> root_;
    Mixer& mixer_;
    SoundOutput& output_;
    std::shared_ptr<RecordedAudioSession> session_;
    std::optional<Problem> lastProblem_;
};

}  // namespace velmoranth::desktop
