#include "simulator/home_screen/live_icons.h"

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/compositing.h"
#include "desktop/imaging/graphics_context.h"
#include "simulator/artwork/artwork.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/home_screen/calendar_lines.h"
#include "simulator/toolkit/base_classes.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/time_of_day.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace velmoranth::simulator {
namespace {

using desktop::DesktopGraphicsContext;
using desktop::FontWeight;
using desktop::TextStyle;
using platform::ImageRef;
using platform::NullableString;
using platform::Rect;
using platform::SBIconImageInfo;
using platform::Size;

// Of an icon of 60 points; others have them in proportion. A real screenshot measured by pixel:
// capitals of the weekday from 7.5 to 15, digits of the day from 20.5 to 49. The colour is that of
// a public re-creation.
constexpr double kMeasuredSide = 60;
constexpr double kWeekdaySize = 10.5;
constexpr double kWeekdayBaseline = 15;
constexpr double kLineWidth = 52;
constexpr double kDaySize = 39.2;
constexpr double kDayBaseline = 49;
constexpr platform::Color kWeekdayColor{252.0 / 255, 64.0 / 255, 57.0 / 255, 1};
// Share of the type's size from the middle of a line's box down to the baseline: the system face's
// ascent 0.96875 and descent 0.2412 (tables of the font).
constexpr double kMiddleToBaseline = (0.96875 - 0.2412) / 2;

constexpr const char* kFaceSelector =
    "generateProcessedMappedIconImageWithName:imageInfo:includingMask:";

// Nil for a size that cannot be drawn.
std::shared_ptr<DesktopGraphicsContext> makeContext(Size size, double scale) {
    const auto pixels = [scale](double points) {
        return static_cast<std::size_t>(
            std::clamp(std::round(points * scale), 0.0, static_cast<double>(kMaximumIconPixels)));
    };
    return DesktopGraphicsContext::create(
        {.size = {pixels(size.width), pixels(size.height)}, .scale = scale});
}

CalendarLine lineOn(double baseline, double size, FontWeight weight, const platform::Color& color) {
    return {size, baseline - kMiddleToBaseline * size, weight, color};
}

// `unit` points are one of an icon of 60. A longer line is written smaller, on the same baseline.
void drawLine(DesktopGraphicsContext& context, const std::string& text, const CalendarLine& line,
              double unit) {
    TextStyle style{.weight = line.weight,
                    .size = line.size * unit,
                    .color = line.color,
                    .alignment = desktop::TextAlignment::center};
    const double needed = desktop::measureText(text, style).width;
    if (needed > kLineWidth * unit) {
        style.size *= kLineWidth * unit / needed;
    }
    const double baseline = line.middle + kMiddleToBaseline * line.size;
    const double middle = baseline * unit - kMiddleToBaseline * style.size;
    const double height = 2 * style.size;
    // Wider than the text is, so that a rounding does not cut it short.
    const Rect box{{0, middle - height / 2}, {kMeasuredSide * unit, height}};
    desktop::drawText(context.mutablePixels(), text, style, box, context.scale());
}

void applyIconShape(DesktopGraphicsContext& context) {
    const desktop::MutablePixels pixels = context.mutablePixels();
    const std::vector<std::uint8_t> coverage = iconShapeCoverage(static_cast<int>(pixels.width));
    if (coverage.size() != pixels.width * pixels.height) {
        return;  // not square
    }
    for (std::size_t y = 0; y < pixels.height; ++y) {
        desktop::multiplyRow(pixels.row(y), pixels.row(y), pixels.width,
                             coverage.data() + y * pixels.width);
    }
}

void addCalendarMethod(const ScreenContext& context) {
    ClassMethods icons(context.runtime, "SBCalendarApplicationIcon");
    if (context.device.system.major < 13) {
        icons.add("generateIconImage:",
                  [&context](platform::SBCalendarApplicationIcon& icon, int format) {
                      return drawCalendarIcon(askForAppIcon(context, icon.leafIdentifier(), format),
                                              context.scale(), context.dates, context.images);
                  });
        return;
    }
    icons.add("generateIconImageWithInfo:", [&context](platform::SBCalendarApplicationIcon&,
                                                       const SBIconImageInfo& info) {
        return drawCalendarIcon(context.stockImages.calendarBase(info.size.width, info.scale),
                                info.scale, context.dates, context.images);
    });
}

void addClockMethods(const ScreenContext& context) {
    ClassMethods(context.runtime, "SBHClockApplicationIconImageView")
        .addToClass(kFaceSelector,
                    [&context](const NullableString& name, const SBIconImageInfo& info,
                               bool includingMask) {
                        context.stockImages.noteRequest(std::string(kClockIdentifier));
                        return processedIconImage(
                            context.runtime.sendToClass<ImageRef, NullableString,
                                                        platform::BundleRef, platform::ObjectRef>(
                                "UIImage", "imageNamed:inBundle:compatibleWithTraitCollection:",
                                name, context.toolkit.bundle(kClockBundle), nullptr),
                            info, includingMask, context.images);
                    })
        .add(
            "contentsImage",
            [&context](platform::SBIconImageView&) {
                return context.runtime.sendToClass<ImageRef, NullableString, SBIconImageInfo, bool>(
                    "SBHClockApplicationIconImageView", kFaceSelector, kClockFace,
                    iconImageInfo(context.metrics.iconSide, context.scale()), true);
            })
        .add("layoutSubviews", [&context](ClockIconImageView& view) {
            view.setContents(context.runtime.send<ImageRef>(view, "contentsImage"));
            const TimeOfDay time = timeOfDay(context.device.date);
            view.setHands(context.picture(drawClockHands(context.metrics.iconSide, context.scale(),
                                                         time.hour, time.minute, time.second)));
        });
}

}  // namespace

