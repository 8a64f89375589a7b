#include "catalog_images_fixture.h"
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::tests {
namespace {

using platform::BundleRef;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;

const Lookup kInKit{"star", "com.x.kit"};
const Lookup kLoose{"star", std::nullopt};
// What an identifier that is nil becomes in a path.
const Lookup kInNil{"star", "(null)"};

// Requests for an image of an asset, of a glyph or of a catalog's image.
class FromAsset : public CatalogImages {
  protected:
    std::shared_ptr<Keeper> asset = std::make_shared<Keeper>("UIImageAsset", bundle);
    ObjectRef configuration = std::make_shared<PlainObject>("UIImageConfiguration");
    ObjectRef vector = std::make_shared<PlainObject>("UIImage");
    bool flipped = false;

    static std::string loadLine(const std::string& name, const std::string& identifier) {
        return logged("UIImageAsset LoadImage :%@  fromBundle: %@", {name, identifier});
    }
};

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

class ImageFromAsset : public FromAsset {
  protected:
    std::shared_ptr<CatalogImage> image = std::make_shared<CatalogImage>();

    ImageRef send(const ObjectRef& of) {
        given.clear();
        return device.runtime.send<ImageRef>(*image, kFromAssetAndVector, of, configuration,
                                             flipped, vector);
    }

    [[nodiscard]] std::string orig(const ObjectRef& of) const {
        return call(*image, kFromAssetAndVector,
                    {textOf(of), textOf(configuration), textOf(vector)}, flipped);
    }

    [[nodiscard]] std::string logLine(const ObjectRef& of, const ImageRef& platformImage) const {
        return logged(
            "VELMORANTH CUINamedImage :UIImageWithAsset %@    optionalVectorImage: %@  Orig %@ %@",
            {textOf(of), textOf(vector), textOf(platformImage), "the image, described"});
    }

    void expectLooseLookup(const ObjectRef& of) {
        switches(true, false);
        EXPECT_EQ(answeredBy(send(of)), 1);
        EXPECT_EQ(steps(),
                  joined({{orig(of), orig(of)}, kLoose.lines(given.at(1), LookupLogging::off)}));
    }

    void expectLookupInNil(const ObjectRef& of) {
        switches(true, false);
        EXPECT_EQ(answeredBy(send(of)), 1);
        EXPECT_EQ(steps(), joined({{orig(of), loadLine("star", "(null)"), orig(of)},
                                   kInNil.lines(given.at(1), LookupLogging::off)}));
    }
};

// --- UIImageWithAsset:configuration:flippedHorizontally: of a glyph

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
    EXPECT_EQ(device.journal.count("load "), 3U);
}

TEST_F(GlyphFromAsset, ThemingIsTestedAfterTheLogLine) {
    addVariables();
    switches(false, false);
    whenCalled = [this](std::size_t number) { switches(number == 0, number == 0); };
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(device.journal.count("load "), 0U);
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
    EXPECT_EQ(device.journal.count("instanceVariable "), 0U);
}

TEST_F(GlyphFromAsset, ObjectOfASubclassIsAnAsset) {
    addVariables();
    const auto subclassed = std::make_shared<Keeper>("UIMutableImageAsset", bundle);
    switches(true, false);
    themePng(kInKit.file());
    EXPECT_EQ(drawnPixels(send(subclassed)), solid(6, 6, kRed));
    EXPECT_EQ(device.journal.count("isKindOfClass UIMutableImageAsset UIImageAsset"), 1U);
    EXPECT_EQ(device.journal.linesWith("instanceVariable "),
              Lines{"instanceVariable UIMutableImageAsset _containingBundle"});
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

// --- UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage: of an image

TEST_F(ImageFromAsset, DescriptionOfAnAssetIsThePlatformsWithoutALine) {
    addVariables();
    for (const char* name : {"<image asset", "<image asset: 0x1>"}) {
        image->imageName = name;
        themePng(std::string("A/UIImages/") + name + "@3x.png");
        themePng(std::string("A/Bundles/com.x.kit/") + name + "@3x.png");
        for (const bool enable : {false, true}) {
            switches(enable, true, true);
            EXPECT_EQ(answeredBy(send(asset)), 1);
            EXPECT_EQ(steps(), (Lines{orig(asset), orig(asset)}));
        }
    }
    EXPECT_FALSE(device.exists(kDumpFolder));
}

TEST_F(ImageFromAsset, OtherNamesAreLookedUp) {
    addVariables();
    for (const std::string& name :
         {std::string("<image asse"), std::string(" <image asset"), std::string("<Image asset"),
          std::string(), std::string(std::size_t{64} * 1024, 'n'),
          std::string("../../../../../../etc/passwd"), std::string("plus.circle.fill")}) {
        image->imageName = name;
        switches(true, false);
        EXPECT_EQ(answeredBy(send(asset)), 1);
        EXPECT_EQ(steps(),
                  joined({{orig(asset), loadLine(name, "com.x.kit"), orig(asset)},
                          Lookup{name, "com.x.kit"}.lines(given.at(1), LookupLogging::off)}));
    }
}

TEST_F(ImageFromAsset, WithoutThemingIsThePlatforms) {
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

TEST_F(ImageFromAsset, SwitchesAreReadAfterTheFirstCall) {
    addVariables();
    switches(false, false);
    whenCalled = [this](std::size_t) { switches(true, true); };
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(device.journal.count("load "), 3U);
}

TEST_F(ImageFromAsset, ThemingIsTestedAfterTheLogLine) {
    addVariables();
    switches(false, false);
    whenCalled = [this](std::size_t number) { switches(number == 0, number == 0); };
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(device.journal.count("load "), 0U);
}

TEST_F(ImageFromAsset, WithoutNameIsThePlatformsAfterItsLine) {
    addVariables();
    themePng("A/UIImages/(null)@3x.png");
    image->imageName = std::nullopt;
    switches(true, false);
    EXPECT_EQ(answeredBy(send(asset)), 1);
    EXPECT_EQ(steps(), (Lines{orig(asset), orig(asset)}));
    switches(true, true);
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(steps(), (Lines{orig(asset), orig(asset), logLine(asset, given.at(1)), orig(asset)}));
}

TEST_F(ImageFromAsset, IsLookedUpInTheContainingBundle) {
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

TEST_F(ImageFromAsset, IsTheThemesWhenItHasOneForTheBundle) {
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

TEST_F(ImageFromAsset, AssetWithoutBundleIsLookedUpInNil) {
    addVariables();
    asset->kept = nullptr;
    themePng(kLoose.file(), kBlue);
    expectLookupInNil(asset);
    themePng(kInNil.file());
    EXPECT_EQ(drawnPixels(send(asset)), solid(6, 6, kRed));
}

TEST_F(ImageFromAsset, AssetThatKeepsNoBundleButAnotherObjectIsLookedUpInNil) {
    addVariables();
    asset->kept = std::make_shared<PlainObject>("NSBundle");
    expectLookupInNil(asset);
}

TEST_F(ImageFromAsset, AssetWithoutTheVariableIsLookedUpInNil) {
    expectLookupInNil(asset);
}

TEST_F(ImageFromAsset, BundleWithoutIdentifierIsLookedUpInNil) {
    addVariables();
    asset->kept = bundleNamed(std::nullopt);
    expectLookupInNil(asset);
}

TEST_F(ImageFromAsset, WithoutAssetIsLookedUpAmongTheLooseImages) {
    addVariables();
    expectLooseLookup(nullptr);
    themePng(kLoose.file());
    EXPECT_EQ(drawnPixels(send(nullptr)), solid(6, 6, kRed));
}

TEST_F(ImageFromAsset, OtherObjectIsLookedUpAmongTheLooseImages) {
    addVariables();
    addKept("OtherObject", "_containingBundle");
    for (const char* className : {"OtherObject", "ClassOfNoRegister"}) {
        expectLooseLookup(std::make_shared<Keeper>(className, bundle));
    }
}

TEST_F(ImageFromAsset, ObjectOfASubclassIsAnAsset) {
    addVariables();
    switches(true, false);
    themePng(kInKit.file());
    EXPECT_EQ(drawnPixels(send(std::make_shared<Keeper>("UIMutableImageAsset", bundle))),
              solid(6, 6, kRed));
}

TEST_F(ImageFromAsset, NilOfThePlatformIsLookedUpInBothPlaces) {
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
    themePng(kLoose.file());
    EXPECT_EQ(drawnPixels(send(asset)), solid(6, 6, kRed));
}

TEST_F(ImageFromAsset, MissInBothPlacesIsANewAnswerOfThePlatform) {
    addVariables();
    isNilAnswer = [](std::size_t number) { return number < 3; };
    switches(true, false);
    const ImageRef answered = send(asset);
    ASSERT_EQ(given.size(), 4U);
    EXPECT_NE(answered, nullptr);
    EXPECT_EQ(answered, given.at(3));
}

TEST_F(ImageFromAsset, LooseLookupHasAnAnswerOfItsOwn) {
    addVariables();
    isNilAnswer = [](std::size_t number) { return number < 2; };
    switches(true, false);
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(given.size(), 3U);
}

TEST_F(ImageFromAsset, NilObjectsReachThePlatformAndTheLog) {
    addVariables();
    configuration = nullptr;
    vector = nullptr;
    switches(true, true);
    send(nullptr);
    EXPECT_EQ(device.journal.lines().at(2), logLine(nullptr, given.at(1)));
    EXPECT_EQ(takenCalls(), (Lines{orig(nullptr), orig(nullptr), orig(nullptr)}));
}

TEST_F(ImageFromAsset, IsDumpedOnceByItsLookup) {
    addVariables();
    switches(true, false, true);
    send(asset);
    EXPECT_TRUE(device.exists(kInKit.dump()));
    EXPECT_FALSE(device.exists(kLoose.dump()));
}

}  // namespace
}  // namespace velmoranth::tests
