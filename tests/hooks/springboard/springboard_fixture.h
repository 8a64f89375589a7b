// A process of the home screen for a test: platform classes whose methods write "orig …" into the
// journal, with the replacements installed over them. A test adds the classes that it needs, in its
// fixture's constructor, and then calls install().
#pragma once

#include "core/hook_table.h"
#include "core/settings.h"
#include "desktop/views/layer.h"
#include "desktop/views/view_node.h"
#include "platform/springboard.h"
#include "tests/support/home_screen_icon.h"
#include "tests/support/test_device.h"
#include "tests/theme/lookup_lines.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

// Any view, under a class name of its own: HomeScreenView<platform::View>("UIView").
template <class Base>
struct HomeScreenView : desktop::ViewImplementation<Base> {
    explicit HomeScreenView(std::string name) : name_(std::move(name)) {}

    [[nodiscard]] std::string className() const override { return name_; }

  private:
    std::string name_;
};

// What a view's layer looks like.
[[nodiscard]] inline const desktop::DesktopLayer::Appearance& appearanceOf(
    const desktop::ViewNode& view) {
    return view.desktopLayer()->appearance;
}

class SpringBoardProcess : public testing::Test {
  protected:
    using ImageRef = platform::ImageRef;
    using ViewRef = platform::ViewRef;

    // Makes a class with a method that writes "orig <what body gives>" and answers `result(…)`.
    // The class may be known already.
    template <class R, class Receiver, class... Args>
    void addMethod(const std::string& className, const std::string& selector,
                   std::function<R(Receiver&, Args...)> body) {
        device.runtime.addClass(className);
        device.runtime.addInstanceMethod(
            className, selector,
            std::function<R(Receiver&, Args...)>(
                [body = std::move(body)](Receiver& self, Args... args) {
                    const record::InPlatform platform;  // whose own doing is not the engine's
                    return body(self, std::move(args)...);
                }));
    }

    // A method without arguments or result, which only writes its line.
    template <class Receiver>
    void addLayout(const std::string& className, const std::string& selector = "layoutSubviews") {
        addMethod<void, Receiver>(
            className, selector,
            std::function<void(Receiver&)>([this, selector](Receiver&) { original(selector); }));
    }

    // Writes the line of a call of a platform method.
    void original(const std::string& call) { device.journal.write("orig " + call); }

    // Installs the replacements for a system of that version number.
    void install(double versionNumber = kiOS13) {
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

    // An image file of the theme folder: "A/Velmoranth/Folder.png".
    void themePng(const std::string& path, Pixel color = kRed, std::size_t side = 6) const {
        device.png("/Library/Themes/" + path, solid(side, side, color));
    }

    // What the journal holds since the last time.
    Lines taken() {
        Lines lines = device.journal.lines();
        device.journal.clear();
        return lines;
    }

    // The calls of platform methods since the last time.
    Lines takenCalls() {
        Lines lines = device.journal.linesWith("orig ");
        device.journal.clear();
        return lines;
    }

    TestDevice device;
    std::shared_ptr<HomeScreenIcon> icon = std::make_shared<HomeScreenIcon>();
};

}  // namespace velmoranth::tests
