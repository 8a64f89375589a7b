// An explanation in a person's words.
#include "cli/explanation.h"
#include "cli/messages.h"
#include "simulator/screens/question_rows.h"

#include "record/words.h"
#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace velmoranth::cli {

using record::EntryKind;

namespace {

std::string requestOf(const simulator::Question& question) {
    return question.word + (question.argument.empty() ? "" : " " + shown(question.argument)) +
           (question.bundle.empty() ? "" : " of " + shown(question.bundle));
}

std::string nameOf(const AskedFile& file) {
    return shown(file.theme + "/" + file.name);
}

std::string row(std::string_view name, const std::string& text) {
    return fmt::format("{:<10} {}\n", name, text);
}

std::string sizeOf(const simulator::Picture& picture) {
    return fmt::format("{} × {} pixels", picture.width, picture.height);
}

bool isIcon(const Explanation& explanation) {
    static constexpr std::array<std::string_view, 7> kIcons{
        "icon", "miniature", "calendar", "clock", "notification", "widget", "suggestion"};
    return std::ranges::find(kIcons, explanation.question.word) != kIcons.end();
}

const AskedFile* unreadableOf(const Explanation& explanation) {
    const auto found =
        std::ranges::find(explanation.files, EntryKind::unreadable, &AskedFile::state);
    return found == explanation.files.end() ? nullptr : &*found;
}

const Effect* effectNamed(const Explanation& explanation, std::string_view name) {
    const auto found = std::ranges::find(explanation.effects, name, &Effect::name);
    return found == explanation.effects.end() ? nullptr : &*found;
}

// ", cut out by A, under B": what files of the themes do to an icon.
std::string effectsText(const Explanation& explanation) {
    if (!isIcon(explanation)) {
        return {};
    }
    const Effect* const mask = effectNamed(explanation, "mask");
    const Effect* const overlay = effectNamed(explanation, "overlay");
    std::string text = mask == nullptr ? "" : ", cut out by " + nameOf(mask->file);
    if (overlay != nullptr) {
        text += ", under " + nameOf(overlay->file);
    }
    if (mask == nullptr && explanation.shown) {
        text += ", with the corners that the file has: no active theme has a mask that is used";
    }
    return text;
}

std::string summaryOfShown(const Explanation& explanation) {
    std::string text = nameOf(*explanation.shown) +
                       (explanation.question.word == "sound" ? " is played" : " shows") +
                       effectsText(explanation);
    if (explanation.hidden) {
        text += "; it hides " + nameOf(*explanation.hidden);
    }
    if (explanation.needsRespring) {
        text += "; a change of themes shows after a respring";
    }
    return text + ".";
}

// Whether the method that was asked answered nil; one that answers nothing did not.
bool givesNil(const Explanation& explanation) {
    const auto entered =
        std::ranges::find(explanation.record, record::EntryKind::entered, &record::Entry::kind);
    return entered != explanation.record.end() && entered->answer == record::kNil;
}

std::string summaryWithoutFile(const Explanation& explanation) {
    const std::string shows =
        (explanation.question.word == "sound"
             ? (givesNil(explanation) ? "Nothing plays" : "The system's own sound plays")
         : explanation.picture ? "The stock picture shows" + effectsText(explanation)
                               : "Nothing shows") +
        ": ";
    if (const AskedFile* const file = unreadableOf(explanation)) {
        return fmt::format("{}{} is there and gives nothing: {}.", shows, nameOf(*file),
                           shown(file->reason));
    }
    if (!explanation.nearMisses.empty()) {
        const NearMiss& miss = explanation.nearMisses.front();
        return fmt::format("{}{} has {}, which is not looked for; name it {}.", shows,
                           shown(miss.theme), shown(miss.name), shown(miss.wanted));
    }
    const auto wanted = std::ranges::find(explanation.files, EntryKind::missing, &AskedFile::state);
    if (wanted == explanation.files.end()) {
        return shows + "no file of a theme is looked for.";
    }
    return fmt::format("{}no active theme has what is looked for, {} first.", shows,
                       shown(wanted->name));
}

}  // namespace

std::string summaryOf(const Explanation& explanation) {
    if (explanation.failure) {
        return "The process ended before it answered: " + desktop::toLine(*explanation.failure);
    }
    if (!explanation.shown) {
        return summaryWithoutFile(explanation);
    }
    if (!explanation.picture && explanation.question.word != "sound") {
        return nameOf(*explanation.shown) + " is read, and nothing shows.";
    }
    return summaryOfShown(explanation);
}

std::string textOf(const Explanation& explanation) {
    std::string text = row("request", requestOf(explanation.question));
    for (const std::string& method : explanation.methods) {
        text += row(&method == explanation.methods.data() ? "asks" : "", method);
    }
    if (explanation.methods.empty() && !explanation.failure) {
        text += row("asks", "nothing that is replaced");
    }
    for (const AskedFile& file : explanation.files) {
        std::string state(record::wordOf(file.state));
        if (!file.answer.empty()) {
            state += ", " + shown(file.answer);
        }
        if (!file.reason.empty()) {
            state += ", " + shown(file.reason);
        }
        text += row(&file == explanation.files.data() ? "looks for" : "",
                    nameOf(file) + " (" + state + ")");
    }
    if (explanation.shown) {
        text += row("shows", nameOf(*explanation.shown));
    }
    if (explanation.hidden) {
        text += row("hides", nameOf(*explanation.hidden));
    }
    for (const Effect& effect : explanation.effects) {
        text += row(effect.name, nameOf(effect.file) + " (" + effect.file.answer + ")");
    }
    if (explanation.picture) {
        text += row(
            "size",
            sizeOf(*explanation.picture) +
                (explanation.stock ? ", the stock picture's " + sizeOf(*explanation.stock) : ""));
    }
    if (explanation.shown) {
        text += row("again", explanation.isKept ? "kept: the next request opens no file"
                                                : "the next request opens the files again");
        text +=
            row("changes", explanation.needsRespring ? "of the themes show after a respring"
                                                     : "of the themes show at the next request");
    }
    for (const NearMiss& miss : explanation.nearMisses) {
        text += row("unused", shown(miss.theme + "/" + miss.name) + ", which " +
                                  shown(miss.wanted) + " would be");
    }
    return text + summaryOf(explanation) + "\n";
}

}  // namespace velmoranth::cli
