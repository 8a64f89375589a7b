// Progress of work that may be over before anyone wonders.
#pragma once

#include "cli/messages.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace velmoranth::cli {

// Says what is being done once that has taken half a second.
class LateProgress {
  public:
    void show(const std::string& what);
    // How many of how many things are done, as a bar, and how long the rest takes once that can be
    // told: "[##########--------------------] 12 of 36 pictures, 8 s left".
    void show(std::size_t done, std::size_t all, std::string_view noun);

    void clear() { line_.clear(); }

  private:
    [[nodiscard]] double secondsPassed() const;

    double shownAt_ = 0;  // how many of how many things, seconds

    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    ProgressLine line_;
};

}  // namespace velmoranth::cli
