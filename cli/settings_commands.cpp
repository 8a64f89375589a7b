#include "cli/settings_commands.h"

#include "cli/settings_values.h"
#include "desktop/files/cleanup.h"
#include "desktop/notifications/notification_center.h"

#include <string>

namespace velmoranth::cli {

ExitCode withDevice(const Arguments& arguments, std::string_view command, const DeviceWork& work) {
    const auto folder = arguments.value("--root");
    if (!folder) {
        return fail(ExitCode::wrongUsage,
                    "velmoranth " + std::string(command) + " needs --root DIR, the device");
    }
    const auto root = openSettingsDevice(*folder);
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    // A file that may not grow so large is an error like others from here on.
    desktop::cleanUpOnSignals();
    return work(*root);
}

ExitCode withLockedDevice(const Arguments& arguments, std::string_view command,
                          const DeviceWork& work) {
    return withDevice(arguments, command, [&](const DeviceRef& root) {
        const auto lock = lockPreferences(*root);
        return lock ? work(root) : fail(ExitCode::badInput, lock.error());
    });
}

ExitCode tellProcesses(const desktop::DeviceRoot& root,
                       const std::vector<std::string_view>& notifications) {
    ExitCode code = ExitCode::done;
    for (const std::string_view notification : notifications) {
        const std::string name(notification);
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

std::string whenShown(const SettingRow& row) {
    switch (row.shows) {
        case core::Shows::atOnce:
            return {};
        case core::Shows::atOnceWhenOn:
            return "; switched off, a running screen shows it after a respring";
        case core::Shows::afterRespring:
            break;
    }
    return "; a running screen shows it after a respring";
}

void noteRespring(const desktop::DeviceRoot& root, const platform::Dictionary& before,
                  const platform::Dictionary& after) {
    std::string keys;
    for (const SettingRow& row : core::kSettingRows) {
        const platform::PropertyList* const value = platform::objectForKey(after, row.key);
        const bool isChanged = takenValue(row.kind(), platform::objectForKey(before, row.key)) !=
                               takenValue(row.kind(), value);
        if (isChanged &&
            (row.shows == core::Shows::afterRespring ||
             (row.shows == core::Shows::atOnceWhenOn && !platform::boolValue(value)))) {
            keys += (keys.empty() ? "" : ", ") + std::string(row.key);
        }
    }
    if (!keys.empty()) {
        note(keys +
             ": a screen that is running shows this after a respring (velmoranth device "
             "respring --root " +
             forShell(root.hostFolder()) + ")");
    }
}

void warnOfLink(const desktop::DeviceRoot& root) {
    if (kindAt(root, kLivePreferences) == ItemKind::link) {
        warn(shown(onThisMachine(root, kLivePreferences)) +
             ": this was a link; a file takes its place, and what it leads to stays as it is");
    }
}

}  // namespace velmoranth::cli
