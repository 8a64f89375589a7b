// What a label draws, pixel by pixel, in a face whose glyphs are boxes: at size 20 an H is 12
// points wide and a box of 8 × 14 two points from its start, on a base line 16 points below the top
// of a line of 20.
#include "desktop/imaging/graphics_context.h"
#include "desktop/text/fonts.h"
#include "desktop/views/views.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::desktop::label_test {

namespace {

using platform::Color;
using platform::Rect;

constexpr Color kBlack{0, 0, 0, 1};
constexpr Color kRed{1, 0, 0, 1};
constexpr Color kBlue{0, 0, 1, 1};
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A box in points, and its letter in a picture: k black, r red, b blue.
struct Ink {
    double x;
    double y;
    double width;
    double height;
    char letter = 'k';
};

// A picture in letters, a line a row: '.' is clear, '?' anything but the colours above.
using Picture = std::string;

char letterOf(const std::uint8_t* bgra) {
    const bool opaque = bgra[3] == 255 && bgra[1] == 0;
    if (bgra[0] == 0 && bgra[1] == 0 && bgra[2] == 0 && bgra[3] == 0) {
        return '.';
    }
    if (opaque && bgra[0] == 0) {
        return bgra[2] == 0 ? 'k' : bgra[2] == 255 ? 'r' : '?';
    }
    return opaque && bgra[0] == 255 && bgra[2] == 0 ? 'b' : '?';
}

// What is expected on a paper of that many points.
Picture paint(platform::Size points, const std::vector<Ink>& inks, double scale = 1) {
    const auto width = static_cast<std::size_t>(points.width * scale);
    const auto height = static_cast<std::size_t>(points.height * scale);
    std::vector<std::string> rows(height, std::string(width, '.'));
    for (const Ink& ink : inks) {
        for (auto y = static_cast<std::size_t>(ink.y * scale);
             y < static_cast<std::size_t>((ink.y + ink.height) * scale); ++y) {
            for (auto x = static_cast<std::size_t>(ink.x * scale);
                 x < static_cast<std::size_t>((ink.x + ink.width) * scale); ++x) {
                rows.at(y).at(x) = ink.letter;
            }
        }
    }
    Picture picture;
    for (const std::string& row : rows) {
        picture += row + '\n';
    }
    return picture;
}

Picture lettersOf(const PixelView& pixels) {
    Picture picture;
    for (std::size_t y = 0; y < pixels.height; ++y) {
        for (std::size_t x = 0; x < pixels.width; ++x) {
            picture += letterOf(pixels.row(y) + x * 4);
        }
        picture += '\n';
    }
    return picture;
}

class Label : public testing::Test {
  protected:
    Label() { setFontFolders({tests::kTestFonts}, "Boxes"); }

    // A label as the engine makes it.
    std::shared_ptr<DesktopLabel> label(const Rect& frame, const std::string& text = "HH",
                                        double size = 20) {
        const auto made = std::dynamic_pointer_cast<DesktopLabel>(views_.labelWithFrame(frame));
        made->setFont(DesktopFonts().fontWithNameSize("HelveticaNeue", size));
        made->setText(text);
        return made;
    }

    // The label in a view of 120 × 60, on the screen and by renderInContext, which agree.
    static Picture shown(const std::shared_ptr<DesktopLabel>& label, double scale = 1) {
        const auto window = std::make_shared<DesktopView>(Rect{{0, 0}, kPaper});
        window->addSubview(label);
        const PixelSize size{static_cast<std::size_t>(kPaper.width * scale),
                             static_cast<std::size_t>(kPaper.height * scale)};
        const Picture onScreen = lettersOf(renderTree(window, size, scale)->pixels());
        const auto context = DesktopGraphicsContext::create({.size = size, .scale = scale});
        window->layer()->renderInContext(context);
        EXPECT_EQ(lettersOf(context->pixels()), onScreen);
        return onScreen;
    }

    static constexpr platform::Size kPaper{120, 60};
    DesktopViews views_;
};

}  // namespace

