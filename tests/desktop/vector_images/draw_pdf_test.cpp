#include "desktop/vector_images/vector_images.h"

#include "vector_files.h"
#include <gtest/gtest.h>

#include <cmath>

namespace velmoranth::desktop::draw_pdf_test {
namespace {

class DrawPdf : public testing::Test {
  protected:
    void SetUp() override {
        if (!hasLibrary("pdftocairo")) {
            GTEST_SKIP() << "there is no pdftocairo here";
        }
    }
};

// Red from (2, 1) to (5, 4), from the bottom left.
constexpr const char* kRedSquare = "1 0 0 rg 2 1 3 3 re f";

TEST_F(DrawPdf, SizeIsThatOfTheCropBox) {
    const auto whole = vectorSize(pdf({{.mediaBox = "0 0 24.5 17.25", .content = ""}}));
    ASSERT_TRUE(whole) << whole.error().message;
    EXPECT_EQ(*whole, (PointSize{24.5, 17.25}));
    const auto cropped =
        vectorSize(pdf({{.mediaBox = "0 0 24 17", .content = "", .more = "/CropBox[2 3 10 4]"}}));
    ASSERT_TRUE(cropped) << cropped.error().message;
    EXPECT_EQ(*cropped, (PointSize{8, 1}));
}

TEST_F(DrawPdf, SizeIsThatOfTheTurnedPage) {
    const auto size = vectorSize(pdf({{.content = "", .more = "/Rotate 90"}}));
    ASSERT_TRUE(size) << size.error().message;
    EXPECT_EQ(*size, (PointSize{8, 10}));
}

TEST_F(DrawPdf, EveryPixelIsRightAtWholeScales) {
    const FileBytes file = pdf({{.content = kRedSquare}});
    for (const std::uint32_t scale : {1U, 2U, 3U}) {
        const auto image = drawVector(file, scale);
        ASSERT_TRUE(image) << image.error().message;
        ASSERT_EQ(image->width, 10 * scale);
        ASSERT_EQ(image->height, 8 * scale);
        ASSERT_EQ(image->bgra.size(), std::size_t{80} * 4 * scale * scale);
        for (std::uint32_t y = 0; y < image->height; ++y) {
            for (std::uint32_t x = 0; x < image->width; ++x) {
                const bool inside =
                    x / scale >= 2 && x / scale < 5 && y / scale >= 4 && y / scale < 7;
                ASSERT_EQ(pixel(*image, x, y), inside ? kRed : kNothing) << x << ", " << y;
            }
        }
    }
}

TEST_F(DrawPdf, ScalesBetweenWholeOnes) {
    const auto image = drawVector(pdf({{.content = kRedSquare}}), 1.5);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 15U);
    EXPECT_EQ(image->height, 12U);
    // The square spans columns 3 to 7.5 and rows 6 to 10.5.
    EXPECT_EQ(pixel(*image, 2, 7), kNothing);
    EXPECT_EQ(pixel(*image, 3, 6), kRed);
    EXPECT_EQ(pixel(*image, 6, 9), kRed);
    EXPECT_NEAR(pixel(*image, 7, 8)[3], 128, 2);
    EXPECT_NEAR(pixel(*image, 6, 10)[3], 128, 2);
    EXPECT_EQ(pixel(*image, 8, 8), kNothing);
}

TEST_F(DrawPdf, HalfTransparentColoursArePremultiplied) {
    const auto image = drawVector(pdf({{.content = "/GS gs 1 0.5 0 rg 0 0 10 8 re f"}}), 1);
    ASSERT_TRUE(image) << image.error().message;
    const Pixel found = pixel(*image, 5, 5);
    EXPECT_EQ(found[0], 0);
    EXPECT_NEAR(found[1], 64, 1);
    EXPECT_NEAR(found[2], 128, 1);
    EXPECT_NEAR(found[3], 128, 1);
}

TEST_F(DrawPdf, PartsOfPixelsRoundUpAndLieAtTheTopRight) {
    const FileBytes file =
        pdf({{.mediaBox = "0 0 10.5 8.25", .content = "1 0 0 rg 0 0 10 8 re f"}});
    const auto image = drawVector(file, 1);
    ASSERT_TRUE(image) << image.error().message;
    ASSERT_EQ(image->width, 11U);
    ASSERT_EQ(image->height, 9U);
    for (std::uint32_t y = 0; y < 9; ++y) {
        for (std::uint32_t x = 0; x < 11; ++x) {
            ASSERT_EQ(pixel(*image, x, y), x < 10 && y > 0 ? kRed : kNothing) << x << ", " << y;
        }
    }
    const auto twice = drawVector(file, 2);
    ASSERT_TRUE(twice) << twice.error().message;
    EXPECT_EQ(twice->width, 21U);
    EXPECT_EQ(twice->height, 17U);
}

TEST_F(DrawPdf, AThousandthOfAPixelTakesNone) {
    const auto image = drawVector(pdf({{.mediaBox = "0 0 10.0003 0.2", .content = ""}}), 2);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 20U);
    EXPECT_EQ(image->height, 1U);
}

