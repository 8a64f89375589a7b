// The fixed sounds of the settings panel.
#include "sounds/sounds.h"

#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::sounds::sounds_test {
namespace {

using Lines = std::vector<std::string>;
using platform::ObjectRef;
using tests::TestAudioPlayer;

struct PanelSound {
    void (Sounds::*method)(const ObjectRef& sender);
    const char* file;
    const char* volume;  // the 32-bit float's digits
    float number;
};

const std::vector<PanelSound>& panelSounds() {
    static const std::vector<PanelSound> sounds{
        {&Sounds::PlayButtonClick, "button_click.caf", "0.05", 0.05F},
        {&Sounds::PlaySlide, "cell_swoosh.caf", "0.8", 0.8F},
        {&Sounds::PlaySlideWithClick, "SlideClick.caf", "0.05", 0.05F},
        {&Sounds::PlayError, "Error.caf", "0.5", 0.5F},
        {&Sounds::PlayReboot, "Reboot.caf", "0.5", 0.5F},
        {&Sounds::PlaySuccess, "success.aif", "0.5", 0.5F},
        {&Sounds::PlayOn, "beepShortOn.aif", "1", 1.0F},
        {&Sounds::PlayOff, "beepShortOff.aif", "1", 1.0F},
    };
    return sounds;
}

std::string pathOf(const PanelSound& sound) {
    return std::string("/User/Library/VelMoranth/Sounds/") + sound.file;
}

// A sound as long as its place in the list, from 1 on: its player's name tells them apart.
class SoundsTest : public ::testing::Test {
  protected:
    void allFiles() const {
        std::string contents;
        for (const PanelSound& sound : panelSounds()) {
            device.file(pathOf(sound), contents += "x");
        }
    }

    void play(std::size_t index, const ObjectRef& sender = nullptr) {
        ((*sounds).*panelSounds().at(index).method)(sender);
    }

    static std::string bytesOf(std::size_t index) { return std::to_string(index + 1) + " bytes"; }

    static std::string dataName(std::size_t index) { return "data of " + bytesOf(index); }

    // What playing it writes; `before` is the sound that played until then, from 0 on.
    static Lines lines(std::size_t index, int before = -1) {
        const PanelSound& sound = panelSounds().at(index);
        Lines expected{"+[NSData dataWithContentsOfFile:] " + pathOf(sound),
                       "-[AVAudioPlayer initWithData:error:] " + bytesOf(index)};
        if (before >= 0) {
            expected.push_back("-[AVAudioPlayer dealloc] " +
                               dataName(static_cast<std::size_t>(before)));
        }
        expected.push_back("-[AVAudioPlayer setDelegate:] " + dataName(index) + " Sounds");
        expected.push_back("-[AVAudioPlayer setVolume:] " + dataName(index) + " " + sound.volume);
        expected.push_back("-[AVAudioPlayer play] " + dataName(index));
        return expected;
    }

