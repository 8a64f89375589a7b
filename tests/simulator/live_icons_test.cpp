#include "simulator/home_screen/live_icons.h"

#include "desktop/imaging/bitmap_image.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/home_screen/platform_classes.h"
#include "simulator/toolkit/base_classes.h"
#include "simulator/toolkit/toolkit_classes.h"

#include "bare_process.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace velmoranth::simulator::live_icons_test {
namespace {

using platform::BitmapImageRef;
using platform::ImageRef;
using platform::NullableString;
using platform::SBIconImageInfo;

constexpr double kScale = 3;
constexpr std::size_t kSide = 180;  // pixels
constexpr double kDay = 86400;
// 2019-12-23 12:00 UTC, a Monday.
constexpr double kMonday = 598795200;
constexpr App kCalendar{"com.apple.mobilecal", "Calendar", "SBCalendarApplicationIcon"};
constexpr App kClock{"com.apple.mobiletimer", "Clock", "SBClockApplicationIcon"};
constexpr const char* kFaceSelector =
    "generateProcessedMappedIconImageWithName:imageInfo:includingMask:";

struct Ink {
    std::size_t left = kSide;
    std::size_t right = 0;
    std::size_t top = kSide;
    std::size_t bottom = 0;
    std::size_t count = 0;

    void add(std::size_t x, std::size_t y) {
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
        ++count;
    }

    [[nodiscard]] double width() const {
        return count == 0 ? 0 : static_cast<double>(right - left + 1) / kScale;
    }

    [[nodiscard]] double middle() const {
        return static_cast<double>(left + right + 1) / 2 / kScale;
    }
};

std::vector<std::uint8_t> pixelsOf(const ImageRef& image) {
    const auto pixels = desktop::DesktopBitmapImage::of(image->bitmap())->pixels();
    std::vector<std::uint8_t> copy;
    for (std::size_t y = 0; y < pixels.height; ++y) {
        copy.insert(copy.end(), pixels.row(y), pixels.row(y) + pixels.width * 4);
    }
    return copy;
}

// Opaque pixels of that make.
template <class Predicate>
Ink inkOf(const ImageRef& image, const Predicate& isInk) {
    const std::vector<std::uint8_t> pixels = pixelsOf(image);
    Ink ink;
    for (std::size_t i = 0; i < kSide * kSide; ++i) {
        const std::uint8_t* pixel = pixels.data() + i * 4;
        if (pixel[3] == 255 && isInk(pixel[2], pixel[1], pixel[0])) {
            ink.add(i % kSide, i / kSide);
        }
    }
    return ink;
}

Ink redInk(const ImageRef& image) {
    return inkOf(image, [](int red, int green, int) { return red - green > 80; });
}

Ink blackInk(const ImageRef& image) {
    return inkOf(image, [](int red, int green, int) { return red < 120 && red - green < 80; });
}

// The home screen's classes of one system.
struct Home : BareProcess {
    explicit Home(const SystemVersion& system, const std::string& locale = "en_US",
                  std::optional<platform::Date> date = platform::Date{kMonday})
        : BareProcess({.system = system, .screen = {}, .locale = locale, .date = date}) {
        registerBaseClasses(context);
        registerToolkitClasses(context);
        registerPlatformClasses(context);
        calendarView = makeIconImageView(calendar, kCalendar, system);
        clockView = makeIconImageView(clock, kClock, system);
        clockView->setFrame({{0, 0}, {60, 60}});
    }

    ImageRef contentsOf(const std::shared_ptr<IconImageView>& view) {
        return runtime.send<ImageRef>(*view, "contentsImage");
    }

