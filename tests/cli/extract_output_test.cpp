// velmoranth extract: where it writes, where it does not, and how it ends.
#include "tests/cli/extract_fixture.h"
#include "tests/cli/ordinary_user.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGINT is POSIX's
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <thread>

namespace velmoranth::cli::extract_output_test {
namespace {

namespace fs = std::filesystem;

class ExtractOutput : public ExtractTest {
  protected:
    const CarPixels pixels = CarPixels::pattern(4, 4);

    void catalogWithNames(const std::vector<std::string>& names) const {
        CarWriter car;
        std::uint16_t identifier = 0;
        for (const std::string& name : names) {
            ++identifier;
            car.facet(name, identifier);
            car.bitmap({.identifier = identifier}, pixels);
        }
        catalog(car);
    }
};

TEST_F(ExtractOutput, SlashesInNamesMakeFolders) {
    catalogWithNames({"Bar/Deep/Icon", "Bar/Icon", "Icon"});
    EXPECT_EQ(extract({"Maps.app", "out/new"}).code, 0);
    EXPECT_EQ(fileNames("out"),
              "new/Maps.app/Bar/Deep/Icon-4-4.png new/Maps.app/Bar/Icon-4-4.png "
              "new/Maps.app/Icon-4-4.png");
}

TEST_F(ExtractOutput, HostileNamesStayInsideAndNoneIsLost) {
    const std::vector<std::string> names{"../../../escaped",
                                         "/etc/escaped",
                                         "..",
                                         "a//b",
                                         "a/./b",
                                         "",
                                         "new\nline\x1b[2J",
                                         std::string("ze\0ro", 5),
                                         "\xff broken",
                                         "%2E%2E",
                                         std::string(3000, 'x'),
                                         std::string(2000, 'x') + "y"};
    catalogWithNames(names);
    const CommandResult result = extract({"Maps.app", "deep/out"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output, "Extracted 12 pictures (12 files) into deep/out/Maps.app\n");
    EXPECT_EQ(files("deep/out/Maps.app").size(), names.size());
    EXPECT_EQ(folder.names("."), "Maps.app deep");
    EXPECT_EQ(folder.names("deep"), "out");
    EXPECT_EQ(folder.names("deep/out"), "Maps.app");
    expectPicture("deep/out/Maps.app/%2E%2E/%2E%2E/%2E%2E/escaped-4-4.png", pixels);
    expectPicture("deep/out/Maps.app/%2Fetc/escaped-4-4.png", pixels);
}

TEST_F(ExtractOutput, FolderThatIsALinkIsNotFollowed) {
    catalogWithNames({"Bar/Icon"});
    folder.folder("elsewhere");
    folder.folder("out/Maps.app");
    folder.link("out/Maps.app/Bar", folder / "elsewhere");
    const CommandResult result = extract({"Maps.app", "out"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(
        result.errors,
        "velmoranth: warning: \"Bar/Icon\", rendition \"picture.png\": out/Maps.app/Bar: the "
        "folder is a link, which may lead anywhere: remove it or choose another OUTPUT-DIR\n");
    EXPECT_EQ(folder.names("elsewhere"), "");
    fs::remove_all(folder / "out");
    folder.folder("out");
    folder.link("out/Maps.app", "../elsewhere");
    expectFailure({"Maps.app", "out"}, 3,
                  "out/Maps.app: the folder is a link, which may lead anywhere: remove it or "
                  "choose another OUTPUT-DIR");
    EXPECT_EQ(folder.names("elsewhere"), "");
}

TEST_F(ExtractOutput, FileThatIsALinkIsReplaced) {
    catalogWithNames({"Icon"});
    folder.file("witness", "old");
    folder.folder("out/Maps.app");
    folder.link("out/Maps.app/Icon-4-4.png", folder / "witness");
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    EXPECT_EQ(folder.contents("witness"), "old");
    EXPECT_FALSE(fs::is_symlink(folder / "out/Maps.app/Icon-4-4.png"));
    expectPicture("out/Maps.app/Icon-4-4.png", pixels);
}

TEST_F(ExtractOutput, OutputFolderItselfMayBeALink) {
    catalogWithNames({"Icon"});
    folder.folder("elsewhere");
    folder.link("out", "elsewhere");
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    EXPECT_EQ(fileNames("elsewhere"), "Maps.app/Icon-4-4.png");
}

TEST_F(ExtractOutput, ExistingFileIsReplacedAsAWholeAndOthersStay) {
    catalogWithNames({"Icon"});
    folder.file("out/Maps.app/Icon-4-4.png", "old");
    folder.file("out/Maps.app/mine.txt", "mine");
    fs::create_hard_link(folder / "out/Maps.app/Icon-4-4.png", folder / "witness");
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    EXPECT_EQ(folder.contents("witness"), "old") << "the old file was written into";
    expectPicture("out/Maps.app/Icon-4-4.png", pixels);
    EXPECT_EQ(folder.names("out/Maps.app"), "Icon-4-4.png mine.txt");
    EXPECT_EQ(folder.contents("out/Maps.app/mine.txt"), "mine");
}

TEST_F(ExtractOutput, PlaceThatCannotBeWrittenIsOneLine) {
    catalogWithNames({"Icon"});
    folder.file("file", "text");
    expectFailure({"Maps.app", "file"}, 3, "file: the folder cannot be made: not a directory");
    expectFailure({"Maps.app", "file/out"}, 3,
                  "file/out: the folder cannot be made: not a directory");
}

TEST_F(ExtractOutput, FolderWithoutTheRightIsOneLine) {
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    catalogWithNames({"Icon"});
    folder.folder("locked/Maps.app");
    fs::permissions(folder / "locked/Maps.app", fs::perms(0555));
    const CommandResult result =
        runCommand({"extract", "Maps.app", "locked"}, user.with({.folder = folder.path()}));
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors,
              "velmoranth: error: locked/Maps.app/Icon-4-4.png: the picture cannot be written: "
              "permission denied\n");
}

// Enough work to be interrupted in.
CarWriter longCatalog() {
    CarWriter car;
    car.atlas(1, CarPixels::pattern(512, 512));
    for (std::uint16_t i = 1; i <= 3000; ++i) {
        car.facet("Icon " + std::to_string(i), i);
        car.link({.identifier = i}, {0, 0, 512, 512});
    }
    return car;
}

TEST_F(ExtractOutput, InterruptedRunLeavesWholeFilesOnly) {
    catalog(longCatalog());
    RunningCommand command({"extract", "Maps.app", "out"}, {.folder = folder.path()});
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!fs::exists(folder / "out/Maps.app") || folder.count("out/Maps.app") < 5) {
        ASSERT_LT(std::chrono::steady_clock::now(), end);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    command.signal(SIGINT);
    EXPECT_EQ(command.finish().signal, SIGINT);
    const auto left = files("out/Maps.app");
    EXPECT_LT(left.size(), 3000U) << "the signal came too late";
    for (const auto& [name, contents] : left) {
        EXPECT_TRUE(name.starts_with("Icon ")) << name;
        EXPECT_EQ(picture("out/Maps.app/" + name).width, 512U) << name;
    }
}

TEST_F(ExtractOutput, ProgressIsShownOnATerminalOnceItTakesLong) {
    constexpr std::uint16_t kMost = 3840;
    std::optional<std::string> shown;
    std::uint16_t pictures = 30;
    // The work is doubled until this machine shows progress and has time to tell what is left.
    do {
        pictures = static_cast<std::uint16_t>(pictures * 2);
        CarWriter car;
        car.atlas(1, CarPixels::pattern(1024, 1024));
        for (std::uint16_t i = 1; i <= pictures; ++i) {
            car.facet("Icon " + std::to_string(i), i);
            car.link({.identifier = i}, {0, 0, 1024, 1024});
        }
        catalog(car);
        fs::remove_all(folder / "out");
        shown = errorsOnTerminal({"extract", "Maps.app", "out", "--jobs", "1"},
                                 {.folder = folder.path()});
        if (!shown) {
            GTEST_SKIP() << "no pseudo-terminal is to be had";
        }
    } while (shown->find(" s left") == std::string::npos && pictures < kMost);
    EXPECT_EQ(shown->find("] 0 of "), std::string::npos) << "before half a second had passed";
    EXPECT_NE(shown->find("-] "), std::string::npos) << *shown;
    EXPECT_NE(shown->find(" of " + std::to_string(pictures) + " pictures, "), std::string::npos)
        << *shown;
    EXPECT_NE(shown->find(" s left"), std::string::npos) << *shown;
    EXPECT_TRUE(shown->ends_with("\r\033[K")) << "the line stays";
}

TEST_F(ExtractOutput, ShortWorkShowsNoProgress) {
    catalogWithNames({"Icon", "Other"});
    EXPECT_EQ(extract({"Maps.app", "out"}).errors, "");
    const auto shown = errorsOnTerminal({"extract", "Maps.app", "out"}, {.folder = folder.path()});
    if (!shown) {
        GTEST_SKIP() << "no pseudo-terminal is to be had";
    }
    EXPECT_EQ(*shown, "");
}

}  // namespace
}  // namespace velmoranth::cli::extract_output_test
