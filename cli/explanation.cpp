#include "cli/explanation.h"

#include "cli/added_theme.h"
#include "cli/asking.h"
#include "cli/calendar_report.h"
#include "cli/change_of_themes.h"
#include "cli/dead_links.h"
#include "cli/file_requests.h"
#include "cli/later_requests.h"
#include "cli/near_misses.h"
#include "cli/switches.h"
#include "simulator/process/launcher.h"
#include "simulator/screens/question_rows.h"

#include "record/operations.h"
#include "record/words.h"
#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <ranges>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;
using record::Entry;
using record::EntryKind;
using simulator::Answer;
using simulator::Question;
using simulator::RunningScreen;

namespace {

constexpr std::string_view kThemes = "/Library/Themes/";

bool isFile(const Entry& entry) {
    return entry.kind == EntryKind::found || entry.kind == EntryKind::missing ||
           entry.kind == EntryKind::unreadable;
}

// The name in its theme of a path on the device; the path outside of the themes.
std::string nameInTheme(std::string_view path) {
    const std::size_t end = path.find('/', kThemes.size());
    if (!path.starts_with(kThemes) || end == std::string_view::npos) {
        return std::string(path);
    }
    const std::size_t begin = path.find_first_not_of('/', end);
    return begin == std::string_view::npos ? "" : std::string(path.substr(begin));
}

// The name that the platform was asked for, where it has tried this one beside it: such an entry
// has that path as its argument, in quotation marks.
std::string askedName(const Entry& entry) {
    std::string_view path =
        entry.arguments.empty() ? "" : std::string_view(entry.arguments.front());
    if (path.size() >= 2 && path.starts_with('"') && path.ends_with('"')) {
        path = path.substr(1, path.size() - 2);
    }
    return path.starts_with(kThemes) ? nameInTheme(path) : "";
}

AskedFile askedFile(const Entry& entry) {
    AskedFile file{.state = entry.kind,
                   .path = entry.subject,
                   .theme = {},
                   .name = nameInTheme(entry.subject),
                   .answer = {},
                   .reason = entry.reason,
                   .askedAs = askedName(entry)};
    if (entry.answer != "YES" && entry.answer != "NO" && entry.answer != record::kNil) {
        file.answer = entry.answer;
    }
    const std::string_view path = entry.subject;
    const std::size_t end = path.find('/', kThemes.size());
    if (path.starts_with(kThemes) && end != std::string_view::npos) {
        file.theme = path.substr(kThemes.size(), end - kThemes.size());
    }
    return file;
}

bool samePictures(const std::optional<simulator::Picture>& a,
                  const std::optional<simulator::Picture>& b) {
    return a.has_value() == b.has_value() &&
           (!a || (a->width == b->width && a->height == b->height && a->pixels == b->pixels));
}

// Whether the entry is a name that the platform tries by itself, in vain, before the one that it
// was asked for: such an entry has that one as its argument.
bool isTriedBeside(const Entry& entry) {
    return entry.kind == EntryKind::missing && !entry.arguments.empty();
}

// What would show if the theme that has won were not active: with effects of its own.
std::optional<AskedFile> hiddenBy(const Investigation& investigation, const Question& question,
                                  const AskedFile& shown) {
    std::vector<std::string> others = investigation.device.themes;
    std::erase(others, shown.theme);
    const desktop::DeviceRoot& root = *investigation.device.root;
    if (others.empty() || !setActiveThemes(root, others, investigation.settings)) {
        return std::nullopt;
    }
    std::optional<AskedFile> hidden;
    if (const auto answer = askOnce(investigation, question)) {
        hidden = lastRead(answer->record, effectsOf(investigation, question, answer->record).made);
    }
    static_cast<void>(setActiveThemes(root, investigation.device.themes, investigation.settings));
    return hidden;
}

// The names that are looked for in a folder of that name, where every theme has such a one.
std::vector<std::string> namesInFolder(const Investigation& investigation, const Question& question,
                                       const std::string& folder) {
    const AddedTheme theme(investigation);
    std::error_code error;
    std::filesystem::create_directories(theme.folder() / folder, error);
    std::vector<std::string> names;
    if (theme.useBehind(investigation.settings)) {
        const auto answer = askOnce(investigation, question);
        for (const AskedFile& file :
             answer ? triedFiles(answer->record) : std::vector<AskedFile>()) {
            if (file.theme == theme.name() && file.name.starts_with(folder + "/")) {
                names.push_back(file.name);
            }
        }
    }
    return names;
}

// The theme that is not asked for a missing name, has such a file, and shows once it is the first;
// "" for none.
std::string themeToPutFirst(const Investigation& investigation, const Question& question,
                            const std::vector<AskedFile>& tried) {
    const desktop::DeviceRoot& root = *investigation.device.root;
    const std::vector<std::string>& themes = investigation.device.themes;
    std::string found;
    for (std::size_t i = 1; i < themes.size() && found.empty(); ++i) {
        const std::vector<std::string> files = filesOfTheme(root, themes[i]);
        const bool hasFile = std::ranges::any_of(tried, [&](const AskedFile& file) {
            return file.state == EntryKind::missing &&
                   std::ranges::binary_search(files, file.name) &&
                   std::ranges::none_of(tried, [&](const AskedFile& other) {
                       return other.theme == themes[i] && other.name == file.name;
                   });
        });
        std::vector<std::string> turned = themes;
        std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(i),
                    turned.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        if (!hasFile || !setActiveThemes(root, turned, investigation.settings)) {
            continue;
        }
        const auto answer = askOnce(investigation, question);
        const auto shown =
            answer
                ? lastRead(answer->record, effectsOf(investigation, question, answer->record).made)
                : std::nullopt;
        found = shown && shown->theme == themes[i] ? themes[i] : "";
        static_cast<void>(setActiveThemes(root, themes, investigation.settings));
    }
    return found;
}

// What would show on a device with the other system.
std::optional<OnOtherSystem> onOtherSystem(const Investigation& investigation,
                                           const Question& question) {
    const simulator::SystemVersion& system = investigation.configuration.system;
    Investigation other = investigation;
    other.configuration.system =
        system == simulator::kSystem12 ? simulator::kSystem13 : simulator::kSystem12;
    const auto answer = askOnce(other, question);
    if (!answer) {
        return std::nullopt;  // it has no such request
    }
    auto shown = lastRead(answer->record, effectsOf(other, question, answer->record).made);
    return shown ? std::optional(OnOtherSystem{other.configuration.system.major, std::move(*shown)})
                 : std::nullopt;
}

// Whether the device opens the file for another request.
bool isUsed(const Investigation& investigation, const NearMiss& miss) {
    Asking asking(investigation);
    const int system = investigation.configuration.system.major;
    return std::ranges::any_of(ownRequestsFor(miss.name), [&](const Question& question) {
        const auto answer = system < simulator::questionRowNamed(question.word)->firstSystem
                                ? Result<Answer>(Answer())
                                : asking.ask(question);
        return answer &&
               std::ranges::any_of(askedFiles(answer->record), [&](const AskedFile& file) {
                   return file.theme == miss.theme && file.name == miss.name && isRead(file);
               });
    });
}

// What is looked for, and files that look as if they were meant for it. A name may be a folder's,
// which is looked into once it is there.
void findWanted(const Investigation& investigation, Explanation& explanation) {
    std::vector<AskedFile> tried = triedFiles(explanation.record);
    const auto missing =
        std::ranges::find(explanation.files, EntryKind::missing, &AskedFile::state);
    if (missing != explanation.files.end()) {
        explanation.wanted = missing->name;
    }
    if (!explanation.shown && missing != explanation.files.end() &&
        std::filesystem::path(missing->name).extension().empty()) {
        const auto names = namesInFolder(investigation, explanation.question, explanation.wanted);
        for (const std::string& theme : investigation.device.themes) {
            for (const std::string& name : names) {
                tried.push_back({EntryKind::missing, {}, theme, name, {}, {}});
            }
        }
        explanation.wanted = names.empty() ? explanation.wanted : names.front();
    }
    explanation.nearMisses = nearMissesOf(investigation.device, tried);
    std::erase_if(explanation.nearMisses,
                  [&](const NearMiss& miss) { return isUsed(investigation, miss); });
    if (!explanation.shown) {
        explanation.firstTheme = themeToPutFirst(investigation, explanation.question, tried);
    }
}

// What the record alone says.
Explanation explanationOf(const Question& question, record::Record record) {
    Explanation explanation;
    explanation.question = question;
    explanation.methods = methodsOf(record);
    explanation.files = askedFiles(record);
    explanation.drawn = drawingSteps(record);
    explanation.record = std::move(record);
    return explanation;
}

// What devices with other themes, with none, or asked for something else have to say about it.
void askOthers(const Investigation& investigation, Explanation& explanation) {
    const Question& question = explanation.question;
    Effects effects = effectsOf(investigation, question, explanation.record);
    explanation.effects = std::move(effects.made);
    explanation.brokenEffects = std::move(effects.broken);
    explanation.unusedEffects = std::move(effects.unused);
    explanation.shown = lastRead(explanation.record, explanation.effects);
    if (explanation.shown) {
        explanation.hidden = hiddenBy(investigation, question, *explanation.shown);
    }
    if (auto stock = askOnce(investigation, question, false)) {
        explanation.stock = std::move(stock->picture);
    }
    explanation.isStock = samePictures(explanation.picture, explanation.stock);
    findWanted(investigation, explanation);
    explanation.findings = calendarFindings(investigation.device, explanation.record);
    explanation.reason = switchReasonOf(investigation, explanation);
}

// Whether it is unknown why no theme's file shows, other than that it has another name.
bool isUnclear(const Explanation& explanation) {
    return !explanation.shown && !explanation.reason && explanation.firstTheme.empty() &&
           explanation.nearMisses.empty();
}

}  // namespace

