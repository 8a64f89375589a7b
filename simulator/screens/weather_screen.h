// The weather app: what it is like now, the hours of the day, the days to come. The sign of each
// condition is asked for by a message.
#pragma once

#include "simulator/app_context.h"
#include "simulator/screens/app_screen.h"

namespace velmoranth::simulator {

// The classes of the weather app's process, after the toolkit's.
void registerWeatherClasses(const AppContext& context);

class WeatherScreen final : public AppScreen {
  public:
    explicit WeatherScreen(const AppContext& context);
};

}  // namespace velmoranth::simulator
