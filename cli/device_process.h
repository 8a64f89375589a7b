// This program as a process of a device, without a screen: files, property lists, classes and
// hooking, the log and alerts are real, over the device's root; every other service has nothing and
// does nothing. What the process asked of the files can be read afterwards.
#pragma once

#include "cli/idle_platform.h"
#include "desktop/files/device_root.h"
#include "desktop/runtime/runtime.h"
#include "platform/av_foundation.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

enum class Writing {
    done,
    // Every change of a file is answered as if it had been made, and reading goes on as if it had;
    // the device stays as it is.
    answeredOnly,
};

// A question whether a file is there, and the answer.
struct FileProbe {
    std::string path;
    bool exists = false;

    friend bool operator==(const FileProbe&, const FileProbe&) = default;
};

class DeviceProcess {
  public:
    // Becomes the platform of this process, one at a time: once it has gone, the platform is there
    // for nobody until the next one comes. `audio` outlives it; null is a process
    // that plays nothing.
    DeviceProcess(const std::shared_ptr<const desktop::DeviceRoot>& root, Writing writing,
                  platform::Audio* audio = nullptr);
    ~DeviceProcess();
    DeviceProcess(const DeviceProcess&) = delete;
    DeviceProcess& operator=(const DeviceProcess&) = delete;

    [[nodiscard]] desktop::Runtime& runtime();

    // What happens when the engine's library is mapped: its classes, its hooks, its start.
    static void startEngine();

    // Since the process began, or since the last call.
    [[nodiscard]] std::vector<FileProbe> takeProbes();

    // The lines of the system log so far.
    [[nodiscard]] std::vector<std::string> log() const;

    // The message of the alert that is on the screen, which is dismissed.
    [[nodiscard]] std::optional<std::string> takeAlert();

  private:
    struct Services;
    std::unique_ptr<Services> services_;
};

}  // namespace velmoranth::cli
