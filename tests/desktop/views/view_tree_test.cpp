#include "desktop/imaging/image.h"
#include "desktop/views/views.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace velmoranth::desktop::view_tree_test {

namespace {

using platform::Rect;
using platform::ViewRef;
using Views = std::vector<ViewRef>;

std::shared_ptr<DesktopView> view(int tag = 0, const Views& subviews = {}) {
    auto made = std::make_shared<DesktopView>();
    made->setTag(tag);
    for (const ViewRef& subview : subviews) {
        made->addSubview(subview);
    }
    return made;
}

// A view of another make.
class ForeignView final : public platform::View {
  public:
    [[nodiscard]] std::string className() const override { return "Foreign"; }

    [[nodiscard]] int tag() const override { return 0; }

    void setTag(int /*tag*/) override {}

    [[nodiscard]] Rect frame() const override { return {}; }

    void setFrame(const Rect& /*frame*/) override {}

    [[nodiscard]] Rect bounds() const override { return {}; }

    [[nodiscard]] Views subviews() const override { return {}; }

    void addSubview(const ViewRef& /*view*/) override {}

    void removeFromSuperview() override {}

    [[nodiscard]] ViewRef viewWithTag(int /*tag*/) override { return nullptr; }

    void insertSubviewAtIndex(const ViewRef& /*view*/, std::size_t /*index*/) override {}

    void setAlpha(double /*alpha*/) override {}

    void setHidden(bool /*hidden*/) override {}

    void addGestureRecognizer(const platform::GestureRecognizerRef& /*recognizer*/) override {}

    void setBackgroundColor(const platform::Color& /*color*/) override {}

    void setClipsToBounds(bool /*clips*/) override {}

    [[nodiscard]] platform::LayerRef layer() override { return nullptr; }
};

}  // namespace

TEST(ViewTree, SubviewsStandBackToFront) {
    const auto first = view();
    const auto second = view();
    const auto third = view();
    const auto parent = view(0, {first, second});
    parent->insertSubviewAtIndex(third, 1);
    EXPECT_EQ(parent->subviews(), (Views{first, third, second}));
    EXPECT_EQ(first->superview(), parent);
    const auto last = view();
    parent->insertSubviewAtIndex(last, 99);
    EXPECT_EQ(parent->subviews(), (Views{first, third, second, last}));
}

TEST(ViewTree, AddingAgainBringsToTheFront) {
    const auto first = view();
    const auto second = view();
    const auto parent = view(0, {first, second});
    parent->addSubview(first);
    EXPECT_EQ(parent->subviews(), (Views{second, first}));
    parent->insertSubviewAtIndex(first, 0);
    EXPECT_EQ(parent->subviews(), (Views{first, second}));
}

TEST(ViewTree, AddingElsewhereLeavesTheFirstParent) {
    const auto child = view();
    const auto first = view(0, {child});
    const auto second = view(0, {child});
    EXPECT_TRUE(first->subviews().empty());
    EXPECT_EQ(second->subviews(), Views{child});
    EXPECT_EQ(child->superview(), second);
}

TEST(ViewTree, RemovingLeavesTheSuperview) {
    auto child = view();
    const auto other = view();
    const auto parent = view(0, {child, other});
    child->removeFromSuperview();
    child->removeFromSuperview();
    EXPECT_EQ(parent->subviews(), Views{other});
    EXPECT_EQ(child->superview(), nullptr);
    // The superview may hold the last reference.
    DesktopView* const raw = child.get();
    parent->addSubview(child);
    child.reset();
    raw->removeFromSuperview();
    EXPECT_EQ(parent->subviews(), Views{other});
}

TEST(ViewTree, CyclesAreRefused) {
    const auto inner = view();
    const auto middle = view(0, {inner});
    const auto outer = view(0, {middle});
    outer->addSubview(outer);
    inner->addSubview(outer);
    inner->addSubview(middle);
    EXPECT_EQ(outer->subviews(), Views{middle});
    EXPECT_EQ(middle->subviews(), Views{inner});
    EXPECT_TRUE(inner->subviews().empty());
    EXPECT_EQ(outer->superview(), nullptr);
}

TEST(ViewTree, NilAndViewsOfAnotherMakeAreRefused) {
    const auto parent = view();
    parent->addSubview(nullptr);
    parent->addSubview(std::make_shared<ForeignView>());
    EXPECT_TRUE(parent->subviews().empty());
    EXPECT_EQ(ViewNode::of(nullptr), nullptr);
    EXPECT_EQ(ViewNode::of(std::make_shared<ForeignView>()), nullptr);
}

