#include "tools/catalog_extraction.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmoranth::tools::extraction_names_test {
namespace {

TEST(ExtractionNames, FileOfACatalogGoesBelowItsFoldersName) {
    EXPECT_EQ(extractionFolder("/A/B/Assets.car", "/tmp/x"), "/tmp/x/B/Assets.car");
    EXPECT_EQ(extractionFolder("/Assets.car", "/tmp/x"), "/tmp/x///Assets.car");
}

TEST(ExtractionNames, BundleGoesBelowItsOwnName) {
    EXPECT_EQ(extractionFolder("/Applications/Clock.app", "/tmp/x"), "/tmp/x/Clock.app");
    EXPECT_EQ(extractionFolder("/Applications/Clock.app/", "/tmp/x"), "/tmp/x/Clock.app");
}

TEST(ExtractionNames, PlainSuffixTellsAFile) {
    EXPECT_TRUE(isCatalogFile("/a/Assets.car"));
    EXPECT_TRUE(isCatalogFile("/a/Sidecar"));
    EXPECT_TRUE(isCatalogFile("/a/Assets.car/"));
    EXPECT_FALSE(isCatalogFile("/a/Assets.CAR"));
    EXPECT_FALSE(isCatalogFile("/Sidecar/Assets"));
}

TEST(ExtractionNames, ScaleOfOneIsLeftOut) {
    EXPECT_EQ(extractedFileName("AppIcon60x60", 3, 180, 180), "AppIcon60x60-180-180-@3x.png");
    EXPECT_EQ(extractedFileName("Plain", 1, 20, 30), "Plain-20-30.png");
    EXPECT_EQ(extractedFileName("Plain", 2, 20, 30), "Plain-20-30-@2x.png");
}

TEST(ExtractionNames, ScaleIsTruncatedTowardZero) {
    EXPECT_EQ(extractedFileName("n", 1.5, 1, 2), "n-1-2.png");
    EXPECT_EQ(extractedFileName("n", 2.99, 1, 2), "n-1-2-@2x.png");
    EXPECT_EQ(extractedFileName("n", 0, 1, 2), "n-1-2-@0x.png");
    EXPECT_EQ(extractedFileName("n", -1.5, 1, 2), "n-1-2-@-1x.png");
    EXPECT_EQ(extractedFileName("n", std::numeric_limits<double>::quiet_NaN(), 1, 2),
              "n-1-2-@0x.png");
}

}  // namespace
}  // namespace velmoranth::tools::extraction_names_test
