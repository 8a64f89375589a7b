// The values of preferences in words: as they are given on the command line, as they are shown, and
// as JSON.
#pragma once

#include "cli/preferences.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// What "KEY=VALUE" words ask for, in the order of the first mention of each key; or the first
// problem. ActiveThemes may be given several times; its names are
// appended. Every other key goes once.
[[nodiscard]] desktop::Result<std::vector<Assignment>> parseAssignments(
    std::span<const std::string> words);

// The names in a list of themes as the engine takes it: whatever an entry is, in words. Nothing for
// another kind of value, and for null.
[[nodiscard]] std::vector<std::string> themeNames(const platform::PropertyList* value);

// What the engine makes of the value of such a key (null: it is not set), in the words in which
// `settings set` takes it: "yes", "2.5", "A.theme,B.theme".
[[nodiscard]] std::string takenValue(SettingKind kind, const platform::PropertyList* value);

// The same as it may stand in a message; "none" for no theme.
[[nodiscard]] std::string takenInWords(SettingKind kind, const platform::PropertyList* value);

// The same of a key that is not set: "no", "0", "no theme at all".
[[nodiscard]] std::string takenWithoutValue(SettingKind kind);

// Whether the value is of a kind that `settings set` writes for such a key.
[[nodiscard]] bool isOfKind(SettingKind kind, const platform::PropertyList& value);

// "a text (on)": what a value is, for one that is not of its key's kind; one line, of any length.
[[nodiscard]] std::string describedValue(const platform::PropertyList& value);

// A key of a device's preferences.
struct KeyOfDevice {
    std::string_view name;
    const SettingRow* setting = nullptr;                  // null when the system does not know it
    const platform::PropertyList* value = nullptr;        // null when it is not set
    const platform::PropertyList* atNextStart = nullptr;  // what the next start sets it to, if so
};

// As text in JSON: {"key", "type", "set", "value", "taken", "shows", "summary"}; the value as the
// file has it, dates and data in words, what the engine takes, and when a running home screen shows
// a change: "atOnce", "iconsAtOnce" (all else after a respring), "atOnceWhenOn" or "afterRespring".
// "atNextStart" is what the engine takes
// from the next start on, where that sets the key. `type` is null for a key that the system does
// not know, and there is no "taken" then.
[[nodiscard]] std::string settingAsJson(const KeyOfDevice& key);

// {"settings", "other", "saved"}: every key that the system knows, the others of the file, and the
// names of the saved copies. `atNextStart`: the preferences that the next start puts in place.
[[nodiscard]] std::string settingsAsJson(const platform::Dictionary& preferences,
                                         const std::optional<platform::Dictionary>& atNextStart,
                                         const std::vector<std::string>& saved);

// The keys that the system does not know, in order.
[[nodiscard]] std::vector<std::string> otherKeys(const platform::Dictionary& preferences);

}  // namespace velmoranth::cli
