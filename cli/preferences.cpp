#include "cli/preferences.h"

#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/numbers.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace velmoranth::cli {

using desktop::Problem;
using platform::PropertyList;

namespace {

constexpr auto kYesOrNo = PreferenceKind::yesOrNo;
constexpr auto kNumber = PreferenceKind::number;

constexpr auto kPreferences = Notification::preferences;
constexpr auto kThemeChanged = Notification::themeChanged;
constexpr auto kDeveloping = Notification::developing;

constexpr std::string_view kOnUnlessSet = "on unless set";

// The list of themes first: previewKeys() leaves it out.
constexpr std::array<PreferenceKey, 21> kKeys{{
    {"ActiveThemes", PreferenceKind::themes, kThemeChanged,
     "the themes in use, by the names of their folders; the first that has a picture wins"},
    {"enable", kYesOrNo, kThemeChanged, "theming as a whole", kOnUnlessSet},
    {"enableIconMask", kYesOrNo, kThemeChanged, "the theme's icon mask", kOnUnlessSet},
    {"enableOverlay", kYesOrNo, kThemeChanged, "the theme's overlay over icons", kOnUnlessSet},
    {"enableShadow", kYesOrNo, kPreferences, "the theme's shadow picture behind every icon"},
    {"dynamicShadow", kYesOrNo, kPreferences,
     "a drawn shadow behind every icon, as the next six have it"},
    {"shadowRadiusVal", kNumber, kPreferences, "blur of the drawn shadow, points"},
    {"opacityVal", kNumber, kPreferences, "opacity of the drawn shadow, 0 to 1"},
    {"xAxisVal", kNumber, kPreferences, "offset of the drawn shadow to the right, points"},
    {"yAxisVal", kNumber, kPreferences, "offset of the drawn shadow downwards, points"},
    {"shadowWidthVal", kNumber, kPreferences, "width of the drawn shadow, points"},
    {"shadowHeightVal", kNumber, kPreferences, "height of the drawn shadow, points"},
    {"removeDock", kYesOrNo, kPreferences,
     "the theme's dock picture in place of the dock's own background"},
    {"removeFolderBG", kYesOrNo, kPreferences, "a tap anywhere on an open folder closes it"},
    {"removeLabels", kYesOrNo, kPreferences, "icons without labels"},
    {"removeIconBadges", kYesOrNo, kPreferences, "icons without badges"},
    {"removePageDots", kYesOrNo, kPreferences, "no page dots"},
    {"enableLogging", kYesOrNo, kPreferences, "write what is looked up to the log, too"},
    {"enableImageDump", kYesOrNo, kDeveloping, "dump every image asked for",
     "of use with --root alone"},
    {"iconReflection", kYesOrNo, kPreferences, "kept for older preferences; changes nothing"},
    {"moreDockIcons", kYesOrNo, kPreferences, "kept for older preferences; changes nothing"},
}};

struct Word {
    std::string_view text;
    bool value;
};

constexpr std::array<Word, 8> kWords{{{"yes", true},
                                      {"no", false},
                                      {"true", true},
                                      {"false", false},
                                      {"on", true},
                                      {"off", false},
                                      {"1", true},
                                      {"0", false}}};

}  // namespace

std::span<const PreferenceKey> preferenceKeys() {
    return kKeys;
}

std::span<const PreferenceKey> previewKeys() {
    return preferenceKeys().subspan(1);
}

const PreferenceKey* findPreferenceKey(std::string_view name) {
    const auto* const key = std::find_if(
        kKeys.begin(), kKeys.end(), [&](const PreferenceKey& row) { return row.name == name; });
    return key == kKeys.end() ? nullptr : key;
}

std::string noSuchPreference(std::string_view name, std::span<const PreferenceKey> keys,
                             std::string_view whereListed) {
    std::vector<std::string_view> names;
    names.reserve(keys.size());
    for (const PreferenceKey& key : keys) {
        names.push_back(key.name);
    }
    const std::string near = suggestion(name, names);
    return "there is no preference " + inQuotes(name) +
           (near.empty() ? "; " + std::string(whereListed) + " lists them" : near);
}

std::optional<PropertyList> parsePreference(PreferenceKind kind, std::string_view text) {
    if (kind == PreferenceKind::yesOrNo) {
        const auto* const word =
            std::find_if(kWords.begin(), kWords.end(),
                         [&](const Word& candidate) { return candidate.text == text; });
        return word == kWords.end() ? std::nullopt : std::optional<PropertyList>(word->value);
    }
    const std::optional<double> number = parseNumber(text);
    // The engine keeps 32 bits of it.
    if (!number || *number > double{std::numeric_limits<float>::max()} ||
        *number < double{std::numeric_limits<float>::lowest()}) {
        return std::nullopt;
    }
    return PropertyList(*number);
}

std::string_view takenBy(PreferenceKind kind) {
    switch (kind) {
        case PreferenceKind::yesOrNo:
            return "yes or no";
        case PreferenceKind::number:
            return "a number";
        case PreferenceKind::themes:
            break;
    }
    return "names of themes";
}

platform::Dictionary previewPreferences(const std::vector<std::string>& themes) {
    return {{"ActiveThemes", PropertyList::Array(themes.begin(), themes.end())},
            {"enable", true},
            {"enableIconMask", true},
            {"enableOverlay", true}};
}

desktop::Result<void> setPreference(platform::Dictionary& preferences,
                                    std::string_view assignment) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        return tl::unexpected(Problem{"--set takes KEY=VALUE, not " + inQuotes(assignment)});
    }
    const std::string_view name = assignment.substr(0, equals);
    const std::string_view value = assignment.substr(equals + 1);
    const PreferenceKey* const key = findPreferenceKey(name);
    if (key == nullptr || key->kind == PreferenceKind::themes) {
        return tl::unexpected(
            Problem{noSuchPreference(name, previewKeys(), "velmoranth preview --help")});
    }
    const std::optional<PropertyList> parsed = parsePreference(key->kind, value);
    if (!parsed) {
        return tl::unexpected(Problem{"--set " + std::string(name) + " takes " +
                                      std::string(takenBy(key->kind)) + ", not \"" + shown(value) +
                                      "\""});
    }
    preferences.insert_or_assign(std::string(name), *parsed);
    return {};
}

}  // namespace velmoranth::cli
