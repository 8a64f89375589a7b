// The screens there are besides the home screen. Each is made in the process that it belongs to,
// whose classes are known and whose engine is loaded.
#pragma once

#include "simulator/app_context.h"
#include "simulator/home_screen/home_screen.h"
#include "simulator/screen.h"
#include "simulator/screen_kinds.h"

#include <memory>

namespace velmoranth::simulator {

// Of an ordinary app.
[[nodiscard]] std::unique_ptr<Screen> makeControlsScreen(const AppContext& context);

// Of the process that has every class.
[[nodiscard]] std::unique_ptr<Screen> makeGalleryScreen(const AppContext& context);

// Of the settings app, and of the weather app.
[[nodiscard]] std::unique_ptr<Screen> makeSettingsScreen(const AppContext& context);
[[nodiscard]] std::unique_ptr<Screen> makeWeatherScreen(const AppContext& context);

// Of the settings app; `kind` is one of the panel's two.
[[nodiscard]] std::unique_ptr<Screen> makePanelScreen(const AppContext& context, ScreenKind kind);

// Of the home screen's process. `home` lies behind them.
[[nodiscard]] std::unique_ptr<Screen> makeTodayScreen(const AppContext& context,
                                                      std::unique_ptr<HomeScreen> home);
[[nodiscard]] std::unique_ptr<Screen> makeSwitcherScreen(const AppContext& context,
                                                         std::unique_ptr<HomeScreen> home);
[[nodiscard]] std::unique_ptr<Screen> makeNotificationScreen(const AppContext& context,
                                                             std::unique_ptr<HomeScreen> home);

}  // namespace velmoranth::simulator
