// A theme becomes a package that a phone installs.
#pragma once

#include "desktop/result/result.h"

#include "makers/conversion/found_themes.h"
#include "makers/packing/control.h"
#include "makers/packing/package_file.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::makers {

// Why a picture beside the theme's folders is left out.
inline constexpr std::string_view kLoosePicture =
    "a picture beside the theme's folders, where nothing looks";

// What a theme's package holds, known before it is written.
struct PackagePlan {
    Package package;
    ControlValues control;
    std::string installed;         // where the theme is once installed: "/Library/Themes/X.theme"
    std::uint64_t bytes = 0;       // of its files
    std::vector<LeftOut> leftOut;  // of the theme, and why
};

// The package of the theme in the folder, with all of its files but clutter and what no phone
// reads, such as pictures and packages beside its folders. A link to a file of the theme is that
// file once more. A problem when the folder is none, cannot be read or holds more than a theme may,
// when nothing of it is left, when a link leads to a folder or out of the theme, when its name or a
// name in it cannot be a file's on the phone, or a field is wrong.
[[nodiscard]] desktop::Result<PackagePlan> planPackage(const std::string& folder,
                                                       const ControlValues& given);

// "com.example.sunset_1.0_iphoneos-arm.deb".
[[nodiscard]] std::string fileNameOf(const ControlValues& control);

// Whether a package of the theme in the folder may be written there: not into the theme, where it
// would stay as a part of it. "-" is standard output.
[[nodiscard]] desktop::Result<void> checkPackagePlace(const std::string& folder,
                                                      const std::string& path);

// Makes its folder when that is missing, writes it beside its place and puts it there as a whole,
// on to what is there only when that may be replaced. `path` "-" is standard output.
[[nodiscard]] desktop::Result<void> writePlannedPackage(
    const PackagePlan& plan, const std::string& path, bool replaces,
    const std::function<void(std::size_t files)>& progress);

}  // namespace velmoranth::makers
