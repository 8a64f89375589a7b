// The platform's values in words.
#include "record/words.h"

#include "desktop/views/views.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace velmoranth::record::words_test {
namespace {

TEST(RecordWords, NumbersAreAsShortAsReadsBackTheSame) {
    EXPECT_EQ(words(60.0), "60");
    EXPECT_EQ(words(-0.0), "0");
    EXPECT_EQ(words(0.3), "0.3");
    EXPECT_EQ(words(static_cast<double>(0.3F)), "0.30000001192092896");
    EXPECT_EQ(words(0.3F), "0.3");
    EXPECT_EQ(words(std::nextafter(12.5, 13)), "12.500000000000002");
    EXPECT_EQ(words(std::numeric_limits<double>::infinity()), "inf");
}

TEST(RecordWords, PointsAreToldToSixDigits) {
    EXPECT_EQ(words(platform::Size{13.0 + 1.0 / 3, 60}), "13.3333×60");
    EXPECT_EQ(words(platform::Rect{{-1.5, 2}, {1e9, 0.25}}), "(-1.5, 2) 1e+09×0.25");
}

TEST(RecordWords, IconInfoIsToldInFull) {
    EXPECT_EQ(words(platform::SBIconImageInfo{{60, 61.5}, 3, 13.125}),
              "60×61.5 @3x, radius 13.125");
}

TEST(RecordWords, ModesAndPointers) {
    EXPECT_EQ(wordsOfMode(0755), "0755");
    EXPECT_EQ(wordsOfMode(07), "0007");
    const int something = 0;
    EXPECT_EQ(wordsOfPointer(&something), "set");
    EXPECT_EQ(wordsOfPointer(nullptr), "nil");
}

TEST(RecordWords, AnObjectWithANameIsCalledByIt) {
    struct NamedView final : desktop::DesktopView, Named {
        std::string name;

        std::string nameInRecords() const override { return name; }
    };

    NamedView view;
    view.setTag(5);
    EXPECT_EQ(words(view), "UIView #5") << "without one, like any other";
    view.name = "list";
    EXPECT_EQ(words(view), "list");
}

}  // namespace
}  // namespace velmoranth::record::words_test
