// The replacements that take icon labels away: the label's image and the view that shows it.
#include "springboard_fixture.h"

#include <cstdint>
#include <deque>

namespace velmoranth::hooks::icon_view_label_test {
namespace {

using platform::Dictionary;
using platform::ImageRef;
using tests::appearanceOf;
using tests::kGreen;
using tests::Lines;
using tests::solid;

const Dictionary kRemoved{{"enable", true}, {"removeLabels", true}};

// What leaves labels as they are, other switches included.
const std::vector<Dictionary> kKept{
    {},
    {{"enable", true}},
    {{"removeLabels", true}},
    {{"enable", false}, {"removeLabels", true}},
    {{"enable", true}, {"removeLabels", false}, {"removeIconBadges", true}}};

struct TestLabelImage final : platform::SBIconLabelImage {
    [[nodiscard]] std::string className() const override { return "SBIconLabelImage"; }

    [[nodiscard]] platform::Size size() const override { return {}; }

    [[nodiscard]] double scale() const override { return 1; }

    [[nodiscard]] platform::BitmapImageRef bitmap() const override { return nullptr; }

    [[nodiscard]] bool hasCIImage() const override { return false; }
};

struct TestParameters final : platform::Object {
    [[nodiscard]] std::string className() const override { return "SBIconLabelImageParameters"; }
};

class IconLabelImage : public tests::SpringBoardProcess {
  public:
    static constexpr const char* kSelector =
        "_initWithCGImage:scale:orientation:parameters:maxSizeOffset:";
    static constexpr const char* kInit = "orig init 2.5 3 -1×4";

    IconLabelImage() {
        addMethod<ImageRef, platform::SBIconLabelImage>(
            "SBIconLabelImage", kSelector,
            std::function<ImageRef(platform::SBIconLabelImage&, platform::BitmapImageRef, double,
                                   std::int64_t, platform::ObjectRef, platform::Point)>(
                [this](const platform::SBIconLabelImage& self,
                       const platform::BitmapImageRef& given, double scale,
                       std::int64_t orientation, const platform::ObjectRef& object,
                       platform::Point offset) -> ImageRef {
                    EXPECT_EQ(&self, label.get());
                    EXPECT_EQ(given, bitmap);
                    EXPECT_EQ(object, parameters);
                    original("init " + tests::text(scale) + " " + std::to_string(orientation) +
                             " " + record::words(platform::Size{offset.x, offset.y}));
                    if (answers.empty()) {
                        return label;
                    }
                    ImageRef next = answers.front();
                    answers.pop_front();
                    return next;
                }));
        install();
    }

    ImageRef init() {
        return device.runtime.send<ImageRef, platform::BitmapImageRef, double, std::int64_t,
                                   platform::ObjectRef, platform::Point>(
            *label, kSelector, bitmap, 2.5, 3, parameters, {-1, 4});
    }

    std::shared_ptr<TestLabelImage> label = std::make_shared<TestLabelImage>();
    platform::BitmapImageRef bitmap = device.image(solid(2, 2, kGreen))->bitmap();
    platform::ObjectRef parameters = std::make_shared<TestParameters>();
    std::deque<ImageRef> answers;
};

TEST_F(IconLabelImage, IsNilAfterOneCallWhenLabelsAreRemoved) {
    settings({}, kRemoved);
    EXPECT_EQ(init(), nullptr);
    EXPECT_EQ(taken(), Lines{kInit});
}

TEST_F(IconLabelImage, IsThePlatformsSecondAnswerOtherwise) {
    for (const Dictionary& values : kKept) {
        settings({}, values);
        const auto second = std::make_shared<TestLabelImage>();
        answers = {label, second};
        EXPECT_EQ(init(), second);
        EXPECT_EQ(taken(), (Lines{kInit, kInit}));
    }
}

TEST_F(IconLabelImage, ANilAnswerOfThePlatformPassesThrough) {
    settings({}, {{"enable", true}});
    answers = {label, nullptr};
    EXPECT_EQ(init(), nullptr);
}

TEST_F(IconLabelImage, NilArgumentsPassThrough) {
    settings({}, {{"enable", true}});
    bitmap = nullptr;
    parameters = nullptr;
    EXPECT_EQ(init(), label);
    EXPECT_EQ(taken(), (Lines{kInit, kInit}));
}

struct TestLegibilityLabelView final
    : desktop::ViewImplementation<platform::SBIconLegibilityLabelView> {
    [[nodiscard]] std::string className() const override { return "SBIconLegibilityLabelView"; }
};

class IconLegibilityLabelView : public tests::SpringBoardProcess {
  public:
    using Label = platform::SBIconLegibilityLabelView;

