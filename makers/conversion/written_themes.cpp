#include "makers/conversion/written_themes.h"

#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"

#include "makers/conversion/image_rules.h"
#include "makers/conversion/names.h"
#include <fcntl.h>
#include <stdio.h>   // NOLINT(modernize-deprecated-headers): renameat2() is GNU's
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp() is POSIX's
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;
using platform::Data;

namespace {

namespace fs = std::filesystem;

tl::unexpected<Problem> cannotWrite(int error, const std::string& path) {
    Problem problem = desktop::problemOfErrno(error, path);
    problem.message = "the theme cannot be written: " + problem.message;
    return tl::unexpected(std::move(problem));
}

Result<Data> made(const MadeFile& file, const std::string& folder) {
    if (file.work == Work::write) {
        return file.bytes;
    }
    auto bytes = readWhole(folder + "/" + file.source);
    if (!bytes || file.work == Work::copy) {
        return bytes;
    }
    if (file.work == Work::shrink) {
        return shrunk(*bytes);
    }
    auto mask = grayMaskOf(*bytes);
    if (!mask) {
        return tl::unexpected(mask.error());
    }
    return *mask ? std::move(**mask) : std::move(*bytes);
}

Result<void> writeNew(const std::string& path, const std::string& shownPath, const Data& bytes) {
    const desktop::Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    const int error = file.isOpen() ? desktop::writeWhole(desktop::FileCalls(), file.get(),
                                                          bytes.data(), bytes.size())
                                    : errno;
    return error == 0 ? Result<void>() : cannotWrite(error, shownPath);
}

}  // namespace

Result<void> checkThemePlace(const std::string& path, bool replaces) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    if (fs::exists(status) && !replaces) {
        return tl::unexpected(Problem{"it is there already; --force replaces it", path});
    }
    if (fs::exists(status) && !fs::is_directory(status)) {
        return tl::unexpected(Problem{"it is there already, and is no folder", path});
    }
    return {};
}

std::optional<std::size_t> filesReplacedAt(const std::string& path) {
    std::error_code error;
    if (!fs::is_directory(fs::symlink_status(path, error))) {
        return std::nullopt;
    }
    std::size_t count = 0;
    const fs::recursive_directory_iterator end;
    for (fs::recursive_directory_iterator entry(path, error); !error && entry != end;
         entry.increment(error)) {
        const fs::file_status status = entry->symlink_status(error);
        count += fs::is_directory(status) ? 0 : 1;
    }
    return count;
}

WrittenThemes::WrittenThemes(std::string output, std::unique_ptr<desktop::RemovedIfEmpty> newOutput,
                             std::unique_ptr<desktop::RemovedAtEnd> folder)
    : output_(std::move(output)), newOutput_(std::move(newOutput)), folder_(std::move(folder)) {}

Result<WrittenThemes> WrittenThemes::create(const std::string& output) {
    const desktop::SignalsHeld held;  // it is to be removed from the moment when it is there
    std::error_code error;
    std::unique_ptr<desktop::RemovedIfEmpty> newOutput;
    if (fs::create_directories(output, error)) {
        newOutput = std::make_unique<desktop::RemovedIfEmpty>(output);
    }
    if (error || !fs::is_directory(output, error)) {
        return cannotWrite(error ? error.value() : ENOTDIR, output);
    }
    auto folder = desktop::makeTemporaryFolderIn(output);
    if (!folder) {
        folder.error().path = output;
        return tl::unexpected(std::move(folder.error()));
    }
    return WrittenThemes(output, std::move(newOutput), std::move(*folder));
}

Result<void> WrittenThemes::write(const std::string& name, const std::string& folder,
                                  const Plan& plan, const std::function<void()>& written) {
    const fs::path theme = fs::path(folder_->path()) / name;
    const fs::path shownTheme = fs::path(output_) / name;
    if (::mkdir(theme.c_str(), 0777) != 0) {
        return cannotWrite(errno, shownTheme);
    }
    for (const auto& [target, file] : plan.files) {
        const std::string path = theme / target;
        const std::string shownPath = shownTheme / target;
        std::error_code error;
        fs::create_directories(std::string(folderOf(path)), error);
        if (error) {
            return cannotWrite(error.value(), shownPath);
        }
        auto bytes = made(file, folder);
        if (!bytes) {
            return tl::unexpected(std::move(bytes.error()));
        }
        if (auto done = writeNew(path, shownPath, *bytes); !done) {
            return done;
        }
        written();
    }
    names_.push_back(name);
    return {};
}

Result<void> WrittenThemes::placeOne(const std::string& name, bool replaces) const {
    const std::string from = folder_->path() + "/" + name;
    const std::string to = output_ + "/" + name;
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    if (errno != EEXIST || !replaces) {
        return cannotWrite(errno, to);
    }
    // What was there goes with the folder beside.
    return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_EXCHANGE) == 0
               ? Result<void>()
               : cannotWrite(errno, to);
}

Result<void> WrittenThemes::place(bool replaces) {
    const desktop::SignalsHeld held;
    for (const std::string& name : names_) {
        if (auto placed = placeOne(name, replaces); !placed) {
            return placed;
        }
    }
    return {};
}

}  // namespace velmoranth::makers
