#include "simulator/screens/today_screen.h"

#include "simulator/artwork/artwork.h"
#include "simulator/screens/screen_builder.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/status_bar.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using desktop::TextAlignment;
using platform::Color;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::Rect;
using platform::Size;
using platform::ViewRef;

constexpr std::array kTodayClasses{
    ClassRow{"WGWidgetInfo", "NSObject"},
    ClassRow{"WGWidgetPlatterView", "UIView"},
    ClassRow{"NSExtension", "NSObject"},
    ClassRow{"APWUtil", "NSObject"},
};

// Points. The platform's sizes of icons; estimates else.
constexpr double kTodayMargin = 8;
constexpr double kGap = 8;
constexpr double kCardRadius = 13;
constexpr double kCardRadiusOfPadOn12 = 14;
constexpr double kWidgetHeaderHeight = 36;
constexpr double kWidgetIconSide = 20;
constexpr double kBodyHeight = 74;
constexpr double kSuggestionsHeight = 104;
constexpr double kSuggestedIconSide = 60;
constexpr double kSearchHeight = 36;
constexpr double kPadColumnWidth = 364;
constexpr double kPadColumnGap = 16;
constexpr Color kWidgetHeaderShade{1, 1, 1, 0.35};
constexpr Color kCardFill{1, 1, 1, 0.66};
constexpr Color kText{0, 0, 0, 0.9};
constexpr Color kWidgetFaintText{0, 0, 0, 0.55};
constexpr BackdropStyle kTodayBackdrop{.blurRadius = 28, .tint = {0, 0, 0, 0.12}};
// The format of the platform's icon requests that widgets have before iOS 13.
constexpr int kWidgetIconFormat = 5;

enum class Body { event, suggestions, weather, lines };
enum class Identified { yes, no };

struct Widget {
    std::string_view app;
    std::string_view title;
    Body body;
    std::string_view first = {};
    std::string_view second = {};
    Color accent = {};
    Identified identified = Identified::yes;
};

constexpr std::array kWidgets{
    Widget{"com.apple.mobilecal",
           "Calendar",
           Body::event,
           "Glaze test firing",
           "10:00 – 11:30, Studio",
           {0.85, 0.33, 0.3, 1}},
    Widget{"com.apple.AppStore", "App Suggestions", Body::suggestions},
    Widget{"com.apple.weather", "Weather", Body::weather, "Seeheim",
           "Partly cloudy, showers later."},
    Widget{"com.apple.mobilenotes",
           "Notes",
           Body::lines,
           "Glaze recipes",
           "Feldspar 40, silica 25, whiting 20",
           {},
           Identified::no},
    Widget{"com.apple.reminders",
           "Reminders",
           Body::event,
           "Order stoneware clay",
           "Tomorrow",
           {0.95, 0.6, 0.2, 1}},
    Widget{"com.apple.Maps", "Maps Destinations", Body::lines, "Home", "18 minutes, light traffic"},
    Widget{"com.apple.news", "News", Body::lines, "A town that fires its kiln together",
           "3 hours ago"},
    Widget{"com.apple.stocks", "Stocks", Body::lines, "Markets are closed", "Opens 9:30 AM"},
};

struct Suggestion {
    std::string_view app;
    std::string_view name;
};

constexpr std::array kSuggestions{
    Suggestion{"com.apple.Music", "Music"}, Suggestion{"com.apple.mobilemail", "Mail"},
    Suggestion{"com.apple.podcasts", "Podcasts"}, Suggestion{"com.apple.Health", "Health"}};

std::string uppercase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](unsigned char letter) {
        return static_cast<char>(std::toupper(letter));
    });
    return result;
}

// The platform's own, of the app that the widget comes with.
ImageRef stockIcon(const ScreenContext& context, const ObjectRef& extension, double side,
                   double scale) {
    const auto widget = std::dynamic_pointer_cast<WidgetExtension>(extension);
    return widget == nullptr
               ? nullptr
               : context.stockImages.icon(widget->value(), side, scale, IconMasking::masked);
}

