#include "simulator/artwork/artwork.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace velmoranth::simulator::stock_icons_test {
namespace {

using Picture = std::vector<std::uint8_t>;

// What a fresh device has, written down apart from the table that draws it.
const std::vector<std::string> kApps{
    "com.apple.mobilephone", "com.apple.Preferences",
    "com.apple.MobileSMS",   "com.apple.mobilesafari",
    "com.apple.AppStore",    "com.apple.calculator",
    "com.apple.weather",     "com.apple.Music",
    "com.apple.mobilenotes", "com.apple.mobilemail",
    "com.apple.Maps",        "com.apple.camera",
    "com.apple.VoiceMemos",  "com.apple.mobileslideshow",
    "com.apple.mobilecal",   "com.apple.stocks",
    "com.apple.reminders",   "com.apple.Passbook",
    "com.apple.iBooks",      "com.apple.MobileAddressBook",
    "com.apple.MobileStore", "com.apple.Health",
    "com.apple.facetime",    "com.apple.tv",
    "com.apple.news",        "com.apple.compass",
    "com.apple.Bridge",      "com.apple.mobiletimer",
    "com.apple.Home",        "com.apple.DocumentsApp",
    "com.apple.tips",        "com.apple.podcasts",
    "com.apple.measure",     "com.google.ios.youtube",
    "com.burbn.instagram",   "com.saurik.Cydia",
    "com.netflix.Netflix",   "com.google.Gmail",
    "com.google.chrome.ios", "com.facebook.Facebook",
    "net.whatsapp.WhatsApp", "com.toyopagroup.picaboo",
    "com.google.Maps",       "com.atebits.Tweetie2",
    "com.spotify.client",    "com.google.Drive",
};

void expectOpaque(const Picture& picture, const std::string& what) {
    for (std::size_t i = 3; i < picture.size(); i += 4) {
        ASSERT_EQ(picture[i], 255) << what << " at pixel " << i / 4;
    }
}

// How many pixels of two pictures of one size differ clearly.
std::size_t clearDifferences(const Picture& a, const Picture& b) {
    std::size_t count = 0;
    for (std::size_t i = 0; i + 3 < a.size(); i += 4) {
        int distance = 0;
        for (std::size_t c = i; c < i + 3; ++c) {
            distance += a[c] > b[c] ? a[c] - b[c] : b[c] - a[c];
        }
        count += distance > 40 ? 1 : 0;
    }
    return count;
}

TEST(StockIcons, EveryAppOfAFreshDeviceHasOne) {
    for (const std::string& app : kApps) {
        EXPECT_TRUE(hasStockIcon(app)) << app;
    }
    EXPECT_EQ(stockIconIdentifiers().size(), kApps.size());
    for (const std::string_view identifier : stockIconIdentifiers()) {
        EXPECT_TRUE(hasStockIcon(identifier)) << identifier;
    }
}

TEST(StockIcons, NoTwoAppsLookAlike) {
    std::set<Picture> pictures;
    for (const std::string& app : kApps) {
        EXPECT_TRUE(pictures.insert(drawStockIcon(app, 60)).second) << app;
    }
}

TEST(StockIcons, FillTheirSquareAtEverySize) {
    for (const int pixels : {29, 60, 76, 120, 152, 180, 1024}) {
        for (const std::string& app : kApps) {
            const Picture icon = drawStockIcon(app, pixels);
            ASSERT_EQ(icon.size(),
                      static_cast<std::size_t>(pixels) * static_cast<std::size_t>(pixels) * 4);
            expectOpaque(icon, app + " at " + std::to_string(pixels));
        }
    }
}

TEST(StockIcons, AreTheSameEveryTime) {
    for (const std::string& app : kApps) {
        EXPECT_EQ(drawStockIcon(app, 120), drawStockIcon(app, 120)) << app;
    }
}

// A glyph that draws nothing, or covers its plate, leaves the icon without a picture.
TEST(StockIcons, GlyphStandsOutFromThePlate) {
    constexpr int kSide = 120;
    for (const std::string& app : kApps) {
        const Picture icon = drawStockIcon(app, kSide);
        // The plate alone: its left edge carried across, since a plate changes from top to bottom.
        std::size_t different = 0;
        for (std::size_t y = 30; y < 90; ++y) {
            for (std::size_t x = 24; x < 96; ++x) {
                int distance = 0;
                for (std::size_t c = 0; c < 3; ++c) {
                    const int plate = icon[(y * kSide + 3) * 4 + c];
                    const int here = icon[(y * kSide + x) * 4 + c];
                    distance += plate > here ? plate - here : here - plate;
                }
                different += distance > 90 ? 1 : 0;
            }
        }
        EXPECT_GT(different, 60U * 72U / 12) << app;
    }
}

TEST(StockIcons, UnknownAppsGetThePlainPlateWithTheirLetter) {
    EXPECT_FALSE(hasStockIcon("org.example.Quartz"));
    EXPECT_FALSE(hasStockIcon(""));
    EXPECT_FALSE(hasStockIcon("com.apple.mobilesms"));
    const Picture letter = drawStockIcon("org.example.Quartz", 60);
    expectOpaque(letter, "letter");
    EXPECT_EQ(letter, drawStockIcon("net.other.quilt", 60));
    EXPECT_EQ(letter, drawStockIcon("-quince", 60));
    EXPECT_GT(clearDifferences(letter, drawStockIcon("org.example.maple", 60)), 100U);
    expectOpaque(drawStockIcon("", 60), "no name");
    EXPECT_EQ(drawStockIcon("", 60), drawStockIcon("org.example.", 60));
    expectOpaque(drawStockIcon(std::string("\0\xFF..", 4), 60), "odd bytes");
}

TEST(StockIcons, EveryLetterAndDigitIsDrawn) {
    const Picture ring = drawStockIcon("...", 60);
    std::set<Picture> pictures{ring};
    std::size_t same = 0;
    for (const char c : std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789")) {
        same += pictures.insert(drawStockIcon(std::string("x.") + c, 60)).second ? 0 : 1;
    }
    EXPECT_EQ(same, 2U);  // the letter O and the digit 0 are the ring
}

TEST(StockIcons, SizesOutOfRangeGiveNothing) {
    for (const int pixels : {0, -1, std::numeric_limits<int>::min(), kMaximumIconPixels + 1,
                             std::numeric_limits<int>::max()}) {
        EXPECT_TRUE(drawStockIcon("com.apple.Music", pixels).empty()) << pixels;
        EXPECT_TRUE(drawClockFace(pixels).empty()) << pixels;
    }
    expectOpaque(drawStockIcon("com.apple.Music", 1), "one pixel");
}

TEST(StockIcons, ClockFaceIsTheClockWithoutItsHands) {
    const Picture face = drawClockFace(120);
    const Picture clock = drawStockIcon("com.apple.mobiletimer", 120);
    ASSERT_EQ(face.size(), clock.size());
    expectOpaque(face, "face");
    const std::size_t different = clearDifferences(face, clock);
    EXPECT_GT(different, 100U);
    EXPECT_LT(different, 1000U);
    const std::size_t middle = (60UL * 120 + 60) * 4;
    EXPECT_EQ(face[middle], 255);
}

}  // namespace
}  // namespace velmoranth::simulator::stock_icons_test
