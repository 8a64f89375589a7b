// velmoranth device respring
#include "cli/commands.h"
#include "cli/messages.h"
#include "cli/settings_device.h"
#include "simulator/process/launcher.h"

#include <array>
#include <string>

namespace velmoranth::cli {
namespace {

ExitCode runDeviceRespring(const Arguments& arguments) {
    const auto folder = arguments.value("--root");
    if (!folder) {
        return fail(ExitCode::wrongUsage,
                    "velmoranth device respring needs --root DIR, the device to start again");
    }
    const auto root = openSettingsDevice(*folder);
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    const auto told = simulator::respring(**root);
    if (!told) {
        return fail(ExitCode::badInput, told.error());
    }
    if (*told == 0) {
        return fail(ExitCode::nothingFound,
                    shown(*folder) + ": no screen of this device is running");
    }
    print(shown(*folder) + ": " + counted(static_cast<std::size_t>(*told), "screen") +
          (*told == 1 ? " starts again\n" : " start again\n"));
    return ExitCode::done;
}

constexpr std::array<Option, 1> kRespringOptions{{{"--root", "", "DIR", "the device"}}};

}  // namespace

Command deviceRespringCommand() {
    return {.name = "device respring",
            .summary = "Start the running screens of a device again.",
            .positionalNames = "",
            .description =
                "A screen that velmoranth preview --follow shows forgets what it has made, as a "
                "phone's home screen does,\nand is drawn anew: this shows the settings that a "
                "screen takes when it starts. The exit code is 1 when none\nis running.",
            .options = kRespringOptions,
            .examples = {"velmoranth device respring --root mydevice",
                         "velmoranth device respring --root ./phones/first"},
            .run = runDeviceRespring};
}

}  // namespace velmoranth::cli
