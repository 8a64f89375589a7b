// A home-screen process in the test's own process, where its objects can be looked at and its
// messages counted.
#pragma once

#include "simulator/home_screen/home_screen.h"
#include "simulator/process/process.h"
#include "themed_device.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {

class FolderProcess {
  public:
    // Nothing replaced.
    FolderProcess(std::string_view model, int system) { start(model, system, {}, false); }

    // With the engine's library; theming on unless the preferences say otherwise.
    FolderProcess(std::string_view model, int system, const platform::Dictionary& preferences) {
        start(model, system, preferences, true);
    }

    // As above, with files of the theme made before the process starts.
    FolderProcess(std::string_view model, int system, const platform::Dictionary& preferences,
                  const std::function<void(const ThemedDevice&)>& makeTheme) {
        makeTheme(device);
        start(model, system, preferences, true);
    }

    // Counts the messages of that selector that reach the class, under "CLASS selector".
    template <class R, class Receiver, class... Args>
    void watch(const std::string& name, const std::string& selector) {
        hook<R, Receiver, Args...>(runtime().getClass(name), name + " " + selector, selector);
    }

    template <class R, class... Args>
    void watchClass(const std::string& name, const std::string& selector) {
        hook<R, platform::Class, Args...>(runtime().getMetaclass(runtime().getClass(name)),
                                          name + " " + selector, selector);
    }

    // How often since the last time; forgets them.
    std::map<std::string, int> takeCalls() { return std::exchange(calls_, {}); }

    HomeScreen& screen() { return *process_->homeScreen(); }

    desktop::Runtime& runtime() { return process_->runtime(); }

    // What the screen shows now.
    Picture picture() {
        screen().layoutViews();
        const auto drawn = screen().draw();
        const desktop::PixelView pixels = drawn->pixels();
        Picture picture{pixels.width, pixels.height, screen().context().scale(), {}};
        for (std::size_t y = 0; y < pixels.height; ++y) {
            picture.pixels.insert(picture.pixels.end(), pixels.row(y),
                                  pixels.row(y) + pixels.width * 4);
        }
        return picture;
    }

    // Opens the page's first folder and waits until it lies still.
    void openFolder() {
        screen().layoutViews();
        ASSERT_TRUE(screen().openFolder("", Animated::yes));
        screen().settle();
        screen().layoutViews();
    }

    // Points of the screen: beside the panel, and on it where no icon lies.
    [[nodiscard]] platform::Point beside() {
        const platform::Rect& panel = screen().folder()->view()->folderLayout().panel;
        return {panel.origin.x / 2, panel.origin.y + panel.size.height / 2};
    }

    [[nodiscard]] platform::Point onPanel() {
        const platform::Rect& panel = screen().folder()->view()->folderLayout().panel;
        return {panel.origin.x + 4, panel.origin.y + panel.size.height / 2};
    }

    ThemedDevice device;

  private:
    void start(std::string_view model, int system, const platform::Dictionary& preferences,
               bool engine) {
        ScreenRequest request = device.request(model, system, preferences);
        request.loadEngine = engine;
        auto started = SimulatedProcess::start(request, [](const std::string&) {});
        if (!started) {
            throw std::runtime_error(toLine(started.error()));
        }
        process_ = std::move(*started);
    }

    template <class R, class Receiver, class... Args>
    void hook(const platform::ClassRef& cls, const std::string& key, const std::string& selector) {
        const auto original = std::make_shared<platform::Implementation>();
        runtime().hookMessageEx(
            cls, selector,
            platform::makeImplementation(std::function<R(Receiver&, Args...)>(
                [this, original, key](Receiver& self, Args... args) -> R {
                    ++calls_[key];
                    return (*original->template as<R(platform::Object&, Args...)>())(
                        self, std::move(args)...);
                })),
            original.get());
        EXPECT_TRUE(*original) << key;
    }

    std::map<std::string, int> calls_;
    std::unique_ptr<SimulatedProcess> process_;
};

inline Pixel pixelAt(const Picture& picture, const platform::Point& point) {
    const auto column = static_cast<std::size_t>(std::lround(point.x * picture.scale));
    const auto row = static_cast<std::size_t>(std::lround(point.y * picture.scale));
    Pixel pixel{};
    std::copy_n(
        picture.pixels.begin() + static_cast<std::ptrdiff_t>((row * picture.width + column) * 4), 4,
        pixel.begin());
    return pixel;
}

// How many views a tree holds.
inline std::size_t countViews(const platform::ViewRef& view) {
    std::size_t count = 1;
    for (const platform::ViewRef& subview : view->subviews()) {
        count += countViews(subview);
    }
    return count;
}

}  // namespace velmoranth::simulator
