// A process of a device that is recorded while it makes its sound. The device stays as it is: every
// change of a file is answered as if it had been made. Reading goes on as if files and folders had
// been copied, moved and removed; what is written anew is not kept.
#pragma once

#include "desktop/audio/audio.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "desktop/runtime/runtime.h"

#include "record/entry.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

// A question whether a file is there, and the answer.
struct FileProbe {
    std::string path;
    bool exists = false;

    friend bool operator==(const FileProbe&, const FileProbe&) = default;
};

// The questions to the file manager, in order.
[[nodiscard]] std::vector<FileProbe> probesIn(const record::Record& record);

// A player that was asked for.
struct PlayerRequest {
    std::string path;                         // "" for one of data
    bool isStarted = false;                   // play was sent and succeeded
    float volume = 1;                         // when it was started
    std::optional<desktop::Problem> problem;  // why it could not be made
};

// The last one; none when none was asked for.
[[nodiscard]] std::optional<PlayerRequest> lastPlayerIn(const record::Record& record);

class SoundProcess {
  public:
    // As DeviceProcess. `audio` outlives it. Of the engine there is nothing yet.
    SoundProcess(const std::shared_ptr<const desktop::DeviceRoot>& root,
                 desktop::DesktopAudio& audio);
    ~SoundProcess();
    SoundProcess(const SoundProcess&) = delete;
    SoundProcess& operator=(const SoundProcess&) = delete;

    [[nodiscard]] desktop::Runtime& runtime();

    // What happens when the engine's library is mapped: its classes, its hooks, its start.
    static void startEngine();

    // What the process has done since the last call.
    [[nodiscard]] record::Record takeRecord();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace velmoranth::cli
