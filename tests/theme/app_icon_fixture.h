// A process with the platform classes that have app-icon methods, each of which writes "orig …"
// into the journal, and with the replacements installed over them.
#pragma once

#include "core/hook_table.h"
#include "core/settings.h"
#include "desktop/views/view_node.h"
#include "platform/springboard.h"
#include "tests/support/home_screen_icon.h"
#include "tests/support/test_device.h"

#include "lookup_lines.h"
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

struct TestIconImageCache final : platform::SBHIconImageCache {
    [[nodiscard]] std::string className() const override { return "SBHIconImageCache"; }
};

struct TestIconImageView final : desktop::ViewImplementation<platform::SBIconImageView> {
    platform::SBIconRef shown;

    [[nodiscard]] std::string className() const override { return "SBIconImageView"; }

    [[nodiscard]] platform::SBIconRef icon() const override { return shown; }
};

class AppIcons : public testing::Test {
  protected:
    using ImageRef = platform::ImageRef;

    static constexpr const char* kApplicationIcon =
        "_applicationIconImageForBundleIdentifier:format:scale:";

    AppIcons() {
        using platform::NullableString;
        using platform::SBIconRef;
        device.runtime.addClass("UIImage");
        device.runtime.addClassMethod(
            "UIImage", kApplicationIcon,
            std::function<ImageRef(platform::Class&, NullableString, int, double)>(
                [this](const platform::Class& self, const NullableString& identifier, int format,
                       double scale) {
                    return answer(self.name() + " " + identifier.value_or("nil") + " " +
                                  std::to_string(format) + " " + text(scale));
                }));
        device.runtime.addClass("SBApplicationIcon");
        device.runtime.addInstanceMethod(
            "SBApplicationIcon", "getUnmaskedIconImage:",
            std::function<ImageRef(platform::SBApplicationIcon&, int)>(
                [this](const platform::SBApplicationIcon& self, int format) {
                    return answer(self.leafIdentifier().value_or("nil") + " " +
                                  std::to_string(format));
                }));
        device.runtime.addClass("SBHIconImageCache");
        for (const std::string selector : {"imageForIcon:", "unmaskedImageForIcon:"}) {
            device.runtime.addInstanceMethod(
                "SBHIconImageCache", selector,
                std::function<ImageRef(platform::SBHIconImageCache&, SBIconRef)>(
                    [this, selector](const platform::SBHIconImageCache& /*self*/,
                                     const SBIconRef& asked) {
                        return answer(selector + (asked ? "icon" : "nil"));
                    }));
        }
        device.runtime.addClass("SBIconImageView");
        device.runtime.addInstanceMethod("SBIconImageView", "contentsImage",
                                         std::function<ImageRef(platform::SBIconImageView&)>(
                                             [this](const platform::SBIconImageView& /*self*/) {
                                                 return answer("contentsImage");
                                             }));
    }

    // Installs the replacements for a system of that version number.
    void install(double versionNumber) {
        device.system.number = versionNumber;
        core::HookTable::install();
        device.journal.clear();
    }

    // Writes the preferences and loads them, as the process does when they change.
    void settings(const std::vector<std::string>& themes, const platform::Dictionary& more) {
        device.activeThemes(themes, more);
        core::loadSettings();
        device.journal.clear();
    }

    void themeIcon(const std::string& path, Pixel color = kRed) const {
        device.png("/Library/Themes/" + path, solid(6, 6, color));
    }

    ImageRef applicationIcon(const platform::NullableString& identifier, int format = 2,
                             double scale = 3) {
        return device.runtime.sendToClass<ImageRef, platform::NullableString, int, double>(
            "UIImage", kApplicationIcon, identifier, format, scale);
    }

    ImageRef unmaskedIcon(int format = 2) {
        return device.runtime.send<ImageRef, int>(*icon, "getUnmaskedIconImage:", format);
    }

    ImageRef imageForIcon(const platform::SBIconRef& asked) {
        return device.runtime.send<ImageRef, platform::SBIconRef>(cache, "imageForIcon:", asked);
    }

    ImageRef unmaskedImageForIcon(const platform::SBIconRef& asked) {
        return device.runtime.send<ImageRef, platform::SBIconRef>(cache,
                                                                  "unmaskedImageForIcon:", asked);
    }

    ImageRef contentsImage() { return device.runtime.send<ImageRef>(*view, "contentsImage"); }

    // What the journal holds since the last time.
    Lines taken() {
        Lines lines = device.journal.lines();
        device.journal.clear();
        return lines;
    }

    // How often the platform's method has run since the last time.
    std::size_t takenCalls() {
        const std::size_t count = device.journal.count("orig ");
        device.journal.clear();
        return count;
    }

    TestDevice device;
    // 4 × 4 points.
    ImageRef platformImage = device.image(solid(12, 12, kGreen));
    // What the next calls of a platform method give instead.
    std::deque<ImageRef> answers;
    std::shared_ptr<HomeScreenIcon> icon = std::make_shared<HomeScreenIcon>();
    TestIconImageCache cache;
    std::shared_ptr<TestIconImageView> view = [this] {
        auto made = std::make_shared<TestIconImageView>();
        made->shown = icon;
        return made;
    }();

  private:
    ImageRef answer(const std::string& call) {
        device.journal.write("orig " + call);
        if (answers.empty()) {
            return platformImage;
        }
        ImageRef next = answers.front();
        answers.pop_front();
        return next;
    }
};

}  // namespace velmoranth::tests
