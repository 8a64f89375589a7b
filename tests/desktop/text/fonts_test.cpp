#include "desktop/text/fonts.h"

#include "desktop/text/phone_faces.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace velmoranth::desktop::fonts_test {

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A family of phone_face_names.txt, which is kept apart from the table.
struct Family {
    std::string systems;
    std::string name;
    std::vector<std::string> postScriptNames;
};

std::vector<Family> shippedFamilies() {
    std::ifstream file(tests::kSourceFolder +
                       std::string("/tests/desktop/text/phone_face_names.txt"));
    std::vector<Family> families;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) {
            continue;
        }
        const std::size_t space = line.find(' ');
        const std::size_t colon = line.find(": ");
        Family family{line.substr(0, space), line.substr(space + 1, colon - space - 1), {}};
        std::istringstream names(line.substr(colon + 2));
        for (std::string name; names >> name;) {
            family.postScriptNames.push_back(name);
        }
        families.push_back(family);
    }
    return families;
}

// How the name is drawn, by the system of that version; nothing for nil.
std::optional<TextStyle> styleOf(const platform::NullableString& name, int version = 13,
                                 double size = 20) {
    const auto font =
        std::dynamic_pointer_cast<DesktopFont>(DesktopFonts(version).fontWithNameSize(name, size));
    return font ? std::optional(font->style()) : std::nullopt;
}

std::string described(const std::optional<TextStyle>& style) {
    if (!style) {
        return "nil";
    }
    return style->family + ' ' + std::to_string(static_cast<int>(style->weight)) +
           (style->italic ? " italic" : "");
}

std::string drawn(const std::string& name, int version = 13) {
    return described(styleOf(name, version));
}

}  // namespace

TEST(Fonts, EveryFaceOfASystemIsKnownByItsPostScriptNameAndNoOther) {
    ASSERT_GT(shippedFamilies().size(), 80U);
    for (const int version : {12, 13}) {
        std::set<std::string> expected;
        for (const Family& family : shippedFamilies()) {
            for (const std::string& name : family.postScriptNames) {
                const bool there =
                    family.systems.find(std::to_string(version)) != std::string::npos;
                EXPECT_EQ(styleOf(name, version).has_value(), there) << version << ' ' << name;
                const PhoneFace* const face = phoneFaceNamed(name, version);
                if (there) {
                    expected.insert(name);
                    ASSERT_NE(face, nullptr) << name;
                    EXPECT_EQ(face->postScriptName, name);
                    EXPECT_EQ(face->family, family.name);
                }
            }
        }
        std::set<std::string> known;
        for (const PhoneFace& face : phoneFaces(version)) {
            EXPECT_TRUE(known.insert(face.postScriptName).second) << face.postScriptName;
        }
        EXPECT_EQ(known, expected) << version;
    }
}

TEST(Fonts, EveryFamilyIsKnownByItsName) {
    for (const int version : {12, 13}) {
        for (const Family& family : shippedFamilies()) {
            const bool there = family.systems.find(std::to_string(version)) != std::string::npos ||
                               family.name == "Hiragino Sans" ||
                               family.name == "Noto Nastaliq Urdu";
            EXPECT_EQ(styleOf(family.name, version).has_value(), there) << family.name;
        }
    }
}

TEST(Fonts, AFamilysNameIsItsRegularFace) {
    const auto named = [](const char* family) {
        return phoneFaceNamed(family, 13)->postScriptName;
    };
    EXPECT_EQ(named("Helvetica Neue"), "HelveticaNeue");
    EXPECT_EQ(named("Avenir Next"), "AvenirNext-Regular");
    EXPECT_EQ(named("Arial"), "ArialMT");
    EXPECT_EQ(named("Times New Roman"), "TimesNewRomanPSMT");
    EXPECT_EQ(named("Futura"), "Futura-Medium");
    EXPECT_EQ(named("PingFang SC"), "PingFangSC-Regular");
    EXPECT_EQ(named("Kohinoor Telugu"), "KohinoorTelugu-Regular");
    EXPECT_EQ(named("DIN Alternate"), "DINAlternate-Bold");
    EXPECT_EQ(named("Arial Rounded MT Bold"), "ArialRoundedMTBold");
    EXPECT_EQ(named("Noto Nastaliq Urdu"), "NotoNastaliqUrdu");
}

