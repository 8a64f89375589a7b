// A process of a device, with everything noted that is asked of its files and of its sound. The
// device stays as it is: every change of a file is answered as if it had been made, and reading
// goes on as if it had.
#pragma once

#include "desktop/audio/audio.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "desktop/runtime/runtime.h"

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

// A player that was asked for.
struct PlayerRequest {
    std::string path;  // "" for one of data
    bool isMade = false;
    bool isStarted = false;                   // play was sent and succeeded
    float volume = 1;                         // when it was started
    std::optional<desktop::Problem> problem;  // why it could not be made
};

class WatchedProcess {
  public:
    // As DeviceProcess. `audio` outlives it.
    WatchedProcess(const std::shared_ptr<const desktop::DeviceRoot>& root,
                   desktop::DesktopAudio& audio);
    ~WatchedProcess();
    WatchedProcess(const WatchedProcess&) = delete;
    WatchedProcess& operator=(const WatchedProcess&) = delete;

    [[nodiscard]] desktop::Runtime& runtime();

    // What happens when the engine's library is mapped: its classes, its hooks, its start.
    static void startEngine();

    // Since the process began, or since the last call.
    [[nodiscard]] std::vector<FileProbe> takeProbes();

    // The last player; null when none was asked for.
    [[nodiscard]] std::shared_ptr<const PlayerRequest> lastRequest() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace velmoranth::cli
