// What the screens that are built from rows, bars and cards have in common: what they are made
// with, and the pieces that most of them have.
#pragma once

#include "simulator/screen_context.h"
#include "simulator/screens/app_screen.h"
#include "simulator/toolkit/image_messages.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/view_kit.h"

#include <string_view>

namespace velmoranth::simulator {

class ScreenBuilder {
  public:
    // Adds views to the window, and to `images` what they show. All outlive this object.
    ScreenBuilder(const ScreenContext& context, platform::View& window, AskedImages& images);

  protected:
    [[nodiscard]] bool isPad() const { return context_.device.kind == DeviceKind::pad; }

    // Whether the system is iOS 13 or later.
    [[nodiscard]] bool isAtLeast13() const { return context_.device.system.major >= 13; }

    [[nodiscard]] double hairline() const { return 1 / context_.scale(); }

    // A view of that class in `to`.
    std::shared_ptr<NamedView> addView(platform::View& to, std::string_view className,
                                       const platform::Rect& frame,
                                       const platform::Color& color = platform::kClearColor) const;

    static void addText(platform::View& to, std::string_view text, const desktop::TextStyle& style,
                        const platform::Rect& frame) {
        to.addSubview(makeText(text, style, frame));
    }

    // A hairline between rows, from `left` to the view's right edge.
    void addLine(platform::View& to, double y, double left = 0) const;

    // The toolkit's image, which from iOS 13 on is a glyph in that tint, asked for at every layout.
    void addToolkitImage(platform::View& to, const platform::Rect& slot, const char* kitName,
                         const char* glyphName, const platform::Color& tint) const;

    // As wide as the view, with its title in the middle and a line along its bottom edge.
    platform::ViewRef addNavigationBar(platform::View& to, std::string_view title) const;

    // A switch at the right end of a row as high as rows are.
    void addSwitch(platform::View& row, bool isOn) const;

    const ScreenContext& context_;
    platform::View& window_;
    AskedImages& images_;
    ImageMessages ask_;
    const AppColors& colors_;
    platform::Size size_;         // of the screen, points
    platform::ObjectRef traits_;  // of the screen
};

// Points. The platform's interface guidelines and estimates after them.
inline constexpr double kBarHeight = 44;
inline constexpr double kRowHeight = 44;
inline constexpr double kGroupGap = 35;
inline constexpr double kRowMargin = 15;
inline constexpr double kRowTextSize = 17;

}  // namespace velmoranth::simulator
