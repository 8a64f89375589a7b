#include "cli/settings_device.h"

#include "cli/linked_themes.h"
#include "cli/messages.h"
#include "desktop/files/file_tree.h"
#include "desktop/files/replacement.h"
#include "desktop/plist/property_lists.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

namespace velmoranth::cli {

using desktop::Descriptor;
using desktop::DeviceRoot;
using desktop::Problem;
using desktop::Result;

namespace {

// For another run of the command to end, which takes milliseconds.
constexpr std::chrono::seconds kLongestWait{5};
constexpr std::chrono::milliseconds kBetweenTries{20};

}  // namespace

std::string onThisMachine(const DeviceRoot& root, std::string_view devicePath) {
    std::string folder = root.hostFolder();
    while (folder.size() > 1 && folder.back() == '/') {
        folder.pop_back();
    }
    return (folder == "/" ? "" : folder) + std::string(devicePath);
}

Result<DeviceRef> openSettingsDevice(const std::string& folder) {
    auto root = openWithLinkedThemes(folder);
    if (!root) {
        return root;
    }
    const Descriptor preferences((*root)->openFile(kLiveFolder, O_PATH | O_DIRECTORY));
    if (!preferences.isOpen()) {
        if (errno != ENOENT && errno != ENOTDIR) {
            return tl::unexpected(
                desktop::problemOfErrno(errno, onThisMachine(**root, kLiveFolder)));
        }
        return tl::unexpected(Problem{"this is no device: it has no folder " +
                                          std::string(kLiveFolder).substr(1) +
                                          "; velmoranth device init makes one",
                                      folder});
    }
    return root;
}

ItemKind kindAt(const DeviceRoot& root, const std::string& devicePath) {
    const desktop::FolderEntry place = root.openParent(devicePath);
    struct stat status{};
    if (!place.folder.isOpen() ||
        ::fstatat(place.folder.get(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return ItemKind::none;
    }
    return S_ISREG(status.st_mode)   ? ItemKind::file
           : S_ISDIR(status.st_mode) ? ItemKind::folder
           : S_ISLNK(status.st_mode) ? ItemKind::link
                                     : ItemKind::other;
}

std::vector<std::string> namesIn(const DeviceRoot& root, const std::string& devicePath) {
    std::vector<std::string> names;
    const Descriptor folder(root.openFile(devicePath, O_RDONLY | O_DIRECTORY));
    if (folder.isOpen()) {  // of one that cannot be read to its end, what could be
        static_cast<void>(desktop::namesIn(folder.get(), names));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> savedNames(const DeviceRoot& root) {
    const std::string before = " ";
    const std::string behind = before + core::kPreferencesFileName;
    std::vector<std::string> names;
    for (const std::string& file : namesIn(root, kSavedFolder)) {
        if (file.size() <= before.size() + behind.size() || !file.starts_with(before) ||
            !file.ends_with(behind)) {
            continue;
        }
        const ItemKind kind = kindAt(root, std::string(kSavedFolder) + "/" + file);
        if (kind == ItemKind::file || kind == ItemKind::link) {
            names.push_back(
                file.substr(before.size(), file.size() - before.size() - behind.size()));
        }
    }
    std::sort(names.begin(), names.end());  // by the names alone
    return names;
}

Result<std::optional<PreferencesFile>> readPreferencesFile(const DeviceRoot& root,
                                                           const std::string& devicePath) {
    const std::string path = onThisMachine(root, devicePath);
    // A link that leads nowhere is no file, as it is none to the system.
    const Descriptor item(root.openFile(devicePath, O_PATH));
    if (!item.isOpen()) {
        return errno == ENOENT ? Result<std::optional<PreferencesFile>>(std::nullopt)
                               : tl::unexpected(desktop::problemOfErrno(errno, path));
    }
    auto bytes = root.readFile(devicePath, desktop::kMaxPropertyListBytes);
    if (!bytes) {
        bytes.error().path = path;
        return tl::unexpected(std::move(bytes.error()));
    }
    const auto contents = desktop::parsePropertyList(*bytes);
    if (!contents) {
        Problem problem = contents.error();
        problem.path = path;
        return tl::unexpected(std::move(problem));
    }
    const auto* const dictionary = contents->as<platform::Dictionary>();
    if (dictionary == nullptr) {
        return tl::unexpected(
            Problem{"preferences are a dictionary, and this property list is none", path});
    }
    return PreferencesFile{std::move(*bytes), *dictionary};
}

Result<WrittenPreferences> writtenPreferences(const platform::Dictionary& contents) {
    WrittenPreferences written{desktop::writeXmlPropertyList(contents), {}};
    if (written.bytes.size() > desktop::kMaxPropertyListBytes) {
        return tl::unexpected(
            Problem{"the preferences would be larger than " +
                    std::to_string(desktop::kMaxPropertyListBytes / (1024 * 1024)) +
                    " MiB as they are written"});
    }
    const auto again = desktop::parsePropertyList(written.bytes);
    const auto* const dictionary = again ? again->as<platform::Dictionary>() : nullptr;
    if (dictionary == nullptr) {
        return tl::unexpected(
            Problem{"the preferences hold what cannot be written so that it is "
                    "read again" +
                    (again ? "" : ": " + again.error().message)});
    }
    for (const auto& [key, value] : contents) {
        const platform::PropertyList* const same = platform::objectForKey(*dictionary, key);
        if (same == nullptr || !(*same == value)) {
            written.inexact.push_back(key);
        }
    }
    return written;
}

Result<void> replaceLivePreferences(const std::shared_ptr<const DeviceRoot>& root,
                                    const platform::Data& bytes, const desktop::FileCalls& calls) {
    const ItemKind kind = kindAt(*root, kLivePreferences);
    if (kind == ItemKind::folder || kind == ItemKind::other) {
        return tl::unexpected(Problem{"the preferences cannot be written: this is no file",
                                      onThisMachine(*root, kLivePreferences)});
    }
    desktop::FolderEntry place = root->openParentToChange(kLivePreferences);
    const int error = place.folder.isOpen()
                          ? desktop::replaceFile(calls, std::move(place.folder), place.name, bytes)
                          : errno;
    if (error != 0) {
        const Problem cause = desktop::problemOfErrno(error, {});
        return tl::unexpected(
            Problem{"the preferences cannot be written and are as they were: " + cause.message,
                    onThisMachine(*root, kLivePreferences)});
    }
    // The file is on the disk; its name is when the folder is. Some file systems cannot be asked.
    const Descriptor folder(root->openFile(kLiveFolder, O_RDONLY | O_DIRECTORY));
    if (folder.isOpen() && calls.fsync(folder.get()) != 0 && errno != EINVAL) {
        const Problem cause = desktop::problemOfErrno(errno, {});
        return tl::unexpected(
            Problem{"the preferences are written, but may be the old ones again "
                    "after a power failure: " +
                        cause.message,
                    onThisMachine(*root, kLivePreferences)});
    }
    return {};
}

Result<Descriptor> lockPreferences(const DeviceRoot& root) {
    Descriptor folder(root.openFile(kLiveFolder, O_RDONLY | O_DIRECTORY));
    if (!folder.isOpen()) {
        return tl::unexpected(desktop::problemOfErrno(errno, onThisMachine(root, kLiveFolder)));
    }
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    while (::flock(folder.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return tl::unexpected(desktop::problemOfErrno(errno, onThisMachine(root, kLiveFolder)));
        }
        if (std::chrono::steady_clock::now() >= end) {
            return tl::unexpected(
                Problem{"another program has been changing the settings for seconds; try again",
                        onThisMachine(root, kLiveFolder)});
        }
        std::this_thread::sleep_for(kBetweenTries);
    }
    return folder;
}

}  // namespace velmoranth::cli
