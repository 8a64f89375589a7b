// velmoranth settings get and list
#include "cli/commands.h"
#include "cli/settings_commands.h"
#include "cli/settings_values.h"

#include <fmt/core.h>

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

// The preferences of a device as they are now and, where there are none, as the next process that
// starts has them, which puts the factory's in place.
struct Preferences {
    Dictionary now;
    std::optional<Dictionary> atNextStart = {};

    [[nodiscard]] const PropertyList* value(std::string_view key) const {
        return platform::objectForKey(now, key);
    }

    // Of a key that has no value now; null where the next start changes nothing.
    [[nodiscard]] const PropertyList* valueAtNextStart(std::string_view key) const {
        return atNextStart ? platform::objectForKey(*atNextStart, key) : nullptr;
    }
};

// Without any a note says so.
desktop::Result<Preferences> preferencesNow(const DeviceRoot& root) {
    auto file = readPreferencesFile(root, kLivePreferences);
    if (!file) {
        return tl::unexpected(std::move(file.error()));
    }
    if (*file) {
        return Preferences{std::move((*file)->contents)};
    }
    note(shown(onThisMachine(root, kLivePreferences)) +
         (kindAt(root, kFactoryPreferences) == ItemKind::file
              ? ": there are no preferences; the next process that starts puts the factory's "
                "in place"
              : ": there are no preferences, so theming is off"));
    auto factory = readPreferencesFile(root, kFactoryPreferences);
    return factory && *factory ? Preferences{{}, std::move((*factory)->contents)} : Preferences();
}

// Of a key that is not set: what that means, now and from the next start on.
std::string unsetInWords(const SettingRow& row, const PropertyList* atNextStart) {
    return std::string(row.key) + " is not set" +
           (atNextStart != nullptr
                ? "; the next process that starts makes it " + takenInWords(row.kind(), atNextStart)
                : ", which the system takes as " + takenWithoutValue(row.kind()));
}

ExitCode get(const std::string& key, const Preferences& preferences, bool asJson) {
    const SettingRow* const row = findSetting(key);
    const PropertyList* const value = preferences.value(key);
    if (row == nullptr && value == nullptr) {
        return fail(ExitCode::wrongUsage,
                    noSuchSetting(key, core::kSettingRows, "velmoranth settings list"));
    }
    if (asJson) {
        print(settingAsJson({key, row, value, preferences.valueAtNextStart(key)}));
    }
    if (value == nullptr) {
        return fail(ExitCode::nothingFound, unsetInWords(*row, preferences.valueAtNextStart(key)));
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
        const auto preferences = preferencesNow(*root);
        return preferences
                   ? get(arguments.positionals().front(), *preferences, arguments.has("--json"))
                   : fail(ExitCode::badInput, preferences.error());
    });
}

std::string valueCell(const SettingRow& row, const Preferences& preferences) {
    const SettingKind kind = row.kind();
    const PropertyList* const value = preferences.value(row.key);
    if (value != nullptr) {
        return takenInWords(kind, value) +
               (isOfKind(kind, *value) ? "" : ", from " + describedValue(*value));
    }
    if (const PropertyList* const next = preferences.valueAtNextStart(row.key)) {
        return "at next start: " + takenInWords(kind, next);
    }
    return kind == SettingKind::themes ? "not set" : "not set: " + takenInWords(kind, value);
}

std::string listAsText(const Preferences& preferences, const std::vector<std::string>& saved) {
    const int valueWidth = preferences.atNextStart ? 19 : 14;
    std::string text;
    for (const SettingRow& row : core::kSettingRows) {
        text += fmt::format("{:<16}  {:<10}  {:<{}}  {}\n", row.key, wordsFor(row.kind()).column,
                            valueCell(row, preferences), valueWidth, row.summary);
    }
    const std::vector<std::string> others = otherKeys(preferences.now);
    if (!others.empty()) {
        text += "\nother keys of the file, which the system does not know:\n";
        for (const std::string& name : others) {
            text +=
                fmt::format("  {}  {}\n", shown(name), describedValue(preferences.now.at(name)));
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
        const auto preferences = preferencesNow(*root);
        if (!preferences) {
            return fail(ExitCode::badInput, preferences.error());
        }
        const std::vector<std::string> saved = savedNames(*root);
        print(arguments.has("--json")
                  ? settingsAsJson(preferences->now, preferences->atNextStart, saved)
                  : listAsText(*preferences, saved));
        return ExitCode::done;
    });
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
            .description =
                "A key that is not set counts as no, or as 0. Where there are no preferences yet, "
                "the next "
                "process that starts puts\nthe factory's in place.",
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

}  // namespace velmoranth::cli
