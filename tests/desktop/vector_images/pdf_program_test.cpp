// PDF files where the programs that read them are missing, broken or taken over: scripts stand for
// them.
#include "desktop/image_io/image_io.h"
#include "desktop/vector_images/vector_images.h"
#include "tests/support/temporary_folder.h"

#include "vector_files.h"
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>
#include <utility>

namespace velmoranth::desktop::pdf_program_test {
namespace {

const std::string kStops = " stopped: the file is damaged, or drawing it takes too much memory";

class PdfProgram : public testing::Test {
  protected:
    tests::TemporaryFolder folder;
    FileBytes file = pdf({{.content = "1 0 0 rg 2 1 3 3 re f"}});

    void SetUp() override { setenv("PATH", folder.path().c_str(), 1); }

    // Lines of a shell that starts no other process.
    void program(const std::string& name, const std::string& lines) const {
        folder.file(name, "#!/bin/bash --norc\n" + lines + "\n");
        ASSERT_EQ(chmod((folder / name).c_str(), 0755), 0);
    }

    // Says that the file has a page of 10 × 8 points.
    void pdfinfo(const std::string& pageSize = "10 x 8 pts") const {
        program("pdfinfo", "echo 'Pages:           1'\necho 'Page size:       " + pageSize +
                               "'\necho 'Page rot:        0'");
    }

    // A picture in the program's folder.
    void picture(const std::string& name, std::size_t width, std::size_t height,
                 std::size_t bytes = std::string::npos) const {
        std::vector<std::uint8_t> pixels(width * height * 4);
        for (std::size_t at = 0; at < pixels.size(); at += 4) {
            pixels[at] = 255;
            pixels[at + 3] = 255;
        }
        const auto png = encodePng(pixels, width, height, width * 4);
        const std::string text(reinterpret_cast<const char*>(png.data()), png.size());
        folder.file(name, text.substr(0, bytes));
    }

    [[nodiscard]] std::string printing(const std::string& name) const {
        return "exec /bin/cat " + (folder / name);
    }

