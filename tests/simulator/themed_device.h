// A device with one theme of a test's own, and its screens with the engine's library. The test's
// program starts itself again as a simulated process (starts_again.cpp).
#pragma once

#include "desktop/files/create_device_root.h"
#include "desktop/image_io/image_io.h"
#include "desktop/plist/property_lists.h"
#include "simulator/artwork/artwork.h"
#include "simulator/process/launcher.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

using Pixel = std::array<std::uint8_t, 4>;  // B, G, R, A

inline constexpr Pixel kBlack{0, 0, 0, 255};
inline constexpr Pixel kWhite{255, 255, 255, 255};
inline constexpr Pixel kMagenta{255, 0, 255, 255};
inline constexpr Pixel kGreen{0, 255, 0, 255};
inline constexpr Pixel kBlue{255, 0, 0, 255};

// A finished screen, looked at in points.
class Look {
  public:
    explicit Look(RenderedScreen screen)
        : screen_(std::move(screen)),
          wallpaper_(drawWallpaper(static_cast<int>(screen_.picture.width),
                                   static_cast<int>(screen_.picture.height))) {}

    [[nodiscard]] Pixel at(double x, double y) const { return in(screen_.picture.pixels, x, y); }

    // What the stock wallpaper has there.
    [[nodiscard]] Pixel wallpaperAt(double x, double y) const { return in(wallpaper_, x, y); }

    [[nodiscard]] bool showsWallpaper(double x, double y) const {
        return at(x, y) == wallpaperAt(x, y);
    }

    // Whether nothing but wallpaper shows in that part of the screen.
    [[nodiscard]] bool showsWallpaperIn(const platform::Rect& rect) const {
        const double step = 1 / screen_.picture.scale;
        for (double y = rect.origin.y; y < rect.origin.y + rect.size.height; y += step) {
            for (double x = rect.origin.x; x < rect.origin.x + rect.size.width; x += step) {
                if (!showsWallpaper(x, y)) {
                    return false;
                }
            }
        }
        return true;
    }

    [[nodiscard]] std::size_t count(const Pixel& pixel) const {
        std::size_t found = 0;
        const std::vector<std::uint8_t>& pixels = screen_.picture.pixels;
        for (std::size_t i = 0; i + 4 <= pixels.size(); i += 4) {
            found += std::equal(pixel.begin(), pixel.end(),
                                pixels.begin() + static_cast<std::ptrdiff_t>(i));
        }
        return found;
    }

    // Top left of the icon, points.
    [[nodiscard]] platform::Point icon(std::string_view identifier) const {
        const auto found = std::find_if(
            screen_.icons.begin(), screen_.icons.end(),
            [&](const ShownIcon& icon) { return icon.bundleIdentifier == identifier; });
        EXPECT_NE(found, screen_.icons.end()) << identifier;
        return {found->x / screen_.picture.scale, found->y / screen_.picture.scale};
    }

    [[nodiscard]] const RenderedScreen& screen() const { return screen_; }

  private:
    [[nodiscard]] Pixel in(const std::vector<std::uint8_t>& pixels, double x, double y) const {
        const auto column = static_cast<std::size_t>(std::lround(x * screen_.picture.scale));
        const auto row = static_cast<std::size_t>(std::lround(y * screen_.picture.scale));
        Pixel pixel{};
        std::copy_n(pixels.begin() +
                        static_cast<std::ptrdiff_t>((row * screen_.picture.width + column) * 4),
                    4, pixel.begin());
        return pixel;
    }

    RenderedScreen screen_;
    std::vector<std::uint8_t> wallpaper_;
};

class ThemedDevice {
  public:
    ThemedDevice() { EXPECT_TRUE(desktop::createDeviceRoot(folder / "device")); }

    // A picture of the theme: `left` and `right` half in one colour each.
    void png(const std::string& name, std::size_t width, std::size_t height, const Pixel& left,
             const Pixel& right) const {
        std::vector<std::uint8_t> pixels;
        for (std::size_t i = 0; i < width * height; ++i) {
            const Pixel& pixel = i % width < width / 2 ? left : right;
            pixels.insert(pixels.end(), pixel.begin(), pixel.end());
        }
        const platform::Data bytes = desktop::encodePng(pixels, width, height, width * 4);
        folder.file("device/Library/Themes/T.theme/" + name,
                    std::string(bytes.begin(), bytes.end()));
    }

    void png(const std::string& name, std::size_t width, std::size_t height,
             const Pixel& pixel) const {
        png(name, width, height, pixel, pixel);
    }

    [[nodiscard]] ScreenRequest request(std::string_view model, int system,
                                        platform::Dictionary preferences) const {
        preferences.try_emplace("enable", true);
        preferences.try_emplace("ActiveThemes", platform::PropertyList::Array{"T.theme"});
        const platform::Data bytes =
            desktop::writeXmlPropertyList(platform::PropertyList(std::move(preferences)));
        folder.file("device/User/Library/Preferences/com.qor.velmoranthprefs.plist",
                    std::string(bytes.begin(), bytes.end()));
        ScreenRequest wanted;
        wanted.device = deviceConfiguration(model, system).value();
        wanted.deviceFiles = folder / "device";
        wanted.enginePath = tests::kEngineLibrary;
        return wanted;
    }

    // The home screen with those preferences, theming on unless they say otherwise.
    [[nodiscard]] Look look(std::string_view model, int system,
                            const platform::Dictionary& preferences) const {
        auto screen = renderScreen(request(model, system, preferences));
        EXPECT_TRUE(screen) << (screen ? "" : toLine(screen.error()));
        return Look(std::move(*screen));
    }

    tests::TemporaryFolder folder;
};

}  // namespace velmoranth::simulator
