// The themes in a folder tree of this machine, at whatever depth they begin.
#pragma once

#include "desktop/result/result.h"

#include "makers/conversion/repairs.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::makers {

// A file of a theme.
struct ThemeFile {
    std::string name;  // in the theme, with its folders; any bytes
    std::uint64_t size = 0;
};

// What does not come along, and why.
struct LeftOut {
    std::string name;
    std::string why;
    Repair repair = Repair::none;
    // Of Repair::otherIcon: the name that is looked for, and that another file gets.
    std::string wanted = {};

    friend bool operator==(const LeftOut&, const LeftOut&) = default;
};

// Why a pipe, a socket or a device is left out.
inline constexpr const char* kNeitherFileNorFolder = "neither file nor folder";

struct FoundTheme {
    std::string folder;                 // of this machine
    std::string name;                   // that folder's own
    bool isTop = false;                 // whether it is the folder that was searched
    std::vector<ThemeFile> files = {};  // in the order of their names
    std::vector<LeftOut> leftOut = {};  // links and what is neither file nor folder
};

// Every folder that a theme's own folders begin in (IconBundles, Bundles and so on), every folder
// named NAME.theme, and every folder that pictures with identifiers of apps lie in; without any of
// these, every one that pictures called as apps are lie in. In the order of their paths. A theme
// inside of another one is a theme of its own. Links are not followed. A problem when the folder
// cannot be read, or holds more than 100,000 entries or 2 GiB.
[[nodiscard]] desktop::Result<std::vector<FoundTheme>> findThemesIn(const std::string& folder);

// The same below what a package of themes has them in, "Library/Themes" and the like; with
// `asGiven` each folder there is a theme, as on a device.
[[nodiscard]] desktop::Result<std::vector<FoundTheme>> findThemesInPackage(
    const std::string& folder, bool asGiven);

// The folder as a theme, whatever is in it. A problem as above.
[[nodiscard]] desktop::Result<FoundTheme> themeAsGiven(const std::string& folder);

// What a conversion takes a theme's folder for: the theme itself, without the folders in it that
// are themes of their own, and these.
struct SplitTheme {
    FoundTheme own;
    std::vector<FoundTheme> nested;
};

[[nodiscard]] SplitTheme splitTheme(const FoundTheme& theme);

// The folder's own name: the last part of its path, or of where it leads when that says nothing; ""
// for the top of all folders.
[[nodiscard]] std::string nameOfFolder(const std::string& folder);

// Whether it is what archivers and file managers leave behind, which belongs to no theme.
[[nodiscard]] bool isClutter(std::string_view path);

}  // namespace velmoranth::makers
