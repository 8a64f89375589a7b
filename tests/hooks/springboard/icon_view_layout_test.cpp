// The replacement of SBIconView's layout: the shadow image and the layer shadow, once a view.
#include "springboard_fixture.h"

namespace velmoranth::hooks {
namespace {

using platform::Dictionary;
using tests::Lines;

struct TestIconView final : desktop::ViewImplementation<platform::SBIconView> {
    platform::SBIconRef shown;

    [[nodiscard]] std::string className() const override { return "SBIconView"; }

    [[nodiscard]] platform::SBIconRef icon() const override { return shown; }
};

class IconViewLayout : public tests::SpringBoardProcess {
  protected:
    IconViewLayout() {
        addLayout<platform::SBIconView>("SBIconView");
        install();
        view->shown = icon;
    }

    void layout() { device.runtime.send<void>(*view, "layoutSubviews"); }

    std::shared_ptr<TestIconView> view = std::make_shared<TestIconView>();
};

TEST_F(IconViewLayout, WithThemingOffRunsThePlatformsLayoutAlone) {
    settings({"A"}, Dictionary{{"enableShadow", true}, {"dynamicShadow", true}});
    layout();
    EXPECT_EQ(taken(), Lines{"orig layoutSubviews"});
    EXPECT_EQ(view->tag(), 0);
}

}  // namespace
}  // namespace velmoranth::hooks
