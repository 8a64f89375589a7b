// libSystem over a device root: modes and folders apply inside it, a change of ids succeeds without
// being one, the machine, the home directory and the main queue are given.
#pragma once

#include "desktop/files/device_root.h"
#include "platform/libsystem.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace velmoranth::desktop {

class DesktopLibSystem : public platform::LibSystem {
  public:
    // Runs the block after so many seconds on the main thread, never from inside the call.
    using MainQueue = std::function<void(double seconds, std::function<void()> block)>;

    DesktopLibSystem(std::shared_ptr<const DeviceRoot> root, std::string machine,
                     std::string homeDirectory);

    // What is asked for before that never runs: the process has no main loop.
    void setMainQueue(MainQueue mainQueue) { mainQueue_ = std::move(mainQueue); }

    int setuid(unsigned /*id*/) override { return 0; }

    int setgid(unsigned /*id*/) override { return 0; }

    // errno is set on failure; links are followed inside the root.
    int chmod(const std::string& path, unsigned mode) override;
    int mkdir(const std::string& path, unsigned mode) override;

    [[nodiscard]] std::string machine() override { return machine_; }

    [[nodiscard]] std::string homeDirectory() override { return homeDirectory_; }

    void dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                  const std::function<void()>& block) override;

  private:
    std::shared_ptr<const DeviceRoot> root_;
    std::string machine_;
    std::string homeDirectory_;
    MainQueue mainQueue_;
};

}  // namespace velmoranth::desktop
