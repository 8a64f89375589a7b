// The two methods that give a bitmap: of a glyph and of an image's content.
#include "core/settings.h"
#include "hooks/images/catalog_image_hooks.h"

#include "catalog_images_fixture.h"
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::tests::catalog_bitmaps_test {
namespace {

using hooks::themeImgFound;
using platform::BitmapImageRef;
using platform::ImageRef;
using platform::ObjectRef;

const Lookup kInKit{"star", "com.x.kit"};
const Lookup kLoose{"star", std::nullopt};
constexpr const char* kWrapNil = "+[UIImage imageWithCGImage:] nil";
constexpr const char* kWrap = "+[UIImage imageWithCGImage:] 6×9 pixels";

class GlyphBitmap : public CatalogImages {
  protected:
    std::shared_ptr<Keeper> catalog = std::make_shared<Keeper>("CUICatalog", bundle);
    std::shared_ptr<Glyph> glyph = std::make_shared<Glyph>();
    std::string orig = call(*glyph, "image");

    GlyphBitmap() { glyph->catalog = catalog; }

    BitmapImageRef send() {
        given.clear();
        wrapped.clear();
        return device.runtime.send<BitmapImageRef>(*glyph, "image");
    }

    static std::string logLine(const std::string& name, const std::string& identifier) {
        return logged("VELMORANTH CUINamedVectorGlyph imageRef Named: %@ fromBundle: %@",
                      {name, identifier});
    }

    // Expects that the platform's second answer is taken, without a look-up and without a line.
    void expectLeftToPlatform() {
        for (const bool enableLogging : {false, true}) {
            switches(true, enableLogging, true);
            EXPECT_EQ(answeredBy(send()), 1);
            EXPECT_EQ(steps(), (Lines{orig, orig}));
        }
        EXPECT_FALSE(device.exists(kDumpFolder));
    }

    void expectLookup(const std::string& name, const std::string& identifier) {
        const Lookup wanted{name, identifier};
        switches(true, false);
        EXPECT_EQ(answeredBy(send()), 1);
        EXPECT_EQ(steps(),
                  joined({{orig, orig, kWrap}, wanted.lines(wrapped.at(0), LookupLogging::off)}));
        switches(true, true);
        EXPECT_EQ(answeredBy(send()), 1);
        EXPECT_EQ(steps(), joined({{orig, orig, kWrap},
                                   wanted.lines(wrapped.at(0), LookupLogging::on),
                                   {logLine(name, identifier)}}));
    }
};

class ContentBitmap : public CatalogImages {
  protected:
    std::shared_ptr<Glyph> glyph = std::make_shared<Glyph>();
    std::shared_ptr<Content> content = std::make_shared<Content>();
    std::string orig = call(*content, "CGImage");

    ContentBitmap() { content->glyph = glyph; }

    BitmapImageRef send() {
        given.clear();
        wrapped.clear();
        return device.runtime.send<BitmapImageRef>(*content, "CGImage");
    }

    static std::string logLine(const std::string& name) {
        return logged("VELMORANTH _UIImageContent CGImageRef Named: %@", {name});
    }

    // Expects a third answer of the platform, no look-up, no line, and the flag as it was.
    void expectLeftToPlatform() {
        for (const bool enableLogging : {false, true}) {
            for (const bool before : {false, true}) {
                themeImgFound = before;
                switches(true, enableLogging, true);
                EXPECT_EQ(answeredBy(send()), 2);
                EXPECT_EQ(steps(), (Lines{orig, orig, orig}));
                EXPECT_EQ(themeImgFound, before);
            }
        }
        EXPECT_FALSE(device.exists(kDumpFolder));
    }
};

// --- image of a glyph

TEST_F(GlyphBitmap, WithoutThemingIsThePlatforms) {
    addVariables();
    themePng(kInKit.file());
    themePng(kLoose.file());
    for (const bool enableLogging : {false, true}) {
        switches(false, enableLogging, true);
        EXPECT_EQ(answeredBy(send()), 1);
        EXPECT_EQ(steps(), (Lines{orig, orig}));
    }
    EXPECT_FALSE(device.exists(kDumpFolder));
}

TEST_F(GlyphBitmap, TwoGlyphsAreAlwaysThePlatforms) {
    addVariables();
    for (const std::string name : {"arrow.up.circle.fill", "plus.circle.fill"}) {
        themePng("A/Bundles/com.x.kit/" + name + "@3x.png");
        themePng("A/UIImages/" + name + "@3x.png");
        glyph->glyphName = name;
        expectLeftToPlatform();
    }
}

TEST_F(GlyphBitmap, OtherNamesAreLookedUp) {
    addVariables();
    for (const std::string& name :
         {std::string("star"), std::string("arrow.up.circle.fil"), std::string("xplus.circle.fill"),
          std::string("plus.circle.fill2"), std::string("circle.fill"), std::string("<image asset"),
          std::string(), std::string(std::size_t{64} * 1024, 'n'),
          std::string("../../../../../../etc/passwd")}) {
        glyph->glyphName = name;
        expectLookup(name, "com.x.kit");
    }
}

TEST_F(GlyphBitmap, WithoutCatalogIsThePlatforms) {
    addVariables();
    glyph->catalog = nullptr;
    themePng(kLoose.file());
    expectLeftToPlatform();
}

TEST_F(GlyphBitmap, WithoutBundleOfTheCatalogIsThePlatforms) {
    addVariables();
    catalog->kept = nullptr;
    themePng(kLoose.file());
    expectLeftToPlatform();
}

TEST_F(GlyphBitmap, CatalogThatKeepsNoBundleButAnotherObjectIsThePlatforms) {
    addVariables();
    catalog->kept = std::make_shared<PlainObject>("NSBundle");
    expectLeftToPlatform();
}

TEST_F(GlyphBitmap, GlyphWithoutTheVariableIsThePlatforms) {
    addKept("CUICatalog", "_bundle");
    expectLeftToPlatform();
}

TEST_F(GlyphBitmap, CatalogWithoutTheVariableIsThePlatforms) {
    addCatalogOfGlyph();
    expectLeftToPlatform();
}

TEST_F(GlyphBitmap, CatalogMayBeOfAnyClass) {
    addCatalogOfGlyph();
    addKept("OtherObject", "_bundle");
    glyph->catalog = std::make_shared<Keeper>("OtherObject", bundle);
    expectLookup("star", "com.x.kit");
}

TEST_F(GlyphBitmap, VariablesAreReadInTurn) {
    addVariables();
    switches(true, false);
    send();
    EXPECT_EQ(device.journal.linesWith("class_getInstanceVariable "),
              (Lines{"class_getInstanceVariable CUINamedVectorGlyph star _catalog",
                     "class_getInstanceVariable CUICatalog _bundle"}));
}

TEST_F(GlyphBitmap, WithoutNameIsThePlatforms) {
    addVariables();
    glyph->glyphName = std::nullopt;
    themePng("A/Bundles/com.x.kit/(null)@3x.png");
    expectLeftToPlatform();
}

TEST_F(GlyphBitmap, BundleWithoutIdentifierIsLookedIn) {
    addVariables();
    catalog->kept = bundleNamed(std::nullopt);
    expectLookup("star", "(null)");
}

TEST_F(GlyphBitmap, IsTheThemesWhenItHasOneForTheBundle) {
    addVariables();
    themePng(kInKit.file());
    themePng(kLoose.file(), kBlue);
    switches(true, true);
    const BitmapImageRef found = send();
    EXPECT_EQ(drawnPixels(found), solid(6, 6, kRed));
    ASSERT_EQ(wrapped.size(), 1U);
    EXPECT_EQ(platform::bitmapOf(wrapped.at(0)), bitmap(1));
    EXPECT_EQ(steps(), joined({{orig, orig, kWrap},
                               kInKit.lines(wrapped.at(0), LookupLogging::on, LookupResult::found),
                               {logLine("star", "com.x.kit")}}));
    EXPECT_EQ(send(), found);
    EXPECT_EQ(steps(), (Lines{orig, orig, kWrap, kDictHasImg, logLine("star", "com.x.kit")}));
}

TEST_F(GlyphBitmap, MissInTheBundleIsThePlatformsAndNoLooseImage) {
    addVariables();
    themePng(kLoose.file());
    switches(true, false);
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_EQ(given.size(), 2U);
}

TEST_F(GlyphBitmap, NilOfThePlatformIsLookedUpInBothPlaces) {
    addVariables();
    isNilAnswer = [](std::size_t) { return true; };
    switches(true, true);
    EXPECT_EQ(send(), nullptr);
    EXPECT_EQ(steps(), joined({{orig, orig, kWrapNil},
                               kInKit.lines(nullptr, LookupLogging::on),
                               {logLine("star", "com.x.kit")},
                               kLoose.lines(nullptr, LookupLogging::on),
                               {orig}}));
}

TEST_F(GlyphBitmap, LooseImageIsFoundAfterANilOfTheBundle) {
    addVariables();
    isNilAnswer = [](std::size_t) { return true; };
    themePng(kLoose.file());
    switches(true, false);
    EXPECT_EQ(drawnPixels(send()), solid(6, 6, kRed));
    EXPECT_EQ(steps(), joined({{orig, orig, kWrapNil},
                               kInKit.lines(nullptr, LookupLogging::off),
                               kLoose.lines(nullptr, LookupLogging::off, LookupResult::found)}));
}

TEST_F(GlyphBitmap, MissInBothPlacesIsANewAnswerOfThePlatform) {
    addVariables();
    isNilAnswer = [](std::size_t number) { return number == 1; };
    switches(true, false);
    const BitmapImageRef answered = send();
    ASSERT_EQ(given.size(), 3U);
    EXPECT_EQ(answered, bitmap(2));
}

TEST_F(GlyphBitmap, ImageWithoutBitmapIsThePlatforms) {
    addVariables();
    images.load = [](const std::string&) { return std::make_shared<UnrenderedImage>(); };
    switches(true, false);
    EXPECT_EQ(answeredBy(send()), 2);
    EXPECT_EQ(takenCalls(), (Lines{orig, orig, orig}));
}

TEST_F(GlyphBitmap, IsDumpedOnceByItsLookup) {
    addVariables();
    switches(true, false, true);
    send();
    EXPECT_TRUE(device.exists(kInKit.dump()));
    EXPECT_FALSE(device.exists(kLoose.dump()));
    EXPECT_EQ(drawnPixels(device.images().imageWithContentsOfFile(kInKit.dump())),
              solid(6, 9, kGreen));
}

TEST_F(GlyphBitmap, SwitchesAreReadAfterTheFirstCall) {
    addVariables();
    switches(false, false);
    whenCalled = [this](std::size_t) { switches(true, true); };
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_EQ(device.journal.lines().back(), logLine("star", "com.x.kit"));
}

TEST_F(GlyphBitmap, ThemingIsTestedAfterTheFirstCall) {
    addVariables();
    switches(true, true);
    whenCalled = [this](std::size_t) { switches(false, true); };
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 0U);
}

// The file says the opposite, as the look-up before the line has read.
TEST_F(GlyphBitmap, TheLoadedSettingsSayWhetherItIsLogged) {
    addVariables();
    for (const bool logs : {false, true}) {
        switches(true, logs);
        fileSays(!logs);
        send();
        EXPECT_EQ(core::lookupLogging(), !logs);
        EXPECT_EQ(device.journal.count(logLine("star", "com.x.kit")), logs ? 1U : 0U);
    }
}

TEST_F(GlyphBitmap, LeavesTheFlagOfContents) {
    addVariables();
    themePng(kInKit.file());
    switches(true, false);
    send();
    EXPECT_FALSE(themeImgFound);
    themeImgFound = true;
    switches(false, false);
    send();
    EXPECT_TRUE(themeImgFound);
}

// --- CGImage of a content

TEST_F(ContentBitmap, FlagStartsOff) {
    EXPECT_FALSE(themeImgFound);
}

TEST_F(ContentBitmap, WithoutThemingIsThePlatformsSecondAnswer) {
    themePng(kLoose.file());
    for (const bool before : {false, true}) {
        for (const bool enableLogging : {false, true}) {
            themeImgFound = before;
            switches(false, enableLogging, true);
            EXPECT_EQ(answeredBy(send()), 1);
            EXPECT_EQ(steps(), (Lines{orig, orig}));
            EXPECT_EQ(themeImgFound, before);
        }
    }
    EXPECT_FALSE(device.exists(kDumpFolder));
}

TEST_F(ContentBitmap, WithoutThemingIsNilWhenThePlatformsIs) {
    isNilAnswer = [](std::size_t number) { return number == 1; };
    switches(false, false);
    EXPECT_EQ(send(), nullptr);
    EXPECT_EQ(steps(), (Lines{orig, orig}));
}

TEST_F(ContentBitmap, SwitchesAreReadAfterTheFirstCall) {
    switches(false, false);
    whenCalled = [this](std::size_t) { switches(true, true); };
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_EQ(device.journal.lines().back(), logLine("star"));
}

TEST_F(ContentBitmap, ThemingIsTestedAfterTheSecondCall) {
    switches(true, true);
    whenCalled = [this](std::size_t number) { switches(number == 0, true); };
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_EQ(given.size(), 2U);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 0U);
}

