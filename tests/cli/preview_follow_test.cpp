// A device of the user's own, and following it.
#include "tests/cli/preview_fixture.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGINT

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace velmoranth::cli::preview_follow_test {
namespace {

namespace fs = std::filesystem;

class PreviewRoot : public PreviewTest {
  protected:
    PreviewRoot() {
        EXPECT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
        theme("device/Library/Themes/A", kMagenta);
        theme("device/Library/Themes/B", kLime);
    }

    void activate(const std::string& name) const {
        folder.file("device/var/mobile/Library/Preferences/com.qor.velmoranthprefs.plist",
                    "<plist><dict><key>enable</key><true/><key>ActiveThemes</key><array><string>" +
                        name + "</string></array></dict></plist>");
    }
};

TEST_F(PreviewRoot, ShowsTheDevicesOwnThemes) {
    activate("B");
    const CommandResult result = preview({"--root", "../device"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_GT(picture().count(kLime), 0);
    EXPECT_EQ(picture().count(kMagenta), 0);
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(PreviewRoot, FollowDrawsAgainWhenTheThemesChange) {
    activate("A");
    RunningCommand running(
        {"preview", "--root", "../device", "--follow", "-o", "a.png", "--ios", "12"}, setting());
    ASSERT_TRUE(running.waitForText("a.png: 1125 × 2436 pixels, iOS 12.4, phone\n"));
    EXPECT_GT(picture("work/a.png").count(kMagenta), 0);

    activate("B");
    const CommandResult told = runCommand({"notify", "themechanged", "--root", folder / "device"});
    EXPECT_EQ(told.code, 0);
    EXPECT_EQ(told.output, "com.qor.velmoranththemechanged.prefs: 1 process told\n");
    const std::string line = "a.png: 1125 × 2436 pixels, iOS 12.4, phone\n";
    ASSERT_TRUE(running.waitForText(line + line));
    EXPECT_GT(picture("work/a.png").count(kLime), 0);
    EXPECT_EQ(picture("work/a.png").count(kMagenta), 0);

    running.signal(SIGINT);
    EXPECT_EQ(running.finish().signal, SIGINT);
    EXPECT_EQ(runCommand({"notify", "prefs", "--root", folder / "device"}).code, 1)
        << "the process is gone";
}

TEST_F(PreviewRoot, ARespringStartsTheScreenAgain) {
    activate("A");
    const std::string device = folder / "device";
    const auto run = [&](std::vector<std::string> words) {
        words.insert(words.end(), {"--root", device});
        return runCommand(words);
    };
    CommandResult result = run({"device", "respring"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "velmoranth: error: " + device + ": no screen of this device is running\n");

    RunningCommand running({"preview", "--root", "../device", "--follow", "--quiet"}, setting());
    const std::string line = "preview.png: 1125 × 2436 pixels, iOS 13.3, phone\n";
    ASSERT_TRUE(running.waitForText(line));
    const std::string first = folder.contents("work/preview.png");
    // An icon view is treated once.
    ASSERT_EQ(run({"settings", "set", "dynamicShadow=yes", "opacityVal=1", "shadowWidthVal=90",
                   "shadowHeightVal=90"})
                  .code,
              0);
    ASSERT_TRUE(running.waitForText(line + line));
    EXPECT_EQ(folder.contents("work/preview.png"), first);

    result = run({"device", "respring"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, device + ": 1 screen starts again\n");
    EXPECT_EQ(result.errors, "");
    ASSERT_TRUE(running.waitForText(line + line + line));
    const std::string shown = folder.contents("work/preview.png");
    EXPECT_NE(shown, first);
    // It goes on, and hears of the next one.
    EXPECT_EQ(run({"device", "respring"}).output, device + ": 1 screen starts again\n");
    ASSERT_TRUE(running.waitForText(line + line + line + line));
    EXPECT_EQ(folder.contents("work/preview.png"), shown);
    running.signal(SIGINT);
    const CommandResult ended = running.finish();
    EXPECT_EQ(ended.output, line + line + line + line) << "nothing is drawn twice";

    ASSERT_EQ(preview({"--root", "../device"}).code, 0);
    EXPECT_EQ(folder.contents("work/preview.png"), shown) << "as a screen that has just started";
}

using PreviewFollow = PreviewTest;

TEST_F(PreviewFollow, ASavedFileHasThePictureDrawnAgain) {
    theme("A", kMagenta);
    RunningCommand running({"preview", "../A", "--follow", "-o", "a.png", "--quiet"}, setting());
    std::string lines = "a.png: 1125 × 2436 pixels, iOS 13.3, phone\n";
    const std::string line = lines;
    ASSERT_TRUE(running.waitForText(lines));
    EXPECT_GT(picture("work/a.png").count(kMagenta), 0);

    theme("A", kLime);
    ASSERT_TRUE(running.waitForText(lines += line));
    EXPECT_GT(picture("work/a.png").count(kLime), 0);
    EXPECT_EQ(picture("work/a.png").count(kMagenta), 0);

    // A theme that is gone is waited for; another folder in its place is the theme.
    fs::remove_all(folder / "A");
    ASSERT_TRUE(running.waitForText("velmoranth: warning: ../A: there is no such theme folder\n"));
    theme("B", kMagenta);
    fs::rename(folder / "B", folder / "A");
    ASSERT_TRUE(running.waitForText(lines += line));
    EXPECT_GT(picture("work/a.png").count(kMagenta), 0);

    running.signal(SIGINT);
    const CommandResult result = running.finish();
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.output, lines) << "nothing is drawn that has not changed";
    EXPECT_NE(
        result.errors.find("following; a file of the themes that is saved has it drawn again"),
        std::string::npos);
    EXPECT_EQ(folder.names("tmp"), "");
}

// Once each time that it is something else: a save that changes no count is not told.
TEST_F(PreviewFollow, WhatTheThemesDoIsToldWhenItChanges) {
    theme("A", kMagenta);
    RunningCommand running({"preview", "../A", "--follow"}, setting());
    const std::string line = "preview.png: 1125 × 2436 pixels, iOS 13.3, phone\n";
    std::string lines = line;
    ASSERT_TRUE(running.waitForText(lines));
    const std::string told =
        "velmoranth: 1 of 46 apps has an icon of the theme; nothing for 45 apps (velmoranth "
        "explain "
        "../A -- icon '*')\n";
    ASSERT_TRUE(running.waitForText(told));
    theme("A", kLime);
    ASSERT_TRUE(running.waitForText(lines += line));
    EXPECT_FALSE(running.waitForText(told + told, std::chrono::seconds(5)));
    const std::string icons = "A/IconBundles/com.apple.";
    fs::copy(folder / (icons + "Preferences-large.png"), folder / (icons + "Maps-large.png"));
    ASSERT_TRUE(running.waitForText(lines += line));
    ASSERT_TRUE(running.waitForText("velmoranth: 2 of 46 apps have an icon of the theme; "));
    folder.file("A/Icons/com.apple.News.png", folder.contents(icons + "Maps-large.png"));
    ASSERT_TRUE(running.waitForText("velmoranth: A: 1 icon lies under a name that nothing looks "));
    running.signal(SIGINT);
    const std::string errors = running.finish().errors;
    EXPECT_EQ(errors.find("1 of 46 apps"), errors.rfind("1 of 46 apps")) << errors;
}

TEST_F(PreviewRoot, ASavedFileOfTheDeviceHasThePictureDrawnAgain) {
    activate("A");
    RunningCommand running({"preview", "--root", "../device", "--follow", "--quiet"}, setting());
    const std::string line = "preview.png: 1125 × 2436 pixels, iOS 13.3, phone\n";
    ASSERT_TRUE(running.waitForText(line));
    theme("device/Library/Themes/A", kLime);
    ASSERT_TRUE(running.waitForText(line + line));
    EXPECT_GT(picture().count(kLime), 0);
    running.signal(SIGINT);
    EXPECT_EQ(running.finish().signal, SIGINT);
}

TEST_F(PreviewTest, FollowDoesNotTakeItsOwnPictureForAChange) {
    theme("work", kMagenta);
    RunningCommand running({"preview", ".", "--follow", "--quiet"}, setting());
    const std::string line = "preview.png: 1125 × 2436 pixels, iOS 13.3, phone\n";
    ASSERT_TRUE(running.waitForText(line));
    EXPECT_FALSE(running.waitForText(line + line, std::chrono::milliseconds(2500)));
    theme("work", kLime);
    ASSERT_TRUE(running.waitForText(line + line));
    EXPECT_GT(picture().count(kLime), 0);
    running.signal(SIGINT);
    EXPECT_EQ(running.finish().signal, SIGINT);
}

// The process that has a socket there; 0 when there is none.
pid_t listeningProcess(const std::string& sockets) {
    for (const auto& entry : fs::directory_iterator(sockets)) {
        return std::stoi(entry.path().filename());
    }
    return 0;
}

TEST_F(PreviewRoot, ASocketGoesHoweverItsProcessEnds) {
    activate("A");
    const std::string sockets = folder / "device/private/var/run/notifications";
    const auto isGone = [&] {
        for (int i = 0; i < 500 && listeningProcess(sockets) != 0; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return listeningProcess(sockets) == 0;
    };
    const std::vector<std::string> words{"preview", "--root", "../device", "--follow", "--quiet"};
    const std::string line = "preview.png: 1125 × 2436 pixels, iOS 13.3, phone\n";
    {  // killed itself
        RunningCommand running(words, setting());
        ASSERT_TRUE(running.waitForText(line));
        ASSERT_GT(listeningProcess(sockets), 0);
        ::kill(listeningProcess(sockets), SIGKILL);
        EXPECT_EQ(running.finish().code, 3);
        EXPECT_EQ(listeningProcess(sockets), 0);
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {  // its launcher interrupted
        RunningCommand running(words, setting());
        ASSERT_TRUE(running.waitForText(line));
        ASSERT_GT(listeningProcess(sockets), 0);
        running.signal(signal);
        EXPECT_EQ(running.finish().signal, signal);
        EXPECT_EQ(listeningProcess(sockets), 0) << signal;
    }
    {  // its launcher killed
        RunningCommand running(words, setting());
        ASSERT_TRUE(running.waitForText(line));
        ASSERT_GT(listeningProcess(sockets), 0);
        running.signal(SIGKILL);
        EXPECT_TRUE(isGone());
        EXPECT_EQ(running.finish().signal, SIGKILL);
    }
    {  // both
        RunningCommand running(words, setting());
        ASSERT_TRUE(running.waitForText(line));
        const pid_t process = listeningProcess(sockets);
        ASSERT_GT(process, 0);
        ::kill(process, SIGSTOP);
        running.signal(SIGKILL);
        ::kill(process, SIGKILL);
        EXPECT_EQ(running.finish().signal, SIGKILL);
        EXPECT_EQ(preview({"--root", "../device"}).code, 0);
        EXPECT_TRUE(isGone());
    }
}

TEST_F(PreviewRoot, AFolderThatIsNoDeviceIsLeftAsItIs) {
    theme("A", kMagenta);
    for (std::vector<std::string> words : std::vector<std::vector<std::string>>{
             {"preview"}, {"notify", "prefs"}, {"sound", "lock"}, {"device", "respring"}}) {
        const std::string command = words.front();
        words.insert(words.end(), {"--root", "../A"});
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 3) << command;
        EXPECT_EQ(result.errors,
                  "velmoranth: error: ../A: this is no device: it has no folder "
                  "User/Library/Preferences; velmoranth device init makes one\n");
        EXPECT_EQ(folder.names("A"), "IconBundles");
    }
}

}  // namespace
}  // namespace velmoranth::cli::preview_follow_test
