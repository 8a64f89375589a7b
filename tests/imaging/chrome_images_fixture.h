// A device for the tests of the home screen's furniture, with one active theme.
#pragma once

#include "imaging/chrome_images.h"
#include "tests/support/test_device.h"
#include "tests/theme/lookup_lines.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

inline const std::string kSpringBoard = "Bundles/com.apple.springboard/";

// UIUserInterfaceIdiom: unspecified, phone, television, car, and what is none.
inline constexpr std::array kNoPads{-1, 0, 2, 3, 5};

// The files below the themes' folder.
[[nodiscard]] inline Lines inThemes(Lines files) {
    for (std::string& file : files) {
        file.insert(0, "/Library/Themes/");
    }
    return files;
}

class ChromeImagesOnDevice : public testing::Test {
  protected:
    void SetUp() override { activate({"A"}); }

    void activate(const std::vector<std::string>& themes) {
        device.activeThemes(themes);
        device.journal.clear();
    }

    void makePad() { device.idiom.idiom = platform::kUserInterfaceIdiomPad; }

    // From here on what the device is asked is told too.
    void recordDevice() { device.useServices({.device = &device.idiom}); }

    Lines takenLoads() {
        Lines lines = device.journal.linesWith("+[UIImage imageWithContentsOfFile:] ");
        device.journal.clear();
        return lines;
    }

    // `candidates` are all files that `search` tries when none is there. With a picture in each of
    // them, then in all but the first, and so on, every search ends at the first that is left; with
    // none left it gives nil.
    void expectOrder(const Lines& candidates, const std::function<platform::ImageRef()>& search) {
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            device.png(candidates[i], solid(i + 2, 3, {}));
        }
        Lines tried;
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            SCOPED_TRACE(candidates[i]);
            tried.push_back("+[UIImage imageWithContentsOfFile:] " + candidates[i]);
            device.journal.clear();
            EXPECT_EQ(drawnPixels(search()), solid(i + 2, 3, {}));
            EXPECT_EQ(takenLoads(), tried);
            // A file that is no picture is as good as none.
            device.file(candidates[i], i % 2 == 0 ? "no picture" : "");
        }
        for (const bool isThere : {true, false}) {
            EXPECT_EQ(search(), nullptr);
            EXPECT_EQ(takenLoads(), tried);
            for (const std::string& candidate : isThere ? candidates : Lines()) {
                device.remove(candidate);
            }
        }
        EXPECT_TRUE(device.journal.log().empty());
    }

    TestDevice device;
};

}  // namespace velmoranth::tests