class TodayBuilder : ScreenBuilder {
  public:
    using ScreenBuilder::ScreenBuilder;

    void build() {
        const bool pad = isPad();
        const std::size_t columns = pad ? 2 : 1;
        const double cardWidth = pad ? std::min(kPadColumnWidth, (size_.width - 48) / 2)
                                     : size_.width - 2 * kTodayMargin;
        const double gap = pad ? kPadColumnGap : kGap;
        const double width =
            cardWidth * static_cast<double>(columns) + gap * static_cast<double>(columns - 1);
        const double left = snapToPixels((size_.width - width) / 2, context_.scale());
        double top = statusBarHeight(context_.device) + (pad ? 24 : 8);
        addSearchField({{left, top}, {width, kSearchHeight}});
        top += kSearchHeight + (pad ? 20 : 12);
        std::vector<double> y(columns, top);
        for (const Widget& widget : kWidgets) {
            const auto column = static_cast<std::size_t>(std::ranges::min_element(y) - y.begin());
            const double height =
                kWidgetHeaderHeight +
                (widget.body == Body::suggestions ? kSuggestionsHeight : kBodyHeight);
            if (y[column] < size_.height) {
                addCard(widget,
                        {{left + static_cast<double>(column) * (cardWidth + gap), y[column]},
                         {cardWidth, height}});
            }
            y[column] += height + gap;
        }
        window_.addSubview(makeStatusBar(context_.device));
    }

  private:
    void addSearchField(const Rect& frame) const {
        const ViewRef field = makeBox(frame, {1, 1, 1, 0.22}, 10);
        addToolkitImage(*field, {{9, 9}, {18, 18}}, "UISearchFieldIcon", "magnifyingglass",
                        {1, 1, 1, 0.8});
        addText(*field, "Search", textStyle(17, {1, 1, 1, 0.8}),
                {{34, 0}, {frame.size.width - 44, frame.size.height}});
        window_.addSubview(field);
    }

    void addCard(const Widget& widget, const Rect& frame) const {
        const bool isPadOn12 = isPad() && !isAtLeast13();
        const auto card = addView(window_, "WGWidgetPlatterView", frame, kCardFill);
        card->desktopLayer()->appearance.cornerRadius =
            isPadOn12 ? kCardRadiusOfPadOn12 : kCardRadius;
        card->setClipsToBounds(true);
        const double width = frame.size.width;
        card->addSubview(makeBox({{0, 0}, {width, kWidgetHeaderHeight}}, kWidgetHeaderShade));
        addIcon(*card, widget);
        addText(*card, uppercase(widget.title), textStyle(13, kWidgetFaintText),
                {{36, 0}, {width - 48, kWidgetHeaderHeight}});
        switch (widget.body) {
            case Body::event:
                card->addSubview(makeBox({{14, kWidgetHeaderHeight + 16}, {3, kBodyHeight - 32}},
                                         widget.accent, 1.5));
                addLines(*card, widget, 26, width - 40);
                break;
            case Body::lines:
                addLines(*card, widget, 14, width - 28);
                break;
            case Body::weather:
                addWeather(*card, widget, width);
                break;
            case Body::suggestions:
                addSuggestions(*card, width);
                break;
        }
    }

    void addIcon(platform::View& card, const Widget& widget) const {
        const std::string app(widget.app);
        const std::string identifier = app + ".widget";
        const auto info = std::make_shared<WidgetInfo>(
            widget.identified == Identified::yes ? NullableString(identifier) : std::nullopt);
        const auto extension = std::make_shared<WidgetExtension>(app);
        const Rect slot{{kTodayMargin, (kWidgetHeaderHeight - kWidgetIconSide) / 2},
                        {kWidgetIconSide, kWidgetIconSide}};
        desktop::Runtime& runtime = context_.runtime;
        if (!isAtLeast13()) {
            images_.add(card, slot, ImagePlacement::fill, [&runtime, info, extension, identifier] {
                return runtime.send<ImageRef, int, NullableString, ObjectRef>(
                    *info,
                    "_queue_iconWithFormat:forWidgetWithIdentifier:extension:", kWidgetIconFormat,
                    identifier, extension);
            });
            return;
        }
        images_.add(card, slot, ImagePlacement::fill,
                    [&runtime, info, extension, identifier, scale = context_.scale()] {
                        return runtime.send<ImageRef, Size, double, NullableString, ObjectRef>(
                            *info, "_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:",
                            Size{kWidgetIconSide, kWidgetIconSide}, scale, identifier, extension);
                    });
    }

