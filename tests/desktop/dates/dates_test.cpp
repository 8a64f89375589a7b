#include "desktop/dates/dates.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace velmoranth::desktop::dates_test {

namespace {

using platform::Date;
using std::chrono::day;
using std::chrono::month;
using std::chrono::year;

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A moment in UTC.
Date at(int y, unsigned m, unsigned d, double hour = 12) {
    using std::chrono::sys_days;
    const auto days = sys_days(year(y) / month(m) / day(d)) - sys_days(year(2001) / 1 / 1);
    return {static_cast<double>(days.count()) * 86400 + hour * 3600};
}

DesktopDates datesOf(const std::string& locale, const std::string& timeZone = "UTC") {
    return DesktopDates({.locale = locale, .timeZone = timeZone});
}

std::string weekday(const std::string& locale, const Date& date) {
    return datesOf(locale).stringFromDate(date, "EEEE");
}

struct Day {
    int y;
    unsigned m;
    unsigned d;
    unsigned weekday;  // 0 is Sunday
};

// Ends of months and years, leap days and the days beside them.
constexpr Day kDays[] = {
    {2019, 6, 17, 1}, {2020, 2, 28, 5}, {2020, 2, 29, 6}, {2020, 3, 1, 0},   {2019, 12, 31, 2},
    {2020, 1, 1, 3},  {2000, 2, 29, 2}, {2021, 2, 28, 0}, {1999, 11, 30, 2}, {2024, 10, 10, 4},
};

const std::map<std::string, std::vector<std::string>> kWeekdays = {
    {"en_US", {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"}},
    {"de_DE", {"Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"}},
    {"ja_JP", {"日曜日", "月曜日", "火曜日", "水曜日", "木曜日", "金曜日", "土曜日"}},
    {"ar_SA", {"الأحد", "الاثنين", "الثلاثاء", "الأربعاء", "الخميس", "الجمعة", "السبت"}},
    {"ru_RU", {"воскресенье", "понедельник", "вторник", "среда", "четверг", "пятница", "суббота"}},
};

}  // namespace

TEST(DesktopDates, SaysDayAndWeekdayInEveryLocale) {
    for (const auto& [locale, names] : kWeekdays) {
        for (const Day& day : kDays) {
            const Date date = at(day.y, day.m, day.d);
            EXPECT_EQ(datesOf(locale).dayFromDate(date), static_cast<long>(day.d)) << locale;
            EXPECT_EQ(weekday(locale, date), names[day.weekday])
                << locale << ' ' << day.y << '-' << day.m << '-' << day.d;
        }
    }
}

TEST(DesktopDates, CountsInTheGregorianCalendarWhereAnotherOneIsUsual) {
    const Date date = at(2020, 2, 29);
    for (const char* locale : {"th_TH", "ar_SA", "fa_IR", "ps_AF", "en_US@calendar=hebrew",
                               "ja_JP@calendar=japanese", "zh_CN@calendar=chinese"}) {
        EXPECT_EQ(datesOf(locale).dayFromDate(date), 29) << locale;
    }
    EXPECT_EQ(weekday("th_TH", date), "วันเสาร์");
    EXPECT_EQ(weekday("fa_IR", date), "شنبه");
    EXPECT_EQ(datesOf("th_TH").stringFromDate(date, "d M y"), "29 2 2020");
    EXPECT_EQ(datesOf("en_US@calendar=hebrew").stringFromDate(date, "d MMMM y"),
              "29 February 2020");
    EXPECT_EQ(datesOf("fa_IR").stringFromDate(date, "d M y"), "۲۹ ۲ ۲۰۲۰");
}

TEST(DesktopDates, ReadsLocalesHoweverTheyAreSpelled) {
    const Date monday = at(2019, 6, 17);
    for (const char* locale : {"en_US", "en-US", "en", "en_XX"}) {
        EXPECT_EQ(weekday(locale, monday), "Monday") << locale;
    }
    EXPECT_EQ(weekday("pt_BR", monday), "segunda-feira");
    EXPECT_EQ(weekday("pt-BR", monday), "segunda-feira");
    EXPECT_EQ(weekday("zh-Hans_CN", monday), "星期一");
    EXPECT_EQ(weekday("zh-Hant-TW", monday), "星期一");
    EXPECT_EQ(weekday("ko_KR", monday), "월요일");
    EXPECT_EQ(weekday("he_IL", monday), "יום שני");
    EXPECT_EQ(weekday("ar", monday), "الاثنين");
    EXPECT_EQ(weekday("de_XX", monday), "Montag");
}

TEST(DesktopDates, AnUnknownLanguageIsEnglishWhateverThisMachineSpeaks) {
    ASSERT_EQ(::setenv("LC_ALL", "de_DE.UTF-8", 1), 0);
    const Date monday = at(2019, 6, 17);
    for (const std::string& locale :
         {std::string(), std::string("xx_YY"), std::string("!?"), std::string(100000, 'a'),
          std::string("\xFF\xFE"), std::string("tlh"), std::string("_US")}) {
        EXPECT_EQ(weekday(locale, monday), "Monday") << locale.substr(0, 20);
        EXPECT_EQ(datesOf(locale).dayFromDate(monday), 17) << locale.substr(0, 20);
    }
}

TEST(DesktopDates, MidnightIsThatOfTheTimeZone) {
    const Date newYear = at(2020, 1, 1, 0);  // 2020-01-01 00:00 UTC
    const auto dayIn = [&](const char* zone, double hours) {
        return datesOf("en_US", zone)
            .dayFromDate({newYear.secondsSinceReferenceDate + hours * 3600});
    };
    EXPECT_EQ(dayIn("UTC", 0), 1);
    EXPECT_EQ(dayIn("UTC", -1.0 / 3600), 31);
    EXPECT_EQ(dayIn("Asia/Tokyo", -9), 1);
    EXPECT_EQ(dayIn("Asia/Tokyo", -9.01), 31);
    EXPECT_EQ(dayIn("America/New_York", 4.99), 31);
    EXPECT_EQ(dayIn("America/New_York", 5), 1);
    EXPECT_EQ(dayIn("Pacific/Kiritimati", -14), 1);
    EXPECT_EQ(dayIn("Asia/Kathmandu", -5.75), 1);
    EXPECT_EQ(dayIn("Asia/Kathmandu", -5.76), 31);
    EXPECT_EQ(dayIn("Nowhere/Land", 0), 1);
    EXPECT_EQ(datesOf("en_US", "Asia/Tokyo").stringFromDate(newYear, "EEEE d HH:mm"),
              "Wednesday 1 09:00");
    EXPECT_EQ(datesOf("en_US", "America/New_York").stringFromDate(newYear, "EEEE d HH:mm"),
              "Tuesday 31 19:00");
    // Summer time: Berlin is two hours ahead, not one.
    EXPECT_EQ(datesOf("de_DE", "Europe/Berlin").dayFromDate(at(2020, 6, 30, 22)), 1);
    EXPECT_EQ(datesOf("de_DE", "Europe/Berlin").dayFromDate(at(2020, 12, 30, 22.5)), 30);
}

TEST(DesktopDates, NoTimeZoneIsThisMachines) {
    ASSERT_EQ(::setenv("TZ", "Pacific/Kiritimati", 1), 0);
    ::tzset();
    EXPECT_EQ(datesOf("en_US", "").dayFromDate(at(2020, 1, 1, 10.5)), 2);
    EXPECT_EQ(datesOf("en_US", "").stringFromDate(at(2020, 1, 1, 10.5), "EEEE HH"), "Thursday 00");
}

TEST(DesktopDates, TheClockStandsStillOrIsNow) {
    DesktopDates still({.date = Date{123.5}});
    EXPECT_EQ(still.date(), Date{123.5});
    const double now = static_cast<double>(std::time(nullptr)) - 978307200;
    EXPECT_NEAR(datesOf("en_US").date().secondsSinceReferenceDate, now, 5);
}

TEST(DesktopDates, DatesThatAreNoneDoNoHarm) {
    for (const double seconds : {kNoNumber, kInfinity, -kInfinity, 1e300, -1e300, 1e15, -1e15,
                                 1.8e14, -1.8e14, 1e10, -1e10, -0.0}) {
        for (const char* zone : {"UTC", "Pacific/Kiritimati", "America/New_York"}) {
            const long day = datesOf("en_US", zone).dayFromDate({seconds});
            EXPECT_GE(day, 1) << seconds;
            EXPECT_LE(day, 31) << seconds;
            const std::string name = datesOf("en_US", zone).stringFromDate({seconds}, "EEEE");
            EXPECT_TRUE(name.ends_with("day")) << seconds << ' ' << name;
        }
    }
    EXPECT_EQ(datesOf("en_US").dayFromDate({kNoNumber}), 1);
    EXPECT_EQ(weekday("en_US", {kNoNumber}), "Monday");  // 2001-01-01
    EXPECT_EQ(datesOf("en_US").stringFromDate({kInfinity}, "y"),
              datesOf("en_US").stringFromDate({1e30}, "y"));
}

TEST(DesktopDates, FormatsAreThoseOfTheStandard) {
    const Date date = at(2020, 2, 9, 15.5);
    DesktopDates dates = datesOf("en_US");
    EXPECT_EQ(dates.stringFromDate(date, "EEE d MMM yyyy, HH:mm hh dd"),
              "Sun 9 Feb 2020, 15:30 03 09");
    EXPECT_EQ(dates.stringFromDate(date, "'day' d"), "day 9");
    EXPECT_EQ(dates.stringFromDate(date, ""), "");
    // No format, and formats that somebody wants to see break.
    EXPECT_EQ(dates.stringFromDate(date, "'open"), "open");
    EXPECT_EQ(dates.stringFromDate(date, "\xFF"), "\uFFFD");
    EXPECT_LT(dates.stringFromDate(date, std::string(200000, 'E')).size(), 1000U);
    EXPECT_NE(dates.stringFromDate(date, "%s%n"), "");
}

}  // namespace velmoranth::desktop::dates_test