    IconLegibilityLabelView() {
        const std::string cls = "SBIconLegibilityLabelView";
        addMethod<void, Label>(
            cls, "setHidden:", std::function<void(Label&, bool)>([this](Label& self, bool hidden) {
                EXPECT_EQ(&self, view.get());
                original(hidden ? "setHidden: YES" : "setHidden: NO");
                self.setHidden(hidden);
            }));
        addMethod<bool, Label>(cls, "isHidden", std::function<bool(Label&)>([this](Label& self) {
                                   EXPECT_EQ(&self, view.get());
                                   original("isHidden");
                                   return view->isHidden();
                               }));
        addMethod<double, Label>(cls, "alpha", std::function<double(Label&)>([this](Label& self) {
                                     EXPECT_EQ(&self, view.get());
                                     original("alpha");
                                     return static_cast<const desktop::ViewNode&>(*view).alpha();
                                 }));
        addMethod<void, Label>(
            cls,
            "setAlpha:", std::function<void(Label&, double)>([this](Label& self, double alpha) {
                EXPECT_EQ(&self, view.get());
                original("setAlpha: " + tests::text(alpha));
                self.setAlpha(alpha);
            }));
        install();
    }

    void setHidden(bool hidden) { device.runtime.send<void, bool>(*view, "setHidden:", hidden); }

    bool isHidden() { return device.runtime.send<bool>(*view, "isHidden"); }

    double alpha() { return device.runtime.send<double>(*view, "alpha"); }

    void setAlpha(double alpha) { device.runtime.send<void, double>(*view, "setAlpha:", alpha); }

    std::shared_ptr<TestLegibilityLabelView> view = std::make_shared<TestLegibilityLabelView>();
};

TEST_F(IconLegibilityLabelView, IsHiddenWhateverIsSetWhenLabelsAreRemoved) {
    settings({}, kRemoved);
    setHidden(false);
    EXPECT_EQ(taken(), (Lines{"orig setHidden: NO", "orig setHidden: YES"}));
    EXPECT_TRUE(view->isHidden());
    setHidden(true);
    EXPECT_EQ(taken(), (Lines{"orig setHidden: YES", "orig setHidden: YES"}));
    EXPECT_TRUE(view->isHidden());
}

TEST_F(IconLegibilityLabelView, SaysThatItIsHiddenAfterOneCallWhenLabelsAreRemoved) {
    settings({}, kRemoved);
    view->setHidden(false);
    taken();
    EXPECT_TRUE(isHidden());
    EXPECT_EQ(taken(), Lines{"orig isHidden"});
    view->setHidden(true);
    taken();
    EXPECT_TRUE(isHidden());
    EXPECT_EQ(taken(), Lines{"orig isHidden"});
}

TEST_F(IconLegibilityLabelView, SaysThatItIsClearAfterOneCallWhenLabelsAreRemoved) {
    settings({}, kRemoved);
    EXPECT_EQ(alpha(), 0);
    EXPECT_EQ(taken(), Lines{"orig alpha"});
    EXPECT_EQ(appearanceOf(*view).opacity, 1);
}

TEST_F(IconLegibilityLabelView, IsClearWhateverIsSetWhenLabelsAreRemoved) {
    settings({}, kRemoved);
    setAlpha(1);
    EXPECT_EQ(taken(), (Lines{"orig setAlpha: 1", "orig setAlpha: 0"}));
    EXPECT_EQ(appearanceOf(*view).opacity, 0);
    EXPECT_TRUE(isHidden());
}

TEST_F(IconLegibilityLabelView, IsSetTwiceToWhatIsGivenOtherwise) {
    for (const Dictionary& values : kKept) {
        settings({}, values);
        setHidden(true);
        EXPECT_EQ(taken(), (Lines{"orig setHidden: YES", "orig setHidden: YES"}));
        EXPECT_TRUE(view->isHidden());
        setHidden(false);
        EXPECT_EQ(taken(), (Lines{"orig setHidden: NO", "orig setHidden: NO"}));
        EXPECT_FALSE(view->isHidden());
        setAlpha(0.25);
        EXPECT_EQ(taken(), (Lines{"orig setAlpha: 0.25", "orig setAlpha: 0.25"}));
        EXPECT_EQ(appearanceOf(*view).opacity, 0.25);
        setAlpha(-3);
        EXPECT_EQ(taken(), (Lines{"orig setAlpha: -3", "orig setAlpha: -3"}));
    }
}

TEST_F(IconLegibilityLabelView, AnswersAsThePlatformOnTheSecondCallOtherwise) {
    for (const Dictionary& values : kKept) {
        settings({}, values);
        view->setHidden(false);
        taken();
        EXPECT_FALSE(isHidden());
        EXPECT_EQ(taken(), (Lines{"orig isHidden", "orig isHidden"}));
        view->setHidden(true);
        taken();
        EXPECT_TRUE(isHidden());
        EXPECT_EQ(taken(), (Lines{"orig isHidden", "orig isHidden"}));
        view->setAlpha(0.75);
        taken();
        EXPECT_EQ(alpha(), 0.75);
        EXPECT_EQ(taken(), (Lines{"orig alpha", "orig alpha"}));
    }
}

TEST_F(IconLegibilityLabelView, FollowsASettingThatChanges) {
    settings({}, kRemoved);
    setAlpha(1);
    setHidden(false);
    settings({}, {{"enable", true}});
    // What was forced stays until the platform sets it anew.
    EXPECT_EQ(alpha(), 0);
    EXPECT_TRUE(isHidden());
    setAlpha(1);
    setHidden(false);
    EXPECT_EQ(alpha(), 1);
    EXPECT_FALSE(isHidden());
}

}  // namespace
}  // namespace velmoranth::hooks::icon_view_label_test
