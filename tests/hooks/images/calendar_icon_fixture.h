// For the tests of the calendar's icon: the lines that its steps write, in order, for the labels of
// two sections of a property list and for labels of which nothing is known.
#pragma once

#include "drawn_icons_fixture.h"

#include <limits>
#include <string>

namespace velmoranth::tests {

inline constexpr const char* kUserFile = "/User/Library/VelMoranth/UserSettings/Cal.plist";
inline constexpr const char* kInfoPlist = "/Library/Themes/A/Info.plist";
inline constexpr const char* kCalendar = "com.apple.mobilecal";
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

[[nodiscard]] inline platform::Dictionary dateText() {
    return {{"FontSize", 21.5},        {"FontName", "Helvetica"}, {"ShadowBlurRadius", 9},
            {"ShadowColor", "010203"}, {"ShadowXoffset", 1.25},   {"ShadowYoffset", -2},
            {"TextColor", "0x0A141E"}, {"TextXoffset", 3},        {"TextYoffset", 4.5}};
}

[[nodiscard]] inline platform::Dictionary dayText() {
    return {{"FontSize", 8},           {"FontName", "Unknown"}, {"ShadowBlurRadius", 7},
            {"ShadowColor", "040506"}, {"ShadowXoffset", -3},   {"ShadowYoffset", 0.5},
            {"TextColor", "64C8FF"},   {"TextXoffset", -5},     {"TextYoffset", 6}};
}

inline const Lines kDateLabel{"labelWithFrame {3, 4.5, 2, 30}",
                              "font Helvetica 21.5",
                              "date label setFont Helvetica 21.5",
                              "date label setTextAlignment 1",
                              "date",
                              "day",
                              "date label setText 5",
                              "date label setTextColor 10 20 30 1",
                              "date label setBackgroundColor clear",
                              "date label setShadowColor 1 2 3 1",
                              "date label setShadowOffset {1.25, -2}",
                              "container insertSubview date label at 2"};
inline const Lines kDayLabel{"labelWithFrame {-5, 6, 2, 12}",
                             "font Unknown 8",
                             "weekday label setFont nil",
                             "weekday label setTextAlignment 1",
                             "date",
                             "stringFromDate EEEE",
                             "weekday label setText Wednesday",
                             "weekday label setTextColor 100 200 255 1",
                             "weekday label setShadowColor 4 5 6 1",
                             "weekday label setShadowOffset {-3, 0.5}",
                             "container insertSubview weekday label at 1"};
// What is asked for labels of which nothing is known.
inline const Lines kPlainDateLabel{"labelWithFrame {0, 0, 2, 30}",
                                   "font nil 0",
                                   "date label setFont nil",
                                   "date label setTextAlignment 1",
                                   "date",
                                   "day",
                                   "date label setText 5",
                                   "date label setBackgroundColor clear",
                                   "date label setShadowOffset {0, 0}",
                                   "container insertSubview date label at 2"};
inline const Lines kPlainDayLabel{"labelWithFrame {0, 0, 2, 12}",
                                  "font nil 0",
                                  "weekday label setFont nil",
                                  "weekday label setTextAlignment 1",
                                  "date",
                                  "stringFromDate EEEE",
                                  "weekday label setText Wednesday",
                                  "weekday label setTextColor gray",
                                  "weekday label setShadowOffset {0, 0}",
                                  "container insertSubview weekday label at 1"};
inline const Lines kViews{"viewWithFrame {0, 0, 2, 3}", "container setBackgroundColor clear",
                          "imageViewWithFrame {0, 0, 2, 3}", "picture setBackgroundColor clear"};
inline const Lines kRendering{"begin {2, 3} clear 0", "currentContext", "container render",
                              "snapshot", "end"};

[[nodiscard]] inline Lines backgroundLines(LookupLogging logging = LookupLogging::off) {
    return joined({searchLines(kCalendar, logging, LookupResult::found),
                   {"picture setImage", "container insertSubview picture at 0"}});
}

[[nodiscard]] inline Lines noBackgroundLines(LookupLogging logging = LookupLogging::off) {
    return joined({searchLines(kCalendar, logging),
                   searchLines(kCalendar, logging),
                   {"container setBackgroundColor white", "picture setImage nil",
                    "container insertSubview picture at 0"}});
}

class CalendarIcon : public DrawnIcons {
  protected:
    using DrawnIcons::DrawnIcons;

    // What finding and reading the theme's Info.plist writes.
    static Lines themePlistLines(const std::string& loaded) {
        return {kReadPreferences, std::string("fileExists ") + kInfoPlist,
                std::string("log: ThemePlistDict: ") + kInfoPlist,
                std::string("readPlist ") + kInfoPlist, "log: ThemePlistDict: " + loaded};
    }

    // What reading the user's file writes when no theme has a property list.
    static Lines userPlistLines(const std::string& loaded) {
        return {kReadPreferences,
                std::string("fileExists ") + kInfoPlist,
                "log: ThemePlistDict: (null)",
                "log: ThemePlistDict NOTFound Grab Stock: (null)",
                std::string("readPlist ") + kUserFile,
                "log: ThemePlistDict: " + loaded};
    }

    static std::string loaded(const platform::Dictionary& values) {
        return platform::description(values);
    }

    // The steps that concern one of the labels.
    Lines stepsOf(const std::string& label) const { return device.journal.linesWith(label + " "); }
};

}  // namespace velmoranth::tests
