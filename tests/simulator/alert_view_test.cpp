#include "simulator/toolkit/alert_view.h"

#include "simulator/device.h"
#include "simulator/toolkit/view_kit.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::simulator::alert_view_test {
namespace {

using desktop::DesktopAlertAction;
using desktop::DesktopAlertController;
using platform::AlertActionStyle;
using platform::NullableString;

std::shared_ptr<DesktopAlertController> alert(const NullableString& title,
                                              const NullableString& message,
                                              const std::vector<std::string>& buttons) {
    auto made = std::make_shared<DesktopAlertController>(title, message,
                                                         platform::AlertControllerStyle::alert);
    for (const std::string& button : buttons) {
        made->addAction(
            std::make_shared<DesktopAlertAction>(button, AlertActionStyle::normal, nullptr));
    }
    return made;
}

DeviceConfiguration phone() {
    return deviceConfiguration("phone-667", 13).value();
}

std::vector<std::string> lines(const std::string& text, double width, std::size_t most = 100) {
    return brokenIntoLines(text, textStyle(13, platform::kBlackColor), width, most);
}

double widthOf(const std::string& text) {
    return desktop::measureText(text, textStyle(13, platform::kBlackColor)).width;
}

using Lines = std::vector<std::string>;

TEST(BrokenIntoLines, BreaksAtBlanks) {
    const double room = widthOf("one two") + 1;
    EXPECT_EQ(lines("one two three four", room), (Lines{"one two", "three", "four"}));
    EXPECT_EQ(lines("one two", room), Lines{"one two"});
    EXPECT_EQ(lines("one two   three", room), (Lines{"one two", "three"}));
    EXPECT_EQ(lines("", room), Lines{});
    EXPECT_EQ(lines("a\n\nb", room), (Lines{"a", "", "b"}));
}

TEST(BrokenIntoLines, BreaksAWordThatIsTooLongBetweenCharacters) {
    const std::string word = "ééééééééééééééééééééééé";
    std::string joined;
    for (const std::string& line : lines(word, 30)) {
        EXPECT_LE(widthOf(line), 30);
        EXPECT_EQ(line.size() % 2, 0U);
        joined += line;
    }
    EXPECT_EQ(joined, word);
    // One character at least.
    EXPECT_EQ(lines("abc", 1), (Lines{"a", "b", "c"}));
    EXPECT_EQ(lines("abc", -1), (Lines{"a", "b", "c"}));
}

TEST(BrokenIntoLines, TheLastLineHasTheRest) {
    EXPECT_EQ(lines("a b c d", 1, 2), (Lines{"a", "b c d"}));
    EXPECT_EQ(lines("a b", 1, 0), Lines{});
    // Bytes that are no text, and much of them.
    EXPECT_EQ(lines("\x80\xFF\x80 \xC3", 500), Lines{"\x80\xFF\x80 \xC3"});
    EXPECT_EQ(lines(std::string(100'000, 'x'), 100, 30).size(), 30U);
    EXPECT_EQ(lines(std::string(1000, ' '), 100, 30).size(), 1U);
}

TEST(AlertView, ACardOfTwoHundredAndSeventyPointsStandsInTheMiddle) {
    const AlertView view(alert("T", "A message", {"OK"}), phone());
    EXPECT_EQ(view.view()->frame().size.height, 667);
    EXPECT_EQ(view.card().size.width, 270);
    EXPECT_EQ(view.card().origin.x, 52.5);
    EXPECT_NEAR(view.card().origin.y + view.card().size.height / 2, 333.5, 0.5);
    // A line more is a line higher.
    const AlertView higher(alert("T", "A message\nof two lines", {"OK"}), phone());
    EXPECT_EQ(higher.card().size.height, view.card().size.height + 16);
    const AlertView untitled(alert(std::nullopt, "A message", {"OK"}), phone());
    EXPECT_LT(untitled.card().size.height, view.card().size.height);
}

TEST(AlertView, ButtonsStandSideBySideOrBelowEachOther) {
    const AlertView two(alert("T", "M", {"A", "B"}), phone());
    ASSERT_EQ(two.buttons().size(), 2U);
    EXPECT_EQ(two.buttons()[0].frame.size.width, 135);
    EXPECT_EQ(two.buttons()[1].frame.origin.x, two.card().origin.x + 135);
    EXPECT_EQ(two.buttons()[1].frame.origin.y, two.buttons()[0].frame.origin.y);
    const AlertView three(alert("T", "M", {"A", "B", "C"}), phone());
    EXPECT_EQ(three.buttons()[2].frame.size.width, 270);
    EXPECT_EQ(three.buttons()[2].frame.origin.y, three.buttons()[0].frame.origin.y + 88);
    const auto& last = three.buttons()[2].frame;
    EXPECT_EQ(three.actionAt({last.origin.x + 1, last.origin.y + 43}), three.buttons()[2].action);
    EXPECT_EQ(three.actionAt({last.origin.x + 1, last.origin.y + 44}), nullptr);
    EXPECT_EQ(three.actionAt({last.origin.x - 1, last.origin.y + 4}), nullptr);
    const AlertView none(alert("T", "M", {}), phone());
    EXPECT_EQ(none.buttons().size(), 0U);
}

TEST(AlertView, LongTextsStayOnTheScreen) {
    std::string text;
    for (int i = 0; i < 2000; ++i) {
        text += "word ";
    }
    const AlertView view(alert(text, text, {"OK"}), phone());
    EXPECT_GE(view.card().origin.y, 40);
    EXPECT_LE(view.card().origin.y + view.card().size.height, 667 - 40);
}

}  // namespace
}  // namespace velmoranth::simulator::alert_view_test
