#include "simulator/screens/weather_screen.h"

#include "desktop/imaging/bitmap_image.h"
#include "platform/platform.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/screens/screen_builder.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/status_bar.h"
#include "simulator/toolkit/time_of_day.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using desktop::TextAlignment;
using desktop::TextStyle;
using platform::Color;
using platform::ImageRef;
using platform::NullableString;
using platform::Rect;

constexpr std::array kWeatherClasses{ClassRow{"WeatherImageLoader", "NSObject", Systems::only13}};

// Points: estimates of the platform's screen.
constexpr double kSignSide = 30;
constexpr double kHourWidth = 60;
constexpr double kHoursHeight = 106;
constexpr double kLeastDayHeight = 34;
constexpr double kMostDayHeight = 48;
constexpr double kWeatherMargin = 16;
constexpr double kWidestList = 560;
constexpr Color kWhite{1, 1, 1, 1};
constexpr Color kFaint{1, 1, 1, 0.6};
constexpr Color kLine{1, 1, 1, 0.3};
constexpr Color kSkyTop{0.19, 0.45, 0.75, 1};
constexpr Color kSkyBottom{0.49, 0.71, 0.89, 1};
constexpr double kSecondsOfDay = 86400;

struct Hour {
    std::string_view condition;
    int temperature;
};

// From the hour that it is now.
constexpr std::array kHours{Hour{"partly-cloudy-day", 21},
                            Hour{"mostly-sunny", 22},
                            Hour{"clear-day", 23},
                            Hour{"cloudy", 23},
                            Hour{"showers", 22},
                            Hour{"rain", 21},
                            Hour{"thunderstorm", 20},
                            Hour{"wind", 19},
                            Hour{"partly-cloudy-night", 18},
                            Hour{"clear-night", 17},
                            Hour{"clear-night", 16},
                            Hour{"fog", 15},
                            Hour{"fog", 15},
                            Hour{"cloudy", 14},
                            Hour{"cloudy", 14},
                            Hour{"showers", 14},
                            Hour{"rain", 14},
                            Hour{"clear-night", 13}};

struct Day {
    std::string_view condition;
    int highest;
    int lowest;
};

// From tomorrow on.
constexpr std::array kDays{Day{"mostly-sunny", 24, 14}, Day{"partly-cloudy-day", 22, 13},
                           Day{"showers", 19, 12},      Day{"thunderstorm", 18, 11},
                           Day{"rain", 16, 10},         Day{"wind", 15, 8},
                           Day{"fog", 12, 5},           Day{"snow", 2, -3},
                           Day{"cloudy", 9, 1},         Day{"clear-day", 14, 4}};

// One column of pixels, from top to bottom.
ImageRef makeSky(const ScreenContext& context) {
    const auto height =
        static_cast<std::size_t>(std::lround(context.bounds().size.height * context.scale()));
    auto pixels = std::make_shared<platform::Data>();
    for (std::size_t y = 0; y < height; ++y) {
        const double share = static_cast<double>(y) / static_cast<double>(height);
        const auto mixed = [share](double top, double bottom) {
            return static_cast<std::uint8_t>(std::lround(255 * (top + (bottom - top) * share)));
        };
        for (const std::uint8_t component :
             {mixed(kSkyTop.blue, kSkyBottom.blue), mixed(kSkyTop.green, kSkyBottom.green),
              mixed(kSkyTop.red, kSkyBottom.red), std::uint8_t{255}}) {
            pixels->push_back(component);
        }
    }
    return context.images.makeImage(
        desktop::DesktopBitmapImage::createPremultiplied(std::move(pixels), {1, height}, 4, true),
        context.scale());
}

std::string degrees(int temperature) {
    return std::to_string(temperature) + "\u00B0";
}

class WeatherBuilder : ScreenBuilder {
  public:
    using ScreenBuilder::ScreenBuilder;

