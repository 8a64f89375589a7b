#include "simulator/toolkit/alert_view.h"

#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/toolkit/view_kit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using desktop::TextAlignment;
using desktop::TextStyle;
using platform::Color;
using platform::Rect;
using platform::ViewRef;

// Points; estimates after pictures of the platform's alerts. A line's height is that of its size in
// the platform's face.
constexpr double kTextMargin = 16;
constexpr double kTop = 19;
constexpr double kBottom = 20;
constexpr double kBetween = 2;
constexpr double kTitleSize = 17;
constexpr double kTitleLine = 22;
constexpr double kMessageSize = 13;
constexpr double kMessageLine = 16;
constexpr double kButtonHeight = 44;
constexpr double kButtonMargin = 8;
constexpr double kLeastAround = 44;  // above and below the card

// Estimates too.
struct Look {
    Color dimming;
    Color card;
    Color line;
    double cornerRadius;
};

constexpr Look kLookOf12{
    {0, 0, 0, 0.4}, {249.0 / 255, 249.0 / 255, 249.0 / 255, 1}, {0.05, 0.05, 0.1, 0.22}, 13};
constexpr Look kLookOf13{{0, 0, 0, 0.2},
                         {242.0 / 255, 242.0 / 255, 243.0 / 255, 1},
                         {60.0 / 255, 60.0 / 255, 67.0 / 255, 0.29},
                         14};

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t nextCharacter(std::string_view text, std::size_t at) {
    ++at;
    while (at < text.size() && isContinuation(text[at])) {
        ++at;
    }
    return at;
}

class LineBreaker {
  public:
    LineBreaker(std::string_view text, const TextStyle& style, double width)
        : text_(text), style_(style), width_(width) {}

    [[nodiscard]] bool isDone() const { return text_.empty(); }

    // What is left, without the blanks around it.
    [[nodiscard]] std::string_view rest() const { return text_; }

    std::string next() {
        std::size_t end = 0;
        for (std::size_t at = 0; at < text_.size();) {
            const std::size_t wordEnd = std::min(text_.find_first_of(" \n", at), text_.size());
            if (!fits(wordEnd)) {
                break;
            }
            end = wordEnd;
            if (wordEnd == text_.size() || text_[wordEnd] == '\n') {
                break;
            }
            at = wordEnd + 1;
        }
        if (end == 0 && !text_.starts_with('\n')) {
            end = partOfWord();
        }
        std::string line(text_.substr(0, end));
        const bool atLineEnd = end < text_.size() && text_[end] == '\n';
        text_.remove_prefix(end + (atLineEnd ? 1 : 0));
        if (!atLineEnd) {
            text_.remove_prefix(std::min(text_.find_first_not_of(' '), text_.size()));
        }
        return line;
    }

  private:
    [[nodiscard]] bool fits(std::size_t end) const {
        return desktop::measureText(std::string(text_.substr(0, end)), style_).width <= width_;
    }

    // As much as fits, one character at least.
    [[nodiscard]] std::size_t partOfWord() const {
        std::size_t end = nextCharacter(text_, 0);
        while (end < text_.size() && fits(nextCharacter(text_, end))) {
            end = nextCharacter(text_, end);
        }
        return end;
    }

    std::string_view text_;
    TextStyle style_;
    double width_;
};

struct Paragraph {
    TextStyle style;
    double lineHeight = 0;
    std::vector<std::string> lines = {};

    [[nodiscard]] double height() const { return lineHeight * static_cast<double>(lines.size()); }
};

Paragraph paragraph(const platform::NullableString& text, TextStyle style, double lineHeight,
                    double room) {
    Paragraph result{std::move(style), lineHeight};
    const auto mostLines = static_cast<std::size_t>(std::max(1.0, std::floor(room / lineHeight)));
    result.lines =
        brokenIntoLines(text.value_or(""), result.style, kAlertWidth - 2 * kTextMargin, mostLines);
    return result;
}

void addLines(platform::View& card, const Paragraph& paragraph, double top) {
    for (const std::string& line : paragraph.lines) {
        card.addSubview(
            makeText(line, paragraph.style,
                     {{kTextMargin, top}, {kAlertWidth - 2 * kTextMargin, paragraph.lineHeight}}));
        top += paragraph.lineHeight;
    }
}

