#include "cli/settings_commands.h"

#include "cli/settings_values.h"
#include "desktop/files/cleanup.h"
#include "desktop/notifications/notification_center.h"

#include <algorithm>
#include <string>

namespace velmoranth::cli {

namespace {

struct Told {
    ExitCode code = ExitCode::done;
    int processes = 0;
};

Told tellProcesses(const desktop::DeviceRoot& root,
                   const std::vector<std::string_view>& notifications) {
    Told done;
    for (const std::string_view notification : notifications) {
        const std::string name(notification);
        const auto told = desktop::postToProcesses(root, name);
        if (!told) {
            done.code =
                fail(ExitCode::nothingFound,
                     "the preferences are changed, but running processes could not be told: " +
                         desktop::toLine(told.error()));
            continue;
        }
        done.processes = std::max(done.processes, *told);
        print(name + ": " + std::to_string(*told) + (*told == 1 ? " process" : " processes") +
              " told\n");
    }
    return done;
}

// What of the change a running screen does not show yet. Of themes it is said to whoever has one.
void noteRespring(const desktop::DeviceRoot& root, const PreferenceChange& change,
                  bool hasRunning) {
    std::string keys;
    std::string keysOfIcons;
    for (const SettingRow& row : core::kSettingRows) {
        const platform::PropertyList* const value = platform::objectForKey(change.after, row.key);
        const bool isChanged =
            takenValue(row.kind(), platform::objectForKey(change.before, row.key)) !=
            takenValue(row.kind(), value);
        if (!isChanged || row.shows == core::Shows::atOnce ||
            (row.shows == core::Shows::atOnceWhenOn && platform::boolValue(value))) {
            continue;
        }
        std::string& list = row.shows == core::Shows::iconsAtOnce ? keysOfIcons : keys;
        list += (list.empty() ? "" : ", ") + std::string(row.key);
    }
    const auto tell = [&](const std::string& list, const char* what) {
        if (!list.empty()) {
            note(list + ": a screen that is running shows " + what +
                 " after a respring (velmoranth device respring --root " +
                 forShell(root.hostFolder()) + ")");
        }
    };
    if (hasRunning) {
        tell(keysOfIcons, "icons at once, and all else");
    }
    tell(keys, "this");
}

}  // namespace

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

ExitCode tellOfChange(const desktop::DeviceRoot& root,
                      const std::vector<std::string_view>& notifications,
                      const PreferenceChange& change) {
    const Told told = tellProcesses(root, notifications);
    noteRespring(root, change, told.processes > 0);
    return told.code;
}

std::string whenShown(const SettingRow& row) {
    switch (row.shows) {
        case core::Shows::atOnce:
            return {};
        case core::Shows::iconsAtOnce:
            return "; a running screen shows icons at once, all else after a respring";
        case core::Shows::atOnceWhenOn:
            return "; switched off, a running screen shows it after a respring";
        case core::Shows::afterRespring:
            break;
    }
    return "; a running screen shows it after a respring";
}

void warnOfLink(const desktop::DeviceRoot& root) {
    if (kindAt(root, kLivePreferences) == ItemKind::link) {
        warn(shown(onThisMachine(root, kLivePreferences)) +
             ": this was a link; a file takes its place, and what it leads to stays as it is");
    }
}

}  // namespace velmoranth::cli
