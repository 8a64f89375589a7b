// NSDate, NSCalendar and NSDateFormatter on Linux: a clock that may stand still, a locale and a
// time zone.
#pragma once

#include "platform/foundation.h"

#include <optional>
#include <string>
#include <vector>

namespace velmoranth::desktop {

// From 1970, where this machine and ICU count from, to 2001, where the platform does: seconds.
inline constexpr double kReferenceDate = 978307200;

class DesktopDates final : public platform::Dates {
  public:
    struct Configuration {
        // As the platform writes it, "en_US", "zh-Hans_CN"; a region that nobody knows is left
        // out, a language that nobody knows is English.
        std::string locale = "en_US";
        // What the clock shows; nothing is now.
        std::optional<platform::Date> date = {};
        // An Olson name, "Europe/Berlin"; "" is this machine's. One that nobody knows is UTC.
        std::string timeZone = {};
    };

    explicit DesktopDates(Configuration configuration);

    // Of a date that ICU's calendars do not reach, millions of years away, the nearest that they do
    // counts; of NaN the first moment of 2001.
    [[nodiscard]] platform::Date date() override;
    [[nodiscard]] long dayFromDate(const platform::Date& date) override;
    // In the Gregorian calendar too, in the locale's words and digits, also where the locale has
    // another calendar (Thai, Arabic of Saudi Arabia, Persian). "" for a format that is none.
    [[nodiscard]] std::string stringFromDate(const platform::Date& date,
                                             const std::string& dateFormat) override;

  private:
    Configuration configuration_;
};

// The locales that dates are written for: "de", "de_AT".
[[nodiscard]] std::vector<std::string> knownLocales();

// Whether dates are written in the locale's language; they are as in the United States otherwise.
[[nodiscard]] bool isKnownLocale(const std::string& name);

}  // namespace velmoranth::desktop
