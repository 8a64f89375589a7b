// velmoranth explain
#include "cli/commands.h"
#include "cli/dead_links.h"
#include "cli/device_check.h"
#include "cli/device_options.h"
#include "cli/explain_requests.h"
#include "cli/explanation.h"
#include "cli/file_question.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/picture_file.h"
#include "cli/settings_device.h"
#include "cli/theme_report.h"
#include "desktop/files/cleanup.h"
#include "simulator/screens/question_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;
using simulator::Question;

namespace {

struct ExplainOptions {
    std::vector<std::string> themes;
    std::optional<std::string> root;  // a device of the user's, in place of themes
    // Those of a list may be lines that are none.
    std::vector<Result<Question>> questions;
    simulator::DeviceConfiguration device;
    std::vector<NamedDevice> devices;  // that are asked about a file
    platform::Dictionary settings;
    std::string output;  // "" for none
    bool asJson = false;
    bool isRaw = false;
};

constexpr std::string_view kBothWrite = "both go to standard output";
constexpr std::array<Apart, 5> kExplainApart{
    {{"--json", "--raw", "the one is in the other"},
     {"--bundle", "--requests", "it stands in their lines"},
     {"--set", "--root", "a device has its own preferences"},
     {"--output -", "--json", kBothWrite},
     {"--output -", "--raw", kBothWrite}}};

Result<void> checkOutput(const Arguments& arguments) {
    const auto output = arguments.value("--output");
    if (output && output->empty()) {
        return misuse("--output takes the name of a file");
    }
    if (std::string why = whyOtherFormat(output.value_or(""), FileFormat::png); !why.empty()) {
        return misuse(std::move(why));
    }
    return {};
}

// --output and --raw go with the requests of one picture each, --output with one such request.
Result<void> checkQuestions(const ExplainOptions& options) {
    if (!options.output.empty() && options.questions.size() != 1) {
        return misuse("--output takes the picture of one request");
    }
    for (const auto& question : options.questions) {
        const bool isMany = question && (question->word == kFileWord || question->argument == kAll);
        if (isMany && (!options.output.empty() || options.isRaw)) {
            return misuse(fmt::format("{} does not go with {} {}",
                                      options.isRaw ? "--raw" : "--output", question->word,
                                      shown(question->argument)));
        }
    }
    return {};
}

// The request behind "--", or those of a list.
Result<std::vector<Result<Question>>> questionsOf(const Arguments& arguments, int system) {
    const std::vector<std::string>& words = arguments.positionals();
    const std::size_t dashes = arguments.dashes().value_or(words.size());
    if (const auto requests = arguments.value("--requests")) {
        return dashes == words.size() ? readRequests(*requests, system)
                                      : misuse("--requests does not go with a REQUEST behind --");
    }
    auto question =
        readCommandLine({words.begin() + static_cast<std::ptrdiff_t>(dashes), words.end()},
                        arguments.value("--bundle").value_or(""), system);
    if (!question) {
        return tl::unexpected(std::move(question.error()));
    }
    std::vector<Result<Question>> questions;
    questions.push_back(std::move(*question));
    return questions;
}

Result<ExplainOptions> readOptions(const Arguments& arguments) {
    const std::vector<std::string>& words = arguments.positionals();
    const std::size_t dashes = arguments.dashes().value_or(words.size());
    const auto root = arguments.value("--root");
    if (dashes == 0 && !root) {
        return misuse(
            "a THEME folder is missing before -- (or --root DIR); velmoranth explain --help");
    }
    if (dashes != 0 && root) {
        return misuse(
            "--root does not go with THEME: a device has its own themes; the REQUEST "
            "stands behind --");
    }
    if (auto checked = checkOutput(arguments); !checked) {
        return tl::unexpected(std::move(checked.error()));
    }
    if (auto named = noneEmpty(std::span(words).first(dashes), "THEME"); !named) {
        return tl::unexpected(std::move(named.error()));
    }
    ExplainOptions options{
        .themes = {words.begin(), words.begin() + static_cast<std::ptrdiff_t>(dashes)},
        .root = root,
        .questions = {},
        .device = {},
        .devices = {},
        .settings = {},
        .output = arguments.value("--output").value_or(""),
        .asJson = arguments.has("--json"),
        .isRaw = arguments.has("--raw")};
    auto device = readDeviceOptions(arguments);
    if (!device) {
        return tl::unexpected(std::move(device.error()));
    }
    options.device = std::move(*device);
    auto devices = readEveryDevice(arguments);
    if (!devices) {
        return tl::unexpected(std::move(devices.error()));
    }
    options.devices = std::move(*devices);
    auto settings = readSettingOptions(arguments, "velmoranth preview --help");
    if (!settings) {
        return tl::unexpected(std::move(settings.error()));
    }
    options.settings = std::move(*settings);
    auto questions = questionsOf(arguments, options.device.system.major);
    if (!questions) {
        return tl::unexpected(std::move(questions.error()));
    }
    options.questions = std::move(*questions);
    if (auto checked = checkQuestions(options); !checked) {
        return tl::unexpected(std::move(checked.error()));
    }
    return options;
}

// "file *": the files that look as if they were meant for what the device asks for, a line each.
Result<bool> answerUnused(const ExplainOptions& options, const Investigation& investigation) {
    ProgressLine progress;
    progress.show("every request of the device");
    const ThemeReport report = reportThemes(investigation);
    progress.clear();
    for (const NearMiss& miss : report.nearMisses) {
        print(options.asJson
                  ? jsonOf(miss) + "\n"
                  : fmt::format("{} is not looked for; name it {}\n",
                                shown(miss.theme + "/" + miss.name), shown(miss.wanted)));
    }
    for (const std::string& name : report.deadLinks) {
        const std::size_t slash = name.find('/');
        print(options.asJson ? jsonOfDeadLink(name.substr(0, slash), name.substr(slash + 1)) + "\n"
                             : fmt::format("{}\n", aboutDeadLinks({name})));
    }
    return report.failure ? Result<bool>(tl::unexpected(*report.failure))
                          : Result<bool>(!report.nearMisses.empty() || !report.deadLinks.empty());
}

Result<bool> answerFile(const ExplainOptions& options, const Investigation& investigation,
                        const std::string& path) {
    auto answer = explainFile(investigation, options.devices, path);
    if (!answer) {
        return tl::unexpected(std::move(answer.error()));
    }
    print(options.asJson ? jsonOf(*answer) + "\n" : textOf(*answer));
    return isOpened(*answer);
}

// Writes what shows, when that is asked for.
Result<void> writeShown(const ExplainOptions& options, const Explanation& answer) {
    if (options.output.empty()) {
        return {};
    }
    return answer.picture
               ? writePicture(*answer.picture, options.output)
               : tl::unexpected(desktop::Problem{"nothing shows, so there is no picture to write"});
}

// Whether a theme's file is behind the answer.
Result<bool> answerQuestion(const ExplainOptions& options, const Investigation& investigation,
                            const Question& question) {
    auto answer = explain(investigation, question);
    if (!answer) {
        return tl::unexpected(std::move(answer.error()));
    }
    if (options.output != "-") {
        print(options.asJson  ? jsonOf(*answer) + "\n"
              : options.isRaw ? record::textOf(answer->record)
                              : textOf(*answer));
    }
    if (answer->failure) {
        return tl::unexpected(*answer->failure);
    }
    if (auto written = writeShown(options, *answer); !written) {
        return tl::unexpected(std::move(written.error()));
    }
    return isThemed(*answer);
}

// "icon *": every app of the device, a line each.
Result<bool> answerTable(const ExplainOptions& options, const Investigation& investigation,
                         const Question& question) {
    bool any = false;
    std::optional<desktop::Problem> failure;
    ProgressLine progress;
    const std::vector<std::string> apps =
        simulator::knownArguments(*simulator::questionRowNamed(question.word));
    std::size_t width = 0;
    for (const std::string& app : apps) {
        width = std::max(width, app.size());
    }
    for (std::size_t i = 0; i < apps.size() && !isReaderGone(); ++i) {
        progress.show(fmt::format("app {} of {}", i + 1, apps.size()));
        auto answer = explain(investigation, {question.word, apps[i], ""},
                              options.asJson ? Depth::whole : Depth::summary);
        progress.clear();
        if (!answer) {
            return tl::unexpected(std::move(answer.error()));
        }
        any = any || isThemed(*answer);
        if (answer->failure && !failure) {
            failure = answer->failure;
        }
        print(options.asJson ? jsonOf(*answer) + "\n"
                             : fmt::format("{:<{}}  {}\n", apps[i], width, summaryOf(*answer)));
    }
    return failure ? Result<bool>(tl::unexpected(std::move(*failure))) : Result<bool>(any);
}

Result<bool> answer(const ExplainOptions& options, const Investigation& investigation,
                    const Question& question) {
    const bool isAll = question.argument == kAll;
    if (question.word == kFileWord) {
        return isAll ? answerUnused(options, investigation)
                     : answerFile(options, investigation, question.argument);
    }
    return isAll ? answerTable(options, investigation, question)
                 : answerQuestion(options, investigation, question);
}

// A device of the user's is asked in a copy, so that nothing of it changes.
Result<DeviceOfRun> deviceFor(ExplainOptions& options) {
    if (!options.root) {
        return makeDevice(options.themes, options.settings);
    }
    const auto own = openSettingsDevice(*options.root);
    if (!own) {
        return tl::unexpected(own.error());
    }
    warnOfPreferences(**own);
    options.settings = settingsOn(**own);
    return makeDeviceLike(**own);
}

// The first of several words that cannot be understood does not keep the others from being asked.
ExitCode runExplain(const Arguments& arguments) {
    auto options = readOptions(arguments);
    if (!options) {
        // Words have no path; a list of requests has.
        return fail(options.error().path.empty() ? ExitCode::wrongUsage : ExitCode::badInput,
                    options.error());
    }
    desktop::cleanUpOnSignals();
    const auto device = deviceFor(*options);
    if (!device) {
        return fail(ExitCode::badInput, device.error());
    }
    const Investigation investigation{*device, options->device, options->settings};
    bool found = false;
    bool isFirst = true;
    ExitCode worst = ExitCode::done;
    for (const auto& question : options->questions) {
        if (isReaderGone()) {
            break;
        }
        if (!std::exchange(isFirst, false) && !options->asJson) {
            print("\n");
        }
        if (!question) {
            worst = std::max(worst, fail(ExitCode::wrongUsage, question.error()));
            continue;
        }
        const auto answered = answer(*options, investigation, *question);
        if (!answered) {
            worst = std::max(worst, fail(ExitCode::badInput, answered.error()));
        }
        found = found || (answered && *answered);
    }
    return worst != ExitCode::done ? worst : found ? ExitCode::done : ExitCode::nothingFound;
}

constexpr std::array<Option, 13> kExplainOptions{{
    {"--root", "", "DIR", "a device of your own, in place of THEME; it stays as it is"},
    {"--bundle", "", "ID", "with image: the bundle that is asked, by its identifier"},
    {"--output", "-o", "FILE", "write the picture that shows there; - is standard output"},
    {"--json", "", "", "an object a request, in place of the text"},
    {"--raw", "", "", "what the process did, a line an entry, in place of the text"},
    {"--requests", "", "FILE", "requests, one a line; - is standard input"},
    kIosOption,
    kDeviceOption,
    kOrientationOption,
    kSetOption,
    kDateOption,
    kLocaleOption,
    kExactFilesOption,
}};

std::string requestHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const simulator::QuestionRow& row : simulator::questionRows()) {
        rows.emplace_back(
            std::string(row.word) + (row.argument.empty() ? "" : " " + std::string(row.argument)),
            row.summary);
    }
    rows.emplace_back("icon '*'", "every app of the device, a line each");
    rows.emplace_back("file '*'", "the files of the themes that lie where nothing looks");
    rows.emplace_back("file PATH", "the other way round: which request opens that file of a theme");
    return "requests:\n" + twoColumns(rows);
}

}  // namespace

Command explainCommand() {
    return {.name = "explain",
            .summary = "Say why something shows as it does: which files were tried, which one won.",
            .positionalNames = "[OPTION...] THEME... -- REQUEST",
            .description =
                "The request is sent to a simulated device with these themes, the first one before "
                "the others. The last\nline sums up. Exit code 1 when no file of a theme is "
                "behind what shows.",
            .options = kExplainOptions,
            .examples = {"velmoranth explain MyTheme.theme -- icon com.apple.Maps",
                         "velmoranth explain MyTheme.theme --ios 12 -- badge",
                         "velmoranth explain Icons.theme Dock.theme -- dock",
                         "velmoranth explain MyTheme.theme -- icon '*'",
                         "velmoranth explain MyTheme.theme -- file IconBundles/com.apple.maps.png",
                         "velmoranth explain MyTheme.theme --json -- image UISwitchKnob.png",
                         "velmoranth explain --root Device -- icon com.apple.Maps"},
            .leastPositionals = 0,
            .mostPositionals = 100000,
            .run = runExplain,
            .moreHelp = requestHelp,
            .apart = kExplainApart};
}

}  // namespace velmoranth::cli