TEST_F(Label, TextIsCentredToThePixelAtEveryScale) {
    const auto some = label({{10, 5}, {100, 40}});
    some->setTextAlignment(platform::TextAlignment::center);
    for (const double scale : {1.0, 2.0, 3.0}) {
        // 24 of 100 points wide, 20 of 40 high: from (48, 15); the base line at 31.
        EXPECT_EQ(shown(some, scale), paint(kPaper, {{50, 17, 8, 14}, {62, 17, 8, 14}}, scale));
    }
    some->setFrame({{10.5, 5.5}, {99, 39}});
    EXPECT_EQ(shown(some, 2), paint(kPaper, {{50, 17, 8, 14}, {62, 17, 8, 14}}, 2));
}

TEST_F(Label, TheHeightThatIsCentredIsThatOfTheFaceNotOfTheLetters) {
    EXPECT_EQ(shown(label({{0, 0}, {100, 20}}, "x")), paint(kPaper, {{2, 6, 8, 10}}));
    EXPECT_EQ(shown(label({{0, 0}, {100, 20}}, "g")), paint(kPaper, {{2, 6, 8, 14}}));
    EXPECT_EQ(shown(label({{0, 0}, {100, 60}}, "g")), paint(kPaper, {{2, 26, 8, 14}}));
}

TEST_F(Label, AlignmentFollowsTheTextUnlessItIsSet) {
    using platform::TextAlignment;
    const std::vector<Ink> left = {{12, 7, 8, 14}, {24, 7, 2, 14}};
    const std::vector<Ink> right = {{94, 7, 8, 14}, {106, 7, 2, 14}};
    const auto latin = label({{10, 5}, {100, 20}}, "Hl");
    EXPECT_EQ(shown(latin), paint(kPaper, left));
    latin->setTextAlignment(TextAlignment::right);
    EXPECT_EQ(shown(latin), paint(kPaper, right));
    latin->setTextAlignment(TextAlignment::natural);
    EXPECT_EQ(shown(latin), paint(kPaper, left));
    latin->setTextAlignment(TextAlignment::justified);
    EXPECT_EQ(shown(latin), paint(kPaper, left));

    // Read from the right: the wide letter, then the narrow one to its left.
    const std::vector<Ink> hebrewRight = {{94, 7, 2, 14}, {100, 7, 8, 14}};
    const std::vector<Ink> hebrewLeft = {{12, 7, 2, 14}, {18, 7, 8, 14}};
    const auto hebrew = label({{10, 5}, {100, 20}}, "\u05d0\u05d5");
    EXPECT_EQ(shown(hebrew), paint(kPaper, hebrewRight));
    hebrew->setTextAlignment(TextAlignment::left);
    EXPECT_EQ(shown(hebrew), paint(kPaper, hebrewLeft));
    hebrew->setTextAlignment(TextAlignment::justified);
    EXPECT_EQ(shown(hebrew), paint(kPaper, hebrewRight));
    hebrew->setTextAlignment(TextAlignment::center);  // 18 of 100 points wide
    EXPECT_EQ(shown(hebrew), paint(kPaper, {{53, 7, 2, 14}, {59, 7, 8, 14}}));
    hebrew->setTextAlignment(TextAlignment::right);
    EXPECT_EQ(shown(hebrew), paint(kPaper, hebrewRight));
}

TEST_F(Label, WhatDoesNotFitEndsInAnEllipsis) {
    // Six letters and an ellipsis are 90 points, seven would be 102.
    std::vector<Ink> inks;
    for (const double x : {0, 12, 24, 36, 48, 60}) {
        inks.push_back({10 + x + 2, 7, 8, 14});
    }
    inks.push_back({10 + 72 + 2, 19, 14, 2});
    EXPECT_EQ(shown(label({{10, 5}, {100, 20}}, "HHHHHHHHHH")), paint(kPaper, inks));

    // What is cut short is aligned as it is.
    const auto centred = label({{5, 5}, {100, 20}}, "HHHHHHHHHH");
    centred->setTextAlignment(platform::TextAlignment::center);
    EXPECT_EQ(shown(centred), paint(kPaper, inks));
    const auto right = label({{0, 5}, {100, 20}}, "HHHHHHHHHH");
    right->setTextAlignment(platform::TextAlignment::right);
    EXPECT_EQ(shown(right), paint(kPaper, inks));

    // What just fits has none.
    inks.pop_back();
    EXPECT_EQ(shown(label({{10, 5}, {72, 20}}, "HHHHHH")), paint(kPaper, inks));

    // From the right the ellipsis is at the left.
    inks = {{22, 19, 14, 2}};
    for (const double x : {38, 50, 62, 74, 86, 98}) {
        inks.push_back({x + 2, 7, 8, 14});
    }
    std::string letters;
    for (int i = 0; i < 10; ++i) {
        letters += "\u05d0";
    }
    EXPECT_EQ(shown(label({{10, 5}, {100, 20}}, letters)), paint(kPaper, inks));
}

