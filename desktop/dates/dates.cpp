// ICU: the calendars, names of days and patterns of the phone's own locale data.
#include "desktop/dates/dates.h"

#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <chrono>
#include <memory>
#include <utility>

namespace velmoranth::desktop {

namespace {

// From 1970, where ICU counts from, to 2001, where the platform does.
constexpr double kReferenceDate = 978307200;  // seconds

UDate udate(const platform::Date& date) {
    return (date.secondsSinceReferenceDate + kReferenceDate) * 1000;
}

icu::TimeZone* newTimeZone(const std::string& name) {
    return name.empty() ? icu::TimeZone::createDefault()
                        : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name));
}

}  // namespace

DesktopDates::DesktopDates(Configuration configuration)
    : configuration_(std::move(configuration)) {}

platform::Date DesktopDates::date() {
    if (configuration_.date) {
        return *configuration_.date;
    }
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return {now.count() - kReferenceDate};
}

long DesktopDates::dayFromDate(const platform::Date& date) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar(newTimeZone(configuration_.timeZone),
                                    icu::Locale(configuration_.locale.c_str()), status);
    calendar.setTime(udate(date), status);
    return calendar.get(UCAL_DATE, status);
}

std::string DesktopDates::stringFromDate(const platform::Date& date,
                                         const std::string& dateFormat) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(icu::UnicodeString::fromUTF8(dateFormat),
                                    icu::Locale(configuration_.locale.c_str()), status);
    std::string text;
    if (U_SUCCESS(status)) {
        formatter.adoptTimeZone(newTimeZone(configuration_.timeZone));
        icu::UnicodeString result;
        formatter.format(udate(date), result).toUTF8String(text);
    }
    return text;
}

}  // namespace velmoranth::desktop
