// The classes that the library brings into a process, and how others reach them: by message.
#include "core/library_classes.h"

#include "core/entry_points.h"
#include "core/velmoranth.h"
#include "filemanager/velmoranth_file_manager.h"
#include "sounds/sounds.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::core::library_classes_test {
namespace {

using filemanager::VelmoranthFileManager;
using platform::AudioPlayerRef;
using platform::NullableString;
using platform::ObjectRef;
using sounds::Sounds;
using Lines = std::vector<std::string>;

const std::string kSaved = "/User/Library/VelMoranth/UserSettings";
const std::string kPreferencesFile = "com.qor.velmoranthprefs.plist";

// "+selector" of a class method, "-selector" of an instance method.
Lines selectorsOf(const platform::ClassDefinition& definition) {
    Lines selectors;
    for (const platform::MethodDefinition& method : definition.methods) {
        selectors.push_back((method.isClassMethod ? "+" : "-") + method.selector);
        EXPECT_TRUE(method.implementation) << method.selector;
    }
    return selectors;
}

TEST(LibraryClasses, AreThree) {
    const auto classes = libraryClasses();
    ASSERT_EQ(classes.size(), 3U);
    for (const auto& definition : classes) {
        EXPECT_EQ(definition.superclass, "NSObject");
    }
    EXPECT_EQ(classes[0].name, "VelmoranthFileManager");
    EXPECT_FALSE(classes[0].load);
    EXPECT_TRUE(classes[0].initialize);
    EXPECT_FALSE(classes[0].makeInstance);
    EXPECT_EQ(selectorsOf(classes[0]),
              (Lines{"+sharedFileManager", "+NoUserSettingCreateThemeNow",
                     "+overwriteFontFilesInDir:fromTheme:", "+saveCurrentSettinginFolderWithName:",
                     "+renameFileFrom:to:", "+deleteFileFromDevice:fromDir:", "+ShowSuccesView:",
                     "+finshedSelfAlert"}));
    EXPECT_EQ(classes[1].name, "Sounds");
    EXPECT_FALSE(classes[1].load);
    EXPECT_FALSE(classes[1].initialize);
    EXPECT_TRUE(classes[1].makeInstance);
    EXPECT_EQ(selectorsOf(classes[1]),
              (Lines{"-initClass:", "-PlayButtonClick:", "-PlaySlide:", "-PlaySlideWithClick:",
                     "-PlayError:", "-PlayReboot:", "-PlaySuccess:", "-PlayOn:", "-PlayOff:",
                     "-soundToPlay", "-setSoundToPlay:"}));
    EXPECT_EQ(classes[2].name, "VelMoranth");
    EXPECT_TRUE(classes[2].load);
    EXPECT_TRUE(classes[2].initialize);
    EXPECT_FALSE(classes[2].makeInstance);
    EXPECT_EQ(selectorsOf(classes[2]),
              (Lines{"+sharedIconManager",
                     "-initClass:",
                     "-playUISound:",
                     "-playsystemSound:",
                     "-audiosession",
                     "-setAudiosession:",
                     "-soundToPlay",
                     "-setSoundToPlay:",
                     "+selectedTheme",
                     "+currentThemePlist",
                     "+userChangedThemes",
                     "+DetectUserDevice",
                     "+searchforIconInIconBundlesWithLeafIdentifier:forImg:",
                     "+deviceUIImageNamed:fromBundle:originalUIImage:",
                     "+deviceUIImageNamed:originalUIImage:",
                     "+searchFolder:forImageStr:",
                     "+searchFolders:forImageString:",
                     "+hasSearchForImageNamedOrBundle:forImg:",
                     "+iconMask",
                     "+clearIconMask",
                     "+maskImage:withMask:",
                     "+iconOverlay",
                     "+clearIconOverlay",
                     "+redrawIconWithOverlay:",
                     "+addShadowToIcon",
                     "+clearShadowImg",
                     "+reflectedImage:withHeight:",
                     "+imageWithImage:scaledToSize:",
                     "+removeAllOverlaysfrom:",
                     "+removeAllShadowsfrom:",
                     "+removeFolderfrom:",
                     "+removeReflectedIconsfrom:",
                     "+FolderImage",
                     "+badgeImage",
                     "+pageDots:",
                     "+spotlightPageDot",
                     "+SBDockImgWithFrame:",
                     "+colorWithHexString:",
                     "+VelmoranthImageDump:named:inBundle:",
                     "+contentTypeForImageData:",
                     "+imageFromBundlePath:extract:extractionPath:"}));
}

// A process that the library has come into; nothing of that is in the journal.
class LibraryMessages : public ::testing::Test {
  protected:
    LibraryMessages() {
        // So that nothing is asked for while the classes come to be known.
        device.file("/var/mobile/var/mobile/User/Library/Preferences/" + kPreferencesFile, "");
        registerClasses();
        device.journal.clear();
    }

