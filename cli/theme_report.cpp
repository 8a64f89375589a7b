#include "cli/theme_report.h"

#include "cli/added_theme.h"
#include "cli/asking.h"
#include "cli/calendar_report.h"
#include "cli/file_requests.h"
#include "cli/messages.h"
#include "cli/near_misses.h"
#include "desktop/image_io/image_io.h"
#include "simulator/screens/question_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
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
};

// In the order in which they are told.
constexpr std::array kParts{
    Part{"mask", "", "mask"},     Part{"overlay", "", "overlay"},    Part{"shadow", "", "shadow"},
    Part{"folder", "", "folder"}, Part{"behind", "", "open folder"}, Part{"dock", "", "dock"},
    Part{"badge", "", "badges"},  Part{"dot", "current", "dots"},
};

// A device that is asked, and every file of a theme that it has tried.
class AskedDevice {
  public:
    explicit AskedDevice(const Investigation& investigation) : asking_(investigation) {}

    Result<simulator::Answer> ask(const Question& question) {
        auto answer = asking_.ask(question);
        for (AskedFile& file : answer ? triedFiles(answer->record) : std::vector<AskedFile>()) {
            if (paths_.insert(file.path).second) {
                files_.push_back(std::move(file));
            }
        }
        return answer;
    }

    // In the order in which they were first asked for, none twice.
    [[nodiscard]] const std::vector<AskedFile>& files() const { return files_; }

