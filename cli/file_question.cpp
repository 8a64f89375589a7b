#include "cli/file_question.h"

#include "cli/added_theme.h"
#include "cli/asking.h"
#include "cli/dead_links.h"
#include "cli/file_requests.h"
#include "cli/messages.h"
#include "cli/near_misses.h"
#include "cli/nearest.h"
#include "cli/switches.h"
#include "desktop/files/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <future>
#include <ios>
#include <iterator>
#include <set>
#include <utility>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using simulator::Question;

namespace {

namespace fs = std::filesystem;

// A file by its theme and its name in it.
struct ThemeFile {
    std::string theme;
    std::string name;
};

struct Opened {
    Opening opening;
    std::string problem;
    // The names in the theme that the request has tried before the file, and the file's.
    std::vector<std::string> tried;
};

struct Round {
    std::vector<Opened> opened;
    std::vector<TakenBeside> beside;
    std::set<std::string> names;  // in the theme, that were looked for
};

// What a device does with these requests.
Result<Round> askDevice(const Investigation& investigation, const NamedDevice& device,
                        const std::vector<Question>& questions, const ThemeFile& file) {
    Investigation there = investigation;
    there.configuration = device.configuration;
    Asking asking(there);
    Round round;
    const int system = device.configuration.system.major;
    for (const Question& question : questions) {
        if (system < simulator::questionRowNamed(question.word)->firstSystem) {
            continue;
        }
        const auto answer = asking.ask(question);
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        std::vector<std::string> tried;
        for (const AskedFile& one : triedFiles(answer->record)) {
            if (one.theme != file.theme) {
                continue;
            }
            round.names.insert(one.name);
            tried.push_back(one.name);
            if (one.askedAs == file.name && isRead(one)) {
                round.beside.push_back({{question, device.name, system}, one.name});
                asking.forget(question);
            }
            if (one.name == file.name &&
                (isRead(one) || one.state == record::EntryKind::unreadable)) {
                round.opened.push_back({{question, device.name, system}, one.reason, tried});
                // It may keep the file, and another request would not open it again.
                asking.forget(question);
            }
        }
    }
    return round;
}

// All of them, two at a time.
Result<Round> askDevices(const Investigation& investigation, std::span<const NamedDevice> devices,
                         const std::vector<Question>& questions, const ThemeFile& file) {
    Round all;
    ProgressLine progress;
    for (std::size_t i = 0; i < devices.size(); i += 2) {
        progress.show("device " + std::to_string(i + 1) + " of " + std::to_string(devices.size()));
        const auto ask = [&](const NamedDevice& device) {
            return askDevice(investigation, device, questions, file);
        };
        std::future<Result<Round>> second;
        if (i + 1 < devices.size()) {
            second = std::async(std::launch::async, ask, std::cref(devices[i + 1]));
        }
        std::vector<Result<Round>> rounds{ask(devices[i])};
        if (second.valid()) {
            rounds.push_back(second.get());
        }
        for (Result<Round>& round : rounds) {
            if (!round) {
                return tl::unexpected(std::move(round.error()));
            }
            std::ranges::move(round->opened, std::back_inserter(all.opened));
            std::ranges::move(round->beside, std::back_inserter(all.beside));
            all.names.merge(round->names);
        }
    }
    return all;
}

// On the device.
std::string pathOf(const ThemeFile& file) {
    return "/Library/Themes/" + file.theme + "/" + file.name;
}

// Links in a theme are followed as on the device.
bool isFile(const desktop::DeviceRoot& root, const std::string& path) {
    const desktop::Descriptor item(root.openFile(path, O_PATH));
    struct stat status{};
    return item.isOpen() && ::fstat(item.get(), &status) == 0 && S_ISREG(status.st_mode);
}

// The theme and the name in it that a path means.
Result<ThemeFile> fileMeant(const Investigation& investigation, const std::string& path) {
    const std::string plain = fs::path(path).lexically_normal().generic_string();
    for (const std::string& theme : investigation.device.themes) {
        std::vector<std::string> names{plain};
        for (std::size_t at = plain.find(theme + "/"); at != std::string::npos;
             at = plain.find(theme + "/", at + 1)) {
            if (at == 0 || plain[at - 1] == '/') {
                names.push_back(plain.substr(at + theme.size() + 1));
            }
        }
        for (const std::string& name : names) {
            if (name.starts_with('/') || name.starts_with("..")) {
                continue;
            }
            if (isFile(*investigation.device.root, pathOf({theme, name}))) {
                return ThemeFile{theme, name};
            }
            if (isDeadLink(*investigation.device.root, pathOf({theme, name}))) {
                return tl::unexpected(Problem{
                    "it " + std::string(kIsDeadLink) + "; " + std::string(kMendDeadLink), path});
            }
        }
    }
    return tl::unexpected(
        Problem{"no theme has this file; give its path in the theme's folder", path});
}

const NamedDevice& deviceOf(const Opening& opening, std::span<const NamedDevice> devices) {
    return *std::ranges::find_if(devices, [&](const NamedDevice& device) {
        return device.name == opening.device && device.configuration.system.major == opening.system;
    });
}

// The file that is opened where this one would be if it were alone.
std::optional<HidingFile> hidingFile(const Investigation& investigation,
                                     std::span<const NamedDevice> devices, const Opened& alone) {
    Investigation there = investigation;
    there.configuration = deviceOf(alone.opening, devices).configuration;
    const auto answer = askOnce(there, alone.opening.question);
    std::optional<HidingFile> hiding;
    for (AskedFile& file : answer ? askedFiles(answer->record) : std::vector<AskedFile>()) {
        if ((isRead(file) || file.state == record::EntryKind::unreadable) &&
            std::ranges::find(alone.tried, file.name) != alone.tried.end()) {
            hiding = HidingFile{std::move(file), alone.opening.question};
        }
    }
    return hiding;
}

// Of the switches, whose other values together have the request open the file, the one that does.
std::optional<FileSwitch> switchBehind(const Investigation& investigation, const AddedTheme& alone,
                                       const std::vector<std::string_view>& keys,
                                       const NamedDevice& device, const Question& question,
                                       const ThemeFile& file) {
    for (const std::string_view key : keys) {
        if (!alone.useAlone(settingsWith(investigation, {key}))) {
            continue;
        }
        const auto round = askDevice(investigation, device, {question}, file);
        if (round && !round->opened.empty()) {
            return FileSwitch{key, isSwitchOn(investigation, key), question};
        }
    }
    return std::nullopt;
}

// The first request that opens the file where the theme has nothing else, is the only one, and has
// these switches the other way.
Result<std::optional<Opened>> openedAlone(const Investigation& investigation,
                                          const AddedTheme& alone,
                                          const std::vector<std::string_view>& turned,
                                          std::span<const NamedDevice> devices,
                                          const std::vector<Question>& questions,
                                          const ThemeFile& file) {
    if (!alone.useAlone(settingsWith(investigation, turned))) {
        return std::optional<Opened>();
    }
    auto round = askDevices(investigation, devices, questions, file);
    if (!round) {
        return tl::unexpected(std::move(round.error()));
    }
    return round->opened.empty() ? std::optional<Opened>()
                                 : std::optional(std::move(round->opened.front()));
}

// Whether the request opens it where its theme stands before all others.
bool isOpenedOnceFirst(const Investigation& investigation, const NamedDevice& device,
                       const Question& question, const ThemeFile& file) {
    const desktop::DeviceRoot& root = *investigation.device.root;
    std::vector<std::string> turned = investigation.device.themes;
    const auto own = std::ranges::find(turned, file.theme);
    std::rotate(turned.begin(), own, own + 1);
    const bool isSet = setActiveThemes(root, turned, investigation.settings).has_value();
    const auto round =
        isSet ? askDevice(investigation, device, {question}, file) : Result<Round>(Round());
    static_cast<void>(setActiveThemes(root, investigation.device.themes, investigation.settings));
    return round && !round->opened.empty();
}

// Why no request opens the file: another one is opened in its place, or a setting.
Result<void> findReason(const Investigation& investigation, std::span<const NamedDevice> devices,
                        const std::vector<Question>& questions, const ThemeFile& file,
                        FileExplanation& explanation) {
    std::optional<Opened> hidden;
    {
        const AddedTheme alone(investigation);
        const ThemeFile there{alone.name(), file.name};
        if (!alone.copy(pathOf(file), file.name)) {
            return {};
        }
        for (const auto& turned :
             {std::vector<std::string_view>(), switchesThatAre(investigation, false),
              switchesThatAre(investigation, true)}) {
            auto opened = openedAlone(investigation, alone, turned, devices, questions, there);
            if (!opened) {
                return tl::unexpected(std::move(opened.error()));
            }
            if (*opened && turned.empty()) {
                hidden = std::move(*opened);
                break;
            }
            if (*opened) {
                const Opening& opening = (*opened)->opening;
                explanation.reason =
                    switchBehind(investigation, alone, turned, deviceOf(opening, devices),
                                 opening.question, there);
                return {};
            }
        }
    }
    if (hidden) {
        explanation.hidden = hidingFile(investigation, devices, *hidden);
        if (!explanation.hidden &&
            isOpenedOnceFirst(investigation, deviceOf(hidden->opening, devices),
                              hidden->opening.question, file)) {
            explanation.onceFirst = hidden->opening.question;
        }
    }
    return {};
}

// The nearest of the names that are near.
std::vector<std::string> nearNames(const std::set<std::string>& names, const std::string& name) {
    constexpr std::size_t kMostNames = 3;
    std::vector<std::string> near;
    std::ranges::copy_if(names, std::back_inserter(near), [&](const std::string& one) {
        return gistOf(one) == gistOf(name) || isNearName(name, one);
    });
    std::ranges::sort(near, {}, [&](const std::string& one) { return farness(one, name); });
    near.resize(std::min(near.size(), kMostNames));
    return near;
}

// Of several names that a file answers to, for one of which an app may ask, the shortest.
void keepShortest(std::vector<Opened>& opened) {
    const std::vector<Opened> all = opened;
    std::erase_if(opened, [&](const Opened& one) {
        const Question& question = one.opening.question;
        return std::ranges::any_of(all, [&](const Opened& other) {
            const Question& shorter = other.opening.question;
            return shorter.word == question.word && shorter.bundle == question.bundle &&
                   shorter.argument.size() < question.argument.size();
        });
    });
}

void take(std::vector<Opened>&& opened, bool isOwn, FileExplanation& explanation) {
    for (Opened& one : opened) {
        one.opening.isOwn = isOwn;
        explanation.openings.push_back(std::move(one.opening));
        if (!one.problem.empty()) {
            explanation.problem = std::move(one.problem);
        }
    }
}

}  // namespace

