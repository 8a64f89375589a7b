// What velmoranth lint says that a conversion would do is what velmoranth convert does.
#include "tests/cli/ordinary_user.h"
#include "tests/cli/preview_fixture.h"

#include <nlohmann/json.hpp>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace velmoranth::cli::lint_convert_test {
namespace {

namespace fs = std::filesystem;

using Names = std::set<std::string>;

enum class Kind { picture, mask, whiteMask, redMask, large, empty, broken, text };

std::string bytesOf(Kind kind) {
    const std::size_t side = kind == Kind::large ? 1030 : 60;
    if (kind == Kind::empty || kind == Kind::broken || kind == Kind::text) {
        return kind == Kind::empty ? "" : "\x89PNG no picture";
    }
    std::vector<std::uint8_t> pixels;
    for (std::size_t i = 0; i < side * side; ++i) {
        const bool isClear = i < side && kind != Kind::picture && kind != Kind::large;
        const std::uint8_t blue = kind == Kind::whiteMask ? 255 : 0;
        const std::uint8_t red = kind == Kind::mask ? 0 : 255;
        const std::array<std::uint8_t, 4> pixel{blue, blue, red, 255};
        const std::array<std::uint8_t, 4> clear{0, 0, 0, 0};
        pixels.insert(pixels.end(), isClear ? clear.begin() : pixel.begin(),
                      isClear ? clear.end() : pixel.end());
    }
    const auto png = desktop::encodePng(pixels, side, side, side * 4);
    return {png.begin(), png.end()};
}

const std::string kHome = "Bundles/com.apple.springboard/";
const std::string kMask = "Bundles/com.apple.mobileicons.framework/AppIconMask";
const std::string kIcons = "IconBundles/";

struct Row {
    std::map<std::string, Kind> files;
    // "CODE FILE" of each error and warning.
    Names found;
};

// Under the names of the tests.
std::map<std::string, std::vector<Row>> rows() {
    const auto picture = [](const std::vector<std::string>& names) {
        std::map<std::string, Kind> files;
        for (const std::string& name : names) {
            files[name] = Kind::picture;
        }
        return files;
    };
    const std::string effects = "AnemoneEffects/iPhoneOverlay";
    return {
        {"masks",
         {{{{kMask + "@2x~iphone.png", Kind::mask}},
           {"image-name " + kMask + "@2x~iphone.png",
            "mask-hides-nothing " + kMask + "@2x~iphone.png"}},
          {{{kMask + "~ipad.png", Kind::mask}},
           {"image-name " + kMask + "~ipad.png", "mask-hides-nothing " + kMask + "~ipad.png"}},
          {{{"com.apple.mobileicons.framework/AppIconMask@3x~iphone.png", Kind::mask}},
           {"image-name com.apple.mobileicons.framework/AppIconMask@3x~iphone.png",
            "mask-hides-nothing com.apple.mobileicons.framework/AppIconMask@3x~iphone.png"}},
          {{{kMask + ".png", Kind::mask}, {kMask + "@2x~iphone.png", Kind::mask}},
           {"mask-hides-nothing " + kMask + ".png",
            "mask-hides-nothing " + kMask + "@2x~iphone.png",
            "odd-name " + kMask + "@2x~iphone.png"}},
          {{{kMask + "@3x.png", Kind::mask}},
           {"mask-hides-nothing " + kMask + "@3x.png", "scale-missing " + kMask + "@3x.png"}},
          {{{kMask + ".png", Kind::redMask}}, {"mask-alpha " + kMask + ".png"}},
          {{{kMask + "~ipad.png", Kind::whiteMask}, {kMask + ".png", Kind::picture}},
           {"mask-alpha " + kMask + "~ipad.png", "odd-name " + kMask + "~ipad.png",
            "mask-hides-everything " + kMask + ".png"}}}},
        {"parts",
         {{picture({kHome + "SBDockBG@3x.png"}), {"part-name " + kHome + "SBDockBG@3x.png"}},
          {picture({kHome + "SBDockBG.png"}), {"part-name " + kHome + "SBDockBG.png"}},
          {picture({kHome + "SBDockBG@2x~ipad.png"}),
           {"image-name " + kHome + "SBDockBG@2x~ipad.png"}},
          {picture({effects + "~ipad.png"}), {"image-name " + effects + "~ipad.png"}},
          {picture({effects + ".png", effects + "~ipad.png"}),
           {"never-asked " + effects + "~ipad.png"}},
          {picture({effects + "@3x.png"}), {"scale-missing " + effects + "@3x.png"}},
          {picture({kHome + "SBBadgeBG~ipad.png"}), {"image-name " + kHome + "SBBadgeBG~ipad.png"}},
          {picture({kHome + "SBBadgeBG@3x.png", kHome + "SBBadgeBG@2x.png"}), {}},
          {picture({kHome + "sbbadgebg@3X.png"}), {"name-case " + kHome + "sbbadgebg@3X.png"}},
          {picture({"UIImages/UIPageIndicator@2x.png", "UIImages/UIPageIndicator@3x.png"}),
           {"part-name UIImages/UIPageIndicator@2x.png",
            "part-name UIImages/UIPageIndicator@3x.png"}},
          {picture({"Iconomatic/Folder.png"}), {"image-place Iconomatic/Folder.png"}},
          {picture({"Iconomatic/Folder.png", "Velmoranth/Folder.png"}),
           {"never-asked Iconomatic/Folder.png"}},
          {picture({"UIImages/Pin~ipad.png"}), {"odd-name UIImages/Pin~ipad.png"}}}},
        {"names",
         {{picture({"com.apple.Maps.png", "Velmoranthfolder.png", "AppIconMask.png"}),
           {"icon-place com.apple.Maps.png", "name-case Velmoranthfolder.png",
            "never-asked AppIconMask.png"}},
          // What is looked for beside the folders is no icon of nobody.
          {picture({"com.apple.Maps.png", "VelmoranthFolder.png"}),
           {"icon-place com.apple.Maps.png"}},
          {picture({"com.apple.mobilesms.png", kIcons + "com.a.b-large.png"}),
           {"icon-place com.apple.mobilesms.png"}},
          {picture({"Photos.png", "photos.PNG", "Nobody.png"}),
           {"icon-place Photos.png", "never-asked Nobody.png"}},
          {picture({"iconbundles/com.a.b.png", "uiimages/UIPageIndicator.png"}),
           {"name-case iconbundles/com.a.b.png", "name-case uiimages/UIPageIndicator.png"}},
          {picture({"Folders/Maps.app/Icon.png", "Folders/Maps.app/Pin.png"}),
           {"icon-in-bundle Folders/Maps.app/Icon.png", "image-place Folders/Maps.app/Icon.png",
            "image-place Folders/Maps.app/Pin.png"}},
          {{{kIcons + "com.a.b@3x.png", Kind::large}, {kIcons + "com.a.b@2x.png", Kind::picture}},
           {"icon-name " + kIcons + "com.a.b@3x.png"}},
          {{{kIcons + "com.a.b-large.png", Kind::empty},
            {kIcons + "com.a.c-large.png", Kind::broken},
            {"UIImages/Pin.png", Kind::broken},
            {"wallpaper.txt", Kind::text},
            {kIcons + "com.a.d 2.png", Kind::picture},
            {".DS_Store", Kind::text}},
           {"picture-broken " + kIcons + "com.a.c-large.png", "picture-broken UIImages/Pin.png",
            "picture-empty " + kIcons + "com.a.b-large.png"}},
          {picture({kIcons + "com.apple.Maps-large.png", "More.theme/IconBundles/com.a.b@2x.png"}),
           {"nested-theme More.theme"}}}}};
}

class LintAndConvert : public PreviewTest {
  protected:
    [[nodiscard]] nlohmann::json reportOf(std::vector<std::string> words) const {
        words.emplace_back("--json");
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.errors, "");
        return nlohmann::json::parse(result.output, nullptr, false);
    }

