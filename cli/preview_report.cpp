#include "cli/preview_report.h"

#include "cli/device_check.h"
#include "cli/mask_report.h"
#include "cli/messages.h"
#include "cli/switches.h"
#include "cli/theme_report.h"

#include <memory>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;

namespace {

// As MoreBehind has it.
std::string explainCommandFor(const PreviewOptions& options) {
    std::string command = "velmoranth explain ";
    for (const std::string& theme : options.themes) {
        command += forShell(theme) + " ";
    }
    if (!options.root.empty()) {
        command += "--root " + forShell(options.root) + " ";
    }
    for (const auto& [option, value] : options.deviceWords) {
        command += option + " " + (value.empty() ? "" : forShell(value) + " ");
    }
    return command + "-- ";
}

struct Asked {
    std::string command;
    simulator::DeviceConfiguration device;
    std::vector<simulator::NamedApp> apps;
    bool isUsers = false;  // the device
};

// Of a device of the user's without a theme, or with theming off, there is nothing to say: a
// warning has said so.
PreviewReport::Found findOut(const desktop::DeviceRoot& root, const Asked& asked) {
    const auto copy = makeDeviceLike(root);
    if (!copy) {
        return {.lines = {}, .problem = copy.error()};
    }
    const Investigation investigation{*copy, asked.device, settingsOn(root)};
    if (copy->themes.empty() || (asked.isUsers && !isSwitchOn(investigation, "enable"))) {
        return {};
    }
    const ThemeReport report = reportThemes(investigation, asked.apps);
    PreviewReport::Found found{.lines = linesOf(report, {asked.command, copy->themes.size()}),
                               .problem = report.failure};
    if (std::string line = judgeMask(investigation, report.effects); !line.empty()) {
        found.lines.push_back(std::move(line));
    }
    return found;
}

}  // namespace

PreviewReport::PreviewReport(const PreviewOptions& options, const DeviceOfRun& device) {
    if (options.isQuiet || options.kind == PreviewKind::stock) {
        return;
    }
    found_ =
        std::async(std::launch::async,
                   [root = device.root, asked = Asked{explainCommandFor(options), options.device,
                                                      options.screen.apps, !options.root.empty()}] {
                       return findOut(*root, asked);
                   });
}

PreviewReport::Found PreviewReport::find() {
    if (!found_.valid()) {
        return {};
    }
    Found found = found_.get();
    if (found.problem) {
        found.problem->message =
            "not all that the themes did could be found out: " + found.problem->message;
    }
    return found;
}

Result<void> PreviewReport::tell() {
    const Found found = find();
    for (const std::string& line : found.lines) {
        note(line);
    }
    return found.problem ? tl::unexpected(*found.problem) : Result<void>();
}

}  // namespace velmoranth::cli
