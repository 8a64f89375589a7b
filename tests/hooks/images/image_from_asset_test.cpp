#include "from_asset_fixture.h"
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::tests::image_from_asset_test {
namespace {

using platform::BundleRef;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;

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
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 3U);
}

TEST_F(ImageFromAsset, ThemingIsTestedAfterTheLogLine) {
    addVariables();
    switches(false, false);
    whenCalled = [this](std::size_t number) { switches(number == 0, number == 0); };
    EXPECT_EQ(answeredBy(send(asset)), 2);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 0U);
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
}  // namespace velmoranth::tests::image_from_asset_test
