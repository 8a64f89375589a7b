// What was done to a picture, told once where it was done several times.
#include "cli/drawing_steps.h"

#include "tests/cli/explain_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace velmoranth::cli::drawing_steps_test {
namespace {

// A step a letter.
std::vector<DrawingStep> steps(const std::string& letters) {
    std::vector<DrawingStep> all;
    for (const char letter : letters) {
        all.push_back({"drawn", "message", {}, std::string(1, letter)});
    }
    return all;
}

std::string beginning(const std::string& letters) {
    const std::vector<DrawingStep> all = steps(letters);
    const RepeatedSteps repeated = repeatedSteps(all);
    std::string text = std::to_string(repeated.times);
    for (const DrawingStep& step : repeated.steps) {
        text += step.after;
    }
    return text;
}

TEST(RepeatedSteps, AreTheFewestThatFollowAgainAtOnce) {
    EXPECT_EQ(beginning("a"), "1a");
    EXPECT_EQ(beginning("aa"), "2a");
    EXPECT_EQ(beginning("aaab"), "3a");
    EXPECT_EQ(beginning("abab"), "2ab");
    EXPECT_EQ(beginning("ababa"), "2ab");
    EXPECT_EQ(beginning("abcabcabcabcab"), "4abc");
    EXPECT_EQ(beginning("abc"), "1a") << "none";
    EXPECT_EQ(beginning("abcb"), "1a") << "not at once";
    EXPECT_EQ(beginning("abcbc"), "1a") << "not from the first on";
}

class DrawnSteps : public ExplainTest {};

TEST_F(DrawnSteps, StandOnceWithACount) {
    picture("A/IconBundles/com.apple.mobilecal-large.png");
    picture(std::string("A") + kMask, 60, kBlack);
    const CommandResult result = explain({"A", "--", "calendar"});
    EXPECT_NE(result.output.find("\n           cut out: 180×180 pixels, 60×60 mask → 180×180 "
                                 "pixels (5 times)\n"),
              std::string::npos)
        << result.output;
    EXPECT_EQ(object({"A", "--", "calendar"}).at("drawn").size(), std::size_t{18});
}

TEST_F(DrawnSteps, OfNoOtherPictureHaveNoArrow) {
    folder.file("work/A/a");
    const CommandResult result = explain({"A", "--", "calendar"});
    EXPECT_NE(result.output.find("\ndrawn      redrawn: 60×60 @3x (6 times)\nsize "),
              std::string::npos)
        << result.output;
}

}  // namespace
}  // namespace velmoranth::cli::drawing_steps_test
