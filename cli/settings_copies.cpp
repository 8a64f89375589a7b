// velmoranth settings save, rename, delete and restore
#include "cli/commands.h"
#include "cli/device_process.h"
#include "cli/nearest.h"
#include "cli/settings_commands.h"
#include "filemanager/velmoranth_file_manager.h"
#include "platform/platform.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
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
std::string placeOf(const DeviceRoot& root, const std::string& name) {
    return shown(onThisMachine(root, pathOfSaved(name)));
}

// "; did you mean Night?" when such a copy is there.
std::string nearSaved(const DeviceRoot& root, const std::string& name) {
    const std::vector<std::string> saved = savedNames(root);
    const std::vector<std::string_view> candidates(saved.begin(), saved.end());
    const std::string near = suggestion(name, candidates);
    return near.empty() ? "; velmoranth settings list shows the saved copies" : near;
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
    if (kindAt(root, kSavedFolder) == ItemKind::none) {
        return "make the folder " + shown(onThisMachine(root, kSavedFolder));
    }
    return "see who may write to " + shown(onThisMachine(root, kSavedFolder));
}

// Runs one operation of the settings panel. Nothing when it succeeded, else its alert's message.
template <class Operation>
std::optional<std::string> runInPanel(const DeviceRef& root, const Operation& operation) {
    DeviceProcess process(root);
    if (operation()) {
        return std::nullopt;
    }
    return process.takeAlert().value_or("no reason is given");
}

std::optional<ExitCode> refuseTaken(const DeviceRoot& root, const std::string& name) {
    if (kindAt(root, pathOfSaved(name)) == ItemKind::none) {
        return std::nullopt;
    }
    return fail(ExitCode::badInput, placeOf(root, name) + ": the name " + inQuotes(name) +
                                        " is taken; take another, or velmoranth settings delete " +
                                        forShell(name) + " first");
}

std::optional<ExitCode> refuseMissing(const DeviceRoot& root, const std::string& name) {
    switch (kindAt(root, pathOfSaved(name))) {
        case ItemKind::file:
        case ItemKind::link:
            return std::nullopt;
        case ItemKind::none:
            return fail(ExitCode::badInput, placeOf(root, name) + ": there is no saved copy " +
                                                inQuotes(name) + nearSaved(root, name));
        case ItemKind::folder:
        case ItemKind::other:
            break;
    }
    return fail(ExitCode::badInput,
                placeOf(root, name) + ": this is no file, and so no saved copy");
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
    const auto alert = runInPanel(
        root, [&] { return VelmoranthFileManager::saveCurrentSettinginFolderWithName(name); });
    if (!alert) {
        print(name + ": saved\n");
        return ExitCode::done;
    }
    const std::string advice = adviceFor(*root, kLivePreferences, pathOfSaved(name));
    // It was not there before, so it is this run's.
    if (kindAt(*root, kStagingCopy) == ItemKind::file) {
        const DeviceProcess process(root);
        platform::platform().fileManager.removeItemAtPath(kStagingCopy);
    }
    return fail(ExitCode::badInput, placeOf(*root, name) + ": not saved: " + *alert + " " + advice);
}

ExitCode runSave(const Arguments& arguments) {
    const std::string& name = arguments.positionals().front();
    if (const std::string fault = faultOf(name); !fault.empty()) {
        return fail(ExitCode::wrongUsage, fault);
    }
    const GivenDevice device = givenDevice(arguments, "settings save");
    if (device.root == nullptr) {
        return device.code;
    }
    const auto lock = lockPreferences(*device.root);
    return lock ? save(device.root, name) : fail(ExitCode::badInput, lock.error());
}

