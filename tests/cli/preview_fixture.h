// A folder with small themes in one colour, and looking at the pictures that come out.
#pragma once

#include "desktop/image_io/image_io.h"
#include "tests/cli/command.h"
#include "tests/cli/copied_command.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

using tests::TemporaryFolder;

struct Color {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
};

// Colours that nothing else on the screen has.
inline constexpr Color kMagenta{255, 0, 254};
inline constexpr Color kLime{1, 255, 0};

// A PNG file as it came out.
class PngPicture {
  public:
    explicit PngPicture(const std::string& bytes) {
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
        if (const auto image = desktop::decodeImage({data, bytes.size()})) {
            width = image->layout.width;
            height = image->layout.height;
            pixels_ = desktop::toPremultipliedBgra(*image);
        }
    }

    std::size_t width = 0;
    std::size_t height = 0;

    // How many pixels of columns [first, last) have exactly that colour.
    [[nodiscard]] int count(Color color, std::size_t first = 0,
                            std::optional<std::size_t> last = {}) const {
        int found = 0;
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = first; x < std::min(last.value_or(width), width); ++x) {
                const std::uint8_t* const pixel = pixels_.data() + (y * width + x) * 4;
                found += pixel[0] == color.blue && pixel[1] == color.green && pixel[2] == color.red;
            }
        }
        return found;
    }

  private:
    std::vector<std::uint8_t> pixels_;
};

// A PNG file of 16 bits of gray a pixel, black all over: 8 by 8 pixels.
inline std::string deepGrayPng() {
    static constexpr auto kBytes = std::to_array<unsigned char>(
        {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48,
         0x44, 0x52, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00, 0x08, 0x10, 0x00, 0x00, 0x00,
         0x00, 0xb1, 0xf4, 0x3d, 0x14, 0x00, 0x00, 0x00, 0x0c, 0x49, 0x44, 0x41, 0x54, 0x78,
         0x9c, 0x63, 0x60, 0x18, 0x1c, 0x00, 0x00, 0x00, 0x88, 0x00, 0x01, 0x4a, 0x45, 0xea,
         0xcb, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82});
    return {kBytes.begin(), kBytes.end()};
}

class PreviewTest : public testing::Test {
  protected:
    PreviewTest() {
        folder.folder("tmp");
        folder.folder("work");
        std::filesystem::permissions(folder / "tmp", std::filesystem::perms(0777));
    }

    // A theme whose icon of the settings app is that colour.
    void theme(const std::string& name, Color color) const {
        std::vector<std::uint8_t> pixels;
        for (int i = 0; i < 180 * 180; ++i) {
            pixels.insert(pixels.end(), {color.blue, color.green, color.red, 255});
        }
        const auto png = desktop::encodePng(pixels, 180, 180, std::size_t{180} * 4);
        folder.file(name + "/IconBundles/com.apple.Preferences-large.png",
                    std::string(png.begin(), png.end()));
    }

    // In "work", with temporary files in "tmp".
    [[nodiscard]] CommandSetting setting() const {
        return {.folder = folder / "work", .variables = {{"TMPDIR", folder / "tmp"}}};
    }

    // The same, where a process that is asked for the app's icon answers and then ends with a
    // signal.
    [[nodiscard]] CommandSetting endingSetting(const std::string& app) const {
        CommandSetting ending = setting();
        const std::filesystem::path copy = folder / "command";
        folder.folder("command");
        ending.program = copyCommand(copy);
        std::filesystem::remove(copy / kEngineName);
        std::filesystem::create_symlink(tests::standInLibrary("ending"), copy / kEngineName);
        ending.variables["ENDS_AT"] = app;
        return ending;
    }

    // Without a word about the themes, which takes another process.
    [[nodiscard]] CommandResult preview(std::vector<std::string> words) const {
        words.insert(words.begin(), {"preview", "--quiet"});
        return runCommand(words, setting());
    }

    [[nodiscard]] PngPicture picture(const std::string& name = "work/preview.png") const {
        return PngPicture(folder.contents(name));
    }

    // Refused with that one line, exit code 3, and nothing left anywhere.
    void expectBadInput(const std::vector<std::string>& words, const std::string& message) const {
        const CommandResult result = preview(words);
        EXPECT_EQ(result.code, 3) << message;
        EXPECT_EQ(result.errors, "velmoranth: error: " + message + "\n");
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(folder.names("tmp"), "");
    }

    TemporaryFolder folder;
};

}  // namespace velmoranth::cli
