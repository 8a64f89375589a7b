#include "simulator/screens/sheet.h"

#include "simulator/screens/screen_builder.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/status_bar.h"
#include "simulator/toolkit/view_kit.h"

#include <cstddef>
#include <memory>

namespace velmoranth::simulator {

using desktop::FontWeight;
using desktop::TextAlignment;
using desktop::TextStyle;
using platform::Rect;

namespace {

// Of the bar's line of text to the sheet's margin, points.
constexpr double kInset = 2;

double barBottom(const ScreenContext& context) {
    return statusBarHeight(context.device) + kBarHeight;
}

}  // namespace

Rect sheetArea(const ScreenContext& context) {
    const platform::Size screen = context.bounds().size;
    const double top = barBottom(context);
    return {{kSheetMargin, top},
            {screen.width - 2 * kSheetMargin, screen.height - bottomInset(context.device) - top}};
}

void addSheetBar(platform::View& window, const SheetBar& bar, const ScreenContext& context) {
    const AppColors& colors = appColors(context.device.system);
    const double width = context.bounds().size.width;
    const double hairline = 1 / context.scale();
    const Rect frame{{0, 0}, {width, barBottom(context)}};
    const auto view = std::make_shared<NamedView>("UINavigationBar", frame);
    view->setBackgroundColor(colors.bar);
    view->addSubview(makeStatusBar(context.device, platform::kBlackColor));
    const Rect line{{kSheetMargin + kInset, statusBarHeight(context.device)},
                    {width - 2 * (kSheetMargin + kInset), kBarHeight}};
    view->addSubview(makeText(bar.note, {.size = 13, .color = colors.secondaryText}, line));
    view->addSubview(makeText(
        bar.title,
        {.weight = FontWeight::semibold, .color = colors.text, .alignment = TextAlignment::center},
        line));
    view->addSubview(makeText(
        std::to_string(bar.page) + " of " + std::to_string(bar.pageCount),
        {.size = 13, .color = colors.secondaryText, .alignment = TextAlignment::right}, line));
    view->addSubview(
        makeBox({{0, frame.size.height - hairline}, {width, hairline}}, colors.separator));
    window.addSubview(view);
}

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

std::vector<std::string> linesOfIdentifier(const std::string& identifier, const TextStyle& style,
                                           double width) {
    if (desktop::measureText(identifier, style).width <= width) {
        return {identifier};
    }
    for (std::size_t dot = identifier.rfind('.'); dot != std::string::npos && dot > 0;
         dot = identifier.rfind('.', dot - 1)) {
        const std::string first = identifier.substr(0, dot + 1);
        if (desktop::measureText(first, style).width <= width) {
            return {first, shortenedInTheMiddle(identifier.substr(dot + 1), style, width)};
        }
    }
    return {shortenedInTheMiddle(identifier, style, width)};
}

}  // namespace velmoranth::simulator