std::vector<std::string> methodsOf(const record::Record& record) {
    std::vector<std::string> methods;
    for (const Entry& entry : record) {
        if (entry.kind == EntryKind::entered &&
            std::ranges::find(methods, entry.message) == methods.end()) {
            methods.push_back(entry.message);
        }
    }
    return methods;
}

bool isRead(const AskedFile& file) {
    return file.state == EntryKind::found && !file.answer.empty();
}

bool isVisible(const std::optional<simulator::Picture>& picture) {
    if (!picture) {
        return false;
    }
    for (std::size_t i = 3; i < picture->pixels.size(); i += 4) {
        if (picture->pixels[i] != 0) {
            return true;
        }
    }
    return false;
}

bool isIcon(const Question& question) {
    static constexpr std::array<std::string_view, 7> kIcons{
        "icon", "miniature", "calendar", "clock", "notification", "widget", "suggestion"};
    return std::ranges::find(kIcons, question.word) != kIcons.end();
}

bool isThemed(const Explanation& explanation) {
    return explanation.shown || (!explanation.isStock && !explanation.effects.empty());
}

Result<Answer> askOnce(const Investigation& investigation, const Question& question,
                       bool withEngine) {
    auto process = startProcess(investigation, question, withEngine);
    return process ? (*process)->ask(question)
                   : Result<Answer>(tl::unexpected(std::move(process.error())));
}

