#include "simulator/screens/gallery_screen.h"

#include "desktop/text/text.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/screens/screen_builder.h"
#include "simulator/toolkit/status_bar.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string_view>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using desktop::TextAlignment;
using desktop::TextStyle;
using platform::ImageRef;
using platform::Rect;

// Points.
constexpr double kMargin = 10;
constexpr double kSmallestCellWidth = 86;
constexpr double kSlotSide = 38;
constexpr double kSlotGap = 4;
constexpr double kCellHeight = 76;
constexpr double kHeaderHeight = 26;
constexpr double kNameSize = 9;
constexpr double kBundleSize = 7.5;

constexpr platform::Color kPlate{0.91, 0.91, 0.93, 1};
// White clouds are made for it.
constexpr platform::Color kSky{0.36, 0.56, 0.80, 1};

constexpr platform::Color kWallpaper{0.33, 0.38, 0.44, 1};

const platform::Color& colorOf(GalleryPlate plate) {
    switch (plate) {
        case GalleryPlate::sky:
            return kSky;
        case GalleryPlate::wallpaper:
            return kWallpaper;
        case GalleryPlate::light:
            break;
    }
    return kPlate;
}

}  // namespace

std::string shortenedInTheMiddle(const std::string& text, const TextStyle& style, double width) {
    if (desktop::measureText(text, style).width <= width) {
        return text;
    }
    for (std::size_t kept = text.size() - 1; kept > 1; --kept) {
        const std::size_t head = (kept + 1) / 2;
        std::string shorter = text.substr(0, head) + "…" + text.substr(text.size() - kept / 2);
        if (desktop::measureText(shorter, style).width <= width) {
            return shorter;
        }
    }
    return "…";
}

GalleryScreen::GalleryScreen(const ScreenContext& context) : AppScreen(context), items_(context) {
    window().setBackgroundColor(appColors(context.device.system).card);
    layOutPages();
}

void GalleryScreen::layOutPages() {
    const platform::Size screen = context().bounds().size;
    const double top = statusBarHeight(context().device) + kBarHeight;
    const double bottom = screen.height - bottomInset(context().device);
    const double columns =
        std::max(1.0, std::floor((screen.width - 2 * kMargin) / kSmallestCellWidth));
    const double pitch = (screen.width - 2 * kMargin) / columns;
    const double inset = (pitch - 2 * kSlotSide - kSlotGap) / 2;

    pages_.emplace_back();
    double y = top;
    double column = 0;
    std::string_view group;
    const auto endRow = [&] {
        y += column > 0 ? kCellHeight : 0;
        column = 0;
    };
    for (const GalleryItem& item : items_.all()) {
        bool needsHeader = item.group != group;
        if (needsHeader || column == columns) {
            endRow();
        }
        const double header = needsHeader ? kHeaderHeight : 0;
        if (column == 0 && y + header + kCellHeight > bottom && y > top) {
            pages_.emplace_back();
            y = top;
            needsHeader = true;
        }
        if (needsHeader) {
            group = item.group;
            pages_.back().headers.push_back({std::string(group), y});
            y += kHeaderHeight;
        }
        const double x = snapToPixels(kMargin + column * pitch + inset, context().scale());
        const Rect slot{{x, y + 2}, {kSlotSide, kSlotSide}};
        Rect second = slot;
        second.origin.x += kSlotSide + kSlotGap;
        pages_.back().cells.push_back({&item, slot, second});
        ++column;
    }
}

const std::vector<GalleryCell>& GalleryScreen::cells() const {
    return pages_.at(static_cast<std::size_t>(page_ - 1)).cells;
}

void GalleryScreen::showPage(int page) {
    page_ = std::clamp(page, 1, pageCount());
}

void GalleryScreen::layoutViews() {
    for (const platform::ViewRef& view : window().subviews()) {
        view->removeFromSuperview();
    }
    addBar();
    const AppColors& colors = appColors(context().device.system);
    const double width = context().bounds().size.width;
    for (const Header& header : pages_.at(static_cast<std::size_t>(page_ - 1)).headers) {
        window().addSubview(makeText(
            header.title, {.weight = FontWeight::semibold, .size = 13, .color = colors.text},
            {{kMargin + 2, header.top}, {width, kHeaderHeight}}));
    }
    for (const GalleryCell& cell : cells()) {
        addCell(cell);
    }
    AppScreen::layoutViews();
}

void GalleryScreen::addBar() {
    const AppColors& colors = appColors(context().device.system);
    const double width = context().bounds().size.width;
    const double statusHeight = statusBarHeight(context().device);
    const double hairline = 1 / context().scale();
    const Rect frame{{0, 0}, {width, statusHeight + kBarHeight}};
    const auto bar = std::make_shared<NamedView>("UINavigationBar", frame);
    bar->setBackgroundColor(colors.bar);
    bar->addSubview(makeStatusBar(context().device, platform::kBlackColor));
    const Rect line{{kMargin + 2, statusHeight}, {width - 2 * kMargin - 4, kBarHeight}};
    bar->addSubview(makeText("Before | After", {.size = 13, .color = colors.secondaryText}, line));
    bar->addSubview(makeText(
        "Gallery",
        {.weight = FontWeight::semibold, .color = colors.text, .alignment = TextAlignment::center},
        line));
    bar->addSubview(makeText(
        std::to_string(page_) + " of " + std::to_string(pageCount()),
        {.size = 13, .color = colors.secondaryText, .alignment = TextAlignment::right}, line));
    bar->addSubview(
        makeBox({{0, frame.size.height - hairline}, {width, hairline}}, colors.separator));
    window().addSubview(bar);
}

void GalleryScreen::addCell(const GalleryCell& cell) {
    const AppColors& colors = appColors(context().device.system);
    const ImageRef own = cell.item->before();
    const ImageRef answered = cell.item->after();
    const bool isReplaced = !samePixels(own, answered);
    const platform::Color& plate = colorOf(cell.item->plate);
    const auto show = [&](const ImageRef& image, const Rect& slot) {
        window().addSubview(makeBox(slot, plate, 4));
        window().addSubview(
            makeImage(context().toolkit.tinted(image, colors.text), slot, context().scale()));
    };
    show(own, cell.before);
    show(answered, cell.after);

    const double width = 2 * kSlotSide + kSlotGap;
    const double top = cell.before.origin.y + kSlotSide + 3;
    const TextStyle name{.weight = isReplaced ? FontWeight::semibold : FontWeight::regular,
                         .size = kNameSize,
                         .color = isReplaced ? colors.tint : colors.text,
                         .alignment = TextAlignment::center};
    const TextStyle bundle{
        .size = kBundleSize, .color = colors.secondaryText, .alignment = TextAlignment::center};
    const double left = cell.before.origin.x;
    window().addSubview(makeText(shortenedInTheMiddle(cell.item->name, name, width), name,
                                 {{left, top}, {width, 12}}));
    window().addSubview(makeText(shortenedInTheMiddle(cell.item->bundle, bundle, width), bundle,
                                 {{left, top + 12}, {width, 10}}));
}

}  // namespace velmoranth::simulator
