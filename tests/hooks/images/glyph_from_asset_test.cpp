#include "from_asset_fixture.h"
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::tests::glyph_from_asset_test {
namespace {

using platform::BundleRef;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;

class GlyphFromAsset : public FromAsset {
  protected:
    std::shared_ptr<Glyph> glyph = std::make_shared<Glyph>();

    ImageRef send(const ObjectRef& of) {
        given.clear();
        return device.runtime.send<ImageRef>(*glyph, kFromAsset, of, configuration, flipped);
    }

    [[nodiscard]] std::string orig(const ObjectRef& of) const {
        return call(*glyph, kFromAsset, {textOf(of), textOf(configuration)}, flipped);
    }

    [[nodiscard]] std::string logLine(const ObjectRef& of, const ImageRef& image) const {
        return logged("VELMORANTH CUINamedVectorGlyph UIImageWithAsset: %@ Orig: %@",
                      {textOf(of), textOf(image)});
    }

    // Expects that the platform answers while theming is on, and nothing is looked up.
    void expectLeftToPlatform(const ObjectRef& of) {
        switches(true, false, true);
        EXPECT_EQ(answeredBy(send(of)), 1);
        EXPECT_EQ(steps(), (Lines{orig(of), orig(of)}));
        switches(true, true, true);
        EXPECT_EQ(answeredBy(send(of)), 2);
        EXPECT_EQ(steps(), (Lines{orig(of), orig(of), logLine(of, given.at(1)), orig(of)}));
        EXPECT_FALSE(device.exists(kDumpFolder));
    }

    // Expects that the request goes to the loose images alone, which hold none, after the line.
    void expectLooseLookup(const ObjectRef& of, const Lines& line) {
        switches(true, false);
        EXPECT_EQ(answeredBy(send(of)), 1);
        EXPECT_EQ(
            steps(),
            joined({{orig(of)}, line, {orig(of)}, kLoose.lines(given.at(1), LookupLogging::off)}));
    }
};

TEST_F(GlyphFromAsset, WithoutThemingIsThePlatforms) {
    addVariables();
    themePng(kInKit.file());
    themePng(kLoose.file());
    for (const bool isFlipped : {false, true}) {
        flipped = isFlipped;
        switches(false, false, true);
        EXPECT_EQ(answeredBy(send(asset)), 1);
        EXPECT_EQ(steps(), (Lines{orig(asset), orig(asset)}));
        switches(false, true, true);
        EXPECT_EQ(answeredBy(send(asset)), 2);
        EXPECT_EQ(steps(),
                  (Lines{orig(asset), orig(asset), logLine(asset, given.at(1)), orig(asset)}));
    }
    EXPECT_FALSE(device.exists(kDumpFolder));
}

TEST_F(GlyphFromAsset, SwitchesAreReadAfterTheFirstCall) {
    addVariables();
    switches(false, false);
    whenCalled = [this](std::size_t) { switches(true, true); };
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 3U);
}

TEST_F(GlyphFromAsset, ThemingIsTestedAfterTheLogLine) {
    addVariables();
    switches(false, false);
    whenCalled = [this](std::size_t number) { switches(number == 0, number == 0); };
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 0U);
}

TEST_F(GlyphFromAsset, IsLookedUpInTheContainingBundle) {
    addVariables();
    for (const bool isFlipped : {false, true}) {
        flipped = isFlipped;
        switches(true, false);
        EXPECT_EQ(answeredBy(send(asset)), 1);
        EXPECT_EQ(steps(), joined({{orig(asset), loadLine("star", "com.x.kit"), orig(asset)},
                                   kInKit.lines(given.at(1), LookupLogging::off)}));
        switches(true, true);
        EXPECT_EQ(answeredBy(send(asset)), 2);
        EXPECT_EQ(steps(), joined({{orig(asset), orig(asset), logLine(asset, given.at(1)),
                                    loadLine("star", "com.x.kit"), orig(asset)},
                                   kInKit.lines(given.at(2), LookupLogging::on)}));
    }
}

