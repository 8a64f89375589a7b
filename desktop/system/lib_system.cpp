#include "desktop/system/lib_system.h"

#include <cerrno>
#include <utility>

namespace velmoranth::desktop {

DesktopLibSystem::DesktopLibSystem(std::shared_ptr<const DeviceRoot> root, std::string machine,
                                   std::string homeDirectory)
    : root_(std::move(root)),
      machine_(std::move(machine)),
      homeDirectory_(std::move(homeDirectory)) {}

int DesktopLibSystem::chmod(const std::string& path, unsigned mode) {
    const int error = root_->changeMode(path, mode);
    if (error != 0) {
        errno = error;
        return -1;
    }
    return 0;
}

int DesktopLibSystem::mkdir(const std::string& path, unsigned mode) {
    const int error = root_->makeFolder(path, mode);
    if (error != 0) {
        errno = error;
        return -1;
    }
    return 0;
}

void DesktopLibSystem::dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                                const std::function<void()>& block) {
    if (mainQueue_) {
        mainQueue_(static_cast<double>(nanoseconds) / 1e9, block);
    }
}

}  // namespace velmoranth::desktop
