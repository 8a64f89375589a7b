// velmoranth device init
#include "cli/commands.h"
#include "cli/device_layout.h"
#include "cli/messages.h"
#include "desktop/files/cleanup.h"
#include "desktop/files/create_device_root.h"

namespace velmoranth::cli {
namespace {

ExitCode runDeviceInit(const Arguments& arguments) {
    const std::string& folder = arguments.positionals().front();
    const auto files = findInstalledFiles();
    if (!files) {
        return fail(ExitCode::badInput, files.error());
    }
    const auto root = [&] {
        const desktop::SignalsHeld whole;  // a device is there whole or not at all
        return desktop::createDeviceRoot(folder, *files);
    }();
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    print(shown(folder) + ": a fresh device\n");
    return ExitCode::done;
}

}  // namespace

Command deviceInitCommand() {
    return {.name = "device init",
            .summary = "Lay out the file system of a fresh device in a folder, for --root.",
            .positionalNames = "DIR",
            .description =
                "DIR is made when it is missing and must be empty otherwise. The device gets "
                "the factory preferences, the\ncalendar's settings and the settings "
                "panel's sounds.",
            .options = {},
            .examples = {"velmoranth device init mydevice",
                         "velmoranth device install MyTheme.theme --root mydevice",
                         "velmoranth settings set ActiveThemes=MyTheme.theme --root mydevice",
                         "velmoranth preview --root mydevice --follow"},
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runDeviceInit};
}

}  // namespace velmoranth::cli
