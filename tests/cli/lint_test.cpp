// velmoranth lint, as a user runs it: a broken theme for each code, and themes in which nothing is
// wrong.
#include "tests/cli/lint_themes.h"
#include "tests/cli/preview_fixture.h"
#include "tests/support/archives/archive_writer.h"
#include "tests/support/places.h"

#include "makers/lint/codes.h"
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <map>
#include <ranges>
#include <set>
#include <string>

namespace velmoranth::cli::lint_test {
namespace {

namespace fs = std::filesystem;

const std::string kIcons = "IconBundles/";
const std::string kHome = "Bundles/com.apple.springboard/";
const std::string kMask = "Bundles/com.apple.mobileicons.framework/AppIconMask.png";

struct Broken {
    std::map<std::string, std::string> files;
    // "CODE FILE" of all that is found, in their order; the first is the one that it is for.
    std::vector<std::string> found;
};

std::vector<Broken> brokenThemes() {
    const std::string maps = kIcons + "com.apple.Maps-large.png";
    const std::string gray = pictureOf(60, 60, {0, 0, 0, 255});
    const std::string white = pictureOf(60, 60, {255, 255, 255, 255});
    const std::string mask = pictureOf(60, 60, {255, 255, 255, 255}, 40, {0, 0, 0, 255});
    const std::string gif = std::string(
        "GIF89a\x01\x00\x01\x00\x80\x00\x00\xFF\x00\xFF\x00\x00\x00"
        "\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02\x44\x01\x00\x3B",
        35);
    const std::string both = textOf("Date", "") + textOf("Day", "");
    return {
        {{{kIcons + "com.apple.Maps@3x.png", icon()}},
         {"icon-name IconBundles/com.apple.Maps@3x.png"}},
        {{{"Icons/Maps.png", icon()}}, {"icon-place Icons/Maps.png"}},
        {{{"AnemoneEffects/iPhoneOverlay~ipad.png", icon()}},
         {"image-name AnemoneEffects/iPhoneOverlay~ipad.png"}},
        {{{"Iconomatic/Folder.png", icon()}}, {"image-place Iconomatic/Folder.png"}},
        {{{"UIImages/SBBadgeBG.png", gray}}, {"part-name UIImages/SBBadgeBG.png"}},
        {{{"UIImages/SBDockBG@2x.png", gray}}, {"part-name UIImages/SBDockBG@2x.png"}},
        {{{kHome + "SBDockBG.png", gray}}, {"part-name " + kHome + "SBDockBG.png"}},
        {{{maps, ""}}, {"picture-empty " + maps}},
        {{{maps, icon().substr(0, icon().size() / 2)}}, {"picture-broken " + maps}},
        {{{kMask, white}}, {"mask-hides-everything " + kMask}},
        {{{kMask, pictureOf(60, 60, {0, 0, 0, 255}, 20)}}, {"mask-hides-nothing " + kMask}},
        {{{"Info.plist", "<plist><dict>\n<key>a</key>\n</dict></plist>"}},
         {"list-broken Info.plist"}},
        {{{"UISounds/lock.caf", "no sound"}}, {"sound-broken UISounds/lock.caf"}},
        {{{kIcons + "com.\xFF-large.png", icon()}},
         {"name-not-text IconBundles/com.\xEF\xBF\xBD-large.png"}},
        {{{kIcons + "com.apple.Calculator-large.png", icon()}},
         {"icon-case IconBundles/com.apple.Calculator-large.png"}},
        {{{"Bundles/com.burbn.instagram/Icon.png", icon()}},
         {"icon-in-bundle Bundles/com.burbn.instagram/Icon.png"}},
        {{{"Bundles/com.apple.preferences/WiFi.png", icon()}},
         {"settings-icon Bundles/com.apple.preferences/WiFi.png"}},
        {{{kHome + "sbbadgebg.png", gray}}, {"name-case " + kHome + "sbbadgebg.png"}},
        {{{"VelMoranth/Folder.png", gray}}, {"name-case VelMoranth/Folder.png"}},
        {{{"iconbundles/com.apple.Maps-large.png", icon()}},
         {"name-case iconbundles/com.apple.Maps-large.png"}},
        {{{"Velmoranth/Folder.png", gray}, {"Velmoranth/folder.png", gray}},
         {"name-case Velmoranth/folder.png", "one-device Velmoranth/Folder.png"}},
        // Names that a conversion does not know.
        {{{"velmoranthfolder.png", gray}}, {"name-case velmoranthfolder.png"}},
        {{{kHome + "anemfolderbackground.png@3x.png", gray}},
         {"name-case " + kHome + "anemfolderbackground.png@3x.png"}},
        {{{kIcons + "com.apple.mobiletimer-large.png", icon()}},
         {"clock-icon " + kIcons + "com.apple.mobiletimer-large.png"}},
        {{{kIcons + "com.apple.mobiletimer-large.png", icon()},
          {"Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare.png", icon()}},
         {}},
        // What a conversion notes of other files says nothing of the clock.
        {{{"Bundles/com.apple.preferences/WiFi.png", icon()},
          {"Bundles/com.apple.preferences-framework/WiFi.png", icon()}},
         {"settings-icon Bundles/com.apple.preferences-framework/WiFi.png"}},
        {{{"Velmoranth/Anything.png", gray}}, {"never-asked Velmoranth/Anything.png"}},
        {{{maps, pictureOf(180, 120, {1, 2, 3, 255})}}, {"icon-not-square " + maps}},
        {{{"UIImages/Pin~ipad.png", gray}}, {"odd-name UIImages/Pin~ipad.png"}},
        // A name that is looked for as it is, scale and all.
        {{{kHome + "SBDockBG@2x.png", gray}}, {"one-device " + kHome + "SBDockBG@2x.png"}},
        {{{kHome + "SBBadgeBG@3x.png", gray}}, {"scale-missing " + kHome + "SBBadgeBG@3x.png"}},
        {{{kHome + "SBDockBG@3x.png", gray}}, {"part-name " + kHome + "SBDockBG@3x.png"}},
        {{{kMask, pictureOf(60, 60, {0, 0, 255, 255}, 20)}}, {"mask-alpha " + kMask}},
        {{{"More.theme/Info.plist", ""}}, {"nested-theme More.theme"}},
        {{{maps, icon()},
          {"Info.plist",
           listOf(both + "<key>FuzzyBundleIdentifiers</key><array><string>com.apple.Maps.b"
                         "</string></array>")}},
         {"similar-icon Info.plist"}},
        {{{maps, "-> nowhere.png"}}, {"broken-link " + maps}},
        {{{"Info.plist", listOf("<key>PackageName</key><string>a</string>")}},
         {"calendar-missing Info.plist"}},
        {{{"Info.plist", listOf(textOf("Date", ""))}}, {"calendar-text-missing Info.plist"}},
        {{{"Info.plist",
           listOf(textOf("Date", "") +
                  textOf("Day", "", "<key>FontName</key><string>No Such Font</string>"))}},
         {"calendar-font Info.plist"}},
        {{{"Info.plist", listOf(both)}}, {}},
        {{{"Info.plist", listOf("<key>CalendarIconDateSettings</key><dict><key>FontName</key>"
                                "<string>Helvetica</string></dict>" +
                                textOf("Day", ""))}},
         {"calendar-overlap Info.plist"}},
        {{{"Info.plist", listOf(both)}, {kMask, mask}}, {"calendar-unmasked Info.plist"}},
        {{{"Info.plist", listOf(both + "<key>IB-MaskIcons</key><false/>")}, {kMask, mask}}, {}},
        {{{"Info.plist", listOf(textOf("Date", "<key>ShadowColor</key><string>#FF0000</string>") +
                                textOf("Day", ""))}},
         {"calendar-color Info.plist"}},
        {{{"Info.plist",
           listOf(textOf("Date", "<key>TextXoffset</key><array/>") + textOf("Day", ""))}},
         {"calendar-value Info.plist"}},
        {{{"Info.plist",
           listOf(textOf("Date", "<key>ShadowYOffset</key><real>1</real>") + textOf("Day", ""))}},
         {"calendar-key-misspelt Info.plist"}},
        {{{"Info.plist", listOf("<key>CalendarIconDayStyle</key><string>font-size:8px</string>" +
                                textOf("Date", ""))}},
         {"calendar-text-missing Info.plist", "calendar-style-sheet Info.plist"}},
        {{{"UISounds/gong.caf", "x"}}, {"sound-never-asked UISounds/gong.caf"}},
        {{{maps, icon()}, {kIcons + "com.apple.Maps@2x.png", icon()}},
         {"icon-spare IconBundles/com.apple.Maps@2x.png"}},
        {{{maps, pictureOf(60, 60, {0, 0, 0, 0})}}, {"icon-clear " + maps}},
        {{{maps, pictureOf(1025, 1025, {1, 2, 3, 255})}}, {"icon-too-large " + maps}},
        {{{maps, gif}}, {"not-png " + maps}},
        {{{"Velmoranth/iPhoneOverlay.png", icon()}}, {"one-device Velmoranth/iPhoneOverlay.png"}},
        {{{kHome + "SBBadgeBG@2x.png", gray}, {kHome + "SBBadgeBG@3x.png", gray}},
         {"scaled-only " + kHome + "SBBadgeBG@3x.png"}},
        {{{"Velmoranth/Folder.png", gray},
          {"Velmoranth/ipadFolder.png", gray},
          {kHome + "ANEMFolderIconBG.png", gray}},
         {"hidden " + kHome + "ANEMFolderIconBG.png"}},
        {{{"Bundles/com.a.b/Pin@3x.png", gray}, {"Bundles/com.a.b/Pin", gray}},
         {"hidden Bundles/com.a.b/Pin"}},
        {{{"UIImages/Pin.png", gray}, {"Bundles/com.apple.Maps/Pin.png", white}},
         {"shared-name UIImages/Pin.png"}},
        {{{kIcons + "com.apple.Maps-large 2.png", icon()}},
         {"leftover IconBundles/com.apple.Maps-large 2.png"}},
        {{{kIcons + "com.apple.Maps-dark.png", icon()}},
         {"newer-system IconBundles/com.apple.Maps-dark.png"}},
        {{{"Fonts/A.ttf", "font"}}, {"no-effect Fonts/A.ttf"}},
        {{{"work.psd", "layers"}}, {"no-theme-file work.psd"}},
        {{{".DS_Store", "x"}}, {"clutter .DS_Store"}},
        {{{"README.md", "x"}, {"docs/License", "x"}}, {}},
    };
}

class LintCommand : public PreviewTest {
  protected:
    [[nodiscard]] CommandResult lint(std::vector<std::string> words) const {
        words.insert(words.begin(), "lint");
        return runCommand(words, setting());
    }

