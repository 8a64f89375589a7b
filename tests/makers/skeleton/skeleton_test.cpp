// What a skeleton has for places as a device tells of them.
#include "makers/skeleton/skeleton.h"

#include "desktop/image_io/image_io.h"
#include "desktop/plist/property_lists.h"
#include "simulator/artwork/artwork.h"
#include "simulator/device.h"

#include "makers/skeleton/fitted_pictures.h"
#include "makers/skeleton/unlike_pictures.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers::skeleton_test {
namespace {

using simulator::Picture;
using simulator::Question;

constexpr double kScale = 3;

Picture square(std::size_t side, std::uint8_t gray = 9) {
    Picture picture{.width = side, .height = side, .scale = kScale, .pixels = {}};
    picture.pixels.assign(side * side * 4, gray);
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4) {
        picture.pixels[i] = 255;
    }
    return picture;
}

Place place(Question question, std::vector<std::string> names, std::optional<Picture> picture) {
    return {
        .question = std::move(question), .names = std::move(names), .picture = std::move(picture)};
}

// "name" for each file, "name: why" for each that is left out.
std::string contents(const Skeleton& skeleton) {
    std::string text;
    for (const auto& [name, file] : skeleton.files()) {
        text += name + "\n";
    }
    for (const EmptyPlace& empty : skeleton.empty()) {
        text += empty.name + ": " + empty.why + "\n";
    }
    return text;
}

std::string contentsFor(const std::vector<Place>& places,
                        UnlikePictures unlike = UnlikePictures::leftOut) {
    Skeleton skeleton(unlike);
    EXPECT_TRUE(skeleton.add(places, kScale));
    return contents(skeleton);
}

std::size_t widthOf(const Skeleton& skeleton, const std::string& name) {
    const auto image = desktop::decodeImage(skeleton.files().at(name).bytes);
    return image ? image->layout.width : 0;
}

TEST(SkeletonName, isTheFirstThatNamesTheScreensScale) {
    const std::vector<std::string> bundle{"B/a@3x.png", "B/a@2x.png", "B/a.png", "B/a"};
    EXPECT_EQ(nameAtScale(bundle, 3), "B/a@3x.png");
    EXPECT_EQ(nameAtScale(bundle, 2), "B/a@2x.png");
    EXPECT_EQ(nameAtScale(bundle, 1), "B/a.png");
    const std::vector<std::string> plain{"Info.plist", "I/a-large.png", "I/b.png"};
    EXPECT_EQ(nameAtScale(plain, 3), "I/a-large.png");
    const std::vector<std::string> other{"B/a@2x.png", "B/a"};
    EXPECT_EQ(nameAtScale(other, 3), "");
    EXPECT_EQ(nameAtScale({}, 3), "");
}

TEST(Skeleton, ofSeveralPlacesWithAFileTheLargestPictureIsTaken) {
    Skeleton skeleton(UnlikePictures::leftOut);
    ASSERT_TRUE(
        skeleton.add(std::vector{place({"miniature", "a", ""}, {"I/a-large.png"}, square(39, 1)),
                                 place({"icon", "a", ""}, {"I/a-large.png"}, square(180, 2)),
                                 place({"widget", "a", ""}, {"I/a-large.png"}, square(60, 3))},
                     kScale));
    ASSERT_EQ(contents(skeleton), "I/a-large.png\n");
    const SkeletonFile& file = skeleton.files().begin()->second;
    EXPECT_EQ(file.question.word, "icon");
    EXPECT_EQ(file.width, 180U);
    EXPECT_EQ(file.height, 180U);
    const auto image = desktop::decodeImage(file.bytes);
    ASSERT_TRUE(image);
    EXPECT_EQ(desktop::toPremultipliedBgra(*image), square(180, 2).pixels);
}

TEST(Skeleton, whatIsServedAlreadyGetsNoSecondFile) {
    Place served = place({"image", "a", ""}, {"U/a@3x.png"}, square(9));
    served.isServed = true;
    EXPECT_EQ(contentsFor({served}), "");
    Skeleton skeleton(UnlikePictures::leftOut);
    ASSERT_TRUE(skeleton.add(std::vector{place({"image", "a", ""}, {"U/a@3x.png"}, square(9))}, 3));
    ASSERT_TRUE(
        skeleton.add(std::vector{place({"image", "a", ""}, {"U/a@3x.png"}, square(12))}, 3));
    EXPECT_EQ(widthOf(skeleton, "U/a@3x.png"), 9U);
}

TEST(Skeleton, whatWouldShowOtherwiseIsLeftOutUnlessItIsWanted) {
    const Place like = place({"image", "gear", ""}, {"U/gear@3x.png"}, square(9));
    Place unlike = place({"symbol", "gear", ""}, {"U/gear@3x.png"}, square(9));
    unlike.unlike = "it is filled";
    Place again = unlike;
    again.unlike = "it is stretched";
    EXPECT_EQ(contentsFor({like, unlike, again}), "U/gear@3x.png: it is filled\n");
    EXPECT_EQ(contentsFor({like, unlike, again}, UnlikePictures::taken), "U/gear@3x.png\n");
}

