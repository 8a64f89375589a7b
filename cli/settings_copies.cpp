// velmoranth settings save, rename, delete and restore
#include "cli/commands.h"
#include "cli/device_process.h"
#include "cli/nearest.h"
#include "cli/settings_commands.h"
#include "core/preferences.h"
#include "desktop/files/cleanup.h"
#include "filemanager/velmoranth_file_manager.h"
#include "platform/platform.h"

#include <fmt/core.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using filemanager::VelmoranthFileManager;

namespace {

// What is wrong with a name; "" for nothing.
std::string faultOf(const std::string& name) {
    if (name.empty()) {
        return "a saved copy needs a name, and this one is empty";
    }
    if (name == "." || name == ".." || name.find('/') != std::string::npos || !isPlainText(name)) {
        return "a saved copy's name is plain text without slashes, which " + inQuotes(name) +
               " is not";
    }
    return {};
}

// The path of a saved copy on this machine, for a message.
std::string placeOf(const DeviceRoot& root, std::string_view name) {
    return shown(onThisMachine(root, core::savedCopyPath(name)));
}

// What to do about a failure that the panel shows in an alert, by what is there.
std::string adviceFor(const DeviceRoot& root, const std::string& from, const std::string& to) {
    constexpr std::size_t kLongestFileName = 255;
    if (to.size() - (to.rfind('/') + 1) > kLongestFileName) {
        return "take a shorter name";
    }
    if (kindAt(root, from) == ItemKind::none) {
        return from == kLivePreferences
                   ? "there are no preferences yet; velmoranth settings restore or set makes them"
                   : "velmoranth settings list shows the saved copies";
    }
    return (kindAt(root, kSavedFolder) == ItemKind::none ? "make the folder "
                                                         : "see who may write to ") +
           shown(onThisMachine(root, kSavedFolder));
}

// Does the work, while nobody else changes the preferences, when every name that is given is one.
ExitCode withNames(const Arguments& arguments, std::string_view command, const DeviceWork& work) {
    for (const std::string& name : arguments.positionals()) {
        if (const std::string fault = faultOf(name); !fault.empty()) {
            return fail(ExitCode::wrongUsage, fault);
        }
    }
    return withLockedDevice(arguments, command, work);
}

// What is said of an operation on the saved copy `name`.
struct Report {
    std::string_view name;
    std::string_view done;     // "deleted"
    std::string_view notDone;  // "not deleted"
};

// Runs one operation of the settings panel, which takes a file from one place to another. The
// reason of a failure is the panel's alert.
ExitCode runInPanel(const DeviceRef& root, const Report& report, const std::string& from,
                    const std::string& to, const std::function<bool()>& operation) {
    DeviceProcess process(root);
    if (operation()) {
        print(fmt::format("{}: {}\n", report.name, report.done));
        return ExitCode::done;
    }
    return fail(ExitCode::badInput,
                fmt::format("{}: {}: {} {}", placeOf(*root, report.name), report.notDone,
                            process.takeAlert().value_or("no reason is given"),
                            adviceFor(*root, from, to)));
}

std::optional<ExitCode> refuseTaken(const DeviceRoot& root, const std::string& name) {
    if (kindAt(root, core::savedCopyPath(name)) == ItemKind::none) {
        return std::nullopt;
    }
    return fail(ExitCode::badInput, placeOf(root, name) + ": the name " + inQuotes(name) +
                                        " is taken; take another, or velmoranth settings delete " +
                                        forShell(name) + " first");
}

std::optional<ExitCode> refuseMissing(const DeviceRoot& root, const std::string& name) {
    const ItemKind kind = kindAt(root, core::savedCopyPath(name));
    if (kind == ItemKind::file || kind == ItemKind::link) {
        return std::nullopt;
    }
    if (kind != ItemKind::none) {
        return fail(ExitCode::badInput,
                    placeOf(root, name) + ": this is no file, and so no saved copy");
    }
    const std::vector<std::string> saved = savedNames(root);
    const std::vector<std::string_view> candidates(saved.begin(), saved.end());
    const std::string near = suggestion(name, candidates);
    return fail(ExitCode::badInput,
                placeOf(root, name) + ": there is no saved copy " + inQuotes(name) +
                    (near.empty() ? "; velmoranth settings list shows the saved copies" : near));
}

// --- save, rename, delete
// -----------------------------------------------------------------------------

ExitCode save(const DeviceRef& root, const std::string& name) {
    if (const auto refused = refuseTaken(*root, name)) {
        return *refused;
    }
    if (kindAt(*root, kStagingCopy) != ItemKind::none) {
        const std::string copy = onThisMachine(*root, kStagingCopy);
        return fail(ExitCode::badInput, shown(copy) +
                                            ": a save that failed earlier has left this, and it is "
                                            "in the way; remove it with rm " +
                                            forShell(copy));
    }
    // The panel copies the preferences to one place and moves them from there: both or neither.
    const desktop::SignalsHeld whole;
    const ExitCode code =
        runInPanel(root, {name, "saved", "not saved"}, kLivePreferences, core::savedCopyPath(name),
                   [&] { return VelmoranthFileManager::saveCurrentSettinginFolderWithName(name); });
    // It was not there before, so it is this run's.
    if (code != ExitCode::done && kindAt(*root, kStagingCopy) == ItemKind::file) {
        const DeviceProcess process(root);
        platform::platform().fileManager.removeItemAtPath(kStagingCopy);
    }
    return code;
}

ExitCode runSave(const Arguments& arguments) {
    return withNames(arguments, "settings save", [&](const DeviceRef& root) {
        return save(root, arguments.positionals().front());
    });
}

ExitCode runRename(const Arguments& arguments) {
    return withNames(arguments, "settings rename", [&](const DeviceRef& root) {
        const std::string& oldName = arguments.positionals()[0];
        const std::string& newName = arguments.positionals()[1];
        if (const auto refused = refuseMissing(*root, oldName)) {
            return *refused;
        }
        if (const auto refused = refuseTaken(*root, newName)) {
            return *refused;
        }
        const std::string from = core::savedCopyPath(oldName);
        const std::string to = core::savedCopyPath(newName);
        return runInPanel(root, {oldName, newName + " from now on", "not renamed"}, from, to,
                          [&] { return VelmoranthFileManager::renameFileFromTo(from, to); });
    });
}

ExitCode runDelete(const Arguments& arguments) {
    return withNames(arguments, "settings delete", [&](const DeviceRef& root) {
        const std::string& name = arguments.positionals().front();
        if (const auto refused = refuseMissing(*root, name)) {
            return *refused;
        }
        const std::string path = core::savedCopyPath(name);
        return runInPanel(root, {name, "deleted", "not deleted"}, path, path, [&] {
            return VelmoranthFileManager::deleteFileFromDeviceFromDir(path,
                                                                      std::string(kSavedFolder));
        });
    });
}

// --- restore
// ------------------------------------------------------------------------------------------

// What a process does that starts without preferences. Nothing when the file is there now.
std::optional<std::string> putFactoryInPlace(const DeviceRef& root,
                                             const PreferencesFile& factory) {
    const DeviceProcess process(root);
    VelmoranthFileManager::NoUserSettingCreateThemeNow();
    const auto live = readPreferencesFile(*root, kLivePreferences);
    if (live && *live && (*live)->bytes == factory.bytes) {
        return std::nullopt;
    }
    const std::vector<std::string> log = process.log();
    return log.empty() ? "no reason is given" : log.back();
}

ExitCode restore(const DeviceRef& root, const std::string& source, const std::string& what) {
    auto file = readPreferencesFile(*root, source);
    const std::string place = onThisMachine(*root, source);
    if (file && !*file) {
        return fail(ExitCode::badInput,
                    shown(place) + ": there is no such file; the preferences stay as they are");
    }
    if (!file) {
        file.error().message += "; the preferences stay as they are";
        return fail(ExitCode::badInput, file.error());
    }
    if (source == kFactoryPreferences && kindAt(*root, kLivePreferences) == ItemKind::none) {
        if (const auto failure = putFactoryInPlace(root, **file)) {
            return fail(ExitCode::badInput, shown(onThisMachine(*root, kLivePreferences)) +
                                                ": not put in place: " + *failure);
        }
    } else {
        warnOfLink(*root);
        if (const auto replaced = replaceLivePreferences(root, (*file)->bytes); !replaced) {
            return fail(ExitCode::badInput, replaced.error());
        }
    }
    print(what + ": " + counted((*file)->contents.size(), "key") + " in force\n");
    return ExitCode::done;
}

ExitCode runRestore(const Arguments& arguments) {
    return withNames(arguments, "settings restore", [&](const DeviceRef& root) {
        std::string source = kFactoryPreferences;
        std::string what = "factory preferences";
        if (!arguments.positionals().empty()) {
            what = arguments.positionals().front();
            source = core::savedCopyPath(what);
            if (const auto refused = refuseMissing(*root, what)) {
                return *refused;
            }
        }
        const ExitCode code = restore(root, source, what);
        return code == ExitCode::done ? tellProcesses(*root, {core::kThemeChangedNotice}) : code;
    });
}

}  // namespace