TEST_F(DrawPdf, CropBoxIsWhatIsDrawn) {
    const auto image = drawVector(pdf({{.content = kRedSquare, .more = "/CropBox[3 2 7 4]"}}), 1);
    ASSERT_TRUE(image) << image.error().message;
    ASSERT_EQ(image->width, 4U);
    ASSERT_EQ(image->height, 2U);
    for (std::uint32_t x = 0; x < 4; ++x) {
        EXPECT_EQ(pixel(*image, x, 0), x < 2 ? kRed : kNothing);
        EXPECT_EQ(pixel(*image, x, 1), x < 2 ? kRed : kNothing);
    }
}

TEST_F(DrawPdf, FirstPageIsWhatIsDrawn) {
    const auto image = drawVector(pdf({{.mediaBox = "0 0 3 3", .content = "0 0 1 rg 0 0 3 3 re f"},
                                       {.content = "1 0 0 rg 0 0 10 8 re f"}}),
                                  1);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 3U);
    EXPECT_EQ(pixel(*image, 1, 1), kBlue);
}

TEST_F(DrawPdf, EncryptedFileSaysSo) {
    const std::string key(32, 'x');
    const auto image = drawVector(pdf({{.content = kRedSquare}}, {},
                                      "/Encrypt<</Filter/Standard/V 1/R 2/P -4/O(" + key + ")/U(" +
                                          key + ")>>/ID[(abcdefghijklmnop)(abcdefghijklmnop)]"),
                                  1);
    ASSERT_FALSE(image);
    EXPECT_EQ(image.error().message, "the PDF file is encrypted");
}

TEST_F(DrawPdf, FileWithoutPagesSaysSo) {
    const auto image = drawVector(pdf({}), 1);
    ASSERT_FALSE(image);
    EXPECT_EQ(image.error().message, "the PDF file has no page");
}

TEST_F(DrawPdf, HugePageIsRefused) {
    const FileBytes file = pdf({{.mediaBox = "0 0 1000000 10", .content = kRedSquare}});
    const auto size = vectorSize(file);
    ASSERT_TRUE(size) << size.error().message;
    EXPECT_EQ(size->width, 1000000);
    const auto image = drawVector(file, 1);
    ASSERT_FALSE(image);
    EXPECT_EQ(image.error().message, "a picture of 1000000 × 10 pixels is beyond the limit");
}

TEST_F(DrawPdf, PictureOfTheLargestSizeIsDrawnAndNoLargerOne) {
    const FileBytes file = pdf({{.content = kRedSquare}});
    EXPECT_TRUE(drawVector(file, 1, {.maxBytes = 320}));
    EXPECT_FALSE(drawVector(file, 1, {.maxBytes = 319}));
    EXPECT_TRUE(drawVector(file, 1, {.maxWidth = 10, .maxHeight = 8}));
    EXPECT_FALSE(drawVector(file, 1, {.maxWidth = 9}));
    EXPECT_FALSE(drawVector(file, 1, {.maxHeight = 7}));
}

// Forms that draw forms that draw forms: ten to the power of fifteen squares in 3 kB.
TEST_F(DrawPdf, EndlessDrawingIsStopped) {
    constexpr std::size_t kLevels = 15;
    std::vector<std::string> forms;
    for (std::size_t level = 0; level < kLevels; ++level) {
        std::string content;
        for (int count = 0; count < 10; ++count) {
            content += level + 1 == kLevels ? "0 0 1 1 re f " : "/X Do ";
        }
        forms.push_back("<</Type/XObject/Subtype/Form/BBox[0 0 10 8]/Resources<</XObject<</X " +
                        std::to_string(firstObject(1) + level + 1) + " 0 R>>>>/Length " +
                        std::to_string(content.size()) + ">>stream\n" + content + "\nendstream");
    }
    const auto image = drawVector(pdf({{.content = "/X Do"}}, forms), 1,
                                  {.maxTime = std::chrono::milliseconds(300)});
    ASSERT_FALSE(image);
    EXPECT_EQ(image.error().message, "drawing it takes longer than 300 ms");
}

TEST_F(DrawPdf, DeepNestingHarmsNobody) {
    const std::string deep(500000, '[');
    const auto image = drawVector(pdf({{.content = kRedSquare, .more = "/Deep " + deep}}), 1);
    EXPECT_TRUE(image || !image.error().message.empty());
    const std::string saves(500000, 'q');
    const auto drawn = drawVector(pdf({{.content = saves + " " + kRedSquare}}), 1);
    EXPECT_TRUE(drawn || !drawn.error().message.empty());
}

// Whatever a reader makes of a file that ends early: a picture of sound size, or one line.
TEST_F(DrawPdf, FileThatEndsEarlyIsAPictureOrAProblem) {
    const FileBytes file = pdf({{.content = kRedSquare}});
    int problems = 0;
    for (std::size_t size = 0; size < file.size(); size += 9) {
        const auto image = drawVector(std::span(file).first(size), 1);
        if (image) {
            EXPECT_EQ(image->bgra.size(), std::size_t{image->width} * image->height * 4);
        } else {
            ++problems;
            EXPECT_FALSE(image.error().message.empty());
            EXPECT_EQ(image.error().message.find('\n'), std::string::npos);
            EXPECT_EQ(image.error().message.find("stopped"), std::string::npos) << size;
        }
    }
    EXPECT_GT(problems, 10);
}

}  // namespace
}  // namespace velmoranth::desktop::draw_pdf_test
