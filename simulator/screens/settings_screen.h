// The settings app: the user, and groups of rows whose icons the app's icon cache gives. A pad
// shows the list beside the page that is chosen in it.
#pragma once

#include "simulator/app_context.h"
#include "simulator/screens/app_screen.h"

namespace velmoranth::simulator {

// The classes of the settings app's process, after the toolkit's.
void registerSettingsClasses(const AppContext& context);

class SettingsScreen final : public AppScreen {
  public:
    explicit SettingsScreen(const AppContext& context);
};

}  // namespace velmoranth::simulator
