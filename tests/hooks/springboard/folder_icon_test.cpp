// The replacements on the folder icon's image view: the theme's picture in place of the plate.
#include "hooks/springboard/folder_hooks.h"

#include "chrome_fixture.h"

#include <cstddef>

namespace velmoranth::hooks::folder_icon_test {
namespace {

using platform::Dictionary;
using platform::Rect;
using platform::ViewRef;
using tests::drawnPixels;
using tests::kBlue;
using tests::Lines;
using tests::NamedViewOf;
using tests::solid;

constexpr Rect kFrame{{1, 2}, {60, 61}};
constexpr const char* kOrigInit = "orig initWithFrame: (1, 2) 60×61";
constexpr const char* kReadPlate = "class_getInstanceVariable folder _backgroundView";
constexpr const char* kClearPlate = "-[CALayer setOpacity:] plate 0";
// The picture before a replacement does anything to it.
const Lines kMakePicture{"-[UIImageView init]", "-[UIView setFrame:] picture (0, 0) 60×60",
                         "-[UIView setBackgroundColor:] picture #00000000",
                         "-[UIView setTag:] picture 2322"};

const Dictionary kOn{{"enable", true}};
// Whatever else is on.
const Dictionary kOff{{"enableLogging", true}, {"removeFolderBG", true}, {"enableOverlay", true}};

struct FolderIcon final : NamedViewOf<platform::SBFolderIconImageView> {
    explicit FolderIcon(const std::string& className)
        : NamedViewOf<platform::SBFolderIconImageView>(className, "folder") {}

    [[nodiscard]] platform::SBIconRef icon() const override { return nullptr; }

    [[nodiscard]] bool isAnimating() const override { return animating; }

    bool animating = false;
};

class FolderIconTest : public tests::ChromeProcess {
  protected:
    FolderIconTest() {
        device.runtime.addClass("UIView");
        device.runtime.addClass("UIImageView", "UIView");
        device.runtime.addClass("SBMiniatureView", "UIImageView");
        addMethod("SBFolderIconImageView", "initWithFrame:",
                  std::function<ViewRef(platform::SBFolderIconImageView&, Rect)>(
                      [this](platform::SBFolderIconImageView&, const Rect& frame) {
                          original("initWithFrame: " + record::words(frame));
                          return answer;
                      }));
        addLayout<platform::SBFolderIconImageView>("SBFolderIconImageView");
        device.runtime.addClass("SBHeirIconImageView", "SBFolderIconImageView");
        addViewVariable<platform::SBFolderIconImageView>("SBFolderIconImageView", "_backgroundView",
                                                         plate);
        install();
        folder->addSubview(plainView("grid"));
        device.journal.clear();
    }

    ViewRef initialised() {
        return device.runtime.send<ViewRef, Rect>(*folder, "initWithFrame:", kFrame);
    }

    void layout() { device.runtime.send<void>(*folder, "layoutSubviews"); }

    // A folder whose tag says that it carries the picture, and what a folder may hold besides.
    void fill() {
        folder->setTag(FolderIconTag);
        const ViewRef box = plainView("box");
        box->addSubview(plainView("inner", "UIImageView"));
        folder->addSubview(plainView("image", "UIImageView"));
        folder->addSubview(box);
        folder->addSubview(plainView("miniature", "SBMiniatureView"));
        folder->addSubview(plainView("stranger", "NoClassOfTheProcess"));
        device.journal.clear();
    }

