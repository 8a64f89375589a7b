#include "hooks/images/catalog_image_hooks.h"

#include <gtest/gtest.h>

namespace velmoranth::tests {
namespace {

TEST(ThemeImgFound, StartsOff) {
    EXPECT_FALSE(hooks::themeImgFound);
}

}  // namespace
}  // namespace velmoranth::tests