TEST_F(ContentBitmap, WithoutGlyphIsThePlatforms) {
    content->glyph = nullptr;
    expectLeftToPlatform();
}

TEST_F(ContentBitmap, WithoutNameOfTheGlyphIsThePlatforms) {
    glyph->glyphName = std::nullopt;
    themePng("A/UIImages/(null)@3x.png");
    expectLeftToPlatform();
}

TEST_F(ContentBitmap, NilOfThePlatformIsANewAnswer) {
    themePng(kLoose.file());
    isNilAnswer = [](std::size_t number) { return number == 1; };
    expectLeftToPlatform();
    isNilAnswer = [](std::size_t) { return true; };
    EXPECT_EQ(send(), nullptr);
    EXPECT_EQ(steps(), (Lines{orig, orig, orig}));
}

TEST_F(ContentBitmap, IsLookedUpAmongTheLooseImages) {
    addVariables();
    glyph->catalog = std::make_shared<Keeper>("CUICatalog", bundle);
    themePng(kInKit.file());
    switches(true, false);
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_EQ(steps(),
              joined({{orig, orig, kWrap}, kLoose.lines(wrapped.at(0), LookupLogging::off)}));
    EXPECT_EQ(platform::bitmapOf(wrapped.at(0)), bitmap(1));
    switches(true, true);
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_EQ(steps(), joined({{orig, orig, kWrap},
                               kLoose.lines(wrapped.at(0), LookupLogging::on),
                               {logLine("star")}}));
}

