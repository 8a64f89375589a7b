#include "cli/theme_folders.h"

#include "makers/conversion/found_themes.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace velmoranth::cli {
namespace {

namespace fs = std::filesystem;

// Pictures alone make a folder no theme of its own: they may be a part of the one around it.
bool isThemeByItself(const makers::FoundTheme& theme) {
    static constexpr std::array<std::string_view, 4> kFolders{"IconBundles", "Bundles", "UIImages",
                                                              "Velmoranth"};
    std::error_code error;
    return theme.name.ends_with(".theme") ||
           std::ranges::any_of(kFolders, [&](std::string_view folder) {
               return fs::is_directory(fs::path(theme.folder) / folder, error);
           });
}

std::vector<std::string> foldersOf(const std::vector<makers::FoundTheme>& themes) {
    std::vector<std::string> folders;
    for (const makers::FoundTheme& theme : themes) {
        if (!theme.files.empty() && isThemeByItself(theme)) {
            folders.push_back(theme.folder);
        }
    }
    return folders;
}

}  // namespace

std::vector<std::string> themesWithin(const std::string& folder) {
    if (std::error_code error; !fs::is_directory(folder, error)) {
        return {};
    }
    if (const auto packaged = makers::findThemesInPackage(folder, true)) {
        if (auto folders = foldersOf(*packaged); !folders.empty()) {
            return folders;
        }
    }
    const auto found = makers::findThemesIn(folder);
    if (!found || std::ranges::any_of(*found, &makers::FoundTheme::isTop)) {
        return {};
    }
    return foldersOf(*found);
}

std::vector<std::string> withThemesWithin(const std::vector<std::string>& paths) {
    std::vector<std::string> themes;
    for (const std::string& path : paths) {
        const std::vector<std::string> within = themesWithin(path);
        if (within.empty()) {
            themes.push_back(path);
        }
        themes.insert(themes.end(), within.begin(), within.end());
    }
    return themes;
}

}  // namespace velmoranth::cli
