// Folders of this machine that are grafted into a device: found wherever a path leads to them, read
// and never written to, and with links that mean what they mean on the device.
#include "desktop/files/device_root.h"
#include "desktop/files/file_manager.h"
#include "desktop/files/file_tree.h"
#include "desktop/system/lib_system.h"
#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace velmoranth::desktop::grafts_test {
namespace {

using tests::TemporaryFolder;

constexpr const char* kPlace = "/Library/Themes/A.theme";

// "maker" is the folder that stands in the device "root"; "secret" lies beside both. Every
// behaviour is asked of both ways of resolving a path.
class GraftsTest : public testing::TestWithParam<PathResolution> {
  protected:
    GraftsTest() {
        ::umask(022);
        host_.folder("root/Library/Themes/A.theme");
        host_.file("root/Library/Themes/A.theme/hidden", "under the graft");
        host_.file("root/Library/Themes/B.theme/icon", "the device's");
        host_.file("root/top", "top of the device");
        host_.file("maker/Icons/icon", "the maker's");
        host_.file("maker/plain", "plain");
        host_.file("secret", "this machine's");
        root_ = open();
    }

    void SetUp() override {
        if (GetParam() == PathResolution::automatic && !root_->resolvesInKernel()) {
            GTEST_SKIP() << "the kernel refuses openat2 here";
        }
    }

    [[nodiscard]] std::shared_ptr<DeviceRoot> open(const std::string& place = kPlace) const {
        return DeviceRoot::open({host_ / "root", {{place, host_ / "maker"}}}, GetParam()).value();
    }

    // What a path holds, or the name of errno.
    [[nodiscard]] std::string read(const std::string& path, int flags = 0) const {
        const Descriptor file(root_->openFile(path, O_RDONLY | flags));
        if (!file.isOpen()) {
            return ::strerrorname_np(errno);
        }
        std::string buffer(64, '\0');
        const ssize_t length = ::read(file.get(), buffer.data(), buffer.size());
        return length < 0 ? ::strerrorname_np(errno)
                          : buffer.substr(0, static_cast<std::size_t>(length));
    }

    [[nodiscard]] std::string refusal(const std::string& path, int flags) const {
        const Descriptor file(root_->openFile(path, flags, 0600));
        return file.isOpen() ? "opened" : ::strerrorname_np(errno);
    }

    [[nodiscard]] std::string toChange(const std::string& path) const {
        const FolderEntry entry = root_->openParentToChange(path);
        return entry.folder.isOpen() ? "open " + entry.name : ::strerrorname_np(errno);
    }

    // What the maker's folder is, to see that it stays so: names, contents, modes and times.
    [[nodiscard]] std::string makers() const {
        std::string all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(host_ / "maker")) {
            struct stat status{};
            ::lstat(entry.path().c_str(), &status);
            const std::string name = entry.path().lexically_relative(host_.path());
            all += name + " " + std::to_string(status.st_mode) + " " +
                   std::to_string(status.st_mtim.tv_nsec) + " " +
                   (entry.is_regular_file() ? host_.contents(name) : "") + "\n";
        }
        return all;
    }

    TemporaryFolder host_;
    std::shared_ptr<DeviceRoot> root_;
};

INSTANTIATE_TEST_SUITE_P(DeviceRoot, GraftsTest,
                         testing::Values(PathResolution::automatic, PathResolution::walk),
                         [](const auto& instance) {
                             return instance.param == PathResolution::walk ? "Walk" : "Kernel";
                         });

TEST_P(GraftsTest, areFoundWhereverAPathLeadsToThem) {
    host_.link("root/themes", "/Library/Themes");
    host_.link("root/Library/Themes/same", "A.theme");
    host_.link("root/Library/Themes/icons", "/Library/Themes/A.theme/Icons");
    EXPECT_EQ(read("/Library/Themes/A.theme/Icons/icon"), "the maker's");
    EXPECT_EQ(read("//Library/./Themes//A.theme/Icons/icon"), "the maker's");
    EXPECT_EQ(read("/Library/Themes/B.theme/../A.theme/plain"), "plain");
    EXPECT_EQ(read("Library/Themes/A.theme/plain"), "plain");
    EXPECT_EQ(read("/themes/A.theme/plain"), "plain");
    EXPECT_EQ(read("/Library/Themes/same/plain"), "plain");
    EXPECT_EQ(read("/Library/Themes/icons/icon"), "the maker's");
    EXPECT_EQ(read("/Library/Themes/icons/../plain"), "plain");
    EXPECT_EQ(read("/Library/Themes/A.theme/hidden"), "ENOENT");
    EXPECT_EQ(read("/Library/Themes/A.theme"), "EISDIR");
    EXPECT_EQ(read("/Library/Themes/A.theme/"), "EISDIR");
    EXPECT_EQ(read("/Library/Themes/A.theme2/plain"), "ENOENT");
    EXPECT_EQ(read("/Library/Themes/B.theme/icon"), "the device's");
    EXPECT_EQ(read("/Library/Themes/A.theme/plain/x"), "ENOTDIR");
    EXPECT_EQ(read("/A.theme/plain"), "ENOENT");
}

