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

constexpr std::array<PreferenceKey, 20> kKeys{{
    {"enable", kYesOrNo, "theming as a whole; on unless set"},
    {"enableIconMask", kYesOrNo, "the theme's icon mask; on unless set"},
    {"enableOverlay", kYesOrNo, "the theme's overlay over icons; on unless set"},
    {"enableShadow", kYesOrNo, "the theme's shadow picture behind every icon"},
    {"dynamicShadow", kYesOrNo, "a drawn shadow behind every icon, as the next six have it"},
    {"shadowRadiusVal", kNumber, "blur of the drawn shadow, points"},
    {"opacityVal", kNumber, "opacity of the drawn shadow, 0 to 1"},
    {"xAxisVal", kNumber, "offset of the drawn shadow to the right, points"},
    {"yAxisVal", kNumber, "offset of the drawn shadow downwards, points"},
    {"shadowWidthVal", kNumber, "width of the drawn shadow, points"},
    {"shadowHeightVal", kNumber, "height of the drawn shadow, points"},
    {"removeDock", kYesOrNo, "the theme's dock picture in place of the dock's own background"},
    {"removeFolderBG", kYesOrNo, "a tap anywhere on an open folder closes it"},
    {"removeLabels", kYesOrNo, "icons without labels"},
    {"removeIconBadges", kYesOrNo, "icons without badges"},
    {"removePageDots", kYesOrNo, "no page dots"},
    {"enableLogging", kYesOrNo, "write what is looked up to the log, too"},
    {"enableImageDump", kYesOrNo, "dump every image asked for; of use with --root alone"},
    {"iconReflection", kYesOrNo, "kept for older preferences; changes nothing"},
    {"moreDockIcons", kYesOrNo, "kept for older preferences; changes nothing"},
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

constexpr auto kKeyNames = [] {
    std::array<std::string_view, kKeys.size()> names;
    std::transform(kKeys.begin(), kKeys.end(), names.begin(),
                   [](const PreferenceKey& key) { return key.name; });
    return names;
}();

std::optional<PropertyList> parseValue(PreferenceKind kind, std::string_view text) {
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

}  // namespace

std::span<const PreferenceKey> preferenceKeys() {
    return kKeys;
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
    const auto* const key = std::find_if(
        kKeys.begin(), kKeys.end(), [&](const PreferenceKey& row) { return row.name == name; });
    if (key == kKeys.end()) {
        const std::string near = suggestion(name, kKeyNames);
        return tl::unexpected(
            Problem{"there is no preference " + inQuotes(name) +
                    (near.empty() ? "; velmoranth preview --help lists them" : near)});
    }
    const std::optional<PropertyList> parsed = parseValue(key->kind, value);
    if (!parsed) {
        return tl::unexpected(
            Problem{"--set " + std::string(name) + " takes " +
                    (key->kind == PreferenceKind::yesOrNo ? "yes or no" : "a number") + ", not \"" +
                    shown(value) + "\""});
    }
    preferences.insert_or_assign(std::string(name), *parsed);
    return {};
}

}  // namespace velmoranth::cli
