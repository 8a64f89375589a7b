#include "cli/settings_values.h"

#include "cli/messages.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <variant>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using nlohmann::ordered_json;
using platform::PropertyList;

namespace {

constexpr char kBetweenNames = ',';
constexpr char kTakenAsItStands = '\\';

// In the order of the alternatives of PropertyList::Value.
constexpr std::array<std::string_view, std::variant_size_v<PropertyList::Value>> kKindNames{
    "a boolean", "an integer", "a number", "a text", "a date", "data", "a list", "a dictionary"};

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

std::string joinedNames(const std::vector<std::string>& names) {
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

Result<PropertyList> parseValue(const PreferenceKey& key, std::string_view text) {
    if (key.kind == PreferenceKind::themes) {
        return parseThemes(text);
    }
    auto parsed = parsePreference(key.kind, text);
    if (!parsed) {
        return tl::unexpected(Problem{std::string(key.name) + " takes " +
                                      std::string(takenBy(key.kind)) + ", not " + inQuotes(text)});
    }
    return std::move(*parsed);
}

Result<Assignment> parseAssignment(const std::string& word) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) {
        return tl::unexpected(
            Problem{"velmoranth settings set takes KEY=VALUE, not " + inQuotes(word)});
    }
    const std::string_view name = std::string_view(word).substr(0, equals);
    const PreferenceKey* const key = findPreferenceKey(name);
    if (key == nullptr) {
        return tl::unexpected(
            Problem{noSuchPreference(name, preferenceKeys(), "velmoranth settings set --help")});
    }
    auto value = parseValue(*key, std::string_view(word).substr(equals + 1));
    if (!value) {
        return tl::unexpected(std::move(value.error()));
    }
    return Assignment{key, std::move(*value)};
}

// A list of themes behind the one that was given before.
PropertyList appended(const PropertyList& first, const PropertyList& second) {
    PropertyList::Array list = *first.as<PropertyList::Array>();
    const auto& more = *second.as<PropertyList::Array>();
    list.insert(list.end(), more.begin(), more.end());
    return list;
}

ordered_json asJson(const PropertyList& value);

struct ToJson {
    ordered_json operator()(bool value) const { return value; }

    ordered_json operator()(std::int64_t value) const { return value; }

    ordered_json operator()(double value) const { return value; }

    ordered_json operator()(const std::string& value) const { return value; }

    ordered_json operator()(const platform::Date& value) const {
        return platform::description(PropertyList(value));
    }

    ordered_json operator()(const platform::Data& value) const {
        return platform::description(PropertyList(value));
    }

    ordered_json operator()(const PropertyList::Array& value) const {
        auto array = ordered_json::array();
        for (const PropertyList& entry : value) {
            array.push_back(asJson(entry));
        }
        return array;
    }

    ordered_json operator()(const PropertyList::Dictionary& value) const {
        auto object = ordered_json::object();
        for (const auto& [key, entry] : value) {
            object[key] = asJson(entry);
        }
        return object;
    }
};

ordered_json asJson(const PropertyList& value) {
    return std::visit(ToJson(), value.value());
}

ordered_json takenAsJson(PreferenceKind kind, const PropertyList* value) {
    switch (kind) {
        case PreferenceKind::yesOrNo:
            return platform::boolValue(value);
        case PreferenceKind::number:
            return platform::floatValue(value);
        case PreferenceKind::themes:
            break;
    }
    return themeNames(value);
}

ordered_json rowOf(std::string_view name, const PreferenceKey* key, const PropertyList* value) {
    ordered_json row{{"key", name},
                     {"type", nullptr},
                     {"set", value != nullptr},
                     {"value", value == nullptr ? ordered_json() : asJson(*value)}};
    if (key != nullptr) {
        row["type"] = nameOf(key->kind);
        row["taken"] = takenAsJson(key->kind, value);
        row["summary"] = key->summary;
    }
    return row;
}

std::string dumped(const ordered_json& json) {
    return json.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace

Result<std::vector<Assignment>> parseAssignments(std::span<const std::string> words) {
    std::vector<Assignment> assignments;
    for (const std::string& word : words) {
        auto assignment = parseAssignment(word);
        if (!assignment) {
            return tl::unexpected(std::move(assignment.error()));
        }
        const auto before =
            std::find_if(assignments.begin(), assignments.end(),
                         [&](const Assignment& other) { return other.key == assignment->key; });
        if (before == assignments.end()) {
            assignments.push_back(std::move(*assignment));
        } else if (assignment->key->kind == PreferenceKind::themes) {
            before->value = appended(before->value, assignment->value);
        } else {
            return tl::unexpected(
                Problem{std::string(assignment->key->name) + " is given more than once"});
        }
    }
    return assignments;
}

std::vector<std::string> themeNames(const PropertyList* value) {
    std::vector<std::string> names;
    const auto* const entries = value == nullptr ? nullptr : value->as<PropertyList::Array>();
    if (entries != nullptr) {
        names.reserve(entries->size());
        for (const PropertyList& entry : *entries) {
            names.push_back(platform::description(entry));
        }
    }
    return names;
}

std::string takenValue(PreferenceKind kind, const PropertyList* value) {
    switch (kind) {
        case PreferenceKind::yesOrNo:
            return platform::boolValue(value) ? "yes" : "no";
        case PreferenceKind::number:
            return fmt::format("{}", platform::floatValue(value));
        case PreferenceKind::themes:
            break;
    }
    return joinedNames(themeNames(value));
}

bool isOfKind(PreferenceKind kind, const PropertyList& value) {
    switch (kind) {
        case PreferenceKind::yesOrNo:
            // Written as a number by some, and read alike.
            return value.as<bool>() != nullptr || value.as<std::int64_t>() != nullptr;
        case PreferenceKind::number:
            return value.as<double>() != nullptr || value.as<std::int64_t>() != nullptr;
        case PreferenceKind::themes:
            break;
    }
    const auto* const entries = value.as<PropertyList::Array>();
    return entries != nullptr &&
           std::all_of(entries->begin(), entries->end(), [](const PropertyList& entry) {
               return entry.as<std::string>() != nullptr;
           });
}

std::string describedValue(const PropertyList& value) {
    return std::string(kKindNames.at(value.value().index())) + " (" +
           shown(platform::description(value)) + ")";
}

std::string settingAsJson(std::string_view name, const PreferenceKey* key,
                          const PropertyList* value) {
    return dumped(rowOf(name, key, value));
}

std::string settingsAsJson(const platform::Dictionary& preferences,
                           const std::vector<std::string>& saved) {
    auto settings = ordered_json::array();
    for (const PreferenceKey& key : preferenceKeys()) {
        settings.push_back(rowOf(key.name, &key, platform::objectForKey(preferences, key.name)));
    }
    auto others = ordered_json::array();
    for (const std::string& name : otherKeys(preferences)) {
        others.push_back(rowOf(name, nullptr, &preferences.at(name)));
    }
    return dumped({{"settings", settings}, {"other", others}, {"saved", saved}});
}

std::vector<std::string> otherKeys(const platform::Dictionary& preferences) {
    std::vector<std::string> names;
    for (const auto& [name, value] : preferences) {
        if (findPreferenceKey(name) == nullptr) {
            names.push_back(name);
        }
    }
    return names;
}

std::string_view nameOf(PreferenceKind kind) {
    switch (kind) {
        case PreferenceKind::yesOrNo:
            return "yesOrNo";
        case PreferenceKind::number:
            return "number";
        case PreferenceKind::themes:
            break;
    }
    return "themes";
}

}  // namespace velmoranth::cli
