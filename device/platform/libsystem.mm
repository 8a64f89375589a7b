// The C library's calls, the home directory and the main queue.
#include "device/platform/services.h"
#include "device/platform/signed_pointers.h"
#include "device/platform/text.h"
#import <Foundation/Foundation.h>
#include <dispatch/dispatch.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <string>

namespace velmoranth::device {
namespace {

// A path ends at its first U+0000; with more behind that it would lead elsewhere than it says.
bool isPath(const std::string& path) {
    if (path.find('\0') == std::string::npos) {
        return true;
    }
    errno = EINVAL;
    return false;
}

class NativeLibSystem final : public platform::LibSystem {
  public:
    int setuid(unsigned id) override { return ::setuid(id); }

    int setgid(unsigned id) override { return ::setgid(id); }

    int chmod(const std::string& path, unsigned mode) override {
        return isPath(path) ? ::chmod(path.c_str(), static_cast<mode_t>(mode)) : -1;
    }

    int mkdir(const std::string& path, unsigned mode) override {
        return isPath(path) ? ::mkdir(path.c_str(), static_cast<mode_t>(mode)) : -1;
    }

    std::string machine() override {
        struct utsname names = {};
        return ::uname(&names) < 0 ? std::string() : std::string(names.machine);
    }

    std::string homeDirectory() override { return textOf(NSHomeDirectory()).value_or(""); }

    void dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                  const std::function<void()>& block) override {
        if (!block) {
            return;
        }
        const std::function<void()> work = block;  // the block keeps a copy of its own
        dispatch_after(dispatch_time(DISPATCH_TIME_NOW, nanoseconds), dispatch_get_main_queue(),
                       signedBlock(^{
                         @autoreleasepool {
                             work();
                         }
                       }));
    }
};

}  // namespace

platform::LibSystem& libSystem() {
    return theOne<NativeLibSystem>();
}

}  // namespace velmoranth::device