    std::shared_ptr<FolderIcon> folder = std::make_shared<FolderIcon>("SBFolderIconImageView");
    ViewRef plate = plainView("plate");
    // What the platform's initialiser gives.
    ViewRef answer = folder;
};

using FolderIconInitialiser = FolderIconTest;
using FolderIconLayout = FolderIconTest;

double opacityOf(const ViewRef& view) {
    return desktop::ViewNode::of(view)->alpha();
}

TEST_F(FolderIconInitialiser, WithThemingOffIsThePlatformsRunOnce) {
    settings({"A"}, kOff);
    EXPECT_EQ(initialised(), folder);
    EXPECT_EQ(taken(), Lines{kOrigInit});
    EXPECT_EQ(folder->tag(), 0);
}

TEST_F(FolderIconInitialiser, PutsThePictureBehindEverythingAndTagsBoth) {
    settings({"A"}, kOn);
    themePng("A/Velmoranth/Folder.png", kBlue);
    EXPECT_EQ(initialised(), folder);
    EXPECT_EQ(steps(),
              tests::joined({{kOrigInit},
                             kMakePicture,
                             {"-[UIView insertSubview:atIndex:] folder picture 0",
                              "-[UIView setAlpha:] picture 1", "-[UIView setTag:] picture 1105",
                              "-[UIView setTag:] folder 329"}}));
    EXPECT_EQ(namesOf(folder->subviews()), (Lines{"picture", "grid"}));
    const auto picture = std::dynamic_pointer_cast<platform::ImageView>(folder->subviews().front());
    EXPECT_EQ(picture->tag(), 1105);
    EXPECT_EQ(drawnPixels(picture->image()), solid(6, 6, kBlue));
    EXPECT_EQ(folder->viewWithTag(2322), nullptr);
}

TEST_F(FolderIconInitialiser, PictureWithoutAnImageIsInsertedToo) {
    settings({}, kOn);
    initialised();
    EXPECT_EQ(namesOf(folder->subviews()), (Lines{"picture", "grid"}));
    EXPECT_EQ(folder->tag(), 329);
}

TEST_F(FolderIconInitialiser, ViewThatThePlatformGivesIsTheOneThatCounts) {
    settings({}, kOn);
    const auto other = std::make_shared<FolderIcon>("SBFolderIconImageView");
    answer = other;
    EXPECT_EQ(initialised(), other);
    EXPECT_EQ(other->tag(), 329);
    EXPECT_EQ(folder->tag(), 0);
    answer = nullptr;
    EXPECT_EQ(initialised(), nullptr);
    EXPECT_EQ(namesOf(folder->subviews()), Lines{"grid"});
}

TEST_F(FolderIconLayout, WithThemingOffIsThePlatformsRunOnce) {
    settings({"A"}, kOff);
    fill();
    for (const bool animating : {false, true}) {
        folder->animating = animating;
        folder->setNodeTag(animating ? 329 : 0);
        layout();
        EXPECT_EQ(taken(), Lines{"orig layoutSubviews"});
    }
    EXPECT_EQ(opacityOf(plate), 1);
    EXPECT_EQ(folder->subviews().size(), 5U);
}

TEST_F(FolderIconLayout, PutsThePictureBehindEverythingOnce) {
    settings({"A"}, kOn);
    layout();
    EXPECT_EQ(steps(),
              tests::joined({{"orig layoutSubviews", kReadPlate, kClearPlate},
                             kMakePicture,
                             {"-[UIView insertSubview:atIndex:] folder picture 0",
                              "-[UIView setAlpha:] picture 1", "-[UIView setTag:] folder 329"}}));
    // Another tag than the initialiser's picture has.
    EXPECT_EQ(folder->subviews().front()->tag(), 2322);
    EXPECT_EQ(opacityOf(plate), 0);
    layout();
    EXPECT_EQ(taken(), (Lines{"orig layoutSubviews", kReadPlate, kClearPlate}));
    EXPECT_EQ(namesOf(folder->subviews()), (Lines{"picture", "grid"}));
}

TEST_F(FolderIconLayout, AnyOtherTagIsNone) {
    settings({}, kOn);
    for (const int tag : {1105, 2322, 546, -329}) {
        folder->setTag(tag);
        layout();
        EXPECT_EQ(folder->tag(), 329);
    }
    EXPECT_EQ(folder->subviews().size(), 5U);
}

TEST_F(FolderIconLayout, AfterTheInitialiserInsertsNothing) {
    settings({}, kOn);
    initialised();
    device.journal.clear();
    layout();
    EXPECT_EQ(taken(), (Lines{"orig layoutSubviews", kReadPlate, kClearPlate}));
    EXPECT_EQ(folder->subviews().front()->tag(), 1105);
}

TEST_F(FolderIconLayout, PlateIsMadeInvisibleAtEveryLayout) {
    settings({}, kOn);
    for (const bool animating : {false, true}) {
        for (const int tag : {0, 329}) {
            folder->animating = animating;
            folder->setNodeTag(tag);
            plate->layer()->setOpacity(1);
            layout();
            EXPECT_EQ(opacityOf(plate), 0);
        }
    }
    for (const std::string& line : device.journal.lines()) {
        EXPECT_TRUE(line.find(" plate") == std::string::npos || line.starts_with("-[CALayer "))
            << line << ": through its layer alone";
    }
}

TEST_F(FolderIconLayout, AnimatingLosesItsImageViewsEachAskedTwice) {
    settings({"A"}, kOn);
    fill();
    folder->animating = true;
    layout();
    Lines lines = steps();
    std::erase_if(lines, [](const std::string& line) {
        return line.starts_with("-[NSObject isKindOfClass:] ") ||
               line.starts_with("objc_getClass ");
    });
    EXPECT_EQ(lines,
              (Lines{"orig layoutSubviews", kReadPlate, kClearPlate,
                     "-[UIView removeFromSuperview] image", "-[UIView removeFromSuperview] image",
                     "-[UIView removeFromSuperview] miniature",
                     "-[UIView removeFromSuperview] miniature"}));
    EXPECT_EQ(namesOf(folder->subviews()), (Lines{"grid", "box", "stranger"}));
    EXPECT_EQ(namesOf(folder->subviews().at(1)->subviews()), Lines{"inner"});
    EXPECT_EQ(folder->tag(), 329);
}

TEST_F(FolderIconLayout, PictureStaysAwayAfterTheAnimation) {
    settings({}, kOn);
    layout();
    folder->animating = true;
    layout();
    EXPECT_EQ(namesOf(folder->subviews()), Lines{"grid"});
    folder->animating = false;
    layout();
    EXPECT_EQ(namesOf(folder->subviews()), Lines{"grid"});
    EXPECT_EQ(folder->tag(), 329);
}

TEST_F(FolderIconLayout, AnimatingWithoutTheTagKeepsEverything) {
    settings({}, kOn);
    fill();
    folder->setNodeTag(0);
    folder->animating = true;
    layout();
    EXPECT_EQ(taken(), (Lines{"orig layoutSubviews", kReadPlate, kClearPlate}));
    EXPECT_EQ(folder->subviews().size(), 5U);
    EXPECT_EQ(folder->tag(), 0);
}

TEST_F(FolderIconLayout, WithoutAPlateTheRestHappens) {
    settings({}, kOn);
    plate = nullptr;
    layout();
    EXPECT_EQ(namesOf(folder->subviews()), (Lines{"picture", "grid"}));
}

TEST_F(FolderIconLayout, SuperclassMayHaveThePlate) {
    settings({}, kOn);
    folder = std::make_shared<FolderIcon>("SBHeirIconImageView");
    layout();
    EXPECT_EQ(opacityOf(plate), 0);
}

TEST_F(FolderIconLayout, ClassWithoutThatVariableIsLeftUnchanged) {
    settings({}, kOn);
    // A class of its own, which takes the layout from the other but not the variable.
    device.runtime.addClass("SBPlainIconImageView");
    device.runtime.addMethod(
        device.runtime.getClass("SBPlainIconImageView"), "layoutSubviews",
        device.runtime.methodOf(device.runtime.getClass("SBFolderIconImageView"), "layoutSubviews"),
        "v@:");
    folder = std::make_shared<FolderIcon>("SBPlainIconImageView");
    layout();
    EXPECT_EQ(opacityOf(plate), 1);
    EXPECT_EQ(namesOf(folder->subviews()), Lines{"picture"});
}

}  // namespace
}  // namespace velmoranth::hooks::folder_icon_test