    struct Lint {
        Names all;    // "CODE FILE"
        Names grave;  // errors and warnings
        Names mended;
        Names mendedFiles;
        Names leftOutFiles;
    };

    [[nodiscard]] Lint lint(const std::string& theme) const {
        Lint lint;
        const auto report = reportOf({"lint", theme});
        for (const auto& finding : report["themes"][0]["findings"]) {
            const std::string file = finding["file"];
            const std::string what = finding["code"].get<std::string>() + " " + file;
            lint.all.insert(what);
            if (finding["severity"] != "note") {
                lint.grave.insert(what);
            }
            if (finding["isMendedByConvert"] == true) {
                lint.mended.insert(what);
                lint.mendedFiles.insert(file);
            }
            if (finding["isLeftOutByConvert"] == true) {
                EXPECT_EQ(finding["isMendedByConvert"], false) << what;
                lint.leftOutFiles.insert(file);
            }
        }
        return lint;
    }

    // The files of the input that something was made of, and those that were left out.
    struct Converted {
        Names touched;
        Names leftOut;
    };

    [[nodiscard]] Converted convert(const std::string& theme) const {
        Converted converted;
        const auto report = reportOf({"convert", theme, "-o", "out"});
        for (const auto& one : report["themes"]) {
            if (const std::string nested = one["folder"]; !nested.empty()) {
                converted.touched.insert(nested);
                continue;
            }
            for (const auto& made : one["made"]) {
                converted.touched.insert(made["from"]);
            }
            for (const auto& left : one["leftOut"]) {
                converted.leftOut.insert(left["file"]);
            }
        }
        return converted;
    }
};

