#include "desktop/image_io/image_io.h"
#include "desktop/vector_images/vector_images.h"

#include "vector_files.h"
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace velmoranth::desktop::draw_svg_test {
namespace {

class DrawSvg : public testing::Test {
  protected:
    void SetUp() override {
        if (!hasLibrary("librsvg")) {
            GTEST_SKIP() << "this build has no librsvg";
        }
    }
};

constexpr const char* kTenByEight = R"(width="10" height="8")";
constexpr const char* kRedSquare = R"(<rect x="2" y="1" width="3" height="3" fill="#f00"/>)";

PointSize sizeOf(std::string_view attributes) {
    const auto size = vectorSize(svg(attributes, kRedSquare));
    EXPECT_TRUE(size) << size.error().message;
    return size.value_or(PointSize{});
}

std::string problemOf(std::span<const std::uint8_t> file) {
    const auto image = drawVector(file, 1);
    EXPECT_FALSE(image);
    return image ? std::string() : image.error().message;
}

TEST_F(DrawSvg, SizeIsWidthAndHeight) {
    EXPECT_EQ(sizeOf(R"(width="24.5" height="17" viewBox="0 0 100 100")"), (PointSize{24.5, 17}));
    EXPECT_EQ(sizeOf(R"(width="1in" height="72pt")"), (PointSize{96, 96}));
}

TEST_F(DrawSvg, WhatIsMissingComesFromTheViewBox) {
    EXPECT_EQ(sizeOf(R"(viewBox="5 5 30 20")"), (PointSize{30, 20}));
    EXPECT_EQ(sizeOf(R"(width="100%" height="100%" viewBox="0 0 30 20")"), (PointSize{30, 20}));
    EXPECT_EQ(sizeOf(R"(width="15" viewBox="0 0 30 20")"), (PointSize{15, 10}));
    EXPECT_EQ(sizeOf(R"(height="10" viewBox="0 0 30 20")"), (PointSize{15, 10}));
}

TEST_F(DrawSvg, FileWithoutSizeSaysSo) {
    EXPECT_EQ(problemOf(svg("", kRedSquare)), "the SVG file has no size");
    EXPECT_EQ(problemOf(svg(R"(width="0" height="5")", kRedSquare)), "the SVG file has no size");
}

TEST_F(DrawSvg, EveryPixelIsRightAtWholeScales) {
    for (const std::string_view attributes :
         {kTenByEight, R"(width="10" height="8" viewBox="0 0 10 8")", R"(viewBox="0 0 10 8")"}) {
        for (const std::uint32_t scale : {1U, 2U, 3U}) {
            const auto image = drawVector(svg(attributes, kRedSquare), scale);
            ASSERT_TRUE(image) << image.error().message;
            ASSERT_EQ(image->width, 10 * scale);
            ASSERT_EQ(image->height, 8 * scale);
            for (std::uint32_t y = 0; y < image->height; ++y) {
                for (std::uint32_t x = 0; x < image->width; ++x) {
                    const bool inside =
                        x / scale >= 2 && x / scale < 5 && y / scale >= 1 && y / scale < 4;
                    ASSERT_EQ(pixel(*image, x, y), inside ? kRed : kNothing)
                        << attributes << ": " << x << ", " << y;
                }
            }
        }
    }
}

TEST_F(DrawSvg, ViewBoxIsScaledToTheSize) {
    const auto image = drawVector(svg(R"(width="10" height="8" viewBox="0 0 20 16")",
                                      R"(<rect x="4" y="2" width="6" height="6" fill="#f00"/>)"),
                                  1);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(pixel(*image, 2, 1), kRed);
    EXPECT_EQ(pixel(*image, 4, 3), kRed);
    EXPECT_EQ(pixel(*image, 5, 3), kNothing);
    EXPECT_EQ(pixel(*image, 1, 1), kNothing);
}

TEST_F(DrawSvg, InchIs96UnitsInTheDrawingToo) {
    const auto image = drawVector(svg(R"(width="192" height="1" viewBox="0 0 192 1")",
                                      R"(<rect width="1in" height="1" fill="#f00"/>)"),
                                  1);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 192U);
    EXPECT_EQ(pixel(*image, 95, 0), kRed);
    EXPECT_EQ(pixel(*image, 96, 0), kNothing);
}

TEST_F(DrawSvg, PartsOfPixelsRoundUpAndLieAtTheBottomRight) {
    const auto image = drawVector(
        svg(R"(width="10.5" height="8.25")", R"(<rect width="10" height="8" fill="#f00"/>)"), 1);
    ASSERT_TRUE(image) << image.error().message;
    ASSERT_EQ(image->width, 11U);
    ASSERT_EQ(image->height, 9U);
    for (std::uint32_t y = 0; y < 9; ++y) {
        for (std::uint32_t x = 0; x < 11; ++x) {
            ASSERT_EQ(pixel(*image, x, y), x < 10 && y < 8 ? kRed : kNothing) << x << ", " << y;
        }
    }
}

TEST_F(DrawSvg, ScalesBetweenWholeOnes) {
    const auto image = drawVector(svg(kTenByEight, kRedSquare), 1.5);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 15U);
    EXPECT_EQ(image->height, 12U);
    // The square spans columns 3 to 7.5 and rows 1.5 to 6.
    EXPECT_EQ(pixel(*image, 3, 2), kRed);
    EXPECT_EQ(pixel(*image, 6, 5), kRed);
    EXPECT_NEAR(pixel(*image, 7, 3)[3], 128, 2);
    EXPECT_NEAR(pixel(*image, 4, 1)[3], 128, 2);
    EXPECT_EQ(pixel(*image, 4, 6), kNothing);
}

TEST_F(DrawSvg, HalfTransparentColoursArePremultiplied) {
    const auto image = drawVector(
        svg(kTenByEight, R"(<rect width="10" height="8" fill="#ff8000" fill-opacity="0.5"/>)"), 1);
    ASSERT_TRUE(image) << image.error().message;
    const Pixel found = pixel(*image, 5, 5);
    EXPECT_EQ(found[0], 0);
    EXPECT_NEAR(found[1], 64, 1);
    EXPECT_NEAR(found[2], 128, 1);
    EXPECT_NEAR(found[3], 128, 1);
}

TEST_F(DrawSvg, MarkupMayComeBeforeTheRoot) {
    const FileBytes plain = svg(kTenByEight, kRedSquare);
    const std::string before = "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- " +
                               std::string(3000, 'x') + " -->\n<!DOCTYPE svg>\n";
    FileBytes file(before.begin(), before.end());
    file.insert(file.end(), plain.begin(), plain.end());
    const auto image = drawVector(file, 1);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(pixel(*image, 2, 1), kRed);
}

class DrawSvgWithFile : public DrawSvg {
  protected:
    // A red PNG file beside the test, and as a "data:" address.
    void SetUp() override {
        DrawSvg::SetUp();
        std::string name = (std::filesystem::temp_directory_path() / "vectorXXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
        const FileBytes red{0, 0, 255, 255};
        const platform::Data png = encodePng(red, 1, 1, 4);
        std::ofstream(folder_ / "red.png", std::ios::binary)
            .write(reinterpret_cast<const char*>(png.data()),
                   static_cast<std::streamsize>(png.size()));
        std::ofstream(folder_ / "red.svg") << kRedSquare;
    }

    void TearDown() override {
        if (!folder_.empty()) {
            std::filesystem::remove_all(folder_);
        }
    }

    [[nodiscard]] std::string address(const char* name) const {
        return "file://" + (folder_ / name).string();
    }

    std::filesystem::path folder_;
};

Pixel drawnWith(const std::string& content) {
    const auto image = drawVector(svg(kTenByEight, content), 1);
    EXPECT_TRUE(image) << image.error().message;
    return image ? pixel(*image, 3, 2) : Pixel{};
}

TEST_F(DrawSvgWithFile, OtherFilesAreNotRead) {
    // The way of saying it is right: the same image is drawn from within the file.
    const char* const within =
        "data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' width='1' height='1'%3E"
        "%3Crect width='1' height='1' fill='red'/%3E%3C/svg%3E";
    const auto image = [](const std::string& where) {
        return R"(<image width="10" height="8" preserveAspectRatio="none" xlink:href=")" + where +
               "\"/>";
    };
    EXPECT_EQ(drawnWith(image(within)), kRed);
    EXPECT_EQ(drawnWith(image(address("red.png"))), kNothing);
    EXPECT_EQ(drawnWith(image((folder_ / "red.png").string())), kNothing);
    EXPECT_EQ(drawnWith(image("red.png")), kNothing);
    EXPECT_EQ(drawnWith(R"(<xi:include xmlns:xi="http://www.w3.org/2001/XInclude" href=")" +
                        address("red.svg") + "\"/>"),
              kNothing);
    EXPECT_EQ(drawnWith("<use xlink:href=\"" + address("red.svg") + "#x\"/>"), kNothing);
}

TEST_F(DrawSvgWithFile, EntitiesFromOtherFilesAreNotRead) {
    const auto withEntity = [](const std::string& entity) {
        const std::string before = "<!DOCTYPE svg [<!ENTITY colour " + entity + ">]>\n";
        FileBytes file = bytesOf(before);
        const FileBytes rest = svg(kTenByEight, "<g>&colour;</g>");
        file.insert(file.end(), rest.begin(), rest.end());
        return drawVector(file, 1);
    };
    const auto other = withEntity("SYSTEM \"" + address("red.svg") + "\"");
    if (other) {
        EXPECT_EQ(pixel(*other, 3, 2), kNothing);
    }
}

TEST_F(DrawSvg, EntitiesOfEntitiesAreABoundedCost) {
    std::string file = "<!DOCTYPE svg [<!ENTITY a0 \"0000000000\">";
    for (int level = 1; level < 12; ++level) {
        file += "<!ENTITY a" + std::to_string(level) + " \"";
        for (int count = 0; count < 10; ++count) {
            file += "&a" + std::to_string(level - 1) + ";";
        }
        file += "\">";
    }
    file +=
        "]>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"8\">"
        "<text>&a11;</text></svg>";
    const auto image = drawVector(bytesOf(file), 1, {.maxTime = std::chrono::seconds(5)});
    EXPECT_TRUE(image || !image.error().message.empty());
}

TEST_F(DrawSvg, UsesOfUsesAreABoundedCost) {
    std::string content = R"(<defs><g id="a0"><rect width="1" height="1"/></g>)";
    for (int level = 1; level < 15; ++level) {
        content += "<g id=\"a" + std::to_string(level) + "\">";
        for (int count = 0; count < 10; ++count) {
            content += "<use xlink:href=\"#a" + std::to_string(level - 1) + "\"/>";
        }
        content += "</g>";
    }
    content += "</defs><use xlink:href=\"#a14\"/>";
    const auto image =
        drawVector(svg(kTenByEight, content), 1, {.maxTime = std::chrono::seconds(1)});
    ASSERT_FALSE(image);
}

TEST_F(DrawSvg, DeepNestingHarmsNobody) {
    std::string content;
    for (int level = 0; level < 20000; ++level) {
        content += "<g>";
    }
    const auto image = drawVector(svg(kTenByEight, content), 1);
    ASSERT_FALSE(image);
    EXPECT_TRUE(image.error().message.starts_with("the SVG file is damaged ("))
        << image.error().message;
    EXPECT_EQ(image.error().message.find('\n'), std::string::npos);
}

TEST_F(DrawSvg, DamageIsOneClauseWithItsPlace) {
    EXPECT_EQ(
        problemOf(bytesOf("<svg xmlns='http://www.w3.org/2000/svg'>\n<g></svg>")),
        "the SVG file is damaged (line 2 column 10: Premature end of data in tag svg line 1)");
    EXPECT_EQ(problemOf(bytesOf("<svg xmlns='http://www.w3.org/2000/svg'>\xff</svg>")),
              "the SVG file is damaged (line 1 column 41: Input is not proper UTF-8, indicate "
              "encoding !)");
}

TEST_F(DrawSvg, HugeSizesAreRefused) {
    EXPECT_EQ(problemOf(svg(R"(width="16385" height="1")", kRedSquare)),
              "a picture of 16385 × 1 pixels is beyond the limit");
    EXPECT_EQ(problemOf(svg(R"(width="16384" height="16384")", kRedSquare)),
              "a picture of 16384 × 16384 pixels is beyond the limit");
    EXPECT_FALSE(drawVector(svg(R"(width="1e300" height="1e300")", kRedSquare), 1e300));
}

TEST_F(DrawSvg, FileThatEndsEarlyIsAProblem) {
    const FileBytes file = svg(kTenByEight, kRedSquare);
    for (std::size_t size = 0; size < file.size(); size += 5) {
        const auto image = drawVector(std::span(file).first(size), 1);
        ASSERT_FALSE(image) << size;
        EXPECT_EQ(image.error().message.find('\n'), std::string::npos);
        EXPECT_EQ(image.error().message.find("stopped"), std::string::npos) << size;
    }
}

}  // namespace
}  // namespace velmoranth::desktop::draw_svg_test
