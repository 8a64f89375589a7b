#include "simulator/toolkit/switch_view.h"

#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/toolkit/named_views.h"

namespace velmoranth::simulator {

namespace {

constexpr platform::Rect kBounds{{0, 0}, {kSwitchWidth, kSwitchHeight}};

}  // namespace

SwitchVisualElement::SwitchVisualElement(bool isOn, const platform::ImageRef& track)
    : isOn_(isOn), knobView_(std::make_shared<desktop::DesktopImageView>()) {
    setNodeFrame(kBounds);
    const auto trackView = std::make_shared<desktop::DesktopImageView>(kBounds);
    trackView->setImage(track);
    addSubview(trackView);
    addSubview(knobView_);
}

platform::Point SwitchVisualElement::knobMiddle() const {
    const double fromEdge = kSwitchKnobInset + kSwitchKnobSide / 2;
    return {isOn_ ? kSwitchWidth - fromEdge : fromEdge, kSwitchHeight / 2};
}

void SwitchVisualElement::placeKnob(const platform::ImageRef& knob, double scale) {
    const platform::Size size = platform::sizeOf(knob);
    const platform::Point middle = knobMiddle();
    knobView_->setImage(knob);
    knobView_->setFrame({{snapToPixels(middle.x - size.width / 2, scale),
                          snapToPixels(middle.y - size.height / 2, scale)},
                         size});
}

platform::ViewRef makeSwitch(ToolkitImages& images, bool isOn, const platform::Point& origin) {
    auto view = std::make_shared<NamedView>("UISwitch", platform::Rect{origin, kBounds.size});
    view->addSubview(std::make_shared<SwitchVisualElement>(isOn, images.switchTrack(isOn)));
    return view;
}

}  // namespace velmoranth::simulator
