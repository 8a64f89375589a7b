// Replacing the preferences file: whole or as it was, wherever the process ends.
#include "cli/settings_device.h"
#include "desktop/plist/property_lists.h"
#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli::settings_write_test {
namespace {

using tests::TemporaryFolder;

const std::string kFile = "var/mobile/Library/Preferences/com.qor.velmoranthprefs.plist";

std::string text(const platform::Data& bytes) {
    return {bytes.begin(), bytes.end()};
}

class ReplacingPreferences : public testing::Test {
  protected:
    ReplacingPreferences() {
        folder.file(kFile, oldText);
        folder.link("User", "var/mobile");
        std::filesystem::permissions(folder / kFile, std::filesystem::perms(0604));
        root = openSettingsDevice(folder.path()).value();
    }

    TemporaryFolder folder;
    std::string oldText = "<plist><dict><key>enable</key><true/></dict></plist>";
    platform::Data newBytes = writtenPreferences({{"enable", false}, {"xAxisVal", 2.5}})->bytes;
    DeviceRef root;
};

// The calls, written a few bytes at a time, with `step` before each and behind each.
desktop::FileCalls stepping(const std::function<void()>& step) {
    desktop::FileCalls calls;
    const desktop::FileCalls real;
    const auto between = [step](auto call) {
        step();
        const auto result = call();
        const int error = errno;
        step();
        errno = error;
        return result;
    };
    calls.openat = [=](int in, const char* name, int flags, unsigned mode) {
        return between([&] { return real.openat(in, name, flags, mode); });
    };
    calls.write = [=](int file, const void* bytes, std::size_t count) {
        return between([&] { return real.write(file, bytes, std::min<std::size_t>(count, 40)); });
    };
    calls.fsync = [=](int file) { return between([&] { return real.fsync(file); }); };
    calls.renameat = [=](int in, const char* name, int newFolder, const char* newName) {
        return between([&] { return real.renameat(in, name, newFolder, newName); });
    };
    return calls;
}

TEST_F(ReplacingPreferences, EndingAtAnyStepLeavesTheOldFileOrTheNew) {
    int olds = 0;
    int news = 0;
    bool finished = false;
    for (int last = 1; !finished; ++last) {
        ASSERT_LT(last, 1000);
        folder.file(kFile, oldText);
        const pid_t child = ::fork();
        if (child == 0) {
            int count = 0;
            const auto replaced = replaceLivePreferences(root, newBytes, stepping([&] {
                                                             if (++count == last) {
                                                                 ::_exit(77);
                                                             }
                                                         }));
            ::_exit(replaced ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        finished = WEXITSTATUS(status) == 0;
        ASSERT_TRUE(finished || WEXITSTATUS(status) == 77);
        const std::string found = folder.contents(kFile);
        olds += found == oldText ? 1 : 0;
        news += found == text(newBytes) ? 1 : 0;
        ASSERT_EQ(olds + news, last) << found;
        ASSERT_FALSE(finished && found == oldText);
        ASSERT_EQ(folder.mode(kFile), 0604U);
        for (const auto& entry :
             std::filesystem::directory_iterator(folder / "var/mobile/Library/Preferences")) {
            if (entry.path().filename().string().starts_with(".dat.nosync")) {
                std::filesystem::remove(entry.path());
            }
        }
        folder.file(kFile, oldText);
    }
    EXPECT_GT(olds, 10);
    EXPECT_GE(news, 4) << "behind the renaming, around the folder's fsync, and at the end";
}

TEST_F(ReplacingPreferences, FileAndFolderAreOnTheDiskInThatOrder) {
    std::vector<std::string> order;
    desktop::FileCalls calls;
    const desktop::FileCalls real;
    calls.fsync = [&](int file) {
        struct stat status{};
        EXPECT_EQ(::fstat(file, &status), 0);
        order.emplace_back(S_ISDIR(status.st_mode) ? "folder" : "file");
        return real.fsync(file);
    };
    calls.renameat = [&](int in, const char* name, int newFolder, const char* newName) {
        order.emplace_back("rename");
        return real.renameat(in, name, newFolder, newName);
    };
    ASSERT_TRUE(replaceLivePreferences(root, newBytes, calls));
    EXPECT_EQ(order, (std::vector<std::string>{"file", "rename", "folder"}));
}

TEST_F(ReplacingPreferences, EveryFailingCallLeavesTheOldFileAndItsReason) {
    struct Failing {
        std::function<void(desktop::FileCalls&)> spoil;
        std::string reason;
    };

    const std::vector<Failing> failings{
        {[](auto& calls) {
             calls.openat = [](int, const char*, int, unsigned) {
                 errno = EROFS;
                 return -1;
             };
         },
         "read-only file system"},
        {[](auto& calls) {
             calls.write = [](int, const void*, std::size_t) -> ssize_t {
                 errno = ENOSPC;
                 return -1;
             };
         },
         "no space left on device"},
        {[](auto& calls) {
             calls.fsync = [](int) {
                 errno = EIO;
                 return -1;
             };
         },
         "input/output error"},
        {[](auto& calls) {
             calls.renameat = [](int, const char*, int, const char*) {
                 errno = EACCES;
                 return -1;
             };
         },
         "permission denied"},
    };
    for (const Failing& failing : failings) {
        desktop::FileCalls calls;
        failing.spoil(calls);
        const auto replaced = replaceLivePreferences(root, newBytes, calls);
        ASSERT_FALSE(replaced);
        EXPECT_EQ(replaced.error().message,
                  "the preferences cannot be written and are as they were: " + failing.reason);
        EXPECT_EQ(folder.contents(kFile), oldText);
        EXPECT_EQ(folder.count("var/mobile/Library/Preferences"), 1);
    }
}

TEST_F(ReplacingPreferences, AFolderThatCannotBePutOnTheDiskIsSaid) {
    desktop::FileCalls calls;
    const desktop::FileCalls real;
    const auto failWith = [&](int number) {
        calls.fsync = [number, real](int file) {
            struct stat status{};
            if (::fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
                errno = number;
                return -1;
            }
            return real.fsync(file);
        };
    };
    failWith(EIO);
    const auto replaced = replaceLivePreferences(root, newBytes, calls);
    ASSERT_FALSE(replaced);
    EXPECT_EQ(replaced.error().message,
              "the preferences are written, but may be the old ones again after a power failure: "
              "input/output error");
    EXPECT_EQ(folder.contents(kFile), text(newBytes));
    failWith(EINVAL);
    EXPECT_TRUE(replaceLivePreferences(root, newBytes, calls)) << "a file system without it";
}

TEST(WrittenPreferences, TooLargeIsRefused) {
    platform::PropertyList::Array list;
    const auto written =
        writtenPreferences({{"a", std::string(desktop::kMaxPropertyListBytes, 'x')}});
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().message,
              "the preferences would be larger than 16 MiB as they are written");
}

TEST(WrittenPreferences, NamesWhatComesBackDifferent) {
    const auto written = writtenPreferences(
        {{"date", platform::Date{0.5}}, {"whole", platform::Date{5}}, {"number", 0.1}});
    ASSERT_TRUE(written);
    EXPECT_EQ(written->inexact, std::vector<std::string>{"date"});
}

TEST(SettingsDevice, PathsAreThoseOfThePanel) {
    EXPECT_EQ(core::savedCopyPath("Night"),
              "/User/Library/VelMoranth/UserSettings/ Night com.qor.velmoranthprefs.plist");
}

}  // namespace
}  // namespace velmoranth::cli::settings_write_test
