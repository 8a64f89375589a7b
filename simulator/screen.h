// What a simulated process shows: a view tree, laid out by messages and drawn.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/runtime/runtime.h"
#include "platform/uikit.h"
#include "simulator/device.h"
#include "simulator/picture.h"

#include <memory>
#include <optional>
#include <vector>

namespace velmoranth::simulator {

class Screen {
  public:
    Screen() = default;
    // Views refer to their screen.
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    virtual ~Screen() = default;

    // Pages count from 1; a number beyond either end shows the nearest.
    virtual void showPage(int /*page*/) {}

    [[nodiscard]] virtual int page() const { return 1; }

    [[nodiscard]] virtual int pageCount() const { return 1; }

    // Sends layoutSubviews to every view, superviews first.
    virtual void layoutViews() = 0;

    // The screen as it was laid out last. Nil when it is too large to draw.
    [[nodiscard]] virtual std::shared_ptr<desktop::DesktopBitmapImage> draw() const = 0;

    // The view that is the whole of it, as large as the screen.
    [[nodiscard]] virtual const platform::ViewRef& view() const = 0;

    // The screen is what the process shows from now on: its view is that of the root view
    // controller of the key window.
    virtual void didAppear() {}

    // Notifications of the device have been delivered to the process.
    virtual void notificationsWereDelivered() {}

    // A tap there, points.
    virtual void tap(const platform::Point& /*point*/) {}

    // What is animated moves on; negative and NaN count as 0.
    virtual void advance(double /*seconds*/) {}

    // The icons in the picture; none where there are none.
    [[nodiscard]] virtual std::vector<ShownIcon> shownIcons() const { return {}; }

    // The folder that is open; none when none is.
    [[nodiscard]] virtual std::optional<ShownFolder> shownFolder() const { return std::nullopt; }
};

// Sends layoutSubviews to the view and all below it, superviews first; `settled` itself is sent
// nothing, nil for none.
void layoutTree(desktop::Runtime& runtime, const platform::ViewRef& view,
                const platform::ViewRef& settled = nullptr);

// The tree at the screen's size and scale; nil when that is too large to draw.
[[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> drawTree(
    const platform::ViewRef& window, const ScreenDescription& screen);

// The pixels of a screen.
[[nodiscard]] desktop::PixelSize pixelSizeOf(const ScreenDescription& screen);

}  // namespace velmoranth::simulator