TEST_F(GlyphFromAsset, IsTheThemesWhenItHasOneForTheBundle) {
    addVariables();
    themePng(kInKit.file());
    themePng(kLoose.file(), kBlue);
    switches(true, false);
    const ImageRef found = send(asset);
    EXPECT_EQ(drawnPixels(found), solid(6, 6, kRed));
    EXPECT_EQ(steps(),
              joined({{orig(asset), loadLine("star", "com.x.kit"), orig(asset)},
                      kInKit.lines(given.at(1), LookupLogging::off, LookupResult::found)}));
    EXPECT_EQ(send(asset), found);
    EXPECT_EQ(steps(),
              (Lines{orig(asset), loadLine("star", "com.x.kit"), orig(asset), kDictHasImg}))
        << "served without a file";
}

TEST_F(GlyphFromAsset, MissInTheBundleIsThePlatformsAndNoLooseImage) {
    addVariables();
    themePng(kLoose.file());
    switches(true, false);
    EXPECT_EQ(answeredBy(send(asset)), 1);
    EXPECT_EQ(given.size(), 2U);
}

TEST_F(GlyphFromAsset, NilOfThePlatformIsLookedUpInBothPlaces) {
    addVariables();
    isNilAnswer = [](std::size_t) { return true; };
    switches(true, true);
    EXPECT_EQ(send(asset), nullptr);
    EXPECT_EQ(steps(), joined({{orig(asset), orig(asset), logLine(asset, nullptr),
                                loadLine("star", "com.x.kit"), orig(asset)},
                               kInKit.lines(nullptr, LookupLogging::on),
                               {orig(asset)},
                               kLoose.lines(nullptr, LookupLogging::on),
                               {orig(asset)}}));
}

TEST_F(GlyphFromAsset, MissInBothPlacesIsANewAnswerOfThePlatform) {
    addVariables();
    isNilAnswer = [](std::size_t number) { return number < 3; };
    switches(true, false);
    const ImageRef image = send(asset);
    ASSERT_EQ(given.size(), 4U);
    EXPECT_NE(image, nullptr);
    EXPECT_EQ(image, given.at(3));
}

TEST_F(GlyphFromAsset, LooseImageIsFoundAfterANilOfTheBundle) {
    addVariables();
    isNilAnswer = [](std::size_t) { return true; };
    themePng(kLoose.file());
    switches(true, false);
    EXPECT_EQ(drawnPixels(send(asset)), solid(6, 6, kRed));
    EXPECT_EQ(steps(), joined({{orig(asset), loadLine("star", "com.x.kit"), orig(asset)},
                               kInKit.lines(nullptr, LookupLogging::off),
                               {orig(asset)},
                               kLoose.lines(nullptr, LookupLogging::off, LookupResult::found)}));
}

TEST_F(GlyphFromAsset, LooseLookupHasAnAnswerOfItsOwn) {
    addVariables();
    isNilAnswer = [](std::size_t number) { return number < 2; };
    switches(true, false);
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(steps(), joined({{orig(asset), loadLine("star", "com.x.kit"), orig(asset)},
                               kInKit.lines(nullptr, LookupLogging::off),
                               {orig(asset)},
                               kLoose.lines(given.at(2), LookupLogging::off)}));
}

TEST_F(GlyphFromAsset, WithoutNameIsThePlatforms) {
    addVariables();
    glyph->glyphName = std::nullopt;
    expectLeftToPlatform(asset);
}

TEST_F(GlyphFromAsset, WithoutAssetIsThePlatforms) {
    addVariables();
    themePng(kLoose.file());
    expectLeftToPlatform(nullptr);
}

TEST_F(GlyphFromAsset, EmptyNameIsLookedUp) {
    addVariables();
    glyph->glyphName = "";
    switches(true, false);
    EXPECT_EQ(answeredBy(send(asset)), 1);
    EXPECT_EQ(steps(), joined({{orig(asset), loadLine("", "com.x.kit"), orig(asset)},
                               Lookup{"", "com.x.kit"}.lines(given.at(1), LookupLogging::off)}));
}

