// The parts of `velmoranth extract` whose cases no catalog or file system here brings about.
#include "cli/extracted_names.h"
#include "cli/extraction.h"
#include "cli/extraction_folder.h"
#include "cli/extraction_plan.h"
#include "cli/messages.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::cli::extract_parts_test {
namespace {

namespace fs = std::filesystem;

using tests::CarPixels;
using tests::CarWriter;
using tests::TemporaryFolder;

constexpr std::string_view kEnding = "-4-4.png";

// Without the ending.
std::string spelled(std::string_view name) {
    std::string path = extractedPath(name, kEnding, 12);
    EXPECT_TRUE(path.ends_with(kEnding)) << path;
    path.resize(path.size() - kEnding.size());
    return path;
}

TEST(ExtractedNames, StayAsTheyAre) {
    for (const char* const name :
         {"Icon", "Folder/Icon", "a/b/c", "Grüße 🙂", "a b",  "50%",      "100% sure",
          "~x",   ".hidden",     "a.png", "..",       ".",    "a..b/..c", "%",
          "%%",   "%4",          "-",     "\"'`$(x)", "a\\b", "C:x"}) {
        EXPECT_EQ(spelled(name), name);
    }
    EXPECT_EQ(spelled(""), "");
}

TEST(ExtractedNames, FoldersThatLeadElsewhereAreSpelled) {
    EXPECT_EQ(spelled("../x"), "%2E%2E/x");
    EXPECT_EQ(spelled("a/../../x"), "a/%2E%2E/%2E%2E/x");
    EXPECT_EQ(spelled("./x"), "%2E/x");
    EXPECT_EQ(spelled("/etc/passwd"), "%2Fetc/passwd");
    EXPECT_EQ(spelled("a//b"), "a/%2Fb");
    EXPECT_EQ(spelled("///"), "%2F%2F%2F");
    EXPECT_EQ(spelled("a/"), "a/");
    EXPECT_EQ(spelled("/../x"), "%2F../x");
}

TEST(ExtractedNames, BytesThatNoNameShouldHoldAreSpelled) {
    EXPECT_EQ(spelled(std::string_view("a\0b", 3)), "a%00b");
    EXPECT_EQ(spelled("a\nb\x1b[31m\x7f"), "a%0Ab%1B[31m%7F");
    EXPECT_EQ(spelled("\xff\xc3"), "%FF%C3");
    EXPECT_EQ(spelled("\xc2\x9b"), "%C2%9B") << "a control character of its own";
    EXPECT_EQ(spelled("\xc0\xaf"), "%C0%AF") << "a slash, written longer than need be";
    EXPECT_EQ(spelled("\xed\xa0\x80"), "%ED%A0%80") << "half of a pair";
    EXPECT_EQ(spelled("\xf4\x90\x80\x80"), "%F4%90%80%80") << "beyond the last code point";
}

TEST(ExtractedNames, NoTwoNamesAreSpelledAlike) {
    EXPECT_EQ(spelled("%2E%2E/x"), "%252E%252E/x");
    EXPECT_EQ(spelled("a%00b"), "a%2500b");
    EXPECT_EQ(spelled("%25"), "%2525");
    EXPECT_EQ(spelled("a%~1"), "a%25~1");
    std::set<std::string> paths;
    std::size_t count = 0;
    const std::vector<std::string> pieces{"%", "2", "E", ".", "/", "\x02", "~", "e"};
    for (std::size_t i = 0; i < 8 * 8 * 8 * 8 * 8; ++i, ++count) {
        std::string name;
        for (std::size_t rest = i, k = 0; k < 5; ++k, rest /= 8) {
            name += pieces[rest % 8];
        }
        paths.insert(extractedPath(name, kEnding, 0));
    }
    EXPECT_EQ(paths.size(), count);
}

TEST(ExtractedNames, NoFolderIsNamedLikeAPicture) {
    EXPECT_EQ(spelled("Icon-4-4.png/x"), "Icon-4-4%2Epng/x");
    EXPECT_EQ(spelled("Icon-4-4.PnG/x"), "Icon-4-4%2EPnG/x");
    EXPECT_EQ(spelled("Icon-4-4.png"), "Icon-4-4.png");
    EXPECT_EQ(spelled("png/x"), "png/x");
}

TEST(ExtractedNames, SlashesMayBeSpelledInsteadOfMakingFolders) {
    const auto flat = [](std::string_view name) {
        return extractedPath(name, kEnding, 12, Slashes::areSpelled);
    };
    EXPECT_EQ(flat("a/b"), "a%2Fb-4-4.png");
    EXPECT_EQ(flat("../x"), "..%2Fx-4-4.png");
    EXPECT_EQ(flat("a.png/x"), "a.png%2Fx-4-4.png");
    EXPECT_EQ(flat("a%2Fb"), "a%252Fb-4-4.png");
    EXPECT_EQ(flat(std::string(100, '/')),
              std::string(flat(std::string(60, '/')).substr(0, 180)) + "%~12-4-4.png");
}

TEST(ExtractedNames, LongEndingsHaveRoom) {
    const std::string ending = "-4-4" + std::string(190, 'x') + ".png";
    const std::string path =
        extractedPath(std::string(300, 'a'), ending, 123456, Slashes::makeFolders);
    EXPECT_EQ(path, std::string(255 - 8 - ending.size(), 'a') + "%~123456" + ending);
}

TEST(ExtractedNames, LongOnesAreCutAndNumbered) {
    const std::string fits(kLongestExtractedPart - kEnding.size(), 'a');
    EXPECT_EQ(spelled(fits), fits);
    EXPECT_EQ(spelled(fits + "a"), std::string(180, 'a') + "%~12");
    EXPECT_EQ(spelled(std::string(256, 'a') + "/b"), std::string(180, 'a') + "%~12");
    EXPECT_EQ(spelled("b/" + fits + "a"), "b%2F" + std::string(176, 'a') + "%~12");
    std::string umlauts;
    for (int i = 0; i < 200; ++i) {
        umlauts += "ü";
    }
    EXPECT_EQ(spelled("a" + umlauts), "a" + umlauts.substr(0, 178) + "%~12");
    EXPECT_EQ(spelled(std::string(100, '\1')).substr(171), "%01%01%01%~12");
    std::string deep;
    for (int i = 0; i < 100000; ++i) {
        deep += "../";
    }
    EXPECT_LE(extractedPath(deep, kEnding, 12).size(), kLongestExtractedPart);
    EXPECT_NE(extractedPath(deep, kEnding, 12), extractedPath(deep, kEnding, 13));
}

class ExtractionFolderTest : public testing::Test {
  protected:
    TemporaryFolder folder;
    const std::vector<std::uint8_t> bytes = {'a', 'b', 'c'};

