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

inline const Lines kDateLabel{"-[UILabel initWithFrame:] (3, 4.5) 2×30",
                              "+[UIFont fontWithName:size:] \"Helvetica\" 21.5",
                              "-[UILabel setFont:] date label Helvetica 21.5",
                              "-[UILabel setTextAlignment:] date label 1",
                              "+[NSDate date]",
                              "-[NSCalendar components:fromDate:] 602588460 s",
                              "-[UILabel setText:] date label \"5\"",
                              "-[UILabel setTextColor:] date label #0A141E",
                              "-[UIView setBackgroundColor:] date label #00000000",
                              "-[UILabel setShadowColor:] date label #010203",
                              "-[UILabel setShadowOffset:] date label 1.25×-2",
                              "-[UIView insertSubview:atIndex:] container date label 2"};
inline const Lines kDayLabel{"-[UILabel initWithFrame:] (-5, 6) 2×12",
                             "+[UIFont fontWithName:size:] \"Unknown\" 8",
                             "-[UILabel setFont:] weekday label nil",
                             "-[UILabel setTextAlignment:] weekday label 1",
                             "+[NSDate date]",
                             "-[NSDateFormatter stringFromDate:] 602588460 s \"EEEE\"",
                             "-[UILabel setText:] weekday label \"Wednesday\"",
                             "-[UILabel setTextColor:] weekday label #64C8FF",
                             "-[UILabel setShadowColor:] weekday label #040506",
                             "-[UILabel setShadowOffset:] weekday label -3×0.5",
                             "-[UIView insertSubview:atIndex:] container weekday label 1"};
// What is asked for labels of which nothing is known.
inline const Lines kPlainDateLabel{"-[UILabel initWithFrame:] (0, 0) 2×30",
                                   "+[UIFont fontWithName:size:] nil 0",
                                   "-[UILabel setFont:] date label nil",
                                   "-[UILabel setTextAlignment:] date label 1",
                                   "+[NSDate date]",
                                   "-[NSCalendar components:fromDate:] 602588460 s",
                                   "-[UILabel setText:] date label \"5\"",
                                   "-[UIView setBackgroundColor:] date label #00000000",
                                   "-[UILabel setShadowOffset:] date label 0×0",
                                   "-[UIView insertSubview:atIndex:] container date label 2"};
inline const Lines kPlainDayLabel{"-[UILabel initWithFrame:] (0, 0) 2×12",
                                  "+[UIFont fontWithName:size:] nil 0",
                                  "-[UILabel setFont:] weekday label nil",
                                  "-[UILabel setTextAlignment:] weekday label 1",
                                  "+[NSDate date]",
                                  "-[NSDateFormatter stringFromDate:] 602588460 s \"EEEE\"",
                                  "-[UILabel setText:] weekday label \"Wednesday\"",
                                  "-[UILabel setTextColor:] weekday label #808080",
                                  "-[UILabel setShadowOffset:] weekday label 0×0",
                                  "-[UIView insertSubview:atIndex:] container weekday label 1"};
inline const Lines kViews{
    "-[UIView initWithFrame:] (0, 0) 2×3", "-[UIView setBackgroundColor:] container #00000000",
    "-[UIImageView initWithFrame:] (0, 0) 2×3", "-[UIView setBackgroundColor:] picture #00000000"};
inline const Lines kRendering{
    "UIGraphicsBeginImageContextWithOptions 2×3 NO 0", "UIGraphicsGetCurrentContext",
    "-[CALayer renderInContext:] container __NSCFType", "UIGraphicsGetImageFromCurrentImageContext",
    "UIGraphicsEndImageContext"};

[[nodiscard]] inline Lines backgroundLines(LookupLogging logging = LookupLogging::off) {
    return joined({searchLines(kCalendar, logging, LookupResult::found),
                   {"-[UIImageView setImage:] picture 6×6 @1x",
                    "-[UIView insertSubview:atIndex:] container picture 0"}});
}

[[nodiscard]] inline Lines noBackgroundLines(LookupLogging logging = LookupLogging::off) {
    return joined(
        {searchLines(kCalendar, logging),
         searchLines(kCalendar, logging),
         {"-[UIView setBackgroundColor:] container #FFFFFF", "-[UIImageView setImage:] picture nil",
          "-[UIView insertSubview:atIndex:] container picture 0"}});
}

class CalendarIcon : public DrawnIcons {
  protected:
    using DrawnIcons::DrawnIcons;

    // What finding and reading the theme's Info.plist writes.
    static Lines themePlistLines(const std::string& loaded) {
        return {kReadPreferences, std::string("-[NSFileManager fileExistsAtPath:] ") + kInfoPlist,
                std::string("log ThemePlistDict: ") + kInfoPlist,
                std::string("+[NSDictionary dictionaryWithContentsOfFile:] ") + kInfoPlist,
                "log ThemePlistDict: " + loaded};
    }

    // What reading the user's file writes when no theme has a property list.
    static Lines userPlistLines(const std::string& loaded) {
        return {kReadPreferences,
                std::string("-[NSFileManager fileExistsAtPath:] ") + kInfoPlist,
                "log ThemePlistDict: (null)",
                "log ThemePlistDict NOTFound Grab Stock: (null)",
                std::string("+[NSDictionary dictionaryWithContentsOfFile:] ") + kUserFile,
                "log ThemePlistDict: " + loaded};
    }

    static std::string loaded(const platform::Dictionary& values) {
        return platform::description(values);
    }

    // The steps that concern one of the labels.
    Lines stepsOf(const std::string& label) const {
        Lines lines;
        for (const std::string& line : device.journal.lines()) {
            if (line.find(" " + label + " ") != std::string::npos &&
                !line.starts_with("-[UIView insert")) {
                lines.push_back(line);
            }
        }
        return lines;
    }
};

}  // namespace velmoranth::tests
