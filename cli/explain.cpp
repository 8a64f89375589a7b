// velmoranth explain
#include "cli/commands.h"
#include "cli/device_options.h"
#include "cli/explanation.h"
#include "cli/file_question.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/picture_file.h"
#include "cli/preferences.h"
#include "cli/theme_report.h"
#include "desktop/files/cleanup.h"
#include "simulator/screens/question_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iostream>
#include <optional>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;
using simulator::Question;

namespace {

constexpr std::string_view kFileWord = "file";

struct ExplainOptions {
    std::vector<std::string> themes;
    std::vector<Question> questions;
    simulator::DeviceConfiguration device;
    platform::Dictionary settings;
    std::string output;  // "" for none
    bool asJson = false;
    bool isRaw = false;
};

// A name that the stock device does not have may be right all the same: it has none of the apps
// that people install.
void noteUnknown(const simulator::QuestionRow& row, const Question& question) {
    const std::vector<std::string> known = simulator::knownArguments(row);
    if (known.empty() || question.argument == "*" ||
        std::ranges::find(known, question.argument) != known.end()) {
        return;
    }
    note(fmt::format("{} is not of this device's own{}", inQuotes(question.argument),
                     suggestion(question.argument, known)));
}

// The words of one request: "icon com.apple.Maps".
Result<Question> readQuestion(const std::vector<std::string>& words, const std::string& bundle) {
    if (words.empty()) {
        return misuse("a REQUEST is missing behind --; velmoranth explain --help lists them");
    }
    Question question{
        .word = words.front(), .argument = words.size() > 1 ? words[1] : "", .bundle = bundle};
    if (question.word == kFileWord) {
        return words.size() == 2 ? Result<Question>(std::move(question))
                                 : misuse("file takes one PATH, as in: -- file MyTheme/Icon.png");
    }
    const simulator::QuestionRow* const row = simulator::questionRowNamed(question.word);
    if (row == nullptr) {
        return misuse("there is no request " + inQuotes(question.word) +
                      suggestion(question.word,
                                 std::views::transform(simulator::questionRows(),
                                                       &simulator::QuestionRow::word),
                                 "; velmoranth explain --help lists them"));
    }
    if (words.size() > 2 || !simulator::takesArgument(*row, question.argument)) {
        return misuse(row->argument.empty()
                          ? question.word + " takes nothing behind it"
                          : question.word + " takes " + std::string(row->argument) + " behind it");
    }
    if (!bundle.empty() && question.word != "image") {
        return misuse("--bundle goes with image alone");
    }
    noteUnknown(*row, question);
    return question;
}

Result<std::vector<Question>> readRequests(const std::string& path, const std::string& bundle) {
    constexpr std::size_t kMost = 10000;
    std::ifstream file;
    if (path != "-") {
        file.open(path);
        if (!file) {
            return tl::unexpected(desktop::Problem{"the requests cannot be read", path});
        }
    }
    std::istream& input = path == "-" ? std::cin : file;
    std::vector<Question> questions;
    std::size_t number = 0;
    for (std::string line; std::getline(input, line);) {
        ++number;
        std::vector<std::string> words;
        for (const auto word : std::views::split(line, ' ')) {
            if (!word.empty()) {
                words.emplace_back(word.begin(), word.end());
            }
        }
        if (words.empty() || words.front().front() == '#') {
            continue;
        }
        auto question = readQuestion(words, bundle);
        if (!question) {
            question.error().path = path;
            question.error().message = fmt::format("line {}: {}", number, question.error().message);
            return tl::unexpected(std::move(question.error()));
        }
        questions.push_back(std::move(*question));
        if (questions.size() > kMost) {
            return tl::unexpected(desktop::Problem{
                fmt::format("more than {} requests; give some of them", kMost), path});
        }
    }
    return questions;
}

Result<ExplainOptions> readOptions(const Arguments& arguments) {
    const std::vector<std::string>& words = arguments.positionals();
    const std::size_t dashes = arguments.dashes().value_or(words.size());
    const auto requests = arguments.value("--requests");
    const std::string bundle = arguments.value("--bundle").value_or("");
    if (dashes == 0) {
        return misuse("a THEME folder is missing before --; velmoranth explain --help");
    }
    if (requests && dashes < words.size()) {
        return misuse("--requests does not go with a REQUEST behind --");
    }
    if (arguments.has("--json") && arguments.has("--raw")) {
        return misuse("--json does not go with --raw: the one is in the other");
    }
    ExplainOptions options{
        .themes = {words.begin(), words.begin() + static_cast<std::ptrdiff_t>(dashes)},
        .questions = {},
        .device = {},
        .settings = {},
        .output = arguments.value("--output").value_or(""),
        .asJson = arguments.has("--json"),
        .isRaw = arguments.has("--raw")};
    if (requests) {
        auto questions = readRequests(*requests, bundle);
        if (!questions) {
            return tl::unexpected(std::move(questions.error()));
        }
        options.questions = std::move(*questions);
    } else {
        auto question = readQuestion(
            {words.begin() + static_cast<std::ptrdiff_t>(dashes), words.end()}, bundle);
        if (!question) {
            return tl::unexpected(std::move(question.error()));
        }
        options.questions.push_back(std::move(*question));
    }
    if (arguments.has("--output") && (options.output.empty() || options.questions.size() != 1)) {
        return misuse("--output takes a name, and the picture of one request");
    }
    auto device = readDeviceOptions(arguments);
    if (!device) {
        return tl::unexpected(std::move(device.error()));
    }
    options.device = std::move(*device);
    auto settings = readSettingOptions(arguments, "velmoranth preview --help");
    if (!settings) {
        return tl::unexpected(std::move(settings.error()));
    }
    options.settings = std::move(*settings);
    return options;
}

// "file *": the files that look as if they were meant for what the device asks for, a line each.
Result<bool> answerUnused(const ExplainOptions& options, const Investigation& investigation) {
    ProgressLine progress;
    progress.show("every request of the device");
    const auto report = reportThemes(investigation);
    progress.clear();
    if (!report) {
        return tl::unexpected(report.error());
    }
    for (const NearMiss& miss : report->nearMisses) {
        print(options.asJson
                  ? jsonOf(miss) + "\n"
                  : fmt::format("{} is not looked for; name it {}\n",
                                shown(miss.theme + "/" + miss.name), shown(miss.wanted)));
    }
    return !report->nearMisses.empty();
}

Result<bool> answerFile(const ExplainOptions& options, const Investigation& investigation,
                        const std::string& path) {
    auto answer = explainFile(investigation, path);
    if (!answer) {
        return tl::unexpected(std::move(answer.error()));
    }
    print(options.asJson ? jsonOf(*answer) + "\n" : textOf(*answer));
    return !answer->openings.empty();
}

// Whether a theme's file is behind the answer.
Result<bool> answerQuestion(const ExplainOptions& options, const Investigation& investigation,
                            const Question& question) {
    if (question.word == kFileWord) {
        return answerFile(options, investigation, question.argument);
    }
    auto answer = explain(investigation, question);
    if (!answer) {
        return tl::unexpected(std::move(answer.error()));
    }
    if (!options.output.empty()) {
        if (!answer->picture) {
            return tl::unexpected(
                desktop::Problem{"nothing shows, so there is no picture to write"});
        }
        if (auto written = writePicture(*answer->picture, options.output); !written) {
            return tl::unexpected(std::move(written.error()));
        }
    }
    if (options.output != "-") {
        print(options.asJson  ? jsonOf(*answer) + "\n"
              : options.isRaw ? record::textOf(answer->record)
                              : textOf(*answer));
    }
    if (answer->failure) {
        return tl::unexpected(*answer->failure);
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
    for (std::size_t i = 0; i < apps.size(); ++i) {
        progress.show(fmt::format("app {} of {}", i + 1, apps.size()));
        auto answer = explain(investigation, {question.word, apps[i], ""});
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

ExitCode runExplain(const Arguments& arguments) {
    const auto options = readOptions(arguments);
    if (!options) {
        return fail(ExitCode::wrongUsage, options.error());
    }
    desktop::cleanUpOnSignals();
    const auto device = makeDevice(options->themes, options->settings);
    if (!device) {
        return fail(ExitCode::badInput, device.error());
    }
    const Investigation investigation{*device, options->device, options->settings};
    bool found = false;
    for (const Question& question : options->questions) {
        const bool isAll = question.argument == "*";
        if (&question != options->questions.data() && !options->asJson) {
            print("\n");
        }
        const auto answered = !isAll ? answerQuestion(*options, investigation, question)
                              : question.word == kFileWord
                                  ? answerUnused(*options, investigation)
                                  : answerTable(*options, investigation, question);
        if (!answered) {
            return fail(ExitCode::badInput, answered.error());
        }
        found = found || *answered;
    }
    return !flushResults() ? ExitCode::badInput : found ? ExitCode::done : ExitCode::nothingFound;
}

constexpr std::array<Option, 12> kExplainOptions{{
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
            .positionalNames = "THEME... -- REQUEST",
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
                         "velmoranth explain MyTheme.theme --json -- image UISwitchKnob.png"},
            .leastPositionals = 1,
            .mostPositionals = 100000,
            .run = runExplain,
            .moreHelp = requestHelp};
}

}  // namespace velmoranth::cli
