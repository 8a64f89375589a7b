// What goes when a process ends, and what is whole before a signal is followed.
#include "desktop/files/cleanup.h"

#include "desktop/files/other_threads.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill is POSIX's
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace velmoranth::desktop::cleanup_test {
namespace {

namespace fs = std::filesystem;

class Cleanup : public testing::Test {
  protected:
    tests::TemporaryFolder folder;

    // The wait status of a process of its own that does this and waits for its end.
    static int statusOf(const std::function<void()>& work) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(60);
            cleanUpOnSignals();
            work();
            while (true) {
                pause();
            }
        }
        int status = 0;
        waitpid(child, &status, 0);
        return status;
    }

    static void interrupt() { kill(getpid(), SIGINT); }

    static void expectInterrupted(int status) {
        EXPECT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), SIGINT);
    }
};

TEST_F(Cleanup, SignalRemovesWhatWasToGo) {
    folder.file("gone/deep/file", "x");
    folder.file("kept/file", "x");
    expectInterrupted(statusOf([&] {
        const RemovedAtEnd gone(folder / "gone");
        RemovedAtEnd kept(folder / "kept");
        kept.keep();
        interrupt();
        pause();
    }));
    EXPECT_EQ(folder.names("."), "kept");
    EXPECT_EQ(folder.contents("kept/file"), "x");
}

TEST_F(Cleanup, FolderForWhatComesIntoItGoesWhenItIsEmpty) {
    folder.folder("empty");
    folder.folder("emptied");
    folder.file("full/file", "x");
    expectInterrupted(statusOf([&] {
        const RemovedIfEmpty empty(folder / "empty");
        const RemovedIfEmpty emptied(folder / "emptied");
        const RemovedIfEmpty full(folder / "full");
        const auto inside = makeTemporaryFolderIn(folder / "emptied");
        interrupt();
        pause();
    }));
    EXPECT_EQ(folder.names("."), "full");
    {
        const RemovedIfEmpty full(folder / "full");
        folder.folder("another");
        const RemovedIfEmpty another(folder / "another");
    }
    EXPECT_EQ(folder.names("."), "full");
}

// Threads that go on making what is being removed would leave half of it, or have it back.
TEST_F(Cleanup, NothingIsMadeOnceItIsRemoved) {
    for (int turn = 0; turn < 5; ++turn) {
        expectInterrupted(statusOf([&] {
            const RemovedAtEnd gone(folder / "theme");
            std::vector<std::thread> makers;
            for (int maker = 0; maker < 3; ++maker) {
                makers.emplace_back([&, maker] {
                    for (int number = 0;; ++number) {
                        std::error_code error;
                        const std::string deep = folder / "theme/" + std::to_string(maker) + "/" +
                                                 std::to_string(number % 100);
                        fs::create_directories(deep, error);
                        std::ofstream(deep + "/file") << "x";
                    }
                });
            }
            while (!fs::exists(folder / "theme/0/50/file")) {
                std::this_thread::yield();
            }
            interrupt();
            pause();
        }));
        EXPECT_EQ(folder.names("."), "");
    }
}

TEST_F(Cleanup, ThreadsThatAreStoppedStayWhereTheyAre) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        std::array<std::atomic<long>, 4> counts{};
        for (auto& count : counts) {
            std::thread([&count] {
                while (true) {
                    ++count;
                }
            }).detach();
        }
        while (std::ranges::any_of(counts, [](const auto& count) { return count == 0; })) {
            std::this_thread::yield();
        }
        stopOtherThreads();
        std::array<long, 4> then{};
        std::transform(counts.begin(), counts.end(), then.begin(),
                       [](const auto& count) { return count.load(); });
        usleep(100'000);
        _exit(std::equal(counts.begin(), counts.end(), then.begin(),
                         [](const auto& count, long before) { return count.load() == before; })
                  ? 3
                  : 4);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 3);
}

// The signal is there all the time; it is followed when the last of them has gone.
TEST_F(Cleanup, WhatHasToBeWholeIsWholeBeforeASignalIsFollowed) {
    expectInterrupted(statusOf([&] {
        const RemovedAtEnd gone(folder / "made");
        {
            const SignalsHeld outer;
            interrupt();
            {
                const SignalsHeld inner;
                fs::create_directory(folder / "made");
            }
            // As long as the thread that watches needs to follow the signal, if it did.
            for (int turn = 0; turn < 100; ++turn) {
                usleep(2000);
            }
            std::ofstream(folder / "whole") << "all of it";
        }
        pause();
    }));
    EXPECT_EQ(folder.names("."), "whole");
    EXPECT_EQ(folder.contents("whole"), "all of it");
}

}  // namespace
}  // namespace velmoranth::desktop::cleanup_test
