// What a user gives as a theme: a folder, a package or an archive, each with one theme or several.
#pragma once

#include "desktop/files/cleanup.h"
#include "desktop/result/result.h"

#include "makers/conversion/found_themes.h"

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::makers {

struct ThemeInput {
    std::string path;  // as the user gave it
    bool isArchive = false;
    bool isPackage = false;
    std::string warning = {};  // a line that names the input, when something about it is odd
    std::vector<FoundTheme> themes = {};
    // What an archive was unpacked into; gone with this object.
    std::unique_ptr<desktop::RemovedAtEnd> unpacked = {};
};

// Whether the path leads to a plain file, or is "-": an archive or no theme at all.
[[nodiscard]] bool isFile(const std::string& path);

// What a user is told of a path that leads nowhere, for the error of looking there.
[[nodiscard]] desktop::Problem notThere(int error, const std::string& path);

enum class Purpose {
    convert,  // themes are where their own folders begin
    show,     // of a package, each folder below Library/Themes, as a device has it
};

// "-" is a package or an archive on standard input, which is kept in a temporary file for as long
// as it takes to unpack it. Fails, with a line that names the input, when there is no such path, it
// cannot be read or unpacked, or there is no theme in it.
[[nodiscard]] desktop::Result<ThemeInput> openInput(const std::string& path, Purpose purpose);

}  // namespace velmoranth::makers
