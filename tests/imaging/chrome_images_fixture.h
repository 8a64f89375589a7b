// A device for the tests of the home screen's furniture, with one active theme, whose views and
// orientation can be made to write what is done with them.
#pragma once

#include "desktop/views/views.h"
#include "imaging/chrome_images.h"
#include "tests/support/replaced_services.h"
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

// An image view that writes what is done with it.
class WritingImageView final : public desktop::DesktopImageView {
  public:
    explicit WritingImageView(Journal& journal) : journal_(journal) {}

    void setFrame(const platform::Rect& frame) override {
        journal_.write("setFrame " + text(frame));
        DesktopImageView::setFrame(frame);
    }

    void setTag(int tag) override {
        journal_.write("setTag " + std::to_string(tag));
        DesktopImageView::setTag(tag);
    }

    void setBackgroundColor(const platform::Color& color) override {
        journal_.write(color == platform::kClearColor ? "setBackgroundColor clear"
                                                      : "setBackgroundColor other");
        DesktopImageView::setBackgroundColor(color);
    }

    void setImage(const platform::ImageRef& image) override {
        journal_.write(image ? "setImage" : "setImage nil");
        DesktopImageView::setImage(image);
    }

  private:
    Journal& journal_;
};

class WritingViews final : public platform::Views {
  public:
    explicit WritingViews(Journal& journal) : journal_(journal) {}

    platform::ViewRef viewWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::LabelRef labelWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::ImageViewRef imageView() override {
        journal_.write("imageView");
        return std::make_shared<WritingImageView>(journal_);
    }

    platform::ImageViewRef imageViewWithImage(const platform::ImageRef& /*image*/) override {
        return nullptr;
    }

    platform::ImageViewRef imageViewWithFrame(const platform::Rect& /*frame*/) override {
        return nullptr;
    }

    platform::GestureRecognizerRef tapGestureRecognizer(
        platform::Object& /*target*/, const platform::Selector& /*action*/) override {
        return nullptr;
    }

    void animateWithDurationAnimationsCompletion(
        double /*duration*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool)>& /*completion*/) override {}

    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double /*duration*/, double /*delay*/, double /*damping*/, double /*initialVelocity*/,
        unsigned /*options*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool finished)>& /*completion*/) override {}

  private:
    Journal& journal_;
};

// A device that writes when its orientation is read.
class WritingDevice final : public platform::Device {
  public:
    WritingDevice(Journal& journal, TestIdiom& idiom) : journal_(journal), idiom_(idiom) {}

    bool respondsToUserInterfaceIdiom() override { return idiom_.respondsToUserInterfaceIdiom(); }

    int userInterfaceIdiom() override { return idiom_.userInterfaceIdiom(); }

    int orientation() override {
        journal_.write("orientation");
        return idiom_.orientation();
    }

  private:
    Journal& journal_;
    TestIdiom& idiom_;
};

class ChromeImagesOnDevice : public testing::Test {
  protected:
    void SetUp() override { activate({"A"}); }

    void activate(const std::vector<std::string>& themes) {
        device.activeThemes(themes);
        device.journal.clear();
    }

    void makePad() { device.idiom.idiom = platform::kUserInterfaceIdiomPad; }

    // From here on everything is written that is done with a view, and each read of the
    // orientation.
    void writeViews() { replaceServices({.views = &views_, .device = &writingDevice_}); }

    Lines takenLoads() {
        Lines lines = device.journal.linesWith("load ");
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
            tried.push_back("load " + candidates[i]);
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

  private:
    WritingViews views_{device.journal};
    WritingDevice writingDevice_{device.journal, device.idiom};
};

}  // namespace velmoranth::tests
