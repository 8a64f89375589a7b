#include "desktop/files/create_device_root.h"

#include "desktop/files/file_manager.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace velmoranth::desktop {
namespace {

using tests::TemporaryFolder;

TEST(CreateDeviceRoot, LaysOutThePhonesFoldersAndLinks) {
    const TemporaryFolder host;
    const auto root = createDeviceRoot(host / "device").value();
    DesktopFileManager files(root);
    for (const char* const folder :
         {"/Library/Themes", "/User/Library/Preferences", "/var/mobile/Library/Preferences",
          "/User/Library/VelMoranth/DefaultSettings", "/User/Library/VelMoranth/UserSettings",
          "/var/root", "/private/var/mobile", "/private/var/run/notifications"}) {
        EXPECT_TRUE(files.fileExistsAtPathIsDirectory(folder).isDirectory) << folder;
    }
    EXPECT_TRUE(files.createFileAtPathContents("/User/Library/Preferences/x", {'x'}));
    EXPECT_EQ(host.contents("device/private/var/mobile/Library/Preferences/x"), "x");
}

TEST(CreateDeviceRoot, TakesAnEmptyFolder) {
    const TemporaryFolder host;
    EXPECT_TRUE(createDeviceRoot(host.path()).has_value());
}

TEST(CreateDeviceRoot, RefusesAFolderThatIsNotEmpty) {
    const TemporaryFolder host;
    host.file(".hidden");
    EXPECT_EQ(toLine(createDeviceRoot(host.path()).error()),
              host.path() + ": the folder is not empty; a new device needs an empty one");
    EXPECT_EQ(host.count("."), 1);
    EXPECT_EQ(createDeviceRoot(host / "no/where").error().message, "no such file or directory");
    EXPECT_EQ(createDeviceRoot(host / ".hidden").error().message, "not a directory");
}

TEST(ImportFolder, CopiesAThemeOntoTheDevice) {
    const TemporaryFolder host;
    host.folder("theme/IconBundles");
    host.file("theme/IconBundles/icon.png", "png");
    host.link("link", "theme");
    const auto root = createDeviceRoot(host / "device").value();
    EXPECT_TRUE(importFolder(*root, host / "link", "/Library/Themes/Mine").has_value());
    EXPECT_EQ(host.contents("device/Library/Themes/Mine/IconBundles/icon.png"), "png");
    EXPECT_EQ(importFolder(*root, host / "link", "/Library/Themes/Mine").error().message,
              "file exists");
    EXPECT_EQ(importFolder(*root, host / "none", "/Library/Themes/Other").error().path,
              host / "none");
    EXPECT_FALSE(std::filesystem::exists(host / "device/Library/Themes/Other"));
}

}  // namespace
}  // namespace velmoranth::desktop
