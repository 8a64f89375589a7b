#include "hooks/images/named_image_hooks.h"

#include <gtest/gtest.h>

namespace velmoranth::tests {
namespace {

TEST(WallpaperFileName, IsTheThemesForTheStoredWallpapers) {
    const std::string folder = "/var/mobile/Library/SpringBoard/";
    EXPECT_EQ(hooks::wallpaperFileName(folder + "OriginalHomeBackground.cpbitmap"),
              "OriginalHomeBackground.png");
    EXPECT_EQ(hooks::wallpaperFileName(folder + "OriginalLockBackground.cpbitmap"),
              "LockBackground.png");
}

}  // namespace
}  // namespace velmoranth::tests