TEST_P(GraftsTest, dotDotLeadsBackToTheDevice) {
    EXPECT_EQ(read("/Library/Themes/A.theme/../B.theme/icon"), "the device's");
    EXPECT_EQ(read("/Library/Themes/A.theme/Icons/../../B.theme/icon"), "the device's");
    EXPECT_EQ(read("/Library/Themes/A.theme/../../../../../top"), "top of the device");
    EXPECT_EQ(read("/Library/Themes/A.theme/../secret"), "ENOENT");
}

TEST_P(GraftsTest, linksInThemMeanWhatTheyMeanOnTheDevice) {
    host_.link("maker/absolute", "/top");
    host_.link("maker/machines", host_ / "secret");
    host_.link("maker/up", "../../../top");
    host_.link("maker/beside", "../secret");
    host_.link("maker/other", "../B.theme/icon");
    host_.link("maker/own", "Icons/icon");
    host_.link("maker/ownAbsolute", "/Library/Themes/A.theme/plain");
    host_.link("maker/Icons/out", "/");
    host_.link("maker/proc", "/proc/self/root");
    host_.link("maker/self", "self");
    const std::string theme = std::string(kPlace) + "/";
    EXPECT_EQ(read(theme + "absolute"), "top of the device");
    EXPECT_EQ(read(theme + "machines"), "ENOENT");
    EXPECT_EQ(read(theme + "up"), "top of the device");
    EXPECT_EQ(read(theme + "beside"), "ENOENT");
    EXPECT_EQ(read(theme + "other"), "the device's");
    EXPECT_EQ(read(theme + "own"), "the maker's");
    EXPECT_EQ(read(theme + "ownAbsolute"), "plain");
    EXPECT_EQ(read(theme + "Icons/out/top"), "top of the device");
    EXPECT_EQ(read(theme + "Icons/out/../../top"), "top of the device");
    EXPECT_EQ(read(theme + "proc/etc/passwd"), "ENOENT");
    EXPECT_EQ(read(theme + "self"), "ELOOP");
    EXPECT_EQ(read(theme + "own", O_NOFOLLOW), "ELOOP");
    // A link on the device to where the folder really lies leads nowhere.
    host_.link("root/real", host_ / "maker/plain");
    EXPECT_EQ(read("/real"), "ENOENT");
}

TEST_P(GraftsTest, theMakersFolderMayItselfBeALink) {
    host_.link("linked", "maker");
    root_ = DeviceRoot::open({host_ / "root", {{kPlace, host_ / "linked"}}}, GetParam()).value();
    EXPECT_EQ(read("/Library/Themes/A.theme/plain"), "plain");
}

TEST_P(GraftsTest, aPlaceBehindALinkIsTheSamePlace) {
    std::filesystem::rename(host_ / "root/Library/Themes", host_ / "root/moved");
    host_.link("root/Library/Themes", "/moved");
    root_ = open();
    EXPECT_EQ(read("/Library/Themes/A.theme/plain"), "plain");
    EXPECT_EQ(read("/moved/A.theme/plain"), "plain");
    EXPECT_EQ(root_->files().grafts.front().place, kPlace);
}

