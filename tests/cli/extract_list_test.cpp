// velmoranth extract --list
#include "desktop/vector_images/vector_images.h"
#include "tests/cli/extract_fixture.h"

#include <nlohmann/json.hpp>

#include <sstream>

namespace velmoranth::cli {
namespace {

using nlohmann::json;

class ExtractList : public ExtractTest {
  protected:
    // One of everything.
    void catalogOfAllKinds() const {
        CarWriter car;
        car.appearance("UIAppearanceDark", 1);
        car.atlas(1, CarPixels::pattern(16, 16));
        std::uint16_t identifier = 1;
        for (const char* const name : {"Color", "Data", "Icon", "Part", "Record", "Vector"}) {
            car.facet(name, identifier);
            ++identifier;
        }
        car.color({.identifier = 1, .name = "color"}, 1, {1, 0.5, 0, 1});
        car.file({.identifier = 2,
                  .name = "data.txt",
                  .pixelFormat = fourCharacterCode("DATA"),
                  .layout = 1000,
                  .typeIdentifier = "public.plain-text"},
                 "text");
        for (const std::uint16_t target : {std::uint16_t{5}, std::uint16_t{0}}) {
            car.bitmap(
                {.identifier = 3,
                 .scale = 2,
                 .idiom = 1,
                 .attributes = {{Attribute::deploymentTarget, target}, {Attribute::appearance, 1}},
                 .name = "icon@2x.png"},
                CarPixels::pattern(4, 3));
        }
        car.link({.identifier = 4, .name = "part.png"}, {0, 0, 8, 4});
        car.record(car.key({.identifier = 5}), tests::ByteVector(10, 1));
        car.file({.identifier = 6,
                  .name = "vector.svg",
                  .scalePercent = 0,
                  .pixelFormat = fourCharacterCode("SVG "),
                  .layout = 9},
                 kSvg);
        catalog(car);
    }