    [[nodiscard]] std::string problemOf(double scale = 1, const DrawLimits& limits = {}) const {
        const auto image = drawVector(file, scale, limits);
        return image ? "none" : image.error().message;
    }
};

TEST_F(PdfProgram, MissingOneIsNamedWithItsPackage) {
    const std::string end = "; install the package poppler-utils";
    EXPECT_EQ(problemOf(), "PDF files cannot be drawn: there is no pdfinfo" + end);
    const auto size = vectorSize(file);
    ASSERT_FALSE(size);
    EXPECT_EQ(size.error().message, "PDF files cannot be drawn: there is no pdfinfo" + end);
    pdfinfo();
    EXPECT_EQ(problemOf(), "PDF files cannot be drawn: there is no pdftocairo" + end);
    EXPECT_EQ(vectorSize(file), (PointSize{10, 8}));
    EXPECT_TRUE(vectorLibraries().starts_with("no pdftocairo, ")) << vectorLibraries();
}

TEST_F(PdfProgram, IsAskedForItsVersion) {
    program("pdftocairo", "[ \"$*\" = -v ] && echo 'pdftocairo version 99.1.2' >&2\necho more >&2");
    EXPECT_TRUE(vectorLibraries().starts_with("pdftocairo 99.1.2, ")) << vectorLibraries();
    program("pdftocairo", "echo something else >&2");
    EXPECT_TRUE(vectorLibraries().starts_with("no pdftocairo, ")) << vectorLibraries();
}

TEST_F(PdfProgram, OneThatCannotBeStartedIsNamed) {
    folder.file("pdfinfo",
                "\x7F"
                "ELF");
    ASSERT_EQ(chmod((folder / "pdfinfo").c_str(), 0755), 0);
    EXPECT_EQ(problemOf(),
              "PDF files cannot be drawn: " + (folder / "pdfinfo") + " cannot be started");
}

TEST_F(PdfProgram, DrawsAtTheScaleWithExactlyThesePixels) {
    pdfinfo();
    picture("two.png", 20, 16);
    program("pdftocairo",
            "[ \"$*\" = '-png -singlefile -transp -cropbox -r 144 - -' ] || exit 1\n" +
                printing("two.png"));
    const auto image = drawVector(file, 2);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 20U);
    EXPECT_EQ(image->height, 16U);
    EXPECT_EQ(pixel(*image, 19, 15), kBlue);
    EXPECT_EQ(problemOf(3), "the PDF file is damaged");
}

TEST_F(PdfProgram, RowAndColumnTooManyAreCutOff) {
    pdfinfo("9.0001 x 7.0001 pts");
    picture("one.png", 10, 8);
    program("pdftocairo", printing("one.png"));
    const auto image = drawVector(file, 1);
    ASSERT_TRUE(image) << image.error().message;
    EXPECT_EQ(image->width, 9U);
    EXPECT_EQ(image->height, 7U);
    EXPECT_EQ(image->bgra.size(), 9U * 7 * 4);
    EXPECT_EQ(pixel(*image, 8, 6), kBlue);
}

TEST_F(PdfProgram, PictureOfAnotherSizeIsRefused) {
    pdfinfo();
    for (const auto& [width, height] :
         {std::pair<std::size_t, std::size_t>{9, 8}, {10, 7}, {12, 8}, {10, 10}}) {
        picture("other.png", width, height);
        program("pdftocairo", printing("other.png"));
        EXPECT_EQ(problemOf(), "pdftocairo drew " + std::to_string(width) + " × " +
                                   std::to_string(height) + " pixels in place of 10 × 8");
    }
}

TEST_F(PdfProgram, PictureCutShortIsRefused) {
    pdfinfo();
    program("pdftocairo", printing("short.png"));
    for (const std::size_t bytes : {0U, 7U, 30U, 60U}) {
        picture("short.png", 10, 8, bytes);
        const std::string problem = problemOf();
        EXPECT_TRUE(problem.starts_with("the picture that pdftocairo made cannot be read: "))
            << bytes << ": " << problem;
        EXPECT_EQ(problem.find('\n'), std::string::npos);
    }
}

TEST_F(PdfProgram, EndlessPictureIsRefused) {
    pdfinfo();
    program("pdftocairo", "exec /usr/bin/yes");
    EXPECT_EQ(problemOf(), "pdftocairo wrote more than a picture of its size can take");
    program("pdfinfo", "exec /usr/bin/yes");
    EXPECT_EQ(problemOf(), "pdfinfo wrote more than a picture of its size can take");
}

TEST_F(PdfProgram, FailureIsTheFilesFault) {
    program("pdfinfo", "echo 'Syntax Error: whatever' >&2; exit 1");
    EXPECT_EQ(problemOf(), "the PDF file is damaged");
    program("pdfinfo", "echo 'Command Line Error: Incorrect password' >&2; exit 1");
    EXPECT_EQ(problemOf(), "the PDF file is encrypted");
    program("pdfinfo", "echo 'Pages:           0'");
    EXPECT_EQ(problemOf(), "the PDF file has no page");
    program("pdfinfo",
            "echo 'the first page (1) can not be after the last page (0).' >&2; exit 99");
    EXPECT_EQ(problemOf(), "the PDF file has no page");
    pdfinfo();
    program("pdftocairo", "exit 99");
    EXPECT_EQ(problemOf(), "the PDF file is damaged");
    // Its own limit on processor time ends it.
    program("pdftocairo", "ulimit -t 1; while :; do :; done");
    EXPECT_EQ(problemOf(), "pdftocairo" + kStops);
}

TEST_F(PdfProgram, SizeThatIsNoneIsRefused) {
    for (const char* const size : {"", "10", "10 by 8", "nan x 8 pts", "10 x inf pts", "0 x 8 pts",
                                   "10 x -8 pts", "words x words"}) {
        pdfinfo(size);
        EXPECT_EQ(problemOf(), "the page of the PDF file has no size") << size;
    }
    pdfinfo("1e+06 x 8 pts");
    EXPECT_EQ(problemOf(), "a picture of 1000000 × 8 pixels is beyond the limit");
}

TEST_F(PdfProgram, FilesOwnWordsAreNotItsSize) {
    program("pdfinfo",
            "echo 'Title: x'\necho 'Page size: 5 x 5 pts'\necho 'Pages: 1'\n"
            "echo 'Page size:       10.5 x 8 pts (A4)'\necho 'Page rot:        270'");
    EXPECT_EQ(vectorSize(file), (PointSize{8, 10.5}));
}

TEST_F(PdfProgram, EndlessOneIsStoppedAndGone) {
    pdfinfo();
    const std::string seconds = "98765." + std::to_string(getpid());
    program("pdftocairo", "exec /bin/sleep " + seconds);
    EXPECT_EQ(problemOf(1, {.maxTime = std::chrono::milliseconds(300)}),
              "drawing it takes longer than 300 ms");
    const auto isThere = [&] {
        namespace fs = std::filesystem;
        for (const auto& entry : fs::directory_iterator("/proc")) {
            std::error_code unreadable;
            const fs::path program = fs::read_symlink(entry.path() / "exe", unreadable);
            std::ifstream words(entry.path() / "cmdline");
            const std::string all{std::istreambuf_iterator<char>(words), {}};
            if (all.find(seconds) != std::string::npos && program.filename() == "sleep") {
                return true;
            }
        }
        return false;
    };
    // It goes with the drawing process, by the kernel's hand, which may take a moment.
    for (int round = 0; round < 1000 && isThere(); ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_FALSE(isThere());
}

}  // namespace
}  // namespace velmoranth::desktop::pdf_program_test
