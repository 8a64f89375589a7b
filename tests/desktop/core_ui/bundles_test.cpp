#include "desktop/core_ui/bundles.h"

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace velmoranth::desktop::bundles_test {
namespace {

class Bundles : public testing::Test {
  protected:
    Bundles() { host_.folder("root"); }

    DesktopBundles bundles() const {
        return DesktopBundles(DeviceRoot::open(host_ / "root").value());
    }

    platform::NullableString identifier(const std::string& path) const {
        return platform::bundleIdentifierOf(bundles().bundleWithPath(path));
    }

    void information(const std::string& path, const std::string& key, const std::string& value) {
        host_.file("root/" + path, "{ " + key + " = " + value + "; }");
    }

    tests::TemporaryFolder host_;
};

TEST_F(Bundles, FolderIsABundleAndNothingElseIs) {
    host_.folder("root/A.app");
    host_.file("root/file");
    EXPECT_NE(bundles().bundleWithPath("/A.app"), nullptr);
    EXPECT_NE(bundles().bundleWithPath("/A.app/"), nullptr);
    EXPECT_EQ(bundles().bundleWithPath("/file"), nullptr);
    EXPECT_EQ(bundles().bundleWithPath("/none"), nullptr);
    EXPECT_EQ(bundles().bundleWithPath(""), nullptr);
}

TEST_F(Bundles, IdentifierIsThatOfTheInformationFile) {
    information("A.app/Info.plist", "CFBundleIdentifier", "\"com.example.a\"");
    information("B.framework/Resources/Info.plist", "CFBundleIdentifier", "\"com.example.b\"");
    information("C.app/Contents/Info.plist", "CFBundleIdentifier", "\"com.example.c\"");
    EXPECT_EQ(identifier("/A.app"), "com.example.a");
    EXPECT_EQ(identifier("/B.framework"), "com.example.b");
    EXPECT_EQ(identifier("/C.app"), "com.example.c");
}

TEST_F(Bundles, NoIdentifier) {
    host_.folder("root/Empty.app");
    information("Other.app/Info.plist", "CFBundleName", "Other");
    information("Odd.app/Info.plist", "CFBundleIdentifier", "( a, b )");
    host_.file("root/Damaged.app/Info.plist", "bplist00");
    for (const char* const path : {"/Empty.app", "/Other.app", "/Odd.app", "/Damaged.app"}) {
        EXPECT_EQ(identifier(path), std::nullopt) << path;
    }
}

TEST_F(Bundles, ResourceIsInTheFolderOrWhereFrameworksHaveIt) {
    host_.file("root/A.app/Assets.car", "");
    host_.file("root/B.framework/Resources/Assets.car", "");
    host_.file("root/C.app/Contents/Resources/Assets.car", "");
    host_.folder("root/D.app/Assets.car");
    const auto path = [this](const std::string& bundle) {
        return std::dynamic_pointer_cast<DesktopBundle>(bundles().bundleWithPath(bundle))
            ->pathForResource("Assets.car");
    };
    EXPECT_EQ(path("/A.app"), "/A.app/Assets.car");
    EXPECT_EQ(path("/B.framework"), "/B.framework/Resources/Assets.car");
    EXPECT_EQ(path("/C.app"), "/C.app/Contents/Resources/Assets.car");
    EXPECT_EQ(path("/D.app"), "");
}

TEST_F(Bundles, LoadingNilFails) {
    host_.folder("root/A.app");
    EXPECT_TRUE(bundles().load(bundles().bundleWithPath("/A.app")));
    EXPECT_FALSE(bundles().load(nullptr));
}

}  // namespace
}  // namespace velmoranth::desktop::bundles_test