    ~LibraryMessages() override {
        // No message was refused.
        EXPECT_EQ(device.journal.linesWith("warning: "), Lines{});
    }

    ObjectRef sharedFileManager(const std::string& className = "VelmoranthFileManager") {
        return device.runtime.sendToClass<ObjectRef>(className, "sharedFileManager");
    }

    bool send(const std::string& selector, const NullableString& argument) {
        return device.runtime.sendToClass<bool, NullableString>("VelmoranthFileManager", selector,
                                                                argument);
    }

    bool send(const std::string& selector, const NullableString& first,
              const NullableString& second) {
        return device.runtime.sendToClass<bool, NullableString, NullableString>(
            "VelmoranthFileManager", selector, first, second);
    }

    void send(const std::string& selector) {
        device.runtime.sendToClass<void>("VelmoranthFileManager", selector);
    }

    ObjectRef newSounds() { return device.runtime.sendToClass<ObjectRef>("Sounds", "new"); }

    // The lines that begin so, which must be one.
    [[nodiscard]] std::string only(const std::string& prefix) const {
        const Lines lines = device.journal.linesWith(prefix);
        EXPECT_EQ(lines.size(), 1U) << prefix;
        return lines.empty() ? std::string() : lines.front();
    }

    tests::TestDevice device;
};

TEST_F(LibraryMessages, TheFirstMessageMakesTheSharedFileManager) {
    EXPECT_EQ(VelmoranthFileManager::sharedFileManager(), nullptr);
    const ObjectRef shared = sharedFileManager();
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared->className(), "VelmoranthFileManager");
    EXPECT_EQ(shared, VelmoranthFileManager::sharedFileManager());
    EXPECT_EQ(sharedFileManager(), shared);
}

TEST_F(LibraryMessages, AnyMessageToTheFileManagerMakesIt) {
    send("finshedSelfAlert");
    EXPECT_NE(VelmoranthFileManager::sharedFileManager(), nullptr);
}

TEST_F(LibraryMessages, ASubclassDoesNotMakeAnotherFileManager) {
    device.runtime.addClass("Sub", "VelmoranthFileManager");
    const ObjectRef shared = sharedFileManager("Sub");
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(sharedFileManager(), shared);
    VelmoranthFileManager::initialize(device.runtime.getClass("Sub"));
    VelmoranthFileManager::initialize(nullptr);
    VelmoranthFileManager::initialize(
        device.runtime.getMetaclass(device.runtime.getClass("VelmoranthFileManager")));
    EXPECT_EQ(sharedFileManager(), shared);
    // The class itself makes it anew.
    VelmoranthFileManager::initialize(device.runtime.getClass("VelmoranthFileManager"));
    EXPECT_NE(sharedFileManager(), nullptr);
    EXPECT_NE(sharedFileManager(), shared);
}

TEST_F(LibraryMessages, BeforeAnyClassNothingIsMade) {
    VelmoranthFileManager::initialize(device.runtime.getClass("Sounds"));
    VelmoranthFileManager::initialize(nullptr);
    EXPECT_EQ(VelmoranthFileManager::sharedFileManager(), nullptr);
}

TEST_F(LibraryMessages, RestoreTheFactorySettings) {
    const std::string factory = "/User/Library/VelMoranth/DefaultSettings/" + kPreferencesFile;
    device.file(factory, "factory");
    send("NoUserSettingCreateThemeNow");
    EXPECT_EQ(only(tests::kCopy),
              tests::copyLine(factory, "/User/Library/Preferences/" + kPreferencesFile));
    EXPECT_EQ(device.contents("/User/Library/Preferences/" + kPreferencesFile), "factory");
}