Effects effectsOf(const Investigation& investigation, const Question& question,
                  const record::Record& record) {
    static constexpr std::array<std::string_view, 3> kNames{"mask", "overlay", "shadow"};
    Effects effects;
    const std::vector<AskedFile> files = askedFiles(record);
    const bool isOne = std::ranges::find(kNames, question.word) != kNames.end();
    // Without a file of a theme there is nothing that they could have been made of.
    for (const std::string_view name :
         isOne || files.empty() ? std::span<const std::string_view>() : std::span(kNames)) {
        const auto answer = askOnce(investigation, {std::string(name), "", ""});
        if (!answer) {
            continue;
        }
        const auto isUsed = [&](const AskedFile& file) {
            return std::ranges::any_of(files, [&](const AskedFile& other) {
                return other.path == file.path && other.state == file.state &&
                       isRead(other) == isRead(file);
            });
        };
        if (const auto file = lastRead(answer->record, {}); file && isUsed(*file)) {
            effects.made.push_back({name, *file});
        } else if (file) {
            effects.unused.push_back({name, *file});
        }
        for (const AskedFile& file : askedFiles(answer->record)) {
            if (file.state == EntryKind::unreadable && isUsed(file)) {
                effects.broken.push_back({name, file});
            }
        }
    }
    const auto list = std::ranges::find_if(
        files, [](const AskedFile& file) { return isRead(file) && file.name.ends_with(".plist"); });
    if (list != files.end()) {
        effects.made.push_back({"list", *list});
    }
    return effects;
}