Command settingsSaveCommand() {
    return {.name = "settings save",
            .summary = "Save a copy of a device's preferences under a name.",
            .positionalNames = "NAME",
            .description =
                "Copies lie in /User/Library/VelMoranth/UserSettings; a blank before "
                "and after NAME belongs to a file's name.",
            .options = kSettingsOptions,
            .examples = {"velmoranth settings save Night --root mydevice",
                         "velmoranth settings save 'Late night' --root mydevice"},
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runSave};
}

Command settingsRenameCommand() {
    return {.name = "settings rename",
            .summary = "Give a saved copy another name.",
            .positionalNames = "OLD NEW",
            .description = {},
            .options = kSettingsOptions,
            .examples = {"velmoranth settings rename Night 'Night with shadows' --root mydevice",
                         "velmoranth settings rename 'Night with shadows' Dusk --root mydevice"},
            .leastPositionals = 2,
            .mostPositionals = 2,
            .run = runRename};
}

Command settingsDeleteCommand() {
    return {.name = "settings delete",
            .summary = "Delete a saved copy.",
            .positionalNames = "NAME",
            .description = {},
            .options = kSettingsOptions,
            .examples = {"velmoranth settings delete Night --root mydevice",
                         "velmoranth settings delete 'Late night' --root mydevice"},
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runDelete};
}

Command settingsRestoreCommand() {
    return {.name = "settings restore",
            .summary = "Put the factory preferences, or a saved copy, in force.",
            .positionalNames = "[NAME]",
            .description =
                "What is put in force is checked first; then it takes the place of the "
                "preferences, whole or not\nat all, and the running processes are told.",
            .options = kSettingsOptions,
            .examples = {"velmoranth settings restore --root mydevice",
                         "velmoranth settings restore Night --root mydevice"},
            .mostPositionals = 1,
            .run = runRestore};
}

}  // namespace velmoranth::cli
