// velmoranth settings set and unset
#include "cli/commands.h"
#include "cli/help.h"
#include "cli/linked_themes.h"
#include "cli/nearest.h"
#include "cli/notifications.h"
#include "cli/settings_commands.h"
#include "cli/settings_values.h"

#include <fcntl.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using platform::Dictionary;
using platform::PropertyList;

namespace {

// --- the themes that are named
// -------------------------------------------------------------------------------------------

bool isThemeOn(const DeviceRoot& root, const std::string& name) {
    return desktop::Descriptor(
               root.openFile(std::string(kInstalledThemes) + "/" + name, O_PATH | O_DIRECTORY))
        .isOpen();
}

// "; did you mean Slate.theme?" for Slate, too; "" when no theme of the device is near.
std::string nearestTheme(const DeviceRoot& root, const std::string& name) {
    std::vector<std::string> installed = namesIn(root, kInstalledThemes);
    std::erase_if(installed, [&](const std::string& theme) { return !isThemeOn(root, theme); });
    for (const std::string& theme : installed) {
        if (editDistance(theme.substr(0, theme.rfind('.')), name) == 0) {
            return "; did you mean " + theme + "?";
        }
    }
    const std::vector<std::string_view> candidates(installed.begin(), installed.end());
    return suggestion(name, candidates);
}

std::string noSuchTheme(const DeviceRoot& root, const std::string& name) {
    return shown(onThisMachine(root, kInstalledThemes)) + ": there is no theme " + inQuotes(name);
}

// A name that is another theme's but for a slip.
std::optional<ExitCode> refuseSlips(const DeviceRoot& root, const PropertyList& themes) {
    for (const std::string& name : themeNames(&themes)) {
        if (isThemeOn(root, name) ||
            kindAt(root, std::string(kInstalledThemes) + "/" + name) == ItemKind::link) {
            continue;
        }
        if (const std::string near = nearestTheme(root, name); !near.empty()) {
            return fail(ExitCode::badInput, noSuchTheme(root, name) + near);
        }
    }
    return std::nullopt;
}

void warnOfThemes(const DeviceRoot& root, const PropertyList& themes) {
    std::vector<std::string> seen;
    for (const std::string& name : themeNames(&themes)) {
        if (std::find(seen.begin(), seen.end(), name) != seen.end()) {
            warn(inQuotes(name) + " is in the list twice; the second time changes nothing");
        } else if (!isThemeOn(root, name)) {
            const bool isLink =
                kindAt(root, std::string(kInstalledThemes) + "/" + name) == ItemKind::link;
            warn(isLink ? shown(onThisMachine(root, kInstalledThemes)) + ": " + inQuotes(name) +
                              " is a link that leads to no folder on the device; velmoranth device "
                              "install THEME --root DIR --link makes one that does"
                        : noSuchTheme(root, name));
        }
        seen.push_back(name);
    }
}

// --- changing the file
// -------------------------------------------------------------------------------------------

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

std::vector<std::string_view> notificationsOf(const std::vector<const SettingRow*>& rows) {
    std::vector<std::string_view> names;
    for (const NotificationRow& notification : kNotifications) {
        if (std::ranges::any_of(
                rows, [&](const SettingRow* row) { return row->notice == notification.name; })) {
            names.push_back(notification.name);
        }
    }
    return names;
}

// The preferences before and after.
// Makes changes; the exit code when they are refused.
using Edit = std::function<std::optional<ExitCode>(Dictionary& preferences)>;

// The exit code when it could not be done.
std::optional<ExitCode> change(const DeviceRef& root, const Edit& edit, PreferenceChange& done) {
    const auto lock = lockPreferences(*root);
    if (!lock) {
        return fail(ExitCode::badInput, lock.error());
    }
    auto preferences = preferencesToChange(*root);
    if (!preferences) {
        return fail(ExitCode::badInput, preferences.error());
    }
    done.before = *preferences;
    if (const auto code = edit(*preferences)) {
        return code;
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
    done.after = std::move(*preferences);
    return std::nullopt;
}

// --- set
// -------------------------------------------------------------------------------------------

ExitCode setOn(const DeviceRef& root, const std::vector<Assignment>& assignments) {
    for (const auto& [row, value] : assignments) {
        if (row->kind() == SettingKind::themes) {
            if (const auto refused = refuseSlips(*root, value)) {
                return *refused;
            }
        }
    }
    PreferenceChange done;
    std::vector<const SettingRow*> rows;
    const auto assign = [&](Dictionary& preferences) {
        for (const Assignment& assignment : assignments) {
            preferences.insert_or_assign(std::string(assignment.setting->key), assignment.value);
            rows.push_back(assignment.setting);
        }
        return std::optional<ExitCode>();
    };
    if (const auto code = change(root, assign, done)) {
        return *code;
    }
    for (const auto& [row, value] : assignments) {
        if (row->kind() == SettingKind::themes) {
            warnOfThemes(*root, value);
        }
        print(std::string(row->key) + ": " + takenInWords(row->kind(), &value) + "\n");
    }
    return tellOfChange(*root, notificationsOf(rows), done);
}

ExitCode runSet(const Arguments& arguments) {
    const auto assignments = parseAssignments(arguments.positionals());
    if (!assignments) {
        return fail(ExitCode::wrongUsage, assignments.error());
    }
    return withDevice(arguments, "settings set",
                      [&](const DeviceRef& root) { return setOn(root, *assignments); });
}

// --- unset
// -------------------------------------------------------------------------------------------

// Takes the keys out; `rows` has those that the system knows, `lines` what is to be said of each.
std::optional<ExitCode> takeOut(const std::vector<std::string>& keys, Dictionary& preferences,
                                std::vector<const SettingRow*>& rows, std::string& lines) {
    for (const std::string& key : keys) {
        const SettingRow* const row = findSetting(key);
        const bool isSet = preferences.erase(key) > 0;
        if (!isSet && row == nullptr) {
            return fail(ExitCode::wrongUsage,
                        noSuchSetting(key, core::kSettingRows, "velmoranth settings list"));
        }
        if (isSet && row != nullptr) {
            rows.push_back(row);
        }
        lines += shown(key) + (isSet ? ": no longer set" : ": was not set") +
                 (row == nullptr
                      ? "\n"
                      : ", which the system takes as " + takenWithoutValue(row->kind()) + "\n");
    }
    return std::nullopt;
}

ExitCode runUnset(const Arguments& arguments) {
    return withDevice(arguments, "settings unset", [&](const DeviceRef& root) {
        PreferenceChange done;
        std::vector<const SettingRow*> rows;
        std::string lines;
        const auto edit = [&](Dictionary& preferences) {
            return takeOut(arguments.positionals(), preferences, rows, lines);
        };
        if (const auto code = change(root, edit, done)) {
            return *code;
        }
        print(lines);
        return tellOfChange(*root, notificationsOf(rows), done);
    });
}

std::string keyHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    rows.reserve(core::kSettingRows.size());
    for (const SettingRow& row : core::kSettingRows) {
        rows.emplace_back(assignmentHelp(row), std::string(row.summary) + whenShown(row));
    }
    return "keys (yes, true, on and 1 mean the same):\n" + twoColumns(rows);
}

}  // namespace

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

Command settingsUnsetCommand() {
    return {.name = "settings unset",
            .summary =
                "Take keys out of the preferences of a device, and tell its running "
                "processes.",
            .positionalNames = "KEY...",
            .description =
                "A key that is not set counts as no, or as 0. Its other keys stay, and "
                "a key that the system does not know\ncan be taken out, too.",
            .options = kSettingsOptions,
            .examples = {"velmoranth settings unset opacityVal --root mydevice",
                         "velmoranth settings unset removeDock --root mydevice"},
            .leastPositionals = 1,
            .mostPositionals = 1000,
            .run = runUnset};
}

}  // namespace velmoranth::cli
