#include "simulator/toolkit/time_of_day.h"

#include "desktop/dates/dates.h"

#include <cmath>
#include <ctime>

namespace velmoranth::simulator {

TimeOfDay timeOfDay(const std::optional<platform::Date>& date) {
    const double seconds = date ? date->secondsSinceReferenceDate + desktop::kReferenceDate : NAN;
    std::tm local{};
    const auto time = static_cast<std::time_t>(std::isfinite(seconds) ? std::floor(seconds) : 0);
    if (!std::isfinite(seconds) || localtime_r(&time, &local) == nullptr) {
        return kStillTime;
    }
    return {local.tm_hour, local.tm_min, local.tm_sec};
}

}  // namespace velmoranth::simulator
