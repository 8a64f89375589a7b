#include "cli/settings_values.h"

#include "cli/messages.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <variant>

namespace velmoranth::platform {

// Found by the JSON library, also for what lists and dictionaries hold.
// NOLINTNEXTLINE(readability-identifier-naming): the library's name for it.
static void to_json(nlohmann::ordered_json& json, const PropertyList& value) {
    std::visit(
        [&](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, Date> || std::is_same_v<Held, Data>) {
                json = description(value);
            } else {
                json = held;
            }
        },
        value.value());
}

}  // namespace velmoranth::platform

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using nlohmann::ordered_json;
using platform::PropertyList;

namespace {

constexpr AssignmentTaker kSettingsSet{"velmoranth settings set", "",
                                       "velmoranth settings set --help", core::kSettingRows};

// A list of themes behind the one that was given before.
PropertyList appended(const PropertyList& first, const PropertyList& second) {
    PropertyList::Array list = *first.as<PropertyList::Array>();
    const auto& more = *second.as<PropertyList::Array>();
    list.insert(list.end(), more.begin(), more.end());
    return list;
}

ordered_json takenAsJson(SettingKind kind, const PropertyList* value) {
    switch (kind) {
        case SettingKind::yesOrNo:
            return platform::boolValue(value);
        case SettingKind::number:
            return platform::floatValue(value);
        case SettingKind::themes:
            break;
    }
    return themeNames(value);
}

// In the order of the enumeration.
constexpr std::array<const char*, 4> kShows{"atOnce", "iconsAtOnce", "atOnceWhenOn",
                                            "afterRespring"};

ordered_json rowOf(const KeyOfDevice& key) {
    const PropertyList* const value = key.value;
    ordered_json row{{"key", key.name},
                     {"type", nullptr},
                     {"set", value != nullptr},
                     {"value", value == nullptr ? ordered_json() : ordered_json(*value)}};
    if (const SettingRow* const setting = key.setting) {
        row["type"] = wordsFor(setting->kind()).name;
        row["taken"] = takenAsJson(setting->kind(), value);
        if (key.atNextStart != nullptr) {
            row["atNextStart"] = takenAsJson(setting->kind(), key.atNextStart);
        }
        row["shows"] = kShows.at(static_cast<std::size_t>(setting->shows));
        row["summary"] = setting->summary;
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
        auto assignment = parseAssignment(word, kSettingsSet);
        if (!assignment) {
            return tl::unexpected(std::move(assignment.error()));
        }
        const auto before = std::find_if(
            assignments.begin(), assignments.end(),
            [&](const Assignment& other) { return other.setting == assignment->setting; });
        if (before == assignments.end()) {
            assignments.push_back(std::move(*assignment));
        } else if (assignment->setting->kind() == SettingKind::themes) {
            before->value = appended(before->value, assignment->value);
        } else {
            return tl::unexpected(
                Problem{std::string(assignment->setting->key) + " is given more than once"});
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

std::string takenValue(SettingKind kind, const PropertyList* value) {
    switch (kind) {
        case SettingKind::yesOrNo:
            return platform::boolValue(value) ? "yes" : "no";
        case SettingKind::number:
            return fmt::format("{}", platform::floatValue(value));
        case SettingKind::themes:
            break;
    }
    return joinedThemes(themeNames(value));
}

std::string takenInWords(SettingKind kind, const PropertyList* value) {
    const std::string taken = shown(takenValue(kind, value));
    return taken.empty() ? "none" : taken;
}

std::string takenWithoutValue(SettingKind kind) {
    return kind == SettingKind::themes ? "no theme at all" : takenValue(kind, nullptr);
}

bool isOfKind(SettingKind kind, const PropertyList& value) {
    switch (kind) {
        case SettingKind::yesOrNo:
            // Written as a number by some, and read alike.
            return value.as<bool>() != nullptr || value.as<std::int64_t>() != nullptr;
        case SettingKind::number:
            return value.as<double>() != nullptr || value.as<std::int64_t>() != nullptr;
        case SettingKind::themes:
            break;
    }
    const auto* const entries = value.as<PropertyList::Array>();
    return entries != nullptr &&
           std::all_of(entries->begin(), entries->end(), [](const PropertyList& entry) {
               return entry.as<std::string>() != nullptr;
           });
}

std::string describedValue(const PropertyList& value) {
    return kindName(value) + " (" + shown(platform::description(value)) + ")";
}

std::string settingAsJson(const KeyOfDevice& key) {
    return dumped(rowOf(key));
}

std::string settingsAsJson(const platform::Dictionary& preferences,
                           const std::optional<platform::Dictionary>& atNextStart,
                           const std::vector<std::string>& saved) {
    auto settings = ordered_json::array();
    for (const SettingRow& row : core::kSettingRows) {
        settings.push_back(
            rowOf({row.key, &row, platform::objectForKey(preferences, row.key),
                   atNextStart ? platform::objectForKey(*atNextStart, row.key) : nullptr}));
    }
    auto others = ordered_json::array();
    for (const std::string& name : otherKeys(preferences)) {
        others.push_back(rowOf({name, nullptr, &preferences.at(name)}));
    }
    return dumped({{"settings", settings}, {"other", others}, {"saved", saved}});
}

std::vector<std::string> otherKeys(const platform::Dictionary& preferences) {
    std::vector<std::string> names;
    for (const auto& [name, value] : preferences) {
        if (findSetting(name) == nullptr) {
            names.push_back(name);
        }
    }
    return names;
}

}  // namespace velmoranth::cli