Result<std::unique_ptr<RunningScreen>> startProcess(const Investigation& investigation,
                                                    const Question& question, bool withEngine) {
    const simulator::QuestionRow* const row = simulator::questionRowNamed(question.word);
    simulator::ScreenRequest request;
    request.device = investigation.configuration;
    request.deviceFiles = investigation.device.root->files();
    request.isRecorded = withEngine;
    request.loadEngine = withEngine;
    request.withoutScreen = row->process;
    return RunningScreen::start(request);
}

std::optional<AskedFile> lastRead(const record::Record& record,
                                  const std::vector<Effect>& effects) {
    std::optional<AskedFile> last;
    for (const Entry& entry : record) {
        if (!isFile(entry)) {
            continue;
        }
        const AskedFile file = askedFile(entry);
        const bool isEffect = std::ranges::any_of(
            effects, [&](const Effect& effect) { return effect.file.path == file.path; });
        if (isRead(file) && !file.theme.empty() && !isEffect && !file.name.ends_with(".plist")) {
            last = file;
        }
    }
    return last;
}

namespace {

// As askedFiles(), with or without what the platform tries by itself.
std::vector<AskedFile> filesIn(const record::Record& record, bool withTriedBeside) {
    std::vector<AskedFile> files;
    for (const Entry& entry : record) {
        if (!isFile(entry) || (!withTriedBeside && isTriedBeside(entry))) {
            continue;
        }
        AskedFile file = askedFile(entry);
        if (file.theme.empty()) {
            continue;
        }
        const auto known = std::ranges::find(files, file.path, &AskedFile::path);
        if (known == files.end()) {
            files.push_back(std::move(file));
        } else if (!file.answer.empty() || file.state == EntryKind::unreadable) {
            *known = std::move(file);  // it was looked for, then read
        }
    }
    return files;
}

}  // namespace

std::vector<AskedFile> askedFiles(const record::Record& record) {
    return filesIn(record, false);
}

std::vector<AskedFile> triedFiles(const record::Record& record) {
    return filesIn(record, true);
}

Result<Explanation> explain(const Investigation& investigation, const Question& question,
                            Depth depth) {
    auto process = startProcess(investigation, question, true);
    if (!process) {
        return tl::unexpected(std::move(process.error()));
    }
    static_cast<void>((*process)->takeRecord());
    auto answer = (*process)->ask(question);
    const auto again = answer ? (*process)->ask(question) : answer;
    if (!again && (*process)->processId() != 0) {
        return tl::unexpected(again.error());
    }
    if (!again) {
        Explanation result =
            explanationOf(question, answer ? std::move(answer->record) : (*process)->takeRecord());
        result.failure = again.error();
        return result;
    }
    Explanation result = explanationOf(question, std::move(answer->record));
    for (AskedFile& file : result.files) {
        if (file.state == EntryKind::missing && isDeadLink(*investigation.device.root, file.path)) {
            file.reason = kIsDeadLink;
        }
    }
    result.picture = std::move(answer->picture);
    askOthers(investigation, result);
    result.isKept = std::ranges::none_of(askedFiles(again->record), [&](const AskedFile& file) {
        return isRead(file) && (!result.shown || file.path == result.shown->path);
    });
    if (depth == Depth::whole && result.shown && result.isKept) {
        result.later = laterRequests(investigation, result, **process);
    }
    if (depth == Depth::whole && isUnclear(result)) {
        result.onOtherSystem = onOtherSystem(investigation, question);
    }
    if (result.shown && result.picture) {
        result.needsRespring = needsRespring(investigation, result, **process, depth);
    }
    return result;
}

}  // namespace velmoranth::cli