    std::unique_ptr<ExtractionFolder> open(const desktop::FileCalls& calls = {}) {
        auto opened = ExtractionFolder::create(folder / "out", "Maps.app", calls);
        EXPECT_TRUE(opened) << (opened ? "" : toLine(opened.error()));
        return std::move(*opened);
    }
};

TEST_F(ExtractionFolderTest, FileIsThereOnlyOnceItIsPlaced) {
    const auto out = open();
    {
        auto unplaced = out->write("a/b/x.png", bytes);
        ASSERT_TRUE(unplaced);
        EXPECT_FALSE(fs::exists(folder / "out/Maps.app/a/b/x.png"));
        ASSERT_TRUE(unplaced->place());
    }
    EXPECT_EQ(folder.contents("out/Maps.app/a/b/x.png"), "abc");
    EXPECT_EQ(folder.names("out/Maps.app/a/b"), "x.png");
}

TEST_F(ExtractionFolderTest, UnplacedFileLeavesNothing) {
    const auto out = open();
    static_cast<void>(out->write("x.png", bytes));
    EXPECT_EQ(folder.names("out/Maps.app"), "");
}

TEST_F(ExtractionFolderTest, FullDiskIsAProblemAndLeavesNothing) {
    desktop::FileCalls calls;
    calls.write = [](int, const void*, std::size_t) -> ssize_t {
        errno = ENOSPC;
        return -1;
    };
    const auto out = open(calls);
    const auto unplaced = out->write("x.png", bytes);
    ASSERT_FALSE(unplaced);
    EXPECT_EQ(
        toLine(unplaced.error().problem),
        folder / "out/Maps.app/x.png" + ": the picture cannot be written: no space left on device");
    EXPECT_TRUE(unplaced.error().concernsAll);
    EXPECT_EQ(folder.names("out/Maps.app"), "");
}

TEST_F(ExtractionFolderTest, WhatIsInTheWayOfOneFileConcernsNoOther) {
    const auto out = open();
    folder.folder("out/Maps.app/x.png");
    folder.file("out/Maps.app/file", "text");
    folder.link("out/Maps.app/link", "/");
    auto unplaced = out->write("x.png", bytes);
    ASSERT_TRUE(unplaced);
    const auto placed = unplaced->place();
    ASSERT_FALSE(placed);
    EXPECT_FALSE(placed.error().concernsAll) << toLine(placed.error().problem);
    for (const char* const path : {"file/x.png", "link/x.png"}) {
        const auto written = out->write(path, bytes);
        ASSERT_FALSE(written);
        EXPECT_FALSE(written.error().concernsAll) << toLine(written.error().problem);
    }
}

TEST_F(ExtractionFolderTest, FileOfTheSameNameIsAnothersAndStays) {
    std::string others;
    desktop::FileCalls calls;
    calls.openat = [&, isFirst = true](int in, const char* name, int flags, unsigned mode) mutable {
        if (std::exchange(isFirst, false)) {
            others = std::string("out/Maps.app/") + name;
            folder.file(others, "half");
        }
        return ::openat(in, name, flags, mode);
    };
    const auto out = open(calls);
    auto unplaced = out->write("x.png", bytes);
    ASSERT_TRUE(unplaced);
    ASSERT_TRUE(unplaced->place());
    EXPECT_EQ(folder.contents("out/Maps.app/x.png"), "abc");
    EXPECT_EQ(folder.contents(others), "half");
    EXPECT_EQ(folder.count("out/Maps.app"), 2);
}

// A catalog with atlases of several sizes and pictures that stand alone.
class ExtractionQueueTest : public testing::Test {
  protected:
    static constexpr std::uint16_t kAtlases = 5;
    static constexpr std::uint16_t kParts = 6;  // of an atlas

