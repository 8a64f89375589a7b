#include "desktop/views/views.h"
#include "imaging/view_tags.h"

#include "icon_effects_fixture.h"

#include <memory>
#include <string>

namespace velmoranth::tests::tagged_views_test {

using imaging::IconEffects;
using platform::ViewRef;

namespace {

ViewRef tagged(int tag, std::initializer_list<ViewRef> subviews = {}) {
    ViewRef view = std::make_shared<desktop::DesktopView>();
    view->setTag(tag);
    for (const ViewRef& subview : subviews) {
        view->addSubview(subview);
    }
    return view;
}

struct Operation {
    const char* name;
    void (*remove)(const ViewRef&);
    int tag;
};

constexpr Operation kOperations[] = {
    {"overlays", IconEffects::removeAllOverlaysfrom, 547},
    {"shadows", IconEffects::removeAllShadowsfrom, 478},
    {"folder", IconEffects::removeFolderfrom, 2232},
    {"reflections", IconEffects::removeReflectedIconsfrom, 777},
};

}  // namespace

class RemoveTagged : public testing::TestWithParam<Operation> {};

TEST_P(RemoveTagged, ADirectSubview) {
    const ViewRef found = tagged(GetParam().tag);
    const ViewRef other = tagged(1);
    const ViewRef view = tagged(2, {other, found});
    GetParam().remove(view);
    EXPECT_EQ(view->subviews(), std::vector<ViewRef>{other});
}

TEST_P(RemoveTagged, OnlyTheFirstOfTwoSubtrees) {
    const ViewRef left = tagged(1, {tagged(3), tagged(GetParam().tag)});
    const ViewRef right = tagged(1, {tagged(GetParam().tag)});
    const ViewRef view = tagged(2, {left, right});
    GetParam().remove(view);
    EXPECT_EQ(left->subviews().size(), 1U);
    EXPECT_EQ(left->subviews().front()->tag(), 3);
    EXPECT_EQ(right->subviews().size(), 1U);
    GetParam().remove(view);
    EXPECT_TRUE(right->subviews().empty());
    GetParam().remove(view);
    EXPECT_EQ(view->subviews().size(), 2U);
}

TEST_P(RemoveTagged, OneOfTwoInTheSameSubtree) {
    const ViewRef first = tagged(GetParam().tag);
    const ViewRef second = tagged(GetParam().tag);
    const ViewRef inner = tagged(1, {first, second});
    GetParam().remove(tagged(2, {inner}));
    EXPECT_EQ(inner->subviews(), std::vector<ViewRef>{second});
}

TEST_P(RemoveTagged, AnEarlierSubviewsDepthsComeBeforeALaterSubview) {
    const ViewRef deep = tagged(1, {tagged(1, {tagged(GetParam().tag)})});
    const ViewRef later = tagged(GetParam().tag);
    const ViewRef view = tagged(2, {deep, later});
    GetParam().remove(view);
    EXPECT_EQ(view->subviews().size(), 2U);
    EXPECT_TRUE(deep->subviews().front()->subviews().empty());
}

TEST_P(RemoveTagged, NotTheViewItself) {
    const ViewRef view = tagged(GetParam().tag);
    const ViewRef parent = tagged(2, {view});
    GetParam().remove(view);
    EXPECT_EQ(parent->subviews().size(), 1U);
}

TEST_P(RemoveTagged, NothingOfTheOtherTags) {
    const ViewRef view = tagged(2);
    std::size_t kept = 0;
    for (const int tag :
         {imaging::ThemedIconTag, imaging::IconShadowTag, imaging::IconOverlayTag,
          imaging::FolderImageTag, imaging::FolderRemovalTag, imaging::ReflectionTag, 0}) {
        if (tag != GetParam().tag) {
            view->addSubview(tagged(tag));
            ++kept;
        }
    }
    GetParam().remove(view);
    EXPECT_EQ(view->subviews().size(), kept);
}

TEST_P(RemoveTagged, NilAndNoSubviewsDoNothing) {
    GetParam().remove(nullptr);
    const ViewRef view = tagged(2);
    GetParam().remove(view);
    EXPECT_TRUE(view->subviews().empty());
}

INSTANTIATE_TEST_SUITE_P(AllFour, RemoveTagged, testing::ValuesIn(kOperations),
                         [](const testing::TestParamInfo<Operation>& operation) {
                             return std::string(operation.param.name);
                         });

TEST(ViewTags, AreFixed) {
    EXPECT_EQ(imaging::ThemedIconTag, 546);
    EXPECT_EQ(imaging::IconShadowTag, 478);
    EXPECT_EQ(imaging::IconOverlayTag, 547);
    EXPECT_EQ(imaging::FolderImageTag, 2322);
    EXPECT_EQ(imaging::FolderRemovalTag, 2232);
    EXPECT_EQ(imaging::ReflectionTag, 777);
}

TEST(RemoveFolder, LeavesTheFolderImage) {
    const ViewRef image = tagged(imaging::FolderImageTag);
    const ViewRef view = tagged(0, {image});
    IconEffects::removeFolderfrom(view);
    EXPECT_EQ(view->subviews(), std::vector<ViewRef>{image});
}

}  // namespace velmoranth::tests::tagged_views_test
