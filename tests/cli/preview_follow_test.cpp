// A device of the user's own, and following it.
#include "tests/cli/preview_fixture.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGINT

#include <string>

namespace velmoranth::cli::preview_follow_test {
namespace {

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

}  // namespace
}  // namespace velmoranth::cli::preview_follow_test