    ExtractionQueueTest() {
        CarWriter car;
        for (std::uint16_t page = 1; page <= kAtlases; ++page) {
            car.atlas(page, CarPixels::pattern(8U * page, 16));
            for (std::uint16_t part = 0; part < kParts; ++part) {
                const auto identifier = static_cast<std::uint16_t>(100 * page + part);
                car.facet("Part " + std::to_string(identifier), identifier);
                car.link({.identifier = identifier}, {0, 0, 4, 4}, page);
            }
            car.facet("Alone " + std::to_string(page), page);
            car.bitmap({.identifier = page}, CarPixels::pattern(6, 6));
        }
        bytes_ = car.build();
        catalog.emplace(*catalog::Catalog::fromBytes(bytes_));
        plan = *planExtraction(*catalog, {});
    }

    std::optional<catalog::Catalog> catalog;
    std::vector<PlannedPicture> plan;

  private:
    tests::ByteVector bytes_;
};

TEST_F(ExtractionQueueTest, GivesOutEveryPictureOnceAndEveryAtlasOnce) {
    ASSERT_EQ(plan.size(), std::size_t{kAtlases} * (kParts + 1));
    ExtractionQueue queue(*catalog, plan);
    std::set<std::size_t> given;
    std::set<std::shared_ptr<const desktop::Result<catalog::Picture>>> atlases;
    while (const auto turn = queue.take()) {
        EXPECT_TRUE(given.insert(turn->picture).second);
        const bool isLink = plan[turn->picture].rendition->kind == catalog::Kind::link;
        EXPECT_EQ(turn->atlas != nullptr, isLink);
        if (isLink) {
            atlases.insert(turn->atlas);
        }
    }
    EXPECT_EQ(given.size(), plan.size());
    EXPECT_EQ(atlases.size(), kAtlases);
}

TEST_F(ExtractionQueueTest, AtlasIsGoneWithItsLastPicture) {
    ExtractionQueue queue(*catalog, plan);
    std::weak_ptr<const desktop::Result<catalog::Picture>> last;
    std::size_t taken = 0;
    while (auto turn = queue.take()) {
        if (turn->atlas != last.lock()) {
            EXPECT_TRUE(last.expired()) << "two atlases for one thread";
            EXPECT_TRUE(taken == 0 || taken == kParts) << "parts of two atlases mixed";
            last = turn->atlas;
            taken = 0;
        }
        taken += turn->atlas != nullptr ? 1 : 0;
    }
    EXPECT_TRUE(last.expired());
}

TEST_F(ExtractionQueueTest, ServesManyThreads) {
    ExtractionQueue queue(*catalog, plan);
    std::mutex mutex;
    std::multiset<std::size_t> given;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&] {
                while (const auto turn = queue.take()) {
                    const std::lock_guard lock(mutex);
                    given.insert(turn->picture);
                }
            });
        }
    }
    EXPECT_EQ(given.size(), plan.size());
    EXPECT_EQ(std::set(given.begin(), given.end()).size(), plan.size());
}