TEST(Skeleton, whatAnotherDeviceHasIsNotLeftOut) {
    Place pad = place({"icon", "a", ""}, {"I/a-large.png"}, square(9));
    pad.unlike = "not on a pad";
    const Place phone = place({"icon", "a", ""}, {"I/a-large.png"}, square(9));
    for (const auto& [first, second] : {std::pair(pad, phone), std::pair(phone, pad)}) {
        Skeleton skeleton(UnlikePictures::leftOut);
        ASSERT_TRUE(skeleton.add(std::vector{first}, kScale));
        ASSERT_TRUE(skeleton.add(std::vector{second}, kScale));
        EXPECT_EQ(contents(skeleton), "I/a-large.png\n");
    }
}

TEST(UnlikePictures, areToldByTheQuestionAndTheDevice) {
    const auto why = [](const char* device, Question question) {
        return whyUnlike(question, *simulator::deviceConfiguration(device, 13));
    };
    for (const char* const device : {"phone", "phone-667", "pad"}) {
        EXPECT_EQ(why(device, {"symbol", "gear", ""}), kFilledWithColor);
        EXPECT_EQ(why(device, {"image", "UITabBarSearch", ""}), kFilledWithColor);
        EXPECT_EQ(why(device, {"badge", "", ""}),
                  "the system draws it as wide as the number, and a theme's picture is stretched");
        for (const Question& question :
             {Question{"icon", "com.apple.Maps", ""}, Question{"dot", "current", ""},
              Question{"image", "UIButtonBarTrash", ""}, Question{"mask", "", ""},
              Question{"folder", "", ""}, Question{"miniature", "com.apple.mobilecal", ""}}) {
            EXPECT_EQ(why(device, question), "") << question.word;
        }
    }
    const std::string_view bare = "a pad shows a theme's picture without weekday and day";
    for (const Question& question :
         {Question{"calendar", "", ""}, Question{"icon", "com.apple.mobilecal", ""}}) {
        EXPECT_EQ(why("pad", question), bare);
        EXPECT_EQ(why("phone", question), "");
        EXPECT_EQ(why("phone-667", question), "");
    }
}

TEST(Skeleton, whatHasNoPictureIsToldOfWhereItIsAPartOfTheHomeScreen) {
    Place hoped = place({"image", "b", "B"}, {"B/b@3x.png"}, std::nullopt);
    hoped.why = "the catalog is broken";
    EXPECT_EQ(contentsFor({place({"behind", "", ""}, {"B/behind@3x.png"}, std::nullopt),
                           place({"image", "a", "B"}, {"B/a@3x.png"}, std::nullopt),
                           place({"overlay", "", ""}, {"O/o.png"}, Picture{}), hoped}),
              "B/b@3x.png: the catalog is broken\n"
              "B/behind@3x.png: the system has no picture there\n"
              "O/o.png: the system has no picture there\n");
}

TEST(Skeleton, whatIsLeftOutHasANameWithOneEnding) {
    const std::vector<std::string> names{"B/a.png@3x.png", "B/a.png.png", "B/a.png"};
    const Place empty = place({"behind", "", ""}, names, std::nullopt);
    EXPECT_EQ(contentsFor({empty}), "B/a.png: the system has no picture there\n");
    // Another device has it, under the name for its screen.
    Skeleton skeleton(UnlikePictures::leftOut);
    ASSERT_TRUE(skeleton.add(std::vector{empty}, kScale));
    ASSERT_TRUE(skeleton.add(std::vector{place({"behind", "", ""}, names, square(3))}, kScale));
    EXPECT_EQ(contents(skeleton), "B/a.png@3x.png\n");
}

TEST(Skeleton, noNameLeadsOutOfTheTheme) {
    const std::string longest(255, 'a');
    for (const std::string& name :
         {std::string("B/../../a@3x.png"), std::string("/a@3x.png"), std::string("B//a@3x.png"),
          std::string("B/./a@3x.png"), std::string("B/a\n@3x.png"), std::string("../a@3x.png"),
          "B/" + longest + "@3x.png"}) {
        EXPECT_EQ(contentsFor({place({"image", "a", "B"}, {name}, square(3))}),
                  name + ": no file can have its name\n");
    }
    EXPECT_EQ(contentsFor({place({"image", "..a", "B"}, {"B/..a@3x.png"}, square(3))}),
              "B/..a@3x.png\n");
}

// Before iOS 13 nobody asks for the calendar by itself.
TEST(Skeleton, theCalendarsIconHasNoDayThatWouldBeWrittenOver) {
    Skeleton skeleton(UnlikePictures::leftOut);
    const std::vector<std::string> names{"Info.plist", "I/com.apple.mobilecal-large.png"};
    ASSERT_TRUE(skeleton.add(
        std::vector{place({"notification", "com.apple.mobilecal", ""}, names, square(240)),
                    place({"icon", "com.apple.mobilecal", ""}, names, square(180))},
        kScale));
    EXPECT_EQ(contents(skeleton), "I/com.apple.mobilecal-large.png\nInfo.plist\n");
    EXPECT_EQ(skeleton.files().at(names.back()).bytes, bareCalendar(180));
}

