// velmoranth convert, as a user runs it.
#include "tests/cli/preview_fixture.h"
#include "tests/support/archives/archive_writer.h"

#include <nlohmann/json.hpp>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGINT is POSIX's

#include <chrono>
#include <functional>
#include <optional>
#include <thread>

namespace velmoranth::cli::convert_test {
namespace {

class ConvertCommand : public PreviewTest {
  protected:
    [[nodiscard]] CommandResult convert(std::vector<std::string> words) const {
        words.insert(words.begin(), "convert");
        return runCommand(words, setting());
    }

    void expectRefused(const std::vector<std::string>& words, int code,
                       const std::string& line) const {
        const CommandResult result = convert(words);
        EXPECT_EQ(result.code, code) << line;
        EXPECT_EQ(result.errors, "velmoranth: error: " + line + "\n");
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(folder.names("tmp"), "");
        EXPECT_EQ(folder.names("work"), "");
    }

    // The picture that the theme() of that name has.
    [[nodiscard]] std::string icon(const std::string& name, Color color) const {
        theme(name, color);
        return folder.contents(name + "/IconBundles/com.apple.Preferences-large.png");
    }
};

TEST_F(ConvertCommand, aPackageBecomesAThemeAndTheReportSaysHow) {
    const std::string picture = icon("X", kMagenta);
    folder.file(
        "old.deb",
        tests::packageOf(
            {{"./Library/Themes/Old.theme/IconBundles/com.apple.Preferences@3x.png", picture},
             {"./Library/Themes/Old.theme/Fonts/A.ttf", "font"},
             {"./Library/Themes/Old.theme/Icon.png", picture}},
            tests::Packing::xz));
    const CommandResult result = convert({"../old.deb", "-o", "themes"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(
        result.output,
        "themes/Old.theme from ../old.deb/Library/Themes/Old.theme: 2 files, 1 made or "
        "changed, 1 left out\n"
        "  made      IconBundles/com.apple.Preferences-large.png from "
        "IconBundles/com.apple.Preferences@3x.png: an app's icon is looked for under that "
        "name\n"
        "  left out  Icon.png: the theme's own icon, which no phone shows\n"
        "  note      Fonts/A.ttf: has no effect until it is installed on the phone by hand\n");
    EXPECT_EQ(folder.contents("work/themes/Old.theme/IconBundles/com.apple.Preferences-large.png"),
              picture);
    EXPECT_EQ(folder.names("tmp"), "");
    const CommandResult again = convert({"themes/Old.theme", "-o", "again"});
    EXPECT_EQ(
        again.output,
        "again/Old.theme from themes/Old.theme: 2 files, nothing to change\n"
        "  note      Fonts/A.ttf: has no effect until it is installed on the phone by hand\n");
}

TEST_F(ConvertCommand, theReportForProgramsHasTheSame) {
    folder.file("in/T.theme/Icons/Settings.png", icon("X", kMagenta));
    folder.file("in/T.theme/Icons/Nobody\xFF.png", icon("X", kMagenta));
    const CommandResult result = convert({"../in", "-o", "out", "--json", "--dry-run"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(nlohmann::json::parse(result.output),
              nlohmann::json::parse(R"({"version": 1, "output": "out", "written": false,
                  "themes": [{"name": "T.theme", "input": "../in", "folder": "T.theme", "files": 1,
                  "replaced": null,
                  "made": [{"file": "IconBundles/com.apple.Preferences-large.png",
                            "from": "Icons/Settings.png",
                            "why": "an app's icon is looked for under that name"}],
                  "leftOut": [{"file": "Icons/Nobody\ufffd.png",
                               "why": "no app of that name is known"}],
                  "notes": []}]})"));
    EXPECT_EQ(folder.names("work"), "");
}

TEST_F(ConvertCommand, aDryRunSaysSo) {
    theme("T.theme", kMagenta);
    EXPECT_EQ(convert({"../T.theme", "-o", "out", "--dry-run"}).output,
              "out/T.theme from ../T.theme: 1 file, nothing to change\nNothing was written.\n");
}

TEST_F(ConvertCommand, whatIsThereIsReplacedOnlyByForce) {
    theme("T.theme", kMagenta);
    EXPECT_EQ(convert({"../T.theme", "-o", "out"}).code, 0);
    folder.file("work/out/T.theme/mine", "mine");
    const CommandResult refused = convert({"../T.theme", "-o", "out"});
    EXPECT_EQ(refused.code, 3);
    EXPECT_EQ(refused.errors,
              "velmoranth: error: out/T.theme: it is there already; --force replaces it\n");
    EXPECT_EQ(folder.contents("work/out/T.theme/mine"), "mine");
    const std::string summary = "out/T.theme from ../T.theme: 1 file, nothing to change\n";
    EXPECT_EQ(convert({"../T.theme", "-o", "out", "--force", "--dry-run"}).output,
              summary + "  replaces  the folder that is there, with 2 files\n" +
                  "Nothing was written.\n");
    EXPECT_EQ(folder.contents("work/out/T.theme/mine"), "mine");
    EXPECT_EQ(convert({"../T.theme", "-o", "out", "--force"}).output,
              summary + "  replaced  the folder that was there, with 2 files\n");
    EXPECT_EQ(folder.names("work/out/T.theme"), "IconBundles");
    const auto json =
        nlohmann::json::parse(convert({"../T.theme", "-o", "out", "--force", "--json"}).output);
    EXPECT_EQ(json["themes"][0]["replaced"], 1);
    EXPECT_EQ(convert({"../T.theme", "-o", "new", "--force"}).output,
              "new/T.theme from ../T.theme: 1 file, nothing to change\n");
}

// Pictures that have to be made smaller, one for each of so many apps.
void largePictures(const tests::TemporaryFolder& folder, int count) {
    constexpr std::size_t kSide = 1500;
    const std::vector<std::uint8_t> pixels(kSide * kSide * 4, 200);
    const auto png = desktop::encodePng(pixels, kSide, kSide, kSide * 4);
    folder.file("first.png", std::string(png.begin(), png.end()));
    folder.folder("Large.theme/IconBundles");
    for (int i = 0; i < count; ++i) {
        std::filesystem::create_hard_link(
            folder / "first.png",
            folder / ("Large.theme/IconBundles/com.example.a" + std::to_string(i) + "-large.png"));
    }
}

bool comesTrue(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

TEST_F(ConvertCommand, anInterruptedRunLeavesNoHalfTheme) {
    largePictures(folder, 150);
    // Beside its place, in a folder that nobody looks for.
    const auto isBeingWritten = [this] {
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(folder / "work/out", error)) {
            if (std::filesystem::exists(entry.path() / "Large.theme/IconBundles")) {
                return true;
            }
        }
        return false;
    };
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        RunningCommand running({"convert", "../Large.theme", "-o", "out"}, setting());
        ASSERT_TRUE(comesTrue(isBeingWritten));
        running.signal(number);
        EXPECT_EQ(running.finish().signal, number) << "the signal came too late";
        EXPECT_EQ(folder.names("work"), "") << "the folder was made for the themes alone";
        EXPECT_EQ(folder.names("tmp"), "");
    }
    // One that was there stays, with what is in it.
    folder.file("work/out/mine", "mine");
    RunningCommand running({"convert", "../Large.theme", "-o", "out"}, setting());
    ASSERT_TRUE(comesTrue(isBeingWritten));
    running.signal(SIGINT);
    EXPECT_EQ(running.finish().signal, SIGINT) << "the signal came too late";
    EXPECT_EQ(folder.names("work/out"), "mine");
    EXPECT_EQ(folder.count("Large.theme/IconBundles"), 150);
    const std::string first = folder.contents("first.png");
    for (int i = 0; i < 150; ++i) {
        EXPECT_EQ(folder.contents("Large.theme/IconBundles/com.example.a" + std::to_string(i) +
                                  "-large.png"),
                  first);
    }
}

TEST_F(ConvertCommand, progressIsShownOnATerminalOnceWritingTakesLong) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::seconds kLong(5);
    std::optional<std::string> shown;
    int pictures = 10;
    Clock::time_point start;
    // The work is doubled until this machine shows progress and has time to tell what is left, or
    // has had time enough.
    do {
        std::filesystem::remove_all(folder / "Large.theme");
        std::filesystem::remove_all(folder / "work/out");
        pictures *= 2;
        largePictures(folder, pictures);
        start = Clock::now();
        shown = errorsOnTerminal({"convert", "../Large.theme", "-o", "out"}, setting());
        if (!shown) {
            GTEST_SKIP() << "no pseudo-terminal is to be had";
        }
    } while (shown->find(" s left") == std::string::npos && Clock::now() - start < kLong &&
             pictures < 5000);
    EXPECT_NE(shown->find(" of " + std::to_string(pictures) + " files, "), std::string::npos)
        << *shown;
    EXPECT_TRUE(shown->ends_with("\r\033[K")) << "the line stays";
}

TEST_F(ConvertCommand, wrongUsageAndBadInputAreALineEach) {
    theme("T.theme", kMagenta);
    expectRefused({"../T.theme"}, 2, "-o FOLDER is missing; velmoranth convert --help");
    expectRefused({"", "-o", "out"}, 2, "INPUT and FOLDER take a name, and this one is empty");
    expectRefused({"../none", "-o", "out"}, 3, "../none: there is no such theme folder");
    folder.file("text.zip", "text");
    expectRefused(
        {"../text.zip", "-o", "out"}, 3,
        "../text.zip: it is no .deb, .zip or .tar archive; give one of these, or a folder");
    folder.file("bad.tar", tests::tarOf({{"../up", "x"}}));
    expectRefused({"../T.theme", "../bad.tar", "-o", "out"}, 3,
                  "../bad.tar: it has a name with \"..\", ../up");
    folder.folder("empty");
    expectRefused({"../empty", "-o", "out"}, 3,
                  "../empty: there is no theme in it: no folder IconBundles, Bundles or UIImages, "
                  "and no pictures named for apps");
}

}  // namespace
}  // namespace velmoranth::cli::convert_test
