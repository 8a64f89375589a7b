#include "cli/output_file.h"

#include "cli/messages.h"
#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"
#include "desktop/files/replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Descriptor;
using desktop::problemOfErrno;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

tl::unexpected<desktop::Problem> cannotWrite(int error, const std::string& path,
                                             std::string_view what) {
    desktop::Problem problem = problemOfErrno(error, path);
    problem.message = "the " + std::string(what) + " cannot be written: " + problem.message;
    return tl::unexpected(std::move(problem));
}

// Where links lead, whether or not there is a file yet. Each is followed by hand, since the system
// resolves only what exists.
fs::path target(fs::path path) {
    constexpr int kMostLinks = 40;  // as the kernel has it
    std::error_code error;
    for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

std::string folderOf(const std::string& path) {
    const std::string folder = fs::path(path).parent_path();
    return folder.empty() ? "." : folder;
}

Result<void> writeAll(int descriptor, const platform::Data& bytes, const std::string& path,
                      std::string_view what) {
    const int error =
        desktop::writeWhole(desktop::FileCalls(), descriptor, bytes.data(), bytes.size());
    if (error != 0) {
        return cannotWrite(error, path, what);
    }
    return {};
}

}  // namespace

std::string whyOtherFormat(const std::string& path, FileFormat format) {
    constexpr std::array<std::string_view, 22> kFormats{
        ".png",  ".jpg",  ".jpeg", ".gif", ".tif",  ".tiff", ".bmp", ".webp",
        ".heic", ".avif", ".svg",  ".pdf", ".ico",  ".wav",  ".mp3", ".m4a",
        ".caf",  ".aiff", ".aif",  ".ogg", ".opus", ".flac"};
    std::string ending = fs::path(path).extension();
    std::ranges::transform(ending, ending.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const bool isPng = format == FileFormat::png;
    if (ending == (isPng ? ".png" : ".wav") ||
        std::ranges::find(kFormats, ending) == kFormats.end()) {
        return {};
    }
    return std::string("--output writes a ") + (isPng ? "PNG" : "WAV") + " file, and the name " +
           shown(path) + " is another format's";
}

Result<void> checkOutputFile(const std::string& path, std::string_view what) {
    if (path == "-") {
        return {};
    }
    struct stat status{};
    if (::stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) {
            return cannotWrite(EISDIR, path, what);
        }
        if (!S_ISREG(status.st_mode)) {
            return {};
        }
    } else if (errno != ENOENT) {
        return cannotWrite(errno, path, what);
    }
    if (path.ends_with('/')) {
        return cannotWrite(ENOENT, path, what);
    }
    std::string folder = folderOf(target(path));
    while (::stat(folder.c_str(), &status) != 0) {  // it is made in the nearest one that is there
        const int error = errno;
        if (error != ENOENT || ::lstat(folder.c_str(), &status) == 0) {
            return cannotWrite(error, path, what);
        }
        folder = folderOf(folder);
    }
    if (!S_ISDIR(status.st_mode)) {
        return cannotWrite(ENOTDIR, path, what);
    }
    if (::access(folder.c_str(), W_OK | X_OK) != 0) {
        return cannotWrite(errno, path, what);
    }
    return {};
}

Result<void> writeOutputFile(const platform::Data& bytes, const std::string& path,
                             std::string_view what) {
    if (path == "-") {
        return writeAll(STDOUT_FILENO, bytes, "standard output", what);
    }
    struct stat status{};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        const Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
        return file.isOpen() ? writeAll(file.get(), bytes, path, what)
                             : cannotWrite(errno, path, what);
    }
    const fs::path place = target(path);
    std::error_code error;
    fs::create_directories(folderOf(place), error);
    if (error && !fs::is_directory(folderOf(place))) {
        return cannotWrite(error.value(), path, what);
    }
    Descriptor folder(::open(folderOf(place).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    const int failed =
        folder.isOpen()
            ? desktop::replaceFile(desktop::FileCalls(), std::move(folder), place.filename(), bytes)
            : errno;
    return failed == 0 ? Result<void>() : cannotWrite(failed, place, what);
}

}  // namespace velmoranth::cli
