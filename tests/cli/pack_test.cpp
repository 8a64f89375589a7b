// velmoranth pack, its packages read by the system's own tool.
#include "core/preferences.h"
#include "tests/cli/preview_fixture.h"

#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <utility>

namespace velmoranth::cli::pack_test {
namespace {

namespace fs = std::filesystem;

class Pack : public PreviewTest {
  protected:
    Pack() { theme("Sunset Paper.theme", kMagenta); }

    [[nodiscard]] CommandResult pack(std::vector<std::string> words, CommandSetting of = {}) const {
        words.insert(words.begin(), {"pack", "../Sunset Paper.theme", "--no-lint"});
        of.folder = folder / "work";
        of.variables.emplace("TMPDIR", folder / "tmp");
        return runCommand(words, of);
    }

    // With a look for errors first.
    [[nodiscard]] CommandResult packSound(const std::vector<std::string>& words) const {
        std::vector<std::string> all{"pack", "../Sunset Paper.theme"};
        all.insert(all.end(), words.begin(), words.end());
        return runCommand(all, setting());
    }

    // What dpkg-deb says of the package in "work".
    [[nodiscard]] CommandResult read(std::vector<std::string> words) const {
        words.insert(words.begin(), "dpkg-deb");
        return runCommand({words.begin() + 1, words.end()}, {.folder = folder / "work",
                                                             .variables = {{"TZ", "UTC"}},
                                                             .program = "/usr/bin/dpkg-deb"});
    }

    [[nodiscard]] std::string control(const std::string& package) const {
        return read({"--field", package}).output;
    }

    void expectRefused(const std::vector<std::string>& words, int code,
                       const std::string& line) const {
        const CommandResult result = pack(words);
        EXPECT_EQ(result.code, code) << line;
        EXPECT_EQ(result.errors, "velmoranth: error: " + line + "\n");
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(folder.names("work"), "");
        EXPECT_EQ(folder.names("tmp"), "");
    }

