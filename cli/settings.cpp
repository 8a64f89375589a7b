// velmoranth settings get, set and list
#include "cli/commands.h"
#include "cli/help.h"
#include "cli/nearest.h"
#include "cli/settings_commands.h"
#include "cli/settings_values.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using platform::Dictionary;
using platform::PropertyList;

namespace {

constexpr const char* kThemesFolder = "/Library/Themes";

std::string oddKind(const PreferenceKey& key, const PropertyList& value) {
    return describedValue(value) + " in place of " + std::string(takenBy(key.kind));
}

// --- get and list
// -------------------------------------------------------------------------------------

// The live preferences; empty with a note when there are none.
desktop::Result<Dictionary> livePreferences(const DeviceRoot& root) {
    auto file = readPreferencesFile(root, kLivePreferences);
    if (!file) {
        return tl::unexpected(std::move(file.error()));
    }
    if (!*file) {
        note(shown(onThisMachine(root, kLivePreferences)) +
             (kindAt(root, kFactoryPreferences) == ItemKind::file
                  ? ": there are no preferences; the next process that starts puts the factory's "
                    "in place"
                  : ": there are no preferences, so theming is off"));
        return Dictionary();
    }
    return std::move((*file)->contents);
}

ExitCode runGet(const Arguments& arguments) {
    const std::string& name = arguments.positionals().front();
    const PreferenceKey* const key = findPreferenceKey(name);
    const GivenDevice device = givenDevice(arguments, "settings get");
    if (device.root == nullptr) {
        return device.code;
    }
    const auto preferences = livePreferences(*device.root);
    if (!preferences) {
        return fail(ExitCode::badInput, preferences.error());
    }
    const PropertyList* const value = platform::objectForKey(*preferences, name);
    if (key == nullptr && value == nullptr) {
        return fail(ExitCode::wrongUsage,
                    noSuchPreference(name, preferenceKeys(), "velmoranth settings list"));
    }
    if (arguments.has("--json")) {
        print(settingAsJson(name, key, value));
    }
    if (value == nullptr) {
        return fail(ExitCode::nothingFound,
                    std::string(key->name) + " is not set, which the system takes as " +
                        (key->kind == PreferenceKind::themes ? "no theme at all"
                                                             : takenValue(key->kind, nullptr)));
    }
    if (key != nullptr && !isOfKind(key->kind, *value)) {
        warn(std::string(key->name) + " is " + oddKind(*key, *value));
    }
    if (!arguments.has("--json")) {
        print((key == nullptr ? platform::description(*value) : takenValue(key->kind, value)) +
              "\n");
    }
    return ExitCode::done;
}

std::string valueCell(const PreferenceKey& key, const PropertyList* value) {
    const std::string taken = shown(takenValue(key.kind, value));
    if (value == nullptr) {
        return key.kind == PreferenceKind::themes ? "not set" : "not set: " + taken;
    }
    if (!isOfKind(key.kind, *value)) {
        return (taken.empty() ? "none" : taken) + ", from " + describedValue(*value);
    }
    return taken.empty() ? "none" : taken;
}

std::string listAsText(const Dictionary& preferences, const std::vector<std::string>& saved) {
    std::string text;
    for (const PreferenceKey& key : preferenceKeys()) {
        text +=
            fmt::format("{:<16}  {:<10}  {:<14}  {}\n", key.name,
                        key.kind == PreferenceKind::yesOrNo  ? "yes|no"
                        : key.kind == PreferenceKind::number ? "number"
                                                             : "names",
                        valueCell(key, platform::objectForKey(preferences, key.name)), key.summary);
    }
    const std::vector<std::string> others = otherKeys(preferences);
    if (!others.empty()) {
        text += "\nother keys of the file, which the system does not know:\n";
        for (const std::string& name : others) {
            text += fmt::format("  {}  {}\n", shown(name), describedValue(preferences.at(name)));
        }
    }
    text += saved.empty() ? "\nsaved copies: none\n" : "\nsaved copies:\n";
    for (const std::string& name : saved) {
        text += "  " + shown(name) + "\n";
    }
    return text;
}

ExitCode runList(const Arguments& arguments) {
    const GivenDevice device = givenDevice(arguments, "settings list");
    if (device.root == nullptr) {
        return device.code;
    }
    const auto preferences = livePreferences(*device.root);
    if (!preferences) {
        return fail(ExitCode::badInput, preferences.error());
    }
    const std::vector<std::string> saved = savedNames(*device.root);
    print(arguments.has("--json") ? settingsAsJson(*preferences, saved)
                                  : listAsText(*preferences, saved));
    return ExitCode::done;
}

// --- set
// ----------------------------------------------------------------------------------------------

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

// The names of what lies in the folder of themes.
std::vector<std::string> installedThemes(const DeviceRoot& root) {
    std::vector<std::string> names;
    desktop::Descriptor folder(root.openFile(kThemesFolder, O_RDONLY | O_DIRECTORY));
    const std::unique_ptr<DIR, CloseFolder> stream(folder.isOpen() ? ::fdopendir(folder.get())
                                                                   : nullptr);
    if (stream != nullptr) {
        static_cast<void>(folder.release());  // the stream closes it
        while (const dirent* const entry = ::readdir(stream.get())) {
            names.emplace_back(static_cast<const char*>(entry->d_name));
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

void warnOfThemes(const DeviceRoot& root, const PropertyList& themes) {
    std::vector<std::string> seen;
    for (const std::string& name : themeNames(&themes)) {
        const desktop::Descriptor folder(
            root.openFile(std::string(kThemesFolder) + "/" + name, O_PATH | O_DIRECTORY));
        if (std::find(seen.begin(), seen.end(), name) != seen.end()) {
            warn(inQuotes(name) + " is in the list twice; the second time changes nothing");
        } else if (!folder.isOpen()) {
            const std::vector<std::string> installed = installedThemes(root);
            const std::vector<std::string_view> candidates(installed.begin(), installed.end());
            warn(shown(onThisMachine(root, kThemesFolder)) + ": there is no theme " +
                 inQuotes(name) + suggestion(name, candidates));
        }
        seen.push_back(name);
    }
}

// What is changed: the live preferences, or, as when a process starts without any, the factory's.
desktop::Result<Dictionary> preferencesToChange(const DeviceRoot& root) {
    auto live = readPreferencesFile(root, kLivePreferences);
    if (!live) {
        live.error().message +=
            "; nothing is changed (velmoranth settings restore puts saved preferences or the "
            "factory's in its place)";
        return tl::unexpected(std::move(live.error()));
    }
    if (*live) {
        return std::move((*live)->contents);
    }
    auto factory = readPreferencesFile(root, kFactoryPreferences);
    if (!factory) {
        warn("the factory preferences are left out: " + desktop::toLine(factory.error()));
    } else if (*factory) {
        note("there were no preferences; these begin with the factory's");
        return std::move((*factory)->contents);
    }
    return Dictionary();
}

std::vector<Notification> notificationsOf(const std::vector<Assignment>& assignments) {
    std::vector<Notification> notifications;
    for (const Notification notification :
         {Notification::preferences, Notification::themeChanged, Notification::developing}) {
        if (std::any_of(assignments.begin(), assignments.end(), [&](const Assignment& assignment) {
                return assignment.key->notification == notification;
            })) {
            notifications.push_back(notification);
        }
    }
    return notifications;
}

// The exit code when it could not be done.
std::optional<ExitCode> change(const DeviceRef& root, const std::vector<Assignment>& assignments) {
    const auto lock = lockPreferences(*root);
    if (!lock) {
        return fail(ExitCode::badInput, lock.error());
    }
    auto preferences = preferencesToChange(*root);
    if (!preferences) {
        return fail(ExitCode::badInput, preferences.error());
    }
    for (const Assignment& assignment : assignments) {
        preferences->insert_or_assign(std::string(assignment.key->name), assignment.value);
    }
    auto written = writtenPreferences(*preferences);
    if (!written) {
        written.error().path = onThisMachine(*root, kLivePreferences);
        written.error().message += "; nothing is changed";
        return fail(ExitCode::badInput, written.error());
    }
    warnOfLink(*root);
    if (const auto replaced = replaceLivePreferences(root, written->bytes); !replaced) {
        return fail(ExitCode::badInput, replaced.error());
    }
    for (const std::string& key : written->inexact) {
        warn("the value of " + inQuotes(key) +
             " is not exactly what it was: the file's text cannot hold it");
    }
    return std::nullopt;
}

ExitCode runSet(const Arguments& arguments) {
    const auto assignments = parseAssignments(arguments.positionals());
    if (!assignments) {
        return fail(ExitCode::wrongUsage, assignments.error());
    }
    const GivenDevice device = givenDevice(arguments, "settings set");
    if (device.root == nullptr) {
        return device.code;
    }
    if (const auto code = change(device.root, *assignments)) {
        return *code;
    }
    for (const auto& [key, value] : *assignments) {
        if (key->kind == PreferenceKind::themes) {
            warnOfThemes(*device.root, value);
        }
        const std::string taken = shown(takenValue(key->kind, &value));
        print(std::string(key->name) + ": " + (taken.empty() ? "none" : taken) + "\n");
    }
    return tellProcesses(*device.root, notificationsOf(*assignments));
}

std::string keyHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const PreferenceKey& key : preferenceKeys()) {
        rows.emplace_back(std::string(key.name) + (key.kind == PreferenceKind::yesOrNo  ? "=yes|no"
                                                   : key.kind == PreferenceKind::number ? "=NUMBER"
                                                                                        : "=A,B"),
                          key.summary);
    }
    return "keys (yes, true, on and 1 mean the same):\n" + twoColumns(rows);
}

constexpr std::array<Option, 2> kReadOptions{{
    kSettingsRoot,
    {"--json", "", "", "as JSON: key, type, value, and what the system takes it for"},
}};

constexpr std::array<std::string_view, 2> kGetExamples{
    "velmoranth settings get ActiveThemes --root mydevice",
    "velmoranth settings get opacityVal --root mydevice --json",
};

constexpr std::array<std::string_view, 2> kListExamples{
    "velmoranth settings list --root mydevice",
    "velmoranth settings list --root mydevice --json | jq -r '.saved[]'",
};

constexpr std::array<std::string_view, 4> kSetExamples{
    "velmoranth settings set ActiveThemes=Kilnware.theme enable=yes --root mydevice",
    "velmoranth settings set ActiveThemes=Icons.theme ActiveThemes=Dots.theme --root mydevice",
    "velmoranth settings set ActiveThemes= --root mydevice",
    "velmoranth settings set dynamicShadow=yes opacityVal=0.4 yAxisVal=-2.5 --root mydevice",
};

}  // namespace

Command settingsListCommand() {
    return {.name = "settings list",
            .summary = "Show the preferences of a device, and the copies saved of them.",
            .positionalNames = "",
            .description = "A key that is not set counts as no, or as 0.",
            .options = kReadOptions,
            .examples = kListExamples,
            .run = runList};
}

Command settingsGetCommand() {
    return {.name = "settings get",
            .summary = "Print the value of one preference.",
            .positionalNames = "KEY",
            .description =
                "The value alone, as settings set takes it. The exit code is 1 when it "
                "is not set.",
            .options = kReadOptions,
            .examples = kGetExamples,
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runGet};
}

Command settingsSetCommand() {
    return {.name = "settings set",
            .summary = "Change preferences of a device, and tell its running processes.",
            .positionalNames = "KEY=VALUE...",
            .description =
                "All values are checked first; then the file is written, whole or not at all. Its "
                "other keys stay.\nActiveThemes takes names with commas between, and may be given "
                "several times; a comma or a backslash\nthat belongs to a name has a backslash "
                "before it. Without a name the list is empty.",
            .options = kSettingsOptions,
            .examples = kSetExamples,
            .leastPositionals = 1,
            .mostPositionals = 1000,
            .run = runSet,
            .moreHelp = keyHelp};
}

}  // namespace velmoranth::cli
