// The sounds of a theme and of the settings panel from the message to what is heard: every file has
// a tone of its own, and what the device plays is listened to.
#include "core/entry_points.h"
#include "core/velmoranth.h"
#include "desktop/audio/audio.h"
#include "desktop/audio/mixer.h"
#include "desktop/audio/sound_decoder.h"
#include "desktop/audio/sound_file.h"
#include "desktop/files/device_root.h"
#include "tests/support/replaced_services.h"
#include "tests/support/sounds/sounds.h"
#include "tests/support/test_device.h"

#include "journaled_output.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::tests::heard_sounds_test {
namespace {

const std::string kThemeSounds = "/Library/Themes/Tones.theme/UISounds/";
const std::string kPanelSounds = "/User/Library/VelMoranth/Sounds/";
constexpr double kLevel = 0.5;
constexpr double kSeconds = 0.2;

struct TonedFile {
    std::string name;
    double frequency;
    const char* muxer;
    const char* encoder;
};

// Multiples of 50 Hz, so that a fifth of a second holds whole waves and no tone is heard in
// another.
const std::array<TonedFile, 7> kThemeFiles{{{"SentMessage.caf", 500, "caf", "pcm_s16le"},
                                            {"lock.caf", 600, "caf", "adpcm_ima_qt"},
                                            {"Anticipate.caf", 700, "caf", "aac"},
                                            {"key_press_click.caf", 800, "caf", "pcm_s16be"},
                                            {"key_press_modifier.caf", 900, "caf", "pcm_f32le"},
                                            {"key_press_delete.caf", 1050, "caf", "alac"},
                                            {"photoShutter.caf", 1150, "caf", "pcm_s24le"}}};

const std::array<TonedFile, 8> kPanelFiles{{{"button_click.caf", 500, "caf", "pcm_s16le"},
                                            {"cell_swoosh.caf", 600, "caf", "adpcm_ima_qt"},
                                            {"SlideClick.caf", 700, "caf", "pcm_s16le"},
                                            {"Error.caf", 800, "caf", "aac"},
                                            {"Reboot.caf", 900, "caf", "pcm_f32be"},
                                            {"success.aif", 1050, "aiff", "pcm_s16be"},
                                            {"beepShortOn.aif", 1150, "aiff", "pcm_s16le"},
                                            {"beepShortOff.aif", 1250, "aiff", "pcm_f32be"}}};

struct Feedback final : platform::UIFeedback {
    std::uint32_t number = 0;

    [[nodiscard]] std::string className() const override { return "_UIFeedback"; }

    [[nodiscard]] std::uint32_t _effectiveSystemSoundID() override { return number; }
};

// A process with the library in it, on a device whose sounds are heard by a recording.
class HeardSounds : public ::testing::Test {
  protected:
    HeardSounds() {
        for (const TonedFile& file : kThemeFiles) {
            write(kThemeSounds + file.name, file);
        }
        for (const TonedFile& file : kPanelFiles) {
            write(kPanelSounds + file.name, file);
        }
        device.folder("/Library/Themes/Silent.theme");
        device.activeThemes({"Silent.theme", "Tones.theme"}, {{"enable", true}});
        replaceServices({.audio = &audio});
        device.runtime.addClass("_UIFeedback");
        device.runtime.addInstanceMethod(
            "_UIFeedback", "play",
            std::function<void(platform::UIFeedback&)>([this](platform::UIFeedback&) { ++own; }));
        device.runtime.addClass("SBUISound");
        device.runtime.addClassMethod(
            "SBUISound", "soundWithFeedbackEventType:",
            std::function<platform::SBUISoundRef(platform::Class&, std::uint64_t)>(
                [](platform::Class&, std::uint64_t) { return platform::SBUISoundRef(); }));
        core::registerClasses();
        core::installHooks();
        core::startSettings();
    }

    void write(const std::string& path, const TonedFile& file) const {
        device.file(path,
                    soundFile(file.muxer, file.encoder,
                              {.frequency = file.frequency, .level = kLevel, .seconds = kSeconds}));
    }

    // Which of the files is heard in what comes next, and how loud against the level in the file;
    // the name is "silence" when nothing is heard and "noise" when it is not one tone alone.
    struct Heard {
        std::string name;
        double volume = 0;
    };

    template <std::size_t Count>
    [[nodiscard]] Heard listen(const std::array<TonedFile, Count>& files) {
        const std::size_t before = output.samples().size();
        output.advance(kSeconds);
        const auto sound = std::span(output.samples()).subspan(before);
        if (peakOf(sound) == 0) {
            return {"silence"};
        }
        // From the middle, since packets begin with less.
        const auto part = sound.subspan(sound.size() / 4, sound.size() / 2);
        Heard heard{"noise"};
        double rest = 0;
        for (const TonedFile& file : files) {
            const double level = levelOf(part, file.frequency, 44100);
            if (level > kLevel * heard.volume) {
                rest = heard.volume * kLevel;
                heard = {file.name, level / kLevel};
            } else {
                rest = std::max(rest, level);
            }
        }
        return rest > heard.volume * kLevel / 10 ? Heard{"noise"} : heard;
    }

