// For the tests of the settings file manager: the alert's lines in the journal, and a device whose
// file operations can be made to fail.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_manager.h"
#include "filemanager/velmoranth_file_manager.h"
#include "tests/support/replaced_services.h"
#include "tests/support/test_device.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::filemanager {

using Lines = std::vector<std::string>;

inline const std::string kPreferencesFile = "com.qor.velmoranthprefs.plist";
inline const std::string kLive = "/User/Library/Preferences/" + kPreferencesFile;
inline const std::string kSavedFolder = "/User/Library/VelMoranth/UserSettings";

[[nodiscard]] inline Lines joined(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

inline const std::string kAlert =
    "+[UIAlertController alertControllerWithTitle:message:preferredStyle:] ";

[[nodiscard]] inline std::string alertLine(const std::string& message) {
    return kAlert + "\"ERROR\" " + record::words(message) + " 1";
}

// What an alert with that message writes.
[[nodiscard]] inline Lines alertLines(const std::string& message,
                                      const std::string& presenter = "root") {
    return {"-[UIApplication keyWindow]", alertLine(message),
            "+[UIAlertAction actionWithTitle:style:handler:] \"OK\" 0 set",
            "-[UIAlertController addAction:] UIAlertController UIAlertAction",
            "-[UIViewController presentViewController:animated:completion:] " + presenter +
                " UIAlertController YES"};
}

// Every operation that can fail does, with the error it was given.
class FailingFiles final : public platform::FileManager {
  public:
    explicit FailingFiles(std::string description)
        : error_{.localizedDescription = std::move(description)} {}

    bool fileExistsAtPath(const std::string& /*path*/) override { return false; }

    platform::FileExistence fileExistsAtPathIsDirectory(const std::string& /*path*/) override {
        return {};
    }

    platform::Failure setPosixPermissionsOfItemAtPath(unsigned /*mode*/,
                                                      const std::string& /*path*/) override {
        return error_;
    }

    platform::Failure copyItemAtPathToPath(const std::string& /*source*/,
                                           const std::string& /*destination*/) override {
        return error_;
    }

    platform::Failure moveItemAtPathToPath(const std::string& /*source*/,
                                           const std::string& /*destination*/) override {
        return error_;
    }

    platform::Failure createDirectoryAtPathWithIntermediateDirectories(
        const std::string& /*path*/) override {
        return error_;
    }

    bool createFileAtPathContents(const std::string& /*path*/,
                                  const platform::Data& /*contents*/) override {
        return false;
    }

    bool writeToFileAtomically(const platform::Data& /*contents*/,
                               const std::string& /*path*/) override {
        return false;
    }

    platform::Failure removeItemAtPath(const std::string& /*path*/) override { return error_; }

    std::optional<platform::Data> dataWithContentsOfFile(const std::string& /*path*/) override {
        return std::nullopt;
    }

  private:
    platform::Error error_;
};

class PanelFiles : public ::testing::Test {
  protected:
    // The device's own file operations, over those system calls.
    void use(desktop::FileCalls calls) {
        use(std::make_unique<desktop::DesktopFileManager>(
            desktop::DeviceRoot::open(device.hostFolder()).value(), std::move(calls)));
    }

    void use(std::unique_ptr<platform::FileManager> files) {
        replacement = std::move(files);
        device.useServices({.fileManager = replacement.get()});
    }

    // Nothing can be written into a file.
    void fillDisk() {
        desktop::FileCalls calls;
        calls.write = [](int, const void*, std::size_t) -> ssize_t {
            errno = ENOSPC;
            return -1;
        };
        use(std::move(calls));
    }

    // Files can be read but none can be made, moved or removed.
    void forbidChanges(int error) {
        desktop::FileCalls calls;
        calls.openat = [error, real = calls.openat](int folder, const char* name, int flags,
                                                    unsigned mode) {
            if ((flags & O_CREAT) == 0) {
                return real(folder, name, flags, mode);
            }
            errno = error;
            return -1;
        };
        calls.renameNoReplace = [error](int, const char*, int, const char*) {
            errno = error;
            return -1;
        };
        use(std::move(calls));
    }

    void setMode(const std::string& path, unsigned mode) const {
        ASSERT_EQ(::chmod((device.hostFolder() + path).c_str(), mode), 0);
    }

    void link(const std::string& path, const std::string& target) const {
        std::filesystem::create_symlink(target, device.hostFolder() + path);
    }

    // Also of a link that leads nowhere.
    [[nodiscard]] bool isThere(const std::string& path) const {
        return std::filesystem::exists(std::filesystem::symlink_status(device.hostFolder() + path));
    }

    // The names in a folder, sorted.
    [[nodiscard]] Lines names(const std::string& folder) const {
        Lines found;
        for (const auto& entry :
             std::filesystem::directory_iterator(device.hostFolder() + folder)) {
            found.push_back(entry.path().filename().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    tests::TestDevice device;
    std::unique_ptr<platform::FileManager> replacement;
};

}  // namespace velmoranth::filemanager
