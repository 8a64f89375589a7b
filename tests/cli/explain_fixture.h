// Small themes, and asking velmoranth explain about them.
#pragma once

#include "desktop/image_io/image_io.h"
#include "tests/cli/preview_fixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::cli {

inline constexpr Color kBlack{0, 0, 0};  // as a mask it hides nothing
inline constexpr const char* kMask = "/Bundles/com.apple.mobileicons.framework/AppIconMask.png";
inline constexpr const char* kMaps = "IconBundles/com.apple.Maps-large.png";
inline constexpr const char* kDock = "A/Velmoranth/SBDockBGiphone.png";

inline std::string lastLine(const std::string& text) {
    const std::size_t end = text.find_last_not_of('\n');
    const std::size_t begin = text.rfind('\n', end);
    return text.substr(begin + 1, end - begin);
}

class ExplainTest : public PreviewTest {
  protected:
    // A picture of one colour, that side in pixels.
    void picture(const std::string& name, std::size_t side = 180, Color color = kMagenta) const {
        std::vector<std::uint8_t> pixels(side * side * 4, 255);
        for (std::size_t i = 0; i < pixels.size(); i += 4) {
            pixels[i] = color.blue;
            pixels[i + 1] = color.green;
            pixels[i + 2] = color.red;
        }
        const auto png = desktop::encodePng(pixels, side, side, side * 4);
        folder.file("work/" + name, std::string(png.begin(), png.end()));
    }

    [[nodiscard]] CommandResult explain(std::vector<std::string> words) const {
        words.insert(words.begin(), "explain");
        return runCommand(words, setting());
    }

    // The sentence that sums up.
    [[nodiscard]] std::string answer(const std::vector<std::string>& words, int code = 0) const {
        const CommandResult result = explain(words);
        EXPECT_EQ(result.code, code) << result.errors;
        EXPECT_EQ(folder.names("tmp"), "") << "nothing is left";
        return lastLine(result.output);
    }

    [[nodiscard]] nlohmann::json object(std::vector<std::string> words) const {
        words.insert(words.begin(), "--json");
        return nlohmann::json::parse(explain(words).output, nullptr, false);
    }
};

}  // namespace velmoranth::cli
