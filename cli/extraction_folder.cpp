#include "cli/extraction_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Descriptor;
using desktop::Problem;
using desktop::Result;

namespace {

constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// What goes wrong with one file here goes wrong with the next one.
constexpr std::array<int, 7> kConcernAll{EACCES, EDQUOT, EFBIG, EIO, ENOSPC, EROFS, ESTALE};

tl::unexpected<Unwritten> problem(std::string_view what, int error, const std::string& path) {
    Problem found = desktop::problemOfErrno(error, path);
    found.message = std::string(what) + ": " + found.message;
    const bool concernsAll = std::ranges::find(kConcernAll, error) != kConcernAll.end();
    return tl::unexpected(Unwritten{concernsAll, std::move(found)});
}

tl::unexpected<Unwritten> cannotMake(int error, const std::string& path) {
    return problem("the folder cannot be made", error, path);
}

tl::unexpected<Unwritten> cannotWrite(int error, const std::string& path) {
    return problem("the picture cannot be written", error, path);
}

bool isLink(int parent, const std::string& name) {
    struct stat status{};
    return ::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISLNK(status.st_mode);
}

// The folder `name` in `parent`, made when it is missing. `path` is for the problem.
Written<Descriptor> openFolder(int parent, const std::string& name, const std::string& path) {
    Descriptor folder(::openat(parent, name.c_str(), kOpenFolder | O_NOFOLLOW));
    if (!folder.isOpen() && errno == ENOENT) {
        if (::mkdirat(parent, name.c_str(), 0777) != 0 && errno != EEXIST) {
            return cannotMake(errno, path);
        }
        folder = Descriptor(::openat(parent, name.c_str(), kOpenFolder | O_NOFOLLOW));
    }
    if (folder.isOpen()) {
        return folder;
    }
    const int error = errno;
    if (isLink(parent, name)) {
        return tl::unexpected(Unwritten{false,
                                        {"the folder is a link, which may lead anywhere: remove it "
                                         "or choose another OUTPUT-DIR",
                                         path}});
    }
    return cannotMake(error, path);
}

// The folder that `below` leads to from `start`.
Written<Descriptor> openFolders(const Descriptor& start, std::string_view below, std::string path) {
    Descriptor folder(::fcntl(start.get(), F_DUPFD_CLOEXEC, 0));
    if (!folder.isOpen()) {
        return cannotMake(errno, path);
    }
    while (!below.empty()) {
        const std::string name(below.substr(0, below.find('/')));
        below.remove_prefix(std::min(name.size() + 1, below.size()));
        if (name.empty()) {
            continue;
        }
        path += "/" + name;
        Written<Descriptor> next = openFolder(folder.get(), name, path);
        if (!next) {
            return next;
        }
        folder = std::move(*next);
    }
    return folder;
}

}  // namespace

std::string pathBelow(const std::string& folder, const std::string& path) {
    const std::string slash = folder.ends_with('/') ? "" : "/";
    return path.empty() ? folder : folder + slash + path;
}

Written<void> UnplacedFile::place() {
    const int error = replacement_.place(name_);
    return error == 0 ? Written<void>() : cannotWrite(error, path_);
}

ExtractionFolder::ExtractionFolder(Descriptor folder, std::string path, desktop::FileCalls calls)
    : folder_(std::move(folder)), path_(std::move(path)), calls_(std::move(calls)) {}

Result<std::unique_ptr<ExtractionFolder>> ExtractionFolder::create(const std::string& output,
                                                                   const std::string& below,
                                                                   desktop::FileCalls calls) {
    std::error_code error;
    std::filesystem::create_directories(output, error);
    const Descriptor start(::open(output.c_str(), kOpenFolder));
    if (!start.isOpen()) {
        return tl::unexpected(cannotMake(error ? error.value() : errno, output).value().problem);
    }
    Written<Descriptor> folder = openFolders(start, below, output);
    if (!folder) {
        return tl::unexpected(std::move(folder.error().problem));
    }
    return std::unique_ptr<ExtractionFolder>(
        new ExtractionFolder(std::move(*folder), pathBelow(output, below), std::move(calls)));
}

Written<UnplacedFile> ExtractionFolder::write(const std::string& path,
                                              std::span<const std::uint8_t> bytes) {
    const std::size_t slash = path.rfind('/');
    const std::string below = slash == std::string::npos ? "" : path.substr(0, slash);
    const std::string shownPath = pathBelow(path_, path);
    Written<Descriptor> folder = openFolders(folder_, below, path_);
    if (!folder) {
        return tl::unexpected(std::move(folder.error()));
    }
    UnplacedFile unplaced({calls_, std::move(*folder)},
                          slash == std::string::npos ? path : path.substr(slash + 1), shownPath);
    if (const int error = unplaced.replacement_.write(bytes)) {
        return cannotWrite(error, shownPath);
    }
    return unplaced;
}

}  // namespace velmoranth::cli
