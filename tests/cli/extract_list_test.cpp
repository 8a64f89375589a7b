// velmoranth extract --list
#include "desktop/vector_images/vector_images.h"
#include "tests/cli/extract_fixture.h"

#include <nlohmann/json.hpp>

#include <sstream>

namespace velmoranth::cli::extract_list_test {
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
              "name rendition kind scale idiom appearance for size format compression bytes note");
    EXPECT_TRUE(found[1].starts_with("Color color color "));
    EXPECT_TRUE(found[1].ends_with("1.000 0.500 0.000 1.000")) << found[1];
    EXPECT_TRUE(found[2].starts_with("Data data.txt data "));
    EXPECT_EQ(found[3],
              "Icon icon@2x.png bitmap 2x phone UIAppearanceDark 4×3 ARGB uncompressed 64");
    EXPECT_EQ(found[4],
              "Icon icon@2x.png bitmap 2x phone UIAppearanceDark target 5 4×3 ARGB uncompressed 64 "
              "copy for other systems");
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
             {"name",   "rendition",  "kind",        "scale",       "idiom",       "appearance",
              "width",  "height",     "pixelFormat", "colorSpace",  "compression", "bytes",
              "layout", "template",   "vectorBased", "orientation", "slices",      "alignment",
              "link",   "attributes", "color",       "iconSizes",   "extracted",   "file",
              "path",   "givesWay",   "type",        "problem"}) {
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

TEST_F(ExtractList, JsonHasWhatRecordsSayOfTheirPicture) {
    CarWriter car;
    car.facet("Icon", 7);
    car.bitmap({.identifier = 7,
                .name = "icon.png",
                .flags = 0x0C,
                .layout = 20,
                .orientation = 6,
                .slices = {{0, 0, 1, 3}, {1, 0, 3, 3}},
                .metrics = catalog::Metrics{1, 2, 3, 4, 5, 6}},
               CarPixels::pattern(4, 3));
    catalog(car);
    const json icon = listing()["renditions"][0];
    EXPECT_EQ(icon["template"], true);
    EXPECT_EQ(icon["vectorBased"], true);
    EXPECT_EQ(icon["layout"], 20);
    EXPECT_EQ(icon["colorSpace"], 1);
    EXPECT_EQ(icon["orientation"], 6);
    EXPECT_EQ(icon["slices"], json::parse(R"([{"x": 0, "y": 0, "width": 1, "height": 3},
                                              {"x": 1, "y": 0, "width": 3, "height": 3}])"));
    EXPECT_EQ(icon["alignment"], json::parse(R"({"left": 1, "top": 2, "right": 3, "bottom": 4,
                                                 "width": 5, "height": 6})"));
    EXPECT_EQ(icon["link"], nullptr);
}

TEST_F(ExtractList, JsonHasWhatLinksLeadToAndTablesHold) {
    CarWriter car;
    car.atlas(1, CarPixels::pattern(16, 16));
    car.facet("AppIcon", 5);
    car.facet("Lost", 6);
    car.facet("Part", 7);
    car.iconSizes({.identifier = 5}, {{20, 20, 1}, {83, 84, 2}});
    car.link({.identifier = 6}, {0, 0, 8, 4}, 9);  // there is no such atlas
    car.link({.identifier = 7}, {1, 2, 8, 4});
    catalog(car);
    const json renditions = listing()["renditions"];
    ASSERT_EQ(renditions.size(), 4U);
    EXPECT_EQ(renditions[0]["iconSizes"], json::parse(R"([{"width": 20, "height": 20, "index": 1},
                              {"width": 83, "height": 84, "index": 2}])"));
    EXPECT_EQ(renditions[1]["link"]["rendition"], nullptr);
    EXPECT_EQ(renditions[1]["link"]["storedCompression"], nullptr);
    EXPECT_EQ(renditions[2]["compression"], nullptr);
    EXPECT_EQ(renditions[2]["link"]["rendition"], "ZZZZPackedAsset-1.1.0");
    EXPECT_EQ(renditions[2]["link"]["storedCompression"], "uncompressed");
    EXPECT_EQ(renditions[2]["link"]["part"],
              json::parse(R"({"x": 1, "y": 2, "width": 8, "height": 4})"));
}

TEST_F(ExtractList, RowsOfOneNameAreToldApartByWhatTheyAreFor) {
    struct Case {
        std::vector<std::pair<Attribute, std::uint16_t>> attributes;
        std::string text;
    };

    std::vector<Case> cases{
        {{}, ""},
        {{{Attribute::horizontalSizeClass, 1}, {Attribute::verticalSizeClass, 2}},
         "compact width, regular height"},
        {{{Attribute::memoryClass, 2}}, "2 GB"},
        {{{Attribute::memoryClass, 9}}, "memory class 9"},
        {{{Attribute::graphicsClass, 1}, {Attribute::subtype, 568}},
         "graphics class 1, subtype 568"},
        {{{Attribute::displayGamut, 1}, {Attribute::direction, 4}}, "P3, direction 4"},
        {{{Attribute::localization, 3}, {Attribute::deploymentTarget, 5}},
         "localization 3, target 5"},
    };
    CarWriter car;
    for (std::uint16_t i = 0; i < cases.size(); ++i) {
        car.facet("Icon " + std::to_string(i), static_cast<std::uint16_t>(i + 1));
        car.bitmap({.identifier = static_cast<std::uint16_t>(i + 1),
                    .attributes = cases[i].attributes,
                    .name = "x"},
                   CarPixels::pattern(1, 1));
    }
    catalog(car);
    std::istringstream lines(extract({"Maps.app", "--list"}).output);
    std::string line;
    std::getline(lines, line);
    const std::size_t column = line.find("for");
    for (const Case& one : cases) {
        std::getline(lines, line);
        const std::string text = line.substr(column, line.find("1×1") - column);
        EXPECT_EQ(text.substr(0, text.find_last_not_of(' ') + 1), one.text) << line;
    }
}

TEST_F(ExtractList, SaysWhichFilesAreToldApartAndAgreesWithExtraction) {
    CarWriter car;
    car.facet("Icon", 7);
    const std::array<std::array<std::uint8_t, 4>, 3> colors{kRed, kRed, kGreen};
    for (std::uint16_t idiom = 0; idiom < 3; ++idiom) {
        car.bitmap({.identifier = 7, .idiom = idiom}, CarPixels::filled(4, 4, colors[idiom]));
    }
    car.bitmap({.identifier = 7, .idiom = 3}, CarPixels::pattern(6, 6));
    catalog(car);
    const json renditions = listing()["renditions"];
    ASSERT_EQ(renditions.size(), 4U);
    const std::array<std::string, 4> names{"Icon-4-4~universal.png", "Icon-4-4~phone.png",
                                           "Icon-4-4.png", "Icon-6-6.png"};
    const std::string table = extract({"Maps.app", "--list"}).output;
    std::istringstream lines(table);
    std::string line;
    std::getline(lines, line);
    ASSERT_EQ(extract({"Maps.app", "out"}).code, 0);
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(renditions[i]["givesWay"], false) << i;
        EXPECT_EQ(renditions[i]["file"], names[i]);
        EXPECT_TRUE(std::filesystem::exists(folder / ("out/Maps.app/" + names[i])));
        std::getline(lines, line);
        EXPECT_EQ(line.ends_with("  file: " + names[i]), i < 2) << line;
    }
    expectPicture("out/Maps.app/Icon-4-4.png", CarPixels::filled(4, 4, kGreen));
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
}  // namespace velmoranth::cli::extract_list_test
