#include "cli/theme_report.h"

#include "cli/added_theme.h"
#include "cli/asking.h"
#include "cli/calendar_report.h"
#include "cli/dead_links.h"
#include "cli/file_requests.h"
#include "cli/folded_name.h"
#include "cli/near_misses.h"
#include "cli/switches.h"
#include "simulator/screens/question_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;
using record::EntryKind;
using simulator::Question;

namespace {

struct Part {
    std::string_view word;
    std::string_view argument;
    std::string_view name;  // in the line
    // The setting that shows it, on or off; "" for a part that is shown whenever theming is on.
    std::string_view setting;
    bool isShownWhenOn = true;
};

// In the order in which they are told.
constexpr std::array kParts{
    Part{"mask", "", "mask", "enableIconMask"},
    Part{"overlay", "", "overlay", "enableOverlay"},
    Part{"shadow", "", "shadow", "enableShadow"},
    Part{"folder", "", "folder", ""},
    Part{"behind", "", "open folder", ""},
    Part{"dock", "", "dock", "removeDock"},
    Part{"badge", "", "badges", "removeIconBadges", false},
    Part{"dot", "current", "dots", "removePageDots", false},
};

bool isShown(const Investigation& investigation, const Part& part) {
    return part.setting.empty() || isSwitchOn(investigation, part.setting) == part.isShownWhenOn;
}

// A device that is asked, and every file of a theme that it has tried.
class AskedDevice {
  public:
    explicit AskedDevice(const Investigation& investigation) : asking_(investigation) {}

    Result<simulator::Answer> ask(const Question& question) {
        auto answer = asking_.ask(question);
        for (AskedFile& file : answer ? triedFiles(answer->record) : std::vector<AskedFile>()) {
            const auto [known, isNew] = places_.try_emplace(file.path, files_.size());
            if (isNew) {
                files_.push_back(std::move(file));
            } else if (isRead(file) && !isRead(files_[known->second])) {
                files_[known->second] = std::move(file);  // it was looked for, then read
            }
        }
        return answer;
    }

    // In the order in which they were first asked for, none twice.
    [[nodiscard]] const std::vector<AskedFile>& files() const { return files_; }

