#include "imaging/view_tags.h"
#include "tests/support/replaced_services.h"

#include "icon_effects_fixture.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests::icon_shadow_test {

using imaging::IconEffects;
using platform::ImageViewRef;
using platform::Rect;

namespace {

const std::string kHasShadow = "VELMORANTH LOADSHADOW hasShadow stop no need to search ";

Rect square(double side) {
    return {{-10, -10}, {side, side}};
}

}  // namespace

class AddShadowToIcon : public IconEffectsOnDevice {};

TEST_F(AddShadowToIcon, PhoneTriesItsTwoFoldersInOrder) {
    const ImageViewRef view = IconEffects::addShadowToIcon();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->image(), nullptr);
    EXPECT_EQ(view->tag(), 478);
    EXPECT_EQ(view->frame(), square(82));
    const std::vector<std::string> expected = {
        "+[UIImage imageWithContentsOfFile:] " + inTheme("Velmoranth/iPhoneShadow.png"),
        "+[UIImage imageWithContentsOfFile:] " + inTheme("AnemoneEffects/iPhoneShadow.png")};
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "), expected);
    EXPECT_EQ(device.journal.count("uname"), 1U);
    EXPECT_EQ(device.journal.count("-[UIImageView init"), 1U);
    EXPECT_TRUE(device.journal.log().empty());
}

TEST_F(AddShadowToIcon, PadTriesItsTwoNamesInOrder) {
    makePad();
    const ImageViewRef view = IconEffects::addShadowToIcon();
    EXPECT_EQ(view->image(), nullptr);
    EXPECT_EQ(view->tag(), 478);
    EXPECT_EQ(view->frame(), square(96));
    const std::vector<std::string> expected = {
        "+[UIImage imageWithContentsOfFile:] " + inTheme("Velmoranth/iPadShadow~ipad.png"),
        "+[UIImage imageWithContentsOfFile:] " + inTheme("AnemoneEffects/iPadShadow.png")};
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "), expected);
}

TEST_F(AddShadowToIcon, APhonesOwnShadow) {
    device.png(inTheme("Velmoranth/iPhoneShadow.png"), solid(3, 3, {}));
    device.png(inTheme("AnemoneEffects/iPhoneShadow.png"), solid(4, 4, {}));
    const ImageViewRef view = IconEffects::addShadowToIcon();
    EXPECT_EQ(view->frame(), square(80));
    EXPECT_EQ(drawnPixels(view->image()).width, 3U);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 1U);
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(80));
}

TEST_F(AddShadowToIcon, APhonesShadowFromTheSecondFolderIs82Then80) {
    device.png(inTheme("AnemoneEffects/iPhoneShadow.png"), solid(4, 4, {}));
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(82));
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(80));
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(80));
    IconEffects::clearShadowImg();
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(82));
}

TEST_F(AddShadowToIcon, NoShadowIs82OnEveryCall) {
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(82));
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(82));
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 4U);
}

TEST_F(AddShadowToIcon, TheMarketingNameIs85AndFromTheSecondFolder87) {
    device.libSystem.machineName = "iPhone XS Max";
    device.png(inTheme("AnemoneEffects/iPhoneShadow.png"), solid(4, 4, {}));
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(87));
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(85));
    IconEffects::clearShadowImg();
    device.png(inTheme("Velmoranth/iPhoneShadow.png"), solid(3, 3, {}));
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(85));
}

TEST_F(AddShadowToIcon, NoOtherNameIsTheMarketingName) {
    device.png(inTheme("Velmoranth/iPhoneShadow.png"), solid(3, 3, {}));
    for (const char* name : {"iPhone11,6", "iPhone XS Max ", "iPhone XS", "iphone xs max", ""}) {
        device.libSystem.machineName = name;
        EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(80)) << name;
    }
}

TEST_F(AddShadowToIcon, APadOfThatNameStaysAPad) {
    makePad();
    device.libSystem.machineName = "iPhone XS Max";
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(96));
    device.png(inTheme("AnemoneEffects/iPadShadow.png"), solid(4, 4, {}));
    const ImageViewRef view = IconEffects::addShadowToIcon();
    EXPECT_EQ(view->frame(), square(96));
    EXPECT_EQ(drawnPixels(view->image()).width, 4U);
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(96));
}

TEST_F(AddShadowToIcon, APadsOwnShadow) {
    makePad();
    device.png(inTheme("Velmoranth/iPadShadow~ipad.png"), solid(5, 5, {}));
    device.png(inTheme("Velmoranth/iPadShadow.png"), solid(6, 6, {}));
    device.png(inTheme("AnemoneEffects/iPadShadow.png"), solid(4, 4, {}));
    EXPECT_EQ(drawnPixels(IconEffects::addShadowToIcon()->image()).width, 5U);
}

