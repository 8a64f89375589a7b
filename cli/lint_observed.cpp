#include "cli/lint_observed.h"

#include "cli/calendar_report.h"
#include "cli/sound_report.h"
#include "desktop/audio/sound_decoder.h"
#include "desktop/files/device_root.h"

#include "makers/conversion/icon_rules.h"
#include "makers/conversion/image_rules.h"
#include "makers/conversion/pictures.h"
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using makers::Answers;
using makers::AskedRequest;
using makers::FileAsked;
using makers::FileState;
using makers::Finding;
using makers::finding;
using simulator::Question;

namespace {

constexpr std::size_t kAlpha = 3;

// The least and the greatest alpha; 0 and 0 for no picture.
std::pair<std::uint8_t, std::uint8_t> alphaExtremes(
    const std::optional<simulator::Picture>& picture) {
    std::uint8_t least = 255;
    std::uint8_t greatest = 0;
    if (!picture) {
        return {0, 0};
    }
    for (std::size_t i = kAlpha; i < picture->pixels.size(); i += 4) {
        least = std::min(least, picture->pixels[i]);
        greatest = std::max(greatest, picture->pixels[i]);
    }
    return {least, greatest};
}

Finding hidesEverything(const std::string& file) {
    return finding("mask-hides-everything", file,
                   "it hides everything: where it is light the icon is hidden");
}

Finding hidesNothing(const std::string& file) {
    return finding("mask-hides-nothing", file,
                   "it hides nothing: it is dark all over, and its transparency does not count");
}

std::optional<Finding> verdictOnMask(const std::string& file, const simulator::Answer& answer) {
    const auto [least, greatest] = alphaExtremes(answer.picture);
    if (!answer.picture) {
        return finding("mask-hides-everything", file,
                       "nothing comes of an icon that is cut out by it",
                       "write it with 8 bits a channel, black where icons show");
    }
    return greatest == 0  ? std::optional(hidesEverything(file))
           : least == 255 ? std::optional(hidesNothing(file))
                          : std::nullopt;
}

// Of a mask that no device opens as it is called now, or that hides something.
Finding verdictBySamples(const std::string& file, const std::string& path) {
    const auto bytes = makers::readWhole(path);
    const auto samples = bytes ? makers::firstSamplesOf(*bytes) : std::nullopt;
    if (samples && samples->greatest == 0) {
        return hidesNothing(file);
    }
    return samples && samples->least == UINT8_MAX ? hidesEverything(file)
                                                  : finding("mask-alpha", file);
}

std::string_view codeOf(CalendarFault fault) {
    switch (fault) {
        case CalendarFault::bare:
            return "calendar-missing";
        case CalendarFault::textMissing:
            return "calendar-text-missing";
        case CalendarFault::overlap:
            return "calendar-overlap";
        case CalendarFault::unmasked:
            return "calendar-unmasked";
        case CalendarFault::font:
            return "calendar-font";
        case CalendarFault::color:
            return "calendar-color";
        case CalendarFault::value:
            break;
    }
    return "calendar-value";
}

// Why it cannot be played to its end; "" when it can.
std::string soundProblem(const desktop::DeviceRoot& root, const std::string& file) {
    const auto details = examineSound(root, "/" + file);
    if (!details) {
        return details.error().message;
    }
    return details->problem ? details->problem->message : std::string();
}

// An image of the theme, and the request that opens it.
struct Named {
    Question question;
    std::string file;
};

// Whether one process may ask for both: an app asks for its own images, the system's and those
// without a bundle, not for another app's.
bool mayMeet(const Named& a, const Named& b) {
    return a.question.bundle != b.question.bundle &&
           !(makers::isApp(a.question.bundle) && makers::isApp(b.question.bundle));
}

bool isSame(const makers::FoundTheme& theme, const std::string& a, const std::string& b) {
    const auto first = makers::readWhole(theme.folder + "/" + a);
    const auto second = makers::readWhole(theme.folder + "/" + b);
    return !first || !second || *first == *second;
}

std::map<std::string, std::vector<Named>> namedImages(const Answers& answers) {
    std::map<std::string, std::vector<Named>> named;
    for (const AskedRequest& asked : answers.all()) {
        const FileAsked* const opened = asked.opened();
        if (asked.device == 0 && asked.kind == makers::RequestKind::usual &&
            asked.question.word == "image" && !asked.question.argument.ends_with(".png") &&
            opened != nullptr && opened->state == FileState::found) {
            named[asked.question.argument].push_back({asked.question, opened->name});
        }
    }
    return named;
}

}  // namespace

