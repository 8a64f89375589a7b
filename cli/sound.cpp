// velmoranth sound
#include "cli/commands.h"
#include "cli/device_check.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/settings_device.h"
#include "cli/sound_events.h"
#include "cli/sound_process.h"
#include "cli/sound_report.h"
#include "cli/throw_away_device.h"
#include "core/settings.h"
#include "desktop/audio/audio.h"
#include "desktop/audio/mixer.h"
#include "desktop/audio/recording_output.h"
#include "desktop/audio/sdl_output.h"
#include "desktop/files/cleanup.h"
#include "simulator/toolkit/feedback_classes.h"

#include "record/recorder.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;
using platform::ObjectRef;

namespace {

struct SoundOptions {
    SoundEvent event;
    std::vector<std::string> themes;
    std::optional<std::string> root;
    std::string output;  // "" to play it
    bool asJson = false;
};

Result<SoundOptions> readOptions(const Arguments& arguments) {
    const std::vector<std::string>& words = arguments.positionals();
    auto event = parseSoundEvent(words.front());
    if (!event) {
        return tl::unexpected(std::move(event.error()));
    }
    SoundOptions options{.event = std::move(*event),
                         .themes = {words.begin() + 1, words.end()},
                         .root = arguments.value("--root"),
                         .output = arguments.value("--output").value_or(std::string()),
                         .asJson = arguments.has("--json")};
    if (auto named = noneEmpty(options.themes, "THEME"); !named) {
        return tl::unexpected(std::move(named.error()));
    }
    if (options.root && !options.themes.empty()) {
        return misuse("--root does not go with THEME: a device has its own themes");
    }
    if (!options.root && options.themes.empty() && options.event.source != SoundSource::panel) {
        return misuse("a THEME folder is missing (or --root DIR); velmoranth sound --help");
    }
    if (arguments.has("--output") && options.output.empty()) {
        return misuse("--output takes a name, and this one is empty");
    }
    if (options.output == "-") {
        return misuse("--output takes a file's name: standard output says what is played");
    }
    if (std::string why = whyOtherFormat(options.output, FileFormat::wav); !why.empty()) {
        return misuse(std::move(why));
    }
    return options;
}

// The user's own is used as it is.
Result<DeviceOfRun> deviceFor(const SoundOptions& options) {
    if (!options.root) {
        return makeDevice(options.themes);
    }
    auto root = openSettingsDevice(*options.root);
    if (!root) {
        return tl::unexpected(std::move(root.error()));
    }
    if (options.event.source != SoundSource::panel) {
        warnOfPreferences(**root);
    }
    return DeviceOfRun{std::move(*root)};
}

// A process of the device, in which the moment comes. Its sound plays while this is there.
class Performance {
  public:
    Performance(const DeviceOfRun& device, desktop::Mixer& mixer, desktop::SoundOutput& output)
        : root_(device.root), audio_(device.root, mixer, output), process_(device.root, audio_) {
        simulator::registerFeedbackClasses(
            process_.runtime(), [this](std::uint64_t /*number*/) { playsSystemSound_ = true; });
        SoundProcess::startEngine();
    }

    [[nodiscard]] SoundReport perform(const SoundEvent& event) {
        static_cast<void>(process_.takeRecord());
        send(event);
        const record::Record done = process_.takeRecord();
        SoundReport report{.event = event,
                           .isThemingOn = core::settings().enable,
                           .probes = probesIn(done),
                           .player = lastPlayerIn(done),
                           .file = {},
                           .playsSystemSound = playsSystemSound_,
                           .details = {}};
        if (report.player) {
            report.player->problem = audio_.lastProblem();
            // Data was read from the last file that was asked for.
            report.file = !report.player->path.empty() ? report.player->path
                          : report.probes.empty()      ? std::string()
                                                       : report.probes.back().path;
        }
        if (report.isPlayed()) {
            if (auto details = examineSound(*root_, report.file)) {
                report.details = std::move(*details);
            }
        }
        return report;
    }

  private:
    void send(const SoundEvent& event) {
        desktop::Runtime& runtime = process_.runtime();
        switch (event.source) {
            case SoundSource::feedback: {
                const auto feedback =
                    simulator::makeFeedback(runtime, static_cast<std::uint32_t>(event.number));
                runtime.send<void>(*feedback, "play");
                break;
            }
            case SoundSource::homeScreen:
                simulator::playFeedbackEvent(runtime, event.number,
                                             [this](std::uint64_t) { playsSystemSound_ = true; });
                break;
            case SoundSource::panel:
                panel_ = runtime.sendToClass<ObjectRef>("Sounds", "new");
                if (panel_ != nullptr) {
                    const record::Frame sent(
                        {.kind = record::EntryKind::entered,
                         .message = "-[Sounds " + std::string(event.action) + "]"});
                    runtime.send<void>(*panel_, std::string(event.action), ObjectRef());
                }
                break;
        }
    }

