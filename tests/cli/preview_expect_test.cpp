// Comparing with a picture that was expected.
#include "cli/comparison.h"
#include "cli/expected_picture.h"
#include "tests/cli/preview_fixture.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli::preview_expect_test {
namespace {

namespace fs = std::filesystem;

using simulator::Picture;

// The red of a pixel that differs.
constexpr Color kMark{224, 16, 26};

Picture solid(std::size_t width, std::size_t height, std::uint8_t value) {
    return {width, height, 1, std::vector<std::uint8_t>(width * height * 4, value)};
}

TEST(Deviation, CountsPixelsWithAComponentBeyondTheTolerance) {
    const Picture expected = solid(3, 2, 100);
    Picture drawn = expected;
    drawn.pixels[0] = 103;          // the first pixel's blue
    drawn.pixels[4 * 4 + 1] = 90;   // the fifth one's green
    drawn.pixels[4 * 4 + 3] = 107;  // and its alpha
    for (const auto& [tolerance, pixels] :
         {std::pair(0, 2U), {2, 2U}, {3, 1U}, {9, 1U}, {10, 0U}}) {
        const Deviation deviation = deviationOf(drawn, expected, tolerance);
        EXPECT_TRUE(deviation.isSameSize);
        EXPECT_EQ(deviation.pixels, pixels) << tolerance;
        EXPECT_EQ(deviation.largest, 10);
        EXPECT_EQ(deviation.isNone(), pixels == 0);
    }
    EXPECT_EQ(deviationOf(drawn, expected, 0).text(3, 2), "2 pixels differ, by up to 10 of 255");
    EXPECT_EQ(deviationOf(drawn, expected, 9).text(3, 2), "1 pixel differs, by up to 10 of 255");
}

TEST(Deviation, PicturesOfOtherSizesAreNotCompared) {
    for (const Picture& other : {solid(4, 2, 100), solid(3, 3, 100)}) {
        const Deviation deviation = deviationOf(solid(3, 2, 100), other, 255);
        EXPECT_FALSE(deviation.isNone());
        EXPECT_FALSE(deviation.isSameSize);
    }
    EXPECT_EQ(deviationOf(solid(3, 2, 0), solid(4, 5, 0), 0).text(3, 2),
              "it is 3 × 2 pixels, not 4 × 5");
}

TEST(Deviation, DifferenceIsRedOnThePalePicture) {
    const Picture expected = solid(2, 1, 100);
    Picture drawn = expected;
    drawn.pixels[4] = 101;
    const Picture marked = differencePicture(drawn, expected, 0);
    EXPECT_EQ(marked.pixels,
              (std::vector<std::uint8_t>{216, 216, 216, 216, 0x1A, 0x10, 0xE0, 255}));
    EXPECT_EQ(differencePicture(drawn, expected, 1).pixels[4], 216);
    EXPECT_EQ(differencePicture(solid(1, 1, 255), solid(1, 1, 255), 0), solid(1, 1, 254));
}

TEST(Deviation, DifferenceLiesBesideThePicture) {
    EXPECT_EQ(differenceFile("preview.png"), "preview-difference.png");
    EXPECT_EQ(differenceFile("a.b/x"), "a.b/x-difference");
}

TEST(Comparison, RowsLieBelowEachOther) {
    const Picture a = solid(10, 20, 1);
    const Picture b = solid(30, 5, 2);
    const Picture c = solid(60, 7, 3);
    // A line for captions, one for a title, and none for neither.
    const std::vector<CaptionedRow> rows{
        {"", {{a, "a"}, {b, ""}}}, {"TTT", {{c, ""}}}, {"", {{a, ""}}}, {"T", {{a, "a"}}}};
    const Arranged sheet = inRows(rows);
    EXPECT_EQ(
        sheet.places,
        (std::vector<Placed>{
            {0, 28, 10, 20}, {22, 28, 30, 5}, {0, 76, 60, 7}, {0, 83, 10, 20}, {0, 159, 10, 20}}));
    EXPECT_EQ(sheet.picture.width, 60U);
    EXPECT_EQ(sheet.picture.height, 179U);
    const auto at = [&](std::size_t x, std::size_t y) {
        return int{sheet.picture.pixels[(y * 60 + x) * 4]};
    };
    EXPECT_EQ(at(0, 28), 1);
    EXPECT_EQ(at(9, 47), 1);
    EXPECT_EQ(at(22, 28), 2);
    EXPECT_EQ(at(51, 32), 2);
    EXPECT_EQ(at(59, 82), 3);
    for (const auto& [x, y] : {std::pair(10, 28), {21, 30}, {22, 33}, {52, 28}, {0, 48}, {0, 75}}) {
        EXPECT_EQ(at(static_cast<std::size_t>(x), static_cast<std::size_t>(y)), 0xF4)
            << x << "," << y;
    }
    const auto hasInk = [&](std::size_t x, std::size_t y) {
        for (std::size_t i = 0; i < 10 * std::size_t{28}; ++i) {
            if (at(x + i % 10, y + i / 10) != 0xF4) {
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(hasInk(0, 0)) << "the first caption";
    EXPECT_FALSE(hasInk(30, 0)) << "which the second picture has none of";
    EXPECT_TRUE(hasInk(0, 48)) << "a title, at the left";
    EXPECT_FALSE(hasInk(50, 48));
    EXPECT_TRUE(hasInk(0, 103)) << "a title";
    EXPECT_TRUE(hasInk(0, 131)) << "above captions";
}

TEST(Comparison, AMarginLiesAroundAllRows) {
    const Picture a = solid(10, 20, 1);
    const Picture b = solid(30, 5, 2);
    const std::vector<CaptionedRow> rows{{"", {{a, "a"}}}, {"", {{b, "b"}}}};
    const Arranged sheet = inRows(rows, 7);
    EXPECT_EQ(sheet.places, (std::vector<Placed>{{7, 35, 10, 20}, {7, 90, 30, 5}}));
    EXPECT_EQ(sheet.picture.width, 44U);
    EXPECT_EQ(sheet.picture.height, 102U);
}

TEST(Comparison, PicturesShrinkInProportion) {
    Picture striped = solid(300, 800, 0);
    for (std::size_t i = 0; i < striped.pixels.size(); ++i) {
        striped.pixels[i] = i / (300 * 4) % 2 == 0 ? 0 : 200;
    }
    striped.scale = 3;
    const Picture small = shrunkToWidth(striped, 150);
    EXPECT_EQ(small.width, 150U);
    EXPECT_EQ(small.height, 400U);
    EXPECT_EQ(small.scale, 1);
    EXPECT_EQ(small.pixels, std::vector<std::uint8_t>(150 * 400 * 4, 100));
    EXPECT_EQ(shrunkToWidth(solid(800, 1, 9), 100).height, 1U);
}

class PreviewExpect : public PreviewTest {
  protected:
    PreviewExpect() {
        theme("A.theme", kMagenta);
        theme("B.theme", kLime);
        EXPECT_EQ(preview({"../A.theme", "-o", "expected.png"}).code, 0);
    }
};

TEST_F(PreviewExpect, SamePictureIsAsExpected) {
    const CommandResult result = preview({"../A.theme", "--expect", "expected.png"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "preview.png: 1125 × 2436 pixels, iOS 13.3, phone\n"
              "preview.png: as in expected.png\n");
    EXPECT_EQ(folder.names("work"), "expected.png preview.png");
}

TEST_F(PreviewExpect, AnotherPictureEndsWithOneAndShowsWhere) {
    const CommandResult result =
        preview({"../B.theme", "--expect", "expected.png", "-o", "new.png"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.errors, "");
    const int marked = picture("work/new-difference.png").count(kMark);
    EXPECT_GT(marked, 10000);
    EXPECT_EQ(result.output,
              "new.png: 1125 × 2436 pixels, iOS 13.3, phone\n"
              "new.png: not as in expected.png: " +
                  std::to_string(marked) +
                  " pixels differ, by up to 255 of 255, see new-difference.png\n");
    EXPECT_GT(picture("work/new.png").count(kLime), 10000) << "it is written all the same";
}

TEST_F(PreviewExpect, SmallDifferencesAreTolerated) {
    theme("C.theme", {253, 2, 254});
    const CommandResult result =
        preview({"../C.theme", "--expect", "expected.png", "--tolerance", "2"});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.output.ends_with("preview.png: as in expected.png, within 2 of 255\n"))
        << result.output;
    EXPECT_EQ(folder.names("work"), "expected.png preview.png");
    EXPECT_EQ(preview({"../C.theme", "--expect", "expected.png", "--tolerance", "1"}).code, 1);
}

TEST_F(PreviewExpect, PictureOfAnotherSizeIsAnother) {
    const CommandResult result =
        preview({"../A.theme", "--expect", "expected.png", "--device", "phone-667"});
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(result.output.ends_with(
        "preview.png: not as in expected.png: it is 750 × 1334 pixels, not 1125 × 2436\n"));
    EXPECT_EQ(folder.names("work"), "expected.png preview.png");
}

TEST_F(PreviewExpect, PictureThatIsNotThereIsSaid) {
    const CommandResult result = preview({"../A.theme", "--expect", "no.png"});
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(
        result.output.ends_with("preview.png: nothing to compare with: there is no no.png\n"));
}

TEST_F(PreviewExpect, FileThatIsNoPictureIsNamed) {
    folder.file("work/no.png", "no");
    const CommandResult result = preview({"../A.theme", "--expect", "no.png"});
    EXPECT_EQ(result.code, 3);
    EXPECT_TRUE(result.errors.starts_with("velmoranth: error: no.png: ")) << result.errors;
}

TEST_F(PreviewExpect, WhatIsExpectedIsNotWrittenOver) {
    fs::create_symlink("expected.png", folder / "work/link.png");
    const std::string before = folder.contents("work/expected.png");
    for (const char* const name : {"expected.png", "./expected.png", "link.png"}) {
        const CommandResult result =
            preview({"../B.theme", "--expect", name, "-o", "expected.png"});
        EXPECT_EQ(result.code, 2);
        EXPECT_EQ(result.errors,
                  "velmoranth: error: --expect and --output are the same, expected.png: what is "
                  "expected would be written over\n");
    }
    EXPECT_TRUE(folder.contents("work/expected.png") == before);
}

TEST_F(PreviewExpect, JsonHasTheVerdict) {
    const CommandResult result = preview({"../B.theme", "--expect", "expected.png", "--json"});
    EXPECT_EQ(result.code, 1);
    const auto expected = nlohmann::json::parse(result.output)["pictures"][0]["expected"];
    EXPECT_EQ(expected["file"], "expected.png");
    EXPECT_EQ(expected["isThere"], true);
    EXPECT_EQ(expected["isAsExpected"], false);
    EXPECT_EQ(expected["isSameSize"], true);
    EXPECT_EQ(expected["pixels"], picture("work/preview-difference.png").count(kMark));
    EXPECT_EQ(expected["largest"], 255);
    EXPECT_EQ(expected["difference"], "preview-difference.png");
}

TEST_F(PreviewExpect, SheetsAreComparedToo) {
    const std::vector<std::string> sheet{"--sheet", "--screen", "home,settings", "--device",
                                         "phone"};
    const auto drawn = [&](std::vector<std::string> words) {
        words.insert(words.end(), sheet.begin(), sheet.end());
        return preview(words);
    };
    ASSERT_EQ(drawn({"../A.theme", "-o", "sheet.png"}).code, 0);
    EXPECT_EQ(drawn({"../A.theme", "--expect", "sheet.png"}).code, 0);
    EXPECT_EQ(drawn({"../B.theme", "--expect", "sheet.png"}).code, 1);
}

TEST_F(PreviewExpect, AllScreensAreComparedWithAFolder) {
    const auto draw = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"../A.theme", "--all-screens", "--device", "phone-667"});
        return preview(words);
    };
    ASSERT_EQ(draw({"-o", "before"}).code, 0);
    folder.file("work/before/notes.txt", "");
    EXPECT_EQ(draw({"--expect", "before"}).code, 0);
    const std::string today = folder.contents("work/before/today.png");
    fs::rename(folder / "work/before/today.png", folder / "work/before/old.png");
    const CommandResult result = draw({"--expect", "before"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.errors,
              "velmoranth: 1 of 20 pictures is not as expected\n"
              "velmoranth: before/old.png is expected, and no screen has that picture\n");
    EXPECT_NE(result.output.find(
                  "preview/today.png: nothing to compare with: there is no before/today.png\n"),
              std::string::npos);
    EXPECT_NE(result.output.find("preview/home-02.png: as in before/home-02.png\n"),
              std::string::npos);
    folder.file("work/before/today.png", today);
    EXPECT_EQ(draw({"--expect", "before"}).code, 1) << "for the one that no screen has";
    expectBadInput({"../A.theme", "--all-screens", "--expect", "expected.png"},
                   "expected.png: --all-screens compares with a folder of pictures, and this is "
                   "none");
}

}  // namespace
}  // namespace velmoranth::cli::preview_expect_test
