// The question the other way round: which request opens a file of a theme, on which devices. Every
// request that the file's name could be meant for is sent to every device, and what these have
// opened is looked through. Of a file that none opens the reason is found as explain finds it: by
// asking devices with the file alone, with settings turned, and for what they do not have.
#pragma once

#include "cli/device_options.h"
#include "cli/explanation.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// A request that opens the file, on a device.
struct Opening {
    simulator::Question question;
    std::string device;  // "phone", "pad"
    int system = 13;     // iOS
    // Whether the device asks so by itself; otherwise only an app that it does not have does.
    bool isOwn = true;

    friend bool operator==(const Opening&, const Opening&) = default;
};

// A file that is taken in the place of the one that was asked about, since it lies beside it with
// the screen's scale in its name.
struct TakenBeside {
    Opening opening;
    std::string file;  // in the theme

    friend bool operator==(const TakenBeside&, const TakenBeside&) = default;
};

// A setting with whose other value a request opens the file.
struct FileSwitch {
    std::string_view key;
    bool isOn = false;  // now
    simulator::Question question;
};

// A file that a request opens in place of the one that was asked about.
struct HidingFile {
    AskedFile file;
    simulator::Question question;
};

struct FileExplanation {
    std::string theme;
    std::string name;  // in the theme
    std::vector<Opening> openings;
    // Why it gives no picture where it is opened; "" when it gives one.
    std::string problem;
    // Requests that look for it and take another one. Without openings it is of use nevertheless:
    // where no such name is beside it.
    std::vector<TakenBeside> beside;
    // Without any of these:
    std::optional<HidingFile> hidden;
    std::optional<FileSwitch> reason;
    // What opens it once its theme is the first one.
    std::optional<simulator::Question> onceFirst;
    // Near names that are looked for, the nearest first.
    std::vector<std::string> wanted;
};

// The path is one of this machine below a theme's folder, or one in the theme. A problem when no
// theme has such a file. `devices` are asked in that order; of the investigation's own one nothing
// counts but its themes and settings, which change meanwhile.
[[nodiscard]] desktop::Result<FileExplanation> explainFile(const Investigation& investigation,
                                                           std::span<const NamedDevice> devices,
                                                           const std::string& path);

// Whether something looks for it: a device's own request, or one for what it does not have and
// where no name that it looks for is near.
[[nodiscard]] bool isOpened(const FileExplanation& explanation);

[[nodiscard]] std::string textOf(const FileExplanation& explanation);
[[nodiscard]] std::string jsonOf(const FileExplanation& explanation);

}  // namespace velmoranth::cli
