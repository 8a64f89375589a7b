#include "desktop/plist/property_lists.h"

#include "desktop/files/create_device_root.h"

#include "property_list_text.h"
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace velmoranth::desktop::property_lists_test {
namespace {

using platform::Dictionary;
using platform::PropertyList;

class DesktopPropertyListsTest : public testing::Test {
  protected:
    DesktopPropertyListsTest() {
        std::string name = std::filesystem::temp_directory_path() / "velmoranth-XXXXXX";
        folder_ = ::mkdtemp(name.data());
        root_ = createDeviceRoot(folder_).value();
    }

    ~DesktopPropertyListsTest() override { std::filesystem::remove_all(folder_); }

    void put(const std::string& path, const std::string& contents) const {
        std::ofstream(folder_ + path, std::ios::binary) << contents;
    }

    std::string folder_;
    std::shared_ptr<DeviceRoot> root_;
};

TEST_F(DesktopPropertyListsTest, ReadsAFileOfTheDevice) {
    put("/private/var/mobile/Library/Preferences/x.plist",
        "<plist><dict><key>enable</key><true/></dict></plist>");
    DesktopPropertyLists lists(root_);
    EXPECT_EQ(lists.dictionaryWithContentsOfFile("/User/Library/Preferences/x.plist"),
              (Dictionary{{"enable", true}}));
}

TEST_F(DesktopPropertyListsTest, NilIsWhatIsNoDictionary) {
    put("/array", "(a, b)");
    put("/text", "one");
    put("/broken", "{ a = b }");
    put("/empty", "");
    put("/blank", " \n");
    DesktopPropertyLists lists(root_);
    for (const char* const path :
         {"/array", "/text", "/broken", "/empty", "/none", "/Library", ""}) {
        EXPECT_EQ(lists.dictionaryWithContentsOfFile(path), std::nullopt) << path;
    }
    EXPECT_EQ(lists.dictionaryWithContentsOfFile("/blank"), Dictionary{});
}

// As deep as is read, whatever is done with the value.
TEST_F(DesktopPropertyListsTest, DeepFilesAreReadAndUsedOrRefused) {
    const auto file = [](int depth) {
        std::string text = "<plist><dict><key>a</key>";
        for (int i = 1; i < depth; ++i) {
            text += "<array>";
        }
        for (int i = 1; i < depth; ++i) {
            text += "</array>";
        }
        return text + "</dict></plist>";
    };
    DesktopPropertyLists lists(root_);
    for (const int depth : {513, 600, kMaxPropertyListDepth}) {
        put("/deep", file(depth));
        const auto dictionary = lists.dictionaryWithContentsOfFile("/deep");
        ASSERT_TRUE(dictionary) << depth;
        const PropertyList value(*dictionary);
        const PropertyList copy(value);
        EXPECT_TRUE(copy == value);
        EXPECT_FALSE(platform::description(copy).empty());
        const platform::Data written = writeXmlPropertyList(copy);
        EXPECT_TRUE(parsePropertyList(written).value() == value);
    }
    for (const int depth : {kMaxPropertyListDepth + 2, 100'000, 1'000'000}) {
        put("/deep", file(depth));
        EXPECT_EQ(lists.dictionaryWithContentsOfFile("/deep"), std::nullopt) << depth;
        EXPECT_FALSE(lists.printableDictionaryWithContentsOfFile("/deep")) << depth;
    }
}

TEST_F(DesktopPropertyListsTest, PrintsAsItsValuesDo) {
    put("/file", "{ b = (1, 2); }");
    DesktopPropertyLists lists(root_);
    const auto read = lists.printableDictionaryWithContentsOfFile("/file");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->values, lists.dictionaryWithContentsOfFile("/file"));
    EXPECT_EQ(platform::description(*read), platform::description(PropertyList(read->values)));
}

TEST_F(DesktopPropertyListsTest, ProblemsNameTheFile) {
    put("/broken", "{ a = b }");
    EXPECT_EQ(toLine(readPropertyList(*root_, "/broken").error()),
              "/broken: a semicolon is missing (line 1, column 9)");
    EXPECT_EQ(toLine(readPropertyList(*root_, "/none").error()),
              "/none: no such file or directory");
}

TEST_F(DesktopPropertyListsTest, LargeFilesAreRefusedUnread) {
    put("/large", "{");
    std::filesystem::resize_file(folder_ + "/large", kMaxPropertyListBytes + 1);
    EXPECT_EQ(toLine(readPropertyList(*root_, "/large").error()),
              "/large: the file is larger than 16777216 bytes");
    EXPECT_EQ(parsePropertyList(platform::Data(kMaxPropertyListBytes + 1, ' ')).error().message,
              "the property list is larger than 16777216 bytes");
    EXPECT_TRUE(parsePropertyList(platform::Data(kMaxPropertyListBytes, ' ')).has_value());
}

}  // namespace
}  // namespace velmoranth::desktop::property_lists_test
