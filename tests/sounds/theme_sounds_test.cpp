// From a number to a file of a theme, and how that is played.
#include "sounds/theme_sounds.h"

#include "sound_process_fixture.h"

#include <array>
#include <limits>

namespace velmoranth::sounds::theme_sounds_test {
namespace {

using tests::askLines;
using tests::joined;
using tests::kReadPreferences;
using tests::Lines;
using tests::playLines;
using tests::searchLines;
using tests::soundFolder;

constexpr std::array kFiles{"SentMessage.caf",        "lock.caf",
                            "Anticipate.caf",         "key_press_click.caf",
                            "key_press_modifier.caf", "key_press_delete.caf",
                            "photoShutter.caf"};

class ThemeSoundsTest : public ::testing::Test {
  protected:
    // A theme with a sound of each name.
    void theme(const std::string& name) const {
        for (const char* file : kFiles) {
            device.file(soundFolder(name) + "/" + file, "sound");
        }
    }

    // What one call writes; `file` is "" for a number without a sound.
    void expectPlayed(const std::string& file) {
        const std::string folder = soundFolder("A");
        const Lines search = searchLines({"A"});
        const Lines expected = file.empty() ? joined({search, askLines(folder)})
                                            : joined({search, playLines(folder + "/" + file)});
        Lines lines = device.journal.lines();
        std::erase_if(lines, [](const std::string& line) {
            return line.starts_with("-[AVAudioPlayer dealloc] ");
        });
        EXPECT_EQ(lines, expected);
        EXPECT_EQ(sounds.soundToPlay() == nullptr, file.empty());
        device.journal.clear();
    }

