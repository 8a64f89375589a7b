// libSystem over a device root: modes and folders apply inside it, ids are recorded and not carried
// out, the machine and the home directory are given.
#pragma once

#include "desktop/files/device_root.h"
#include "platform/libsystem.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace velmoranth::desktop {

class DesktopLibSystem final : public platform::LibSystem {
  public:
    DesktopLibSystem(std::shared_ptr<const DeviceRoot> root, std::string machine,
                     std::string homeDirectory);

    // Recorded, and successful.
    int setuid(unsigned id) override;
    int setgid(unsigned id) override;
    // errno is set on failure; links are followed inside the root.
    int chmod(const std::string& path, unsigned mode) override;
    int mkdir(const std::string& path, unsigned mode) override;

    [[nodiscard]] std::string machine() override { return machine_; }

    [[nodiscard]] std::string homeDirectory() override { return homeDirectory_; }

    // The ids asked for so far, in order.
    [[nodiscard]] std::vector<unsigned> userIds() const;
    [[nodiscard]] std::vector<unsigned> groupIds() const;

  private:
    std::shared_ptr<const DeviceRoot> root_;
    std::string machine_;
    std::string homeDirectory_;
    mutable std::mutex mutex_;
    std::vector<unsigned> userIds_;
    std::vector<unsigned> groupIds_;
};

}  // namespace velmoranth::desktop
