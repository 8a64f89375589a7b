#include "desktop/vector_images/drawing_process.h"

#include "tests/support/sanitizers.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmoranth::desktop::vector_images::drawing_process_test {
namespace {

using namespace std::chrono_literals;

std::optional<Problem> drawOnePixel(Sheet& sheet) {
    const auto pixels = sheet.picture(1, 1);
    if (!pixels) {
        return pixels.error();
    }
    constexpr std::array<std::uint8_t, 4> kPixel{1, 2, 3, 4};
    std::memcpy(*pixels, kPixel.data(), kPixel.size());
    return std::nullopt;
}

std::string problemOf(const Drawing& drawing, const DrawLimits& limits = {}) {
    const auto drawn = drawInProcess(limits, Room::picture, drawing);
    EXPECT_FALSE(drawn);
    return drawn ? std::string() : drawn.error().message;
}

TEST(DrawingProcess, PictureAndSizeComeBack) {
    const auto drawn = drawInProcess({}, Room::picture, [](Sheet& sheet) {
        sheet.setSize({.width = 2.5, .height = 3.5});
        return drawOnePixel(sheet);
    });
    ASSERT_TRUE(drawn) << drawn.error().message;
    EXPECT_EQ(drawn->size, (PointSize{2.5, 3.5}));
    EXPECT_EQ(drawn->image.width, 1U);
    EXPECT_EQ(drawn->image.height, 1U);
    EXPECT_EQ(drawn->image.bgra, (std::vector<std::uint8_t>{1, 2, 3, 4}));
}

TEST(DrawingProcess, NothingElseOfItComesBack) {
    int outside = 1;
    ASSERT_TRUE(drawInProcess({}, Room::none, [&](Sheet&) -> std::optional<Problem> {
        outside = 2;
        return std::nullopt;
    }));
    EXPECT_EQ(outside, 1);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(DrawingProcess, ProblemComesBackInOneLine) {
    EXPECT_EQ(problemOf([](Sheet&) { return Problem{.message = "two\nlines"}; }), "two lines");
    EXPECT_EQ(problemOf([](Sheet&) { return Problem{.message = std::string(9999, 'x')}; }),
              std::string(511, 'x'));
}

TEST(DrawingProcess, CrashIsAProblem) {
    const std::string stopped =
        "the library that draws it stopped: the file is damaged, or drawing it takes too much "
        "memory";
    EXPECT_EQ(problemOf([](Sheet&) -> std::optional<Problem> { std::abort(); }), stopped);
    EXPECT_EQ(problemOf([](Sheet&) -> std::optional<Problem> { std::_Exit(0); }), stopped);
}

TEST(DrawingProcess, ExceptionIsAProblem) {
    EXPECT_EQ(problemOf([](Sheet&) -> std::optional<Problem> { throw std::runtime_error("why"); }),
              "why");
}

TEST(DrawingProcess, EndlessWorkIsStopped) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(problemOf(
                  [](Sheet&) -> std::optional<Problem> {
                      volatile bool more = true;
                      while (more) {
                      }
                      return std::nullopt;
                  },
                  {.maxTime = 100ms}),
              "drawing it takes longer than 100 ms");
    EXPECT_EQ(problemOf(
                  [](Sheet&) -> std::optional<Problem> {
                      while (true) {
                          pause();
                      }
                  },
                  {.maxTime = 1s}),
              "drawing it takes longer than 1 s");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
}

TEST(DrawingProcess, MemoryIsBounded) {
    if (tests::kAddressSanitizer) {
        GTEST_SKIP() << "memory is the sanitizer's";
    }
    EXPECT_EQ(problemOf(
                  [](Sheet&) -> std::optional<Problem> {
                      std::vector<std::vector<char>> kept;
                      while (true) {
                          kept.emplace_back(std::size_t{16} << 20U);
                      }
                  },
                  {.maxWorkingBytes = std::size_t{256} << 20U}),
              "drawing it takes too much memory");
}

TEST(DrawingProcess, PictureBeyondTheLimitsIsRefused) {
    const auto asking = [](double width, double height) {
        return [=](Sheet& sheet) -> std::optional<Problem> {
            const auto pixels = sheet.picture(width, height);
            return pixels ? std::nullopt : std::optional(pixels.error());
        };
    };
    EXPECT_EQ(problemOf(asking(2, 3), {.maxBytes = 23}),
              "a picture of 2 × 3 pixels is beyond the limit");
    EXPECT_TRUE(drawInProcess({.maxBytes = 24}, Room::picture, asking(2, 3)));
    EXPECT_EQ(problemOf(asking(1e18, 1e18)),
              "a picture of 1000000000000000000 × 1000000000000000000 pixels is beyond the limit");
    EXPECT_EQ(problemOf(asking(0, 3)), "the picture has no pixels");
    EXPECT_EQ(problemOf(asking(std::nan(""), 3)), "the picture has no pixels");
}

TEST(DrawingProcess, WritesNoFile) {
    std::string path = std::filesystem::temp_directory_path() / "drawing_process_XXXXXX";
    const int made = mkstemp(path.data());
    ASSERT_GE(made, 0);
    close(made);
    const auto drawn = drawInProcess({}, Room::none, [&](Sheet&) -> std::optional<Problem> {
        std::signal(SIGXFSZ, SIG_IGN);
        const int file = open(path.c_str(), O_WRONLY);
        if (file >= 0 && write(file, "x", 1) == 1) {
            return Problem{.message = "it wrote"};
        }
        return std::nullopt;
    });
    unlink(path.c_str());
    EXPECT_TRUE(drawn) << drawn.error().message;
}

TEST(DrawingProcess, WorksWhereEndingsAreIgnored) {
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_TRUE(drawInProcess({}, Room::picture, drawOnePixel));
    EXPECT_EQ(problemOf(
                  [](Sheet&) -> std::optional<Problem> {
                      while (true) {
                          pause();
                      }
                  },
                  {.maxTime = 100ms}),
              "drawing it takes longer than 100 ms");
}

TEST(DrawingProcess, HandlersOfTheParentStayThere) {
    std::signal(SIGTERM, [](int) { _exit(7); });
    EXPECT_EQ(problemOf([](Sheet&) -> std::optional<Problem> {
                  struct sigaction found{};
                  sigaction(SIGTERM, nullptr, &found);
                  return Problem{.message = found.sa_handler == SIG_DFL ? "default" : "handled"};
              }),
              "default");
}

}  // namespace
}  // namespace velmoranth::desktop::vector_images::drawing_process_test