class LintAndConvertRows : public LintAndConvert,
                           public testing::WithParamInterface<const char*> {};

TEST_P(LintAndConvertRows, SayTheSame) {
    const auto all = rows();
    for (const Row& row : all.at(GetParam())) {
        SCOPED_TRACE(row.files.begin()->first);
        fs::remove_all(folder / "work/T.theme");
        fs::remove_all(folder / "work/out");
        for (const auto& [name, kind] : row.files) {
            folder.file("work/T.theme/" + name, bytesOf(kind));
        }
        const Lint before = lint("T.theme");
        EXPECT_EQ(before.grave, row.found);
        const Converted converted = convert("T.theme");
        EXPECT_EQ(before.mendedFiles, converted.touched);
        EXPECT_EQ(before.leftOutFiles, converted.leftOut);
        const Lint after = fs::exists(folder / "work/out/T.theme") ? lint("out/T.theme") : Lint();
        EXPECT_EQ(after.mended, Names());
        for (const std::string& mended : before.mended) {
            EXPECT_FALSE(after.grave.contains(mended)) << mended;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Tables, LintAndConvertRows, testing::Values("masks", "parts", "names"),
                         [](const auto& given) { return std::string(given.param); });

TEST_F(LintAndConvert, WhatInfoListsChangeIsTheSame) {
    const std::string icon = bytesOf(Kind::picture);
    folder.file("work/T.theme/IconBundles/com.a.b-large.png", icon);
    folder.file("work/T.theme/Info.plist",
                "<plist version=\"1.0\"><dict><key>FuzzyBundleIdentifiers</key><array>"
                "<string>com.a.b.c</string></array></dict></plist>");
    const Lint before = lint("T.theme");
    EXPECT_EQ(before.mended, (Names{"calendar-missing Info.plist", "similar-icon Info.plist"}));
    EXPECT_EQ(convert("T.theme").touched, (Names{"IconBundles/com.a.b-large.png", "Info.plist"}));
    EXPECT_EQ(folder.contents("work/out/T.theme/IconBundles/com.a.b.c-large.png"), icon);
    EXPECT_EQ(lint("out/T.theme").grave, Names());
}

// Said of a finding, and so of its code and its file once the theme is converted.
TEST_F(LintAndConvert, WhatConvertMendsIsSaidOfEachFinding) {
    struct One {
        std::string file;
        std::string code;
        bool isMended;
    };

    for (const One& one :
         std::vector<One>{{kHome + "SBBadgeBG@3x.png", "scale-missing", true},
                          {"Velmoranth/SBDockBGiphone@3x.png", "scale-missing", false},
                          {kHome + "SBDockBG@2x.png", "one-device", false},
                          {"Velmoranth/sbdockbgiphone.png", "name-case", true},
                          {kHome + "anemfolderbackground.png@3x.png", "name-case", false},
                          {"Bundles/com.burbn.instagram/Icon.png", "icon-in-bundle", true},
                          {"Bundles/com.apple.preferences/WiFi.png", "settings-icon", true},
                          {kIcons + "com.apple.mobiletimer-large.png", "clock-icon", false}}) {
        SCOPED_TRACE(one.file);
        fs::remove_all(folder / "work/T.theme");
        fs::remove_all(folder / "work/out");
        folder.file("work/T.theme/" + one.file, bytesOf(Kind::picture));
        const std::string what = one.code + " " + one.file;
        const Lint before = lint("T.theme");
        EXPECT_EQ(before.all, Names{what});
        EXPECT_EQ(before.mended, one.isMended ? Names{what} : Names());
        static_cast<void>(convert("T.theme"));
        EXPECT_EQ(lint("out/T.theme").all.contains(what), !one.isMended);
    }
}

TEST_F(LintAndConvert, LinksOfAThemeAreFollowedByBoth) {
    const std::string icon = bytesOf(Kind::picture);
    folder.file("work/T.theme/art/x.png", icon);
    folder.file("work/T.theme/IconBundles/com.apple.Maps-large.png", icon);
    folder.link("work/T.theme/IconBundles/com.apple.mobilesafari-large.png",
                "com.apple.Maps-large.png");
    folder.link("work/T.theme/IconBundles/com.apple.mobilemail@3x.png", "../art/x.png");
    folder.link("work/T.theme/IconBundles/com.apple.mobileslideshow-large.png",
                "/Library/Themes/T.theme/art/x.png");
    folder.link("work/T.theme/IconBundles/com.a.b-large.png", "nowhere.png");
    folder.link("work/T.theme/UIImages", "art");
    const Lint before = lint("T.theme");
    EXPECT_EQ(before.grave, (Names{"icon-name IconBundles/com.apple.mobilemail@3x.png",
                                   "broken-link IconBundles/com.a.b-large.png"}));
    EXPECT_EQ(before.mendedFiles, (Names{"IconBundles/com.apple.mobilemail@3x.png"}));
    EXPECT_EQ(before.leftOutFiles, convert("T.theme").leftOut);
    for (const char* const name :
         {"IconBundles/com.apple.Maps-large.png", "IconBundles/com.apple.mobilesafari-large.png",
          "IconBundles/com.apple.mobilemail-large.png",
          "IconBundles/com.apple.mobileslideshow-large.png", "UIImages/x.png", "art/x.png"}) {
        const std::string path = "work/out/T.theme/" + std::string(name);
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder / path))) << name;
        EXPECT_EQ(folder.contents(path), icon) << name;
    }
    EXPECT_EQ(fs::is_symlink(folder / "work/T.theme/UIImages"), true) << "the input is changed";
}

