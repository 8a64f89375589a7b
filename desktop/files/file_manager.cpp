#include "desktop/files/file_manager.h"

#include "desktop/files/file_errors.h"
#include "desktop/files/file_tree.h"
#include "desktop/files/replacement.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace velmoranth::desktop {
namespace {

constexpr unsigned kNewFolderMode = 0777;

bool statOf(const FolderEntry& entry, struct stat& status) {
    return ::fstatat(entry.folder.get(), entry.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

// The failure that an errno is; 0 is none.
platform::Failure failureOf(FileOperation operation, int error, const std::string& path,
                            const std::string& destination = {}) {
    return error == 0 ? platform::Failure() : fileError(operation, error, path, destination);
}

}  // namespace

DesktopFileManager::DesktopFileManager(std::shared_ptr<const DeviceRoot> root, FileCalls calls)
    : root_(std::move(root)), calls_(std::move(calls)) {}

bool DesktopFileManager::fileExistsAtPath(const std::string& path) {
    return Descriptor(root_->openFile(path, O_PATH)).isOpen();
}

platform::FileExistence DesktopFileManager::fileExistsAtPathIsDirectory(const std::string& path) {
    const Descriptor item(root_->openFile(path, O_PATH));
    struct stat status{};
    if (!item.isOpen() || ::fstat(item.get(), &status) != 0) {
        return {};
    }
    return {.exists = true, .isDirectory = S_ISDIR(status.st_mode)};
}

platform::Failure DesktopFileManager::setPosixPermissionsOfItemAtPath(unsigned mode,
                                                                      const std::string& path) {
    return failureOf(FileOperation::write, root_->changeMode(path, mode), path);
}

platform::Failure DesktopFileManager::copyItemAtPathToPath(const std::string& source,
                                                           const std::string& destination) {
    const FolderEntry from = root_->openParent(source);
    struct stat status{};
    if (!from.folder.isOpen() || !statOf(from, status)) {
        return fileError(FileOperation::read, errno, source);
    }
    const FolderEntry to = placeFor(destination);
    const int error = to.folder.isOpen()
                          ? copyTree(calls_, from.folder.get(), from.name, to.folder.get(), to.name)
                          : errno;
    return failureOf(FileOperation::copy, error, source, destination);
}

platform::Failure DesktopFileManager::moveItemAtPathToPath(const std::string& source,
                                                           const std::string& destination) {
    const FolderEntry to = placeFor(destination);
    int error = to.folder.isOpen() ? 0 : errno;
    if (error == 0) {
        const FolderEntry from = root_->openParentToChange(source);
        error = from.folder.isOpen() ? moveBetween(from, to) : errno;
    }
    return failureOf(FileOperation::move, error, source, destination);
}

FolderEntry DesktopFileManager::placeFor(const std::string& path) const {
    const FolderEntry there = root_->openParent(path);
    struct stat status{};
    if (!there.folder.isOpen() || statOf(there, status)) {
        errno = there.folder.isOpen() ? EEXIST : errno;
        return {Descriptor(), there.name};
    }
    return root_->openParentToChange(path);
}

int DesktopFileManager::moveBetween(const FolderEntry& from, const FolderEntry& to) const {
    if (calls_.renameNoReplace(from.folder.get(), from.name.c_str(), to.folder.get(),
                               to.name.c_str()) == 0) {
        return 0;
    }
    if (errno != EXDEV) {
        return errno;
    }
    const int error = copyTree(calls_, from.folder.get(), from.name, to.folder.get(), to.name);
    if (error != 0) {
        // Something else's item at the place is not ours to clean up.
        if (error != EEXIST) {
            static_cast<void>(removeTree(to.folder.get(), to.name));
        }
        return error;
    }
    return removeTree(from.folder.get(), from.name);
}

platform::Failure DesktopFileManager::createDirectoryAtPathWithIntermediateDirectories(
    const std::string& path) {
    // Every folder on the way, then the last one.
    for (std::size_t slash = path.find('/'); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        const std::string above = path.substr(0, slash);
        const int error = above.empty() ? 0 : makeFolder(above);
        if (error == EEXIST) {
            // A file on the way is named itself.
            return fileError(FileOperation::write, ENOTDIR, above);
        }
        if (error != 0) {
            return fileError(FileOperation::write, error, path);
        }
    }
    return failureOf(FileOperation::write, makeFolder(path), path);
}

int DesktopFileManager::makeFolder(const std::string& path) {
    const int error = root_->makeFolder(path, kNewFolderMode);
    return error == EEXIST && fileExistsAtPathIsDirectory(path).isDirectory ? 0 : error;
}

bool DesktopFileManager::createFileAtPathContents(const std::string& path,
                                                  const platform::Data& contents) {
    return writeToFileAtomically(contents, path);
}

bool DesktopFileManager::writeToFileAtomically(const platform::Data& contents,
                                               const std::string& path) {
    if (path.empty() || path.back() == '/') {
        return false;
    }
    FolderEntry place = root_->openParentToChange(path);
    return place.folder.isOpen() && place.name != "." &&
           replaceFile(calls_, std::move(place.folder), place.name, contents) == 0;
}

std::optional<platform::Data> DesktopFileManager::dataWithContentsOfFile(const std::string& path) {
    auto data = root_->readFile(path, kMaxDataBytes);
    return data ? std::optional<platform::Data>(std::move(*data)) : std::nullopt;
}

platform::Failure DesktopFileManager::removeItemAtPath(const std::string& path) {
    const FolderEntry item = root_->openParentToChange(path);
    const int error = item.folder.isOpen() ? removeTree(item.folder.get(), item.name) : errno;
    // The platform reports a folder that will not get empty as a missing right.
    return failureOf(FileOperation::remove, error == ENOTEMPTY ? EACCES : error, path);
}

}  // namespace velmoranth::desktop
