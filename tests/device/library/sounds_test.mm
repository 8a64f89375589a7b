// Sounds, by message: those of the themes and those of the settings panel, and who holds a player.
#include "device/library/device_process.h"
#import "device/standins/av_foundation.h"
#include "device/standins/messages.h"
#include <objc/runtime.h>

namespace velmoranth::standins::sounds_test {
namespace {

using Lines = std::vector<std::string>;

const std::string kThemeSounds = "/Library/Themes/A/UISounds/";
const std::string kPanelSounds = "/User/Library/VelMoranth/Sounds/";

class SoundsByMessage : public DeviceProcess {
  protected:
    SoundsByMessage() {
        activeThemes({"A"});
        loaded();
    }

    static void sound(const std::string& path) { file(path, "caff and its samples"); }

    // With a reference for the caller.
    static id<SoundsMessages> newSounds() {
        return [[static_cast<Class>(objc_getClass("Sounds")) alloc] init];
    }

    // The same without init, which nobody has to send.
    static id allocated(const char* className) {
        return [static_cast<Class>(objc_getClass(className)) alloc];
    }

    static id<VelMoranthMessages> newInstance() {
        return [[static_cast<Class>(objc_getClass("VelMoranth")) alloc] init];
    }

    static id<VelMoranthMessages> shared() { return [velMoranth() sharedIconManager]; }
};

TEST_F(SoundsByMessage, PlayTheThemesSoundOfASystemSound) {
    sound(kThemeSounds + "lock.caf");
    EXPECT_EQ([shared() audiosession], nil);
    EXPECT_EQ([shared() soundToPlay], nil);
    [shared() playUISound:1002];
    ASSERT_EQ(playingPlayers().size(), 1U);
    AVAudioPlayer* const player = playingPlayers().front();
    EXPECT_EQ([shared() soundToPlay], player);
    EXPECT_EQ(textOf([player->_url path]), kThemeSounds + "lock.caf");
    EXPECT_EQ(player->_volume, 1);
    EXPECT_EQ([shared() audiosession], [AVAudioSession sharedInstance]);
    EXPECT_EQ(textOf([AVAudioSession sharedInstance]->_category), "AVAudioSessionCategoryAmbient");
    EXPECT_TRUE([AVAudioSession sharedInstance]->_isActive);
}

TEST_F(SoundsByMessage, PlayTheThemesSoundOfAFeedback) {
    sound(kThemeSounds + "key_press_click.caf");
    [shared() playsystemSound:1004];
    ASSERT_EQ(playingPlayers().size(), 1U);
    // The number is looked at whole.
    [shared() playsystemSound:0x100000000ULL + 1004];
    EXPECT_TRUE(playingPlayers().empty());
    EXPECT_EQ([shared() soundToPlay], nil);
}

TEST_F(SoundsByMessage, TellNegativeNumbersFromLargeOnes) {
    sound(kThemeSounds + "lock.caf");
    [shared() playUISound:-0x100000000LL + 1002];
    EXPECT_TRUE(playingPlayers().empty());
}

TEST_F(SoundsByMessage, ANewSoundEndsTheOneBefore) {
    sound(kThemeSounds + "lock.caf");
    const long before = living("AVAudioPlayer");
    for (int i = 0; i < 3; ++i) {
        @autoreleasepool {
            [shared() playUISound:1002];
        }
        EXPECT_EQ(living("AVAudioPlayer"), before + 1);
        EXPECT_EQ(playingPlayers().size(), 1U);
    }
    [shared() setSoundToPlay:nil];
    EXPECT_EQ(living("AVAudioPlayer"), before);
}

TEST_F(SoundsByMessage, PropertiesKeepTheirObjects) {
    NSData* const data = [NSData dataWithBytes:"caff" length:4];
    AVAudioPlayer* const player = [[AVAudioPlayer alloc] initWithData:data error:nullptr];
    const long before = living("AVAudioPlayer");
    const id<VelMoranthMessages> instance = newInstance();
    @autoreleasepool {
        [instance setSoundToPlay:player];
        EXPECT_EQ([instance soundToPlay], player);
        [instance setSoundToPlay:player];
        EXPECT_EQ([instance soundToPlay], player);
        [instance setAudiosession:[AVAudioSession sharedInstance]];
        EXPECT_EQ([instance audiosession], [AVAudioSession sharedInstance]);
    }
    [player release];
    EXPECT_EQ(living("AVAudioPlayer"), before);
    @autoreleasepool {
        EXPECT_EQ([instance soundToPlay], player);
        EXPECT_EQ([static_cast<id>(instance) valueForKey:@"soundToPlay"], player);
        [instance setAudiosession:nil];
        EXPECT_EQ([instance audiosession], nil);
    }
    [instance release];
    EXPECT_EQ(living("AVAudioPlayer"), before - 1);
}

TEST_F(SoundsByMessage, EachInstanceHasAPlayerOfItsOwn) {
    sound(kThemeSounds + "lock.caf");
    const id<VelMoranthMessages> instance = newInstance();
    [instance playUISound:1002];
    EXPECT_NE([instance soundToPlay], nil);
    EXPECT_EQ([shared() soundToPlay], nil);
    EXPECT_NE(static_cast<id>(instance), static_cast<id>(shared()));
    @autoreleasepool {
        [instance release];
    }
}

TEST_F(SoundsByMessage, InstancesNeedNoInit) {
    sound(kPanelSounds + "beepShortOn.aif");
    sound(kThemeSounds + "lock.caf");
    @autoreleasepool {
        const id<SoundsMessages> sounds = allocated("Sounds");
        EXPECT_EQ([sounds soundToPlay], nil);
        [sounds PlayOn:nil];
        ASSERT_EQ(playingPlayers().size(), 1U);
        EXPECT_EQ([sounds soundToPlay], playingPlayers().front());
        EXPECT_EQ([playingPlayers().front() delegate], static_cast<id>(sounds));
        [sounds release];
        const id<VelMoranthMessages> instance = allocated("VelMoranth");
        EXPECT_EQ([instance audiosession], nil);
        [instance initClass:nil];
        [instance playUISound:1002];
        EXPECT_NE([instance soundToPlay], nil);
        EXPECT_EQ([shared() soundToPlay], nil);
        [instance release];
        // Without any message as well.
        [allocated("Sounds") release];
        [allocated("VelMoranth") release];
    }
    EXPECT_EQ(living("AVAudioPlayer"), 0);
}

TEST_F(SoundsByMessage, TheMainClassMakesTheSessionAmbientForAnObject) {
    [shared() initClass:nil];
    EXPECT_EQ(journalOf("-[AVAudioSession"), Lines{});
    [shared() initClass:@"any"];
    EXPECT_EQ(journalOf("-[AVAudioSession"),
              (Lines{"-[AVAudioSession setCategory:error:] AVAudioSession "
                     "\"AVAudioSessionCategoryAmbient\""}));
}

TEST_F(SoundsByMessage, ThePanelsSoundsAreEachItsOwn) {
    struct Sound {
        const char* file;
        float volume;
        void (*play)(id<SoundsMessages> sounds, id sender);
    };

    const Sound kSounds[] = {
        {"button_click.caf", 0.05F,
         [](id<SoundsMessages> s, id sender) { [s PlayButtonClick:sender]; }},
        {"cell_swoosh.caf", 0.8F, [](id<SoundsMessages> s, id sender) { [s PlaySlide:sender]; }},
        {"SlideClick.caf", 0.05F,
         [](id<SoundsMessages> s, id sender) { [s PlaySlideWithClick:sender]; }},
        {"Error.caf", 0.5F, [](id<SoundsMessages> s, id sender) { [s PlayError:sender]; }},
        {"Reboot.caf", 0.5F, [](id<SoundsMessages> s, id sender) { [s PlayReboot:sender]; }},
        {"success.aif", 0.5F, [](id<SoundsMessages> s, id sender) { [s PlaySuccess:sender]; }},
        {"beepShortOn.aif", 1.0F, [](id<SoundsMessages> s, id sender) { [s PlayOn:sender]; }},
        {"beepShortOff.aif", 1.0F, [](id<SoundsMessages> s, id sender) { [s PlayOff:sender]; }},
    };
    const id<SoundsMessages> sounds = newSounds();
    for (const Sound& each : kSounds) {
        @autoreleasepool {
            file(kPanelSounds + each.file, std::string("caff ") + each.file);
            each.play(sounds, sounds);
            AVAudioPlayer* const player = [sounds soundToPlay];
            ASSERT_NE(player, nil) << each.file;
            EXPECT_EQ(std::string(static_cast<const char*>([player->_data bytes]),
                                  [player->_data length]),
                      std::string("caff ") + each.file);
            EXPECT_EQ(player->_volume, each.volume) << each.file;
            EXPECT_EQ([player delegate], static_cast<id>(sounds));
            EXPECT_EQ(playingPlayers(), std::vector<AVAudioPlayer*>{player});
            remove(kPanelSounds + each.file);
            each.play(sounds, nil);
            EXPECT_EQ([sounds soundToPlay], nil) << each.file;
        }
    }
    [sounds release];
}

// The instance's variables, by the names that other code knows.
TEST_F(SoundsByMessage, ThePanelsPlayerIsInItsVariableBeforeItIsSentAnything) {
    sound(kPanelSounds + "beepShortOn.aif");
    const id sounds = newSounds();
    EXPECT_EQ(variable(sounds, "soundToPlay"), nil);
    std::vector<const void*> atTheDelegate;
    whenNoted("-[AVAudioPlayer setDelegate:] ", [&] {
        atTheDelegate.push_back(static_cast<const void*>(variable(sounds, "soundToPlay")));
        // The one before is gone.
        EXPECT_EQ(living("AVAudioPlayer"), 1);
    });
    std::vector<const void*> players;
    for (int time = 0; time < 2; ++time) {
        @autoreleasepool {
            [static_cast<id<SoundsMessages>>(sounds) PlayOn:nil];
            ASSERT_EQ(playingPlayers().size(), 1U);
            players.push_back(static_cast<const void*>(playingPlayers().front()));
        }
    }
    EXPECT_EQ(atTheDelegate, players);
    EXPECT_EQ(static_cast<const void*>(variable(sounds, "soundToPlay")), players.back());
    remove(kPanelSounds + "beepShortOn.aif");
    [static_cast<id<SoundsMessages>>(sounds) PlayOn:nil];
    EXPECT_EQ(variable(sounds, "soundToPlay"), nil);
    [sounds release];
}

TEST_F(SoundsByMessage, TheNameOfAThemeIsAKeyThatNothingSets) {
    const id sounds = newSounds();
    ASSERT_NE(class_getInstanceVariable(object_getClass(sounds), "themeName"), nullptr);
    EXPECT_EQ([sounds valueForKey:@"themeName"], nil);
    NSMutableString* const name = [[NSMutableString alloc] initWithString:@"Kiln"];
    @autoreleasepool {
        [sounds setValue:name forKey:@"themeName"];
        EXPECT_EQ([sounds valueForKey:@"themeName"], name);
    }
    EXPECT_EQ([name retainCount], 2U);
    [sounds release];
    EXPECT_EQ([name retainCount], 1U);
    [name release];
}

TEST_F(SoundsByMessage, ThePanelsSoundEndsWithItsOwner) {
    sound(kPanelSounds + "beepShortOn.aif");
    const long before = living("AVAudioPlayer");
    @autoreleasepool {
        const id<SoundsMessages> sounds = newSounds();
        [sounds PlayOn:nil];
        EXPECT_EQ(playingPlayers().size(), 1U);
        // A sound that has ended is none of its delegate's concern.
        finishPlaying(playingPlayers().front(), true);
        [sounds PlayOn:nil];
        [sounds release];
    }
    EXPECT_TRUE(playingPlayers().empty());
    EXPECT_EQ(living("AVAudioPlayer"), before);
}

TEST_F(SoundsByMessage, ThePanelsPlayerIsAProperty) {
    const id<SoundsMessages> sounds = newSounds();
    EXPECT_EQ([sounds soundToPlay], nil);
    @autoreleasepool {
        NSData* const data = [NSData dataWithBytes:"caff" length:4];
        AVAudioPlayer* const player = [[[AVAudioPlayer alloc] initWithData:data
                                                                     error:nullptr] autorelease];
        [sounds setSoundToPlay:player];
        EXPECT_EQ([sounds soundToPlay], player);
        EXPECT_EQ([static_cast<id>(sounds) valueForKey:@"soundToPlay"], player);
    }
    EXPECT_EQ(living("AVAudioPlayer"), 1);
    [sounds setSoundToPlay:nil];
    EXPECT_EQ([sounds soundToPlay], nil);
    EXPECT_EQ(living("AVAudioPlayer"), 0);
    [sounds initClass:nil];
    EXPECT_EQ(journalOf("-[AVAudioSession"), Lines{});
    [sounds initClass:sounds];
    EXPECT_EQ(journalOf("-[AVAudioSession").size(), 1U);
    [sounds release];
}

}  // namespace
}  // namespace velmoranth::standins::sounds_test