    platform::SBIconRef calendar = makeApplicationIcon(kCalendar);
    platform::SBIconRef clock = makeApplicationIcon(kClock);
    std::shared_ptr<IconImageView> calendarView;
    std::shared_ptr<IconImageView> clockView;
};

TEST(LiveIcons, CalendarShowsWeekdayAndDayInTheirPlacesOnBothSystems) {
    for (const SystemVersion& system : {kSystem12, kSystem13}) {
        std::set<std::vector<std::uint8_t>> pictures;
        // Ten days in a row, over the end of a year.
        for (int day = 0; day < 10; ++day) {
            Home home(system, "en_US", platform::Date{kMonday + day * kDay});
            const ImageRef image = home.contentsOf(home.calendarView);
            ASSERT_NE(image, nullptr);
            EXPECT_EQ(image->size(), (platform::Size{60, 60}));
            const Ink weekday = redInk(image);
            EXPECT_GT(weekday.count, 200U) << day;
            EXPECT_GE(weekday.top, 18U) << day;     // 6 points
            EXPECT_LE(weekday.bottom, 54U) << day;  // with what hangs below the baseline
            EXPECT_NEAR(weekday.middle(), 30, 1) << day;
            EXPECT_LE(weekday.width(), 52.5) << day;
            const Ink number = blackInk(image);
            EXPECT_GT(number.count, 200U) << day;
            EXPECT_NEAR(static_cast<double>(number.top), 61.5, 3) << day;
            EXPECT_NEAR(static_cast<double>(number.bottom), 147, 3) << day;
            EXPECT_NEAR(number.middle(), 30, 2) << day;
            pictures.insert(pixelsOf(image));
            EXPECT_TRUE(home.warnings.empty()) << home.warnings.front();
        }
        EXPECT_EQ(pictures.size(), 10U);
    }
}

TEST(LiveIcons, LongWeekdaysAreWrittenSmaller) {
    struct Case {
        const char* locale;
        double days;
    };

    // Mittwoch is short enough; the others are not.
    Home fits(kSystem13, "en_US", platform::Date{kMonday});
    const double fullHeight =
        static_cast<double>(redInk(fits.contentsOf(fits.calendarView)).bottom -
                            redInk(fits.contentsOf(fits.calendarView)).top);
    for (const Case& on : {Case{"en_US", 2}, Case{"de_DE", 3}, Case{"pt_PT", 0}}) {
        Home home(kSystem13, on.locale, platform::Date{kMonday + on.days * kDay});
        const Ink weekday = redInk(home.contentsOf(home.calendarView));
        EXPECT_GE(weekday.width(), 48) << on.locale;
        EXPECT_LE(weekday.width(), 52.5) << on.locale;
        EXPECT_LT(static_cast<double>(weekday.bottom - weekday.top), fullHeight) << on.locale;
        EXPECT_NEAR(weekday.middle(), 30, 1) << on.locale;
    }
}

TEST(LiveIcons, WeekdayIsInTheLocalesWords) {
    const auto draw = [](const char* locale) {
        Home home(kSystem13, locale);
        return pixelsOf(home.contentsOf(home.calendarView));
    };
    EXPECT_EQ(draw("en_US"), draw("en_GB"));
    EXPECT_NE(draw("en_US"), draw("de_DE"));
    EXPECT_NE(draw("de_DE"), draw("fr_FR"));
}

TEST(LiveIcons, ThirteensCacheAsksEveryIconForItsImage) {
    Home home(kSystem13);
    std::vector<std::string> asked;
    platform::Implementation original;
    home.runtime.hookMessageEx(
        home.runtime.getClass("SBIcon"), "generateIconImageWithInfo:",
        platform::makeImplementation(std::function<ImageRef(platform::SBIcon&, SBIconImageInfo)>(
            [&](platform::SBIcon& icon, const SBIconImageInfo& info) -> ImageRef {
                EXPECT_EQ(info, (SBIconImageInfo{{60, 60}, 3, 13.5}));
                asked.push_back(*icon.nodeIdentifier());
                return nullptr;
            })),
        &original);
    const platform::SBIconRef maps =
        makeApplicationIcon(App{"com.apple.Maps", "Maps", "SBApplicationIcon"});
    for (const platform::SBIconRef& icon : {home.calendar, maps}) {
        (void)home.runtime.send<ImageRef, platform::SBIconRef>(*home.context.iconImageCache,
                                                               "imageForIcon:", icon);
    }
    // The calendar has an implementation of its own.
    EXPECT_EQ(asked, std::vector<std::string>{"com.apple.Maps"});
    EXPECT_EQ(home.stock.requests("com.apple.mobilecal"), 1);
}

TEST(LiveIcons, TwelveWritesTheDayOnWhatTheToolkitGives) {
    Home home(kSystem12);
    const ImageRef green =
        home.images.makeImage(desktop::DesktopBitmapImage::createPremultiplied(
                                  std::make_shared<platform::Data>([] {
                                      platform::Data pixels;
                                      for (std::size_t i = 0; i < kSide * kSide; ++i) {
                                          pixels.insert(pixels.end(), {0, 255, 0, 255});
                                      }
                                      return pixels;
                                  }()),
                                  {kSide, kSide}, kSide * 4, true),
                              kScale);
    platform::Implementation original;
    home.runtime.hookMessageEx(
        home.runtime.getMetaclass(home.runtime.getClass("UIImage")),
        "_applicationIconImageForBundleIdentifier:format:scale:",
        platform::makeImplementation(
            std::function<ImageRef(platform::Class&, NullableString, int, double)>(
                [&](platform::Class&, const NullableString&, int, double) { return green; })),
        &original);
    const ImageRef image = home.contentsOf(home.calendarView);
    EXPECT_GT(
        inkOf(image, [](int red, int green_, int) { return red == 0 && green_ == 255; }).count,
        kSide * kSide / 2);
    EXPECT_GT(redInk(image).count, 200U);
    EXPECT_GT(blackInk(image).count, 200U);
}

TEST(LiveIcons, CalendarOfOtherFormatsIsThePlainPicture) {
    Home home(kSystem12);
    const auto ask = [&](int format) {
        return home.runtime.sendToClass<ImageRef, NullableString, int, double>(
            "UIImage",
            "_applicationIconImageForBundleIdentifier:format:scale:", "com.apple.mobilecal", format,
            kScale);
    };
    EXPECT_EQ(ask(0), home.stock.icon("com.apple.mobilecal", 29, kScale, IconMasking::masked));
    EXPECT_EQ(ask(kHomeScreenIconFormat), home.stock.calendarBase(60, kScale));
}

TEST(LiveIcons, ClockIsALiveViewFromThirteenOn) {
    Home on12(kSystem12);
    EXPECT_EQ(on12.clockView->className(), "SBIconImageView");
    EXPECT_EQ(on12.runtime.getClass("SBHClockApplicationIconImageView"), nullptr);
    EXPECT_FALSE(on12.runtime.methodOf(on12.runtime.getClass("SBCalendarApplicationIcon"),
                                       "generateIconImageWithInfo:"));
    Home on13(kSystem13);
    EXPECT_EQ(on13.clockView->className(), "SBHClockApplicationIconImageView");
    const platform::ClassRef cls = on13.runtime.getClass(on13.clockView->className());
    EXPECT_TRUE(on13.runtime.isKindOf(cls, "SBLiveIconImageView"));
    EXPECT_TRUE(on13.runtime.isKindOf(cls, "SBIconImageView"));
    EXPECT_TRUE(on13.runtime.methodOf(on13.runtime.getMetaclass(cls), kFaceSelector));
    EXPECT_EQ(on13.calendarView->className(), "SBIconImageView");
}

TEST(LiveIcons, FaceIsAskedForByNameAndMaskedWhenWanted) {
    Home home(kSystem13);
    const auto ask = [&](const NullableString& name, bool includingMask) {
        return home.runtime.sendToClass<ImageRef, NullableString, SBIconImageInfo, bool>(
            "SBHClockApplicationIconImageView", kFaceSelector, name, iconImageInfo(60, kScale),
            includingMask);
    };
    const ImageRef square = ask("ClockIconBackgroundSquare", false);
    const ImageRef masked = ask("ClockIconBackgroundSquare", true);
    ASSERT_TRUE(square != nullptr && masked != nullptr);
    EXPECT_EQ(square->size(), (platform::Size{60, 60}));
    EXPECT_EQ(pixelsOf(square)[3], 255);
    EXPECT_EQ(pixelsOf(masked)[3], 0);
    const std::size_t middle = (kSide * kSide / 2 + kSide / 2) * 4;
    EXPECT_EQ(pixelsOf(square)[middle + 3], 255);
    EXPECT_EQ(pixelsOf(square)[middle], pixelsOf(masked)[middle]);
    EXPECT_EQ(ask("NoSuchFace", false), nullptr);
    EXPECT_EQ(ask(std::nullopt, false), nullptr);
    const std::vector<NamedImageRequest> requests = home.toolkit.requests();
    ASSERT_FALSE(requests.empty());
    EXPECT_EQ(requests[0],
              (NamedImageRequest{"ClockIconBackgroundSquare", "com.apple.SpringBoardHome", 2}));
}

TEST(LiveIcons, HandsLieOverTheFaceAndFollowTheTime) {
    std::set<std::vector<std::uint8_t>> hands;
    for (const double later : {0.0, 1.0, 60.0, 3600.0}) {
        Home home(kSystem13, "en_US", platform::Date{kMonday + later});
        home.runtime.send<void>(*home.clockView, "layoutSubviews");
        const auto view = std::dynamic_pointer_cast<ClockIconImageView>(home.clockView);
        ASSERT_NE(view, nullptr);
        ASSERT_NE(view->contents(), nullptr);
        ASSERT_NE(view->hands()->image(), nullptr);
        EXPECT_EQ(view->hands()->frame(), (platform::Rect{{0, 0}, {60, 60}}));
        EXPECT_EQ(pixelsOf(view->hands()->image())[3], 0);  // nothing beside the hands
        hands.insert(pixelsOf(view->hands()->image()));
        EXPECT_TRUE(home.warnings.empty()) << home.warnings.front();
    }
    EXPECT_EQ(hands.size(), 4U);
}

TEST(LiveIcons, FaceAndHandsTogetherAreTheWholeClock) {
    const FurniturePicture face = drawClockBackground(60, 3);
    const FurniturePicture hands = drawClockHands(60, 3, 10, 9, 31);
    const FurniturePicture whole = drawClockFace(60, 3, 10, 9, 31);
    ASSERT_EQ(hands.bgra.size(), whole.bgra.size());
    int greatest = 0;
    for (std::size_t i = 0; i < whole.bgra.size(); i += 4) {
        for (std::size_t c = 0; c < 3; ++c) {
            const int composed =
                hands.bgra[i + c] + (face.bgra[i + c] * (255 - hands.bgra[i + 3]) + 127) / 255;
            greatest = std::max(greatest, std::abs(composed - whole.bgra[i + c]));
        }
    }
    EXPECT_LE(greatest, 2);
    EXPECT_TRUE(drawClockHands(-1, 3, 1, 1, 1).bgra.empty());
}

// A picture of it: its hands stand where the status bar says.
TEST(LiveIcons, ClockThatIsAnIconLikeOthersShowsTheTimeOfTheDevice) {
    for (const double later : {0.0, 61.0, 3600.0}) {
        const platform::Date date{kMonday + later};
        const TimeOfDay time = timeOfDay(date);
        const FurniturePicture clock =
            drawClockFace(60, kScale, time.hour, time.minute, time.second);
        for (const SystemVersion& system : {kSystem12, kSystem13}) {
            Home home(system, "en_US", date);
            EXPECT_EQ(pixelsOf(home.stock.icon("com.apple.mobiletimer", 60, kScale,
                                               IconMasking::unmasked)),
                      clock.bgra)
                << later;
        }
        Home on12(kSystem12, "en_US", date);
        const ImageRef shown = on12.runtime.send<ImageRef>(*on12.clockView, "contentsImage");
        EXPECT_EQ(shown, on12.stock.icon("com.apple.mobiletimer", 60, kScale, IconMasking::masked));
    }
}

TEST(LiveIcons, ClockWithoutADateStandsStill) {
    EXPECT_EQ(timeOfDay(std::nullopt), (TimeOfDay{9, 41, 0}));
    EXPECT_EQ(timeOfDay(platform::Date{std::numeric_limits<double>::quiet_NaN()}),
              (TimeOfDay{9, 41, 0}));
    const TimeOfDay time = timeOfDay(platform::Date{kMonday + 61});
    EXPECT_EQ(time.minute % 15, 1);  // of every time zone
    EXPECT_EQ(time.second, 1);
}

TEST(LiveIcons, CalendarWithoutABaseHasNoImage) {
    Home home(kSystem13);
    EXPECT_EQ(drawCalendarIcon(nullptr, kScale, home.dates, home.images), nullptr);
    const ImageRef nothing = home.runtime.send<ImageRef, SBIconImageInfo>(
        *home.calendar, "generateIconImageWithInfo:", iconImageInfo(-1, kScale));
    EXPECT_EQ(nothing, nullptr);
}

}  // namespace
}  // namespace velmoranth::simulator::live_icons_test
