#include "cli/app_list.h"

#include "cli/device_check.h"
#include "cli/messages.h"
#include "cli/text_lines.h"
#include "desktop/files/descriptor.h"
#include "simulator/home_screen/live_icons.h"
#include "simulator/toolkit/stock_images.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using simulator::NamedApp;

namespace {

constexpr std::size_t kMostLines = 10 * kMostApps;
constexpr std::size_t kLongestIdentifier = 255;  // as of a file's name
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kIconEnding = "-large.png";

bool isIdentifier(std::string_view text) {
    constexpr std::string_view kOfIdentifiers =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
    return !text.empty() && text.size() <= kLongestIdentifier && text.front() != '.' &&
           text.back() != '.' && text.find_first_not_of(kOfIdentifiers) == std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// The app of a line; nothing for one that has none.
Result<std::optional<NamedApp>> appOfLine(const TextLines& lines) {
    const std::string_view text = trimmed(lines.line());
    if (lines.isTooLong()) {
        return tl::unexpected(Problem{TextLines::tooLong()});
    }
    if (text.empty() || text.front() == '#') {
        return std::optional<NamedApp>();
    }
    const std::size_t blank = std::min(text.find_first_of(kBlanks), text.size());
    NamedApp app{std::string(text.substr(0, blank)), std::string(trimmed(text.substr(blank)))};
    if (!isIdentifier(app.identifier)) {
        return tl::unexpected(
            Problem{inQuotes(app.identifier) +
                    " is no app's identifier; a line has one and, behind a blank, a name, as in "
                    "com.example.notes Notes"});
    }
    if (!isPlainText(app.name)) {
        return tl::unexpected(Problem{"the name " + inQuotes(app.name) + " is not plain text"});
    }
    return std::optional(std::move(app));
}

std::string tooMany() {
    return fmt::format("there are more than {} apps; give some of them", kMostApps);
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

// Adds what the theme has icons for. False when it is too much to look at.
bool addIcons(const desktop::DeviceRoot& root, const std::string& theme,
              std::set<std::string>& identifiers) {
    const std::string path = "/Library/Themes/" + theme + "/IconBundles";
    desktop::Descriptor descriptor(root.openFile(path, O_RDONLY | O_DIRECTORY));
    const std::unique_ptr<DIR, CloseFolder> folder(
        descriptor.isOpen() ? ::fdopendir(descriptor.get()) : nullptr);
    if (folder == nullptr) {
        return true;  // a theme need not have icons
    }
    static_cast<void>(descriptor.release());  // the folder's now
    while (const dirent* const entry = ::readdir(folder.get())) {
        const std::string_view name = entry->d_name;
        const std::string_view identifier =
            name.substr(0, name.size() - std::min(name.size(), kIconEnding.size()));
        if (!name.ends_with(kIconEnding) || !isIdentifier(identifier)) {
            continue;
        }
        // Not a link that leads nowhere.
        const desktop::Descriptor file(root.openFile(path + "/" + std::string(name), O_PATH));
        if (file.isOpen()) {
            identifiers.emplace(identifier);
        }
        if (identifiers.size() > kMostApps) {
            return false;
        }
    }
    return true;
}

// Whether the theme has a face for the clock, in one of the two bundles that are asked for it.
bool hasClockFace(const desktop::DeviceRoot& root, const std::string& theme) {
    for (const std::string_view bundle :
         {std::string_view(simulator::kClockBundle), simulator::kHomeScreenBundle}) {
        for (const std::string_view ending : {"@3x.png", ".png", ""}) {
            const std::string path = fmt::format("/Library/Themes/{}/Bundles/{}/{}{}", theme,
                                                 bundle, simulator::kClockFace, ending);
            if (desktop::Descriptor(root.openFile(path, O_PATH)).isOpen()) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

Result<std::vector<NamedApp>> readAppList(const std::string& path) {
    auto opened = TextLines::open(path, "the list of apps");
    if (!opened) {
        return tl::unexpected(std::move(opened.error()));
    }
    TextLines& lines = **opened;
    std::vector<NamedApp> apps;
    std::map<std::string, std::size_t> lineOf;
    while (lines.next()) {
        if (lines.number() > kMostLines) {
            return tl::unexpected(lines.problem(tooMany()));
        }
        auto app = appOfLine(lines);
        if (!app) {
            return tl::unexpected(lines.problemHere(app.error().message));
        }
        if (!*app) {
            continue;
        }
        const auto [first, isNew] = lineOf.try_emplace((*app)->identifier, lines.number());
        if (!isNew) {
            return tl::unexpected(lines.problemHere(
                fmt::format("{} stands on line {} already", shown(first->first), first->second)));
        }
        apps.push_back(std::move(**app));
        if (apps.size() > kMostApps) {
            return tl::unexpected(lines.problem(tooMany()));
        }
    }
    if (apps.empty()) {
        return tl::unexpected(lines.problem(
            "there is no app in it; a line has an identifier and, behind a blank, a name, as in "
            "com.example.notes Notes"));
    }
    return apps;
}

Result<std::vector<NamedApp>> themedApps(const desktop::DeviceRoot& root,
                                         const simulator::SystemVersion& system) {
    std::set<std::string> identifiers;
    const std::vector<std::string> themes = activeThemes(root);
    for (const std::string& theme : themes) {
        if (!addIcons(root, theme, identifiers)) {
            return tl::unexpected(
                Problem{fmt::format("the theme brings it to more than {} icons; give a smaller one",
                                    kMostApps),
                        theme});
        }
    }
    if (system.major >= 13) {
        const std::string clock(simulator::kClockIdentifier);
        identifiers.erase(clock);
        if (std::ranges::any_of(themes,
                                [&](const auto& theme) { return hasClockFace(root, theme); })) {
            identifiers.insert(clock);
        }
    }
    if (identifiers.empty()) {
        return tl::unexpected(
            Problem{"no theme has an app's icon; one is a file IconBundles/IDENTIFIER-large.png"});
    }
    std::vector<NamedApp> apps;
    for (const simulator::App* const app : simulator::allApps(simulator::stockApps())) {
        if (identifiers.erase(std::string(app->bundleIdentifier)) > 0) {
            apps.push_back({std::string(app->bundleIdentifier)});
        }
    }
    for (const std::string& identifier : identifiers) {
        apps.push_back({identifier});
    }
    return apps;
}

}  // namespace velmoranth::cli
