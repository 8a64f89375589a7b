// A presented alert as it looks in the light appearance: the screen dimmed, and in its middle a
// card with title, message and buttons.
#pragma once

#include "desktop/text/text.h"
#include "desktop/views/view_controllers.h"
#include "platform/uikit.h"
#include "simulator/device.h"

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::simulator {

// Width of the card, points, on every device.
inline constexpr double kAlertWidth = 270;

class AlertView {
  public:
    AlertView(std::shared_ptr<const desktop::DesktopAlertController> alert,
              const DeviceConfiguration& device);

    // As large as the screen.
    [[nodiscard]] const platform::ViewRef& view() const { return view_; }

    // Of the card, in the view's coordinates.
    [[nodiscard]] const platform::Rect& card() const { return card_; }

    struct Button {
        platform::Rect frame;  // in the view's coordinates
        std::shared_ptr<desktop::DesktopAlertAction> action;
    };

    // In the order in which the actions were added.
    [[nodiscard]] const std::vector<Button>& buttons() const { return buttons_; }

    // The action of the button there; nil where there is none.
    [[nodiscard]] std::shared_ptr<desktop::DesktopAlertAction> actionAt(
        const platform::Point& point) const;

  private:
    std::shared_ptr<const desktop::DesktopAlertController> alert_;
    platform::ViewRef view_;
    platform::Rect card_;
    std::vector<Button> buttons_;
};

// The text in lines not wider than `width` points: broken at blanks and line ends, and inside a
// word that is too long for a line. The last of `mostLines` lines has all that is left, however
// wide. Bytes that are no UTF-8 stay as they are.
[[nodiscard]] std::vector<std::string> brokenIntoLines(const std::string& text,
                                                       const desktop::TextStyle& style,
                                                       double width, std::size_t mostLines);

}  // namespace velmoranth::simulator
