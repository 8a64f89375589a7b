// NSDate, NSCalendar and NSDateFormatter on Linux: a clock that may stand still, a locale and a time
// zone.
#pragma once

#include "platform/foundation.h"

#include <optional>
#include <string>

namespace velmoranth::desktop {

class DesktopDates final : public platform::Dates {
  public:
    struct Configuration {
        // As the platform writes it, "en_US"; one that nobody knows is the root locale.
        std::string locale = "en_US";
        // What the clock shows; nothing is now.
        std::optional<platform::Date> date = {};
        // An Olson name, "Europe/Berlin"; "" is this machine's.
        std::string timeZone = {};
    };

    explicit DesktopDates(Configuration configuration);

    [[nodiscard]] platform::Date date() override;
    [[nodiscard]] long dayFromDate(const platform::Date& date) override;
    [[nodiscard]] std::string stringFromDate(const platform::Date& date,
                                             const std::string& dateFormat) override;

  private:
    Configuration configuration_;
};

}  // namespace velmoranth::desktop
