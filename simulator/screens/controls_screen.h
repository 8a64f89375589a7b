// The screen of an ordinary app: bars, rows, switches and buttons, whose images are asked for as
// the toolkit asks for them.
#pragma once

#include "simulator/screens/app_screen.h"

namespace velmoranth::simulator {

class ControlsScreen final : public AppScreen {
  public:
    explicit ControlsScreen(const ScreenContext& context) : AppScreen(context) {}

    // Asks for every image anew, so that a change of theme shows in the next picture.
    void layoutViews() override;
};

}  // namespace velmoranth::simulator