TEST_F(Label, TextIsBlackOfTheSystemsFaceAt17UntilItIsSet) {
    const auto fresh = views_.labelWithFrame({{0, 0}, {20, 17}});
    fresh->setText("H");
    const auto tenfold = [](const platform::LabelRef& one) {
        return lettersOf(renderTree(one, {200, 170}, 10)->pixels());
    };
    const Picture standard = paint({200, 170}, {{17, 17, 68, 119}});
    EXPECT_EQ(tenfold(fresh), standard);
    fresh->setFont(DesktopFonts().fontWithNameSize("Georgia-BoldItalic", 5));
    EXPECT_EQ(tenfold(fresh), paint({200, 170}, {{5, 65, 20, 35}}));
    fresh->setFont(nullptr);
    EXPECT_EQ(tenfold(fresh), standard);
    EXPECT_EQ(std::dynamic_pointer_cast<DesktopLabel>(fresh)->style().weight, FontWeight::regular);
    EXPECT_FALSE(std::dynamic_pointer_cast<DesktopLabel>(fresh)->style().italic);
    fresh->setTextColor(kRed);
    EXPECT_EQ(tenfold(fresh), paint({200, 170}, {{17, 17, 68, 119, 'r'}}));
    fresh->setText(std::nullopt);
    EXPECT_EQ(tenfold(fresh), paint({200, 170}, {}));
}

TEST_F(Label, AFontGivesFaceWeightAndSlant) {
    const auto some = label({{0, 0}, {20, 20}});
    some->setFont(DesktopFonts().fontWithNameSize("Menlo-BoldItalic", 9));
    EXPECT_EQ(some->style().family, "DejaVu Sans Mono");
    EXPECT_EQ(some->style().weight, FontWeight::bold);
    EXPECT_TRUE(some->style().italic);
    EXPECT_EQ(some->style().size, 9);
}

TEST_F(Label, TheShadowIsTheTextOnceMore) {
    const Ink text{12, 17, 8, 14};
    const auto with = [&](double x, double y, double scale = 1) {
        const auto some = label({{10, 10}, {40, 30}}, "H");
        some->setShadowColor(kRed);
        some->setShadowOffset({x, y});
        EXPECT_EQ(shown(some, scale),
                  paint(kPaper, {{text.x + x, text.y + y, 8, 14, 'r'}, text}, scale))
            << x << ' ' << y << ' ' << scale;
    };
    for (const double scale : {1.0, 2.0, 3.0}) {
        with(3, 5, scale);
        with(-2, -4, scale);
        with(10, -3, scale);
        with(0, 0, scale);
    }
    with(0.5, 1.5, 2);
    with(-0.5, 0.5, 2);
}

