#include "tests/support/journal.h"

#include <cstdio>

namespace velmoranth::tests {

namespace {

constexpr std::string_view kLogPrefix = "log: ";

}  // namespace

std::vector<std::string> Journal::linesWith(std::string_view prefix) const {
    std::vector<std::string> found;
    for (const std::string& line : lines_) {
        if (line.starts_with(prefix)) {
            found.push_back(line);
        }
    }
    return found;
}

std::size_t Journal::count(std::string_view prefix) const {
    return linesWith(prefix).size();
}

std::vector<std::string> Journal::log() const {
    std::vector<std::string> lines = linesWith(kLogPrefix);
    for (std::string& line : lines) {
        line.erase(0, kLogPrefix.size());
    }
    return lines;
}

std::string text(double number) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%g", number);
    return buffer;
}

std::string text(const platform::Rect& rect) {
    return "{" + text(rect.origin.x) + ", " + text(rect.origin.y) + ", " + text(rect.size.width) +
           ", " + text(rect.size.height) + "}";
}

std::string text(platform::Size size) {
    return "{" + text(size.width) + ", " + text(size.height) + "}";
}

std::string modeText(unsigned mode) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%04o", mode);
    return buffer;
}

}  // namespace velmoranth::tests
