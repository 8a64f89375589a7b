// Lines of the journal that most look-ups write, and what the tests compare them with.
#pragma once

#include <string>
#include <vector>

namespace velmoranth::tests {

using Lines = std::vector<std::string>;

inline constexpr const char* kReadPreferences =
    "+[NSDictionary dictionaryWithContentsOfFile:] "
    "/User/Library/Preferences/com.qor.velmoranthprefs.plist";

// The lists one after another.
[[nodiscard]] inline Lines joined(const std::vector<Lines>& parts) {
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

}  // namespace velmoranth::tests
