// velmoranth settings restore
#include "cli/commands.h"
#include "cli/device_process.h"
#include "cli/saved_copies.h"
#include "core/preferences.h"
#include "desktop/files/replacement.h"
#include "desktop/plist/property_lists.h"
#include "filemanager/velmoranth_file_manager.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using desktop::Problem;
using desktop::Result;
using filemanager::VelmoranthFileManager;

namespace {

constexpr const char* kStayAsTheyAre = "; the preferences stay as they are";

// What is put in force: the device path of the file, and what it is called.
struct Source {
    std::string path = kFactoryPreferences;
    std::string words = "the factory's";
};

// --- keeping what is in force
// -------------------------------------------------------------------------------------------

bool holds(const DeviceRoot& root, const std::string& devicePath, const platform::Data& bytes) {
    const auto held = root.readFile(devicePath, desktop::kMaxPropertyListBytes);
    return held && *held == bytes;
}

// The name of a copy that holds these bytes.
std::optional<std::string> copyOf(const DeviceRoot& root, const platform::Data& bytes) {
    const std::vector<std::string> names = savedNames(root);
    const auto found = std::ranges::find_if(names, [&](const std::string& name) {
        return holds(root, core::savedCopyPath(name), bytes);
    });
    return found == names.end() ? std::nullopt : std::optional(*found);
}

// Saves what is in force under a name of its own, unless it is in another file anyway. The name of
// a copy that was made.
Result<std::optional<std::string>> keepWhatIsInForce(const DeviceRef& root) {
    const ItemKind kind = kindAt(*root, kLivePreferences);
    if (kind != ItemKind::file && kind != ItemKind::link) {
        return std::nullopt;
    }
    const auto bytes = root->readFile(kLivePreferences, desktop::kMaxPropertyListBytes);
    if (!bytes) {
        warn(shown(onThisMachine(*root, kLivePreferences)) +
             ": what was in force cannot be kept: " + bytes.error().message);
        return std::nullopt;
    }
    if (holds(*root, kFactoryPreferences, *bytes)) {
        return std::nullopt;
    }
    if (const auto copy = copyOf(*root, *bytes)) {
        print("what was in force is saved as " + inQuotes(*copy) + " already\n");
        return std::nullopt;
    }
    std::string name = freeName(*root, "Before restore");
    desktop::FolderEntry place = root->openParentToChange(core::savedCopyPath(name));
    const int error = place.folder.isOpen()
                          ? desktop::replaceFile(desktop::FileCalls(), std::move(place.folder),
                                                 place.name, *bytes)
                          : errno;
    if (error != 0) {
        const Problem cause = desktop::problemOfErrno(error, {});
        return tl::unexpected(Problem{
            "what is in force cannot be saved here first: " + cause.message + kStayAsTheyAre,
            onThisMachine(*root, kSavedFolder)});
    }
    return name;
}

void removeCopy(const DeviceRoot& root, const std::string& name) {
    const desktop::FolderEntry place = root.openParentToChange(core::savedCopyPath(name));
    static_cast<void>(::unlinkat(place.folder.get(), place.name.c_str(), 0));
}

// --- restore
// -------------------------------------------------------------------------------------------

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

// The problem when it could not be put in force.
Result<void> putInForce(const DeviceRef& root, const Source& source, const PreferencesFile& file) {
    if (source.path == kFactoryPreferences && kindAt(*root, kLivePreferences) == ItemKind::none) {
        if (const auto failure = putFactoryInPlace(root, file)) {
            return tl::unexpected(
                Problem{"not put in place: " + *failure, onThisMachine(*root, kLivePreferences)});
        }
        return {};
    }
    warnOfLink(*root);
    return replaceLivePreferences(root, file.bytes);
}

// What was in force, as far as it could be read.
platform::Dictionary contentsInForce(const DeviceRoot& root) {
    const auto file = readPreferencesFile(root, kLivePreferences);
    return file && *file ? (*file)->contents : platform::Dictionary();
}

ExitCode restore(const DeviceRef& root, const Source& source) {
    auto file = readPreferencesFile(*root, source.path);
    if (file && !*file) {
        return fail(ExitCode::badInput, shown(onThisMachine(*root, source.path)) +
                                            ": there is no such file" + kStayAsTheyAre);
    }
    if (!file) {
        file.error().message += kStayAsTheyAre;
        return fail(ExitCode::badInput, file.error());
    }
    const platform::Dictionary before = contentsInForce(*root);
    const auto kept = keepWhatIsInForce(root);
    if (!kept) {
        return fail(ExitCode::badInput, kept.error());
    }
    if (const auto put = putInForce(root, source, **file); !put) {
        if (*kept) {
            removeCopy(*root, **kept);
        }
        return fail(ExitCode::badInput, put.error());
    }
    if (*kept) {
        print("what was in force is saved as " + inQuotes(**kept) + "\n");
    }
    print("the preferences in force are " + source.words + " now\n");
    return tellOfChange(*root, {core::kThemeChangedNotice}, {before, (*file)->contents});
}

ExitCode runRestore(const Arguments& arguments) {
    return withNames(arguments, "settings restore", [&](const DeviceRef& root) {
        if (arguments.positionals().empty()) {
            return restore(root, {});
        }
        const std::string& name = arguments.positionals().front();
        if (const auto refused = refuseMissing(*root, name)) {
            return *refused;
        }
        return restore(root, {core::savedCopyPath(name), "those of " + inQuotes(name)});
    });
}

}  // namespace

Command settingsRestoreCommand() {
    return {.name = "settings restore",
            .summary = "Put the factory preferences, or a saved copy, in force.",
            .positionalNames = "[NAME]",
            .description =
                "What is put in force is checked first; then it takes the place of the "
                "preferences, whole or not\nat all, and the running processes are told. "
                "Preferences that would be lost are saved under a name first.",
            .options = kSettingsOptions,
            .examples = {"velmoranth settings restore --root mydevice",
                         "velmoranth settings restore Night --root mydevice"},
            .mostPositionals = 1,
            .run = runRestore};
}

}  // namespace velmoranth::cli
