#include "desktop/files/create_device_root.h"

#include "desktop/files/file_manager.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::desktop::create_device_root_test {
namespace {

using tests::TemporaryFolder;

TEST(CreateDeviceRoot, LaysOutThePhonesFoldersAndLinks) {
    const TemporaryFolder host;
    const auto root = createDeviceRoot(host / "device").value();
    DesktopFileManager files(root);
    for (const char* const folder :
         {"/Library/Themes", "/User/Library/Preferences", "/var/mobile/Library/Preferences",
          "/User/Library/VelMoranth/DefaultSettings", "/User/Library/VelMoranth/UserSettings",
          "/var/root", "/private/var/mobile", "/private/var/run/notifications"}) {
        EXPECT_TRUE(files.fileExistsAtPathIsDirectory(folder).isDirectory) << folder;
    }
    EXPECT_TRUE(files.createFileAtPathContents("/User/Library/Preferences/x", {'x'}));
    EXPECT_EQ(host.contents("device/private/var/mobile/Library/Preferences/x"), "x");
}

TEST(CreateDeviceRoot, TakesAnEmptyFolder) {
    const TemporaryFolder host;
    EXPECT_TRUE(createDeviceRoot(host.path()).has_value());
}

TEST(CreateDeviceRoot, RefusesAFolderThatIsNotEmpty) {
    const TemporaryFolder host;
    host.file(".hidden");
    EXPECT_EQ(toLine(createDeviceRoot(host.path()).error()),
              host.path() + ": the folder is not empty; a new device needs an empty one");
    EXPECT_EQ(host.count("."), 1);
    EXPECT_EQ(createDeviceRoot(host / "no/where").error().message, "no such file or directory");
    EXPECT_EQ(createDeviceRoot(host / ".hidden").error().message, "not a directory");
}

constexpr const char* kSounds = "/var/mobile/Library/VelMoranth/Sounds/";

// Two files to install: a short one and one in several pieces.
class InstalledFiles : public testing::Test {
  protected:
    InstalledFiles() {
        host.file("from/a.caf", "sound");
        host.file("from/b.aif", std::string(300'000, 'b'));
    }

    [[nodiscard]] std::vector<InstalledFile> files() const {
        return {{host / "from/a.caf", std::string(kSounds) + "a.caf"},
                {host / "from/b.aif", std::string(kSounds) + "b.aif"}};
    }

    // What the problem says, with what it is about as seen from the test's folder.
    [[nodiscard]] std::string problem(const FileCalls& calls = FileCalls(),
                                      const std::string& device = "device") const {
        const auto root = createDeviceRoot(host / device, files(), calls);
        const std::string line = root ? "none" : toLine(root.error());
        return line.starts_with(host / "") ? line.substr((host / "").size()) : line;
    }

    TemporaryFolder host;
};

TEST_F(InstalledFiles, HaveTheModesOfADeviceWhateverTheUmask) {
    std::filesystem::permissions(host / "from/a.caf", std::filesystem::perms(0700));
    const mode_t before = ::umask(0077);
    const auto root = createDeviceRoot(host / "device", files());
    ::umask(before);
    ASSERT_TRUE(root) << toLine(root.error());
    EXPECT_EQ(host.contents("device/User/Library/VelMoranth/Sounds/a.caf"), "sound");
    EXPECT_EQ(host.contents("device/User/Library/VelMoranth/Sounds/b.aif"),
              std::string(300'000, 'b'));
    EXPECT_EQ(host.names("device/User/Library/VelMoranth/Sounds"), "a.caf b.aif");
    EXPECT_EQ(host.mode("device"), 0700U) << "the device itself is the user's own folder";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(host / "device")) {
        const std::string name = entry.path().string().substr(host.path().size() + 1);
        if (!entry.is_symlink()) {
            EXPECT_EQ(host.mode(name), entry.is_directory() ? 0755U : 0644U) << name;
        }
    }
}

TEST_F(InstalledFiles, OneThatIsMissingIsNamedAndNothingIsMade) {
    std::filesystem::remove(host / "from/b.aif");
    EXPECT_EQ(problem(), "from/b.aif: no such file or directory");
    EXPECT_EQ(host.names("."), "from");
}

TEST_F(InstalledFiles, OneThatIsNoFileOrTooLargeIsRefused) {
    std::filesystem::remove(host / "from/a.caf");
    ASSERT_EQ(::mkfifo((host / "from/a.caf").c_str(), 0600), 0);
    EXPECT_EQ(problem(), "from/a.caf: this is no file");
    std::filesystem::remove(host / "from/a.caf");
    host.folder("from/a.caf");
    EXPECT_EQ(problem(), "from/a.caf: this is no file");
    std::filesystem::remove(host / "from/a.caf");
    host.file("from/a.caf");
    std::filesystem::resize_file(host / "from/a.caf", kMaxInstalledFileBytes + 1);
    EXPECT_EQ(problem(), "from/a.caf: the file is larger than 4 MiB");
    std::filesystem::resize_file(host / "from/a.caf", kMaxInstalledFileBytes);
    EXPECT_EQ(problem(), "none");
}

TEST_F(InstalledFiles, FullDiskTakesTheDeviceAway) {
    FileCalls full;
    int writes = 0;
    full.write = [&](int file, const void* bytes, std::size_t count) {
        if (++writes == 2) {
            errno = ENOSPC;
            return ssize_t{-1};
        }
        return FileCalls().write(file, bytes, count);
    };
    EXPECT_EQ(problem(full), "device" + std::string(kSounds) + "b.aif: no space left on device");
    EXPECT_EQ(writes, 2);
    EXPECT_EQ(host.names("."), "from");
}

TEST_F(InstalledFiles, ReadOnlyVolumeLeavesAnEmptyFolderEmpty) {
    host.folder("device");
    FileCalls readOnly;
    readOnly.openat = [](int, const char*, int, unsigned) {
        errno = EROFS;
        return -1;
    };
    EXPECT_EQ(problem(readOnly), "device" + std::string(kSounds) + "a.caf: read-only file system");
    EXPECT_EQ(host.names("."), "device from");
    EXPECT_EQ(host.names("device"), "");
    EXPECT_EQ(problem(), "none") << "and may be tried again";
}

TEST_F(InstalledFiles, FolderThatNoDeviceHasIsNamed) {
    const std::array<InstalledFile, 1> files{{{host / "from/a.caf", "/Applications/a.caf"}}};
    const auto root = createDeviceRoot(host / "device", files);
    ASSERT_FALSE(root);
    EXPECT_EQ(toLine(root.error()), host / "device/Applications/a.caf: no such file or directory");
    EXPECT_EQ(host.names("."), "from");
}

TEST_F(InstalledFiles, FolderOfSomebodyElseIsLeftAsItIs) {
    host.file("device/mine", "text");
    EXPECT_EQ(problem(), "device: the folder is not empty; a new device needs an empty one");
    EXPECT_EQ(host.names("device"), "mine");
}

TEST(ImportFolder, CopiesAThemeOntoTheDevice) {
    const TemporaryFolder host;
    host.folder("theme/IconBundles");
    host.file("theme/IconBundles/icon.png", "png");
    host.link("link", "theme");
    const auto root = createDeviceRoot(host / "device").value();
    EXPECT_TRUE(importFolder(*root, host / "link", "/Library/Themes/Mine").has_value());
    EXPECT_EQ(host.contents("device/Library/Themes/Mine/IconBundles/icon.png"), "png");
    EXPECT_EQ(importFolder(*root, host / "link", "/Library/Themes/Mine").error().message,
              "file exists");
    EXPECT_EQ(importFolder(*root, host / "none", "/Library/Themes/Other").error().path,
              host / "none");
    EXPECT_FALSE(std::filesystem::exists(host / "device/Library/Themes/Other"));
}

}  // namespace
}  // namespace velmoranth::desktop::create_device_root_test