ExitCode runRename(const Arguments& arguments) {
    const std::string& oldName = arguments.positionals()[0];
    const std::string& newName = arguments.positionals()[1];
    for (const std::string& name : {oldName, newName}) {
        if (const std::string fault = faultOf(name); !fault.empty()) {
            return fail(ExitCode::wrongUsage, fault);
        }
    }
    const GivenDevice device = givenDevice(arguments, "settings rename");
    if (device.root == nullptr) {
        return device.code;
    }
    const auto lock = lockPreferences(*device.root);
    if (!lock) {
        return fail(ExitCode::badInput, lock.error());
    }
    if (const auto refused = refuseMissing(*device.root, oldName)) {
        return *refused;
    }
    if (const auto refused = refuseTaken(*device.root, newName)) {
        return *refused;
    }
    const std::string from = pathOfSaved(oldName);
    const std::string to = pathOfSaved(newName);
    const auto alert =
        runInPanel(device.root, [&] { return VelmoranthFileManager::renameFileFromTo(from, to); });
    if (alert) {
        return fail(ExitCode::badInput, placeOf(*device.root, oldName) + ": not renamed: " +
                                            *alert + " " + adviceFor(*device.root, from, to));
    }
    print(oldName + ": " + newName + " from now on\n");
    return ExitCode::done;
}

ExitCode runDelete(const Arguments& arguments) {
    const std::string& name = arguments.positionals().front();
    if (const std::string fault = faultOf(name); !fault.empty()) {
        return fail(ExitCode::wrongUsage, fault);
    }
    const GivenDevice device = givenDevice(arguments, "settings delete");
    if (device.root == nullptr) {
        return device.code;
    }
    const auto lock = lockPreferences(*device.root);
    if (!lock) {
        return fail(ExitCode::badInput, lock.error());
    }
    if (const auto refused = refuseMissing(*device.root, name)) {
        return *refused;
    }
    const std::string path = pathOfSaved(name);
    const auto alert = runInPanel(device.root, [&] {
        return VelmoranthFileManager::deleteFileFromDeviceFromDir(path, std::string(kSavedFolder));
    });
    if (alert) {
        return fail(ExitCode::badInput, placeOf(*device.root, name) + ": not deleted: " + *alert +
                                            " " + adviceFor(*device.root, path, path));
    }
    print(name + ": deleted\n");
    return ExitCode::done;
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
    const std::vector<std::string>& names = arguments.positionals();
    if (!names.empty()) {
        if (const std::string fault = faultOf(names.front()); !fault.empty()) {
            return fail(ExitCode::wrongUsage, fault);
        }
    }
    const GivenDevice device = givenDevice(arguments, "settings restore");
    if (device.root == nullptr) {
        return device.code;
    }
    const auto lock = lockPreferences(*device.root);
    if (!lock) {
        return fail(ExitCode::badInput, lock.error());
    }
    if (!names.empty()) {
        if (const auto refused = refuseMissing(*device.root, names.front())) {
            return *refused;
        }
    }
    const ExitCode code = names.empty()
                              ? restore(device.root, kFactoryPreferences, "factory preferences")
                              : restore(device.root, pathOfSaved(names.front()), names.front());
    return code == ExitCode::done ? tellProcesses(*device.root, {Notification::themeChanged})
                                  : code;
}

constexpr std::array<std::string_view, 1> kSaveExamples{
    "velmoranth settings save Night --root mydevice",
};

constexpr std::array<std::string_view, 1> kRenameExamples{
    "velmoranth settings rename Night 'Night with shadows' --root mydevice",
};

constexpr std::array<std::string_view, 1> kDeleteExamples{
    "velmoranth settings delete Night --root mydevice",
};

constexpr std::array<std::string_view, 2> kRestoreExamples{
    "velmoranth settings restore --root mydevice",
    "velmoranth settings restore Night --root mydevice",
};

}  // namespace

Command settingsSaveCommand() {
    return {.name = "settings save",
            .summary = "Save a copy of a device's preferences under a name.",
            .positionalNames = "NAME",
            .description =
                "Copies lie in /User/Library/VelMoranth/UserSettings; a blank before "
                "and after NAME belongs to a file's name.",
            .options = kSettingsOptions,
            .examples = kSaveExamples,
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
            .examples = kRenameExamples,
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
            .examples = kDeleteExamples,
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
            .examples = kRestoreExamples,
            .mostPositionals = 1,
            .run = runRestore};
}

}  // namespace velmoranth::cli
