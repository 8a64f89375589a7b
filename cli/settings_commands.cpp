#include "cli/settings_commands.h"

#include "desktop/files/cleanup.h"
#include "desktop/notifications/notification_center.h"

#include <string>
#include <utility>

namespace velmoranth::cli {

GivenDevice givenDevice(const Arguments& arguments, std::string_view command) {
    const auto folder = arguments.value("--root");
    if (!folder) {
        return {nullptr, fail(ExitCode::wrongUsage, "velmoranth " + std::string(command) +
                                                        " needs --root DIR, the device")};
    }
    auto root = openSettingsDevice(*folder);
    if (!root) {
        return {nullptr, fail(ExitCode::badInput, root.error())};
    }
    // A file that may not grow so large is an error like others from here on.
    desktop::cleanUpOnSignals();
    return {std::move(*root)};
}

ExitCode tellProcesses(const desktop::DeviceRoot& root,
                       const std::vector<Notification>& notifications) {
    ExitCode code = ExitCode::done;
    for (const Notification notification : notifications) {
        const std::string name(nameOf(notification));
        const auto told = desktop::postToProcesses(root, name);
        if (!told) {
            code = fail(ExitCode::nothingFound,
                        "the preferences are changed, but running processes could not be told: " +
                            desktop::toLine(told.error()));
            continue;
        }
        print(name + ": " + std::to_string(*told) + (*told == 1 ? " process" : " processes") +
              " told\n");
    }
    return code;
}

void warnOfLink(const desktop::DeviceRoot& root) {
    if (kindAt(root, kLivePreferences) == ItemKind::link) {
        warn(shown(onThisMachine(root, kLivePreferences)) +
             ": this was a link; a file takes its place, and what it leads to stays as it is");
    }
}

}  // namespace velmoranth::cli
