#include "cli/output_file.h"

#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"
#include "desktop/files/replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    const std::string folder = folderOf(target(path));
    if (path.ends_with('/') || ::stat(folder.c_str(), &status) != 0) {
        return cannotWrite(ENOENT, path, what);
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
    Descriptor folder(::open(folderOf(place).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    const int error =
        folder.isOpen()
            ? desktop::replaceFile(desktop::FileCalls(), std::move(folder), place.filename(), bytes)
            : errno;
    return error == 0 ? Result<void>() : cannotWrite(error, place, what);
}

}  // namespace velmoranth::cli