    tests::TestDevice device;
    ThemeSounds sounds;
};

TEST_F(ThemeSoundsTest, SystemSoundIds) {
    device.activeThemes({"A"});
    theme("A");
    const std::vector<std::pair<std::int64_t, std::string>> numbers{
        {1000, "SentMessage.caf"},
        {1002, "lock.caf"},
        {1003, "Anticipate.caf"},
        {1100, "photoShutter.caf"},
        {1104, "key_press_click.caf"},
        {1108, "photoShutter.caf"},
        {1155, "key_press_modifier.caf"},
        {1156, "key_press_delete.caf"},
        {std::numeric_limits<std::int64_t>::min(), ""},
        {std::numeric_limits<std::int64_t>::max(), ""},
        {-1002, ""},
        // As 32 bits these would be 1002.
        {(std::int64_t{1} << 32U) + 1002, ""},
        {-(std::int64_t{1} << 32U) + 1002, ""}};
    for (const auto& [number, file] : numbers) {
        SCOPED_TRACE(number);
        sounds.playUISound(number);
        expectPlayed(file);
    }
}

TEST_F(ThemeSoundsTest, NoOtherSystemSoundIds) {
    device.activeThemes({"A"});
    theme("A");
    for (std::int64_t number = -2; number < 1400; ++number) {
        for (const int known : {1000, 1002, 1003, 1100, 1104, 1108, 1155, 1156}) {
            number += number == known ? 1 : 0;
        }
        sounds.playUISound(number);
        ASSERT_EQ(device.journal.lines(), joined({searchLines({"A"}), askLines(soundFolder("A"))}))
            << number;
        device.journal.clear();
    }
}

TEST_F(ThemeSoundsTest, FeedbackEventTypes) {
    device.activeThemes({"A"});
    theme("A");
    constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
    const std::vector<std::pair<std::uint64_t, std::string>> numbers{
        {1002, "lock.caf"},
        {1003, "Anticipate.caf"},
        {1004, "key_press_click.caf"},
        {1005, ""},
        {1006, ""},
        {1007, ""},
        {1008, "photoShutter.caf"},
        {1001, ""},
        {1009, ""},
        {1000, ""},
        {1010, ""},
        {0, ""},
        {1, ""},
        {kMax, ""},
        {kMax - 1, ""},
        {std::uint64_t{1} << 63U, ""},
        {(std::uint64_t{1} << 63U) + 1002, ""},
        {(std::uint64_t{1} << 32U) + 1002, ""}};
    for (const auto& [number, file] : numbers) {
        SCOPED_TRACE(number);
        sounds.playsystemSound(number);
        expectPlayed(file);
    }
}

TEST_F(ThemeSoundsTest, NoOtherFeedbackEventTypes) {
    device.activeThemes({"A"});
    theme("A");
    for (std::uint64_t number = 0; number < 1400; ++number) {
        if (number <= 1008 && number >= 1002) {
            continue;
        }
        sounds.playsystemSound(number);
        ASSERT_EQ(device.journal.lines(), joined({searchLines({"A"}), askLines(soundFolder("A"))}))
            << number;
        device.journal.clear();
    }
}

TEST_F(ThemeSoundsTest, NothingAtAllWithoutAFolderOfSounds) {
    const auto playBoth = [this] {
        sounds.playUISound(1002);
        sounds.playsystemSound(1002);
        Lines lines = device.journal.lines();
        device.journal.clear();
        return lines;
    };
    // No preferences.
    EXPECT_EQ(playBoth(), (Lines{kReadPreferences, kReadPreferences}));
    // Preferences that are none.
    device.file("/User/Library/Preferences/com.qor.velmoranthprefs.plist", "no property list {");
    EXPECT_EQ(playBoth(), (Lines{kReadPreferences, kReadPreferences}));
    // No key.
    device.preferences({{"enable", true}});
    EXPECT_EQ(playBoth(), (Lines{kReadPreferences, kReadPreferences}));
    // No array.
    device.preferences({{"ActiveThemes", "A"}});
    theme("A");
    EXPECT_EQ(playBoth(), (Lines{kReadPreferences, kReadPreferences}));
    // No theme.
    device.activeThemes({});
    EXPECT_EQ(playBoth(), (Lines{kReadPreferences, kReadPreferences}));
    // No folder.
    device.folder("/Library/Themes/B");
    device.activeThemes({"B", "C"});
    EXPECT_EQ(playBoth(), joined({searchLines({"B", "C"}), searchLines({"B", "C"})}));
    EXPECT_EQ(sounds.audiosession(), nullptr);
    EXPECT_EQ(sounds.soundToPlay(), nullptr);
}

TEST_F(ThemeSoundsTest, TheFirstThemeWithAFolderIsTaken) {
    device.activeThemes({"A", "B", "C"});
    theme("B");
    theme("C");
    sounds.playUISound(1002);
    EXPECT_EQ(device.journal.lines(),
              joined({searchLines({"A", "B"}), playLines(soundFolder("B") + "/lock.caf")}));
    device.journal.clear();
    theme("A");
    sounds.playsystemSound(1002);
    EXPECT_EQ(device.journal.lines(),
              joined({searchLines({"A"}),
                      playLines(soundFolder("A") + "/lock.caf", soundFolder("B") + "/lock.caf")}));
}

TEST_F(ThemeSoundsTest, ALaterThemesFileDoesNotStandInForAMissingOne) {
    device.activeThemes({"A", "B"});
    device.folder(soundFolder("A"));
    theme("B");
    for (const bool event : {false, true}) {
        event ? sounds.playsystemSound(1003) : sounds.playUISound(1003);
        EXPECT_EQ(device.journal.lines(),
                  joined({searchLines({"A"}), askLines(soundFolder("A") + "/Anticipate.caf")}));
        EXPECT_EQ(sounds.soundToPlay(), nullptr);
        device.journal.clear();
    }
}

TEST_F(ThemeSoundsTest, APlainFileOfTheFoldersNameCountsAsOne) {
    device.activeThemes({"A", "B"});
    device.file(soundFolder("A"), "no folder");
    theme("B");
    sounds.playUISound(1002);
    EXPECT_EQ(device.journal.lines(),
              joined({searchLines({"A"}), askLines(soundFolder("A") + "/lock.caf")}));
    device.journal.clear();
    // A number without a sound hands over the path itself, whatever it is.
    sounds.playUISound(1);
    EXPECT_EQ(device.journal.lines(), joined({searchLines({"A"}), playLines(soundFolder("A"))}));
}

TEST_F(ThemeSoundsTest, NamesOfThemesStandAsTheyAre) {
    const std::string name = "Größe 100%@ (ねこ)";
    device.activeThemes({"", name});
    theme(name);
    sounds.playsystemSound(1008);
    EXPECT_EQ(
        device.journal.lines(),
        joined({{kReadPreferences, "-[NSFileManager fileExistsAtPath:] /Library/Themes//UISounds",
                 "-[NSFileManager fileExistsAtPath:] " + soundFolder(name)},
                playLines(soundFolder(name) + "/photoShutter.caf")}));
}

TEST_F(ThemeSoundsTest, PreferencesAndFoldersAreLookedAtForEverySound) {
    device.activeThemes({"A", "B"});
    theme("B");
    for (int i = 0; i < 3; ++i) {
        sounds.playUISound(1002);
        sounds.playsystemSound(1);
    }
    EXPECT_EQ(device.journal.count(kReadPreferences), 6U);
    EXPECT_EQ(device.journal.count("-[NSFileManager fileExistsAtPath:] " + soundFolder("A")), 6U);
    EXPECT_EQ(device.journal.count("-[NSFileManager fileExistsAtPath:] " + soundFolder("B")), 6U);
    EXPECT_EQ(device.journal.count("-[NSFileManager fileExistsAtPath:] "), 12U);
    EXPECT_EQ(device.journal.count("+[AVAudioSession sharedInstance]"), 6U);
    EXPECT_EQ(device.journal.count("-[AVAudioSession setActive:error:] AVAudioSession YES"), 6U);
}

TEST_F(ThemeSoundsTest, ASessionThatRefusesChangesNothing) {
    device.activeThemes({"A"});
    theme("A");
    device.audio.session()->succeeds = false;
    sounds.playUISound(1002);
    EXPECT_EQ(device.journal.lines(),
              joined({searchLines({"A"}), playLines(soundFolder("A") + "/lock.caf")}));
}

TEST_F(ThemeSoundsTest, TheNewPlayerIsMadeBeforeTheOldOneGoes) {
    device.activeThemes({"A"});
    theme("A");
    sounds.playUISound(1002);
    const std::weak_ptr<platform::AudioPlayer> first = sounds.soundToPlay();
    device.journal.clear();
    sounds.playUISound(1003);
    EXPECT_EQ(device.journal.lines(),
              joined({searchLines({"A"}), playLines(soundFolder("A") + "/Anticipate.caf",
                                                    soundFolder("A") + "/lock.caf")}));
    EXPECT_TRUE(first.expired());
}

TEST_F(ThemeSoundsTest, NoPlayerTakesThePlaceOfAnOldOneToo) {
    device.activeThemes({"A"});
    device.file(soundFolder("A") + "/lock.caf", "sound");
    for (const std::int64_t number : {1, 1003}) {
        sounds.playUISound(1002);
        ASSERT_NE(sounds.soundToPlay(), nullptr);
        device.journal.clear();
        sounds.playUISound(number);
        const std::string path = soundFolder("A") + (number == 1 ? "" : "/Anticipate.caf");
        EXPECT_EQ(device.journal.lines(),
                  joined({searchLines({"A"}),
                          askLines(path),
                          {"-[AVAudioPlayer dealloc] " + soundFolder("A") + "/lock.caf"}}));
        EXPECT_EQ(sounds.soundToPlay(), nullptr);
    }
}

TEST_F(ThemeSoundsTest, AFolderThatIsGoneLeavesTheSoundThatPlays) {
    device.activeThemes({"A"});
    theme("A");
    sounds.playUISound(1002);
    const auto player = sounds.soundToPlay();
    device.remove(soundFolder("A"));
    sounds.playUISound(1003);
    EXPECT_EQ(sounds.soundToPlay(), player);
}

TEST_F(ThemeSoundsTest, HoldsTheSessionAndThePlayer) {
    EXPECT_EQ(sounds.audiosession(), nullptr);
    EXPECT_EQ(sounds.soundToPlay(), nullptr);
    device.activeThemes({"A"});
    theme("A");
    // The session also for a number without a sound.
    sounds.playsystemSound(1);
    EXPECT_EQ(sounds.audiosession(), device.audio.session());
    sounds.playsystemSound(1004);
    const auto player = std::dynamic_pointer_cast<tests::TestAudioPlayer>(sounds.soundToPlay());
    ASSERT_NE(player, nullptr);
    EXPECT_EQ(player->name(), soundFolder("A") + "/key_press_click.caf");
    // At the player's own volume, and nobody is told of its end.
    EXPECT_EQ(player->volume(), 1.0F);
    EXPECT_EQ(player->delegate(), nullptr);
}

// One sound at a time is a matter of the holder.
TEST_F(ThemeSoundsTest, SoundsOfTwoHoldersPlayBesideEachOther) {
    device.activeThemes({"A"});
    theme("A");
    ThemeSounds other;
    sounds.playUISound(1002);
    other.playUISound(1002);
    EXPECT_EQ(device.journal.count("-[AVAudioPlayer dealloc] "), 0U);
    EXPECT_EQ(device.journal.count("+[AVAudioSession sharedInstance]"), 2U);
}

}  // namespace
}  // namespace velmoranth::sounds::theme_sounds_test
