// An explanation in a person's words.
#include "cli/dead_links.h"
#include "cli/explanation.h"
#include "cli/messages.h"
#include "simulator/screens/question_rows.h"

#include "record/words.h"
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmoranth::cli {

using record::EntryKind;

namespace {

std::string nameOf(const AskedFile& file) {
    return shown(file.theme + "/" + file.name);
}

// Lines with a name before the first of several.
class Rows {
  public:
    void add(std::string_view name, const std::string& text) {
        text_ += fmt::format("{:<10} {}\n", name == last_ ? "" : name, text);
        last_ = name;
    }

    [[nodiscard]] const std::string& text() const { return text_; }

  private:
    std::string_view last_;
    std::string text_;
};

// "found, 180×180 @1x"
std::string stateOf(const AskedFile& file) {
    std::string state(record::wordOf(file.state));
    for (const std::string& more : {file.answer, file.reason}) {
        if (!more.empty()) {
            state += ", " + shown(more);
        }
    }
    return state;
}

// "cut out: 180×180 pixels, 180×180 mask → 180×180 pixels (6 times)"
std::string stepText(const DrawingStep& step, std::size_t times) {
    return fmt::format("{}: {}{}{}{}", step.what, fmt::join(step.before, ", "),
                       step.before.empty() ? "" : " → ", step.after,
                       times == 1 ? "" : fmt::format(" ({} times)", times));
}

// Steps that are taken several times one after the other, as a picture is for each of its sizes,
// stand there once.
void addSteps(const std::vector<DrawingStep>& steps, Rows& rows) {
    for (auto from = steps.begin(); from != steps.end();) {
        const RepeatedSteps repeated = repeatedSteps({from, steps.end()});
        for (const DrawingStep& step : repeated.steps) {
            rows.add("drawn", stepText(step, repeated.times));
        }
        from += static_cast<std::ptrdiff_t>(repeated.steps.size() * repeated.times);
    }
}

std::string sizeOf(const simulator::Picture& picture) {
    return fmt::format("{} × {} pixels", picture.width, picture.height);
}

bool isBroken(const Explanation& explanation, const AskedFile& file) {
    return std::ranges::any_of(explanation.brokenEffects,
                               [&](const Effect& effect) { return effect.file.path == file.path; });
}

// The file that gives nothing, and is none of what is done to a picture.
const AskedFile* unreadableOf(const Explanation& explanation) {
    const auto found = std::ranges::find_if(explanation.files, [&](const AskedFile& file) {
        return file.state == EntryKind::unreadable && !isBroken(explanation, file);
    });
    return found == explanation.files.end() ? nullptr : &*found;
}

const Effect* named(const std::vector<Effect>& effects, std::string_view name) {
    const auto found = std::ranges::find(effects, name, &Effect::name);
    return found == effects.end() ? nullptr : &*found;
}

const Effect* effectNamed(const Explanation& explanation, std::string_view name) {
    return named(explanation.effects, name);
}

// "removeDock is off; with it on, "
std::string ifTurned(const SwitchReason& reason) {
    return fmt::format("{} is {}; with it {}, ", reason.key, reason.isOn ? "on" : "off",
                       reason.isOn ? "off" : "on");
}

std::string againText(const Explanation& explanation) {
    if (!explanation.isKept) {
        return "the next request opens the files again";
    }
    std::string text = explanation.shown ? "kept: the next request does not open it again"
                                         : "kept: the next request opens no file";
    for (const simulator::Question& later : explanation.later) {
        text += (&later == explanation.later.data() ? "; nor does " : ", ") + requestOf(later);
    }
    return text;
}

std::string givesNothing(const AskedFile& file) {
    return fmt::format("{} is there and gives nothing: {}", nameOf(file), shown(file.reason));
}

// ", cut out by A, under B": what files of the themes do to a picture.
std::string effectsText(const Explanation& explanation) {
    struct Words {
        std::string_view effect;
        std::string_view words;
    };

    static constexpr std::array<Words, 4> kWords{{{"mask", ", cut out by "},
                                                  {"overlay", ", under "},
                                                  {"shadow", ", over "},
                                                  {"list", ", drawn as in "}}};
    std::string text;
    for (const Words& words : kWords) {
        if (const Effect* const effect = effectNamed(explanation, words.effect)) {
            text += std::string(words.words) + nameOf(effect->file);
        }
    }
    return text;
}

// Why an icon has the corners of its file.
std::string cornersText(const Explanation& explanation) {
    if (!isIcon(explanation.question) || effectNamed(explanation, "mask") != nullptr ||
        std::ranges::find(explanation.brokenEffects, "mask", &Effect::name) !=
            explanation.brokenEffects.end()) {
        return {};
    }
    const auto& reason = explanation.reason;
    const Effect* const list = effectNamed(explanation, "list");
    const Effect* const mask = named(explanation.unusedEffects, "mask");
    return ", with the corners that the file has: " +
           (reason && reason->brings && reason->brings->name == "mask"
                ? ifTurned(*reason) + nameOf(reason->brings->file) + " cuts it out"
            : list != nullptr && mask != nullptr
                ? "IB-MaskIcons is not on in " + nameOf(list->file) + ", so " + nameOf(mask->file) +
                      " does not cut it out"
            : mask != nullptr ? nameOf(mask->file) + " is not used for it"
                              : "no active theme has a mask that is used");
}

std::string summaryOfShown(const Explanation& explanation) {
    std::string text = nameOf(*explanation.shown) +
                       (explanation.question.word == "sound" ? " is played" : " shows") +
                       effectsText(explanation) + cornersText(explanation);
    for (const Effect& effect : explanation.brokenEffects) {
        text += "; " + givesNothing(effect.file);
    }
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

// What shows, or plays, where no theme has a picture or a sound for it.
std::string ownShows(const Explanation& explanation) {
    if (explanation.question.word == "sound") {
        return givesNil(explanation) ? "Nothing plays" : "The system's own sound plays";
    }
    if (!isVisible(explanation.picture)) {
        return "Nothing shows";
    }
    if (explanation.isStock) {
        return "The stock picture shows";
    }
    return "The device's own picture shows" + effectsText(explanation);
}

// ": removeDock is off; with it on, A/B.png shows": the setting behind it; "" for none.
std::string reasonText(const Explanation& explanation) {
    const auto& reason = explanation.reason;
    if (!reason) {
        return {};
    }
    if (reason->ends) {
        return ": " + nameOf(reason->ends->file) + " hides all of it";
    }
    const std::string turned = ": " + ifTurned(*reason);
    if (!reason->file) {
        return turned + (explanation.shown ? "it shows" : "the device's own shows");
    }
    return turned + nameOf(*reason->file) +
           (reason->file->state == EntryKind::missing ? " is looked for"
            : explanation.question.word == "sound"    ? " is played"
                                                      : " shows");
}

// Why no theme's picture or sound is there.
std::string whyNoFile(const Explanation& explanation) {
    if (const AskedFile* const file = unreadableOf(explanation)) {
        // A sound without a name of its own: what is opened is the folder of all of them.
        return explanation.question.word == "sound" && file->name.find('.') == std::string::npos
                   ? "no file's name belongs to it; velmoranth names sounds lists those that have "
                     "one"
                   : givesNothing(*file);
    }
    const auto link = std::ranges::find_if(explanation.files, [](const AskedFile& file) {
        return file.state == EntryKind::missing && !file.reason.empty();
    });
    if (link != explanation.files.end()) {
        return fmt::format("{} {}; {}", nameOf(*link), link->reason, kMendDeadLink);
    }
    if (!explanation.firstTheme.empty()) {
        return fmt::format("{} has a file for it, which is looked for once that theme is the first",
                           shown(explanation.firstTheme));
    }
    if (!explanation.nearMisses.empty()) {
        const NearMiss& miss = explanation.nearMisses.front();
        return fmt::format("{} has {}, which is not looked for; name it {}", shown(miss.theme),
                           shown(miss.name), shown(miss.wanted));
    }
    if (!explanation.brokenEffects.empty()) {
        return givesNothing(explanation.brokenEffects.front().file);
    }
    const std::string other =
        explanation.onOtherSystem
            ? fmt::format("; on iOS {} {} {}", explanation.onOtherSystem->major,
                          nameOf(explanation.onOtherSystem->file),
                          explanation.question.word == "sound" ? "is played" : "shows")
            : "";
    if (!explanation.wanted.empty()) {
        return fmt::format("no active theme has what is looked for, {} first",
                           shown(explanation.wanted)) +
               other;
    }
    return explanation.files.empty() ? "no file of a theme is looked for" + other : "";
}

std::string summaryWithoutFile(const Explanation& explanation) {
    std::string why = reasonText(explanation);
    if (why.empty()) {
        const std::string file = whyNoFile(explanation);
        why = file.empty() ? "" : ": " + file;
    }
    return ownShows(explanation) + why + ".";
}

}  // namespace

std::string requestOf(const simulator::Question& question) {
    return question.word + (question.argument.empty() ? "" : " " + shown(question.argument)) +
           (question.bundle.empty() ? "" : " of " + shown(question.bundle));
}

std::string summaryOf(const Explanation& explanation) {
    if (explanation.failure) {
        return "The process ended before it answered: " + desktop::toLine(*explanation.failure);
    }
    if (!explanation.shown) {
        return summaryWithoutFile(explanation);
    }
    if (!isVisible(explanation.picture) && explanation.question.word != "sound") {
        return nameOf(*explanation.shown) + " is read, and nothing shows" +
               reasonText(explanation) + ".";
    }
    return summaryOfShown(explanation);
}

std::string textOf(const Explanation& explanation) {
    Rows rows;
    rows.add("request", requestOf(explanation.question));
    for (const std::string& method : explanation.methods) {
        rows.add("asks", method);
    }
    if (explanation.methods.empty() && !explanation.failure) {
        rows.add("asks", "nothing that is replaced");
    }
    for (const AskedFile& file : explanation.files) {
        rows.add("looks for", nameOf(file) + " (" + stateOf(file) + ")");
    }
    if (explanation.shown) {
        rows.add("shows", nameOf(*explanation.shown));
    }
    if (explanation.hidden) {
        rows.add("hides", nameOf(*explanation.hidden));
    }
    for (const Effect& effect : explanation.effects) {
        rows.add(effect.name, nameOf(effect.file) + " (" + effect.file.answer + ")");
    }
    addSteps(explanation.drawn, rows);
    if (explanation.picture) {
        rows.add(
            "size",
            sizeOf(*explanation.picture) +
                (explanation.stock ? ", the stock picture's " + sizeOf(*explanation.stock) : ""));
    }
    if (isThemed(explanation)) {
        rows.add("again", againText(explanation));
    }
    if (explanation.shown) {
        rows.add("changes", explanation.needsRespring ? "of the themes show after a respring"
                                                      : "of the themes show at the next request");
    }
    if (explanation.reason) {
        rows.add("setting", fmt::format("{} is {}", explanation.reason->key,
                                        explanation.reason->isOn ? "on" : "off"));
    }
    for (const std::string& finding : explanation.findings) {
        rows.add("calendar", finding);
    }
    for (const NearMiss& miss : explanation.nearMisses) {
        rows.add("unused", shown(miss.theme + "/" + miss.name) + ", which " + shown(miss.wanted) +
                               " would be");
    }
    return rows.text() + summaryOf(explanation) + "\n";
}

}  // namespace velmoranth::cli
