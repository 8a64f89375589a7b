// Whole files into memory.
#include "desktop/files/file_manager.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace velmoranth::desktop::file_data_test {
namespace {

class DataWithContentsOfFile : public testing::Test {
  protected:
    DataWithContentsOfFile() { host_.folder("root"); }

    tests::TemporaryFolder host_;
    DesktopFileManager files_{DeviceRoot::open(host_.path()).value()};
};

TEST_F(DataWithContentsOfFile, ReadsEveryByte) {
    const std::string text("a\0b\xFF", 4);
    host_.file("sound", text);
    EXPECT_EQ(files_.dataWithContentsOfFile("/sound"), platform::Data(text.begin(), text.end()));
    host_.link("link", "/sound");
    EXPECT_EQ(files_.dataWithContentsOfFile("/link"), platform::Data(text.begin(), text.end()));
}

TEST_F(DataWithContentsOfFile, AnEmptyFileIsNoBytesAndNotNil) {
    host_.file("empty", "");
    EXPECT_EQ(files_.dataWithContentsOfFile("/empty"), platform::Data());
}

TEST_F(DataWithContentsOfFile, IsNilWithoutAFile) {
    host_.folder("folder");
    host_.link("dangling", "/nowhere");
    for (const char* const path : {"/none", "/folder", "/dangling", "", "/none/file"}) {
        EXPECT_EQ(files_.dataWithContentsOfFile(path), std::nullopt) << path;
    }
}

TEST_F(DataWithContentsOfFile, IsNilOverTheLimitAlone) {
    host_.file("at", "");
    host_.file("over", "");
    std::filesystem::resize_file(host_ / "at", kMaxDataBytes);
    std::filesystem::resize_file(host_ / "over", kMaxDataBytes + 1);
    EXPECT_EQ(kMaxDataBytes, 268435456U);
    const auto whole = files_.dataWithContentsOfFile("/at");
    ASSERT_TRUE(whole.has_value());
    EXPECT_EQ(whole->size(), kMaxDataBytes);
    EXPECT_EQ(files_.dataWithContentsOfFile("/over"), std::nullopt);
}

}  // namespace
}  // namespace velmoranth::desktop::file_data_test
