// What velmoranth explain says of a device of the user's own.
#include "tests/cli/explain_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmoranth::cli::explain_device_test {
namespace {

constexpr const char* kPreferences =
    "device/User/Library/Preferences/com.qor.velmoranthprefs.plist";

class ExplainDeviceTest : public ExplainTest {
  protected:
    void SetUp() override {
        ExplainTest::SetUp();
        ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
        for (const std::string name : {"A", "B"}) {
            picture("../device/Library/Themes/" + name + "/" + kMaps);
        }
    }

    void prefer(const std::string& entries) const {
        folder.file(kPreferences, "<plist><dict>" + entries + "</dict></plist>");
    }

    [[nodiscard]] static std::string active(const std::string& names) {
        return "<key>ActiveThemes</key><array>" + names + "</array>";
    }

    [[nodiscard]] CommandResult asked(const std::vector<std::string>& request) const {
        std::vector<std::string> words = {"--root", "../device", "--"};
        words.insert(words.end(), request.begin(), request.end());
        return explain(words);
    }

    [[nodiscard]] std::string maps() const {
        return lastLine(asked({"icon", "com.apple.Maps"}).output);
    }
};

TEST_F(ExplainDeviceTest, ItsThemesAreAskedInTheOrderOfItsPreferences) {
    prefer("<key>enable</key><true/>" + active("<string>B</string><string>A</string>"));
    const auto before = folder.tree("device");
    const CommandResult result = asked({"icon", "com.apple.Maps"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(
        lastLine(result.output),
        "B/IconBundles/com.apple.Maps-large.png shows, with the corners that the file has: no "
        "active theme has a mask that is used; it hides A/IconBundles/com.apple.Maps-large.png.");
    EXPECT_EQ(folder.tree("device"), before) << "the device stays as it is";
    EXPECT_EQ(folder.names("tmp"), "");
    prefer("<key>enable</key><true/>" + active("<string>A</string><string>A</string>"));
    EXPECT_TRUE(maps().starts_with("A/IconBundles/")) << "named twice";
}

TEST_F(ExplainDeviceTest, ItsSettingsCountAndNotThoseOfAPreview) {
    prefer(active("<string>A</string>"));
    const CommandResult off = asked({"icon", "com.apple.Maps"});
    EXPECT_EQ(off.code, 1);
    EXPECT_EQ(off.errors, "velmoranth: warning: ../" + std::string(kPreferences) +
                              ": \"enable\" is not on, so theming is off\n");
    EXPECT_EQ(lastLine(off.output),
              "The stock picture shows: enable is off; with it on, "
              "A/IconBundles/com.apple.Maps-large.png shows.");
    // A preview puts masks on icons; a device whose preferences do not name the switch does not.
    picture("../device/Library/Themes/A" + std::string(kMask), 180, kBlack);
    prefer("<key>enable</key><true/>" + active("<string>A</string>"));
    EXPECT_NE(maps().find("enableIconMask is off"), std::string::npos) << maps();
    prefer("<key>enable</key><true/><key>enableIconMask</key><true/>" +
           active("<string>A</string>"));
    EXPECT_NE(maps().find("cut out by A/Bundles"), std::string::npos) << maps();
}

TEST_F(ExplainDeviceTest, ADeviceThatNeverStartedHasTheFactorysPreferences) {
    folder.file(
        "device/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist",
        "<plist><dict><key>enable</key><true/>" + active("<string>B</string>") + "</dict></plist>");
    EXPECT_TRUE(maps().starts_with("B/IconBundles/")) << maps();
}

TEST_F(ExplainDeviceTest, ThemesThatLieElsewhereAreFoundAsTheDeviceFindsThem) {
    picture("Made.theme/" + std::string(kMaps));
    folder.link("device/Library/Themes/Linked", folder / "work/Made.theme");
    folder.link("device/Library/Themes/Inside", "/Library/Themes/B");
    prefer("<key>enable</key><true/>" +
           active("<string>Linked</string><string>Inside</string><string>None</string>"));
    EXPECT_NE(maps().find("Linked/IconBundles/com.apple.Maps-large.png shows"), std::string::npos);
    EXPECT_NE(maps().find("it hides Inside/IconBundles/com.apple.Maps-large.png"),
              std::string::npos);
    const CommandResult result = asked({"file", "Linked/" + std::string(kMaps)});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(result.errors.find("\"None\""), std::string::npos) << result.errors;
    EXPECT_TRUE(lastLine(result.output).starts_with("Linked/IconBundles/")) << result.output;
}

TEST_F(ExplainDeviceTest, ListsOfRequestsAreAskedAsWell) {
    prefer("<key>enable</key><true/>" + active("<string>A</string>"));
    folder.file("work/asks", "icon com.apple.Maps\n");
    const CommandResult result = explain({"--root", "../device", "--requests", "asks"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_TRUE(lastLine(result.output).starts_with("A/IconBundles/"));
}

TEST_F(ExplainDeviceTest, AFolderThatIsNoDeviceIsTold) {
    folder.folder("work/Theme");
    const CommandResult result = explain({"--root", "Theme", "--", "badge"});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors,
              "velmoranth: error: Theme: this is no device: it has no folder "
              "User/Library/Preferences; velmoranth device init makes one\n");
    EXPECT_EQ(folder.names("work/Theme"), "");
}

}  // namespace
}  // namespace velmoranth::cli::explain_device_test