Observed maskFindings(LintDevices& devices, const Answers& answers, const makers::FoundTheme& theme,
                      const makers::Plan& plan) {
    std::vector<Finding> findings;
    std::set<std::string> judged;
    for (const AskedRequest* const asked : answers.about({"mask", "", ""})) {
        const FileAsked* const mask = asked->opened();
        if (mask == nullptr || mask->state != FileState::found ||
            !judged.insert(mask->name).second) {
            continue;
        }
        const auto answer = devices.askWith(asked->device, {"icon", kProbeApp, ""},
                                            {{"enableIconMask", platform::PropertyList(true)}});
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        if (auto found = verdictOnMask(mask->name, *answer)) {
            findings.push_back(std::move(*found));
        } else {
            judged.erase(mask->name);
        }
    }
    for (const auto& [target, made] : plan.files) {
        if (made.work == makers::Work::mask && target == made.origin() &&
            !judged.contains(target)) {
            findings.push_back(verdictBySamples(target, theme.folder + "/" + made.source));
        }
    }
    return findings;
}

Observed calendarFindingsOf(LintDevices& devices, const DeviceOfRun& device,
                            const Answers& answers) {
    std::vector<Finding> findings;
    if (!answers.isOpened("Info.plist")) {
        return findings;
    }
    const auto answer = devices.askWith(0, {"calendar", "", ""}, {});
    if (!answer) {
        return tl::unexpected(answer.error());
    }
    for (const CalendarFinding& fault : calendarFaults(device, answer->record)) {
        // Some say what to do about it behind a semicolon.
        const std::size_t end = fault.text.find("; write ");
        findings.push_back(
            finding(codeOf(fault.fault), "Info.plist", fault.text.substr(0, end),
                    end == std::string::npos ? std::string() : fault.text.substr(end + 2)));
    }
    return findings;
}

std::vector<Finding> soundFindings(const makers::FoundTheme& theme, const Answers& answers) {
    constexpr std::string_view kSounds = "UISounds/";
    std::vector<Finding> findings;
    const auto root = desktop::DeviceRoot::open(theme.folder);
    for (const makers::ThemeFile& file : theme.files) {
        // One that cannot be read is told of as every file is.
        const bool isReadable = ::access((theme.folder + "/" + file.name).c_str(), R_OK) == 0;
        if (!isReadable || !root || !file.name.starts_with(kSounds) ||
            !answers.isOpened(file.name) || !desktop::canDecodeSounds()) {
            continue;
        }
        if (const std::string problem = soundProblem(**root, file.name); !problem.empty()) {
            findings.push_back(
                finding("sound-broken", file.name, "the sound cannot be played: " + problem));
        }
    }
    return findings;
}

Observed sharedNameFindings(LintDevices& devices, const makers::FoundTheme& theme,
                            const Answers& answers) {
    std::vector<Finding> findings;
    for (const auto& [name, images] : namedImages(answers)) {
        for (std::size_t i = 1; i < images.size(); ++i) {
            const Named& first = images.front();
            const Named& other = images[i];
            if (!mayMeet(first, other) || isSame(theme, first.file, other.file)) {
                continue;
            }
            const auto asked = devices.askTogether(0, {first.question, other.question});
            if (!asked) {
                return tl::unexpected(asked.error());
            }
            if (asked->front().opened() != nullptr && asked->back().opened() == nullptr) {
                findings.push_back(finding("shared-name", other.file,
                                           "where a process asks for this and for " + first.file +
                                               ", the one that comes first shows for both"));
                break;
            }
        }
    }
    return findings;
}

}  // namespace velmoranth::cli