    void put(const std::string& theme, const std::map<std::string, std::string>& files) const {
        folder.folder(theme);
        for (const auto& [name, contents] : files) {
            if (contents.starts_with("-> ")) {
                folder.folder(theme + "/" + fs::path(name).parent_path().string());
                folder.link(theme + "/" + name, contents.substr(3));
            } else {
                folder.file(theme + "/" + name, contents);
            }
        }
    }

    // "CODE FILE" of each.
    [[nodiscard]] std::vector<std::string> findings(const std::string& theme) const {
        const CommandResult result = lint({theme, "--json"});
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(folder.names("tmp"), "");
        std::vector<std::string> found;
        bool hasError = false;
        const auto report = nlohmann::json::parse(result.output);
        for (const auto& json : report["themes"][0]["findings"]) {
            found.push_back(json["code"].get<std::string>() + " " +
                            json["file"].get<std::string>());
            hasError = hasError || json["severity"] == "error";
        }
        EXPECT_EQ(result.code, hasError ? 1 : 0);
        return found;
    }
};

// Those whose first finding is as grave as that; nothing found counts as a note.
class BrokenThemes : public LintCommand, public testing::WithParamInterface<makers::Severity> {};

TEST_P(BrokenThemes, GiveTheirCodesAndNoOthers) {
    for (const Broken& broken : brokenThemes()) {
        const std::string first = broken.found.empty() ? "nothing" : broken.found.front();
        const auto* const row = makers::codeNamed(first.substr(0, first.find(' ')));
        if ((row == nullptr ? makers::Severity::note : row->severity) != GetParam()) {
            continue;
        }
        fs::remove_all(folder / "work/T.theme");
        put("work/T.theme", broken.files);
        EXPECT_EQ(findings("T.theme"), broken.found) << first;
    }
}

INSTANTIATE_TEST_SUITE_P(Severities, BrokenThemes,
                         testing::Values(makers::Severity::error, makers::Severity::warning,
                                         makers::Severity::note),
                         [](const auto& given) {
                             return std::string(makers::wordOf(given.param)) + "s";
                         });

TEST_F(LintCommand, EveryCodeHasABrokenTheme) {
    std::set<std::string> shown;
    for (const Broken& broken : brokenThemes()) {
        for (const std::string& found : broken.found) {
            shown.insert(found.substr(0, found.find(' ')));
        }
    }
    // Its theme is one that another user reads: LintAndConvert.WhatNobodyMayReadIsToldAsThat.
    shown.insert("unreadable");
    for (const makers::CodeRow& row : makers::codes()) {
        EXPECT_TRUE(shown.contains(std::string(row.code))) << row.code;
    }
}

TEST_F(LintCommand, ExampleThemeIsClean) {
    const CommandResult result = lint({tests::kExampleTheme});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "Kilnware.theme: 95 files, nothing found\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(LintCommand, TextSaysWhatIsWrongAndWhatToDo) {
    put("work/My Theme.theme", {{kIcons + "com.apple.Maps@3x.png", icon()}, {".DS_Store", "x"}});
    const CommandResult result = lint({"My Theme.theme"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "My Theme.theme: 2 files, 1 error, 1 note\n"
              "  error    icon-name             IconBundles/com.apple.Maps@3x.png: nothing looks "
              "for an icon under this name; IconBundles/com.apple.Maps-large.png is what is looked "
              "for; call it IconBundles/com.apple.Maps-large.png\n"
              "  note     clutter               .DS_Store: left behind by an archiver or a file "
              "manager; remove it\n"
              "velmoranth convert 'My Theme.theme' -o FOLDER mends 1 of these and leaves out 1\n");
}

TEST_F(LintCommand, HowGraveAFindingIsHasAColor) {
    put("work/A", {{kIcons + "com.apple.Maps@3x.png", icon()},
                   {"UIImages/Pin~ipad.png", icon()},
                   {".DS_Store", "x"}});
    const std::string text = lint({"A", "--color", "always"}).output;
    EXPECT_NE(text.find("\n  \033[1;31merror   \033[0m icon-name "), std::string::npos) << text;
    EXPECT_NE(text.find("\n  \033[1;33mwarning \033[0m odd-name "), std::string::npos) << text;
    EXPECT_NE(text.find("\n  note     clutter "), std::string::npos) << text;
    EXPECT_EQ(lint({"A"}).output.find('\033'), std::string::npos);
}

TEST_F(LintCommand, APictureThatIsNoPngIsToBeSavedAsOne) {
    put("work/A", {{"IconBundles/com.apple.Maps-large.JPG", icon()}});
    const std::string text = lint({"A"}).output;
    EXPECT_NE(
        text.find("IconBundles/com.apple.Maps-large.JPG: nothing looks for this file; "
                  "IconBundles/com.apple.Maps-large.png is looked for, and missing; save it as "
                  "a PNG file and call that IconBundles/com.apple.Maps-large.png\n"),
        std::string::npos)
        << text;
}

TEST_F(LintCommand, OfManyFilesOfACodeTheFirstAreShown) {
    std::map<std::string, std::string> files;
    for (int i = 0; i < 12; ++i) {
        files[kIcons + "com.example.app" + std::to_string(10 + i) + "@2x.png"] = icon();
    }
    put("work/T.theme", files);
    const std::string some = lint({"T.theme"}).output;
    EXPECT_NE(some.find("app19@2x.png"), std::string::npos);
    EXPECT_EQ(some.find("app20@2x.png"), std::string::npos);
    EXPECT_NE(some.find("\n  error    icon-name             2 more (--all)\n"), std::string::npos);
    const std::string all = lint({"T.theme", "--all"}).output;
    EXPECT_NE(all.find("app21@2x.png"), std::string::npos);
    EXPECT_EQ(all.find("more (--all)"), std::string::npos);
}

TEST_F(LintCommand, ProgramsAreToldTheSame) {
    put("work/T.theme", {{"Info.plist", "<plist><dict>\n<key>a</key>\n</dict></plist>"}});
    const CommandResult result = lint({"T.theme", "--json"});
    EXPECT_EQ(result.code, 1);
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json["version"], 1);
    const auto& theme = json["themes"][0];
    EXPECT_EQ(theme["name"], "T.theme");
    EXPECT_EQ(theme["input"], "T.theme");
    EXPECT_EQ(theme["files"], 1);
    EXPECT_EQ(theme["errors"], 1);
    EXPECT_EQ(theme["warnings"], 0);
    EXPECT_EQ(theme["notes"], 0);
    const auto& finding = theme["findings"][0];
    EXPECT_EQ(finding["code"], "list-broken");
    EXPECT_EQ(finding["severity"], "error");
    EXPECT_EQ(finding["file"], "Info.plist");
    EXPECT_EQ(finding["line"], 3);
    EXPECT_GT(finding["column"], 0);
    EXPECT_EQ(finding["isMendedByConvert"], false);
    EXPECT_EQ(finding["fix"], "mend the text at that place");
}

TEST_F(LintCommand, PackagesAndArchivesAreCheckedAsTheyAre) {
    const std::string maps = kIcons + "com.apple.Maps-large.png";
    folder.file("work/old.deb", tests::packageOf({{"./Library/Themes/A.theme/" + maps, icon()},
                                                  {"./Library/Themes/B.theme/" + maps, ""}}));
    const CommandResult result = lint({"old.deb"});
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(
        result.output.starts_with("A.theme: 1 file, nothing found\nB.theme: 1 file, 1 error"))
        << result.output;
    folder.file("work/flat.zip", tests::zipOf({{"com.apple.Maps@2x.png", icon()}}));
    EXPECT_EQ(findings("flat.zip"), std::vector<std::string>{"icon-place com.apple.Maps@2x.png"});
}

TEST_F(LintCommand, WhatConvertMendsIsGoneOnceItHas) {
    const std::string plain = textOf("Date", "<key>ShadowColor</key><string>#FF0000</string>");
    put("work/T.theme",
        {{kIcons + "com.apple.Maps@3x.png", icon()},
         {kIcons + "com.apple.Calculator-large.png", icon()},
         {kIcons + "com.apple.mobilemail-large.png", pictureOf(1030, 1030, {1, 2, 3, 255})},
         {kIcons + "com.apple.mobilemail@2x.png", icon()},
         {kMask, pictureOf(60, 60, {0, 0, 0, 255}, 20)},
         {"Iconomatic/Folder.png", icon()},
         {"VelMoranth/iphoneoverlay.png", icon()},
         {"VelMoranth/ipadoverlay.png", icon()},
         {"bundles/com.apple.Springboard/SBDockBG@2x.PNG", icon()},
         {kHome + "SBBadgeBG@3x.png", icon()},
         {"Info.plist", listOf(plain)},
         {".DS_Store", "x"},
         {"UISounds/gong.caf", "x"}});
    const auto before = nlohmann::json::parse(lint({"T.theme", "--json"}).output);
    std::vector<std::string> stay;
    std::size_t mended = 0;
    for (const auto& finding : before["themes"][0]["findings"]) {
        if (finding["isMendedByConvert"] == true || finding["isLeftOutByConvert"] == true) {
            ++mended;
        } else {
            stay.push_back(finding["code"].get<std::string>() + " " +
                           finding["file"].get<std::string>());
        }
    }
    EXPECT_GE(mended, 12U);
    ASSERT_EQ(runCommand({"convert", "T.theme", "-o", "out"}, setting()).code, 0);
    // A phone alone has a dock and a folder's plate now, which nothing had before.
    stay.emplace_back("one-device Bundles/com.apple.springboard/SBDockBG@2x.png");
    stay.emplace_back("one-device Velmoranth/Folder.png");
    EXPECT_EQ(findings("out/T.theme"), stay);
}

TEST_F(LintCommand, CodesAreExplained) {
    for (const makers::CodeRow& row : makers::codes()) {
        const CommandResult result = lint({"--explain", std::string(row.code)});
        EXPECT_EQ(result.code, 0);
        EXPECT_TRUE(result.output.starts_with(std::string(row.code) + " (")) << result.output;
        EXPECT_NE(result.output.find(row.explanation), std::string::npos);
    }
    EXPECT_EQ(
        lint({"--explain", "icon-name"}).output,
        "icon-name (error): nothing looks for an icon under this name.\n\n"
        "An app's icon is looked for as IconBundles/<identifier>-large.png and under no other "
        "name: neither with a scale (@2x, @3x) nor with a device (~iphone, ~ipad), nor "
        "without -large.\n\n"
        "What to do: call it IconBundles/<identifier>-large.png.\n"
        "velmoranth convert gives it the name that is looked for.\n");
    const CommandResult wrong = lint({"--explain", "icon-nam"});
    EXPECT_EQ(wrong.code, 2);
    EXPECT_EQ(wrong.errors,
              "velmoranth: error: there is no code \"icon-nam\"; did you mean icon-name?\n");
}

// On the device that is asked it does not fit, though it does here.
TEST_F(LintCommand, AFileWhosePathIsTooLongIsNamedAsTheUserKnowsIt) {
    const std::filesystem::path before = std::filesystem::current_path();
    folder.folder("work/T.theme/Bundles");
    std::filesystem::current_path(folder / "work/T.theme/Bundles");
    constexpr int kFolders = 20;
    for (int number = 0; number < kFolders; ++number) {
        std::filesystem::create_directory(std::string(200, 'f'));
        std::filesystem::current_path(std::string(200, 'f'));
    }
    std::ofstream(std::string(45, 'a')) << "x";
    std::filesystem::current_path(before);
    const CommandResult result = lint({"T.theme"});
    EXPECT_EQ(result.code, 3);
    EXPECT_TRUE(result.errors.starts_with("velmoranth: error: T.theme/Bundles/fff"))
        << result.errors;
    EXPECT_TRUE(result.errors.ends_with("aaa: file name too long\n")) << result.errors;
}

TEST_F(LintCommand, WhatCannotBeCheckedIsRefusedInOneLine) {
    folder.file("work/note.txt", "x");
    folder.folder("work/empty");
    const std::vector<std::tuple<std::vector<std::string>, int, std::string>> refused{
        {{}, 2, "a THEME is missing; velmoranth lint --help"},
        {{""}, 2, "a THEME is missing; velmoranth lint --help"},
        {{"T", "--explain", "clutter"}, 2, "--explain CODE stands alone"},
        {{"T", "--json", "--all"}, 2, "--json has all findings; --all goes without it"},
        {{"nowhere"}, 3, "nowhere: there is no such theme folder"},
        {{"empty"},
         3,
         "empty: there is no theme in it: no folder IconBundles, Bundles or UIImages, and no "
         "pictures named for apps"},
    };
    for (const auto& [words, code, line] : refused) {
        const CommandResult result = lint(words);
        EXPECT_EQ(result.code, code) << line;
        EXPECT_EQ(result.errors, "velmoranth: error: " + line + "\n");
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(folder.names("tmp"), "");
    }
    EXPECT_EQ(lint({"note.txt"}).code, 3);
}

TEST_F(LintCommand, RealThemesHaveNoErrors) {
    const fs::path samples = tests::samples("themes");
    if (!fs::is_directory(samples)) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    // What is wrong with each, looked at by a person: how many findings have the code.
    using Codes = std::map<std::string, int>;
    const Codes folderMask{{"calendar-missing", 1}, {"no-effect", 2}, {"odd-name", 2}};
    const Codes badge{{"calendar-missing", 1}, {"no-effect", 2}, {"scaled-only", 1}};
    const Codes limelight{{"calendar-color", 3}, {"calendar-font", 1}, {"calendar-value", 1},
                          {"no-effect", 1},      {"odd-name", 2},      {"scaled-only", 1}};
    const std::map<std::string, Codes> expected{
        {"(Misc) ⚙️ Settings Icons.theme",
         {{"calendar-missing", 1}, {"no-effect", 1}, {"settings-icon", 60}, {"shared-name", 2}}},
        {"(Misc) 📁 Folder Mask Colored + Glow.theme", folderMask},
        {"(Misc) 📁 Folder Mask Colored.theme", folderMask},
        {"(Misc) 📁 Folder Mask White + Glow.theme", folderMask},
        {"(Misc) 📁 Folder Mask White.theme", folderMask},
        {"(Misc) 🔺 Badge Large.theme", badge},
        {"(Misc) 🔺 Badge Small.theme", badge},
        {"(Misc) 🚫 Hide Dock.theme",
         {{"calendar-missing", 1}, {"no-effect", 2}, {"odd-name", 4}, {"scaled-only", 2}}},
        {"(Misc) 🚫 Hide Folder Background",
         {{"calendar-missing", 1}, {"no-effect", 1}, {"odd-name", 2}}},
        {"(Misc) 🚫 Hide Icon Labels.theme", {{"calendar-missing", 1}, {"no-effect", 2}}},
        {"Limelight Glow.theme", limelight},
        {"Limelight.theme", limelight},
        {"thelmgn.theme", {{"calendar-missing", 1}, {"icon-case", 1}, {"no-theme-file", 1}}},
    };
    std::map<std::string, Codes> found;
    for (const fs::directory_entry& maker : fs::directory_iterator(samples)) {
        if (!maker.is_directory()) {
            continue;
        }
        for (const fs::directory_entry& theme : fs::directory_iterator(maker)) {
            if (theme.is_directory()) {
                Codes& codes = found[theme.path().filename()];
                for (const std::string& one : findings(theme.path())) {
                    ++codes[one.substr(0, one.find(' '))];
                }
            }
        }
    }
    for (const auto& [name, codes] : expected) {
        EXPECT_EQ(found[name], codes) << name;
    }
    EXPECT_EQ(found.size(), expected.size());
}

}  // namespace
}  // namespace velmoranth::cli::lint_test