Result<FileExplanation> explainFile(const Investigation& investigation,
                                    std::span<const NamedDevice> devices, const std::string& path) {
    const auto file = fileMeant(investigation, path);
    if (!file) {
        return tl::unexpected(file.error());
    }
    FileExplanation explanation;
    explanation.theme = file->theme;
    explanation.name = file->name;
    const std::vector<Question> questions = ownRequestsFor(file->name);
    auto own = askDevices(investigation, devices, questions, *file);
    if (!own) {
        return tl::unexpected(std::move(own.error()));
    }
    take(std::move(own->opened), true, explanation);
    explanation.beside = std::move(own->beside);
    if (!explanation.openings.empty() || !explanation.beside.empty()) {
        return explanation;
    }
    if (auto found = findReason(investigation, devices, questions, *file, explanation); !found) {
        return tl::unexpected(std::move(found.error()));
    }
    if (explanation.hidden || explanation.reason || explanation.onceFirst) {
        return explanation;
    }
    auto others = askDevices(investigation, devices, otherRequestsFor(file->name), *file);
    if (!others) {
        return tl::unexpected(std::move(others.error()));
    }
    keepShortest(others->opened);
    take(std::move(others->opened), false, explanation);
    if (explanation.openings.empty() && !others->beside.empty()) {
        explanation.beside = std::move(others->beside);
        return explanation;
    }
    explanation.wanted = nearNames(own->names, file->name);
    if (explanation.wanted.empty() && explanation.openings.empty()) {
        // A request with the file's own name looks for it in many folders.
        std::erase_if(others->names, [&](const std::string& name) {
            return fs::path(name).parent_path() != fs::path(file->name).parent_path();
        });
        explanation.wanted = nearNames(others->names, file->name);
    }
    return explanation;
}

bool isOpened(const FileExplanation& explanation) {
    if (!explanation.beside.empty()) {
        return true;
    }
    return !explanation.openings.empty() &&
           (explanation.openings.front().isOwn || explanation.wanted.empty());
}

}  // namespace velmoranth::cli
