// What drawing takes from the heap. This program counts it, so it is one of its own.
#include "desktop/views/views.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

std::atomic<std::size_t> heldBytes{0};
std::atomic<std::size_t> mostBytes{0};

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        std::abort();
    }
    const std::size_t held = heldBytes += malloc_usable_size(memory);
    if (held > mostBytes) {
        mostBytes = held;
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        heldBytes -= malloc_usable_size(memory);
        std::free(memory);
    }
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}

namespace velmoranth::desktop::memory_test {

namespace {

constexpr PixelSize kScreen{1125, 2436};
constexpr std::size_t kScreenBytes = kScreen.width * kScreen.height * 4;

struct Screen {
    std::shared_ptr<DesktopView> window =
        std::make_shared<DesktopView>(platform::Rect{{0, 0}, {375, 812}});

    explicit Screen(bool paths) {
        for (int i = 0; i < 24; ++i) {
            const int row = i / 4;
            const auto icon = std::make_shared<DesktopView>(
                platform::Rect{{27.0 + i % 4 * 87, 70.0 + row * 100}, {60, 60}});
            icon->setBackgroundColor({1, 0, 0, 1});
            icon->layer()->setShadowOpacity(0.5F);
            if (paths) {
                icon->layer()->setShadowPathRect(icon->bounds());
            } else {
                icon->setAlpha(0.9);
            }
            window->addSubview(icon);
        }
    }
};

// The most that a frame takes at a time, beyond what was there before.
std::size_t peakOfAFrame(const platform::ViewRef& window) {
    const std::size_t before = heldBytes;
    mostBytes = before;
    EXPECT_NE(renderTree(window, kScreen, 3), nullptr);
    return mostBytes - before;
}

}  // namespace

TEST(DrawingMemory, ALayerTakesWhatItTouchesNotTheScreen) {
    for (const bool paths : {true, false}) {
        EXPECT_LT(peakOfAFrame(Screen(paths).window), kScreenBytes + kScreenBytes / 10) << paths;
    }
    Screen faded(true);
    const auto inner = std::make_shared<DesktopView>(platform::Rect{{9, 9}, {9, 9}});
    inner->addSubview(faded.window);
    faded.window->setAlpha(0.5);
    EXPECT_GT(peakOfAFrame(inner), kScreenBytes * 3 / 2);  // the counting counts
}

TEST(DrawingMemory, HugeLayersAndShadowsAreBounded) {
    const auto window = std::make_shared<DesktopView>(platform::Rect{{0, 0}, {375, 812}});
    const auto huge = std::make_shared<DesktopView>(platform::Rect{{-1e6, -1e6}, {2e6, 2e6}});
    huge->setBackgroundColor({1, 0, 0, 1});
    huge->layer()->setShadowOpacity(1);
    huge->layer()->setShadowRadius(1e6);
    huge->layer()->setShadowOffset({1e5, 1e5});
    window->addSubview(huge);
    EXPECT_LT(peakOfAFrame(window), std::size_t{256} * 1024 * 1024);
    huge->layer()->setShadowPathRect(huge->bounds());
    huge->layer()->setShadowOffset({0, 0});
    EXPECT_LT(peakOfAFrame(window), kScreenBytes * 2);
    // Six screens large, and what fades is one.
    huge->layer()->setShadowOpacity(0);
    huge->setFrame({{-500, -500}, {2000, 2000}});
    huge->setAlpha(0.5);
    EXPECT_LT(peakOfAFrame(window), kScreenBytes * 5 / 2);
}

TEST(DrawingMemory, AThousandFramesLeaveNothingBehind) {
    DesktopViews views;
    const Screen screen(true);
    const auto& icons = screen.window->subviews();
    std::size_t settled = 0;
    for (int frame = 0; frame < 1000; ++frame) {
        views.animateWithDurationAnimationsCompletion(
            0.25,
            [&] {
                for (const platform::ViewRef& icon : icons) {
                    icon->setAlpha(frame % 3 / 2.0);
                    icon->setFrame({{frame % 7 * 5.0, frame % 11 * 7.0}, {20, 20}});
                    ViewNode::of(icon)->setTransform({.scaleX = 1 + frame % 5 * 0.1});
                }
            },
            [](bool /*finished*/) {});
        views.clock().advance(1.0 / 60);
        EXPECT_NE(renderTree(screen.window, {94, 203}, 0.25), nullptr);
        if (frame == 20) {
            settled = heldBytes;
        }
    }
    views.clock().advance(1);
    EXPECT_LE(heldBytes, settled);
}

}  // namespace velmoranth::desktop::memory_test
