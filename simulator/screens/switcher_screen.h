// The app switcher: cards of the apps that were used last, and at the bottom the banner that
// suggests an app.
#pragma once

#include "platform/springboard.h"
#include "simulator/screen_context.h"
#include "simulator/screens/home_overlay.h"
#include "simulator/toolkit/named_views.h"

#include <string>

namespace velmoranth::simulator {

// SBSwitcherAppSuggestionBannerView.
class SuggestionBannerView final : public NamedAs<"SBSwitcherAppSuggestionBannerView",
                                                  platform::SBSwitcherAppSuggestionBannerView> {
  public:
    // The app that it suggests, by identifier and name.
    SuggestionBannerView(const platform::Rect& frame, std::string app, const std::string& name);

    [[nodiscard]] const std::string& app() const { return app_; }

    // "_iconView".
    [[nodiscard]] const platform::ImageViewRef& iconView() const { return iconView_; }

  private:
    std::string app_;
    platform::ImageViewRef iconView_;
};

// The classes of the switcher, after the home screen's.
void registerSwitcherClasses(const ScreenContext& context);

class SwitcherScreen final : public HomeOverlay {
  public:
    explicit SwitcherScreen(const ScreenContext& context);
};

}  // namespace velmoranth::simulator