  private:
    Asking asking_;
    std::set<std::string> paths_;
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

// Whether a theme has a picture for the app, and what is said about it else.
Result<bool> askForIcon(const Investigation& investigation, const std::string& app,
                        AskedDevice& device, ThemeReport& report) {
    const auto answer = device.ask({"icon", app, ""});
    if (!answer) {
        return tl::unexpected(answer.error());
    }
    if (report.calendar.empty()) {
        report.calendar = calendarFindings(investigation.device, answer->record);
    }
    for (const AskedFile& file : triedFiles(answer->record)) {
        if (isNamedFor(file, app)) {
            report.iconFolders.insert(std::filesystem::path(file.name).parent_path());
        }
    }
    return lastRead(answer->record, report.effects).has_value();
}

// The parts of the home screen that themes have, and what they do to its icons.
Result<void> askForParts(AskedDevice& device, ThemeReport& report) {
    for (const Part& part : kParts) {
        const auto answer = device.ask({std::string(part.word), std::string(part.argument), ""});
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        if (const auto file = lastRead(answer->record, {})) {
            report.parts.emplace_back(part.name);
            if (part.word == "mask" || part.word == "overlay" || part.word == "shadow") {
                report.effects.push_back({part.word, *file});
            }
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
            if (file && file->theme == theme && file->name == name) {
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

constexpr std::string_view kOpaqueApp = "com.example.opaque";

// Gives the theme an icon that is white all over.
bool addOpaqueIcon(const AddedTheme& theme) {
    constexpr std::size_t kSide = 180;
    const std::vector<std::uint8_t> pixels(kSide * kSide * 4, 255);
    const auto png = desktop::encodePng(pixels, kSide, kSide, kSide * 4);
    const std::filesystem::path folder = theme.folder() / "IconBundles";
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::ofstream file(folder / (std::string(kOpaqueApp) + "-large.png"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
    return static_cast<bool>(file.flush());
}

Result<void> askForAll(const Investigation& investigation,
                       const std::vector<simulator::NamedApp>& apps, AskedDevice& device,
                       ThemeReport& report) {
    if (auto parts = askForParts(device, report); !parts) {
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
    for (const Question& question : deviceRequests()) {
        if (simulator::questionRowNamed(question.word)->firstSystem >
            investigation.configuration.system.major) {
            continue;
        }
        if (const auto answer = device.ask(question); !answer) {
            return tl::unexpected(answer.error());
        }
    }
    report.nearMisses = nearMissesOf(investigation.device, device.files());
    return askForOtherApps(investigation, device, report);
}

}  // namespace

ThemeReport reportThemes(const Investigation& investigation,
                         const std::vector<simulator::NamedApp>& apps) {
    ThemeReport report;
    AskedDevice device(investigation);
    if (auto asked = askForAll(investigation, apps, device, report); !asked) {
        report.failure = std::move(asked.error());
    }
    std::ranges::copy_if(device.files(), std::back_inserter(report.unreadable),
                         [](const AskedFile& file) { return file.state == EntryKind::unreadable; });
    return report;
}

std::string judgeMask(const Investigation& investigation, const ThemeReport& report) {
    const auto known = std::ranges::find(report.effects, "mask", &Effect::name);
    if (known == report.effects.end()) {
        return {};
    }
    // Behind the others, so that nothing of theirs changes.
    const AddedTheme theme(investigation);
    if (!addOpaqueIcon(theme)) {
        return {};
    }
    const Question question{"icon", std::string(kOpaqueApp), ""};
    const auto answerWith = [&](bool withMask) {
        platform::Dictionary settings = investigation.settings;
        settings.insert_or_assign("enableOverlay", platform::PropertyList(false));
        if (!withMask) {
            settings.insert_or_assign("enableIconMask", platform::PropertyList(false));
        }
        return theme.useBehind(settings)
                   ? askOnce(investigation, question)
                   : Result<simulator::Answer>(tl::unexpected(desktop::Problem()));
    };
    const auto masked = answerWith(true);
    const auto plain = answerWith(false);
    if (!masked || !plain || !isVisible(plain->picture)) {
        return {};
    }
    const std::vector<AskedFile> files = askedFiles(masked->record);
    const auto mask = std::ranges::find(files, known->file.path, &AskedFile::path);
    if (mask == files.end() || !isRead(*mask)) {
        return {};  // it is switched off
    }
    const std::string name = shown(known->file.theme + "/" + known->file.name);
    if (!masked->picture) {
        return name +
               " hides everything: nothing comes of an icon that is cut out by it; write it with 8 "
               "bits a channel";
    }
    if (!isVisible(masked->picture)) {
        return name + " hides everything: where it is light the icon is hidden";
    }
    if (masked->picture->pixels == plain->picture->pixels) {
        return name + " hides nothing: it is dark all over, and its transparency does not count";
    }
    return {};
}

std::vector<std::string> linesOf(const ThemeReport& report,
                                 const std::vector<std::string>& themes) {
    std::string words;
    for (const std::string& theme : themes) {
        words += forShell(theme) + " ";
    }
    const std::string_view whose = themes.size() == 1 ? "the theme" : "the themes";
    std::string sum =
        fmt::format("{} of {} {} an icon of {}", report.themedApps.size(),
                    counted(report.themedApps.size() + report.otherApps.size(), "app"),
                    report.themedApps.size() == 1 ? "has" : "have", whose);
    if (report.moreIcons > 0) {
        sum +=
            fmt::format("; {}{} of apps that are not shown", report.hasMoreIcons ? "at least " : "",
                        counted(report.moreIcons, "icon"));
    }
    if (!report.parts.empty()) {
        sum += fmt::format("; {}", fmt::join(report.parts, ", "));
    }
    if (!report.otherApps.empty()) {
        sum += fmt::format("; nothing for {} (velmoranth explain {}-- icon '*')",
                           counted(report.otherApps.size(), "app"), words);
    }
    std::vector<std::string> lines{std::move(sum)};
    if (!report.nearMisses.empty()) {
        const NearMiss& miss = report.nearMisses.front();
        const bool isOne = report.nearMisses.size() == 1;
        lines.push_back(fmt::format(
            "{} where nothing looks, {} first, which would be {} (velmoranth explain {}-- file {})",
            isOne ? "1 file lies" : fmt::format("{} files lie", report.nearMisses.size()),
            shown(miss.theme + "/" + miss.name), shown(miss.wanted), words,
            isOne ? forShell(miss.name) : "'*'"));
    }
    constexpr std::size_t kMostFiles = 10;
    for (std::size_t i = 0; i < std::min(report.unreadable.size(), kMostFiles); ++i) {
        const AskedFile& file = report.unreadable[i];
        lines.push_back(fmt::format("{} is there and gives nothing: {}",
                                    shown(file.theme + "/" + file.name), shown(file.reason)));
    }
    if (report.unreadable.size() > kMostFiles) {
        lines.push_back(
            fmt::format("{} more files give nothing", report.unreadable.size() - kMostFiles));
    }
    std::ranges::copy(report.calendar, std::back_inserter(lines));
    return lines;
}

}  // namespace velmoranth::cli
