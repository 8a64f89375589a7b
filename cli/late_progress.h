// Progress of work that may be over before anyone wonders.
#pragma once

#include "cli/messages.h"

#include <chrono>
#include <string>

namespace velmoranth::cli {

// Says what is being done once that has taken half a second.
class LateProgress {
  public:
    void show(const std::string& what) {
        constexpr auto kLate = std::chrono::milliseconds(500);
        if (std::chrono::steady_clock::now() - start_ >= kLate) {
            line_.show(shown(what));
        }
    }

    void clear() { line_.clear(); }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    ProgressLine line_;
};

}  // namespace velmoranth::cli
