// The screens besides the home screen, on a device with a theme of the test's own: each drawn with
// the engine's library, and as it is without a theme.
#pragma once

#include "simulator/screen_kinds.h"
#include "themed_device.h"

#include <string_view>

namespace velmoranth::simulator {

// 2019-12-23 12:00 UTC, a Monday.
inline constexpr double kMonday = 598795200;

class ThemedScreen {
  public:
    ThemedScreen(ScreenKind kind, std::string_view model, int system)
        : kind_(kind), model_(model), system_(system) {}

    // With the theme, or as the platform shows it.
    [[nodiscard]] Look themed() const { return draw({}, true); }

    [[nodiscard]] Look stock() const { return draw({}, false); }

    [[nodiscard]] Look draw(const platform::Dictionary& preferences, bool loadEngine) const {
        ScreenRequest request = device.request(model_, system_, preferences);
        request.screen = kind_;
        request.device.date = platform::Date{kMonday};
        request.loadEngine = loadEngine;
        auto screen = renderScreen(request);
        EXPECT_TRUE(screen) << (screen ? "" : toLine(screen.error()));
        return Look(std::move(*screen));
    }

    ThemedDevice device;

  private:
    ScreenKind kind_;
    std::string_view model_;
    int system_;
};

}  // namespace velmoranth::simulator
