// Packages and archives that come on standard input.
#include "tests/cli/preview_fixture.h"
#include "tests/support/archives/archive_writer.h"

namespace velmoranth::cli::standard_input_test {
namespace {

class StandardInput : public PreviewTest {
  protected:
    StandardInput() { theme("made", kMagenta); }

    [[nodiscard]] tests::PackedEntry icon(const std::string& name) const {
        return {name, folder.contents("made/IconBundles/com.apple.Preferences-large.png")};
    }

    // The command with these bytes on standard input.
    [[nodiscard]] CommandResult run(const std::vector<std::string>& words,
                                    const std::string& bytes) const {
        folder.file("piped", bytes);
        CommandSetting piped = setting();
        piped.input = folder / "piped";
        CommandResult result = runCommand(words, piped);
        EXPECT_EQ(folder.names("tmp"), "") << "what came stays behind";
        EXPECT_EQ(folder.contents("piped"), bytes);
        return result;
    }

    const std::string kIcon = "IconBundles/com.apple.Preferences";
};

TEST_F(StandardInput, APackageIsPreviewed) {
    const std::string package =
        tests::packageOf({icon("./Library/Themes/A.theme/" + kIcon + "-large.png")});
    const CommandResult result = run({"preview", "-", "--quiet"}, package);
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_GT(picture().count(kMagenta), 1000);
}

TEST_F(StandardInput, AnArchiveIsConverted) {
    const CommandResult result =
        run({"convert", "-", "-o", "out"},
            tests::tarOf({icon("deep/A.theme/" + kIcon + "@3x.png")}, tests::Packing::gzip));
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "out/A.theme from -/deep/A.theme: 1 file, 1 made or changed, 0 left out\n"
              "  made      " +
                  kIcon + "-large.png from " + kIcon +
                  "@3x.png: an app's icon is looked for under that name\n");
    EXPECT_EQ(folder.contents("work/out/A.theme/" + kIcon + "-large.png"),
              folder.contents("made/IconBundles/com.apple.Preferences-large.png"));
}

TEST_F(StandardInput, AThemeWithoutAFolderHasANameAllTheSame) {
    const CommandResult result =
        run({"convert", "-", "-o", "out"}, tests::zipOf({icon(kIcon + "-large.png")}));
    EXPECT_EQ(result.output, "out/Theme from -: 1 file, nothing to change\n") << result.errors;
}

TEST_F(StandardInput, AnArchiveIsChecked) {
    const std::string archive = tests::zipOf({icon("A.theme/" + kIcon + "@3x.png")});
    const CommandResult result = run({"lint", "-"}, archive);
    EXPECT_EQ(result.code, 1) << result.errors;
    EXPECT_TRUE(result.output.starts_with("A.theme: 1 file, 1 error\n  error    icon-name"))
        << result.output;
    EXPECT_TRUE(result.output.ends_with("velmoranth convert - -o FOLDER mends 1 of these\n"))
        << result.output;
}

TEST_F(StandardInput, WhatIsNoThemeIsRefusedInOneLine) {
    const std::vector<std::pair<std::string, std::string>> rows{
        {"", "nothing came, and a package or an archive was to come"},
        {"text", "it is no .deb, .zip or .tar archive; give one of these, or a folder"},
        {tests::tarOf({{"../up", "x"}}), "it has a name with \"..\", ../up"},
        {tests::zipOf({{"a", "b"}}),
         "there is no theme in it: no folder IconBundles, Bundles or UIImages, and no pictures "
         "named for apps"}};
    for (const auto& [bytes, why] : rows) {
        for (const std::vector<std::string>& words : {std::vector<std::string>{"preview", "-"},
                                                      {"lint", "-"},
                                                      {"convert", "-", "-o", "out"}}) {
            const CommandResult result = run(words, bytes);
            EXPECT_EQ(result.code, 3) << words.front();
            EXPECT_EQ(result.errors, "velmoranth: error: standard input: " + why + "\n");
            EXPECT_EQ(result.output, "");
        }
    }
    EXPECT_EQ(folder.names("work"), "");
}

TEST_F(StandardInput, ItIsReadOnce) {
    const std::string archive = tests::zipOf({icon("A.theme/" + kIcon + "-large.png")});
    const CommandResult result = run({"convert", "-", "-", "-o", "out"}, archive);
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors,
              "velmoranth: error: standard input: nothing came, and a package or an archive was to "
              "come\n");
}

}  // namespace
}  // namespace velmoranth::cli::standard_input_test
