// velmoranth device init
#include "cli/commands.h"
#include "cli/messages.h"
#include "desktop/files/create_device_root.h"

#include <array>

namespace velmoranth::cli {
namespace {

ExitCode runDeviceInit(const Arguments& arguments) {
    const std::string& folder = arguments.positionals().front();
    const auto root = desktop::createDeviceRoot(folder);
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    print(shown(folder) + ": a fresh device\n");
    return ExitCode::done;
}

constexpr std::array<std::string_view, 3> kExamples{
    "velmoranth device init mydevice",
    "cp -r MyTheme.theme mydevice/Library/Themes/",
    "velmoranth preview --root mydevice --follow",
};

}  // namespace

Command deviceInitCommand() {
    return {.name = "device init",
            .summary = "Lay out the file system of a fresh device in a folder, for --root.",
            .positionalNames = "DIR",
            .description = "DIR is made when it is missing and must be empty otherwise.",
            .options = {},
            .examples = kExamples,
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runDeviceInit};
}

}  // namespace velmoranth::cli
