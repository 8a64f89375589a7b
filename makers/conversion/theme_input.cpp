#include "makers/conversion/theme_input.h"

#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"

#include "makers/archives/unpack.h"
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

constexpr const char* kStandardInput = "-";
constexpr const char* kStandardInputName = "standard input";

// As a message calls it.
std::string nameOf(const ThemeInput& input) {
    return input.path == kStandardInput ? kStandardInputName : input.path;
}

// What comes on standard input, in a file of the folder.
Result<std::string> keepStandardInput(const std::string& folder) {
    constexpr std::uint64_t kMost = ArchiveLimits().bytes;  // none that is larger could be unpacked
    constexpr std::size_t kPiece = std::size_t{256} * 1024;
    std::string path = folder + "/archive";
    const desktop::Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        return tl::unexpected(desktop::problemOfErrno(errno, path));
    }
    std::vector<std::uint8_t> piece(kPiece);
    std::uint64_t size = 0;
    while (true) {
        const ssize_t count = ::read(STDIN_FILENO, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return tl::unexpected(desktop::problemOfErrno(errno, kStandardInputName));
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::uint64_t>(count);
        if (size > kMost) {
            return tl::unexpected(Problem{"it holds more than " + std::to_string(kMost) + " bytes",
                                          kStandardInputName});
        }
        const int error = desktop::writeWhole(desktop::FileCalls(), file.get(), piece.data(),
                                              static_cast<std::size_t>(count));
        if (error != 0) {
            return tl::unexpected(desktop::problemOfErrno(error, path));
        }
    }
    if (size == 0) {
        return tl::unexpected(
            Problem{"nothing came, and a package or an archive was to come", kStandardInputName});
    }
    return path;
}

// Into a folder that is named as the archive is, since a theme may begin right there.
Result<std::vector<FoundTheme>> unpackThemes(ThemeInput& input, Purpose purpose) {
    auto temporary = desktop::makeTemporaryFolder();
    if (!temporary) {
        return tl::unexpected(std::move(temporary.error()));
    }
    input.unpacked = std::move(*temporary);
    std::string archive = input.path;
    std::string name = nameWithoutEnding(archive);
    if (input.path == kStandardInput) {
        auto kept = keepStandardInput(input.unpacked->path());
        if (!kept) {
            return tl::unexpected(std::move(kept.error()));
        }
        archive = std::move(*kept);
        name = "Theme";
    }
    const std::string folder = input.unpacked->path() + "/" + name;
    if (::mkdir(folder.c_str(), 0700) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, folder));
    }
    auto unpacked = unpackArchive(archive, folder);
    if (archive != input.path) {
        ::unlink(archive.c_str());
    }
    if (!unpacked) {
        return tl::unexpected(std::move(unpacked.error()));
    }
    input.isPackage = unpacked->kind == ArchiveKind::package;
    if (unpacked->lacksEndMark) {
        input.warning = toLine(Problem{std::string(kLacksEndMark), nameOf(input)});
    }
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
    return path == kStandardInput ||
           (::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode));
}

Problem notThere(int error, const std::string& path) {
    std::error_code isNoLink;
    const std::string end = std::filesystem::read_symlink(path, isNoLink);
    if (error == ELOOP) {
        return {"it is a link that leads round to itself; give what it should lead to", path};
    }
    if (error == ENOENT && !isNoLink) {
        return {"it is a link to " + end + ", which is not there; give what it should lead to",
                path};
    }
    if (error == ENOENT) {
        return {nameWithoutEnding(path) == path.substr(path.rfind('/') + 1)
                    ? "there is no such theme folder"
                    : "there is no such archive",
                path};
    }
    return desktop::problemOfErrno(error, path);
}

Result<ThemeInput> openInput(const std::string& path, Purpose purpose) {
    ThemeInput input{.path = path};
    struct stat status{};
    const bool isHere = path != kStandardInput;
    if (isHere && ::stat(path.c_str(), &status) != 0) {
        return tl::unexpected(notThere(errno, path));
    }
    if (isHere && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
        return tl::unexpected(Problem{"it is neither a folder nor an archive", path});
    }
    input.isArchive = !isHere || S_ISREG(status.st_mode);
    auto themes = input.isArchive ? unpackThemes(input, purpose) : findThemesIn(path);
    if (!themes) {
        // Where it was unpacked means nothing to the user.
        if (input.isArchive) {
            themes.error().path = nameOf(input);
        }
        return tl::unexpected(std::move(themes.error()));
    }
    if (themes->empty()) {
        return tl::unexpected(Problem{whyNone(input), nameOf(input)});
    }
    input.themes = std::move(*themes);
    return input;
}

}  // namespace velmoranth::makers
