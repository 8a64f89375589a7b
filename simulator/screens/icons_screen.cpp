#include "simulator/screens/icons_screen.h"

#include "desktop/text/text.h"
#include "simulator/home_screen/dock_views.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/screens/sheet.h"
#include "simulator/toolkit/view_kit.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>
#include <string>
#include <string_view>

namespace velmoranth::simulator {
namespace {

using platform::Point;
using platform::Rect;

// Points.
constexpr double kLeastBesideIcon = 28;
constexpr double kAboveIcon = 11;
constexpr double kBelowIcon = 3;
constexpr double kTextSize = 8.5;
constexpr double kLineHeight = 11;
constexpr double kMostLines = 2;
// Between the identifiers of two icons.
constexpr double kTextGap = 4;

// White icons show on it, and dark ones.
constexpr platform::Color kSheet{0.91, 0.91, 0.93, 1};

double cellHeight(const ScreenContext& context) {
    return kAboveIcon + context.metrics.iconSide + kBelowIcon + kMostLines * kLineHeight;
}

std::size_t howMany(double room, double each) {
    return static_cast<std::size_t>(std::max(1.0, std::floor(room / each)));
}

bool comesBefore(const App& a, const App& b) {
    const auto lower = [](unsigned char c) { return std::tolower(c); };
    return std::ranges::lexicographical_compare(a.bundleIdentifier, b.bundleIdentifier, {}, lower,
                                                lower);
}

}  // namespace

IconsScreen::IconsScreen(const ScreenContext& context)
    : AppScreen(context),
      columns_(howMany(sheetArea(context).size.width, context.metrics.iconSide + kLeastBesideIcon)),
      rows_(howMany(sheetArea(context).size.height, cellHeight(context))),
      pitch_(sheetArea(context).size.width / static_cast<double>(columns_)) {
    for (const App* const app : allApps(context.apps)) {
        apps_.push_back(*app);
        apps_.back().badge = {};
    }
    std::ranges::stable_sort(apps_, comesBefore);
    window().setBackgroundColor(kSheet);
    IconsScreen::showPage(1);
}

int IconsScreen::pageCount() const {
    const std::size_t perPage = columns_ * rows_;
    return static_cast<int>(std::max<std::size_t>(1, (apps_.size() + perPage - 1) / perPage));
}

std::span<const App> IconsScreen::shownApps() const {
    const std::size_t perPage = columns_ * rows_;
    const std::span<const App> rest =
        std::span(apps_).subspan(static_cast<std::size_t>(page_ - 1) * perPage);
    return rest.first(std::min(rest.size(), perPage));
}

Point IconsScreen::placeOf(std::size_t index) const {
    const Rect area = sheetArea(context());
    const std::size_t row = index / columns_;
    const double x = area.origin.x + static_cast<double>(index % columns_) * pitch_ +
                     (pitch_ - context().metrics.iconSide) / 2;
    return {
        snapToPixels(x, context().scale()),
        snapToPixels(area.origin.y + static_cast<double>(row) * cellHeight(context()) + kAboveIcon,
                     context().scale())};
}

void IconsScreen::showPage(int page) {
    const int nearest = std::clamp(page, 1, pageCount());
    if (nearest == page_) {
        return;
    }
    page_ = nearest;
    for (const platform::ViewRef& view : window().subviews()) {
        view->removeFromSuperview();
    }
    const std::string count =
        std::to_string(apps_.size()) + (apps_.size() == 1 ? " icon" : " icons");
    addSheetBar(window(),
                {.title = "Icons", .note = count, .page = page_, .pageCount = pageCount()},
                context());
    const auto list = std::make_shared<IconListView>("SBRootIconListView", context().bounds());
    window().addSubview(list);
    std::size_t index = 0;
    for (const App& app : shownApps()) {
        const Point place = placeOf(index++);
        list->addIconView(IconView::create(context(), {&app, nullptr}, place, false));
        addIdentifier(app, place);
    }
}

void IconsScreen::addIdentifier(const App& app, const Point& icon) {
    const double side = context().metrics.iconSide;
    const double width = pitch_ - kTextGap;
    const desktop::TextStyle style = centered(kTextSize, appColors(context().device.system).text);
    double top = icon.y + side + kBelowIcon;
    for (const std::string& line :
         linesOfIdentifier(std::string(app.bundleIdentifier), style, width)) {
        window().addSubview(
            makeText(line, style, {{icon.x + (side - width) / 2, top}, {width, kLineHeight}}));
        top += kLineHeight;
    }
}

std::vector<ShownIcon> IconsScreen::shownIcons() const {
    std::vector<ShownIcon> icons;
    const double scale = context().scale();
    for (const App& app : shownApps()) {
        const Point place = placeOf(icons.size());
        const std::string identifier(app.bundleIdentifier);
        icons.push_back({.bundleIdentifier = identifier,
                         .label = identifier,
                         .x = place.x * scale,
                         .y = place.y * scale,
                         .side = context().metrics.iconSide * scale,
                         .stockImageRequests = context().stockImages.requests(identifier)});
    }
    return icons;
}

}  // namespace velmoranth::simulator