TEST_F(GlyphFromAsset, NamesOfAnyKindStayAsTheyAre) {
    addVariables();
    for (const std::string& name :
         {std::string(std::size_t{64} * 1024, 'n'), std::string("../../../../../../etc/passwd"),
          std::string("plus.circle.fill"), std::string("<image asset"), std::string("%@")}) {
        glyph->glyphName = name;
        switches(true, false);
        EXPECT_EQ(answeredBy(send(asset)), 1);
        EXPECT_EQ(steps(),
                  joined({{orig(asset), loadLine(name, "com.x.kit"), orig(asset)},
                          Lookup{name, "com.x.kit"}.lines(given.at(1), LookupLogging::off)}));
    }
}

TEST_F(GlyphFromAsset, AssetWithoutBundleIsLookedUpAmongTheLooseImages) {
    addVariables();
    asset->kept = nullptr;
    expectLooseLookup(asset, {loadLine("star", "(null)")});
    themePng(kLoose.file());
    EXPECT_EQ(drawnPixels(send(asset)), solid(6, 6, kRed));
}

TEST_F(GlyphFromAsset, AssetThatKeepsNoBundleButAnotherObjectHasNone) {
    addVariables();
    asset->kept = std::make_shared<PlainObject>("NSBundle");
    expectLooseLookup(asset, {loadLine("star", "(null)")});
}

TEST_F(GlyphFromAsset, AssetWithoutTheVariableHasNoBundle) {
    expectLooseLookup(asset, {loadLine("star", "(null)")});
}

TEST_F(GlyphFromAsset, BundleWithoutIdentifierIsLookedIn) {
    addVariables();
    asset->kept = bundleNamed(std::nullopt);
    switches(true, false);
    EXPECT_EQ(answeredBy(send(asset)), 1);
    EXPECT_EQ(steps(), joined({{orig(asset), loadLine("star", "(null)"), orig(asset)},
                               kInNil.lines(given.at(1), LookupLogging::off)}));
}

TEST_F(GlyphFromAsset, OtherObjectIsLookedUpAmongTheLooseImages) {
    addVariables();
    addKept("OtherObject", "_containingBundle");
    for (const char* className : {"OtherObject", "ClassOfNoRegister"}) {
        expectLooseLookup(std::make_shared<Keeper>(className, bundle), {});
    }
    EXPECT_EQ(device.journal.count("class_getInstanceVariable "), 0U);
}

TEST_F(GlyphFromAsset, ObjectOfASubclassIsAnAsset) {
    addVariables();
    const auto subclassed = std::make_shared<Keeper>("UIMutableImageAsset", bundle);
    switches(true, false);
    themePng(kInKit.file());
    EXPECT_EQ(drawnPixels(send(subclassed)), solid(6, 6, kRed));
    EXPECT_EQ(device.journal.count("-[NSObject isKindOfClass:] UIMutableImageAsset UIImageAsset"),
              1U);
    EXPECT_EQ(device.journal.linesWith("class_getInstanceVariable "),
              Lines{"class_getInstanceVariable UIMutableImageAsset _containingBundle"});
}

TEST_F(GlyphFromAsset, IsDumpedOnceByItsLookup) {
    addVariables();
    switches(true, false, true);
    send(asset);
    EXPECT_TRUE(device.exists(kInKit.dump()));
    EXPECT_FALSE(device.exists(kLoose.dump()));
}

TEST_F(GlyphFromAsset, NilConfigurationReachesThePlatform) {
    addVariables();
    configuration = nullptr;
    switches(true, true);
    send(asset);
    EXPECT_EQ(takenCalls(), (Lines{orig(asset), orig(asset), orig(asset)}));
}

}  // namespace
}  // namespace velmoranth::tests::glyph_from_asset_test