TEST(ViewTree, AViewOutlivesItsSuperview) {
    const auto child = view();
    std::weak_ptr<DesktopView> gone;
    {
        const auto parent = view(0, {child});
        gone = parent;
    }
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(child->superview(), nullptr);
    child->removeFromSuperview();
    const auto next = view(0, {child});
    EXPECT_EQ(child->superview(), next);
}

TEST(ViewWithTag, TheReceiverComesFirst) {
    const auto parent = view(7, {view(7)});
    EXPECT_EQ(parent->viewWithTag(7), parent);
    EXPECT_EQ(view()->viewWithTag(7), nullptr);
    const auto plain = view();
    EXPECT_EQ(plain->viewWithTag(0), plain);
}

TEST(ViewWithTag, DepthsComeBeforeLaterSubviews) {
    const auto deep = view(7);
    const auto parent = view(1, {view(2), view(3, {view(4, {deep})}), view(7)});
    EXPECT_EQ(parent->viewWithTag(7), deep);
}

TEST(ViewWithTag, FollowsTheOrderOfSubviews) {
    const auto back = view(7);
    const auto parent = view(1, {view(7)});
    parent->insertSubviewAtIndex(back, 0);
    EXPECT_EQ(parent->viewWithTag(7), back);
}

TEST(ViewGeometry, BoundsHaveTheFramesSizeAtZero) {
    const auto some = view();
    EXPECT_EQ(some->frame(), Rect{});
    some->setFrame({{3, -4}, {5, 6}});
    EXPECT_EQ(some->frame(), (Rect{{3, -4}, {5, 6}}));
    EXPECT_EQ(some->bounds(), (Rect{{0, 0}, {5, 6}}));
    EXPECT_EQ(some->layer()->bounds(), (Rect{{0, 0}, {5, 6}}));
}

TEST(ViewGeometry, NegativeSizesGoTheOtherWay) {
    const auto some = view();
    some->setFrame({{10, 20}, {-4, -5}});
    EXPECT_EQ(some->frame(), (Rect{{6, 15}, {4, 5}}));
    EXPECT_EQ(some->bounds(), (Rect{{0, 0}, {4, 5}}));
}

TEST(ViewGeometry, FramesThatAreNotFiniteAreIgnored) {
    const auto some = view();
    some->setFrame({{1, 2}, {3, 4}});
    for (const double number : {static_cast<double>(NAN), static_cast<double>(INFINITY)}) {
        some->setFrame({{number, 0}, {1, 1}});
        some->setFrame({{0, number}, {1, 1}});
        some->setFrame({{0, 0}, {number, 1}});
        some->setFrame({{0, 0}, {1, -number}});
    }
    EXPECT_EQ(some->frame(), (Rect{{1, 2}, {3, 4}}));
}

TEST(ViewProperties, AlphaIsClamped) {
    const auto some = view();
    EXPECT_EQ(some->alpha(), 1);
    some->setAlpha(0.25);
    EXPECT_EQ(some->alpha(), 0.25);
    some->setAlpha(7);
    EXPECT_EQ(some->alpha(), 1);
    some->setAlpha(-1);
    EXPECT_EQ(some->alpha(), 0);
    some->setAlpha(NAN);
    EXPECT_EQ(some->alpha(), 0);
}

TEST(ImageViews, AreMadeInThreeWays) {
    DesktopViews views;
    const platform::ImageRef image = std::make_shared<DesktopImage>(
        DesktopBitmapImage::createPremultiplied(std::make_shared<platform::Data>(24), {3, 2}, 12),
        2, ImageDescription::ios13);
    const auto empty = views.imageView();
    EXPECT_EQ(empty->frame(), Rect{});
    EXPECT_EQ(empty->image(), nullptr);
    EXPECT_EQ(empty->className(), "UIImageView");
    const auto sized = views.imageViewWithImage(image);
    EXPECT_EQ(sized->frame(), (Rect{{0, 0}, {1.5, 1}}));
    EXPECT_EQ(sized->image(), image);
    EXPECT_EQ(views.imageViewWithImage(nullptr)->frame(), Rect{});
    const auto framed = views.imageViewWithFrame({{1, 2}, {3, 4}});
    EXPECT_EQ(framed->frame(), (Rect{{1, 2}, {3, 4}}));
    framed->setImage(image);
    EXPECT_EQ(framed->frame(), (Rect{{1, 2}, {3, 4}}));
    framed->setImage(nullptr);
    EXPECT_EQ(framed->image(), nullptr);
}

}  // namespace velmoranth::desktop::view_tree_test
