#include "makers/conversion/theme_input.h"

#include "desktop/files/descriptor.h"

#include "makers/archives/unpack.h"
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

// Into a folder that is named as the archive is, since a theme may begin right there.
Result<std::vector<FoundTheme>> unpackThemes(ThemeInput& input, Purpose purpose) {
    auto temporary = desktop::makeTemporaryFolder();
    if (!temporary) {
        return tl::unexpected(std::move(temporary.error()));
    }
    input.unpacked = std::move(*temporary);
    const std::string folder = input.unpacked->path() + "/" + nameWithoutEnding(input.path);
    if (::mkdir(folder.c_str(), 0700) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, folder));
    }
    auto unpacked = unpackArchive(input.path, folder);
    if (!unpacked) {
        return tl::unexpected(std::move(unpacked.error()));
    }
    input.isPackage = unpacked->kind == ArchiveKind::package;
    return input.isPackage ? findThemesInPackage(folder, purpose == Purpose::show)
                           : findThemesIn(folder);
}

std::string whyNone(const ThemeInput& input) {
    return input.isPackage ? "there is no theme in the package: nothing lies below Library/Themes"
                           : "there is no theme in it: no folder IconBundles, Bundles or UIImages, "
                             "and no pictures named for apps";
}

}  // namespace

bool isFile(const std::string& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

Result<ThemeInput> openInput(const std::string& path, Purpose purpose) {
    ThemeInput input{.path = path};
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, path));
    }
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
        return tl::unexpected(Problem{"it is neither a folder nor an archive", path});
    }
    input.isArchive = S_ISREG(status.st_mode);
    auto themes = input.isArchive ? unpackThemes(input, purpose) : findThemesIn(path);
    if (!themes) {
        // Where it was unpacked means nothing to the user.
        if (input.isArchive) {
            themes.error().path = path;
        }
        return tl::unexpected(std::move(themes.error()));
    }
    if (themes->empty()) {
        return tl::unexpected(Problem{whyNone(input), path});
    }
    input.themes = std::move(*themes);
    return input;
}

}  // namespace velmoranth::makers
