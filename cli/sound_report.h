// What happened when a device was to make a sound: which files it looked for, which it played or
// why it stayed silent, and whether the system's own sound plays. Everything here was observed.
#pragma once

#include "cli/sound_events.h"
#include "cli/sound_process.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"

#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

// What is played of one sound at most; longer ones are cut off. Seconds.
inline constexpr double kLongestSound = 300;

// A sound file as it was decoded to its end.
struct SoundDetails {
    std::string codec;  // "IMA4"
    int channels = 0;
    int sampleRate = 0;  // Hz
    double seconds = 0;
    bool isCutOff = false;                    // at kLongestSound
    std::optional<desktop::Problem> problem;  // why it ends early
};

[[nodiscard]] desktop::Result<SoundDetails> examineSound(const desktop::DeviceRoot& root,
                                                         const std::string& devicePath);

struct SoundReport {
    SoundEvent event;
    bool isThemingOn = false;  // as the engine has it
    std::vector<FileProbe> probes;
    std::optional<PlayerRequest> player;  // none when none was asked for
    std::string file;                     // that the player was to play; "" without one
    bool playsSystemSound = false;
    std::optional<SoundDetails> details;  // of the file, when it plays
    std::optional<bool> isHeard = {};     // by who sits at this machine, when it was played there

    [[nodiscard]] bool isPlayed() const { return player && player->isStarted; }
};

// Why nothing of a theme or of the panel is heard; "" when something is.
[[nodiscard]] std::string whySilent(const SoundReport& report);

// Lines for a person.
[[nodiscard]] std::string reportAsText(const SoundReport& report);

// Text in JSON; `output` is the file that the sound was written to, "" for none.
[[nodiscard]] std::string reportAsJson(const SoundReport& report, const std::string& output);

}  // namespace velmoranth::cli
