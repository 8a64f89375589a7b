#include "cli/sound_report.h"

#include "cli/messages.h"
#include "desktop/audio/mixer.h"
#include "desktop/audio/sound_decoder.h"
#include "desktop/audio/sound_file.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;
using nlohmann::ordered_json;

namespace {

constexpr std::string_view kThemes = "/Library/Themes/";

struct CodecName {
    std::string_view start;  // of the decoding library's name
    std::string_view name;
};

// The first that fits.
constexpr std::array<CodecName, 9> kCodecNames{{{"adpcm_ima_qt", "IMA4"},
                                                {"pcm_mulaw", "µ-law"},
                                                {"pcm_alaw", "A-law"},
                                                {"pcm_", "linear PCM"},
                                                {"alac", "Apple Lossless"},
                                                {"aac", "AAC"},
                                                {"mp3", "MP3"},
                                                {"ilbc", "iLBC"},
                                                {"", ""}}};

std::string codecName(const std::string& codec) {
    const auto* const row =
        std::find_if(kCodecNames.begin(), kCodecNames.end(),
                     [&](const CodecName& entry) { return codec.starts_with(entry.start); });
    return row->name.empty() ? codec : std::string(row->name);
}

// "key_press_click.caf of Kilnware.theme", or the path of what is no theme's.
std::string fileInWords(const std::string& path) {
    if (!path.starts_with(kThemes)) {
        return path;
    }
    const std::size_t end = path.find('/', kThemes.size());
    return path.substr(path.rfind('/') + 1) + " of " +
           path.substr(kThemes.size(), end - kThemes.size());
}

std::string themeOf(const std::string& path) {
    return path.starts_with(kThemes)
               ? path.substr(kThemes.size(), path.find('/', kThemes.size()) - kThemes.size())
               : std::string();
}

std::string detailsInWords(const SoundReport& report) {
    if (!report.details) {
        return {};
    }
    const SoundDetails& details = *report.details;
    std::string text = fmt::format(": {:.2f} s{}, {}, {}, {} Hz", details.seconds,
                                   details.isCutOff ? ", the rest is cut off" : "", details.codec,
                                   counted(static_cast<std::size_t>(details.channels), "channel"),
                                   details.sampleRate);
    if (report.player->volume < 1) {
        text += fmt::format(", volume {}", report.player->volume);
    }
    return text;
}

std::string systemSoundInWords(const SoundReport& report) {
    switch (report.event.source) {
        case SoundSource::feedback:
        case SoundSource::homeScreen:
            break;
        case SoundSource::panel:
            return {};
    }
    if (!report.playsSystemSound) {
        return "the system's own sound is kept from playing\n";
    }
    return report.isPlayed()
               ? "the system's own sound plays with it; it is the phone's, and is not "
                 "played here\n"
               : "the system's own sound plays alone; it is the phone's, and is not "
                 "played here\n";
}

// Whether the folder itself was handed to the player: there is no file for this number.
bool isFolderAlone(const SoundReport& report) {
    return std::any_of(report.probes.begin(), report.probes.end(),
                       [&](const FileProbe& probe) { return probe.path == report.file; });
}

std::string unplayable(const SoundReport& report) {
    if (!report.player->problem) {
        return shown(report.file) + " could not be started";
    }
    desktop::Problem problem = *report.player->problem;
    problem.path = shown(report.file);
    return desktop::toLine(problem);
}

}  // namespace

Result<SoundDetails> examineSound(const desktop::DeviceRoot& root, const std::string& devicePath) {
    const auto file = desktop::SoundFile::open(root, devicePath);
    if (!file) {
        return tl::unexpected(file.error());
    }
    const auto decoder = desktop::SoundDecoder::open(*file, desktop::Mixer::kDefaultSampleRate);
    if (!decoder) {
        return tl::unexpected(decoder.error());
    }
    const desktop::SoundFormat& format = (*decoder)->format();
    SoundDetails details{.codec = codecName(format.codec),
                         .channels = format.channels,
                         .sampleRate = format.sampleRate,
                         .problem = {}};
    constexpr auto kMostFrames =
        static_cast<std::size_t>(kLongestSound * desktop::Mixer::kDefaultSampleRate);
    std::array<float, std::size_t{4096} * desktop::kChannels> buffer{};
    constexpr std::size_t kFrames = buffer.size() / desktop::kChannels;
    std::size_t frames = 0;
    for (std::size_t read = kFrames; read == kFrames && frames < kMostFrames; frames += read) {
        read = (*decoder)->read(buffer);
    }
    details.isCutOff = frames >= kMostFrames;
    details.seconds =
        std::min(static_cast<double>(frames) / desktop::Mixer::kDefaultSampleRate, kLongestSound);
    details.problem = (*decoder)->problem();
    return details;
}

std::string whySilent(const SoundReport& report) {
    if (report.isPlayed()) {
        return {};
    }
    if (report.event.source == SoundSource::panel) {
        const bool isRead = !report.probes.empty() && report.probes.back().exists;
        return isRead ? unplayable(report) : shown(report.file) + ": there is no such file";
    }
    if (!report.isThemingOn) {
        return "theming is off";
    }
    if (!report.player) {
        return report.probes.empty() ? "no theme is active"
                                     : "no active theme has a folder UISounds";
    }
    if (isFolderAlone(report)) {
        return "no sound of a theme belongs to " +
               std::string(report.event.source == SoundSource::feedback ? "system sound "
                                                                        : "event ") +
               std::to_string(report.event.number);
    }
    return unplayable(report);
}

std::string reportAsText(const SoundReport& report) {
    std::string text = report.isPlayed()
                           ? shown(fileInWords(report.file)) + detailsInWords(report) + "\n"
                           : "silent: " + whySilent(report) + "\n";
    if (report.event.source != SoundSource::panel) {
        for (const FileProbe& probe : report.probes) {
            text += "  " + shown(probe.path) + (probe.exists ? ": there\n" : ": not there\n");
        }
    }
    text += systemSoundInWords(report);
    if (report.isPlayed() && report.isHeard == false) {
        text +=
            "nothing was heard here: this machine has no sound device; -o FILE writes it as a "
            "WAV file\n";
    }
    return text;
}

std::string reportAsJson(const SoundReport& report, const std::string& output) {
    auto probes = ordered_json::array();
    for (const FileProbe& probe : report.probes) {
        probes.push_back({{"path", probe.path}, {"exists", probe.exists}});
    }
    ordered_json json{{"event", report.event.name}};
    if (report.event.source == SoundSource::panel) {
        json["message"] = report.event.action;
    } else {
        json["number"] = report.event.number;
    }
    json["played"] = report.isPlayed();
    if (report.isPlayed() && report.isHeard) {
        json["heard"] = *report.isHeard;
    }
    json["file"] = report.file.empty() ? ordered_json() : ordered_json(report.file);
    const std::string theme = themeOf(report.file);
    json["theme"] = theme.empty() ? ordered_json() : ordered_json(theme);
    json["reason"] = report.isPlayed() ? ordered_json() : ordered_json(whySilent(report));
    if (report.details) {
        json["seconds"] = report.details->seconds;
        json["codec"] = report.details->codec;
        json["channels"] = report.details->channels;
        json["sampleRate"] = report.details->sampleRate;
        json["volume"] = report.player->volume;
    }
    json["systemSound"] = report.playsSystemSound;
    json["lookedFor"] = std::move(probes);
    if (report.isPlayed() && !output.empty()) {
        json["output"] = output;
    }
    return json.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace velmoranth::cli
