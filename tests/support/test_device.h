// A device for a test: a fresh device root in a temporary folder, the real services of the desktop
// over it, recorded, and an object runtime without classes. The platform record of the process is
// this device's for its life, and what its thread does is the engine's.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/imaging/images.h"
#include "desktop/runtime/runtime.h"
#include "platform/platform.h"
#include "tests/support/journal.h"
#include "tests/support/replaced_services.h"
#include "tests/support/test_application.h"
#include "tests/support/test_audio.h"
#include "tests/support/test_services.h"

#include "record/recorder.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

// One pixel, straight alpha.
struct Pixel {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    friend bool operator==(const Pixel&, const Pixel&) = default;
};

// A picture to write into the device or to compare with, top row first.
struct Pixels {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<Pixel> values;

    [[nodiscard]] const Pixel& at(std::size_t x, std::size_t y) const {
        return values.at(y * width + x);
    }

    [[nodiscard]] Pixel& at(std::size_t x, std::size_t y) { return values.at(y * width + x); }

    friend bool operator==(const Pixels&, const Pixels&) = default;
};

[[nodiscard]] Pixels solid(std::size_t width, std::size_t height, Pixel pixel);
// A picture in which every pixel differs from its neighbours, opaque.
[[nodiscard]] Pixels pattern(std::size_t width, std::size_t height);

// What an image draws, premultiplied (an opaque or clear pixel is the same either way). Empty for
// nil.
[[nodiscard]] Pixels drawnPixels(const platform::ImageRef& image);
[[nodiscard]] Pixels drawnPixels(const platform::BitmapImageRef& bitmap);

struct TestSystem final : platform::CoreFoundation {
    double number = 1674.102;
    int major = 13;
    int minor = 3;

    double versionNumber() override {
        ++versionNumberReads;
        return number;
    }

    bool isSystemVersionAtLeast(int wantedMajor, int wantedMinor, int /*patch*/) override {
        return major > wantedMajor || (major == wantedMajor && minor >= wantedMinor);
    }

    int versionNumberReads = 0;
};

struct TestIdiom final : platform::Device {
    bool responds = true;
    int idiom = platform::kUserInterfaceIdiomPhone;
    int heldAs = 1;  // UIDeviceOrientation
    int orientationReads = 0;

    bool respondsToUserInterfaceIdiom() override { return responds; }

    int userInterfaceIdiom() override { return idiom; }

    int orientation() override {
        ++orientationReads;
        return heldAs;
    }
};

struct TestScreen final : platform::Screen {
    explicit TestScreen(double pixelsPerPoint) : value(pixelsPerPoint) {}

    double value;
    platform::Size size{375, 812};

    double scale() override { return value; }

    platform::Rect bounds() override { return {{0, 0}, size}; }
};

// The home screen's controller: nil unless a test sets one.
struct TestSpringBoard final : platform::SpringBoard {
    platform::SBIconControllerRef iconController;
    std::vector<platform::ClassRef> asked;

    platform::SBIconControllerRef sharedInstance(const platform::ClassRef& cls) override {
        asked.push_back(cls);
        return cls == nullptr ? nullptr : iconController;
    }
};

// Ids always fail, as in a process that may not change them; modes and folders are made in the
// root.
struct TestLibSystem final : platform::LibSystem {
    explicit TestLibSystem(std::string folder) : hostFolder(std::move(folder)) {}

    std::string hostFolder;
    std::string machineName = "iPhone10,3";
    std::string home = "/var/mobile";

    int setuid(unsigned /*id*/) override { return -1; }

    int setgid(unsigned /*id*/) override { return -1; }

    int chmod(const std::string& path, unsigned mode) override;
    int mkdir(const std::string& path, unsigned mode) override;

    std::string machine() override { return machineName; }

    std::string homeDirectory() override { return home; }

    // Kept for the test, which runs them.
    void dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                  const std::function<void()>& block) override {
        mainQueue.emplace_back(nanoseconds, block);
    }

    std::vector<std::pair<std::int64_t, std::function<void()>>> mainQueue;
};

class TestDevice {
  public:
    explicit TestDevice(double screenScale = 3);
    ~TestDevice();
    TestDevice(const TestDevice&) = delete;
    TestDevice& operator=(const TestDevice&) = delete;

    // Paths of the device. Folders on the way are made.
    void file(const std::string& path, const std::string& contents) const;
    void png(const std::string& path, const Pixels& pixels) const;
    void folder(const std::string& path) const;
    void remove(const std::string& path) const;
    [[nodiscard]] bool exists(const std::string& path) const;
    // "<none>" when there is no such file.
    [[nodiscard]] std::string contents(const std::string& path) const;
    [[nodiscard]] unsigned mode(const std::string& path) const;

    // Writes the preferences file.
    void preferences(const platform::Dictionary& preferences) const;
    // Preferences with these active themes, and `more`.
    void activeThemes(const std::vector<std::string>& names,
                      const platform::Dictionary& more = {}) const;

    // An image of `pixels` at that scale, not from a file.
    [[nodiscard]] platform::ImageRef image(const Pixels& pixels, double scale = 3) const;

    [[nodiscard]] const std::string& hostFolder() const { return hostFolder_; }

    // Services of the test's own, below the recorder (replaceServices() puts them above it). They
    // outlive the engine.
    void useServices(const ReplacedServices& replaced);
    // The services themselves, unrecorded.
    [[nodiscard]] const platform::Platform& services() const;
    // From now on they are the platform, and nothing is the engine's by itself.
    void stopRecording();

    Journal journal;
    desktop::Runtime runtime;
    TestSystem system;
    TestIdiom idiom;
    TestScreen screen;
    TestSpringBoard springBoard;
    TestAudio audio;
    TestApplication application;
    TestNotificationCenter notifications;
    TestDates dates;
    TestBundles bundles;
    TestCatalogClass catalogClass;

  private:
    struct Services;

    std::string hostFolder_;
    std::unique_ptr<Services> services_;
    std::optional<record::InEngine> inEngine_;

  public:
    TestLibSystem libSystem;
    // To make the next operation fail.
    [[nodiscard]] FailingFileManager& fileManager();
    // The drawing services themselves, unrecorded.
    [[nodiscard]] desktop::DesktopImages& images() const;
    // The clock of the animations.
    [[nodiscard]] desktop::AnimationClock& clock() const;
};

}  // namespace velmoranth::tests
