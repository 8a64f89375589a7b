#include "cli/sound_events.h"

#include "cli/messages.h"
#include "cli/nearest.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <ranges>
#include <system_error>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;

namespace {

constexpr auto kFeedback = SoundSource::feedback;
constexpr auto kHomeScreen = SoundSource::homeScreen;
constexpr auto kPanel = SoundSource::panel;

constexpr std::string_view kEventPrefix = "event:";

constexpr std::array<SoundName, 19> kSoundNames{{
    {"message-sent", kFeedback, 1000, {}, "a message is sent"},
    {"lock", kFeedback, 1002, {}, "the device is locked"},
    {"anticipate", kFeedback, 1003, {}, "something is about to happen"},
    {"key-click", kFeedback, 1104, {}, "a key of the keyboard"},
    {"shutter", kFeedback, 1108, {}, "the camera's shutter"},
    {"key-modifier", kFeedback, 1155, {}, "a modifier key"},
    {"key-delete", kFeedback, 1156, {}, "the delete key"},
    {"event:lock", kHomeScreen, 1002, {}, "event of the home screen: the device is locked"},
    {"event:anticipate", kHomeScreen, 1003, {}, "... something is about to happen"},
    {"event:key-click", kHomeScreen, 1004, {}, "... a key"},
    {"event:shutter", kHomeScreen, 1008, {}, "... the camera's shutter"},
    {"panel:click", kPanel, 0, "PlayButtonClick:", "settings panel: a button"},
    {"panel:slide", kPanel, 0, "PlaySlide:", "... a row that slides"},
    {"panel:slide-click", kPanel, 0, "PlaySlideWithClick:", "... a row that slides and clicks"},
    {"panel:error", kPanel, 0, "PlayError:", "... a failure"},
    {"panel:reboot", kPanel, 0, "PlayReboot:", "... a restart"},
    {"panel:success", kPanel, 0, "PlaySuccess:", "... a success"},
    {"panel:on", kPanel, 0, "PlayOn:", "... a switch that goes on"},
    {"panel:off", kPanel, 0, "PlayOff:", "... a switch that goes off"},
}};

std::optional<std::uint64_t> parseWhole(std::string_view text) {
    std::uint64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return text.empty() || error != std::errc() || stop != text.data() + text.size()
               ? std::nullopt
               : std::optional(number);
}

}  // namespace

std::span<const SoundName> soundNames() {
    return kSoundNames;
}

Result<SoundEvent> parseSoundEvent(const std::string& word) {
    for (const SoundName& row : kSoundNames) {
        if (row.name == word) {
            return SoundEvent{row.source, row.number, row.action, word};
        }
    }
    const bool isEvent = word.starts_with(kEventPrefix);
    const std::string_view text = std::string_view(word).substr(isEvent ? kEventPrefix.size() : 0);
    if (const auto number = parseWhole(text)) {
        if (!isEvent && *number > std::numeric_limits<std::uint32_t>::max()) {
            return tl::unexpected(Problem{"a system sound's number has 32 bits, and " +
                                          inQuotes(word) + " is larger"});
        }
        return SoundEvent{isEvent ? kHomeScreen : kFeedback, *number, {}, word};
    }
    return tl::unexpected(
        Problem{"there is no sound " + inQuotes(word) +
                suggestion(word, std::views::transform(kSoundNames, &SoundName::name),
                           "; velmoranth sound --help lists them")});
}

}  // namespace velmoranth::cli
