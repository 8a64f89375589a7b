#include "desktop/files/create_device_root.h"
#include "desktop/system/core_foundation.h"
#include "desktop/system/device_and_screen.h"
#include "desktop/system/lib_system.h"
#include "desktop/system/system_logs.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace velmoranth::desktop::system_test {
namespace {

class SystemTest : public testing::Test {
  protected:
    SystemTest() {
        std::string name = std::filesystem::temp_directory_path() / "velmoranth-XXXXXX";
        folder_ = ::mkdtemp(name.data());
        root_ = createDeviceRoot(folder_ + "/device").value();
        ::umask(022);
    }

    ~SystemTest() override { std::filesystem::remove_all(folder_); }

    // Mode bits of a path of this machine below the test's folder; 0 when there is none.
    unsigned mode(const std::string& path) const {
        struct stat status{};
        return ::lstat((folder_ + path).c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
    }

    std::string folder_;
    std::shared_ptr<DeviceRoot> root_;
};

using DesktopLibSystemTest = SystemTest;

TEST_F(DesktopLibSystemTest, ChangesOfIdsAreNotCarriedOut) {
    const unsigned before = ::getuid();
    DesktopLibSystem system(root_, "iPhone11,2", "/var/mobile");
    EXPECT_EQ(system.setuid(501), 0);
    EXPECT_EQ(system.setuid(0), 0);
    EXPECT_EQ(system.setgid(7), 0);
    EXPECT_EQ(::getuid(), before);
}

TEST_F(DesktopLibSystemTest, SaysMachineAndHome) {
    DesktopLibSystem system(root_, "iPhone11,2", "/var/mobile");
    EXPECT_EQ(system.machine(), "iPhone11,2");
    EXPECT_EQ(system.homeDirectory(), "/var/mobile");
}

TEST_F(DesktopLibSystemTest, HandsBlocksToTheMainQueueInSeconds) {
    DesktopLibSystem system(root_, "", "");
    int runs = 0;
    const auto block = [&runs] { ++runs; };
    // No main loop, so it never runs.
    system.dispatchAfterOnMainQueue(600'000'000, block);
    std::vector<std::pair<double, std::function<void()>>> queue;
    system.setMainQueue([&queue](double seconds, std::function<void()> asked) {
        queue.emplace_back(seconds, std::move(asked));
    });
    EXPECT_TRUE(queue.empty());
    system.dispatchAfterOnMainQueue(600'000'000, block);
    ASSERT_EQ(queue.size(), 1U);
    EXPECT_DOUBLE_EQ(queue.front().first, 0.6);
    EXPECT_EQ(runs, 0);
    queue.front().second();
    EXPECT_EQ(runs, 1);
}

TEST_F(DesktopLibSystemTest, MakesFoldersInsideTheRoot) {
    DesktopLibSystem system(root_, "", "");
    EXPECT_EQ(system.mkdir("/User/Library/Dump", 0755), 0);
    EXPECT_EQ(mode("/device/private/var/mobile/Library/Dump"), 0755U);
    EXPECT_EQ(system.mkdir("/User/Library/Dump/Inner/", 0777), 0);
    EXPECT_EQ(mode("/device/private/var/mobile/Library/Dump/Inner"), 0755U);
    EXPECT_EQ(system.mkdir("/User/Library/Dump", 0755), -1);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(system.mkdir("/User/none/Dump", 0755), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(system.mkdir("/", 0755), -1);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(system.mkdir("", 0755), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(system.mkdir("/../../outside", 0700), 0);
    EXPECT_EQ(mode("/device/outside"), 0700U);
    EXPECT_EQ(mode("/outside"), 0U);
}

TEST_F(DesktopLibSystemTest, ChangesModesInsideTheRoot) {
    std::ofstream(folder_ + "/secret") << "x";
    ASSERT_EQ(::chmod((folder_ + "/secret").c_str(), 0600), 0);
    std::filesystem::create_symlink(folder_ + "/secret", folder_ + "/device/link");
    DesktopLibSystem system(root_, "", "");
    EXPECT_EQ(system.chmod("/User/Library/Preferences", 0777), 0);
    EXPECT_EQ(mode("/device/private/var/mobile/Library/Preferences"), 0777U);
    EXPECT_EQ(system.chmod("/link", 0777), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(mode("/secret"), 0600U);
    const unsigned before = mode("/device");
    EXPECT_EQ(system.chmod("", 0711), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(mode("/device"), before);
}

TEST(DesktopCoreFoundation, ComparesVersions) {
    DesktopCoreFoundation foundation(1560.1, {12, 1, 2});
    EXPECT_EQ(foundation.versionNumber(), 1560.1);
    EXPECT_TRUE(foundation.isSystemVersionAtLeast(12, 1, 2));
    EXPECT_TRUE(foundation.isSystemVersionAtLeast(11, 9, 9));
    EXPECT_TRUE(foundation.isSystemVersionAtLeast(12, 0, 5));
    EXPECT_FALSE(foundation.isSystemVersionAtLeast(12, 1, 3));
    EXPECT_FALSE(foundation.isSystemVersionAtLeast(12, 2, 0));
    EXPECT_FALSE(foundation.isSystemVersionAtLeast(13, 0, 0));
}

TEST(DesktopDevice, SaysItsIdiom) {
    EXPECT_TRUE(DesktopDevice(InterfaceIdiom::phone).respondsToUserInterfaceIdiom());
    EXPECT_EQ(DesktopDevice(InterfaceIdiom::phone).userInterfaceIdiom(), 0);
    EXPECT_EQ(DesktopDevice(InterfaceIdiom::pad).userInterfaceIdiom(), 1);
    EXPECT_EQ(DesktopScreen(3).scale(), 3.0);
}

TEST(DesktopDevice, SaysHowItIsHeld) {
    EXPECT_EQ(DesktopDevice(InterfaceIdiom::pad).orientation(), 1);
    for (const int orientation : {0, 1, 2, 3, 4, 5, 6, -1, 99}) {
        DesktopDevice device(InterfaceIdiom::phone, orientation);
        EXPECT_EQ(device.orientation(), orientation);
        EXPECT_EQ(device.userInterfaceIdiom(), 0);
    }
}

TEST(DesktopScreen, SaysItsBoundsFromTheOrigin) {
    EXPECT_EQ(DesktopScreen(2).bounds(), (platform::Rect{{0, 0}, {0, 0}}));
    DesktopScreen screen(2, {1024.5, 768});
    EXPECT_EQ(screen.bounds(), (platform::Rect{{0, 0}, {1024.5, 768}}));
    EXPECT_EQ(screen.scale(), 2);
}

TEST(LogToMemory, KeepsLinesInOrder) {
    LogToMemory log;
    log.write("one");
    log.write("");
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"one", ""}));
}

}  // namespace
}  // namespace velmoranth::desktop::system_test
