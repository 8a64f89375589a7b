// Sheets of pictures for who makes a theme: a bar that says which one of how many shows, and names
// that fit below a picture.
#pragma once

#include "desktop/text/text.h"
#include "platform/uikit.h"
#include "simulator/screen_context.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

// Left and right of a sheet, points.
inline constexpr double kSheetMargin = 10;

// What is between the bar and the screen's bottom edge.
[[nodiscard]] platform::Rect sheetArea(const ScreenContext& context);

struct SheetBar {
    std::string_view title;
    std::string_view note;  // to the left of it
    int page = 1;
    int pageCount = 1;
};

// With the status bar in it, as wide as the screen.
void addSheetBar(platform::View& window, const SheetBar& bar, const ScreenContext& context);

// Text that is not wider than that many points, its middle left out where it is too long.
[[nodiscard]] std::string shortenedInTheMiddle(const std::string& text,
                                               const desktop::TextStyle& style, double width);

// All of a text on as many lines as it needs, none wider than that; none for no text. A line ends
// behind a mark where it can, or else before a capital letter.
[[nodiscard]] std::vector<std::string> wholeLines(const std::string& text,
                                                  const desktop::TextStyle& style, double width);

// An identifier on one line, or on two, of which the first ends with a dot; none is wider than
// that.
[[nodiscard]] std::vector<std::string> linesOfIdentifier(const std::string& identifier,
                                                         const desktop::TextStyle& style,
                                                         double width);

}  // namespace velmoranth::simulator
