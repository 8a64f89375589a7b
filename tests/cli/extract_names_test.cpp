// velmoranth extract: pictures that would have one file are told apart.
#include "cli/extracted_names.h"
#include "cli/extraction.h"
#include "cli/extraction_plan.h"
#include "cli/folded_name.h"
#include "desktop/vector_images/vector_images.h"
#include "tests/cli/extract_fixture.h"

#include <random>
#include <set>
#include <utility>

namespace velmoranth::cli::extract_names_test {
namespace {

using Attributes = std::vector<std::pair<Attribute, std::uint16_t>>;

constexpr std::uint16_t kIcon = 7;  // the identifier of the name "Icon"

std::vector<std::uint16_t> keyWith(const std::vector<Attribute>& attributes) {
    std::vector<std::uint16_t> format = CarWriter::kKeyFormat;
    for (const Attribute attribute : attributes) {
        if (std::ranges::find(format, static_cast<std::uint16_t>(attribute)) == format.end()) {
            format.push_back(static_cast<std::uint16_t>(attribute));
        }
    }
    return format;
}

// Each with a colour of its own.
CarPixels pixelsOf(std::size_t number) {
    return CarPixels::filled(4, 4, {static_cast<std::uint8_t>(number + 1), 0, 0, 255});
}

class ExtractNames : public ExtractTest {
  protected:
    // One picture for each.
    void catalogOfIcon(const std::vector<Attributes>& pictures) const {
        CarWriter car;
        for (const Attributes& attributes : pictures) {
            for (const auto& [attribute, value] : attributes) {
                car.keyFormat = keyWith({Attribute::state, Attribute::layer, attribute});
            }
        }
        car.facet("Icon", kIcon);
        car.appearance("UIAppearanceDark", 1);
        car.appearance("NSAppearanceNameVery Odd", 2);
        for (std::size_t i = 0; i < pictures.size(); ++i) {
            car.bitmap({.identifier = kIcon, .attributes = pictures[i], .scalePercent = 100},
                       pixelsOf(i));
        }
        catalog(car);
    }

