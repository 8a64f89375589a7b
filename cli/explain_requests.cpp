#include "cli/explain_requests.h"

#include "cli/arguments.h"
#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/sound_events.h"
#include "cli/text_lines.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <ranges>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;
using simulator::Question;
using simulator::QuestionRow;

namespace {

// A name that the simulated device does not have may be right all the same: it has none of the apps
// that people install.
void noteUnknown(const QuestionRow& row, const Question& question) {
    const std::vector<std::string> known = simulator::knownArguments(row, question.bundle);
    if (known.empty() || question.argument == kAll ||
        std::ranges::find(known, question.argument) != known.end()) {
        return;
    }
    const std::string_view what = row.argument == "ID"     ? "app"
                                  : row.word == "symbol"   ? "symbol"
                                  : row.word == "settings" ? "settings icon"
                                  : row.word == "weather"  ? "weather picture"
                                                           : "image";
    note(fmt::format("the simulated device has no {} {}{}", what, inQuotes(question.argument),
                     nameSuggestion(question.argument, known)));
}

void noteUnknownBundle(const std::string& bundle) {
    const std::vector<std::string> known = simulator::knownBundles();
    if (!bundle.empty() && std::ranges::find(known, bundle) == known.end()) {
        note(fmt::format("the simulated device has no bundle {}{}", inQuotes(bundle),
                         nameSuggestion(bundle, known)));
    }
}

// The number of a sound that is given by its name or its number.
Result<std::string> soundNumber(const std::string& word) {
    auto sound = parseSoundEvent(word);
    if (!sound) {
        return tl::unexpected(std::move(sound.error()));
    }
    if (sound->source == SoundSource::panel) {
        return misuse(
            "a sound of the settings panel is none of a theme's; velmoranth sound plays " +
            shown(word));
    }
    return (sound->source == SoundSource::homeScreen ? "event:" : "") +
           std::to_string(sound->number);
}

Result<Question> checked(Question question, const QuestionRow& row, int system) {
    if (system < row.firstSystem) {
        return misuse(fmt::format("iOS {} has no {}: nothing asks for one; --ios {}", system,
                                  row.word, row.firstSystem));
    }
    if (question.argument == kAll && row.word != "icon") {
        return misuse("* stands for all behind icon and file alone");
    }
    if (row.word == "sound") {
        auto number = soundNumber(question.argument);
        if (!number) {
            return tl::unexpected(std::move(number.error()));
        }
        question.argument = std::move(*number);
    }
    noteUnknownBundle(question.bundle);
    noteUnknown(row, question);
    return question;
}

// Takes "--bundle ID" or "--bundle=ID" off the end of the words.
Result<std::string> takeBundle(std::vector<std::string>& words) {
    constexpr std::string_view kOption = "--bundle";
    // What a short option could be may as well be what the request takes.
    const auto option = std::ranges::find_if(words, [&](const std::string& word) {
        return word.starts_with("--") ||
               (word.starts_with("-") && word.size() > 1 && &word - words.data() > 1);
    });
    if (option == words.end()) {
        return std::string();
    }
    const auto count = words.end() - option;
    std::string bundle;
    if (*option == kOption && count == 2) {
        bundle = option[1];
    } else if (option->starts_with(std::string(kOption) + "=") && count == 1) {
        bundle = option->substr(kOption.size() + 1);
    }
    if (bundle.empty()) {
        return misuse(
            "a request has no option behind it but --bundle ID, of image NAME; the others stand "
            "before --");
    }
    words.erase(option, words.end());
    return bundle;
}

}  // namespace

Result<Question> readQuestion(const std::vector<std::string>& words, const std::string& bundle,
                              int system) {
    if (words.empty()) {
        return misuse("a REQUEST is missing behind --; velmoranth explain --help lists them");
    }
    Question question{
        .word = words.front(), .argument = words.size() > 1 ? words[1] : "", .bundle = bundle};
    if (!bundle.empty() && question.word != "image") {
        return misuse("--bundle goes with image alone");
    }
    if (question.word == kFileWord) {
        return words.size() == 2 ? Result<Question>(std::move(question))
                                 : misuse("file takes one PATH, as in: -- file MyTheme/Icon.png");
    }
    const QuestionRow* const row = simulator::questionRowNamed(question.word);
    if (row == nullptr) {
        return misuse(
            "there is no request " + inQuotes(question.word) +
            suggestion(question.word,
                       std::views::transform(simulator::questionRows(), &QuestionRow::word),
                       "; velmoranth explain --help lists them"));
    }
    if (words.size() > 2 || !simulator::takesArgument(*row, question.argument)) {
        return misuse(row->argument.empty()
                          ? question.word + " takes nothing behind it"
                          : question.word + " takes " + std::string(row->argument) + " behind it");
    }
    return checked(std::move(question), *row, system);
}

Result<Question> readCommandLine(std::vector<std::string> words, const std::string& bundle,
                                 int system) {
    const auto behind = takeBundle(words);
    if (!behind) {
        return tl::unexpected(behind.error());
    }
    if (!behind->empty() && !bundle.empty()) {
        return misuse("--bundle is given twice");
    }
    return readQuestion(words, behind->empty() ? bundle : *behind, system);
}

Result<std::vector<Result<Question>>> readRequests(const std::string& path, int system) {
    constexpr std::size_t kMost = 10000;
    auto opened = TextLines::open(path, "the list of requests");
    if (!opened) {
        return tl::unexpected(std::move(opened.error()));
    }
    TextLines& lines = **opened;
    std::vector<Result<Question>> questions;
    while (lines.next()) {
        if (lines.isTooLong()) {
            return tl::unexpected(lines.problemHere(TextLines::tooLong()));
        }
        if (questions.size() == kMost || lines.number() > 10 * kMost) {
            return tl::unexpected(lines.problem(
                fmt::format("there are more than {} requests; give some of them", kMost)));
        }
        std::vector<std::string> words = wordsOf(lines.line());
        if (words.empty() || words.front().front() == '#') {
            continue;
        }
        const auto bundle = takeBundle(words);
        auto question = bundle ? readQuestion(words, *bundle, system)
                               : Result<Question>(tl::unexpected(bundle.error()));
        questions.push_back(question ? std::move(question)
                                     : Result<Question>(tl::unexpected(
                                           lines.problemHere(question.error().message))));
    }
    if (questions.empty()) {
        return tl::unexpected(
            lines.problem("there is no request in it; a line has one, as in icon com.apple.Maps"));
    }
    return questions;
}

}  // namespace velmoranth::cli
