// velmoranth settings save, rename and delete
#include "cli/commands.h"
#include "cli/device_process.h"
#include "cli/saved_copies.h"
#include "core/preferences.h"
#include "desktop/files/cleanup.h"
#include "filemanager/velmoranth_file_manager.h"
#include "platform/platform.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using filemanager::VelmoranthFileManager;

namespace {

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

// What is said of an operation on the saved copy `name`.
struct Report {
    std::string_view name;
    std::string_view notDone;  // "not deleted"
    std::string done = {};     // a whole line, or nothing
};

// Runs one operation of the settings panel, which takes a file from one place to another. The
// reason of a failure is the panel's alert.
ExitCode runInPanel(const DeviceRef& root, const Report& report, const std::string& from,
                    const std::string& to, const std::function<bool()>& operation) {
    DeviceProcess process(root);
    if (operation()) {
        print(report.done);
        return ExitCode::done;
    }
    return fail(ExitCode::badInput,
                fmt::format("{}: {}: {} {}", placeOf(*root, report.name), report.notDone,
                            process.takeAlert().value_or("no reason is given"),
                            adviceFor(*root, from, to)));
}

// `otherwise`: what to do besides taking another name.
std::optional<ExitCode> refuseTaken(const DeviceRoot& root, const std::string& name,
                                    const std::string& otherwise) {
    if (kindAt(root, core::savedCopyPath(name)) == ItemKind::none) {
        return std::nullopt;
    }
    return fail(ExitCode::badInput, placeOf(root, name) + ": the name " + inQuotes(name) +
                                        " is taken; take another, or " + otherwise);
}

// --- save, rename, delete
// -----------------------------------------------------------------------------

// Has the panel save the preferences under a name that is free; when it does not, a message about
// the name that the user knows.
ExitCode saveInPanel(const DeviceRef& root, const std::string& name, const std::string& known) {
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
        runInPanel(root, {known, "not saved"}, kLivePreferences, core::savedCopyPath(name),
                   [&] { return VelmoranthFileManager::saveCurrentSettinginFolderWithName(name); });
    // It was not there before, so it is this run's.
    if (code != ExitCode::done && kindAt(*root, kStagingCopy) == ItemKind::file) {
        const DeviceProcess process(root);
        platform::platform().fileManager.removeItemAtPath(kStagingCopy);
    }
    return code;
}

// The old copy stays until the new one is there whole.
ExitCode saveOver(const DeviceRef& root, const std::string& name) {
    const std::string beside = freeName(*root, "being saved");
    if (const ExitCode code = saveInPanel(root, beside, name); code != ExitCode::done) {
        return code;
    }
    const desktop::FolderEntry from = root->openParentToChange(core::savedCopyPath(beside));
    if (!from.folder.isOpen() || ::renameat(from.folder.get(), from.name.c_str(), from.folder.get(),
                                            core::savedCopyFile(name).c_str()) != 0) {
        const desktop::Problem cause = desktop::problemOfErrno(errno, {});
        static_cast<void>(::unlinkat(from.folder.get(), from.name.c_str(), 0));
        return fail(ExitCode::badInput, placeOf(*root, name) + ": not saved: " + cause.message);
    }
    return ExitCode::done;
}

ExitCode save(const DeviceRef& root, const std::string& name, bool isForced) {
    const ItemKind kind = kindAt(*root, core::savedCopyPath(name));
    const bool isReplaced = isForced && (kind == ItemKind::file || kind == ItemKind::link);
    if (!isReplaced) {
        if (const auto refused = refuseTaken(*root, name, "--force replaces it")) {
            return *refused;
        }
    }
    const ExitCode code = isReplaced ? saveOver(root, name) : saveInPanel(root, name, name);
    if (code == ExitCode::done) {
        print("the preferences are saved as " + inQuotes(name) +
              (isReplaced ? ", in place of the copy that had this name\n" : "\n"));
    }
    return code;
}

ExitCode runSave(const Arguments& arguments) {
    return withNames(arguments, "settings save", [&](const DeviceRef& root) {
        return save(root, arguments.positionals().front(), arguments.has("--force"));
    });
}

ExitCode runRename(const Arguments& arguments) {
    return withNames(arguments, "settings rename", [&](const DeviceRef& root) {
        const std::string& oldName = arguments.positionals()[0];
        const std::string& newName = arguments.positionals()[1];
        if (const auto refused = refuseMissing(*root, oldName)) {
            return *refused;
        }
        if (const auto refused = refuseTaken(
                *root, newName, "velmoranth settings delete " + forShell(newName) + " first")) {
            return *refused;
        }
        const std::string from = core::savedCopyPath(oldName);
        const std::string to = core::savedCopyPath(newName);
        return runInPanel(root,
                          {oldName, "not renamed",
                           inQuotes(oldName) + " is called " + inQuotes(newName) + " now\n"},
                          from, to,
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
        return runInPanel(root, {name, "not deleted", inQuotes(name) + " is deleted\n"}, path, path,
                          [&] {
                              return VelmoranthFileManager::deleteFileFromDeviceFromDir(
                                  path, std::string(kSavedFolder));
                          });
    });
}

constexpr std::array<Option, 2> kSaveOptions{
    {kSettingsRoot, {"--force", "", "", "replace the copy that has this name"}}};

}  // namespace

Command settingsSaveCommand() {
    return {.name = "settings save",
            .summary = "Save a copy of a device's preferences under a name.",
            .positionalNames = "NAME",
            .description =
                "Copies lie in /User/Library/VelMoranth/UserSettings; a blank before "
                "and after NAME belongs to a file's name.",
            .options = kSaveOptions,
            .examples = {"velmoranth settings save Night --root mydevice",
                         "velmoranth settings save 'Late night' --force --root mydevice"},
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

}  // namespace velmoranth::cli