    TestDevice device;
    desktop::Mixer mixer;
    desktop::JournaledOutput output{mixer};
    desktop::DesktopAudio audio{desktop::DeviceRoot::open(device.hostFolder()).value(), mixer,
                                output};
    Feedback feedback;
    int own = 0;  // the platform's own sounds that were played
};

struct Row {
    std::int64_t number;
    std::string file;
};

TEST_F(HeardSounds, EverySystemSoundIsItsFile) {
    const auto manager = core::VelMoranth::sharedIconManager();
    for (const Row& row :
         std::initializer_list<Row>{{1000, "SentMessage.caf"},
                                    {1001, "silence"},
                                    {1002, "lock.caf"},
                                    {1003, "Anticipate.caf"},
                                    {1004, "silence"},
                                    {1005, "silence"},
                                    {1008, "silence"},
                                    {1100, "photoShutter.caf"},
                                    {1101, "silence"},
                                    {1104, "key_press_click.caf"},
                                    {1105, "silence"},
                                    {1108, "photoShutter.caf"},
                                    {1155, "key_press_modifier.caf"},
                                    {1156, "key_press_delete.caf"},
                                    {1157, "silence"},
                                    {0, "silence"},
                                    {-1, "silence"},
                                    {1000 + (std::int64_t{1} << 32), "silence"},
                                    {std::numeric_limits<std::int64_t>::min(), "silence"}}) {
        manager->playUISound(row.number);
        const Heard heard = listen(kThemeFiles);
        EXPECT_EQ(heard.name, row.file) << row.number;
        if (row.file != "silence") {
            EXPECT_NEAR(heard.volume, 1, 0.05) << row.number;
            EXPECT_EQ(output.journal().back().name, kThemeSounds + row.file);
            EXPECT_EQ(output.journal().back().volume, 1);
        }
    }
    EXPECT_EQ(output.journal().size(), 8U);
    EXPECT_EQ(audio.session()->category(), "AVAudioSessionCategoryAmbient");
    EXPECT_TRUE(audio.session()->isActive());
}

TEST_F(HeardSounds, EveryFeedbackEventIsItsFile) {
    const auto manager = core::VelMoranth::sharedIconManager();
    for (const Row& row : std::initializer_list<Row>{{1001, "silence"},
                                                     {1002, "lock.caf"},
                                                     {1003, "Anticipate.caf"},
                                                     {1004, "key_press_click.caf"},
                                                     {1005, "silence"},
                                                     {1006, "silence"},
                                                     {1007, "silence"},
                                                     {1008, "photoShutter.caf"},
                                                     {1009, "silence"},
                                                     {1000, "silence"},
                                                     {1104, "silence"},
                                                     {0, "silence"},
                                                     {-1, "silence"}}) {
        manager->playsystemSound(static_cast<std::uint64_t>(row.number));
        EXPECT_EQ(listen(kThemeFiles).name, row.file) << row.number;
    }
    EXPECT_EQ(output.journal().size(), 4U);
}

TEST_F(HeardSounds, FeedbackPlaysTheThemesBesideThePlatforms) {
    feedback.number = 1104;
    device.runtime.send<void>(feedback, "play");
    EXPECT_EQ(own, 1);
    EXPECT_EQ(listen(kThemeFiles).name, "key_press_click.caf");
}

TEST_F(HeardSounds, HomeScreenPlaysTheThemesInPlaceOfThePlatforms) {
    const auto sound = device.runtime.sendToClass<platform::SBUISoundRef, std::uint64_t>(
        "SBUISound", "soundWithFeedbackEventType:", 1004);
    EXPECT_EQ(sound, nullptr);
    EXPECT_EQ(listen(kThemeFiles).name, "key_press_click.caf");
}

TEST_F(HeardSounds, NextSoundCutsTheOneBeforeOff) {
    const auto manager = core::VelMoranth::sharedIconManager();
    manager->playUISound(1104);
    output.advance(kSeconds / 2);
    manager->playUISound(1155);
    EXPECT_EQ(listen(kThemeFiles).name, "key_press_modifier.caf");
    EXPECT_EQ(output.journal().at(0).ending, desktop::VoiceEnding::stopped);
    EXPECT_DOUBLE_EQ(output.journal().at(0).end, kSeconds / 2);
    // A number without a sound takes the player away as well.
    output.advance(1);
    manager->playUISound(1104);
    output.advance(kSeconds / 4);
    manager->playUISound(1);
    EXPECT_EQ(listen(kThemeFiles).name, "silence");
}

TEST_F(HeardSounds, MusicGoesOnUnderAThemesSound) {
    mixer.startOtherAudio(
        desktop::SoundDecoder::open(
            desktop::SoundFile::open(*desktop::DeviceRoot::open(device.hostFolder()).value(),
                                     kPanelSounds + "beepShortOff.aif")
                .value(),
            44100)
            .value(),
        "music", 0.5F);
    core::VelMoranth::sharedIconManager()->playUISound(1104);
    output.advance(kSeconds);
    EXPECT_NEAR(levelOf(output.samples(), 800, 44100), kLevel, 0.02);
    EXPECT_NEAR(levelOf(output.samples(), 1250, 44100), kLevel / 2, 0.02);
    EXPECT_EQ(output.journal().at(1).over, std::vector<std::string>{"music"});
    EXPECT_EQ(output.journal().at(0).ending, std::nullopt);
}

TEST_F(HeardSounds, FileThatIsMissingOrDamagedIsSilent) {
    const auto manager = core::VelMoranth::sharedIconManager();
    device.remove(kThemeSounds + "lock.caf");
    device.file(kThemeSounds + "photoShutter.caf", "caff");
    device.journal.clear();
    for (const std::int64_t number : {1002, 1100}) {
        manager->playUISound(number);
        EXPECT_EQ(listen(kThemeFiles).name, "silence");
        EXPECT_EQ(manager->soundToPlay(), nullptr);
    }
    EXPECT_EQ(device.journal.count("log "), 0U);
}

TEST_F(HeardSounds, EveryPanelSoundIsItsFileAtItsVolume) {
    const auto panel = device.runtime.sendToClass<platform::ObjectRef>("Sounds", "new");
    ASSERT_NE(panel, nullptr);

    struct Action {
        const char* message;
        std::string file;
        float volume;
    };

    for (const Action& action :
         std::initializer_list<Action>{{"PlayButtonClick:", "button_click.caf", 0.05F},
                                       {"PlaySlide:", "cell_swoosh.caf", 0.8F},
                                       {"PlaySlideWithClick:", "SlideClick.caf", 0.05F},
                                       {"PlayError:", "Error.caf", 0.5F},
                                       {"PlayReboot:", "Reboot.caf", 0.5F},
                                       {"PlaySuccess:", "success.aif", 0.5F},
                                       {"PlayOn:", "beepShortOn.aif", 1.0F},
                                       {"PlayOff:", "beepShortOff.aif", 1.0F}}) {
        device.runtime.send<void, platform::ObjectRef>(*panel, action.message, nullptr);
        const Heard heard = listen(kPanelFiles);
        EXPECT_EQ(heard.name, action.file) << action.message;
        EXPECT_NEAR(heard.volume, action.volume, 0.05 * action.volume) << action.message;
        EXPECT_EQ(output.journal().back().volume, action.volume) << action.message;
    }
    EXPECT_EQ(output.journal().size(), 8U);
}

// A quiet click is the file's samples times its volume, to the last bit.
TEST_F(HeardSounds, QuietClickIsExact) {
    const Tone tone{.frequency = 500, .level = kLevel, .seconds = kSeconds};
    const auto panel = device.runtime.sendToClass<platform::ObjectRef>("Sounds", "new");
    device.runtime.send<void, platform::ObjectRef>(*panel, "PlayButtonClick:", nullptr);
    output.advance(kSeconds);
    const std::vector<float> samples = samplesOf(tone);
    ASSERT_EQ(output.samples().size(), samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const float stored = static_cast<float>(std::lround(samples[i] * 32768)) / 32768;
        ASSERT_EQ(output.samples()[i], stored * 0.05F) << i;
    }
}

TEST_F(HeardSounds, PanelsNextSoundCutsTheOneBeforeOff) {
    const auto panel = device.runtime.sendToClass<platform::ObjectRef>("Sounds", "new");
    device.runtime.send<void, platform::ObjectRef>(*panel, "PlayOn:", nullptr);
    output.advance(kSeconds / 4);
    device.runtime.send<void, platform::ObjectRef>(*panel, "PlayOff:", nullptr);
    EXPECT_EQ(listen(kPanelFiles).name, "beepShortOff.aif");
    EXPECT_EQ(output.journal().at(0).ending, desktop::VoiceEnding::stopped);
    EXPECT_DOUBLE_EQ(output.journal().at(0).end, kSeconds / 4);
    device.remove(kPanelSounds + "Error.caf");
    device.runtime.send<void, platform::ObjectRef>(*panel, "PlayOn:", nullptr);
    output.advance(kSeconds / 4);
    device.runtime.send<void, platform::ObjectRef>(*panel, "PlayError:", nullptr);
    EXPECT_EQ(listen(kPanelFiles).name, "silence");
}

}  // namespace
}  // namespace velmoranth::tests::heard_sounds_test