    [[nodiscard]] json listing(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words{"Maps.app", "--list", "--json"};
        words.insert(words.end(), more.begin(), more.end());
        const CommandResult result = extract(words);
        EXPECT_EQ(result.code, 0) << result.errors;
        return json::parse(result.output, nullptr, false);
    }
};

TEST_F(ExtractList, TableHasEveryRenditionWithItsFacts) {
    catalogOfAllKinds();
    const CommandResult result = extract({"Maps.app", "--list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    // Blanks in place of columns.
    std::istringstream lines(result.output);
    std::vector<std::string> found;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string joined;
        for (std::string word; words >> word;) {
            joined += (joined.empty() ? "" : " ") + word;
        }
        found.push_back(joined);
    }
    ASSERT_EQ(found.size(), 10U) << result.output;
    EXPECT_EQ(found[0],
              "name rendition kind scale idiom appearance size format compression bytes note");
    EXPECT_TRUE(found[1].starts_with("Color color color "));
    EXPECT_TRUE(found[1].ends_with("1.000 0.500 0.000 1.000")) << found[1];
    EXPECT_TRUE(found[2].starts_with("Data data.txt data "));
    EXPECT_EQ(found[3],
              "Icon icon@2x.png bitmap 2x phone UIAppearanceDark 4×3 ARGB uncompressed 64");
    EXPECT_EQ(found[4],
              "Icon icon@2x.png bitmap 2x phone UIAppearanceDark 4×3 ARGB uncompressed 64 copy for "
              "newer systems");
    EXPECT_EQ(found[5], "Part part.png link 1x universal 8×4 ARGB 0");
    EXPECT_TRUE(found[6].starts_with("Record unreadable universal 0 its ")) << found[6];
    EXPECT_TRUE(found[7].starts_with("Vector vector.svg vector universal SVG ")) << found[7];
    EXPECT_TRUE(found[8].starts_with("ZZZZPackedAsset-1.1.0 atlas 1x universal 16×16 ARGB "))
        << found[8];
    EXPECT_EQ(found[9], "8 renditions, 3 pictures to extract");
    EXPECT_EQ(folder.names("."), "Maps.app") << "nothing is written";
}

TEST_F(ExtractList, JsonHasTheSameFactsForEveryKind) {
    catalogOfAllKinds();
    const json object = listing();
    ASSERT_TRUE(object.is_object());
    EXPECT_EQ(object["catalog"], "Maps.app/Assets.car");
    EXPECT_EQ(object["platform"], "ios");
    EXPECT_EQ(object["deploymentVersion"], "12.0");
    EXPECT_EQ(object["warnings"], json::array());
    const json& renditions = object["renditions"];
    ASSERT_EQ(renditions.size(), 8U);
    for (const json& rendition : renditions) {
        for (const char* const key :
             {"name", "rendition", "kind", "scale", "idiom", "appearance", "width", "height",
              "pixelFormat", "compression", "bytes", "attributes", "extracted", "file",
              "sharesFile", "type", "problem"}) {
            EXPECT_TRUE(rendition.contains(key)) << key;
        }
    }
    const json& color = renditions[0];
    EXPECT_EQ(color["kind"], "color");
    EXPECT_EQ(color["color"], (json{{"colorSpace", 1}, {"components", {1.0, 0.5, 0.0, 1.0}}}));
    EXPECT_EQ(renditions[1]["type"], "public.plain-text");
    const json& icon = renditions[2];
    EXPECT_EQ(icon["name"], "Icon");
    EXPECT_EQ(icon["rendition"], "icon@2x.png");
    EXPECT_EQ(icon["kind"], "bitmap");
    EXPECT_EQ(icon["scale"], 2.0);
    EXPECT_EQ(icon["idiom"], "phone");
    EXPECT_EQ(icon["appearance"], "UIAppearanceDark");
    EXPECT_EQ(icon["width"], 4);
    EXPECT_EQ(icon["height"], 3);
    EXPECT_EQ(icon["pixelFormat"], "ARGB");
    EXPECT_EQ(icon["compression"], "uncompressed");
    EXPECT_EQ(icon["bytes"], 16 + 4 * 4 * 3);
    EXPECT_EQ(icon["attributes"]["identifier"], 3);
    EXPECT_EQ(icon["extracted"], true);
    EXPECT_EQ(icon["file"], "Icon-4-3-@2x.png");
    EXPECT_EQ(icon["problem"], nullptr);
    const json& copy = renditions[3];
    EXPECT_EQ(copy["attributes"]["deploymentTarget"], 5);
    EXPECT_EQ(copy["extracted"], false);
    EXPECT_EQ(copy["file"], nullptr);
    EXPECT_EQ(renditions[4]["file"], "Part-8-4.png");
    EXPECT_EQ(renditions[5]["kind"], "unreadable");
    EXPECT_TRUE(renditions[5]["problem"].is_string());
    if (desktop::vectorLibraries().find("no librsvg") == std::string::npos) {
        EXPECT_EQ(renditions[6]["file"], "Vector-10-6.png");
    }
    EXPECT_EQ(renditions[7]["kind"], "atlas");
    EXPECT_EQ(renditions[7]["name"], nullptr);
}

TEST_F(ExtractList, SaysWhichPicturesShareAFileAndAgreesWithExtraction) {
    CarWriter car;
    car.facet("Icon", 7);
    for (std::uint16_t idiom = 1; idiom <= 3; ++idiom) {
        const std::uint32_t side = idiom == 3 ? 6 : 4;
        car.bitmap({.identifier = 7, .idiom = idiom}, CarPixels::pattern(side, side));
    }
    catalog(car);
    const json renditions = listing()["renditions"];
    ASSERT_EQ(renditions.size(), 3U);
    EXPECT_EQ(renditions[0]["sharesFile"], true);
    EXPECT_EQ(renditions[1]["sharesFile"], true);
    EXPECT_EQ(renditions[2]["sharesFile"], false);
    EXPECT_NE(extract({"Maps.app", "--list"}).output.find("shares its file: Icon-4-4.png"),
              std::string::npos);
    ASSERT_EQ(extract({"Maps.app", "out"}).code, 0);
    for (const json& rendition : renditions) {
        EXPECT_TRUE(std::filesystem::exists(
            folder / ("out/Maps.app/" + rendition["file"].get<std::string>())));
    }
}

TEST_F(ExtractList, JsonIsUtf8WhateverNamesHold) {
    CarWriter car;
    car.facet("broken \xff", 7);
    car.bitmap({.identifier = 7, .name = "bad \xc3"}, CarPixels::pattern(2, 2));
    catalog(car);
    const json renditions = listing()["renditions"];
    ASSERT_EQ(renditions.size(), 1U);
    EXPECT_EQ(renditions[0]["name"], "broken \xef\xbf\xbd");
    EXPECT_EQ(renditions[0]["rendition"], "bad \xef\xbf\xbd");
    EXPECT_EQ(renditions[0]["file"], "broken %FF-2-2.png");
}

TEST_F(ExtractList, ControlCharactersOfNamesDoNotReachTheTerminal) {
    CarWriter car;
    car.facet("a\nb\x1b[31m", 7);
    car.bitmap({.identifier = 7, .name = "c\td"}, CarPixels::pattern(2, 2));
    catalog(car);
    const std::string output = extract({"Maps.app", "--list"}).output;
    EXPECT_EQ(output.find('\x1b'), std::string::npos);
    EXPECT_NE(output.find("a?b?[31m"), std::string::npos) << output;
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 3);
}

TEST_F(ExtractList, PatternTakesSomeOfTheNames) {
    catalogOfAllKinds();
    const json renditions = listing({"--name", "Co*"})["renditions"];
    ASSERT_EQ(renditions.size(), 1U);
    EXPECT_EQ(renditions[0]["name"], "Color");
    const CommandResult none = extract({"Maps.app", "--list", "--json", "--name", "x*"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(json::parse(none.output)["renditions"], json::array());
    EXPECT_EQ(none.errors,
              "velmoranth: error: Maps.app/Assets.car: nothing has a name that fits \"x*\"; "
              "without --name, --list shows the names\n");
}

}  // namespace
}  // namespace velmoranth::cli
