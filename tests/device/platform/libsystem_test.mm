#include "device/platform/phone_test.h"
#include "device/platform/services.h"
#include "device/standins/standin.h"
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <vector>

namespace velmoranth::device::libsystem_test {
namespace {

using LibSystem = PhoneTest;

unsigned modeOf(const std::filesystem::path& path) {
    struct stat found = {};
    return ::stat(path.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

TEST_F(LibSystem, SetsIds) {
    standins::clearJournal();
    EXPECT_EQ(libSystem().setuid(501), 0);
    EXPECT_EQ(libSystem().setgid(20), 0);
    EXPECT_EQ(standins::journal(), (std::vector<std::string>{"setuid 501", "setgid 20"}));
}

TEST_F(LibSystem, ChangesModes) {
    write("/Library/Themes/a", "");
    EXPECT_EQ(libSystem().chmod("/Library/Themes/a", 0741), 0);
    EXPECT_EQ(modeOf(at("/Library/Themes/a")), 0741U);
    EXPECT_EQ(libSystem().chmod("/Library/Themes/none", 0777), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(LibSystem, MakesFolders) {
    EXPECT_EQ(libSystem().mkdir("/User/Library/made", 0700), 0);
    EXPECT_EQ(modeOf(at("/var/mobile/Library/made")), 0700U);
    EXPECT_EQ(libSystem().mkdir("/User/Library/made", 0700), -1);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(libSystem().mkdir("/User/none/made", 0700), -1);
}

TEST_F(LibSystem, APathThatWouldEndEarlyLeadsNowhere) {
    write("/Library/Themes/a", "");
    const std::string path("/Library/Themes/a\0b", 19);
    const unsigned mode = modeOf(at("/Library/Themes/a"));
    EXPECT_EQ(libSystem().chmod(path, 0700), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(modeOf(at("/Library/Themes/a")), mode);
    EXPECT_EQ(libSystem().mkdir(std::string("/Library/b\0c", 12), 0700), -1);
    EXPECT_FALSE(std::filesystem::exists(at("/Library/b")));
}

TEST_F(LibSystem, NamesTheMachineAndTheHome) {
    standins::setMachine("iPhone11,2");
    EXPECT_EQ(libSystem().machine(), "iPhone11,2");
    EXPECT_EQ(libSystem().homeDirectory(), "/var/mobile");
    standins::setHomeDirectory("/var/root");
    EXPECT_EQ(libSystem().homeDirectory(), "/var/root");
}

TEST_F(LibSystem, RunsBlocksLaterOnTheMainQueue) {
    std::vector<std::string> ran;
    libSystem().dispatchAfterOnMainQueue(2'000'000'000, [&] { ran.emplace_back("second"); });
    libSystem().dispatchAfterOnMainQueue(1'000'000'000, [&] { ran.emplace_back("first"); });
    libSystem().dispatchAfterOnMainQueue(0, [&] { ran.emplace_back("now"); });
    EXPECT_TRUE(ran.empty());
    standins::runMainQueue();
    EXPECT_EQ(ran, (std::vector<std::string>{"now"}));
    standins::advanceClock(1.5);
    EXPECT_EQ(ran, (std::vector<std::string>{"now", "first"}));
    standins::advanceClock(0.5);
    EXPECT_EQ(ran, (std::vector<std::string>{"now", "first", "second"}));
    EXPECT_EQ(standins::pendingOnMainQueue(), 0U);
}

TEST_F(LibSystem, KeepsWhatABlockHoldsUntilItHasRun) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> seen = held;
    {
        const std::function<void()> block = [held] { ++*held; };
        libSystem().dispatchAfterOnMainQueue(1'000'000, block);
    }
    held.reset();
    EXPECT_FALSE(seen.expired());
    standins::advanceClock(1);
    EXPECT_TRUE(seen.expired());
}

TEST_F(LibSystem, ABlockMayBeEmpty) {
    libSystem().dispatchAfterOnMainQueue(0, {});
    standins::runMainQueue();
    EXPECT_EQ(standins::pendingOnMainQueue(), 0U);
}

}  // namespace
}  // namespace velmoranth::device::libsystem_test
