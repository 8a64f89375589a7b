// The preferences in the words of a command line: keys that are looked for by their names, and
// "KEY=VALUE".
#pragma once

#include "core/setting_rows.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

using core::SettingKind;
using core::SettingRow;

// The settings that can be set for one run; its list of active themes is made from its themes.
inline constexpr std::span<const SettingRow> kPreviewSettings =
    std::span(core::kSettingRows).subspan(1);

// Null when there is none of that name.
[[nodiscard]] const SettingRow* findSetting(
    std::string_view name, std::span<const SettingRow> settings = core::kSettingRows);

// "there is no preference "enabel"; did you mean enable?", or, with no key near, where to look.
[[nodiscard]] std::string noSuchSetting(std::string_view name, std::span<const SettingRow> settings,
                                        std::string_view whereListed);

struct KindWords {
    std::string_view name;         // in JSON
    std::string_view taken;        // "yes or no"
    std::string_view column;       // "yes|no", in a table
    std::string_view placeholder;  // "yes|no", for "KEY=VALUE" in a help text
};

[[nodiscard]] const KindWords& wordsFor(SettingKind kind);

// "enable=yes|no", for a help text.
[[nodiscard]] std::string assignmentHelp(const SettingRow& setting);

// "a text": what the value is.
[[nodiscard]] std::string kindName(const platform::PropertyList& value);

// What a preview starts from: these active themes, with theming, icon mask and overlay on.
[[nodiscard]] platform::Dictionary previewPreferences(const std::vector<std::string>& themes);

// What "KEY=VALUE" asks for.
struct Assignment {
    const SettingRow* setting;
    platform::PropertyList value;
};

// Who takes such words, as messages have it.
struct AssignmentTaker {
    std::string_view name;           // "--set"
    std::string_view beforeSetting;  // "--set " or ""
    std::string_view whereListed;
    std::span<const SettingRow> settings;
};

// The problem names the nearest key or the values that a key takes. A list of themes is names with
// commas between; a comma or a backslash that belongs to a name has a backslash before it.
[[nodiscard]] desktop::Result<Assignment> parseAssignment(std::string_view word,
                                                          const AssignmentTaker& taker);

// A list of themes, with names as parseAssignment takes them.
[[nodiscard]] std::string joinedThemes(const std::vector<std::string>& names);

}  // namespace velmoranth::cli