TEST_F(ExtractionQueueTest, GivesNothingOnceStopped) {
    ExtractionQueue queue(*catalog, plan);
    EXPECT_TRUE(queue.take());
    queue.stop();
    EXPECT_FALSE(queue.take());
}

TEST_F(ExtractionFolderTest, StoppedExtractionTellsWhatItWroteAndLost) {
    CarWriter car;
    for (std::uint16_t i = 1; i <= 5; ++i) {
        car.facet("Icon " + std::to_string(i), i);
    }
    // The largest come first.
    car.bitmap({.identifier = 1, .width = 90, .height = 90}, catalog::Compression::astc,
               tests::ByteVector(50, 1));
    for (std::uint16_t i = 2; i <= 5; ++i) {
        car.bitmap({.identifier = i}, CarPixels::pattern(50U - i, 8));
    }
    const tests::ByteVector file = car.build();
    const auto catalog = catalog::Catalog::fromBytes(file);
    const auto plan = planExtraction(*catalog, {});
    desktop::FileCalls calls;
    int writes = 0;
    calls.write = [&](int to, const void* from, std::size_t count) -> ssize_t {
        if (++writes > 2) {
            errno = ENOSPC;
            return -1;
        }
        return ::write(to, from, count);
    };
    const auto out = open(calls);
    const Extraction extraction = extractPictures(*catalog, *plan, *out, {});
    ASSERT_TRUE(extraction.stopped);
    EXPECT_EQ(extraction.stopped->message,
              "the picture cannot be written: no space left on device");
    EXPECT_EQ(extraction.pictures, 2U);
    EXPECT_EQ(extraction.files.size(), 2U);
    ASSERT_EQ(extraction.lost.size(), 1U);
    EXPECT_EQ(extraction.lost.front().picture.facet->name, "Icon 1");
    EXPECT_EQ(folder.names("out/Maps.app"), "Icon 2-48-8.png Icon 3-47-8.png");
}

}  // namespace
}  // namespace velmoranth::cli::extract_parts_test
