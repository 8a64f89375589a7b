// What is said of themes.
#include "cli/dead_links.h"
#include "cli/messages.h"
#include "cli/theme_report.h"
#include "simulator/screens/question_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace velmoranth::cli {

namespace {

// The request that tells of apps without an icon. The list of every app has the device's own alone,
// so that of others one is named.
std::string iconRequest(const std::vector<std::string>& apps) {
    const std::vector<std::string> own =
        simulator::knownArguments(*simulator::questionRowNamed("icon"));
    const auto other = std::ranges::find_if(
        apps, [&](const std::string& app) { return std::ranges::find(own, app) == own.end(); });
    return "icon " + (other == apps.end() ? "'*'" : forShell(*other));
}

std::string partsText(const ThemeReport& report) {
    if (!report.isThemingOn) {
        return "; theming is off (enable)";
    }
    std::string text =
        report.parts.empty() ? "" : fmt::format("; {}", fmt::join(report.parts, ", "));
    for (const PartOff& part : report.partsOff) {
        text += fmt::format("{}{} ({})", &part == report.partsOff.data() ? "; off: " : ", ",
                            part.name, part.setting);
    }
    return text;
}

std::string sumText(const ThemeReport& report, const MoreBehind& more) {
    std::string sum =
        fmt::format("{} of {} {} an icon of {}", report.themedApps.size(),
                    counted(report.themedApps.size() + report.otherApps.size(), "app"),
                    report.themedApps.size() == 1 ? "has" : "have",
                    more.themeCount == 1 ? "the theme" : "the themes");
    if (report.moreIcons > 0) {
        sum +=
            fmt::format("; {}{} of apps that are not shown", report.hasMoreIcons ? "at least " : "",
                        counted(report.moreIcons, "icon"));
    }
    sum += partsText(report);
    if (!report.otherApps.empty()) {
        sum += fmt::format("; nothing for {} ({}{})", counted(report.otherApps.size(), "app"),
                           more.command, iconRequest(report.otherApps));
    }
    return sum;
}

std::string nearMissText(const std::vector<NearMiss>& misses, const MoreBehind& more) {
    const NearMiss& miss = misses.front();
    const std::string name = miss.theme + "/" + miss.name;
    // Another theme may have a file of that name.
    const std::string request =
        misses.size() > 1 ? "'*'" : forShell(more.themeCount == 1 ? miss.name : name);
    return fmt::format(
        "{} where nothing looks, {} first, which would be {} ({}file {})",
        misses.size() == 1 ? "1 file lies" : fmt::format("{} files lie", misses.size()),
        shown(name), shown(miss.wanted), more.command, request);
}

}  // namespace

std::vector<std::string> linesOf(const ThemeReport& report, const MoreBehind& more) {
    std::vector<std::string> lines{sumText(report, more)};
    if (!report.nearMisses.empty()) {
        lines.push_back(nearMissText(report.nearMisses, more));
    }
    if (std::string links = aboutDeadLinks(report.deadLinks); !links.empty()) {
        lines.push_back(std::move(links));
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