  private:
    Asking asking_;
    std::map<std::string, std::size_t> places_;  // by path
    std::vector<AskedFile> files_;
};

// Those of the list, or a fresh device's.
std::vector<std::string> identifiersOf(const std::vector<simulator::NamedApp>& apps) {
    if (apps.empty()) {
        return simulator::knownArguments(*simulator::questionRowNamed("icon"));
    }
    std::vector<std::string> identifiers;
    std::ranges::transform(apps, std::back_inserter(identifiers), &simulator::NamedApp::identifier);
    return identifiers;
}

bool isNamedFor(const AskedFile& file, const std::string& app) {
    return gistOf(file.name) == gistOf(app + ".png");
}

// Null for none.
const AskedFile* maskInUse(const ThemeReport& report) {
    const auto mask = std::ranges::find(report.effects, "mask", &Effect::name);
    const bool shows = std::ranges::find(report.parts, "mask") != report.parts.end();
    return shows && mask != report.effects.end() ? &mask->file : nullptr;
}

// Whether a theme has a picture for the app, and what is said about it else.
Result<bool> askForIcon(const Investigation& investigation, const std::string& app,
                        AskedDevice& device, ThemeReport& report) {
    const auto answer = device.ask({"icon", app, ""});
    if (!answer) {
        return tl::unexpected(answer.error());
    }
    if (report.calendar.empty()) {
        report.calendar = calendarFindings(investigation.device, answer->record, maskInUse(report));
    }
    for (const AskedFile& file : triedFiles(answer->record)) {
        if (isNamedFor(file, app)) {
            report.iconFolders.insert(std::filesystem::path(file.name).parent_path());
        }
    }
    return lastRead(answer->record, report.effects).has_value();
}

// The file that a part would have with its setting the other way.
std::optional<AskedFile> fileIfShown(const Investigation& investigation, const Part& part) {
    const desktop::DeviceRoot& root = *investigation.device.root;
    const std::vector<std::string>& themes = investigation.device.themes;
    std::optional<AskedFile> file;
    if (setActiveThemes(root, themes, settingsWith(investigation, {part.setting}))) {
        if (const auto answer =
                askOnce(investigation, {std::string(part.word), std::string(part.argument), ""})) {
            file = lastRead(answer->record, {});
        }
    }
    static_cast<void>(setActiveThemes(root, themes, investigation.settings));
    return file;
}

// The parts of the home screen that themes have, and what they do to its icons. Some are looked for
// whether they are shown or not, others only where they are.
Result<void> askForParts(const Investigation& investigation, AskedDevice& device,
                         ThemeReport& report) {
    report.isThemingOn = isSwitchOn(investigation, "enable");
    for (const Part& part : kParts) {
        const auto answer = device.ask({std::string(part.word), std::string(part.argument), ""});
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        auto file = lastRead(answer->record, {});
        const bool shows = isShown(investigation, part);
        if (!file && !shows && report.isThemingOn) {
            file = fileIfShown(investigation, part);
        }
        if (!file) {
            continue;
        }
        if (part.word == "mask" || part.word == "overlay" || part.word == "shadow") {
            report.effects.push_back({part.word, *file});
        }
        if (shows) {
            report.parts.push_back(part.name);
        } else {
            report.partsOff.push_back({part.name, part.setting});
        }
    }
    return {};
}

// Whether the two lie in one folder and differ in what a file adds to a name alone.
bool isSameBut(const std::string& name, const std::string& other) {
    const std::filesystem::path one(name);
    const std::filesystem::path two(other);
    return one.parent_path() == two.parent_path() && one.extension() == two.extension() &&
           gistOf(name) == gistOf(other);
}

// The icons that themes have for apps that the device does not have: people install apps. Asked
// when all else has been, since such a name may be a mistake, and for so many of them alone that it
// takes no longer than the rest.
Result<void> askForOtherApps(const Investigation& investigation, AskedDevice& device,
                             ThemeReport& report) {
    constexpr std::size_t kMostFiles = 50;
    std::set<std::pair<std::string, std::string>> known;
    for (const AskedFile& file : device.files()) {
        known.emplace(file.theme, file.name);
    }
    for (const NearMiss& miss : report.nearMisses) {
        known.emplace(miss.theme, miss.name);
    }
    std::size_t asked = 0;
    for (const std::string& theme : investigation.device.themes) {
        for (const std::string& name : filesOfTheme(*investigation.device.root, theme)) {
            const auto folder = std::filesystem::path(name).parent_path();
            if (!report.iconFolders.contains(folder) || known.contains({theme, name})) {
                continue;
            }
            if (++asked > kMostFiles) {
                report.hasMoreIcons = true;
                return {};
            }
            const auto answer = device.ask(iconRequestFor(name));
            if (!answer) {
                return tl::unexpected(answer.error());
            }
            const auto file = lastRead(answer->record, report.effects);
            if (file && file->theme == theme &&
                (file->askedAs.empty() ? file->name : file->askedAs) == name) {
                ++report.moreIcons;
            }
            const std::vector<AskedFile> tried = triedFiles(answer->record);
            const bool isFound = std::ranges::any_of(tried, [&](const AskedFile& other) {
                return other.theme == theme && other.name == name;
            });
            const auto wanted = std::ranges::find_if(tried, [&](const AskedFile& other) {
                return !isFound && other.theme == theme && other.state == EntryKind::missing &&
                       isSameBut(other.name, name);
            });
            if (wanted != tried.end()) {
                report.nearMisses.push_back({theme, name, wanted->name});
            }
        }
    }
    return {};
}

// Names that are looked for by themselves: of pictures, or of folders that would be looked into if
// they were there.
class BareNames {
  public:
    void note(const Question& question, const record::Record& record) {
        for (const AskedFile& file : askedFiles(record)) {
            if (file.state == EntryKind::missing &&
                std::filesystem::path(file.name).extension().empty()) {
                questions_[file.name].push_back(question);
            }
        }
    }