    static void addLines(platform::View& card, const Widget& widget, double left, double width) {
        addText(card, widget.first, textStyle(17, kText, TextAlignment::left, FontWeight::medium),
                {{left, kWidgetHeaderHeight + 14}, {width, 24}});
        addText(card, widget.second, textStyle(15, kWidgetFaintText),
                {{left, kWidgetHeaderHeight + 38}, {width, 22}});
    }

    void addWeather(platform::View& card, const Widget& widget, double width) const {
        // The sign for a sky is white: it lies on a piece of sky.
        const ViewRef sky =
            makeBox({{14, kWidgetHeaderHeight + 14}, {46, 46}}, {0.33, 0.57, 0.82, 1}, 10);
        images_.add(*sky, {{5, 5}, {36, 36}}, ImagePlacement::fit, [builder = *this] {
            return builder.ask_.imageNamedInBundleCompatibleWithTraitCollection(
                "partly-cloudy-day", kWeatherBundle, builder.traits_);
        });
        card.addSubview(sky);
        addLines(card, widget, 72, width - 72 - 84);
        addText(card, "21\u00B0", textStyle(34, kText, TextAlignment::right, FontWeight::light),
                {{width - 84, kWidgetHeaderHeight}, {70, kBodyHeight}});
    }

    void addSuggestions(platform::View& card, double width) const {
        const double pitch = width / static_cast<double>(kSuggestions.size());
        double x = 0;
        for (const Suggestion& suggestion : kSuggestions) {
            const double left =
                snapToPixels(x + (pitch - kSuggestedIconSide) / 2, context_.scale());
            images_.add(
                card, {{left, kWidgetHeaderHeight + 12}, {kSuggestedIconSide, kSuggestedIconSide}},
                ImagePlacement::fill,
                [&runtime = context_.runtime, app = std::string(suggestion.app)] {
                    return runtime.sendToClass<ImageRef, NullableString>(
                        "APWUtil", "iconForBundleIdentifier:", app);
                });
            addText(card, suggestion.name, centered(12, kText),
                    {{x, kWidgetHeaderHeight + 75}, {pitch, 18}});
            x += pitch;
        }
    }
};

}  // namespace

void registerTodayClasses(const ScreenContext& context) {
    addClasses(kTodayClasses, context.device.system, context.runtime);
    ClassMethods info(context.runtime, "WGWidgetInfo");
    if (context.device.system.major < 13) {
        info.add("_queue_iconWithFormat:forWidgetWithIdentifier:extension:",
                 [&context](platform::WGWidgetInfo&, int, const NullableString&,
                            const ObjectRef& extension) {
                     return stockIcon(context, extension, kWidgetIconSide, context.scale());
                 });
    } else {
        info.add("_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:",
                 [&context](platform::WGWidgetInfo&, Size size, double scale, const NullableString&,
                            const ObjectRef& extension) {
                     return stockIcon(context, extension, size.width, scale);
                 });
    }
    ClassMethods(context.runtime, "APWUtil")
        .addToClass("iconForBundleIdentifier:", [&context](const NullableString& app) {
            return app ? context.stockImages.icon(*app, kSuggestedIconSide, context.scale(),
                                                  IconMasking::masked)
                       : nullptr;
        });
}

TodayScreen::TodayScreen(const ScreenContext& context) : HomeOverlay(context, Behind::wallpaper) {
    addMaterial(context.bounds(), kTodayBackdrop);
    TodayBuilder(context, window(), images()).build();
}

}  // namespace velmoranth::simulator
