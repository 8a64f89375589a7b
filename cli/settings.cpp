// velmoranth settings get, set and list
#include "cli/commands.h"
#include "cli/help.h"
#include "cli/nearest.h"
#include "cli/notifications.h"
#include "cli/settings_commands.h"
#include "cli/settings_values.h"

#include <fcntl.h>
#include <fmt/core.h>

#include <algorithm>
#include <array>
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

ExitCode get(const std::string& key, const Dictionary& preferences, bool asJson) {
    const SettingRow* const row = findSetting(key);
    const PropertyList* const value = platform::objectForKey(preferences, key);
    if (row == nullptr && value == nullptr) {
        return fail(ExitCode::wrongUsage,
                    noSuchSetting(key, core::kSettingRows, "velmoranth settings list"));
    }
    if (asJson) {
        print(settingAsJson(key, row, value));
    }
    if (value == nullptr) {
        return fail(ExitCode::nothingFound,
                    key + " is not set, which the system takes as " +
                        (row->kind() == SettingKind::themes ? "no theme at all"
                                                            : takenValue(row->kind(), nullptr)));
    }
    if (row != nullptr && !isOfKind(row->kind(), *value)) {
        warn(key + " is " + describedValue(*value) + " in place of " +
             std::string(wordsFor(row->kind()).taken));
    }
    if (!asJson) {
        print((row == nullptr ? platform::description(*value) : takenValue(row->kind(), value)) +
              "\n");
    }
    return ExitCode::done;
}

ExitCode runGet(const Arguments& arguments) {
    return withDevice(arguments, "settings get", [&](const DeviceRef& root) {
        const auto preferences = livePreferences(*root);
        return preferences
                   ? get(arguments.positionals().front(), *preferences, arguments.has("--json"))
                   : fail(ExitCode::badInput, preferences.error());
    });
}

// What the value is taken for; "none" for no theme.
std::string takenCell(SettingKind kind, const PropertyList* value) {
    const std::string taken = shown(takenValue(kind, value));
    return taken.empty() ? "none" : taken;
}

std::string valueCell(SettingKind kind, const PropertyList* value) {
    if (value == nullptr) {
        return kind == SettingKind::themes ? "not set" : "not set: " + takenCell(kind, value);
    }
    return takenCell(kind, value) +
           (isOfKind(kind, *value) ? "" : ", from " + describedValue(*value));
}

std::string listAsText(const Dictionary& preferences, const std::vector<std::string>& saved) {
    std::string text;
    for (const SettingRow& row : core::kSettingRows) {
        text += fmt::format("{:<16}  {:<10}  {:<14}  {}\n", row.key, wordsFor(row.kind()).column,
                            valueCell(row.kind(), platform::objectForKey(preferences, row.key)),
                            row.summary);
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
    return withDevice(arguments, "settings list", [&](const DeviceRef& root) {
        const auto preferences = livePreferences(*root);
        if (!preferences) {
            return fail(ExitCode::badInput, preferences.error());
        }
        const std::vector<std::string> saved = savedNames(*root);
        print(arguments.has("--json") ? settingsAsJson(*preferences, saved)
                                      : listAsText(*preferences, saved));
        return ExitCode::done;
    });
}

// --- set
// ----------------------------------------------------------------------------------------------

void warnOfThemes(const DeviceRoot& root, const PropertyList& themes) {
    std::vector<std::string> seen;
    for (const std::string& name : themeNames(&themes)) {
        const desktop::Descriptor folder(
            root.openFile(std::string(kThemesFolder) + "/" + name, O_PATH | O_DIRECTORY));
        if (std::find(seen.begin(), seen.end(), name) != seen.end()) {
            warn(inQuotes(name) + " is in the list twice; the second time changes nothing");
        } else if (!folder.isOpen() &&
                   kindAt(root, std::string(kThemesFolder) + "/" + name) == ItemKind::link) {
            warn(shown(onThisMachine(root, kThemesFolder)) + ": " + inQuotes(name) +
                 " is a link that leads to no folder on the device; velmoranth device install "
                 "THEME --root DIR --link makes one that does");
        } else if (!folder.isOpen()) {
            const std::vector<std::string> installed = namesIn(root, kThemesFolder);
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

std::vector<std::string_view> notificationsOf(const std::vector<Assignment>& assignments) {
    std::vector<std::string_view> names;
    for (const NotificationRow& row : kNotifications) {
        if (std::any_of(assignments.begin(), assignments.end(), [&](const Assignment& assignment) {
                return assignment.setting->notice == row.name;
            })) {
            names.push_back(row.name);
        }
    }
    return names;
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
        preferences->insert_or_assign(std::string(assignment.setting->key), assignment.value);
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
    return withDevice(arguments, "settings set", [&](const DeviceRef& root) {
        if (const auto code = change(root, *assignments)) {
            return *code;
        }
        for (const auto& [row, value] : *assignments) {
            if (row->kind() == SettingKind::themes) {
                warnOfThemes(*root, value);
            }
            print(std::string(row->key) + ": " + takenCell(row->kind(), &value) + "\n");
        }
        return tellProcesses(*root, notificationsOf(*assignments));
    });
}

std::string keyHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    rows.reserve(core::kSettingRows.size());
    for (const SettingRow& row : core::kSettingRows) {
        rows.emplace_back(assignmentHelp(row), row.summary);
    }
    return "keys (yes, true, on and 1 mean the same):\n" + twoColumns(rows);
}

constexpr std::array<Option, 2> kReadOptions{{
    kSettingsRoot,
    {"--json", "", "", "as JSON: key, type, value, and what the system takes it for"},
}};

}  // namespace

Command settingsListCommand() {
    return {.name = "settings list",
            .summary = "Show the preferences of a device, and the copies saved of them.",
            .positionalNames = "",
            .description = "A key that is not set counts as no, or as 0.",
            .options = kReadOptions,
            .examples = {"velmoranth settings list --root mydevice",
                         "velmoranth settings list --root mydevice --json | jq -r '.saved[]'"},
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
            .examples = {"velmoranth settings get ActiveThemes --root mydevice",
                         "velmoranth settings get opacityVal --root mydevice --json"},
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
            .examples =
                {"velmoranth settings set ActiveThemes=Kilnware.theme enable=yes --root mydevice",
                 "velmoranth settings set ActiveThemes=Icons.theme ActiveThemes=Dots.theme --root "
                 "mydevice",
                 "velmoranth settings set ActiveThemes= --root mydevice",
                 "velmoranth settings set dynamicShadow=yes opacityVal=0.4 yAxisVal=-2.5 --root "
                 "mydevice"},
            .leastPositionals = 1,
            .mostPositionals = 1000,
            .run = runSet,
            .moreHelp = keyHelp};
}

}  // namespace velmoranth::cli