TEST_F(LibraryMessages, SaveUnderAName) {
    device.file("/User/Library/Preferences/" + kPreferencesFile, "live");
    device.folder(kSaved);
    EXPECT_TRUE(send("saveCurrentSettinginFolderWithName:", "Night"));
    EXPECT_EQ(device.contents(kSaved + "/ Night " + kPreferencesFile), "live");
    EXPECT_FALSE(send("saveCurrentSettinginFolderWithName:", "Night"));
    device.remove(kSaved + "/" + kPreferencesFile);
    EXPECT_TRUE(send("saveCurrentSettinginFolderWithName:", std::nullopt));
    EXPECT_EQ(device.contents(kSaved + "/ (null) " + kPreferencesFile), "live");
}

TEST_F(LibraryMessages, RenameFromTheFirstToTheSecond) {
    device.file("/Library/a", "x");
    EXPECT_TRUE(send("renameFileFrom:to:", "/Library/a", "/Library/b"));
    EXPECT_EQ(only(tests::kMove), tests::moveLine("/Library/a", "/Library/b"));
    EXPECT_FALSE(send("renameFileFrom:to:", "/Library/a", "/Library/b"));
}

TEST_F(LibraryMessages, DeleteTheFirstAndLogTheSecond) {
    device.file("/Library/a", "x");
    EXPECT_TRUE(send("deleteFileFromDevice:fromDir:", "/Library/a", "/Library"));
    EXPECT_EQ(device.journal.log(),
              (Lines{"VELMORANTH FILE MANAGER: deleteFileFromDevice: /Library/a fromThemeDir: "
                     "/Library"}));
    EXPECT_FALSE(device.exists("/Library/a"));
    EXPECT_FALSE(send("deleteFileFromDevice:fromDir:", "/Library/a", "/Library"));
    EXPECT_FALSE(send("deleteFileFromDevice:fromDir:", std::nullopt, std::nullopt));
    EXPECT_TRUE(device.journal.log().back().ends_with(": (null) fromThemeDir: (null)"));
}

TEST_F(LibraryMessages, CopyFontsFromTheSecondToTheFirst) {
    device.file("/Library/theirs/a.ttf", "x");
    EXPECT_TRUE(send("overwriteFontFilesInDir:fromTheme:", "/Library/place", "/Library/theirs"));
    EXPECT_EQ(only(tests::kCopy), tests::copyLine("/Library/theirs", "/Library/place"));
    EXPECT_EQ(device.journal.count("dispatch_after 600000000"), 1U);
    EXPECT_FALSE(send("overwriteFontFilesInDir:fromTheme:", "/Library/place", "/Library/theirs"));
}

TEST_F(LibraryMessages, ShowAndTakeAwayTheSuccessImage) {
    device.runtime.sendToClass<void, NullableString>("VelmoranthFileManager",
                                                     "ShowSuccesView:", "/a picture.png");
    EXPECT_EQ(only("+[UIImage imageWithContentsOfFile:] "),
              "+[UIImage imageWithContentsOfFile:] /a picture.png");
    ASSERT_EQ(device.application.rootView->subviews().size(), 1U);
    send("finshedSelfAlert");
    EXPECT_TRUE(device.application.rootView->subviews().empty());
}

TEST_F(LibraryMessages, TheMainClassPlaysThemeSounds) {
    device.activeThemes({"A"});
    const std::string folder = "/Library/Themes/A/UISounds/";
    device.file(folder + "lock.caf", "sound");
    device.file(folder + "key_press_click.caf", "sound");
    const auto manager = device.runtime.sendToClass<ObjectRef>("VelMoranth", "sharedIconManager");
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(manager, VelMoranth::sharedIconManager());
    const auto session = [&] {
        return device.runtime.send<platform::AudioSessionRef>(*manager, "audiosession");
    };
    const auto player = [&] {
        return device.runtime.send<AudioPlayerRef>(*manager, "soundToPlay");
    };
    EXPECT_EQ(session(), nullptr);
    EXPECT_EQ(player(), nullptr);
    device.runtime.send<void, std::int64_t>(*manager, "playUISound:", 1002);
    EXPECT_EQ(session(), device.audio.session());
    ASSERT_NE(player(), nullptr);
    EXPECT_EQ(only("-[AVAudioPlayer play] "), "-[AVAudioPlayer play] " + folder + "lock.caf");
    device.journal.clear();
    device.runtime.send<void, std::uint64_t>(*manager, "playsystemSound:", 1004);
    EXPECT_EQ(only("-[AVAudioPlayer play] "),
              "-[AVAudioPlayer play] " + folder + "key_press_click.caf");
    device.runtime.send<void, AudioPlayerRef>(*manager, "setSoundToPlay:", nullptr);
    EXPECT_EQ(player(), nullptr);
    EXPECT_EQ(only("-[AVAudioPlayer dealloc] " + folder + "key"),
              "-[AVAudioPlayer dealloc] " + folder + "key_press_click.caf");
    device.runtime.send<void, platform::AudioSessionRef>(*manager, "setAudiosession:", nullptr);
    EXPECT_EQ(session(), nullptr);
    device.journal.clear();
    device.runtime.send<void, ObjectRef>(*manager, "initClass:", manager);
    EXPECT_EQ(
        only("-[AVAudioSession setCategory:error:] "),
        "-[AVAudioSession setCategory:error:] AVAudioSession \"AVAudioSessionCategoryAmbient\"");
}

