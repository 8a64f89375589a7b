#include "cli/theme_folders.h"

#include "cli/messages.h"

#include "makers/conversion/convert.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace velmoranth::cli {
namespace {

namespace fs = std::filesystem;

// Folders of a theme.
constexpr std::array<std::string_view, 4> kFolders{"IconBundles", "Bundles", "UIImages",
                                                   "Velmoranth"};

// At least so many of them.
bool hasThemesFolders(const fs::path& folder, int least) {
    std::error_code error;
    return std::ranges::count_if(kFolders, [&](std::string_view name) {
               return fs::is_directory(folder / name, error);
           }) >= least;
}

// Pictures alone make a folder no theme of its own: they may be a part of the one around it.
bool isThemeByItself(const makers::FoundTheme& theme) {
    return theme.name.ends_with(".theme") || hasThemesFolders(theme.folder, 1);
}

// "A.theme" of A.theme/Bundles and of A.theme/Bundles/com.example; "" for a folder of no theme.
std::string themeAround(fs::path folder) {
    for (int level = 0; level < 2; ++level, folder = folder.parent_path()) {
        const fs::path around = folder.parent_path();
        if (std::ranges::find(kFolders, folder.filename().string()) != kFolders.end() &&
            (around.extension() == ".theme" || hasThemesFolders(around, 2))) {
            return around.filename();
        }
    }
    return "";
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

// The first of them, and how many more.
std::string listed(const std::vector<std::string>& paths) {
    constexpr std::size_t kMost = 3;
    std::string text;
    for (std::size_t i = 0; i < std::min(kMost, paths.size()); ++i) {
        text += (text.empty() ? "" : ", ") + shown(paths[i]);
    }
    return text +
           (paths.size() > kMost ? " and " + std::to_string(paths.size() - kMost) + " more" : "");
}

}  // namespace

std::string whyNoTheme(const std::string& path) {
    const std::vector<std::string> within = themesWithin(path);
    if (!within.empty()) {
        return "this is no theme, but holds " + listed(within) +
               (within.size() == 1 ? "; give that" : "; give one of them");
    }
    std::error_code error;
    const fs::path folder = fs::canonical(path, error);
    if (error || hasThemesFolders(folder, 1)) {
        return "";
    }
    if (fs::is_directory(folder / "Library/Themes", error)) {
        return "this is no theme, and no theme is in its Library/Themes";
    }
    const std::string around = themeAround(folder);
    return around.empty() ? "" : "this is a folder of the theme " + shown(around) + "; give that";
}

std::string hiddenPicturesIn(const std::string& path, const makers::FoundTheme& theme) {
    const makers::HiddenPictures hidden = makers::hiddenPictures(theme);
    if (hidden.all() == 0) {
        return {};
    }
    const std::string what = hidden.icons == 0    ? counted(hidden.others, "image")
                             : hidden.others == 0 ? counted(hidden.icons, "icon")
                                                  : counted(hidden.icons, "icon") + " and " +
                                                        counted(hidden.others, "other image");
    return shown(theme.name) + ": " + what +
           (hidden.all() == 1 ? " lies under a name" : " lie under names") +
           " that nothing looks for; velmoranth convert " + forShell(path) +
           " -o FOLDER makes a theme that shows " + (hidden.all() == 1 ? "it" : "them");
}

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
