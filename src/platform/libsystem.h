// libSystem: ids, modes, folders, the machine's name, the home directory, the main queue.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace velmoranth::platform {

class LibSystem {
  public:
    LibSystem() = default;
    LibSystem(const LibSystem&) = delete;
    LibSystem& operator=(const LibSystem&) = delete;
    virtual ~LibSystem() = default;

    // As the calls of the same names: 0 on success, -1 on failure.
    virtual int setuid(unsigned id) = 0;
    virtual int setgid(unsigned id) = 0;
    virtual int chmod(const std::string& path, unsigned mode) = 0;
    virtual int mkdir(const std::string& path, unsigned mode) = 0;

    // The `machine` field of uname(), read as UTF-8, for example "iPhone11,2".
    [[nodiscard]] virtual std::string machine() = 0;
    // NSHomeDirectory(), for example "/var/mobile".
    [[nodiscard]] virtual std::string homeDirectory() = 0;

    // dispatch_after with dispatch_time(DISPATCH_TIME_NOW, nanoseconds) on the main queue: `block`
    // runs on the main thread no earlier than that, never from inside this call.
    virtual void dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                          const std::function<void()>& block) = 0;
};

}  // namespace velmoranth::platform