    void build() {
        const auto sky = std::make_shared<desktop::DesktopImageView>(context_.bounds());
        sky->setImage(makeSky(context_));
        window_.addSubview(sky);
        double y = addNow(statusBarHeight(context_.device));
        y = addToday(y);
        y = addHours(y);
        addDays(y, addBar());
        window_.addSubview(makeStatusBar(context_.device));
    }

  private:
    // The column of the texts: the whole of a phone's width.
    [[nodiscard]] double left() const { return (size_.width - columnWidth()) / 2 + kWeatherMargin; }

    [[nodiscard]] double right() const { return size_.width - left(); }

    [[nodiscard]] double columnWidth() const { return std::min(size_.width, kWidestList); }

    void addText(std::string_view text, const TextStyle& style, const Rect& frame) const {
        ScreenBuilder::addText(window_, text, style, frame);
    }

    void addLine(double y) const {
        window_.addSubview(makeBox({{0, y}, {size_.width, hairline()}}, kLine));
    }

    [[nodiscard]] ImageRef sign(const std::string& condition) const {
        if (!isAtLeast13()) {
            return ask_.imageNamedInBundleCompatibleWithTraitCollection(condition, kWeatherBundle,
                                                                        traits_);
        }
        return context_.runtime.sendToClass<ImageRef, NullableString, long long>(
            "WeatherImageLoader", "conditionImageNamed:style:", condition,
            static_cast<long long>(WeatherStyle::onColor));
    }

    void addSign(platform::View& to, std::string_view condition, const Rect& slot) const {
        images_.add(
            to, slot, ImagePlacement::fit,
            [builder = *this, name = std::string(condition)] { return builder.sign(name); });
    }

    // Each gives how far down it reaches.

    double addNow(double top) const {
        double y = top + (size_.height > 700 ? 20 : 8);
        addText("Seeheim", centered(34, kWhite), {{0, y}, {size_.width, 42}});
        y += 42;
        const std::string condition = "Partly Cloudy";
        const TextStyle text = textStyle(17, kWhite);
        const double width = desktop::measureText(condition, text).width;
        const double x = snapToPixels((size_.width - kSignSide - 6 - width) / 2, context_.scale());
        addSign(window_, kHours[0].condition, {{x, y}, {kSignSide, kSignSide}});
        addText(condition, text, {{x + kSignSide + 6, y}, {width + 2, kSignSide}});
        y += kSignSide;
        // The sign of the degree hangs beside the centred number.
        const std::string number = std::to_string(kHours[0].temperature);
        const TextStyle thin = textStyle(96, kWhite, TextAlignment::left, FontWeight::extraLight);
        const double numberWidth = desktop::measureText(number, thin).width;
        addText(degrees(kHours[0].temperature), thin,
                {{(size_.width - numberWidth) / 2, y}, {numberWidth + 80, 108}});
        return y + 108;
    }

    double addToday(double y) const {
        platform::Dates& dates = context_.dates;
        const std::string weekday = dates.stringFromDate(dates.date(), "EEEE");
        const TextStyle name = textStyle(18, kWhite, TextAlignment::left, FontWeight::medium);
        addText(weekday, name, {{left(), y}, {200, 26}});
        addText("TODAY", textStyle(13, kWhite),
                {{left() + desktop::measureText(weekday, name).width + 8, y + 1}, {80, 26}});
        addTemperatures(24, 15, y, 26);
        return y + 34;
    }

    void addTemperatures(int highest, int lowest, double y, double height) const {
        addText(std::to_string(highest), rightAligned(18, kWhite),
                {{right() - 90, y}, {40, height}});
        addText(std::to_string(lowest), rightAligned(18, kFaint),
                {{right() - 40, y}, {40, height}});
    }