// A button that stands alone has the weight of one that cancels.
TextStyle styleOf(const desktop::DesktopAlertAction& action, bool alone, const AppColors& colors) {
    const bool strong = alone || action.style() == platform::AlertActionStyle::cancel;
    const bool red = action.style() == platform::AlertActionStyle::destructive;
    return textStyle(kTitleSize, red ? colors.destructive : colors.tint, TextAlignment::center,
                     strong ? FontWeight::semibold : FontWeight::regular);
}

// Two stand side by side, more below each other. In the card's coordinates.
std::vector<Rect> buttonFrames(std::size_t count, double top) {
    std::vector<Rect> frames;
    frames.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = static_cast<double>(i);
        frames.push_back(
            count == 2 ? Rect{{number * kAlertWidth / 2, top}, {kAlertWidth / 2, kButtonHeight}}
                       : Rect{{0, top + number * kButtonHeight}, {kAlertWidth, kButtonHeight}});
    }
    return frames;
}

}  // namespace

std::vector<std::string> brokenIntoLines(const std::string& text, const TextStyle& style,
                                         double width, std::size_t mostLines) {
    std::vector<std::string> lines;
    LineBreaker breaker(text, style, width);
    while (!breaker.isDone() && lines.size() + 1 < mostLines) {
        lines.push_back(breaker.next());
    }
    if (!breaker.isDone() && mostLines > 0) {
        lines.emplace_back(breaker.rest());
    }
    return lines;
}

AlertView::AlertView(std::shared_ptr<const desktop::DesktopAlertController> alert,
                     const DeviceConfiguration& device)
    : alert_(std::move(alert)) {
    const AppColors& colors = appColors(device.system);
    const Look& look = device.system.major < 13 ? kLookOf12 : kLookOf13;
    const platform::Size screen{device.screen.width, device.screen.height};
    const double hairline = 1 / device.screen.scale;
    const auto& actions = alert_->actions();
    const double buttonsHeight =
        kButtonHeight * static_cast<double>(actions.size() == 2 ? 1 : actions.size());
    const double room = screen.height - 2 * kLeastAround - kTop - kBottom - buttonsHeight;
    const Paragraph title =
        paragraph(alert_->title(),
                  textStyle(kTitleSize, colors.text, TextAlignment::center, FontWeight::semibold),
                  kTitleLine, room / 2);
    const Paragraph message =
        paragraph(alert_->message(), textStyle(kMessageSize, colors.text, TextAlignment::center),
                  kMessageLine, room - title.height() - kBetween);
    const bool both = !title.lines.empty() && !message.lines.empty();
    const double messageTop = kTop + title.height() + (both ? kBetween : 0);
    const double buttonsTop = messageTop + message.height() + kBottom;
    const platform::Size size{kAlertWidth, buttonsTop + buttonsHeight};
    const auto middle = [&device](double length, double of) {
        return snapToPixels((of - length) / 2, device.screen.scale);
    };
    card_ = {{middle(size.width, screen.width), middle(size.height, screen.height)}, size};

    view_ = makeBox({{0, 0}, screen}, look.dimming);
    const ViewRef card = makeBox(card_, look.card, look.cornerRadius);
    card->setClipsToBounds(true);
    view_->addSubview(card);
    addLines(*card, title, kTop);
    addLines(*card, message, messageTop);
    const std::vector<Rect> frames = buttonFrames(actions.size(), buttonsTop);
    for (std::size_t i = 0; i < actions.size(); ++i) {
        const Rect& frame = frames[i];
        card->addSubview(makeBox({frame.origin, {frame.size.width, hairline}}, look.line));
        if (frame.origin.x > 0) {
            card->addSubview(makeBox({frame.origin, {hairline, frame.size.height}}, look.line));
        }
        card->addSubview(makeText(actions[i]->title().value_or(""),
                                  styleOf(*actions[i], actions.size() == 1, colors),
                                  {{frame.origin.x + kButtonMargin, frame.origin.y},
                                   {frame.size.width - 2 * kButtonMargin, frame.size.height}}));
        buttons_.push_back(
            {{{card_.origin.x + frame.origin.x, card_.origin.y + frame.origin.y}, frame.size},
             actions[i]});
    }
}

std::shared_ptr<desktop::DesktopAlertAction> AlertView::actionAt(
    const platform::Point& point) const {
    for (const Button& button : buttons_) {
        const platform::Point in{point.x - button.frame.origin.x, point.y - button.frame.origin.y};
        if (in.x >= 0 && in.x < button.frame.size.width && in.y >= 0 &&
            in.y < button.frame.size.height) {
            return button.action;
        }
    }
    return nullptr;
}

}  // namespace velmoranth::simulator
