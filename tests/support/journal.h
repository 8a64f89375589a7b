// What the engine asked the platform for, in order: one line a call, written by recording services
// that pass the call on to the real ones. "load /Library/Themes/A/IconBundles/x-large.png", "log:
// …".
#pragma once

#include "platform/core_graphics.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::tests {

class Journal {
  public:
    // On any thread; what was written is read once those are at rest.
    void write(std::string line) {
        const std::scoped_lock lock(mutex_);
        lines_.push_back(std::move(line));
    }

    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; }

    // The lines that begin with `prefix`, whole.
    [[nodiscard]] std::vector<std::string> linesWith(std::string_view prefix) const;
    [[nodiscard]] std::size_t count(std::string_view prefix) const;
    // The log lines, without their "log: ".
    [[nodiscard]] std::vector<std::string> log() const;

    void clear() { lines_.clear(); }

  private:
    std::mutex mutex_;
    std::vector<std::string> lines_;
};

// "60" or "60.5".
[[nodiscard]] std::string text(double number);
// "{0, 0, 60, 60}".
[[nodiscard]] std::string text(const platform::Rect& rect);
// "{60, 60}".
[[nodiscard]] std::string text(platform::Size size);
// "0755".
[[nodiscard]] std::string modeText(unsigned mode);

}  // namespace velmoranth::tests
