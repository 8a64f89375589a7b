// Previews of a theme, by what they say on standard error.
#pragma once

#include "desktop/image_io/image_io.h"
#include "tests/cli/preview_fixture.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::cli {

class PreviewReportTest : public PreviewTest {
  protected:
    // A picture of one colour, opaque unless the alpha says otherwise.
    void picture(const std::string& name, Color color = kMagenta, std::uint8_t alpha = 255) const {
        constexpr std::size_t kSide = 180;
        std::vector<std::uint8_t> pixels;
        const auto shown = [alpha](std::uint8_t value) {
            return static_cast<std::uint8_t>(value * alpha / 255);
        };
        for (std::size_t i = 0; i < kSide * kSide; ++i) {
            pixels.insert(pixels.end(),
                          {shown(color.blue), shown(color.green), shown(color.red), alpha});
        }
        const auto png = desktop::encodePng(pixels, kSide, kSide, kSide * 4);
        folder.file(name, std::string(png.begin(), png.end()));
    }

    // Standard error of a preview of the theme A.
    [[nodiscard]] std::string report(std::vector<std::string> more = {}) const {
        std::vector<std::string> words{"preview", "A"};
        words.insert(words.end(), more.begin(), more.end());
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 0);
        EXPECT_TRUE(result.output.starts_with("preview.png: ")) << result.output;
        EXPECT_EQ(folder.names("tmp"), "");
        return result.errors;
    }
};

}  // namespace velmoranth::cli