TEST(Fonts, AFullNameIsTheFamilyWithTheWordsOfItsStyle) {
    const auto named = [](const char* name) {
        const PhoneFace* const face = phoneFaceNamed(name, 13);
        return face ? face->postScriptName : "nil";
    };
    EXPECT_EQ(named("Helvetica Neue Bold"), "HelveticaNeue-Bold");
    EXPECT_EQ(named("Helvetica Neue Regular"), "HelveticaNeue");
    EXPECT_EQ(named("Helvetica Neue UltraLight Italic"), "HelveticaNeue-UltraLightItalic");
    EXPECT_EQ(named("Helvetica Neue Condensed Bold"), "HelveticaNeue-CondensedBold");
    EXPECT_EQ(named("Avenir Next Demi Bold"), "AvenirNext-DemiBold");
    EXPECT_EQ(named("Avenir Next Demi Bold Italic"), "AvenirNext-DemiBoldItalic");
    EXPECT_EQ(named("Avenir Next Condensed Ultra Light"), "AvenirNextCondensed-UltraLight");
    EXPECT_EQ(named("Avenir Book Oblique"), "Avenir-BookOblique");
    EXPECT_EQ(named("Arial Bold"), "Arial-BoldMT");
    EXPECT_EQ(named("Times New Roman Bold Italic"), "TimesNewRomanPS-BoldItalicMT");
    EXPECT_EQ(named("Trebuchet MS Bold Italic"), "Trebuchet-BoldItalic");
    EXPECT_EQ(named("Trebuchet MS Italic"), "TrebuchetMS-Italic");
    EXPECT_EQ(named("Damascus Semi Bold"), "DamascusSemiBold");
    EXPECT_EQ(named("Bodoni 72 Book Italic"), "BodoniSvtyTwoITCTT-BookIta");
    EXPECT_EQ(named("PingFang SC Semibold"), "PingFangSC-Semibold");
    EXPECT_EQ(named("Hiragino Sans W6"), "HiraginoSans-W6");
}

TEST(Fonts, OtherNamesAreNil) {
    EXPECT_EQ(styleOf(std::nullopt), std::nullopt);
    for (const char* name : {"",
                             " ",
                             "Inter",
                             "Liberation Sans",
                             "helveticaneue",
                             "HELVETICANEUE-BOLD",
                             "helvetica neue",
                             "HelveticaNeue-",
                             "HelveticaNeue-Heavy",
                             "HelveticaNeue ",
                             " HelveticaNeue",
                             "Helvetica Neue Heavy",
                             "Helvetica Neue  Bold",
                             "Arial-Bold",
                             "Avenir-",
                             "System",
                             "SFUIText-Bold",
                             "Comic Sans MS",
                             "Damascus Semi",
                             "HelveticaNeue-Bold\n",
                             ".SFCompactText",
                             "."}) {
        EXPECT_EQ(drawn(name), "nil") << name;
        EXPECT_EQ(drawn(name, 12), "nil") << name;
    }
    EXPECT_EQ(styleOf(std::string(1 << 20, 'A')), std::nullopt);
    EXPECT_EQ(styleOf(std::string("Arial\0MT", 8)), std::nullopt);
}

TEST(Fonts, SystemsDiffer) {
    EXPECT_NE(drawn("Galvji"), "nil");
    EXPECT_EQ(drawn("Galvji", 12), "nil");
    EXPECT_EQ(drawn("GurmukhiMN-Bold"), "nil");
    EXPECT_NE(drawn("GurmukhiMN-Bold", 12), "nil");
    EXPECT_NE(drawn("HiraginoSans-W7"), "nil");
    EXPECT_EQ(drawn("HiraginoSans-W7", 12), "nil");
    // 13 unless it is said; versions that are not known are the nearest.
    EXPECT_NE(DesktopFonts().fontWithNameSize("Galvji", 10), nullptr);
    EXPECT_NE(drawn("Galvji", 14), "nil");
    EXPECT_EQ(drawn("Galvji", 11), "nil");
}

