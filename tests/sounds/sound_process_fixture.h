// For the tests of sounds: what a theme's sound writes into the journal, and a process that has the
// two classes whose methods are replaced, with the library started in it.
#pragma once

#include "core/entry_points.h"
#include "core/settings.h"
#include "core/velmoranth.h"
#include "tests/support/test_device.h"
#include "tests/theme/lookup_lines.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

[[nodiscard]] inline std::string soundFolder(const std::string& theme) {
    return "/Library/Themes/" + theme + "/UISounds";
}

[[nodiscard]] inline Lines joined(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

// The search for a folder of sounds that looks into those themes.
[[nodiscard]] inline Lines searchLines(const Lines& themes) {
    Lines lines{kReadPreferences};
    for (const std::string& theme : themes) {
        lines.push_back("-[NSFileManager fileExistsAtPath:] " + soundFolder(theme));
    }
    return lines;
}

// Asking for a player of the file at that path; when there is none, nothing comes after.
[[nodiscard]] inline Lines askLines(const std::string& path) {
    return {"+[AVAudioSession sharedInstance]",
            "-[AVAudioSession setCategory:error:] AVAudioSession \"AVAudioSessionCategoryAmbient\"",
            "-[AVAudioSession setActive:error:] AVAudioSession YES",
            "-[AVAudioPlayer initWithContentsOfURL:error:] " + path};
}

// Playing the file, with the player of the file `before` in its place until then.
[[nodiscard]] inline Lines playLines(const std::string& path, const std::string& before = {}) {
    Lines lines = askLines(path);
    if (!before.empty()) {
        lines.push_back("-[AVAudioPlayer dealloc] " + before);
    }
    lines.push_back("-[AVAudioPlayer prepareToPlay] " + path);
    lines.push_back("-[AVAudioPlayer play] " + path);
    return lines;
}

inline constexpr const char* kReadNumber = "-[_UIFeedback _effectiveSystemSoundID] _UIFeedback";

struct TestFeedback final : platform::UIFeedback {
    std::uint32_t systemSoundID = 1000;
    // What the next reads give, one each.
    std::vector<std::uint32_t> nextIDs;

    [[nodiscard]] std::string className() const override { return "_UIFeedback"; }

    [[nodiscard]] std::uint32_t _effectiveSystemSoundID() override {
        record::tell(*this, record::messageOf("UIFeedback", "_effectiveSystemSoundID"));
        if (!nextIDs.empty()) {
            systemSoundID = nextIDs.front();
            nextIDs.erase(nextIDs.begin());
        }
        return systemSoundID;
    }
};

// The platform's sounds are numbered from 1 on, in the order in which they were asked for.
struct TestSound final : platform::SBUISound {
    explicit TestSound(int count) : number(count) {}

    int number;

    [[nodiscard]] std::string className() const override { return "SBUISound"; }

    [[nodiscard]] std::string description() const override {
        return "<SBUISound " + std::to_string(number) + ">";
    }
};

class SoundProcess : public ::testing::Test {
  protected:
    struct Switches {
        bool enable = true;
        bool logging = false;
    };

    // A process that the library comes into, with a theme A that has sounds. Nothing of that is
    // in the journal.
    void start(const Switches& switches) {
        addClasses(switches);
        core::registerClasses();
        core::installHooks();
        core::startSettings();
        device.journal.clear();
    }

    // The replacements alone, with theming on and no singleton.
    void installWithoutStart() {
        addClasses({});
        core::installHooks();
        core::loadSettings();
        device.journal.clear();
    }

    void play() { device.runtime.send<void>(feedback, "play"); }

    platform::SBUISoundRef sound(std::uint64_t eventType) {
        return device.runtime.sendToClass<platform::SBUISoundRef, std::uint64_t>(
            "SBUISound", "soundWithFeedbackEventType:", eventType);
    }

    TestDevice device;
    TestFeedback feedback;
    bool platformHasSounds = true;
    int soundsAskedFor = 0;

  private:
    void addClasses(const Switches& switches) {
        device.activeThemes({"A"},
                            {{"enable", switches.enable}, {"enableLogging", switches.logging}});
        device.file(soundFolder("A") + "/lock.caf", "sound");
        device.runtime.addClass("_UIFeedback");
        device.runtime.addInstanceMethod(
            "_UIFeedback", "play",
            std::function<void(platform::UIFeedback&)>([this](platform::UIFeedback& self) {
                device.journal.write(&self == &feedback ? "orig play" : "orig play of another");
            }));
        device.runtime.addClass("SBUISound");
        device.runtime.addClassMethod(
            "SBUISound", "soundWithFeedbackEventType:",
            std::function<platform::SBUISoundRef(platform::Class&, std::uint64_t)>(
                [this](platform::Class& self, std::uint64_t eventType) -> platform::SBUISoundRef {
                    device.journal.write("orig " + self.name() + " " + std::to_string(eventType));
                    ++soundsAskedFor;
                    return platformHasSounds ? std::make_shared<TestSound>(soundsAskedFor)
                                             : nullptr;
                }));
    }
};

}  // namespace velmoranth::tests
