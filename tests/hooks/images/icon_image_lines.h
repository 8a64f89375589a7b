// For the tests of icons that other methods of the platform give: the lines that the search for an
// app's icon, the mask, the overlay and a redrawing write, in a process with the active theme A;
// and the theme's files for them.
#pragma once

#include "image_request_fixture.h"

#include <algorithm>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace velmoranth::tests {

inline constexpr const char* kMaskFile =
    "A/Bundles/com.apple.mobileicons.framework/AppIconMask.png";
inline constexpr const char* kOverlayFile = "A/Velmoranth/iPhoneOverlay.png";

// What the search for an app's icon writes.
[[nodiscard]] inline Lines searchLines(const platform::NullableString& identifier,
                                       LookupLogging logging,
                                       LookupResult result = LookupResult::miss) {
    const bool logs = logging == LookupLogging::on;
    const std::string name = textOf(identifier);
    const std::string path = "/Library/Themes/A/IconBundles/" + name + "-large.png";
    Lines lines{kReadPreferences};
    if (logs) {
        lines.push_back("log Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: " + name);
    }
    lines.emplace_back(kReadPreferences);
    if (logs) {
        lines.push_back("log Velmoranth GetICON  " + path);
    }
    lines.push_back("-[NSFileManager fileExistsAtPath:] " + path);
    if (result == LookupResult::found) {
        if (logs) {
            lines.push_back("log Velmoranth BUNDLE FOUND in theme A/" + name + "-large ");
        }
        lines.push_back("+[UIImage imageWithContentsOfFile:] " + path);
    }
    return lines;
}

// What asking for the mask writes when the theme has none.
[[nodiscard]] inline Lines noMaskLines() {
    const std::string folder = "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/";
    const std::string file = "com.apple.mobileicons.framework/AppIconMask.png";
    return {kReadPreferences,
            folder + "Bundles/" + file,
            kReadPreferences,
            folder + file,
            kReadPreferences,
            folder + file,
            "log UpdateIcons mask is (null)"};
}

// What drawing the overlay writes when the theme has none.
[[nodiscard]] inline Lines noOverlayLines() {
    return {
        kReadPreferences,
        "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Velmoranth/iPhoneOverlay.png",
        kReadPreferences,
        "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/AnemoneEffects/iPhoneOverlay.png",
        "log LOADEDIcon no overlay stop redraw"};
}

[[nodiscard]] inline Lines redrawLines(platform::Size size, const std::string& image) {
    return {"UIGraphicsBeginImageContextWithOptions " + record::words(size) + " NO 0",
            "-[UIImage drawInRect:] " + image + " " + record::words(platform::Rect{{0, 0}, size}),
            "UIGraphicsGetImageFromCurrentImageContext", "UIGraphicsEndImageContext"};
}

// The places of an app's icon in the theme A.
[[nodiscard]] inline std::string iconFile(const std::string& identifier) {
    return "A/IconBundles/" + identifier + "-large.png";
}

// A process with the switches of icons, and the theme's pictures for its effects.
class IconProcess : public ImageProcess {
  protected:
    struct Switches {
        bool enable = true;
        bool logging = false;
        bool mask = false;
        bool overlay = false;
    };

    // Makes a class with a method that gives an image.
    template <class Receiver, class... Args>
    void addImageMethod(
        const std::string& className, const std::string& selector,
        const std::type_identity_t<std::function<ImageRef(Receiver&, Args...)>>& body) {
        addMethod<ImageRef, Receiver, Args...>(className, selector, body);
    }

    void set(const Switches& switches) {
        settings({"A"}, {{"enable", switches.enable},
                         {"enableLogging", switches.logging},
                         {"enableIconMask", switches.mask},
                         {"enableOverlay", switches.overlay}});
    }

    // A mask of that size which shows the one pixel at (1, 2).
    void themeMask(std::size_t width, std::size_t height) const {
        Pixels mask = solid(width, height, {255, 255, 255, 255});
        mask.at(1, 2) = {0, 0, 0, 255};
        device.png(std::string("/Library/Themes/") + kMaskFile, mask);
    }

    // What that mask leaves of a picture of one colour.
    [[nodiscard]] static Pixels masked(std::size_t width, std::size_t height, Pixel color) {
        Pixels pixels = solid(width, height, {0, 0, 0, 0});
        pixels.at(1, 2) = color;
        return pixels;
    }

    void themeOverlay() const { themePng(kOverlayFile, kBlue); }

    // As the platform's methods here answer, but each answer is a point wider than the one before:
    // an image is as wide as the number of its call, from 1 on, and 2 points high.
    ImageRef wideningAnswer(const std::string& call) {
        answer(call);
        if (given.back() != nullptr) {
            given.back() = device.image(solid(3 * given.size(), 6, kGreen));
        }
        return given.back();
    }

    // Nil is the answer of these calls, the first of which is 0.
    void answerNilAt(std::vector<std::size_t> calls) {
        isNilAnswer = [calls = std::move(calls)](std::size_t call) {
            return std::find(calls.begin(), calls.end(), call) != calls.end();
        };
    }

    void answerNilAlways() {
        isNilAnswer = [](std::size_t) { return true; };
    }

    // Forgets the journal and the answers.
    void forget() {
        given.clear();
        device.journal.clear();
    }
};

}  // namespace velmoranth::tests