TEST_F(Label, TheShadowIsAPointAboveUntilItIsMovedAndNoneUntilItHasAColor) {
    const Ink text{12, 17, 8, 14};
    const Ink above{12, 16, 8, 14, 'r'};
    const Ink below{14, 20, 8, 14, 'r'};
    const auto fresh = [this] { return label({{10, 10}, {40, 30}}, "H"); };
    EXPECT_EQ(shown(fresh()), paint(kPaper, {text}));

    const auto offsetAlone = fresh();
    offsetAlone->setShadowOffset({2, 3});
    EXPECT_EQ(shown(offsetAlone), paint(kPaper, {text}));
    offsetAlone->setShadowColor(kRed);
    EXPECT_EQ(shown(offsetAlone), paint(kPaper, {below, text}));

    const auto colorFirst = fresh();
    colorFirst->setShadowColor(kRed);
    EXPECT_EQ(shown(colorFirst), paint(kPaper, {above, text}));
    colorFirst->setShadowOffset({2, 3});
    EXPECT_EQ(shown(colorFirst), paint(kPaper, {below, text}));
    colorFirst->setShadowColor(kBlue);
    EXPECT_EQ(shown(colorFirst), paint(kPaper, {{14, 20, 8, 14, 'b'}, text}));
}

TEST_F(Label, WhatLiesOutsideOfTheBoundsIsCutOff) {
    // The line is 20 high in bounds of 8: its letters would be from -4 to 10.
    EXPECT_EQ(shown(label({{10, 20}, {40, 8}}, "H")), paint(kPaper, {{12, 20, 8, 8}}));
    for (const double scale : {2.0, 3.0}) {
        EXPECT_EQ(shown(label({{10, 20}, {40, 8}}, "H"), scale),
                  paint(kPaper, {{12, 20, 8, 8}}, scale));
    }
    // The shadow reaches beyond the left, the right and the lower edge.
    const auto some = label({{10, 10}, {12, 20}}, "H");
    some->setShadowColor(kRed);
    some->setShadowOffset({6, 8});
    EXPECT_EQ(shown(some), paint(kPaper, {{18, 20, 4, 10, 'r'}, {12, 12, 8, 14}}));
    some->setShadowOffset({-7, 0});
    EXPECT_EQ(shown(some), paint(kPaper, {{10, 12, 3, 14, 'r'}, {12, 12, 8, 14}}));
    some->setShadowOffset({0, 100});
    EXPECT_EQ(shown(some), paint(kPaper, {{12, 12, 8, 14}}));
    // Between two pixels what is seen ends there too: half of the first and of the last row.
    EXPECT_EQ(shown(label({{10, 20.5}, {40, 8}}, "H"), 2), paint(kPaper, {{12, 20.5, 8, 8}}, 2));
    EXPECT_EQ(shown(label({{10, 20.5}, {40, 8}}, "H")),
              paint(kPaper, {{12, 20, 8, 9, '?'}, {12, 21, 8, 7}}));
}

TEST_F(Label, OneWithAStyleDrawsBesideItsBounds) {
    const auto some = std::make_shared<DesktopLabel>(
        "H", TextStyle{.size = 20, .shadow = TextShadow{kRed, {0, 9}, 0}});
    some->setFrame({{10, 20}, {40, 8}});
    EXPECT_EQ(shown(some), paint(kPaper, {{12, 25, 8, 11, 'r'}, {12, 16, 8, 14}}));
}

TEST_F(Label, InATreeItIsWhereItsSuperviewsArePlaced) {
    const auto window = std::make_shared<DesktopView>(Rect{{7, 9}, {120, 60}});
    const auto outer = std::make_shared<DesktopView>(Rect{{20, 10}, {80, 40}});
    const auto inner = std::make_shared<DesktopView>(Rect{{5, -5}, {60, 30}});
    window->addSubview(outer);
    outer->addSubview(inner);
    inner->addSubview(label({{10, 5}, {40, 20}}, "H"));
    for (const double scale : {1.0, 2.0, 3.0}) {
        const PixelSize size{static_cast<std::size_t>(120 * scale),
                             static_cast<std::size_t>(60 * scale)};
        const auto context = DesktopGraphicsContext::create({.size = size, .scale = scale});
        window->layer()->renderInContext(context);
        EXPECT_EQ(lettersOf(context->pixels()), paint(kPaper, {{37, 12, 8, 14}}, scale));
    }
    // In a context that is moved.
    const auto moved = DesktopGraphicsContext::create({.size = {120, 60}});
    moved->translateCTM(-10, 4);
    window->layer()->renderInContext(moved);
    EXPECT_EQ(lettersOf(moved->pixels()), paint(kPaper, {{27, 16, 8, 14}}));
}

