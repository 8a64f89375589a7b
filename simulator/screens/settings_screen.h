// The settings app: the user, and groups of rows whose icons the app's icon cache gives. A pad
// shows the list beside the page that is chosen in it.
#pragma once

#include "simulator/screen_context.h"
#include "simulator/screens/app_screen.h"

namespace velmoranth::simulator {

// The classes of the settings app's process, after the toolkit's.
void registerSettingsClasses(const ScreenContext& context);

// What the list takes from the screen's left, points: 0 where it is a screen of its own.
[[nodiscard]] double settingsListWidth(const DeviceConfiguration& device);

// The list beside a page of the settings; nothing where it is a screen of its own.
void addSettingsList(const ScreenContext& context, platform::View& window, AskedImages& images);

class SettingsScreen final : public AppScreen {
  public:
    explicit SettingsScreen(const ScreenContext& context);
};

}  // namespace velmoranth::simulator