    tests::TestDevice device;
    std::shared_ptr<Sounds> sounds = std::make_shared<Sounds>();
};

TEST_F(SoundsTest, EachPlaysItsFileAtItsVolume) {
    allFiles();
    for (std::size_t i = 0; i < panelSounds().size(); ++i) {
        SCOPED_TRACE(panelSounds()[i].file);
        device.journal.clear();
        play(i);
        EXPECT_EQ(device.journal.lines(), lines(i, static_cast<int>(i) - 1));
        const auto player = std::dynamic_pointer_cast<TestAudioPlayer>(sounds->soundToPlay());
        ASSERT_NE(player, nullptr);
        EXPECT_EQ(player->name(), dataName(i));
        EXPECT_EQ(player->volume(), panelSounds()[i].number);
        EXPECT_EQ(player->delegate(), sounds.get());
    }
}

TEST_F(SoundsTest, TheSenderIsNotLookedAt) {
    allFiles();
    for (std::size_t i = 0; i < panelSounds().size(); ++i) {
        sounds = std::make_shared<Sounds>();
        device.journal.clear();
        play(i, sounds);
        EXPECT_EQ(device.journal.lines(), lines(i));
        EXPECT_EQ(sounds.use_count(), 1);
    }
}

TEST_F(SoundsTest, MissingFilesAreSilent) {
    for (std::size_t i = 0; i < panelSounds().size(); ++i) {
        device.journal.clear();
        play(i);
        EXPECT_EQ(device.journal.lines(),
                  (Lines{"+[NSData dataWithContentsOfFile:] " + pathOf(panelSounds()[i]),
                         "-[AVAudioPlayer initWithData:error:] nil"}));
        EXPECT_EQ(sounds->soundToPlay(), nullptr);
    }
}

TEST_F(SoundsTest, AFolderInTheFilesPlaceIsSilent) {
    device.folder(pathOf(panelSounds()[3]));
    play(3);
    EXPECT_EQ(device.journal.lines(),
              (Lines{"+[NSData dataWithContentsOfFile:] " + pathOf(panelSounds()[3]),
                     "-[AVAudioPlayer initWithData:error:] nil"}));
}

TEST_F(SoundsTest, TheSecondOfTwoReplacesTheFirst) {
    allFiles();
    play(6);
    const std::weak_ptr<platform::AudioPlayer> first = sounds->soundToPlay();
    device.journal.clear();
    play(7);
    EXPECT_EQ(device.journal.lines(), lines(7, 6));
    EXPECT_TRUE(first.expired());
    // The same sound again is a new player too.
    device.journal.clear();
    play(7);
    EXPECT_EQ(device.journal.lines(), lines(7, 7));
}

TEST_F(SoundsTest, AMissingFileStopsTheSoundBefore) {
    device.file(pathOf(panelSounds()[0]), "x");
    play(0);
    device.journal.clear();
    play(3);
    EXPECT_EQ(device.journal.lines(),
              (Lines{"+[NSData dataWithContentsOfFile:] " + pathOf(panelSounds()[3]),
                     "-[AVAudioPlayer initWithData:error:] nil",
                     "-[AVAudioPlayer dealloc] " + dataName(0)}));
    EXPECT_EQ(sounds->soundToPlay(), nullptr);
}

TEST_F(SoundsTest, TheFileIsReadForEverySound) {
    device.file(pathOf(panelSounds()[0]), "x");
    play(0);
    device.file(pathOf(panelSounds()[0]), "longer");
    play(0);
    EXPECT_EQ(
        device.journal.linesWith("-[AVAudioPlayer play] "),
        (Lines{"-[AVAudioPlayer play] data of 1 bytes", "-[AVAudioPlayer play] data of 6 bytes"}));
}

TEST_F(SoundsTest, InitClassMakesTheSessionAmbientAndNoMore) {
    sounds->initClass(sounds);
    EXPECT_EQ(device.journal.lines(), (Lines{"+[AVAudioSession sharedInstance]",
                                             "-[AVAudioSession setCategory:error:] AVAudioSession "
                                             "\"AVAudioSessionCategoryAmbient\""}));
    device.journal.clear();
    device.audio.session()->succeeds = false;
    sounds->initClass(sounds);
    EXPECT_EQ(device.journal.lines(), (Lines{"+[AVAudioSession sharedInstance]",
                                             "-[AVAudioSession setCategory:error:] AVAudioSession "
                                             "\"AVAudioSessionCategoryAmbient\""}));
}

TEST_F(SoundsTest, InitClassWithNilDoesNothing) {
    sounds->initClass(nullptr);
    EXPECT_EQ(device.journal.lines(), Lines{});
}

TEST_F(SoundsTest, PlayingDoesNotTouchTheSession) {
    allFiles();
    for (std::size_t i = 0; i < panelSounds().size(); ++i) {
        play(i);
    }
    EXPECT_EQ(device.journal.count("-[AVAudioSession "), 0U);
    EXPECT_EQ(device.journal.count("+[AVAudioSession "), 0U);
}

TEST_F(SoundsTest, ThePlayerCanBeReplacedAndTaken) {
    EXPECT_EQ(sounds->soundToPlay(), nullptr);
    auto player = std::make_shared<TestAudioPlayer>("mine");
    sounds->setSoundToPlay(player);
    EXPECT_EQ(sounds->soundToPlay(), player);
    player.reset();
    // Held, and set without being told anything.
    EXPECT_EQ(device.journal.lines(), Lines{});
    sounds->setSoundToPlay(nullptr);
    EXPECT_EQ(device.journal.lines(), (Lines{"-[AVAudioPlayer dealloc] mine"}));
    EXPECT_EQ(sounds->soundToPlay(), nullptr);
}

TEST_F(SoundsTest, ThePlayerGoesWithItsHolder) {
    allFiles();
    play(0);
    device.journal.clear();
    sounds.reset();
    EXPECT_EQ(device.journal.lines(), (Lines{"-[AVAudioPlayer dealloc] " + dataName(0)}));
}

TEST_F(SoundsTest, TwoHoldersPlayBesideEachOther) {
    allFiles();
    const auto first = sounds;
    play(0);
    sounds = std::make_shared<Sounds>();
    play(1);
    EXPECT_EQ(device.journal.count("-[AVAudioPlayer dealloc] "), 0U);
    const auto player = std::dynamic_pointer_cast<TestAudioPlayer>(first->soundToPlay());
    ASSERT_NE(player, nullptr);
    EXPECT_EQ(player->delegate(), first.get());
}

}  // namespace
}  // namespace velmoranth::sounds::sounds_test