CalendarLine calendarWeekday() {
    return lineOn(kWeekdayBaseline, kWeekdaySize, FontWeight::regular, kWeekdayColor);
}

CalendarLine calendarDay() {
    return lineOn(kDayBaseline, kDaySize, FontWeight::extraLight, platform::kBlackColor);
}

SBIconImageInfo iconImageInfo(double side, double scale) {
    return {{side, side}, scale, side * kIconCornerRadiusShare};
}

ImageRef processedIconImage(const ImageRef& image, const SBIconImageInfo& info, bool includingMask,
                            const desktop::DesktopImages& images) {
    const auto context = image == nullptr ? nullptr : makeContext(info.size, info.scale);
    if (context == nullptr) {
        return nullptr;
    }
    context->drawImage(image->bitmap(), {{0, 0}, info.size});
    if (includingMask) {
        applyIconShape(*context);
    }
    return images.makeImage(context->createImage(), info.scale);
}

ImageRef drawCalendarIcon(const ImageRef& base, double scale, platform::Dates& dates,
                          const desktop::DesktopImages& images) {
    if (platform::bitmapOf(base) == nullptr) {
        return nullptr;
    }
    const Size size = base->size();
    const auto context = makeContext(size, scale);
    if (context == nullptr) {
        return nullptr;
    }
    context->drawImage(base->bitmap(), {{0, 0}, size});
    const platform::Date now = dates.date();
    const double unit = size.width / kMeasuredSide;
    drawLine(*context, dates.stringFromDate(now, "EEEE"), calendarWeekday(), unit);
    drawLine(*context, std::to_string(dates.dayFromDate(now)), calendarDay(), unit);
    return images.makeImage(context->createImage(), scale);
}

ClockIconImageView::ClockIconImageView(platform::SBIconRef icon)
    : IconImageView(std::move(icon)), hands_(std::make_shared<desktop::DesktopImageView>()) {
    addSubview(hands_);
}

void ClockIconImageView::setHands(const ImageRef& hands) {
    hands_->setFrame(bounds());
    hands_->setImage(hands);
}

std::shared_ptr<IconImageView> makeIconImageView(const platform::SBIconRef& icon, const App& app,
                                                 const SystemVersion& system) {
    if (system.major >= 13 && app.iconClass == "SBClockApplicationIcon") {
        return std::make_shared<ClockIconImageView>(icon);
    }
    return std::make_shared<IconImageView>(icon);
}

void addLiveIconMethods(const ScreenContext& context) {
    addCalendarMethod(context);
    if (context.device.system.major >= 13) {
        addClockMethods(context);
    }
}

}  // namespace velmoranth::simulator