TEST_F(AddShadowToIcon, AKeptImageIsNotSearchedForAndLogsSo) {
    device.png(inTheme("Velmoranth/iPhoneShadow.png"), solid(3, 3, {}));
    const ImageViewRef first = IconEffects::addShadowToIcon();
    EXPECT_TRUE(device.journal.log().empty());
    device.journal.clear();
    const ImageViewRef second = IconEffects::addShadowToIcon();
    EXPECT_NE(first, second);
    EXPECT_EQ(first->image(), second->image());
    EXPECT_EQ(second->tag(), imaging::IconShadowTag);
    // Before the tag and the image of the new view, the other way round than after a search.
    const std::vector<std::string> expected = {"uname",
                                               "-[UIImageView init]",
                                               "-[UIView setFrame:] UIImageView (-10, -10) 80×80",
                                               "log " + kHasShadow,
                                               "-[UIView setTag:] UIImageView 478",
                                               "-[UIImageView setImage:] UIImageView #478 3×3 @1x"};
    EXPECT_EQ(device.journal.lines(), expected);
}

TEST_F(AddShadowToIcon, AKeptImageOfAPhoneServesAPadAtItsFrame) {
    device.png(inTheme("Velmoranth/iPhoneShadow.png"), solid(3, 3, {}));
    (void)IconEffects::addShadowToIcon();
    makePad();
    const ImageViewRef view = IconEffects::addShadowToIcon();
    EXPECT_EQ(view->frame(), square(96));
    EXPECT_EQ(drawnPixels(view->image()).width, 3U);
}

// A device that becomes another between two questions for its kind, and counts them.
struct TurningDevice final : platform::Device {
    std::vector<int> idioms;  // by question, the last one for ever
    std::size_t questions = 0;

    bool respondsToUserInterfaceIdiom() override { return true; }

    int userInterfaceIdiom() override {
        return idioms.at(std::min(questions++, idioms.size() - 1));
    }

    int orientation() override { return 1; }
};

class ShadowOfATurningDevice : public AddShadowToIcon {
  protected:
    ImageViewRef shadowOn(std::vector<int> idioms) {
        turning.idioms = std::move(idioms);
        turning.questions = 0;
        IconEffects::clearShadowImg();
        device.journal.clear();
        replaceServices({.device = &turning});
        return IconEffects::addShadowToIcon();
    }

    static constexpr int kPhone = platform::kUserInterfaceIdiomPhone;
    static constexpr int kPad = platform::kUserInterfaceIdiomPad;
    TurningDevice turning;
};

TEST_F(ShadowOfATurningDevice, TheKindIsAskedForAgainBeforeTheSecondFolder) {
    EXPECT_EQ(shadowOn({kPad, kPhone})->frame(), square(82));
    EXPECT_EQ(turning.questions, 2U);
    EXPECT_EQ(
        device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "),
        (std::vector<std::string>{
            "+[UIImage imageWithContentsOfFile:] " + inTheme("Velmoranth/iPadShadow~ipad.png"),
            "+[UIImage imageWithContentsOfFile:] " + inTheme("AnemoneEffects/iPhoneShadow.png")}));

    EXPECT_EQ(shadowOn({kPhone, kPad})->frame(), square(80));
    EXPECT_EQ(turning.questions, 2U);
    EXPECT_EQ(
        device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "),
        (std::vector<std::string>{
            "+[UIImage imageWithContentsOfFile:] " + inTheme("Velmoranth/iPhoneShadow.png"),
            "+[UIImage imageWithContentsOfFile:] " + inTheme("AnemoneEffects/iPadShadow.png")}));
}

TEST_F(ShadowOfATurningDevice, TheKindIsAskedForOnceWhereTheFirstFolderOrTheCacheHasTheImage) {
    device.png(inTheme("Velmoranth/iPhoneShadow.png"), solid(3, 3, {}));
    EXPECT_EQ(shadowOn({kPhone, kPad})->frame(), square(80));
    EXPECT_EQ(turning.questions, 1U);
    turning.questions = 0;
    EXPECT_EQ(IconEffects::addShadowToIcon()->frame(), square(80));
    EXPECT_EQ(turning.questions, 1U);
}

TEST_F(AddShadowToIcon, OtherClearOperationsKeepTheImage) {
    const std::string path = inTheme("Velmoranth/iPhoneShadow.png");
    device.png(path, solid(3, 3, {}));
    (void)IconEffects::addShadowToIcon();
    device.png(path, solid(7, 7, {}));
    IconEffects::clearIconMask();
    IconEffects::clearIconOverlay();
    EXPECT_EQ(drawnPixels(IconEffects::addShadowToIcon()->image()).width, 3U);
    IconEffects::clearShadowImg();
    EXPECT_EQ(drawnPixels(IconEffects::addShadowToIcon()->image()).width, 7U);
}

TEST_F(AddShadowToIcon, OnlyTheNewestViewIsHeld) {
    std::weak_ptr<platform::ImageView> first = IconEffects::addShadowToIcon();
    EXPECT_FALSE(first.expired());
    std::weak_ptr<platform::ImageView> second = IconEffects::addShadowToIcon();
    EXPECT_TRUE(first.expired());
    EXPECT_FALSE(second.expired());
    IconEffects::clearShadowImg();
    EXPECT_FALSE(second.expired());
}

}  // namespace velmoranth::tests::icon_shadow_test