TEST_F(Label, FramesThatAreNoneDoNoHarm) {
    // A negative length goes the other way.
    EXPECT_EQ(shown(label({{50, 25}, {-40, -20}}, "H")), paint(kPaper, {{12, 7, 8, 14}}));
    for (const double number : {kNoNumber, kInfinity, -kInfinity}) {
        for (const Rect& frame :
             {Rect{{number, 0}, {40, 20}}, Rect{{0, number}, {40, 20}}, Rect{{0, 0}, {number, 20}},
              Rect{{0, 0}, {40, number}}, Rect{{number, number}, {number, number}}}) {
            EXPECT_EQ(shown(label(frame)), paint(kPaper, {}));
        }
    }
    for (const double number : {1e300, -1e300, 1e9, -1e9, 1e-300, 0.0}) {
        for (const Rect& frame :
             {Rect{{number, 0}, {40, 20}}, Rect{{0, number}, {40, 20}}, Rect{{0, 0}, {40, number}},
              Rect{{0, 0}, {number, 20}}, Rect{{0, 0}, {number, number}},
              Rect{{number, number}, {number, number}}}) {
            const auto some = label(frame);
            some->setTextAlignment(platform::TextAlignment::center);
            some->setShadowColor(kRed);
            EXPECT_NE(shown(some, 3), "");
        }
    }
}

TEST_F(Label, AVeryLongFrameIsAsSharpAsAShortOne) {
    // Its middle, where the text is, is at (60, 30).
    const auto wide = label({{60 - 50000, 20}, {100000, 20}}, "H");
    wide->setTextAlignment(platform::TextAlignment::center);
    EXPECT_EQ(shown(wide, 3), paint(kPaper, {{56, 22, 8, 14}}, 3));
    EXPECT_EQ(shown(label({{10, 20 - 5000}, {40, 10020}}, "H"), 3),
              paint(kPaper, {{12, 22, 8, 14}}, 3));
}

TEST_F(Label, ShadowsThatAreNoneLeaveTheText) {
    for (const double number : {kNoNumber, kInfinity, -kInfinity, 1e300, -1e300, 1e7}) {
        const auto some = label({{10, 10}, {40, 30}}, "H");
        some->setShadowColor(kBlack);
        some->setShadowOffset({number, number});
        EXPECT_EQ(shown(some), paint(kPaper, {{12, 17, 8, 14}})) << number;
    }
    const auto some = label({{10, 10}, {40, 30}}, "H");
    some->setShadowColor({kNoNumber, kInfinity, -kInfinity, kNoNumber});
    EXPECT_EQ(shown(some), paint(kPaper, {{12, 17, 8, 14}}));
    some->setTextColor({kNoNumber, -kInfinity, kNoNumber, kInfinity});
    EXPECT_EQ(shown(some), paint(kPaper, {{12, 17, 8, 14}}));
}

TEST_F(Label, HugeFontsAndTextsAreDrawnInNoTime) {
    const auto start = std::chrono::steady_clock::now();
    for (const double size : {300.0, 1e5, 1e9, 1e300, kInfinity}) {
        EXPECT_NE(shown(label({{0, 0}, {120, 60}}, "HHHHHHHH", size), 3), "");
        EXPECT_NE(shown(label({{0, 0}, {1e6, 1e6}}, "HHHHHHHH", size), 3), "");
    }
    EXPECT_NE(shown(label({{0, 0}, {120, 60}}, std::string(20'000'000, 'H'))), "");
    const auto some = label({{0, 0}, {120, 60}}, std::string(20'000'000, 'H'));
    EXPECT_EQ(shown(some), shown(label({{0, 0}, {120, 60}}, std::string(100, 'H'))));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    // Of a letter larger than its label what is seen of it: it begins 100 points from the side, and
    // reaches from 370 above the label to beyond it.
    EXPECT_EQ(shown(label({{0, 0}, {700, 60}}, "H", 1000)), paint(kPaper, {{100, 0, 20, 60}}));
}

}  // namespace velmoranth::desktop::label_test