TEST(Fonts, EachNameIsDrawnInTheNearestFace) {
    EXPECT_EQ(drawn("HelveticaNeue"), "Inter 400");
    EXPECT_EQ(drawn("HelveticaNeue-UltraLight"), "Inter 100");
    EXPECT_EQ(drawn("HelveticaNeue-Thin"), "Inter 200");
    EXPECT_EQ(drawn("HelveticaNeue-Light"), "Inter 300");
    EXPECT_EQ(drawn("HelveticaNeue-MediumItalic"), "Inter 500 italic");
    EXPECT_EQ(drawn("AvenirNext-DemiBold"), "Inter 600");
    EXPECT_EQ(drawn("HelveticaNeue-Bold"), "Inter 700");
    EXPECT_EQ(drawn("Avenir-HeavyOblique"), "Inter 800 italic");
    EXPECT_EQ(drawn("Avenir-Black"), "Inter 900");
    EXPECT_EQ(drawn("Optima-ExtraBlack"), "Inter 900");
    EXPECT_EQ(drawn("HelveticaNeue-CondensedBold"), "Liberation Sans Narrow 700");
    EXPECT_EQ(drawn("AvenirNextCondensed-Italic"), "Liberation Sans Narrow 400 italic");
    EXPECT_EQ(drawn("Arial-BoldItalicMT"), "Liberation Sans 700 italic");
    EXPECT_EQ(drawn("Helvetica"), "Liberation Sans 400");
    EXPECT_EQ(drawn("Helvetica-Light"), "Inter 300");
    EXPECT_EQ(drawn("TimesNewRomanPS-ItalicMT"), "Liberation Serif 400 italic");
    EXPECT_EQ(drawn("Georgia-Bold"), "Liberation Serif 700");
    EXPECT_EQ(drawn("BodoniSvtyTwoOSITCTT-BookIt"), "Liberation Serif 400 italic");
    EXPECT_EQ(drawn("AmericanTypewriter-Semibold"), "DejaVu Serif 600");
    EXPECT_EQ(drawn("AmericanTypewriter-CondensedBold"), "DejaVu Serif 700");
    EXPECT_EQ(drawn("CourierNewPSMT"), "Liberation Mono 400");
    EXPECT_EQ(drawn("Menlo-Bold"), "DejaVu Sans Mono 700");
    EXPECT_EQ(drawn("Verdana"), "DejaVu Sans 400");
    EXPECT_EQ(drawn("MarkerFelt-Wide"), "Comic Neue 700");
    EXPECT_EQ(drawn("SnellRoundhand-Black"), "Dancing Script 900");
    EXPECT_EQ(drawn("ArialRoundedMTBold"), "Quicksand 700");
    EXPECT_EQ(drawn("TrebuchetMS-Bold"), "Inter 700");
}

TEST(Fonts, TheSystemFacesPrivateNamesAreAnotherFaceSince13) {
    EXPECT_EQ(drawn(".SFUIText", 12), "Inter 400");
    EXPECT_EQ(drawn(".SFUIText-Bold", 12), "Inter 700");
    EXPECT_EQ(drawn(".SFUIDisplay-Ultralight", 12), "Inter 100");
    EXPECT_EQ(drawn(".SFUIText-SemiboldItalic", 12), "Inter 600 italic");
    EXPECT_EQ(drawn(".SFUI-Regular", 12), "Inter 400");
    EXPECT_EQ(drawn(".SF UI Text", 12), "Inter 400");
    EXPECT_EQ(drawn(".SFUIText-Nonsense", 12), "nil");
    EXPECT_EQ(drawn(".SFUITextile", 12), "nil");
    for (const char* name :
         {".SFUI-Regular", ".SFUIText", ".SFUIText-Bold", ".SFUIDisplay-Light", ".SF UI Display"}) {
        EXPECT_EQ(drawn(name), "Liberation Serif 400") << name;
    }
}

TEST(Fonts, ASizeThatIsNoneIsTheSystems) {
    for (const double size : {0.0, -0.0, -1.0, -1e300, -kInfinity, kNoNumber}) {
        EXPECT_EQ(styleOf("Arial", 13, size)->size, 14) << size;
    }
    EXPECT_EQ(styleOf("Arial", 13, 11.25)->size, 11.25);
    EXPECT_EQ(styleOf("Arial", 13, 1e9)->size, kLargestTextSize);
    EXPECT_EQ(styleOf("Arial", 13, kInfinity)->size, kLargestTextSize);
    EXPECT_EQ(styleOf("Arial", 13, 1e-300)->size, 1e-300);
}

}  // namespace velmoranth::desktop::fonts_test
