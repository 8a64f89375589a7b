#include "cli/preferences.h"

#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/numbers.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>
#include <variant>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using platform::PropertyList;

namespace {

constexpr char kBetweenNames = ',';
constexpr char kTakenAsItStands = '\\';

// In the order of the enumeration.
constexpr std::array<KindWords, 3> kKindWords{{
    {"yesOrNo", "yes or no", "yes|no", "yes|no"},
    {"number", "a number", "number", "NUMBER"},
    {"themes", "names of themes", "names", "A,B"},
}};

// In the order of the alternatives of PropertyList::Value.
constexpr std::array<const char*, std::variant_size_v<PropertyList::Value>> kValueKinds{
    "a boolean", "an integer", "a number", "a text", "a date", "data", "a list", "a dictionary"};

constexpr std::array<std::string_view, 4> kYes{"yes", "true", "on", "1"};
constexpr std::array<std::string_view, 4> kNo{"no", "false", "off", "0"};

// "A,B" in its parts; a comma or backslash behind a backslash is part of a name.
Result<std::vector<std::string>> splitNames(std::string_view text) {
    std::vector<std::string> names;
    if (text.empty()) {
        return names;
    }
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == kBetweenNames) {
            names.push_back(std::exchange(name, {}));
        } else if (text[i] != kTakenAsItStands) {
            name += text[i];
        } else if (i + 1 < text.size() &&
                   (text[i + 1] == kBetweenNames || text[i + 1] == kTakenAsItStands)) {
            name += text[++i];
        } else {
            return tl::unexpected(
                Problem{"in a list of themes a backslash goes before a comma or a backslash that "
                        "belongs to a name, not as in " +
                        inQuotes(text)});
        }
    }
    names.push_back(name);
    return names;
}

Result<void> checkThemeName(const std::string& name) {
    if (name.empty()) {
        return tl::unexpected(
            Problem{"ActiveThemes takes names with commas between, and one of these is empty"});
    }
    if (name == "." || name == ".." || name.find('/') != std::string::npos) {
        return tl::unexpected(
            Problem{"ActiveThemes takes the names of folders in /Library/Themes, "
                    "and " +
                    inQuotes(name) + " is none"});
    }
    if (!isPlainText(name)) {
        return tl::unexpected(
            Problem{"ActiveThemes takes names of plain text, not " + inQuotes(name)});
    }
    return {};
}

Result<PropertyList> parseThemes(std::string_view text) {
    const auto names = splitNames(text);
    if (!names) {
        return tl::unexpected(names.error());
    }
    PropertyList::Array list;
    for (const std::string& name : *names) {
        if (auto checked = checkThemeName(name); !checked) {
            return tl::unexpected(std::move(checked.error()));
        }
        list.emplace_back(name);
    }
    return PropertyList(std::move(list));
}

std::optional<PropertyList> parseYesOrNo(std::string_view text) {
    const bool isYes = std::find(kYes.begin(), kYes.end(), text) != kYes.end();
    const bool isNo = std::find(kNo.begin(), kNo.end(), text) != kNo.end();
    return isYes || isNo ? std::optional<PropertyList>(isYes) : std::nullopt;
}

std::optional<PropertyList> parseFloat(std::string_view text, const core::NumberRange& range) {
    const std::optional<double> number = parseNumber(text);
    return number && *number >= range.least && *number <= range.most
               ? std::optional<PropertyList>(*number)
               : std::nullopt;
}

// "yes or no", "a number from 0 to 1"
std::string takenBy(const SettingRow& row) {
    std::string taken(wordsFor(row.kind()).taken);
    const core::NumberRange& range = row.member.range;
    if (row.kind() != SettingKind::number || range.least == core::NumberRange().least) {
        return taken;
    }
    return range.most == core::NumberRange().most
               ? fmt::format("{} of {} or more", taken, range.least)
               : fmt::format("{} from {} to {}", taken, range.least, range.most);
}

}  // namespace

const SettingRow* findSetting(std::string_view name, std::span<const SettingRow> settings) {
    const auto found = std::find_if(settings.begin(), settings.end(),
                                    [&](const SettingRow& row) { return row.key == name; });
    return found == settings.end() ? nullptr : &*found;
}

std::string noSuchSetting(std::string_view name, std::span<const SettingRow> settings,
                          std::string_view whereListed) {
    std::vector<std::string_view> names;
    names.reserve(settings.size());
    for (const SettingRow& row : settings) {
        names.push_back(row.key);
    }
    const std::string near = suggestion(name, names);
    return "there is no preference " + inQuotes(name) +
           (near.empty() ? "; " + std::string(whereListed) + " lists them" : near);
}

const KindWords& wordsFor(SettingKind kind) {
    return kKindWords.at(static_cast<std::size_t>(kind));
}

std::string assignmentHelp(const SettingRow& setting) {
    return std::string(setting.key) + "=" + std::string(wordsFor(setting.kind()).placeholder);
}

std::string kindName(const PropertyList& value) {
    return kValueKinds.at(value.value().index());
}

platform::Dictionary previewPreferences(const std::vector<std::string>& themes) {
    platform::Dictionary preferences{
        {"ActiveThemes", PropertyList::Array(themes.begin(), themes.end())}};
    for (const SettingRow& row : kPreviewSettings) {
        if (row.isOnInPreview) {
            preferences.emplace(row.key, true);
        }
    }
    return preferences;
}

Result<Assignment> parseAssignment(std::string_view word, const AssignmentTaker& taker) {
    const std::size_t equals = word.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        return tl::unexpected(
            Problem{std::string(taker.name) + " takes KEY=VALUE, not " + inQuotes(word)});
    }
    const std::string_view name = word.substr(0, equals);
    const std::string_view text = word.substr(equals + 1);
    const SettingRow* const row = findSetting(name, taker.settings);
    if (row == nullptr) {
        return tl::unexpected(Problem{noSuchSetting(name, taker.settings, taker.whereListed)});
    }
    if (row->kind() == SettingKind::themes) {
        auto themes = parseThemes(text);
        return themes ? Result<Assignment>({row, std::move(*themes)})
                      : tl::unexpected(std::move(themes.error()));
    }
    auto value = row->kind() == SettingKind::yesOrNo ? parseYesOrNo(text)
                                                     : parseFloat(text, row->member.range);
    if (!value) {
        return tl::unexpected(Problem{std::string(taker.beforeSetting) + std::string(name) +
                                      " takes " + takenBy(*row) + ", not " + inQuotes(text)});
    }
    return Assignment{row, std::move(*value)};
}

std::string joinedThemes(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += text.empty() ? "" : std::string(1, kBetweenNames);
        for (const char letter : name) {
            if (letter == kBetweenNames || letter == kTakenAsItStands) {
                text += kTakenAsItStands;
            }
            text += letter;
        }
    }
    return text;
}

}  // namespace velmoranth::cli
