// The weather app: what it is like now, the hours of the day, the days to come. The sign of each
// condition is asked for by a message.
#pragma once

#include "simulator/screen_context.h"
#include "simulator/screens/app_screen.h"

namespace velmoranth::simulator {

// The classes of the weather app's process, after the toolkit's.
void registerWeatherClasses(const ScreenContext& context);

class WeatherScreen final : public AppScreen {
  public:
    explicit WeatherScreen(const ScreenContext& context);
};

}  // namespace velmoranth::simulator