    std::shared_ptr<const desktop::DeviceRoot> root_;
    desktop::DesktopAudio audio_;
    SoundProcess process_;
    ObjectRef panel_;
    bool playsSystemSound_ = false;
};

void printReport(const SoundOptions& options, const SoundReport& report) {
    if (report.details && report.details->problem) {
        desktop::Problem problem = *report.details->problem;
        problem.path = shown(report.file);
        problem.message = "the sound ends early: " + problem.message;
        warn(desktop::toLine(problem));
    }
    print(options.asJson ? reportAsJson(report, options.output) : reportAsText(report));
}

ExitCode codeOf(const SoundReport& report) {
    return report.isPlayed() && report.isHeard.value_or(true) ? ExitCode::done
                                                              : ExitCode::nothingFound;
}

ExitCode playToFile(const SoundOptions& options, const DeviceOfRun& device) {
    desktop::Mixer mixer;
    desktop::RecordingOutput recording(mixer);
    Performance performance(device, mixer, recording);
    const SoundReport report = performance.perform(options.event);
    if (report.isPlayed()) {
        recording.advanceToEnd(kLongestSound);
        const auto written = writeOutputFile(
            desktop::writeWav(recording.samples(), mixer.sampleRate()), options.output, "sound");
        if (!written) {
            return fail(ExitCode::badInput, written.error());
        }
    }
    printReport(options, report);
    return codeOf(report);
}

ExitCode playAloud(const SoundOptions& options, const DeviceOfRun& device) {
    desktop::Mixer mixer;
    desktop::SdlOutput speaker(mixer, [](const std::string& line) { note(line); });
    Performance performance(device, mixer, speaker);
    SoundReport report = performance.perform(options.event);
    report.isHeard = speaker.isHeard();
    printReport(options, report);
    static_cast<void>(flushResults());
    if (speaker.isHeard()) {
        const std::chrono::duration<double> longest(kLongestSound);
        const auto end = std::chrono::steady_clock::now() + longest;
        while (mixer.isPlaying() && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        std::this_thread::sleep_for(std::chrono::duration<double>(speaker.latency()));
    }
    return codeOf(report);
}

ExitCode runSound(const Arguments& arguments) {
    const auto options = readOptions(arguments);
    if (!options) {
        return fail(ExitCode::wrongUsage, options.error());
    }
    if (!options->output.empty()) {
        if (const auto checked = checkOutputFile(options->output, "sound"); !checked) {
            return fail(ExitCode::badInput, checked.error());
        }
    }
    desktop::cleanUpOnSignals();
    const auto device = deviceFor(*options);
    if (!device) {
        return fail(ExitCode::badInput, device.error());
    }
    return options->output.empty() ? playAloud(*options, *device) : playToFile(*options, *device);
}

std::string nameHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    rows.reserve(soundNames().size() + 2);
    for (const SoundName& row : soundNames()) {
        const std::string number =
            row.source == SoundSource::panel ? std::string(row.action) : std::to_string(row.number);
        rows.emplace_back(row.name, std::string(row.summary) + " (" + number + ")");
    }
    rows.emplace_back("N", "the system sound of that number");
    rows.emplace_back("event:N", "the home screen's event of that number");
    return "events:\n" + twoColumns(rows);
}

constexpr std::array<Option, 3> kSoundOptions{{
    {"--root", "", "DIR", "a device of your own, in place of THEME; it stays as it is"},
    {"--output", "-o", "FILE", "write a WAV file in place of playing"},
    {"--json", "", "", "say it as JSON: the file, the reason, what was looked for"},
}};

}  // namespace

Command soundCommand() {
    return {.name = "sound",
            .summary = "Play what a phone with these themes plays, and say which file and why.",
            .positionalNames = "EVENT THEME...",
            .description =
                "EVENT is one of the names below or a number. The system's own sounds are the "
                "phone's; they are not\nplayed here. The settings panel's sounds need no THEME. "
                "The exit code is 1 when nothing is heard.",
            .options = kSoundOptions,
            .examples = {"velmoranth sound key-click MyTheme.theme",
                         "velmoranth sound event:lock Sounds.theme Icons.theme -o lock.wav",
                         "velmoranth sound 1108 --root mydevice --json",
                         "velmoranth sound panel:success"},
            .leastPositionals = 1,
            .mostPositionals = 100000,
            .run = runSound,
            .moreHelp = nameHelp};
}

}  // namespace velmoranth::cli
