// The system's log, kept in memory. May be written to from any thread.
#pragma once

#include "platform/foundation.h"

#include <mutex>
#include <string>
#include <vector>

namespace velmoranth::desktop {

class LogToMemory final : public platform::SystemLog {
  public:
    void write(const std::string& line) override {
        const std::lock_guard lock(mutex_);
        lines_.push_back(line);
    }

    // The lines so far, without line ends.
    [[nodiscard]] std::vector<std::string> lines() const {
        const std::lock_guard lock(mutex_);
        return lines_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

}  // namespace velmoranth::desktop
