// A switch: UISwitch with the visual element that shows it. The knob is asked for by the message
// _effectiveThumbImage when the element is laid out.
#pragma once

#include "desktop/views/views.h"
#include "platform/uikit.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/toolkit_images.h"

#include <memory>

namespace velmoranth::simulator {

// UISwitchModernVisualElement.
class SwitchVisualElement final
    : public NamedAs<"UISwitchModernVisualElement", platform::UISwitchModernVisualElement> {
  public:
    SwitchVisualElement(bool isOn, const platform::ImageRef& track);
    // At its own size, its middle in the middle of the knob's place, to the pixel of a screen of
    // that scale. Nil shows none.
    void placeKnob(const platform::ImageRef& knob, double scale);

    // Of the element, points.
    [[nodiscard]] platform::Point knobMiddle() const;

  private:
    bool isOn_;
    std::shared_ptr<desktop::DesktopImageView> knobView_;
};

// kSwitchWidth × kSwitchHeight points.
[[nodiscard]] platform::ViewRef makeSwitch(ToolkitImages& images, bool isOn,
                                           const platform::Point& origin);

}  // namespace velmoranth::simulator