    // The file of each is that name's; all files are these.
    void expectNames(const std::vector<std::string>& names) const {
        std::filesystem::remove_all(folder / "out");
        const CommandResult result = extract({"Maps.app", "out"});
        EXPECT_EQ(result.code, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.output, "Extracted " + std::to_string(names.size()) + " pictures (" +
                                     std::to_string(names.size()) + " files) into out/Maps.app\n");
        for (std::size_t i = 0; i < names.size(); ++i) {
            expectPicture("out/Maps.app/" + names[i], pixelsOf(i));
        }
        EXPECT_EQ(files("out").size(), names.size()) << fileNames("out");
    }
};

TEST_F(ExtractNames, LastKeepsTheNameAndTheOtherIsToldApartByEachAttribute) {
    struct Case {
        Attribute attribute;
        std::uint16_t first;
        std::uint16_t last;
        std::string mark;
    };

    for (const Case& one : std::vector<Case>{
             {Attribute::idiom, 0, 2, "~universal"},
             {Attribute::idiom, 1, 2, "~phone"},
             {Attribute::idiom, 2, 3, "~pad"},
             {Attribute::idiom, 3, 4, "~tv"},
             {Attribute::idiom, 4, 5, "~car"},
             {Attribute::idiom, 5, 6, "~watch"},
             {Attribute::idiom, 6, 9, "~marketing"},
             {Attribute::idiom, 9, 10, "~idiom9"},
             {Attribute::appearance, 0, 1, "-any"},
             {Attribute::appearance, 1, 2, "-dark"},
             {Attribute::appearance, 2, 3, "-veryodd"},
             {Attribute::appearance, 3, 4, "-appearance3"},
             {Attribute::horizontalSizeClass, 0, 1, "-anywidthclass"},
             {Attribute::horizontalSizeClass, 1, 2, "-compactwidth"},
             {Attribute::horizontalSizeClass, 2, 3, "-regularwidth"},
             {Attribute::horizontalSizeClass, 3, 4, "-widthclass3"},
             {Attribute::verticalSizeClass, 0, 1, "-anyheightclass"},
             {Attribute::verticalSizeClass, 1, 2, "-compactheight"},
             {Attribute::verticalSizeClass, 2, 3, "-regularheight"},
             {Attribute::memoryClass, 0, 1, "-anymemoryclass"},
             {Attribute::memoryClass, 1, 2, "-1gb"},
             {Attribute::memoryClass, 2, 3, "-2gb"},
             {Attribute::memoryClass, 3, 4, "-4gb"},
             {Attribute::memoryClass, 4, 5, "-memoryclass4"},
             {Attribute::graphicsClass, 0, 1, "-anygraphicsclass"},
             {Attribute::graphicsClass, 1, 2, "-graphicsclass1"},
             {Attribute::subtype, 0, 568, "-anysubtype"},
             {Attribute::subtype, 568, 1136, "-subtype568"},
             {Attribute::displayGamut, 0, 1, "-anygamut"},
             {Attribute::displayGamut, 1, 2, "-p3"},
             {Attribute::direction, 4, 5, "-direction4"},
             {Attribute::localization, 1, 2, "-localization1"},
             {Attribute::glyphWeight, 4, 5, "-weight4"},
             {Attribute::glyphSize, 1, 2, "-glyphsize1"},
             {Attribute::look, 1, 2, "-look1"},
             {Attribute::element, 85, 86, "-element85"},
             {Attribute::part, 180, 181, "-part180"},
             {Attribute::size, 0, 1, "-size0"},
             {Attribute::placeholder, 1, 2, "-placeholder1"},
             {Attribute::value, 1, 2, "-value1"},
             {Attribute::dimension1, 1, 2, "-dimension11"},
             {Attribute::dimension2, 1, 2, "-dimension21"},
             {Attribute::state, 1, 2, "-state1"},
             {Attribute::layer, 1, 2, "-layer1"},
             {Attribute::scale, 1, 2, "-scale1"},
             {Attribute::presentationState, 1, 2, "-presentationstate1"},
             {Attribute::previousValue, 1, 2, "-previousvalue1"},
             {Attribute::previousState, 1, 2, "-previousstate1"},
         }) {
        SCOPED_TRACE(one.mark);
        catalogOfIcon({{{one.attribute, one.first}}, {{one.attribute, one.last}}});
        expectNames({"Icon-4-4" + one.mark + ".png", "Icon-4-4.png"});
    }
}

TEST_F(ExtractNames, WhatIsNotNeededToTellApartIsLeftOut) {
    const auto idiom = [](std::uint16_t value) { return std::pair(Attribute::idiom, value); };
    const auto subtype = [](std::uint16_t value) { return std::pair(Attribute::subtype, value); };
    const auto dark = std::pair(Attribute::appearance, std::uint16_t{1});
    const auto p3 = std::pair(Attribute::displayGamut, std::uint16_t{1});

    struct Case {
        std::string about;
        std::vector<Attributes> pictures;
        std::vector<std::string> marks;
    };

    for (const Case& one : std::vector<Case>{
             {"three values of one",
              {{idiom(0)}, {idiom(1)}, {idiom(2)}},
              {"~universal", "~phone", ""}},
             {"two that go together: the first of the order",
              {{idiom(1), subtype(5)}, {idiom(2), subtype(6)}},
              {"~phone", ""}},
             {"a later one alone is enough",
              {{idiom(1), subtype(1)},
               {idiom(2), subtype(2)},
               {idiom(2), subtype(3)},
               {idiom(1), subtype(4)}},
              {"-subtype1", "-subtype2", "", "-subtype4"}},
             {"two are needed, and what is for all is not said",
              {{}, {dark}, {idiom(2)}, {idiom(2), dark}},
              {"~universal", "-dark", "~pad", ""}},
             {"in one order however the key has them",
              {{}, {p3}, {dark}, {idiom(1), dark}, {idiom(1), dark, p3}, {idiom(2), dark, p3}},
              {"~universal", "-p3", "-dark", "~phone-dark", "~phone-dark-p3", ""}},
         }) {
        SCOPED_TRACE(one.about);
        catalogOfIcon(one.pictures);
        std::vector<std::string> names;
        for (const std::string& mark : one.marks) {
            names.push_back("Icon-4-4" + mark + ".png");
        }
        expectNames(names);
    }
}

TEST_F(ExtractNames, OtherSizesAndScalesStayAsTheyAre) {
    CarWriter car;
    car.facet("Icon", kIcon);
    car.bitmap({.identifier = kIcon, .idiom = 1}, CarPixels::filled(4, 4, kRed));
    car.bitmap({.identifier = kIcon, .idiom = 2}, CarPixels::filled(6, 6, kRed));
    car.bitmap({.identifier = kIcon, .scale = 2, .idiom = 2}, CarPixels::filled(4, 4, kRed));
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    EXPECT_EQ(fileNames("out/Maps.app"), "Icon-4-4-@2x.png Icon-4-4.png Icon-6-6.png");
}

TEST_F(ExtractNames, ScaleIsWhatItsNameLeavesOut) {
    CarWriter car;
    car.facet("Icon", kIcon);
    car.bitmap({.identifier = kIcon, .scale = 1, .scalePercent = 150}, pixelsOf(0));
    car.bitmap({.identifier = kIcon, .scale = 2, .scalePercent = 100}, pixelsOf(1));
    catalog(car);
    expectNames({"Icon-4-4-150percent.png", "Icon-4-4.png"});
}

TEST_F(ExtractNames, VectorsAndImageFilesAreToldFromBitmaps) {
    CarWriter car;
    car.facet("File", 6);
    car.facet("Icon", kIcon);
    const std::vector<std::uint8_t> bgra(4UL * 4 * 4, 255);
    const platform::Data png = desktop::encodePng(bgra, 4, 4, 16);
    // The record's size is not the picture's, which counts.
    car.file({.identifier = 6, .width = 9, .height = 9, .pixelFormat = fourCharacterCode("JPEG")},
             {reinterpret_cast<const char*>(png.data()), png.size()});
    car.bitmap({.identifier = 6, .attributes = {{Attribute::dimension2, 1}}},
               CarPixels::filled(4, 4, kRed));
    car.file({.identifier = kIcon,
              .scale = 0,
              .scalePercent = 0,
              .pixelFormat = fourCharacterCode("SVG "),
              .layout = 9},
             kSvg);
    car.bitmap({.identifier = kIcon}, CarPixels::filled(10, 6, kRed));
    catalog(car);
    const bool hasSvg = desktop::vectorLibraries().find("no librsvg") == std::string::npos;
    EXPECT_EQ(extract({"Maps.app", "out"}).code, hasSvg ? 0 : 1);
    EXPECT_EQ(fileNames("out/Maps.app"), std::string("File-4-4-imagefile.png File-4-4.png ") +
                                             (hasSvg ? "Icon-10-6-vector.png " : "") +
                                             "Icon-10-6.png");
    expectPicture("out/Maps.app/File-4-4.png", CarPixels::filled(4, 4, kRed));
    expectPicture("out/Maps.app/File-4-4-imagefile.png",
                  CarPixels::filled(4, 4, {255, 255, 255, 255}));
    expectPicture("out/Maps.app/Icon-10-6.png", CarPixels::filled(10, 6, kRed));
}

TEST_F(ExtractNames, NamesThatDifferInCapitalLettersAloneDoNotMeet) {
    CarWriter car;
    std::uint16_t identifier = 0;
    for (const char* const name :
         {"ICON", "Icon", "icon", "Bar/Icon", "bar/Icon", "Größe", "GRÖßE", "Straße", "STRASSE"}) {
        ++identifier;
        car.facet(name, identifier);
        car.bitmap({.identifier = identifier}, pixelsOf(identifier));
    }
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    EXPECT_EQ(fileNames("out/Maps.app"),
              "Bar/Icon-4-4-identifier4.png GRÖßE-4-4-identifier7.png Größe-4-4.png "
              "ICON-4-4-identifier1.png Icon-4-4-identifier2.png STRASSE-4-4.png Straße-4-4.png "
              "bar/Icon-4-4.png icon-4-4.png");
    for (const auto& [name, number] : std::map<std::string, std::size_t>{
             {"ICON-4-4-identifier1", 1}, {"Icon-4-4-identifier2", 2}, {"icon-4-4", 3}}) {
        expectPicture("out/Maps.app/" + name + ".png", pixelsOf(number));
    }
    // A name is the same whatever is asked for besides.
    EXPECT_EQ(extract({"Maps.app", "one", "--name", "Icon"}).code, 0);
    EXPECT_EQ(fileNames("one/Maps.app"), "Icon-4-4-identifier2.png");
}

TEST_F(ExtractNames, FilteredPicturesHaveTheNamesThatTheyHaveAmongAll) {
    catalogOfIcon({{{Attribute::idiom, 1}}, {{Attribute::idiom, 2}}});
    EXPECT_EQ(extract({"Maps.app", "out", "--idiom", "phone"}).code, 0);
    EXPECT_EQ(fileNames("out/Maps.app"), "Icon-4-4~phone.png");
    expectPicture("out/Maps.app/Icon-4-4~phone.png", pixelsOf(0));
}

TEST_F(ExtractNames, WhatNoAttributeTellsApartHasItsPlace) {
    CarWriter car;
    car.facet("A", 7);  // the same pictures under two names that a file system may take for one
    car.facet("a", 7);
    car.bitmap({.identifier = 7, .idiom = 1}, pixelsOf(0));
    car.bitmap({.identifier = 7, .idiom = 2}, pixelsOf(1));
    catalog(car);
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    EXPECT_EQ(fileNames("out/Maps.app"),
              "A-4-4~pad.png A-4-4~phone%~0.png a-4-4.png a-4-4~phone%~2.png");
    expectPicture("out/Maps.app/a-4-4.png", pixelsOf(1));
    expectPicture("out/Maps.app/a-4-4~phone%~2.png", pixelsOf(0));
}

TEST_F(ExtractNames, MarksThatWouldBeLongAreAPlace) {
    const std::vector<Attribute> attributes{
        Attribute::idiom,       Attribute::horizontalSizeClass, Attribute::verticalSizeClass,
        Attribute::memoryClass, Attribute::graphicsClass,       Attribute::subtype,
        Attribute::direction,   Attribute::localization,        Attribute::dimension1,
        Attribute::dimension2,  Attribute::displayGamut};
    std::vector<Attributes> pictures;
    for (std::size_t without = 0; without <= attributes.size(); ++without) {
        Attributes all;
        for (std::size_t i = 0; i < attributes.size(); ++i) {
            all.emplace_back(attributes[i], i == without ? 0 : 9);
        }
        pictures.push_back(all);
    }
    catalogOfIcon(pictures);
    EXPECT_EQ(extract({"Maps.app", "out"}).code, 0);
    const auto found = files("out/Maps.app");
    EXPECT_EQ(found.size(), pictures.size());
    for (const auto& [name, contents] : found) {
        EXPECT_TRUE(name == "Icon-4-4.png" || name.starts_with("Icon-4-4%~")) << name;
    }
}

TEST_F(ExtractNames, LongNamesHaveRoomForMarks) {
    CarWriter car;
    for (const std::size_t length :
         {std::size_t{180}, std::size_t{247}, std::size_t{248}, std::size_t{3000}}) {
        const auto identifier = static_cast<std::uint16_t>(length);
        car.facet(std::string(length, 'x'), identifier);
        for (const std::uint16_t width : {std::uint16_t{1}, std::uint16_t{2}}) {
            car.bitmap({.identifier = identifier,
                        .attributes = {{Attribute::horizontalSizeClass, width},
                                       {Attribute::subtype, width}}},
                       pixelsOf(width));
        }
    }
    catalog(car);
    const CommandResult result = extract({"Maps.app", "out"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output, "Extracted 8 pictures (8 files) into out/Maps.app\n");
    EXPECT_EQ(files("out").size(), 8U);
}

// Pictures whose names, sizes and attributes are much alike.
CarWriter crowd(std::mt19937& random) {
    const std::vector<std::string> pieces{"Icon", "icon", "-4-4", "~phone", "-dark", "/",
                                          "@2x",  "%~1",  "-@2x", ".png",   "~",     "-p3"};
    const auto pick = [&](std::size_t count) {
        return static_cast<std::uint16_t>(random() % count);
    };
    CarWriter car;
    car.appearance("UIAppearanceDark", 1);
    car.appearance("NSAppearanceNameDark", 2);  // the same word
    car.appearance("P3", 3);                    // another attribute's word
    for (std::uint16_t name = 0; name < 40; ++name) {
        std::string text = pieces[pick(pieces.size())];
        for (std::uint16_t i = pick(4); i > 0; --i) {
            text += pieces[pick(pieces.size())];
        }
        const auto identifier = static_cast<std::uint16_t>(pick(20) + 1);
        car.facet(text, identifier);
        for (std::uint16_t i = pick(12); i > 0; --i) {
            car.bitmap({.identifier = identifier,
                        .scale = static_cast<std::uint16_t>(pick(2) + 1),
                        .idiom = pick(3),
                        .attributes = {{Attribute::appearance, pick(4)},
                                       {Attribute::displayGamut, pick(2)},
                                       {Attribute::subtype, pick(3)},
                                       {Attribute::dimension2, pick(2)}}},
                       CarPixels::filled(4, 4, kRed));
        }
    }
    return car;
}

TEST(ExtractNamesOfMany, NoTwoPicturesHaveOneFile) {
    std::mt19937 random(20);
    std::size_t pictures = 0;
    std::size_t marked = 0;
    for (int round = 0; round < 100; ++round) {
        const tests::ByteVector bytes = crowd(random).build();
        const auto catalog = catalog::Catalog::fromBytes(bytes);
        ASSERT_TRUE(catalog);
        for (const FileLayout layout : {FileLayout::apart, FileLayout::flat}) {
            const auto plan = planExtraction(*catalog, {.layout = layout});
            ASSERT_TRUE(plan);
            std::set<std::string> found;
            std::set<std::string> plain;
            for (const PlannedPicture& picture : *plan) {
                const std::string file = extractedFile(*catalog, picture, 4, 4, layout);
                EXPECT_TRUE(found.insert(folded(file)).second) << file;
                marked += picture.mark.empty() ? 0 : 1;
                PlannedPicture unmarked = picture;
                unmarked.mark.clear();
                plain.insert(folded(extractedFile(*catalog, unmarked, 4, 4, layout)));
                EXPECT_EQ(layout == FileLayout::flat && file.find('/') != std::string::npos, false);
            }
            pictures += plan->size();
            EXPECT_TRUE(std::ranges::includes(found, plain)) << "one of each keeps its name";
            EXPECT_EQ(static_cast<std::size_t>(std::ranges::count_if(
                          *plan, [](const auto& picture) { return picture.mark.empty(); })),
                      plain.size());
        }
    }
    EXPECT_GT(pictures, 5000U);
    EXPECT_GT(marked, 1000U);
}

TEST(ExtractNamesOfMany, SelectionChangesNoName) {
    std::mt19937 random(21);
    for (int round = 0; round < 20; ++round) {
        const tests::ByteVector bytes = crowd(random).build();
        const auto catalog = catalog::Catalog::fromBytes(bytes);
        ASSERT_TRUE(catalog);
        std::map<std::pair<const catalog::Facet*, const catalog::Rendition*>, std::string> marks;
        const auto whole = planExtraction(*catalog, {});
        for (const PlannedPicture& picture : *whole) {
            marks[{picture.facet, picture.rendition}] = picture.mark;
        }
        for (const Selection& selection :
             {Selection{.names = {"Icon*"}}, Selection{.scales = {2}}, Selection{.idioms = {1}},
              Selection{.names = {"*p3", "*@2x"}, .idioms = {0, 2}, .appearances = {"dark"}}}) {
            const auto plan = planExtraction(*catalog, {.selection = selection});
            EXPECT_LT(plan->size(), whole->size());
            for (const PlannedPicture& picture : *plan) {
                EXPECT_EQ(picture.mark, (marks[{picture.facet, picture.rendition}]));
            }
        }
    }
}

// A size that nobody could know beforehand takes no other picture's file.
TEST(ExtractNamesOfMany, SizeThatIsNotTheExpectedOneHasItsPlace) {
    CarWriter car;
    car.facet("Icon", kIcon);
    car.bitmap({.identifier = kIcon, .idiom = 1}, CarPixels::filled(4, 4, kRed));
    car.bitmap({.identifier = kIcon, .idiom = 2}, CarPixels::filled(4, 4, kRed));
    const tests::ByteVector bytes = car.build();
    const auto catalog = catalog::Catalog::fromBytes(bytes);
    const auto plan = planExtraction(*catalog, {});
    ASSERT_EQ(plan->size(), 2U);
    EXPECT_EQ(extractedFile(*catalog, plan->front(), 4, 4, FileLayout::apart),
              "Icon-4-4~phone.png");
    EXPECT_EQ(extractedFile(*catalog, plan->front(), 5, 4, FileLayout::apart),
              "Icon-5-4~phone%~0.png");
    EXPECT_EQ(extractedFile(*catalog, plan->back(), 5, 4, FileLayout::apart), "Icon-5-4%~1.png");
}

TEST(FoldedNames, CapitalLettersBecomeSmallOnes) {
    for (const auto& [name, expected] : std::vector<std::pair<std::string, std::string>>{
             {"", ""},
             {"AZaz09@[`{", "azaz09@[`{"},
             {"ÀÖØÞ×ßàÿŸ", "àöøþ×ßàÿÿ"},
             {"ĀĮĲĶĹŇŊŶŹŽıĸ", "āįĳķĺňŋŷźžıĸ"},
             {"ΆΈΊΌΎΏΑΡΣΫς", "άέίόύώαρσϋσ"},
             {"ЀЏАЯѠҀҊҾӁӍӐԮ", "ѐџаяѡҁҋҿӂӎӑԯ"},
             {"ԱՖ", "աֆ"},
             {"图标 🙂", "图标 🙂"},
             {"\xff\xc3", "\xff\xc3"},
         }) {
        EXPECT_EQ(folded(name), expected);
        EXPECT_EQ(folded(expected), expected);
    }
}

}  // namespace
}  // namespace velmoranth::cli::extract_names_test
