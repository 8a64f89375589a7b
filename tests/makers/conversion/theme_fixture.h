// Themes in a folder of a test's own, and what convertThemes makes of them.
#pragma once

#include "desktop/image_io/image_io.h"
#include "desktop/plist/property_lists.h"
#include "tests/support/temporary_folder.h"

#include "makers/conversion/convert.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::makers {

using Color = std::array<std::uint8_t, 4>;  // premultiplied B, G, R, A

inline constexpr Color kRed{0, 0, 255, 255};
inline constexpr Color kGreen{0, 255, 0, 255};
inline constexpr Color kBlue{255, 0, 0, 255};
inline constexpr Color kBlack{0, 0, 0, 255};
inline constexpr Color kClear{0, 0, 0, 0};

// One colour, but for a corner of another.
inline std::string png(std::size_t width, std::size_t height, const Color& color,
                       const Color& corner) {
    std::vector<std::uint8_t> pixels;
    for (std::size_t i = 0; i < width * height; ++i) {
        const bool isCorner = i % width < width / 4 && i / width < height / 4;
        const Color& pixel = isCorner ? corner : color;
        pixels.insert(pixels.end(), pixel.begin(), pixel.end());
    }
    const auto bytes = desktop::encodePng(pixels, width, height, width * 4);
    return {bytes.begin(), bytes.end()};
}

inline std::string png(std::size_t side, const Color& color = kRed) {
    return png(side, side, color, color);
}

// File by file, of a folder of this machine.
inline std::map<std::string, std::string> filesIn(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            files[entry.path().lexically_relative(folder)] =
                std::string(std::istreambuf_iterator<char>(file), {});
        }
    }
    return files;
}

inline platform::Dictionary calendar() {
    return {
        {"CalendarIconDateSettings",
         platform::Dictionary{{"FontName", "Installed"}, {"FontSize", 36}, {"TextYoffset", 20}}},
        {"CalendarIconDaySettings",
         platform::Dictionary{{"FontName", "Installed"}, {"FontSize", 8}}}};
}

class ThemeTest : public testing::Test {
  protected:
    // A file of the theme "in/T.theme".
    void file(const std::string& name, const std::string& contents) const {
        folder.file("in/T.theme/" + name, contents);
    }

    void list(const std::string& entries) const {
        file("Info.plist", "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>\n");
    }

    // Of those inputs, or of the theme "in/T.theme", into the folder "out".
    desktop::Result<std::vector<ConvertedTheme>> convert(std::vector<std::string> inputs = {},
                                                         const std::string& output = "out") const {
        Conversion conversion;
        conversion.inputs = std::move(inputs);
        if (conversion.inputs.empty()) {
            conversion.inputs.push_back(folder / "in/T.theme");
        }
        conversion.output = folder / output;
        conversion.calendar = calendar();
        return convertThemes(conversion);
    }

    // The theme "T.theme" once it is converted. Converting that again gives the same, and nothing
    // of the input has changed.
    Plan converted() const {
        const auto before = filesIn(folder / "in/T.theme");
        std::filesystem::remove_all(folder / "out");
        std::filesystem::remove_all(folder / "again");
        const auto themes = convert();
        EXPECT_TRUE(themes) << (themes ? "" : toLine(themes.error()));
        if (!themes || themes->size() != 1) {
            ADD_FAILURE() << "one theme expected";
            return {};
        }
        EXPECT_EQ(filesIn(folder / "in/T.theme"), before);
        const auto again = convert({folder / "out/T.theme"}, "again");
        EXPECT_TRUE(again && again->size() == 1 && again->front().plan.changesNothing());
        EXPECT_EQ(filesIn(folder / "again"), filesIn(folder / "out"));
        return themes->front().plan;
    }

    [[nodiscard]] std::string made(const std::string& name) const {
        return folder.contents("out/T.theme/" + name);
    }

    // The names in the theme that was made.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& [name, contents] : filesIn(folder / "out/T.theme")) {
            names.push_back(name);
        }
        return names;
    }

    static std::string why(const std::vector<LeftOut>& lines, const std::string& name) {
        const auto found = std::ranges::find(lines, name, &LeftOut::name);
        return found == lines.end() ? "<none>" : found->why;
    }

    tests::TemporaryFolder folder;
};

}  // namespace velmoranth::makers
