// ICU: the calendars, names of days and patterns of the phone's own locale data.
#include "desktop/dates/dates.h"

#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

namespace velmoranth::desktop {

namespace {

// ICU counts further than this, about five million years, and no wider.
constexpr double kFarthest = 1.8e17;  // milliseconds

UDate udate(const platform::Date& date) {
    const double seconds =
        std::isnan(date.secondsSinceReferenceDate) ? 0 : date.secondsSinceReferenceDate;
    return std::clamp((seconds + kReferenceDate) * 1000, -kFarthest, kFarthest);
}

icu::TimeZone* newTimeZone(const std::string& name) {
    return name.empty() ? icu::TimeZone::createDefault()
                        : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name));
}

// For a language without data ICU would take this machine's own.
bool isKnown(const icu::Locale& locale) {
    std::int32_t count = 0;
    const icu::Locale* const available = icu::Locale::getAvailableLocales(count);
    const std::span all(available, static_cast<std::size_t>(count));
    return !locale.isBogus() && std::any_of(all.begin(), all.end(), [&](const auto& other) {
        return std::strcmp(other.getLanguage(), locale.getLanguage()) == 0;
    });
}

// The locale with the Gregorian calendar, whatever its own is.
icu::Locale gregorian(const std::string& name) {
    icu::Locale locale(name.c_str());
    if (!isKnown(locale)) {
        locale = icu::Locale::getUS();
    }
    UErrorCode status = U_ZERO_ERROR;
    locale.setKeywordValue("calendar", "gregorian", status);
    return locale;
}

}  // namespace

std::vector<std::string> knownLocales() {
    std::int32_t count = 0;
    const icu::Locale* const available = icu::Locale::getAvailableLocales(count);
    std::vector<std::string> names;
    for (const icu::Locale& locale : std::span(available, static_cast<std::size_t>(count))) {
        names.emplace_back(locale.getName());
    }
    return names;
}

bool isKnownLocale(const std::string& name) {
    return isKnown(icu::Locale(name.c_str()));
}

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
    icu::GregorianCalendar calendar(newTimeZone(configuration_.timeZone), status);
    calendar.setTime(udate(date), status);
    const std::int32_t day = calendar.get(UCAL_DATE, status);
    return U_SUCCESS(status) ? day : 1;
}

std::string DesktopDates::stringFromDate(const platform::Date& date,
                                         const std::string& dateFormat) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(icu::UnicodeString::fromUTF8(dateFormat),
                                    gregorian(configuration_.locale), status);
    std::string text;
    if (U_SUCCESS(status)) {
        formatter.adoptTimeZone(newTimeZone(configuration_.timeZone));
        icu::UnicodeString result;
        formatter.format(udate(date), result).toUTF8String(text);
    }
    return text;
}

}  // namespace velmoranth::desktop
