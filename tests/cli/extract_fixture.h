// A folder with catalogs that a test makes, and the pictures that are extracted from them.
#pragma once

#include "desktop/image_io/image_io.h"
#include "tests/cli/command.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace velmoranth::cli {

using catalog::Attribute;
using catalog::Compression;
using catalog::fourCharacterCode;
using tests::CarPixels;
using tests::CarRendition;
using tests::CarWriter;

// Premultiplied R, G, B, A.
inline constexpr std::array<std::uint8_t, 4> kRed{255, 0, 0, 255};
inline constexpr std::array<std::uint8_t, 4> kGreen{0, 255, 0, 255};

inline const std::string kSvg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="6">)"
                                R"(<rect width="10" height="6" fill="#00ff00"/></svg>)";

class ExtractTest : public testing::Test {
  protected:
    tests::TemporaryFolder folder;

    void catalog(const CarWriter& car, const std::string& name = "Maps.app/Assets.car") const {
        const tests::ByteVector bytes = car.build();
        folder.file(name, std::string(bytes.begin(), bytes.end()));
    }

    // With `folder` as the working folder.
    [[nodiscard]] CommandResult extract(const std::vector<std::string>& words) const {
        std::vector<std::string> all{"extract"};
        all.insert(all.end(), words.begin(), words.end());
        return runCommand(all, {.folder = folder.path()});
    }

    // The relative paths of all files below the folder, in order, and what they hold.
    [[nodiscard]] std::map<std::string, std::string> files(const std::string& name) const {
        namespace fs = std::filesystem;
        std::map<std::string, std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(folder / name)) {
            if (!entry.is_directory()) {
                const std::string path = fs::relative(entry.path(), folder / name).string();
                found[path] = folder.contents(name + "/" + path);
            }
        }
        return found;
    }

    [[nodiscard]] std::string fileNames(const std::string& name) const {
        std::string names;
        for (const auto& [path, contents] : files(name)) {
            names += (names.empty() ? "" : " ") + path;
        }
        return names;
    }

    // Of a file that is a picture; empty otherwise.
    [[nodiscard]] CarPixels picture(const std::string& name) const {
        const std::string bytes = folder.contents(name);
        const auto image = desktop::decodeImage(
            {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        if (!image) {
            return {};
        }
        CarPixels pixels{static_cast<std::uint32_t>(image->layout.width),
                         static_cast<std::uint32_t>(image->layout.height),
                         desktop::toPremultipliedBgra(*image)};
        for (std::size_t i = 0; i < pixels.rgba.size(); i += 4) {
            std::swap(pixels.rgba[i], pixels.rgba[i + 2]);
        }
        return pixels;
    }

    void expectPicture(const std::string& name, const CarPixels& expected) const {
        const CarPixels found = picture(name);
        EXPECT_EQ(found.width, expected.width) << name;
        EXPECT_EQ(found.height, expected.height) << name;
        EXPECT_EQ(found.rgba, expected.rgba) << name;
    }

    void expectFailure(const std::vector<std::string>& words, int code,
                       const std::string& message) const {
        const CommandResult result = extract(words);
        EXPECT_EQ(result.code, code) << message;
        EXPECT_EQ(result.errors, "velmoranth: error: " + message + "\n");
        EXPECT_EQ(result.output, "");
    }
};

}  // namespace velmoranth::cli
