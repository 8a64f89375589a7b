// Plays the mixer's sound on the machine's sound device. Nothing is opened, loaded or started
// before the first sound.
#pragma once

#include "desktop/audio/mixer.h"
#include "desktop/audio/sound_output.h"

#include <functional>
#include <memory>
#include <string>

namespace velmoranth::desktop {

class SdlOutput final : public SoundOutput {
  public:
    // `sayLine` is told, once, when there is no device to play on.
    SdlOutput(Mixer& mixer, std::function<void(const std::string& line)> sayLine);
    ~SdlOutput() override;

    // Opens the device the first time. Without one, sounds run their time in silence.
    void open() override;

    // Whether sounds are heard; false before open().
    [[nodiscard]] bool isHeard() const;

    // Seconds of sound that were pulled and may not have been heard yet.
    [[nodiscard]] double latency() const;

  private:
    struct Device;

    Mixer& mixer_;
    std::function<void(const std::string& line)> sayLine_;
    std::unique_ptr<Device> device_;
};

}  // namespace velmoranth::desktop
