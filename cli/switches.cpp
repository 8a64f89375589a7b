#include "cli/switches.h"

#include "cli/preferences.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using record::EntryKind;
using simulator::Answer;

namespace {

// Theming as a whole: switched off, everything is stock, which says nothing about the request.
constexpr std::string_view kTheming = "enable";

bool isOn(const Investigation& investigation, const SettingRow& row) {
    const platform::PropertyList* const value =
        platform::objectForKey(investigation.settings, row.key);
    return value == nullptr ? row.isOnInPreview : platform::boolValue(value);
}

// What a device with these switches the other way answers.
struct Turned {
    std::optional<Answer> answer;
    Effects effects;
};

Turned turn(const Investigation& investigation, const simulator::Question& question,
            const std::vector<std::string_view>& keys) {
    Investigation turned = investigation;
    turned.settings = settingsWith(investigation, keys);
    const desktop::DeviceRoot& root = *investigation.device.root;
    Turned result;
    if (setActiveThemes(root, investigation.device.themes, turned.settings)) {
        if (auto answer = askOnce(turned, question)) {
            result.answer = std::move(*answer);
            result.effects = effectsOf(turned, question, result.answer->record);
        }
    }
    static_cast<void>(setActiveThemes(root, investigation.device.themes, investigation.settings));
    return result;
}

const Effect* effectNamed(const std::vector<Effect>& effects, std::string_view name) {
    const auto found = std::ranges::find(effects, name, &Effect::name);
    return found == effects.end() ? nullptr : &*found;
}

// The first effect of `some` that `others` lack.
std::optional<Effect> effectBeyond(const std::vector<Effect>& some,
                                   const std::vector<Effect>& others) {
    const auto found = std::ranges::find_if(
        some, [&](const Effect& effect) { return effectNamed(others, effect.name) == nullptr; });
    return found == some.end() ? std::nullopt : std::optional(*found);
}

// Whether files of themes are asked for that the request does not ask for now.
bool asksForMore(const Turned& turned, const Explanation& explanation) {
    if (!turned.answer) {
        return false;
    }
    return std::ranges::any_of(askedFiles(turned.answer->record), [&](const AskedFile& file) {
        return std::ranges::find(explanation.files, file.path, &AskedFile::path) ==
               explanation.files.end();
    });
}

// What a switch that is off has to do with it: on, a file shows, is looked for, or cuts it out.
std::optional<SwitchReason> reasonOff(const Turned& turned, const Explanation& explanation,
                                      std::string_view key) {
    if (!asksForMore(turned, explanation)) {
        return std::nullopt;
    }
    SwitchReason reason{.key = key,
                        .isOn = false,
                        .file = lastRead(turned.answer->record, turned.effects.made),
                        .brings = effectBeyond(turned.effects.made, explanation.effects),
                        .ends = {}};
    if (explanation.shown) {
        return reason.brings ? std::optional(std::move(reason)) : std::nullopt;
    }
    if (!reason.file && explanation.files.empty()) {
        const std::vector<AskedFile> files = askedFiles(turned.answer->record);
        const auto wanted = std::ranges::find(files, EntryKind::missing, &AskedFile::state);
        if (wanted != files.end()) {
            reason.file = *wanted;
        }
    }
    return reason.file ? std::optional(std::move(reason)) : std::nullopt;
}

std::optional<SwitchReason> firstOff(const Investigation& investigation,
                                     const Explanation& explanation) {
    const std::vector<std::string_view> keys = switchesThatAre(investigation, false);
    if (keys.empty() ||
        !asksForMore(turn(investigation, explanation.question, keys), explanation)) {
        return std::nullopt;  // all at once, and nothing comes of it
    }
    for (const std::string_view key : keys) {
        const Turned turned = turn(investigation, explanation.question, {key});
        if (auto reason = reasonOff(turned, explanation, key)) {
            return reason;
        }
    }
    return std::nullopt;
}

// A switch that is on and hides the picture.
std::optional<SwitchReason> firstOn(const Investigation& investigation,
                                    const Explanation& explanation) {
    for (const std::string_view key : switchesThatAre(investigation, true)) {
        const Turned turned = turn(investigation, explanation.question, {key});
        if (turned.answer && isVisible(turned.answer->picture)) {
            return SwitchReason{.key = key,
                                .isOn = true,
                                .file = lastRead(turned.answer->record, turned.effects.made),
                                .brings = {},
                                .ends = effectBeyond(explanation.effects, turned.effects.made)};
        }
    }
    return std::nullopt;
}

}  // namespace

std::vector<std::string_view> switchesThatAre(const Investigation& investigation, bool on) {
    if (!on && !isSwitchOn(investigation, kTheming)) {
        return {kTheming};  // without it no other one counts
    }
    std::vector<std::string_view> keys;
    for (const SettingRow& row : kPreviewSettings) {
        if (row.member.flag != nullptr && row.key != kTheming && isOn(investigation, row) == on) {
            keys.push_back(row.key);
        }
    }
    return keys;
}

bool isSwitchOn(const Investigation& investigation, std::string_view key) {
    return isOn(investigation, *findSetting(key));
}

platform::Dictionary settingsWith(const Investigation& investigation,
                                  const std::vector<std::string_view>& turned) {
    platform::Dictionary settings = investigation.settings;
    for (const std::string_view key : turned) {
        settings.insert_or_assign(std::string(key),
                                  platform::PropertyList(!isSwitchOn(investigation, key)));
    }
    return settings;
}

std::optional<SwitchReason> switchReasonOf(const Investigation& investigation,
                                           const Explanation& explanation) {
    const bool givesNothing = std::ranges::find(explanation.files, EntryKind::unreadable,
                                                &AskedFile::state) != explanation.files.end();
    if (isVisible(explanation.stock) && !isVisible(explanation.picture) && !givesNothing) {
        if (auto reason = firstOn(investigation, explanation)) {
            return reason;
        }
    }
    const bool lacksMask = isIcon(explanation.question) &&
                           effectNamed(explanation.effects, "mask") == nullptr &&
                           explanation.brokenEffects.empty();
    return !explanation.shown || lacksMask ? firstOff(investigation, explanation) : std::nullopt;
}

}  // namespace velmoranth::cli