TEST_P(GraftsTest, listsAreTheDevicesAndInsideTheMakers) {
    std::vector<std::string> names;
    const Descriptor themes(root_->openFile("/Library/Themes", O_RDONLY | O_DIRECTORY));
    ASSERT_EQ(namesIn(themes.get(), names), 0);
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string>{"A.theme", "B.theme"}));
    names.clear();
    const Descriptor theme(root_->openFile(kPlace, O_RDONLY | O_DIRECTORY));
    ASSERT_EQ(namesIn(theme.get(), names), 0);
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string>{"Icons", "plain"}));
    EXPECT_NE(::fcntl(theme.get(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST_P(GraftsTest, openingToWriteIsRefused) {
    const std::string before = makers();
    const std::string theme = std::string(kPlace) + "/";
    EXPECT_EQ(refusal(theme + "plain", O_WRONLY), "EROFS");
    EXPECT_EQ(refusal(theme + "plain", O_RDWR), "EROFS");
    EXPECT_EQ(refusal(theme + "plain", O_RDONLY | O_TRUNC), "EROFS");
    EXPECT_EQ(refusal(theme + "new", O_WRONLY | O_CREAT), "EROFS");
    EXPECT_EQ(refusal(theme + "new", O_RDONLY | O_CREAT), "EROFS");
    EXPECT_EQ(refusal(theme + "Icons/new", O_WRONLY | O_CREAT | O_EXCL), "EROFS");
    EXPECT_EQ(refusal(theme + "plain", O_WRONLY | O_CREAT | O_EXCL), "EEXIST");
    EXPECT_EQ(refusal(theme + "plain", O_RDONLY | O_CREAT), "opened");
    EXPECT_EQ(refusal(theme + "Icons", O_WRONLY), "EISDIR");
    EXPECT_EQ(refusal(theme + "Icons", O_RDONLY | O_CREAT), "EISDIR");
    EXPECT_EQ(refusal(kPlace, O_RDONLY | O_CREAT), "EISDIR");
    EXPECT_EQ(refusal(kPlace, O_WRONLY | O_CREAT | O_EXCL), "EEXIST");
    EXPECT_EQ(refusal(kPlace, O_RDWR | O_TMPFILE), "EROFS");
    EXPECT_EQ(refusal(theme + "Icons", O_RDWR | O_TMPFILE), "EROFS");
    EXPECT_EQ(refusal(theme + "Icons/.", O_RDWR | O_TMPFILE), "EROFS");
    EXPECT_EQ(refusal("/Library/Themes/B.theme/icon", O_RDWR), "opened");
    EXPECT_EQ(refusal("/new", O_WRONLY | O_CREAT), "opened");
    EXPECT_EQ(makers(), before);
    // A link from the theme to the device is the way to a file of the device.
    host_.link("maker/made", "/made");
    EXPECT_EQ(refusal(theme + "made", O_WRONLY | O_CREAT), "opened");
    EXPECT_EQ(host_.names("root"), "Library made new top");
    host_.link("root/Library/into", "/Library/Themes/A.theme/new");
    EXPECT_EQ(refusal("/Library/into", O_WRONLY | O_CREAT), "EROFS");
}

TEST_P(GraftsTest, nothingInThemIsMadeRenamedOrRemoved) {
    host_.link("root/into", "/Library/Themes/A.theme");
    const std::string before = makers();
    const std::string theme = std::string(kPlace) + "/";
    EXPECT_EQ(toChange(theme + "plain"), "EROFS");
    EXPECT_EQ(toChange(theme + "Icons/new"), "EROFS");
    EXPECT_EQ(toChange("/into/new"), "EROFS");
    EXPECT_EQ(toChange(theme + "none/new"), "ENOENT");
    EXPECT_EQ(toChange(kPlace), "EBUSY");
    EXPECT_EQ(toChange(theme), "EBUSY");
    EXPECT_EQ(toChange("/Library"), "EBUSY");
    EXPECT_EQ(toChange("/"), "EBUSY");
    EXPECT_EQ(toChange("/into"), "open into") << "the link itself is the device's";
    EXPECT_EQ(toChange("/Library/Themes/A"), "open A");
    EXPECT_EQ(toChange("/Library/Themes/B.theme"), "open B.theme");
    EXPECT_EQ(toChange(theme + "../new"), "open new");
    EXPECT_EQ(root_->makeFolder(theme + "new", 0755), EROFS);
    EXPECT_EQ(root_->makeFolder(theme + "Icons", 0755), EEXIST);
    EXPECT_EQ(root_->makeFolder(kPlace, 0755), EEXIST);
    EXPECT_EQ(root_->makeFolder("/Library", 0755), EEXIST);
    EXPECT_EQ(root_->makeFolder("/Library/Themes/C.theme", 0755), 0);
    EXPECT_EQ(root_->changeMode(theme + "plain", 0600), EROFS);
    EXPECT_EQ(root_->changeMode(kPlace, 0700), EROFS);
    EXPECT_EQ(root_->changeMode("/into/plain", 0600), EROFS);
    EXPECT_EQ(root_->changeMode(theme + "none", 0600), ENOENT);
    EXPECT_EQ(root_->changeMode("", 0600), ENOENT);
    EXPECT_EQ(root_->makeFolder("", 0700), ENOENT);
    EXPECT_EQ(root_->changeMode("/top", 0600), 0);
    EXPECT_EQ(host_.mode("root/top"), 0600U);
    EXPECT_EQ(makers(), before);
}

TEST_P(GraftsTest, thePlatformsCallsFindThemReadOnly) {
    DesktopFileManager files(root_);
    const std::string before = makers();
    const std::string theme = std::string(kPlace) + "/";
    EXPECT_TRUE(files.fileExistsAtPath(theme + "plain"));
    EXPECT_TRUE(files.fileExistsAtPathIsDirectory(kPlace).isDirectory);
    EXPECT_FALSE(files.fileExistsAtPathIsDirectory(theme + "plain").isDirectory);
    EXPECT_EQ(files.dataWithContentsOfFile(theme + "Icons/icon")->size(), 11U);
    constexpr int kVolumeReadOnly = 642;
    const auto code = [](const platform::Failure& failure) { return failure ? failure->code : 0; };
    EXPECT_FALSE(files.writeToFileAtomically({1}, theme + "plain"));
    EXPECT_FALSE(files.createFileAtPathContents(theme + "new", {1}));
    EXPECT_EQ(code(files.removeItemAtPath(theme + "plain")), kVolumeReadOnly);
    EXPECT_EQ(code(files.moveItemAtPathToPath(theme + "plain", "/moved")), kVolumeReadOnly);
    EXPECT_EQ(code(files.moveItemAtPathToPath("/top", theme + "moved")), kVolumeReadOnly);
    EXPECT_EQ(code(files.copyItemAtPathToPath("/top", theme + "copy")), kVolumeReadOnly);
    EXPECT_EQ(code(files.setPosixPermissionsOfItemAtPath(0600, theme + "plain")), kVolumeReadOnly);
    EXPECT_EQ(code(files.createDirectoryAtPathWithIntermediateDirectories(theme + "n/m")),
              kVolumeReadOnly);
    EXPECT_EQ(code(files.createDirectoryAtPathWithIntermediateDirectories(theme + "Icons")), 0);
    EXPECT_NE(code(files.removeItemAtPath(kPlace)), 0);
    EXPECT_NE(code(files.removeItemAtPath("/Library")), 0);
    EXPECT_EQ(host_.names("root"), "Library top");
    EXPECT_EQ(code(files.copyItemAtPathToPath(theme + "Icons", "/Library/copy")), 0);
    EXPECT_EQ(host_.contents("root/Library/copy/icon"), "the maker's");
    DesktopLibSystem system(root_, "machine", "/");
    EXPECT_EQ(system.chmod(theme + "plain", 0600), -1);
    EXPECT_EQ(errno, EROFS);
    EXPECT_EQ(system.mkdir(theme + "new", 0700), -1);
    EXPECT_EQ(errno, EROFS);
    EXPECT_EQ(makers(), before);
}

// What is now a folder or a file, now a link out of the theme, never gives what the link leads to.
TEST_P(GraftsTest, aLinkThatIsSwappedInLeadsNowhere) {
    host_.file("away/icon", "this machine's");
    host_.link("maker/link", host_ / "away");
    host_.link("maker/Icons/link", host_ / "secret");
    std::atomic<bool> ends = false;
    std::thread swapping([&] {
        const auto swap = [&](const std::string& one, const std::string& other) {
            ::renameat2(AT_FDCWD, (host_ / one).c_str(), AT_FDCWD, (host_ / other).c_str(),
                        RENAME_EXCHANGE);
        };
        while (!ends) {
            swap("maker/Icons", "maker/link");
            swap("maker/Icons", "maker/link");
            swap("maker/Icons/icon", "maker/Icons/link");
        }
    });
    int found = 0;
    for (int tries = 0; tries < 20000; ++tries) {
        const std::string got = read("/Library/Themes/A.theme/Icons/icon");
        found += got == "the maker's" ? 1 : 0;
        if (got == "this machine's") {
            ADD_FAILURE() << "the link was followed out of the theme";
            break;
        }
    }
    ends = true;
    swapping.join();
    EXPECT_GT(found, 0);
}

TEST(Grafts, needTheirFolders) {
    const TemporaryFolder host;
    host.folder("root/Library");
    host.file("file");
    const auto problem = [&](const std::string& place, const std::string& folder) {
        return toLine(DeviceRoot::open({host / "root", {{place, folder}}}).error());
    };
    EXPECT_EQ(problem("/Library/A", host / "none"), host / "none: no such file or directory");
    EXPECT_EQ(problem("/Library/A", host / "file"), host / "file: not a directory");
    EXPECT_EQ(problem("/none/A", host / "root"), "/none/A: no such file or directory");
    for (const char* const place : {"A", "/", "/..", "/Library/", "/Library//A", ""}) {
        EXPECT_EQ(DeviceRoot::open({host / "root", {{place, host / "root"}}}).error().message,
                  "nothing can be grafted there")
            << place;
    }
}

}  // namespace
}  // namespace velmoranth::desktop::grafts_test