    void info(const std::string& dictionary) const {
        folder.file("Sunset Paper.theme/Info.plist",
                    "<plist version=\"1.0\"><dict>" + dictionary + "</dict></plist>");
    }
};

constexpr const char* kNobody =
    "velmoranth: the package says nobody made it; --author NAME says who did\n";

TEST_F(Pack, thePackageInstallsTheThemeForRootWithSaneModes) {
    fs::permissions(folder / "Sunset Paper.theme/IconBundles", fs::perms(0700));
    fs::permissions(folder / "Sunset Paper.theme/IconBundles/com.apple.Preferences-large.png",
                    fs::perms(0755));
    const CommandResult result = pack({});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, kNobody);
    EXPECT_EQ(result.output,
              "themes.sunset-paper_1.0_iphoneos-arm.deb: Sunset Paper 1.0, 1 file, installed as "
              "/Library/Themes/Sunset Paper.theme\n");
    const std::string package = "themes.sunset-paper_1.0_iphoneos-arm.deb";
    EXPECT_EQ(folder.names("work"), package);
    EXPECT_EQ(folder.names("tmp"), "");
    EXPECT_EQ(folder.mode("work/" + package), 0644U);
    EXPECT_EQ(control(package),
              "Package: themes.sunset-paper\nName: Sunset Paper\nVersion: 1.0\n"
              "Architecture: iphoneos-arm\nSection: Themes\nPriority: optional\n"
              "Maintainer: Unknown\nDepends: com.qor.velmoranth | com.qor.velmoranth.arm64e\n"
              "Installed-Size: 1\nDescription: Sunset Paper, a theme for the home screen\n");
    const auto size =
        fs::file_size(folder / "Sunset Paper.theme/IconBundles/com.apple.Preferences-large.png");
    std::string length = std::to_string(size);
    length.insert(0, 10 - length.size(), ' ');
    const std::string folders = "drwxr-xr-x root/root         0 2020-01-01 00:00 ./";
    EXPECT_EQ(read({"--contents", package}).output,
              folders + "\n" + folders + "Library/\n" + folders + "Library/Themes/\n" + folders +
                  "Library/Themes/Sunset Paper.theme/\n" + folders +
                  "Library/Themes/Sunset Paper.theme/IconBundles/\n-rw-r--r-- root/root" + length +
                  " 2020-01-01 00:00 ./Library/Themes/Sunset Paper.theme/IconBundles/"
                  "com.apple.Preferences-large.png\n");
    EXPECT_EQ(read({"--control", package, "control"}).code, 0);
    EXPECT_EQ(folder.names("work/control"), "control postinst");
    EXPECT_EQ(folder.mode("work/control/control"), 0644U);
    EXPECT_EQ(folder.mode("work/control/postinst"), 0755U);
    EXPECT_EQ(folder.contents("work/control/postinst"),
              "#!/bin/sh\n# Tells the running apps that the themes have changed.\n"
              "if command -v notifyutil >/dev/null 2>&1; then\n    notifyutil -p " +
                  std::string(core::kThemeChangedNotice) + " >/dev/null 2>&1 || :\nfi\nexit 0\n");
}

TEST_F(Pack, thePackageShowsWhatTheFolderShows) {
    EXPECT_EQ(pack({"-o", "a.deb"}).code, 0);
    EXPECT_EQ(preview({"a.deb", "-o", "package.png"}).code, 0);
    EXPECT_EQ(preview({"../Sunset Paper.theme", "-o", "folder.png"}).code, 0);
    EXPECT_GT(picture("work/folder.png").count(kMagenta), 1000);
    EXPECT_TRUE(folder.contents("work/package.png") == folder.contents("work/folder.png"));
}

TEST_F(Pack, theSameThemeGivesTheSameBytes) {
    EXPECT_EQ(pack({"-o", "a.deb"}).code, 0);
    const std::string icon =
        folder / "Sunset Paper.theme/IconBundles/com.apple.Preferences-large.png";
    fs::last_write_time(icon, fs::file_time_type::clock::now() - std::chrono::hours(1000));
    fs::permissions(icon, fs::perms(0600));
    EXPECT_EQ(pack({"-o", "b.deb"}).code, 0);
    EXPECT_TRUE(folder.contents("work/a.deb") == folder.contents("work/b.deb"));
    EXPECT_EQ(pack({"-o", "c.deb"}, {.variables = {{"SOURCE_DATE_EPOCH", "1600000000"}}}).code, 0);
    EXPECT_NE(read({"--contents", "c.deb"}).output.find("2020-09-13 12:26 ./\n"),
              std::string::npos);
    // What is no moment that an installer reads does not count.
    for (const char* const odd : {"soon", "-1", "99999999999", ""}) {
        EXPECT_EQ(
            pack({"-o", "d.deb", "--force"}, {.variables = {{"SOURCE_DATE_EPOCH", odd}}}).code, 0);
        EXPECT_TRUE(folder.contents("work/a.deb") == folder.contents("work/d.deb")) << odd;
    }
}

TEST_F(Pack, optionsComeBeforeTheThemesOwnWordsAndTheseBeforeItsName) {
    info(
        "<key>PackageName</key><string>Evening</string><key>CFBundleName</key><string>No</string>"
        "<key>CFBundleIdentifier</key><string>com.example.evening</string>"
        "<key>CFBundleShortVersionString</key><string>2.1-3</string>"
        "<key>Author</key><string>Ann</string><key>Section</key><string></string>"
        "<key>Homepage</key><integer>3</integer><key>Sponsor</key><string>Bob</string>");
    EXPECT_EQ(pack({}).errors, "");
    EXPECT_EQ(control("com.example.evening_2.1-3_iphoneos-arm.deb"),
              "Package: com.example.evening\nName: Evening\nVersion: 2.1-3\n"
              "Architecture: iphoneos-arm\nSection: Themes\nPriority: optional\nMaintainer: Ann\n"
              "Author: Ann\nSponsor: Bob\n"
              "Depends: com.qor.velmoranth | com.qor.velmoranth.arm64e\n"
              "Installed-Size: 2\nDescription: Evening, a theme for the home screen\n");
    EXPECT_EQ(pack({"--id", "com.example.x", "--name", "X", "--version", "1:3~b", "--author",
                    "Cleo <c@example.com>", "--description", "First\n\nthird line", "--field",
                    "homepage=https://example.com", "--field", "Depends=firmware (>= 12.0)"})
                  .errors,
              "");
    EXPECT_EQ(control("com.example.x_3~b_iphoneos-arm.deb"),
              "Package: com.example.x\nName: X\nVersion: 1:3~b\nArchitecture: iphoneos-arm\n"
              "Section: Themes\nPriority: optional\nMaintainer: Cleo <c@example.com>\n"
              "Author: Cleo <c@example.com>\nSponsor: Bob\nDepends: firmware (>= 12.0)\n"
              "Homepage: https://example.com\nInstalled-Size: 2\n"
              "Description: First\n .\n third line\n");
    EXPECT_EQ(pack({"--version", "3", "--field", "Maintainer=Dora"}).errors, "");
    EXPECT_NE(
        control("com.example.evening_3_iphoneos-arm.deb").find("Maintainer: Dora\nAuthor: Ann"),
        std::string::npos);
}

TEST_F(Pack, aNameOfNoPlainLettersStillMakesAnIdentifier) {
    theme("--\xC3\xA9t\xC3\xA9 2--.THEME", kLime);
    const CommandResult result =
        runCommand({"pack", "--no-lint", "../--\xC3\xA9t\xC3\xA9 2--.THEME"},
                   {.folder = folder / "work", .variables = {}});
    EXPECT_EQ(result.output,
              "themes.t-2_1.0_iphoneos-arm.deb: --\xC3\xA9t\xC3\xA9 2-- 1.0, 1 file, installed as "
              "/Library/Themes/--\xC3\xA9t\xC3\xA9 2--.THEME\n");
}

TEST_F(Pack, wrongFieldsAreALineEach) {
    const std::string start = "the package's ";
    const std::string version =
        "\": it takes a digit first, then letters, digits, +, -, ~ and .: 1.0 or 2.1-3";
    for (const char* const wrong :
         {"v1", "1 0", "1_0", ":1", "x:1", "1:", "1-", "1\n2", "1234567890:1"}) {
        std::string shownText = wrong;
        std::ranges::replace(shownText, '\n', '?');
        expectRefused({"--version", wrong}, 2,
                      start + "Version cannot be \"" + shownText + version);
    }
    for (const char* const wrong : {"a", "Com.example", ".com", "com example", "com/example"}) {
        expectRefused({"--id", wrong}, 2,
                      start + "Package cannot be \"" + wrong +
                          "\": it takes two or more of a-z, 0-9, +, - and ., a letter or digit "
                          "first");
    }
    expectRefused({"--name", " x"}, 2,
                  start +
                      "Name cannot be \" x\": it takes one line, neither empty nor longer than "
                      "1,024 bytes");
    expectRefused({"--field", "Homepage=ftp://x"}, 2,
                  start +
                      "Homepage cannot be \"ftp://x\": it takes an address that begins with "
                      "https:// or http://");
    expectRefused({"--field", "Essential=maybe"}, 2,
                  start + "Essential cannot be \"maybe\": it takes yes or no");
    expectRefused({"--field", "Priority=a b"}, 2,
                  start + "Priority cannot be \"a b\": it takes one word");
    expectRefused({"--description", "\nx"}, 2,
                  start +
                      "Description cannot be \"?x\": it takes text whose first line sums up "
                      "the rest");
    expectRefused({"--field", "Homepag=x"}, 2,
                  "a package of a theme has no field \"Homepag\"; did you mean Homepage?");
    expectRefused({"--field", "Homepage"}, 2, "--field takes FIELD=VALUE, not \"Homepage\"");
    expectRefused({"--field", "Tag="}, 2, "the field Tag takes a value, and this one is empty");
    expectRefused({"--field", "tag=a", "--field", "Tag=b"}, 2,
                  "the field Tag is given more than once");
    expectRefused({"--name", "a", "--field", "Name=b"}, 2,
                  "the field Name is given more than once");
    expectRefused({"-o", ""}, 2, "THEME and FILE take a name, and this one is empty");
    info("<key>Version</key><string>first</string>");
    expectRefused({}, 3,
                  "../Sunset Paper.theme/Info.plist: the package's Version cannot be "
                  "\"first" +
                      version);
}

TEST_F(Pack, clutterAndWhatNoPhoneReadsStaysOut) {
    for (const char* const name :
         {".DS_Store", "IconBundles/._x.png", "draft.psd", "b/Thumbs.db"}) {
        folder.file("Sunset Paper.theme/" + std::string(name), "x");
    }
    folder.file("Sunset Paper.theme/IconBundles/empty-large.png");
    folder.link("Sunset Paper.theme/__MACOSX", "/etc/passwd");
    EXPECT_EQ(pack({"-o", "a.deb"}).output,
              "a.deb: Sunset Paper 1.0, 1 file, installed as /Library/Themes/Sunset Paper.theme\n"
              "  left out  .DS_Store: left behind by an archiver or a file manager\n"
              "  left out  IconBundles/._x.png: left behind by an archiver or a file manager\n"
              "  left out  IconBundles/empty-large.png: the file is empty\n"
              "  left out  __MACOSX: a link, which is not followed\n"
              "  left out  b/Thumbs.db: left behind by an archiver or a file manager\n"
              "  left out  draft.psd: the maker's own file, not a picture that is read\n");
    EXPECT_EQ(read({"--contents", "a.deb"}).output.find("empty"), std::string::npos);
}

// A theme's pictures are in its folders; what lies beside them was put there by mistake, or to show
// people.
TEST_F(Pack, picturesAndPackagesBesideTheFoldersStayOut) {
    for (const char* const name :
         {"screenshot.png", "Photo.JPG", "Sunset_1.0.deb", "old.tar.gz", "Info.txt"}) {
        folder.file("Sunset Paper.theme/" + std::string(name), "x");
    }
    folder.file("Sunset Paper.theme/extra/deep.png", "x");
    const std::string picture = ": a picture beside the theme's folders, where nothing looks\n";
    const std::string package = ": a package or an archive, which is no part of a theme\n";
    EXPECT_EQ(pack({"-o", "a.deb"}).output,
              "a.deb: Sunset Paper 1.0, 3 files, installed as /Library/Themes/Sunset Paper.theme\n"
              "  left out  Photo.JPG" +
                  picture + "  left out  Sunset_1.0.deb" + package + "  left out  old.tar.gz" +
                  package + "  left out  screenshot.png" + picture);
}

// One that its maker hoped to see is more than left over.
TEST_F(Pack, anIconBesideTheFoldersIsAnErrorAllTheSame) {
    const std::string icon =
        folder.contents("Sunset Paper.theme/IconBundles/com.apple.Preferences-large.png");
    folder.file("Sunset Paper.theme/com.apple.Maps-large.png", icon);
    const CommandResult refused = packSound({"-o", "a.deb"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(
        refused.errors.starts_with("velmoranth: error: ../Sunset Paper.theme: it has 1 "
                                   "error, com.apple.Maps-large.png first: "))
        << refused.errors;
    EXPECT_EQ(folder.names("work"), "");
    EXPECT_EQ(packSound({"-o", "a.deb", "--no-lint"}).output,
              "a.deb: Sunset Paper 1.0, 1 file, installed as /Library/Themes/Sunset Paper.theme\n"
              "  left out  com.apple.Maps-large.png: a picture beside the theme's folders, where "
              "nothing looks\n");
}

TEST_F(Pack, aLinkToAFileOfTheThemeIsThatFileOnceMore) {
    folder.link("Sunset Paper.theme/IconBundles/com.apple.mobilesafari-large.png",
                "com.apple.Preferences-large.png");
    EXPECT_EQ(pack({"-o", "a.deb"}).code, 0);
    EXPECT_EQ(read({"--extract", "a.deb", "out"}).code, 0);
    const std::string icons = "work/out/Library/Themes/Sunset Paper.theme/IconBundles/";
    EXPECT_TRUE(folder.contents(icons + "com.apple.mobilesafari-large.png") ==
                folder.contents(icons + "com.apple.Preferences-large.png"));
    EXPECT_FALSE(fs::is_symlink(folder / (icons + "com.apple.mobilesafari-large.png")));
}

TEST_F(Pack, linksElsewhereAndOtherThingsAreRefused) {
    folder.file("secret", "x");
    const std::string link = "Sunset Paper.theme/IconBundles/x.png";
    const std::string refusal =
        "../Sunset Paper.theme/IconBundles/x.png: it cannot be packed: it is no file, and no link "
        "to a file of the theme; put the file itself there";
    for (const char* const target : {"../../secret", "nowhere", ".", "x.png", "/etc/passwd"}) {
        folder.link(link, target);
        expectRefused({}, 3, refusal);
        fs::remove(folder / link);
    }
    folder.file("Sunset Paper.theme/IconBundles/a\nb.png", "x");
    expectRefused({}, 3,
                  "../Sunset Paper.theme/IconBundles/a?b.png: a file's name has control "
                  "characters; give it another");
}

TEST_F(Pack, whatIsNoThemeIsRefused) {
    folder.file("file", "x");
    folder.folder("empty");
    for (const auto& [input, line] : std::vector<std::pair<std::string, std::string>>{
             {"../none", "../none: there is no such theme folder"},
             {"../file", "../file: it is no theme's folder"},
             {"../empty", "../empty: there is nothing in the theme to pack"}}) {
        const CommandResult result = runCommand({"pack", input}, setting());
        EXPECT_EQ(result.code, 3);
        EXPECT_EQ(result.errors, "velmoranth: error: " + line + "\n");
    }
    folder.file("Sunset Paper.theme/Info.plist", "<plist><dict><key>a</key></dict>");
    const CommandResult broken = pack({});
    EXPECT_EQ(broken.code, 3);
    EXPECT_EQ(broken.errors.find("velmoranth: error: ../Sunset Paper.theme/Info.plist: "), 0U)
        << broken.errors;
}

// There it would be a part of the theme from then on.
TEST_F(Pack, aPackageDoesNotGoIntoItsTheme) {
    const std::string theme = "../Sunset Paper.theme";
    fs::create_directory_symlink("Sunset Paper.theme", folder / "link");
    fs::create_directory(folder / "Sunset Paper.theme2");
    const std::string before = folder.names("Sunset Paper.theme");
    for (const std::string& place : {theme + "/a.deb", theme + "/new/a.deb",
                                     theme + "/IconBundles/", std::string("../link/a.deb")}) {
        for (const std::string way : {"--force", "--dry-run"}) {
            const CommandResult result = pack({"-o", place, way});
            EXPECT_EQ(result.code, 3);
            EXPECT_EQ(result.errors,
                      "velmoranth: error: " + place +
                          (place.ends_with('/') ? "themes.sunset-paper_1.0_iphoneos-arm.deb" : "") +
                          ": the package would lie in the theme that it is made of; "
                          "choose another place with -o\n");
        }
    }
    CommandSetting inside = setting();
    inside.folder = folder / "Sunset Paper.theme";
    EXPECT_EQ(runCommand({"pack", ".", "--author", "Ann"}, inside).code, 3);
    EXPECT_EQ(folder.names("Sunset Paper.theme"), before);
    EXPECT_EQ(pack({"-o", "../Sunset Paper.theme2/a.deb"}).code, 0);
    EXPECT_EQ(runCommand({"pack", ".", "-o", "..", "--author", "Ann"}, inside).code, 0);
}

TEST_F(Pack, aPackageGoesIntoAFolderOrToStandardOutputAndReplacesNothingUnasked) {
    folder.folder("work/out");
    EXPECT_EQ(pack({"-o", "out"}).code, 0);
    EXPECT_EQ(folder.names("work/out"), "themes.sunset-paper_1.0_iphoneos-arm.deb");
    const std::string package =
        folder.contents("work/out/themes.sunset-paper_1.0_iphoneos-arm.deb");
    const CommandResult streamed = pack({"-o", "-"});
    EXPECT_TRUE(streamed.output == package);
    EXPECT_EQ(folder.names("tmp"), "");
    folder.file("work/out/mine.deb", "mine");
    const CommandResult refused = pack({"-o", "out/mine.deb"});
    EXPECT_EQ(refused.code, 3);
    EXPECT_EQ(refused.errors,
              "velmoranth: error: out/mine.deb: it is there already; --force replaces it\n");
    EXPECT_EQ(folder.contents("work/out/mine.deb"), "mine");
    EXPECT_EQ(pack({"-o", "out/mine.deb", "--force"}).code, 0);
    EXPECT_TRUE(folder.contents("work/out/mine.deb") == package);
    // Whatever else is there stays, devices above all.
    fs::create_symlink("mine.deb", folder / "work/out/link.deb");
    ASSERT_EQ(::mkfifo((folder / "work/out/pipe").c_str(), 0600), 0);
    for (const std::string name : {"out/link.deb", "out/pipe"}) {
        const fs::file_status before = fs::symlink_status(folder / ("work/" + name));
        const CommandResult kept = pack({"-o", name, "--force"});
        EXPECT_EQ(kept.code, 3);
        EXPECT_EQ(kept.errors,
                  "velmoranth: error: " + name + ": it is there already, and is no file\n");
        EXPECT_EQ(fs::symlink_status(folder / ("work/" + name)), before);
    }
    EXPECT_EQ(pack({"-o", "new/dist/a.deb"}).code, 0);
    EXPECT_TRUE(folder.contents("work/new/dist/a.deb") == package);
    EXPECT_EQ(pack({"-o", "other/"}).code, 0);
    EXPECT_EQ(folder.names("work/other"), "themes.sunset-paper_1.0_iphoneos-arm.deb");
    EXPECT_EQ(pack({"-o", "out/mine.deb/a.deb"}).errors,
              "velmoranth: error: out/mine.deb/a.deb: the package cannot be written: not a "
              "directory\n");
}

TEST_F(Pack, aPackageThatCannotBeFinishedIsNotThere) {
    std::string noise;
    for (std::uint32_t i = 0, value = 1; i < 300000; ++i) {
        value = value * 1664525U + 1013904223U;
        noise += static_cast<char>(value >> 24U);
    }
    folder.file("Sunset Paper.theme/UISounds/lock.caf", noise);
    const CommandResult result = pack({"-o", "a.deb"}, {.limits = {{RLIMIT_FSIZE, 100000}}});
    EXPECT_EQ(result.code, 3) << result.signal;
    EXPECT_EQ(result.errors,
              "velmoranth: error: a.deb: the package cannot be written: file too large\n");
    EXPECT_EQ(folder.names("work"), "");
}

TEST_F(Pack, longNamesOfAnyLettersAreInstalled) {
    const std::string name(180, 'x');
    folder.file("Sunset Paper.theme/UIImages/\xC3\xA9" + name + ".png", "x");
    EXPECT_EQ(pack({"-o", "a.deb"}).code, 0);
    EXPECT_EQ(read({"--extract", "a.deb", "out"}).code, 0);
    EXPECT_EQ(folder.names("work/out/Library/Themes/Sunset Paper.theme/UIImages"),
              "\xC3\xA9" + name + ".png");
}

TEST_F(Pack, aThemeWithErrorsIsPackedOnlyWhenAskedFor) {
    EXPECT_EQ(packSound({"-o", "a.deb"}).code, 0);
    folder.file("Sunset Paper.theme/uisounds/lock.caf", "x");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"-o", "b.deb"}, {"--dry-run"}}) {
        const CommandResult refused = packSound(words);
        EXPECT_EQ(refused.code, 1);
        EXPECT_EQ(refused.errors.find("velmoranth: error: ../Sunset Paper.theme: it has 1 error, "
                                      "uisounds/lock.caf first: "),
                  0U)
            << refused.errors;
        EXPECT_NE(
            refused.errors.find("; velmoranth convert '../Sunset Paper.theme' -o FOLDER mends "
                                "1 of them, velmoranth lint '../Sunset Paper.theme' lists "
                                "what is wrong, --no-lint packs it all the same\n"),
            std::string::npos)
            << refused.errors;
        EXPECT_EQ(refused.output, "");
    }
    EXPECT_EQ(folder.names("work"), "a.deb");
    EXPECT_EQ(pack({"-o", "b.deb"}).code, 0);
    // What stays out keeps nothing else from being packed, and neither does a warning.
    std::filesystem::remove_all(folder / "Sunset Paper.theme/uisounds");
    folder.file("Sunset Paper.theme/IconBundles/empty-large.png");
    folder.file("Sunset Paper.theme/IconBundles/notes.txt", "x");
    EXPECT_EQ(packSound({"-o", "c.deb"}).code, 0);
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(Pack, errorsThatNoConversionMendsAreToldWithoutIt) {
    folder.file("Sunset Paper.theme/UISounds/lock.caf", "no sound");
    const CommandResult refused = packSound({"--dry-run"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.errors.find("convert"), std::string::npos) << refused.errors;
    EXPECT_NE(refused.errors.find("; velmoranth lint '../Sunset Paper.theme' lists what is wrong"),
              std::string::npos)
        << refused.errors;
}

TEST_F(Pack, aDryRunWritesNothingAndTheReportIsForProgramsToo) {
    folder.file("Sunset Paper.theme/.DS_Store", "x");
    EXPECT_EQ(pack({"--dry-run"}).output,
              "themes.sunset-paper_1.0_iphoneos-arm.deb: Sunset Paper 1.0, 1 file, installed as "
              "/Library/Themes/Sunset Paper.theme\n"
              "  left out  .DS_Store: left behind by an archiver or a file manager\n"
              "Nothing was written.\n");
    EXPECT_EQ(folder.names("work"), "");
    const auto report = nlohmann::json::parse(
        pack({"--dry-run", "--json", "--author", "Ann", "-o", "x.deb"}).output);
    const auto size =
        fs::file_size(folder / "Sunset Paper.theme/IconBundles/com.apple.Preferences-large.png");
    EXPECT_EQ(report, nlohmann::json::parse(
                          R"({"version": 1, "package": "x.deb", "written": false,
        "installed": "/Library/Themes/Sunset Paper.theme", "bytes": )" +
                          std::to_string(size) + R"(,
        "control": {"Package": "themes.sunset-paper", "Name": "Sunset Paper", "Version": "1.0",
            "Architecture": "iphoneos-arm", "Section": "Themes", "Priority": "optional",
            "Maintainer": "Ann", "Author": "Ann",
            "Depends": "com.qor.velmoranth | com.qor.velmoranth.arm64e",
            "Description": "Sunset Paper, a theme for the home screen"},
        "files": ["/Library/Themes/Sunset Paper.theme/IconBundles/com.apple.Preferences-large.png"],
        "leftOut": [{"file": ".DS_Store",
                     "why": "left behind by an archiver or a file manager"}]})"));
    EXPECT_EQ(nlohmann::json::parse(pack({"--json", "-o", "x.deb"}).output)["written"], true);
}

}  // namespace
}  // namespace velmoranth::cli::pack_test