// Masks and the calendar are no pictures as they stand: what else asks for the file does not count.
TEST(Skeleton, theMaskIsMadeForTheIconsWhateverElseLooksForIt) {
    Skeleton skeleton(UnlikePictures::leftOut);
    ASSERT_TRUE(skeleton.add(std::vector{place({"pressed", "", ""}, {"M/Mask@3x.png"}, square(240)),
                                         place({"mask", "", ""}, {"M/Mask@3x.png"}, std::nullopt),
                                         place({"pressed", "", ""}, {"M/Mask@3x.png"}, square(240)),
                                         place({"icon", "a", ""}, {"I/a-large.png"}, square(60))},
                             kScale));
    EXPECT_EQ(contents(skeleton), "I/a-large.png\nM/Mask@3x.png\n");
    EXPECT_EQ(skeleton.files().at("M/Mask@3x.png").bytes, widenedMask(60));
}

TEST(Skeleton, theCalendarIsBareAndTheListSaysHowItIsWritten) {
    Skeleton skeleton(UnlikePictures::leftOut);
    ASSERT_TRUE(skeleton.add(
        std::vector{place({"icon", "cal", ""}, {"Info.plist", "I/cal-large.png"}, square(240)),
                    place({"calendar", "", ""}, {"Info.plist", "I/cal-large.png"}, square(180)),
                    place({"widget", "cal", ""}, {"I/cal-large.png"}, square(240))},
        kScale));
    EXPECT_EQ(contents(skeleton), "I/cal-large.png\nInfo.plist\n");
    EXPECT_EQ(skeleton.files().at("I/cal-large.png").bytes, bareCalendar(180));
    EXPECT_EQ(skeleton.files().at("Info.plist").bytes,
              desktop::writeXmlPropertyList(platform::PropertyList(skeletonInfo(60, kScale))));
}

TEST(FittedPictures, theMaskShowsAllOfTheShapeAndHidesTheCorners) {
    for (const std::size_t side : {60U, 120U, 180U}) {
        const auto mask = desktop::decodeImage(widenedMask(side));
        ASSERT_TRUE(mask);
        ASSERT_EQ(mask->layout.width, side);
        const auto shape = simulator::iconShapeCoverage(static_cast<int>(side));
        std::size_t hidden = 0;
        for (std::size_t i = 0; i < shape.size(); ++i) {
            ASSERT_TRUE((*mask->samples)[i] == 0 || (*mask->samples)[i] == 255);
            ASSERT_FALSE(shape[i] > 0 && (*mask->samples)[i] != 0) << i;
            hidden += (*mask->samples)[i] != 0;
        }
        EXPECT_GT(hidden, side / 10);
        EXPECT_EQ(mask->samples->front(), 255);
    }
}

TEST(FittedPictures, theListPlacesTheLinesInProportionToTheIcon) {
    const auto number = [](const platform::Dictionary& info, const char* section, const char* key) {
        return *info.at(section).as<platform::Dictionary>()->at(key).as<double>();
    };
    const platform::Dictionary phone = skeletonInfo(60, kScale);
    const platform::Dictionary pad = skeletonInfo(90, kScale);
    EXPECT_DOUBLE_EQ(number(phone, "CalendarIconDaySettings", "FontSize"), 10.5);
    // As large as their boxes have room for.
    EXPECT_DOUBLE_EQ(number(pad, "CalendarIconDaySettings", "FontSize"), 10.5);
    EXPECT_DOUBLE_EQ(number(skeletonInfo(30, 2), "CalendarIconDaySettings", "FontSize"), 5.25);
    EXPECT_DOUBLE_EQ(number(phone, "CalendarIconDateSettings", "FontSize"), 39.2);
    // The boxes are 12 and 30 points high, whatever the icon, and lie just under half a pixel low.
    const double low = 0.49 / kScale;
    EXPECT_DOUBLE_EQ(number(pad, "CalendarIconDaySettings", "TextYoffset") + 6 - low,
                     1.5 * (number(phone, "CalendarIconDaySettings", "TextYoffset") + 6 - low));
    EXPECT_DOUBLE_EQ(number(pad, "CalendarIconDateSettings", "TextYoffset") + 15 - low,
                     1.5 * (number(phone, "CalendarIconDateSettings", "TextYoffset") + 15 - low));
    EXPECT_NEAR(number(skeletonInfo(60, 2), "CalendarIconDaySettings", "TextYoffset") -
                    number(phone, "CalendarIconDaySettings", "TextYoffset"),
                0.49 / 2 - low, 1e-9);
    EXPECT_TRUE(*phone.at("IB-MaskIcons").as<bool>());
    EXPECT_EQ(*phone.at("CalendarIconDaySettings")
                   .as<platform::Dictionary>()
                   ->at("TextColor")
                   .as<std::string>(),
              "FC4039");
}

}  // namespace
}  // namespace velmoranth::makers::skeleton_test