TEST_F(LintAndConvert, WhatNobodyMayReadIsToldAsThat) {
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    folder.file("work/T.theme/IconBundles/com.apple.Maps@2x.png", bytesOf(Kind::picture));
    for (const char* const name : {"IconBundles/com.apple.mobilemail@2x.png", "UIImages/Pin.png",
                                   "UISounds/lock.caf", "Info.plist", "Velmoranth/Folder.png"}) {
        const std::string path = "work/T.theme/" + std::string(name);
        folder.file(path, bytesOf(Kind::picture));
        fs::permissions(folder / path, fs::perms::none);
    }
    folder.folder("work/out");
    fs::permissions(folder / "work/out", fs::perms(0777));
    const CommandSetting setting = user.with(this->setting());
    EXPECT_EQ(
        runCommand({"lint", "T.theme"}, setting).output,
        "T.theme: 6 files, 6 errors\n"
        "  error    icon-name             IconBundles/com.apple.Maps@2x.png: nothing looks "
        "for an icon under this name; IconBundles/com.apple.Maps-large.png is what is looked "
        "for; call it IconBundles/com.apple.Maps-large.png\n" +
            [] {
                std::string lines;
                for (const char* const name :
                     {"IconBundles/com.apple.mobilemail@2x.png", "Info.plist", "UIImages/Pin.png",
                      "UISounds/lock.caf", "Velmoranth/Folder.png"}) {
                    lines += "  error    unreadable            " + std::string(name) +
                             ": it cannot be read: permission denied; let everybody read "
                             "it, as with chmod a+r\n";
                }
                return lines;
            }() +
            "velmoranth convert T.theme -o FOLDER mends 1 of these and leaves out 5\n");
    const CommandResult preview = runCommand({"preview", "T.theme", "-o", "out/p.png"}, setting);
    EXPECT_NE(preview.errors.find("T.theme: 1 icon lies under a name that nothing looks for"),
              std::string::npos)
        << preview.errors;
    const CommandResult result = runCommand({"convert", "T.theme", "-o", "out"}, setting);
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output.substr(0, result.output.find('\n')),
              "out/T.theme from T.theme: 1 file, 1 made or changed, 5 left out");
    EXPECT_NE(result.output.find("\n  left out  UIImages/Pin.png: it cannot be read: permission "
                                 "denied\n"),
              std::string::npos)
        << result.output;
}

}  // namespace
}  // namespace velmoranth::cli::lint_convert_test
