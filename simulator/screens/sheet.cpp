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

namespace {

// How well a line may end before that character: 2 behind a mark, 1 before a capital letter, 0
// within a word.
int endingAt(const std::string& text, std::size_t place) {
    constexpr std::string_view kMarks = "._- @/";
    constexpr std::string_view kEnding = ".png";
    if (text.ends_with(kEnding) && place + kEnding.size() - 1 == text.size()) {
        return 0;  // it stays with its name
    }
    const auto isCapital = [](char letter) { return letter >= 'A' && letter <= 'Z'; };
    return kMarks.find(text[place - 1]) != std::string_view::npos  ? 2
           : isCapital(text[place]) && !isCapital(text[place - 1]) ? 1
                                                                   : 0;
}

// How much of the text, a character at least, is on the first of its lines.
std::size_t firstLineLength(const std::string& text, const TextStyle& style, double width) {
    const auto fits = [&](std::size_t length) {
        return desktop::measureText(text.substr(0, length), style).width <= width;
    };
    if (fits(text.size())) {
        return text.size();
    }
    const auto isInCharacter = [&](std::size_t place) {
        return place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0) == 0x80;
    };
    std::array<std::size_t, 3> last{1, 0, 0};  // place by how well a line ends there
    while (isInCharacter(last[0])) {
        ++last[0];
    }
    for (std::size_t length = last[0]; length < text.size() && fits(length); ++length) {
        if (!isInCharacter(length)) {
            last.at(static_cast<std::size_t>(endingAt(text, length))) = length;
        }
    }
    return last[2] > 0 ? last[2] : last[1] > 0 ? last[1] : last[0];
}

}  // namespace

std::vector<std::string> wholeLines(const std::string& text, const TextStyle& style, double width) {
    std::vector<std::string> lines;
    for (std::string rest = text; !rest.empty();) {
        const std::size_t length = firstLineLength(rest, style, width);
        lines.push_back(rest.substr(0, length));
        rest.erase(0, length);
    }
    return lines;
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
