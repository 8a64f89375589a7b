#include "desktop/vector_images/vector_images.h"

#include "vector_files.h"
#include <gtest/gtest.h>

#include <cmath>
#include <thread>

namespace velmoranth::desktop::vector_images_test {
namespace {

std::string problemOf(std::string_view file) {
    const auto image = drawVector(bytesOf(file), 1);
    EXPECT_FALSE(image);
    const auto size = vectorSize(bytesOf(file));
    EXPECT_FALSE(size);
    return image || size ? std::string() : image.error().message;
}

TEST(VectorImages, FilesAreToldByContent) {
    EXPECT_EQ(problemOf(""), "the file is empty");
    EXPECT_EQ(problemOf("\x89PNG\r\n\x1A\n"), "this is neither a PDF nor an SVG file");
    EXPECT_EQ(problemOf("an <svg> in words"), "this is neither a PDF nor an SVG file");
    EXPECT_EQ(problemOf("<html/>"), "this is neither a PDF nor an SVG file");
    EXPECT_EQ(problemOf(std::string(1024, ' ') + "%PDF-1.4"),
              "this is neither a PDF nor an SVG file");
    EXPECT_EQ(problemOf("%PDF-1.4"), hasLibrary("pdftocairo")
                                         ? "the PDF file is damaged"
                                         : "PDF files cannot be drawn: there is no pdfinfo; "
                                           "install the package poppler-utils");
    const std::string svgProblem = problemOf("<svg");
    EXPECT_TRUE(svgProblem.starts_with(
        hasLibrary("librsvg") ? "the SVG file is damaged ("
                              : "SVG files cannot be drawn: this build has no librsvg"))
        << svgProblem;
}

TEST(VectorImages, FileLargerThanTheLimitIsRefused) {
    const FileBytes file = svg(R"(width="1" height="1")", "");
    const auto image = drawVector(file, 1, {.maxFileBytes = file.size() - 1});
    ASSERT_FALSE(image);
    EXPECT_EQ(image.error().message,
              "a vector file of " + std::to_string(file.size()) + " bytes is beyond the limit");
}

TEST(VectorImages, ScaleMustBePositive) {
    const FileBytes file = svg(R"(width="1" height="1")", "");
    for (const double scale : {0.0, -1.0, std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        const auto image = drawVector(file, scale);
        ASSERT_FALSE(image) << scale;
        EXPECT_EQ(image.error().message, "the scale is no positive number");
    }
}

TEST(VectorImages, LibrariesAreNamed) {
    const std::string text = vectorLibraries();
    for (const char* name : {"pdftocairo", "librsvg", "libheif"}) {
        const bool missing = text.find(std::string("no ") + name) != std::string::npos;
        const std::size_t at = text.find(std::string(name) + " ");
        ASSERT_NE(missing, at != std::string::npos) << text;
        if (!missing) {
            EXPECT_NE(text.find_first_of("0123456789", at), std::string::npos) << text;
        }
    }
}

TEST(VectorImages, ThreadsDrawAtTheSameTime) {
    if (!hasLibrary("librsvg") || !hasLibrary("pdftocairo")) {
        GTEST_SKIP() << "a library or the program is missing";
    }
    const FileBytes asSvg = svg(R"(width="10" height="8")", R"(<circle cx="5" cy="4" r="3"/>)");
    const FileBytes asPdf = pdf({{.content = "1 0 0 rg 2 1 3 3 re f"}});
    const auto firstSvg = drawVector(asSvg, 2);
    const auto firstPdf = drawVector(asPdf, 2);
    ASSERT_TRUE(firstSvg && firstPdf);
    std::array<int, 4> wrong{};
    std::vector<std::thread> threads;
    for (int& count : wrong) {
        threads.emplace_back([&] {
            for (int round = 0; round < 10; ++round) {
                const auto oneSvg = drawVector(asSvg, 2);
                const auto onePdf = drawVector(asPdf, 2);
                count += oneSvg && oneSvg->bgra == firstSvg->bgra ? 0 : 1;
                count += onePdf && onePdf->bgra == firstPdf->bgra ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, (std::array<int, 4>{}));
}

}  // namespace
}  // namespace velmoranth::desktop::vector_images_test