    [[nodiscard]] std::string hourText(std::size_t later) const {
        if (later == 0) {
            return "Now";
        }
        const int now = timeOfDay(context_.device.date).hour;
        const int hour = (now + static_cast<int>(later)) % 24;
        if (!context_.device.locale.starts_with("en_US")) {
            return (hour < 10 ? "0" : "") + std::to_string(hour);
        }
        return std::to_string(hour % 12 == 0 ? 12 : hour % 12) + (hour < 12 ? "AM" : "PM");
    }

    double addHours(double top) const {
        const auto strip =
            addView(window_, "UIScrollView", {{0, top}, {size_.width, kHoursHeight}});
        strip->setClipsToBounds(true);
        // A pad's strip begins where the list does.
        double x = left() - kWeatherMargin + 4;
        for (std::size_t i = 0; i < kHours.size() && x < size_.width; ++i, x += kHourWidth) {
            const FontWeight weight = i == 0 ? FontWeight::semibold : FontWeight::regular;
            ScreenBuilder::addText(*strip, hourText(i), centered(15, kWhite, weight),
                                   {{x, 10}, {kHourWidth, 20}});
            addSign(*strip, kHours.at(i).condition,
                    {{x + (kHourWidth - kSignSide) / 2, 37}, {kSignSide, kSignSide}});
            ScreenBuilder::addText(*strip, degrees(kHours.at(i).temperature),
                                   centered(17, kWhite, weight), {{x + 3, 74}, {kHourWidth, 22}});
        }
        addLine(top);
        addLine(top + kHoursHeight);
        return top + kHoursHeight;
    }

    void addDays(double top, double bottom) const {
        platform::Dates& dates = context_.dates;
        const platform::Date now = dates.date();
        const double height = std::clamp((bottom - top - 12) / static_cast<double>(kDays.size()),
                                         kLeastDayHeight, kMostDayHeight);
        double y = top + 6;
        for (std::size_t i = 0; i < kDays.size() && y + height <= bottom; ++i, y += height) {
            const Day& day = kDays.at(i);
            const platform::Date date{now.secondsSinceReferenceDate +
                                      kSecondsOfDay * static_cast<double>(i + 1)};
            addText(dates.stringFromDate(date, "EEEE"), textStyle(18, kWhite),
                    {{left(), y}, {columnWidth() / 2 - kWeatherMargin - kSignSide, height}});
            addSign(window_, day.condition,
                    {{snapToPixels(size_.width / 2 - kSignSide / 2, context_.scale()),
                      y + (height - kSignSide) / 2},
                     {kSignSide, kSignSide}});
            addTemperatures(day.highest, day.lowest, y, height);
        }
    }

    // The bar at the bottom; where it begins.
    [[nodiscard]] double addBar() const {
        const double top = size_.height - bottomInset(context_.device) - kBarHeight;
        addLine(top);
        constexpr double kDot = 7;
        const double y = top + kBarHeight / 2;
        for (int i = 0; i < 3; ++i) {
            const double x = size_.width / 2 + (i - 1) * 16;
            window_.addSubview(makeBox({{x - kDot / 2, y - kDot / 2}, {kDot, kDot}},
                                       i == 0 ? kWhite : kLine, kDot / 2));
            // The list of places.
            window_.addSubview(makeBox({{right() - 20, y - 7 + 6 * i}, {20, 1.5}}, kWhite, 0.75));
        }
        return top;
    }
};

}  // namespace

void registerWeatherClasses(const ScreenContext& context) {
    addClasses(kWeatherClasses, context.device.system, context.runtime);
    if (context.device.system.major < 13) {
        return;
    }
    ClassMethods(context.runtime, "WeatherImageLoader")
        .addToClass("conditionImageNamed:style:",
                    [&context](const NullableString& name, long long style) -> ImageRef {
                        return name ? context.picture(drawWeatherCondition(*name, kSignSide,
                                                                           context.scale(), style))
                                    : nullptr;
                    });
}

WeatherScreen::WeatherScreen(const ScreenContext& context) : AppScreen(context) {
    WeatherBuilder(context, window(), images()).build();
}

}  // namespace velmoranth::simulator
