// The question the other way round: which request opens a file of a theme, on which devices. Every
// request that the file's name could be meant for is sent to every kind of device, and what these
// have opened is looked through.
#pragma once

#include "cli/explanation.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

// A request that opens the file, on a device.
struct Opening {
    simulator::Question question;
    std::string device;  // "phone", "pad"
    int system = 13;     // iOS

    friend bool operator==(const Opening&, const Opening&) = default;
};

struct FileExplanation {
    std::string theme;
    std::string name;  // in the theme
    std::vector<Opening> openings;
    // Why it gives no picture where it is opened; "" when it gives one.
    std::string problem;
    // Without openings: names that are looked for in its place, the nearest first.
    std::vector<std::string> wanted;
};

// The path is one of this machine below a theme's folder, or one in the theme. A problem when no
// theme has such a file.
[[nodiscard]] desktop::Result<FileExplanation> explainFile(const Investigation& investigation,
                                                           const std::string& path);

[[nodiscard]] std::string textOf(const FileExplanation& explanation);
[[nodiscard]] std::string jsonOf(const FileExplanation& explanation);

}  // namespace velmoranth::cli
