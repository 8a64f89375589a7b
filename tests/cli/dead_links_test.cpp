// Links in a theme that lead nowhere on a device: every command that is about the theme names them.
#include "tests/cli/explain_fixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace velmoranth::cli::dead_links_test {
namespace {

constexpr const char* kWhy =
    "is a link that leads nowhere on a device; put the file itself in its place";

class DeadLinks : public ExplainTest {
  protected:
    // An icon that lies elsewhere on this machine, one that lies in the theme, and one on a phone.
    DeadLinks() {
        picture("shared/maps.png");
        picture("A/art/mail.png");
        folder.folder("work/A/IconBundles");
        folder.folder("work/A/Velmoranth");
        folder.folder("work/A/__MACOSX/IconBundles");
        folder.link(std::string("work/A/") + kMaps, "../../shared/maps.png");
        folder.link("work/A/IconBundles/com.apple.mobilemail-large.png", "../art/mail.png");
        folder.link("work/A/IconBundles/com.apple.camera-large.png",
                    "/Library/Themes/A/art/mail.png");
        folder.link("work/A/__MACOSX/IconBundles/x.png", "../none");
    }

    std::string run(const std::vector<std::string>& words, int code = 0) const {
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, code) << result.errors;
        return result.output + result.errors;
    }

    const std::string line_ = std::string("A/") + kMaps + " " + kWhy;
};

TEST_F(DeadLinks, APreviewNamesThem) {
    const std::string said = run({"preview", "A"});
    EXPECT_NE(said.find("\nvelmoranth: " + line_ + "\n"), std::string::npos) << said;
    EXPECT_NE(said.find("velmoranth: 2 of 46 apps have an icon of the theme"), std::string::npos)
        << said;
    folder.link("work/A/Velmoranth/Folder.png", "/etc/hostname");
    const std::string both = run({"preview", "A"});
    EXPECT_NE(both.find("\nvelmoranth: 2 files are links that lead nowhere on a device, A/" +
                        std::string(kMaps) + " first; put the files themselves in their places\n"),
              std::string::npos)
        << both;
    EXPECT_EQ(run({"preview", "A", "--quiet"}).find("link"), std::string::npos);
}

TEST_F(DeadLinks, InstallingNamesThemWhetherCopiedOrLinked) {
    run({"device", "init", "d"});
    for (const char* const how : {"--force", "--link"}) {
        const std::string said = run({"device", "install", "A", "--root", "d", how});
        EXPECT_NE(said.find("velmoranth: " + line_ + "\n"), std::string::npos) << how << said;
        run({"settings", "set", "ActiveThemes=A", "--root", "d"});
        const std::string drawn = run({"preview", "--root", "d"});
        EXPECT_NE(drawn.find("velmoranth: " + line_ + "\n"), std::string::npos) << how << drawn;
        run({"device", "uninstall", "A", "--root", "d"});
    }
}

TEST_F(DeadLinks, AnExplanationHasThemAsTheReason) {
    EXPECT_EQ(answer({"A", "--", "icon", "com.apple.Maps"}, 1),
              "The stock picture shows: " + line_ + ".");
    EXPECT_NE(explain({"A", "--", "icon", "com.apple.Maps"})
                  .output.find(std::string("looks for  A/") + kMaps +
                               " (missing, is a link that leads nowhere on a device)\n"),
              std::string::npos);
    EXPECT_NE(answer({"A", "--", "icon", "com.apple.mobilemail"})
                  .find("A/IconBundles/com.apple.mobilemail-large.png shows"),
              std::string::npos);
    const CommandResult dead = explain({"A", "--", "file", kMaps});
    EXPECT_EQ(dead.code, 3);
    EXPECT_EQ(dead.errors, std::string("velmoranth: error: ") + kMaps + ": it " + kWhy + "\n");
    EXPECT_NE(answer({"A", "--", "file", "IconBundles/com.apple.camera-large.png"})
                  .find("is opened by icon com.apple.camera"),
              std::string::npos)
        << "one that leads somewhere";
    const CommandResult all = explain({"A", "--", "file", "*"});
    EXPECT_EQ(all.code, 0);
    EXPECT_EQ(all.output, line_ + "\n");
    EXPECT_EQ(object({"A", "--", "file", "*"}),
              (nlohmann::json{{"version", 1},
                              {"theme", "A"},
                              {"file", kMaps},
                              {"wanted", ""},
                              {"reason", "is a link that leads nowhere on a device"}}));
}

}  // namespace
}  // namespace velmoranth::cli::dead_links_test
