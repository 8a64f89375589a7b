// The commands that velmoranth preview names for more: they can be pasted, and ask the very device
// that is shown.
#include "tests/cli/preview_fixture.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli::preview_hint_test {
namespace {

constexpr const char* kMaps = "/IconBundles/com.apple.maps.png";  // a capital letter short

class PreviewHint : public PreviewTest {
  protected:
    PreviewHint() {
        folder.file("work/apps", "com.apple.news\ncom.example.mine Mine\ncom.example.other\n");
    }

    // A picture under that name.
    void picture(const std::string& name) const {
        theme("made", kMagenta);
        folder.file(name, folder.contents("made/IconBundles/com.apple.Preferences-large.png"));
    }

    [[nodiscard]] std::string report(std::vector<std::string> words) const {
        words.insert(words.begin(), "preview");
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 0) << result.errors;
        return result.errors;
    }

    // What stands between the parentheses that begin behind the text.
    [[nodiscard]] static std::string hintBehind(const std::string& text, const std::string& said) {
        const std::size_t at = said.find(text);
        const std::size_t begin = said.find(" (velmoranth ", at);
        EXPECT_NE(at, std::string::npos) << said;
        EXPECT_NE(begin, std::string::npos) << said;
        return at == std::string::npos || begin == std::string::npos
                   ? ""
                   : said.substr(begin + 2, said.find(")\n", begin) - begin - 2);
    }

    // As a shell that it is pasted into would run it.
    [[nodiscard]] CommandResult paste(const std::string& command) const {
        std::vector<std::string> words;
        const std::string all = "printf '%s\\n' " + command;
        std::FILE* const shell = ::popen(all.c_str(), "r");
        std::array<char, 1000> line{};
        while (shell != nullptr && std::fgets(line.data(), line.size(), shell) != nullptr) {
            words.emplace_back(line.data());
            words.back().pop_back();
        }
        EXPECT_TRUE(shell != nullptr && ::pclose(shell) == 0);
        EXPECT_FALSE(words.empty());
        if (!words.empty()) {
            EXPECT_EQ(words.front(), "velmoranth");
            words.erase(words.begin());
        }
        return runCommand(words, setting());
    }

    void makeDevice(const std::string& active) const {
        EXPECT_EQ(runCommand({"device", "init", folder / "my device"}).code, 0);
        EXPECT_EQ(runCommand({"settings", "set", "enable=yes", "ActiveThemes=" + active, "--root",
                              folder / "my device"})
                      .code,
                  0);
    }
};

TEST_F(PreviewHint, HasTheOptionsOfTheDevice) {
    picture("work/My Theme/IconBundles/com.apple.Maps-large.png");
    const std::string said = report({"My Theme",
                                     "--locale",
                                     "de",
                                     "--set",
                                     "enable=no",
                                     "--ios",
                                     "12",
                                     "--exact-files",
                                     "--device",
                                     "pad",
                                     "--orientation",
                                     "landscape",
                                     "--date",
                                     "2019-12-24",
                                     "--set",
                                     "removeDock=yes",
                                     "--apps",
                                     "apps",
                                     "--page",
                                     "1"});
    const std::string hint = hintBehind("nothing for 3 apps", said);
    EXPECT_EQ(hint,
              "velmoranth explain 'My Theme' --ios 12 --device pad --orientation landscape --set "
              "enable=no --set removeDock=yes --date 2019-12-24 --locale de --exact-files -- icon "
              "com.example.mine");
    const CommandResult told = paste(hint);
    EXPECT_EQ(told.code, 1) << told.errors;
    EXPECT_NE(told.output.find("\nsetting    enable is off\n"), std::string::npos) << told.output;
    EXPECT_NE(told.output.find("+[UIImage _applicationIconImageForBundleIdentifier:"),
              std::string::npos)
        << "of iOS 12: " << told.output;
}

TEST_F(PreviewHint, OfASheetHasItsFirstDevice) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    const std::string rest = " -- icon com.example.mine";
    const std::string said = report({"A", "--sheet", "--screen", "home", "--ios", "12,13",
                                     "--device", "pad,phone", "--apps", "apps"});
    EXPECT_EQ(hintBehind("nothing for 3 apps", said),
              "velmoranth explain A --ios 12 --device pad" + rest);
    EXPECT_EQ(hintBehind("nothing for 3 apps",
                         report({"A", "--screen", "home", "--apps", "apps", "--page", "1"})),
              "velmoranth explain A" + rest);
}

TEST_F(PreviewHint, OfADeviceNamesTheDevice) {
    makeDevice("A");
    picture(std::string("my device/Library/Themes/A") + kMaps);
    const std::string said = report({"--root", "../my device", "--ios", "12"});
    EXPECT_EQ(hintBehind("nothing for 46 apps", said),
              "velmoranth explain --root '../my device' --ios 12 -- icon '*'");
    const std::string hint = hintBehind("1 file lies where nothing looks", said);
    EXPECT_EQ(hint,
              "velmoranth explain --root '../my device' --ios 12 -- file "
              "IconBundles/com.apple.maps.png");
    const CommandResult told = paste(hint);
    EXPECT_EQ(told.code, 1) << told.errors;
    EXPECT_NE(told.output.find("IconBundles/com.apple.Maps-large.png"), std::string::npos)
        << told.output;
}

// Both have a file of the name, and that of the first is what is looked for.
TEST_F(PreviewHint, OfSeveralThemesSaysWhoseFileItIs) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    picture(std::string("work/B") + kMaps);
    const std::string hint = hintBehind("1 file lies where nothing looks", report({"A", "B"}));
    EXPECT_EQ(hint, "velmoranth explain A B -- file B/IconBundles/com.apple.maps.png");
    const CommandResult told = paste(hint);
    EXPECT_EQ(told.code, 1) << told.errors;
    EXPECT_EQ(told.errors, "");
    EXPECT_NE(told.output.find("IconBundles/com.apple.maps.png"), std::string::npos) << told.output;
}

TEST_F(PreviewHint, OfAppsThatTheDeviceHasNamesThemAll) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    folder.file("work/apps", "com.apple.news\ncom.apple.Maps\n");
    EXPECT_EQ(hintBehind("nothing for 1 app", report({"A", "--apps", "apps"})),
              "velmoranth explain A -- icon '*'");
}

}  // namespace
}  // namespace velmoranth::cli::preview_hint_test
