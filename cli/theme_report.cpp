#include "cli/theme_report.h"

#include "cli/calendar_report.h"
#include "cli/messages.h"
#include "simulator/screens/question_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
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

void addFiles(std::vector<AskedFile>& all, const std::vector<AskedFile>& more) {
    for (const AskedFile& file : more) {
        if (std::ranges::find(all, file.path, &AskedFile::path) == all.end()) {
            all.push_back(file);
        }
    }
}

// Of the alpha of every pixel: the least and the greatest.
std::pair<int, int> alphaRange(const simulator::Picture& picture) {
    int least = 255;
    int greatest = 0;
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4) {
        least = std::min<int>(least, picture.pixels[i]);
        greatest = std::max<int>(greatest, picture.pixels[i]);
    }
    return {least, greatest};
}

}  // namespace

Result<ThemeReport> reportThemes(const Investigation& investigation) {
    const Question first{"icon", "", ""};
    auto process = startProcess(investigation, first, true);
    if (!process) {
        return tl::unexpected(std::move(process.error()));
    }
    ThemeReport report;
    std::vector<AskedFile> files;
    std::vector<Effect> effects;
    for (const Part& part : kParts) {
        const auto answer =
            (*process)->ask({std::string(part.word), std::string(part.argument), ""});
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        addFiles(files, askedFiles(answer->record));
        if (const auto file = lastRead(answer->record, {})) {
            report.parts.emplace_back(part.name);
            if (part.word == "mask") {
                report.mask = *file;
            }
            if (part.word == "mask" || part.word == "overlay" || part.word == "shadow") {
                effects.push_back({part.word, *file});
            }
        }
    }
    for (const std::string& app :
         simulator::knownArguments(*simulator::questionRowNamed(first.word))) {
        const auto answer = (*process)->ask({first.word, app, ""});
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        const auto asked = askedFiles(answer->record);
        addFiles(files, asked);
        if (report.calendar.empty()) {
            report.calendar = calendarFindings(investigation.device, answer->record);
        }
        const auto shown = lastRead(answer->record, effects);
        (shown ? report.themedApps : report.otherApps).push_back(app);
        if (report.maskedApp.empty() && shown &&
            std::ranges::find(asked, report.mask.path, &AskedFile::path) != asked.end()) {
            report.maskedApp = app;
        }
    }
    report.nearMisses = nearMissesOf(investigation.device, files);
    std::ranges::copy_if(files, std::back_inserter(report.unreadable),
                         [](const AskedFile& file) { return file.state == EntryKind::unreadable; });
    return report;
}

std::string judgeMask(const Investigation& investigation, const ThemeReport& report) {
    if (report.maskedApp.empty()) {
        return {};
    }
    const Question question{"icon", report.maskedApp, ""};
    const auto answerWith = [&](const platform::Dictionary& settings) {
        std::optional<simulator::Picture> picture;
        const desktop::DeviceRoot& root = *investigation.device.root;
        if (setActiveThemes(root, investigation.device.themes, settings)) {
            if (auto process = startProcess(investigation, question, true)) {
                if (auto answer = (*process)->ask(question)) {
                    picture = std::move(answer->picture);
                }
            }
        }
        static_cast<void>(
            setActiveThemes(root, investigation.device.themes, investigation.settings));
        return picture;
    };
    platform::Dictionary unmasked = investigation.settings;
    unmasked.insert_or_assign("enableIconMask", platform::PropertyList(false));
    const auto masked = answerWith(investigation.settings);
    const auto plain = answerWith(unmasked);
    if (!masked || !plain || masked->pixels.size() != plain->pixels.size()) {
        return {};
    }
    const std::string name = shown(report.mask.theme + "/" + report.mask.name);
    if (alphaRange(*masked).second == 0 && alphaRange(*plain).second > 0) {
        return name + " hides everything: where it is light the icon is hidden";
    }
    if (masked->pixels == plain->pixels && alphaRange(*plain).first == 255) {
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
    std::string sum = fmt::format("{} of {} apps have an icon of {}", report.themedApps.size(),
                                  report.themedApps.size() + report.otherApps.size(),
                                  themes.size() == 1 ? "the theme" : "the themes");
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
        lines.push_back(fmt::format(
            "{} where nothing looks, {} first, which would be {} (velmoranth explain {}-- file {})",
            report.nearMisses.size() == 1 ? "1 file lies"
                                          : fmt::format("{} files lie", report.nearMisses.size()),
            shown(miss.theme + "/" + miss.name), shown(miss.wanted), words, forShell(miss.name)));
    }
    constexpr std::size_t kMostFiles = 10;
    for (std::size_t i = 0; i < std::min(report.unreadable.size(), kMostFiles); ++i) {
        const AskedFile& file = report.unreadable[i];
        lines.push_back(fmt::format("{} is there and gives no picture: {}",
                                    shown(file.theme + "/" + file.name), shown(file.reason)));
    }
    if (report.unreadable.size() > kMostFiles) {
        lines.push_back(
            fmt::format("{} more files give no picture", report.unreadable.size() - kMostFiles));
    }
    std::ranges::copy(report.calendar, std::back_inserter(lines));
    return lines;
}

}  // namespace velmoranth::cli