TEST_F(ContentBitmap, TheLoadedSettingsSayWhetherItIsLogged) {
    for (const bool logs : {false, true}) {
        switches(true, logs);
        fileSays(!logs);
        send();
        EXPECT_EQ(core::lookupLogging(), !logs);
        EXPECT_EQ(device.journal.count(logLine("star")), logs ? 1U : 0U);
    }
}

TEST_F(ContentBitmap, MissCountsAsFoundSinceTheLookupGivesAnImage) {
    switches(true, false);
    EXPECT_EQ(answeredBy(send()), 1);
    EXPECT_TRUE(themeImgFound);
}

TEST_F(ContentBitmap, IsTheThemesWhenItHasOne) {
    themePng(kLoose.file());
    switches(true, true);
    const BitmapImageRef found = send();
    EXPECT_EQ(drawnPixels(found), solid(6, 6, kRed));
    EXPECT_TRUE(themeImgFound);
    EXPECT_EQ(steps(), joined({{orig, orig, kWrap},
                               kLoose.lines(wrapped.at(0), LookupLogging::on, LookupResult::found),
                               {logLine("star")}}));
    EXPECT_EQ(send(), found);
    EXPECT_EQ(steps(), (Lines{orig, orig, kWrap, kDictHasImg, logLine("star")}));
}