TEST_F(LibraryMessages, NewSoundsAreNewEachTime) {
    const ObjectRef first = newSounds();
    ASSERT_NE(std::dynamic_pointer_cast<Sounds>(first), nullptr);
    EXPECT_EQ(first->className(), "Sounds");
    EXPECT_NE(newSounds(), first);
    // Nobody else holds them.
    const std::weak_ptr<platform::Object> gone = newSounds();
    EXPECT_TRUE(gone.expired());
}

TEST_F(LibraryMessages, EachSoundPlaysItsOwnFile) {
    const ObjectRef sounds = newSounds();
    for (const auto& [selector, file] : {std::pair{"PlayButtonClick:", "button_click.caf"},
                                         {"PlaySlide:", "cell_swoosh.caf"},
                                         {"PlaySlideWithClick:", "SlideClick.caf"},
                                         {"PlayError:", "Error.caf"},
                                         {"PlayReboot:", "Reboot.caf"},
                                         {"PlaySuccess:", "success.aif"},
                                         {"PlayOn:", "beepShortOn.aif"},
                                         {"PlayOff:", "beepShortOff.aif"}}) {
        for (const ObjectRef& sender : {ObjectRef(), sounds}) {
            device.journal.clear();
            device.runtime.send<void, ObjectRef>(*sounds, selector, sender);
            EXPECT_EQ(
                device.journal.lines(),
                (Lines{std::string(
                           "+[NSData dataWithContentsOfFile:] /User/Library/VelMoranth/Sounds/") +
                           file,
                       "-[AVAudioPlayer initWithData:error:] nil"}));
        }
    }
}

TEST_F(LibraryMessages, InitClassOfSoundsTakesAnObject) {
    const ObjectRef sounds = newSounds();
    device.journal.clear();
    device.runtime.send<void, ObjectRef>(*sounds, "initClass:", nullptr);
    EXPECT_EQ(device.journal.lines(), Lines{});
    device.runtime.send<void, ObjectRef>(*sounds, "initClass:", sounds);
    EXPECT_EQ(device.journal.lines(), (Lines{"+[AVAudioSession sharedInstance]",
                                             "-[AVAudioSession setCategory:error:] AVAudioSession "
                                             "\"AVAudioSessionCategoryAmbient\""}));
}

TEST_F(LibraryMessages, TheSoundsPlayerIsAProperty) {
    const ObjectRef sounds = newSounds();
    EXPECT_EQ(device.runtime.send<AudioPlayerRef>(*sounds, "soundToPlay"), nullptr);
    const auto player = std::make_shared<tests::TestAudioPlayer>("mine");
    device.runtime.send<void, AudioPlayerRef>(*sounds, "setSoundToPlay:", player);
    EXPECT_EQ(device.runtime.send<AudioPlayerRef>(*sounds, "soundToPlay"), player);
    EXPECT_EQ(device.runtime.valueForKey(*sounds, "soundToPlay"), player);
    device.runtime.send<void, AudioPlayerRef>(*sounds, "setSoundToPlay:", nullptr);
    EXPECT_EQ(device.runtime.send<AudioPlayerRef>(*sounds, "soundToPlay"), nullptr);
}

TEST_F(LibraryMessages, TheMainClassHasItsSingletonAfterItsFirstMessage) {
    EXPECT_EQ(VelMoranth::sharedIconManager(), nullptr);
    device.runtime.sendMessage(device.runtime.getClass("VelMoranth"), "load");
    EXPECT_NE(VelMoranth::sharedIconManager(), nullptr);
}

}  // namespace
}  // namespace velmoranth::core::library_classes_test