    // What would be looked for, of each theme, in those that are the name of a theme's folder but
    // for its letters: a theme that has them is asked the same.
    [[nodiscard]] std::vector<AskedFile> namesWithin(const Investigation& investigation) const {
        std::vector<AskedFile> files;
        std::vector<FoldedName> names;
        for (const std::string& theme : investigation.device.themes) {
            for (std::string& name : filesOfTheme(*investigation.device.root, theme)) {
                names.push_back({folded(name), std::move(name)});
            }
        }
        for (const auto& [name, questions] : questions_) {
            if (isFolderInOtherLetters(names, name)) {
                addNamesIn(name, questions, investigation, files);
            }
        }
        return files;
    }

  private:
    // Folded once for all that they are compared with.
    struct FoldedName {
        std::string folded;
        std::string name;
    };

    static bool isFolderInOtherLetters(const std::vector<FoldedName>& files,
                                       const std::string& name) {
        const std::string folder = name + "/";
        return std::ranges::any_of(files, [&, wanted = folded(folder)](const FoldedName& file) {
            return file.folded.starts_with(wanted) && !file.name.starts_with(folder);
        });
    }

    static void addNamesIn(const std::string& folder, const std::vector<Question>& questions,
                           const Investigation& investigation, std::vector<AskedFile>& files) {
        const AddedTheme added(investigation);
        std::error_code error;
        std::filesystem::create_directories(added.folder() / folder, error);
        if (!added.useBehind(investigation.settings)) {
            return;
        }
        Asking asking(investigation);
        for (const Question& question : questions) {
            const auto answer = asking.ask(question);
            for (const AskedFile& file :
                 answer ? triedFiles(answer->record) : std::vector<AskedFile>()) {
                if (file.theme != added.name() || !file.name.starts_with(folder + "/")) {
                    continue;
                }
                for (const std::string& theme : investigation.device.themes) {
                    files.push_back({EntryKind::missing, {}, theme, file.name, {}, {}});
                }
            }
        }
    }

    std::map<std::string, std::vector<Question>> questions_;
};

Result<void> askForAll(const Investigation& investigation,
                       const std::vector<simulator::NamedApp>& apps, AskedDevice& device,
                       ThemeReport& report) {
    if (auto parts = askForParts(investigation, device, report); !parts) {
        return parts;
    }
    std::vector<std::string> asked = identifiersOf(apps);
    const std::size_t shownCount = asked.size();
    for (std::string& own : identifiersOf({})) {
        if (std::ranges::find(asked, own) == asked.end()) {
            asked.push_back(std::move(own));
        }
    }
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const auto isThemes = askForIcon(investigation, asked[i], device, report);
        if (!isThemes) {
            return tl::unexpected(isThemes.error());
        }
        if (i >= shownCount) {
            report.moreIcons += *isThemes ? 1 : 0;
        } else {
            (*isThemes ? report.themedApps : report.otherApps).push_back(asked[i]);
        }
    }
    BareNames bareNames;
    for (const Question& question : deviceRequests()) {
        if (simulator::questionRowNamed(question.word)->firstSystem >
            investigation.configuration.system.major) {
            continue;
        }
        const auto answer = device.ask(question);
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        bareNames.note(question, answer->record);
    }
    std::vector<AskedFile> tried = device.files();
    std::ranges::move(bareNames.namesWithin(investigation), std::back_inserter(tried));
    report.nearMisses = nearMissesOf(investigation.device, tried);
    return askForOtherApps(investigation, device, report);
}

}  // namespace

ThemeReport reportThemes(const Investigation& investigation,
                         const std::vector<simulator::NamedApp>& apps) {
    ThemeReport report;
    AskedDevice device(investigation);
    for (const std::string& theme : investigation.device.themes) {
        for (const std::string& name : deadLinksOf(*investigation.device.root, theme)) {
            report.deadLinks.push_back(fmt::format("{}/{}", theme, name));
        }
    }
    if (auto asked = askForAll(investigation, apps, device, report); !asked) {
        report.failure = std::move(asked.error());
    }
    std::ranges::copy_if(device.files(), std::back_inserter(report.unreadable),
                         [](const AskedFile& file) { return file.state == EntryKind::unreadable; });
    return report;
}

}  // namespace velmoranth::cli