TEST_F(ContentBitmap, NothingLookedUpIsANewAnswerOfThePlatform) {
    wrapsNothing = true;
    themeImgFound = true;
    switches(true, true);
    EXPECT_EQ(answeredBy(send()), 2);
    EXPECT_FALSE(themeImgFound);
    EXPECT_EQ(steps(), joined({{orig, orig, kWrap},
                               kLoose.lines(nullptr, LookupLogging::on),
                               {logLine("star"), orig}}));
}

TEST_F(ContentBitmap, FlagTellsOfTheLastContent) {
    switches(true, false);
    for (const bool found : {true, false, true}) {
        wrapsNothing = !found;
        send();
        EXPECT_EQ(themeImgFound, found);
    }
}

TEST_F(ContentBitmap, FlagIsSetAfterTheLookup) {
    switches(true, false);
    bool during = true;
    images.load = [&](const std::string&) -> ImageRef {
        during = themeImgFound;
        return nullptr;
    };
    send();
    EXPECT_FALSE(during);
    EXPECT_TRUE(themeImgFound);
}

TEST_F(ContentBitmap, ImageWithoutBitmapIsFoundAndNil) {
    images.load = [](const std::string&) { return std::make_shared<UnrenderedImage>(); };
    switches(true, false);
    EXPECT_EQ(send(), nullptr);
    EXPECT_TRUE(themeImgFound);
    EXPECT_EQ(takenCalls(), (Lines{orig, orig}));
}

TEST_F(ContentBitmap, NamesOfAnyKindAreLookedUp) {
    for (const std::string& name :
         {std::string("plus.circle.fill"), std::string("arrow.up.circle.fill"),
          std::string("circle.fill"), std::string("<image asset"), std::string(),
          std::string(std::size_t{64} * 1024, 'n'), std::string("../../../../../../etc/passwd")}) {
        glyph->glyphName = name;
        switches(true, false);
        EXPECT_EQ(answeredBy(send()), 1);
        EXPECT_EQ(steps(),
                  joined({{orig, orig, kWrap},
                          Lookup{name, std::nullopt}.lines(wrapped.at(0), LookupLogging::off)}));
    }
}

TEST_F(ContentBitmap, IsDumpedOnceByItsLookup) {
    switches(true, false, true);
    send();
    EXPECT_TRUE(device.exists(kLoose.dump()));
    EXPECT_FALSE(device.exists(std::string(kDumpFolder) + "/Bundles"));
}

}  // namespace
}  // namespace velmoranth::tests::catalog_bitmaps_test
