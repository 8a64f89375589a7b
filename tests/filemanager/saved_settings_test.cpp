// Saving the preferences under a name.
#include "panel_fixture.h"

namespace velmoranth::filemanager::saved_settings_test {
namespace {

const std::string kStaging = kSavedFolder + "/" + kPreferencesFile;

std::string savedFile(const std::string& name) {
    return kSavedFolder + "/ " + name + " " + kPreferencesFile;
}

const Lines kOpenUp{tests::kSetMode + kSavedFolder + " 0777", "chmod " + kSavedFolder + " 0777"};
const Lines kCopy{tests::copyLine(kLive, kStaging)};

Lines moveLines(const std::string& name) {
    return {tests::moveLine(kStaging, savedFile(name))};
}

Lines logLines(const std::string& error) {
    return {"log Velmoranth Failed to move '" + kLive + "' to '" + kStaging + "': " + error};
}

const std::string kExists =
    "“com.qor.velmoranthprefs.plist” couldn’t be moved to “UserSettings” "
    "because an item with the same name already exists.";
const std::string kCopyExists =
    "“com.qor.velmoranthprefs.plist” couldn’t be copied to “UserSettings” because an item with the "
    "same name already exists.";
const std::string kNoSuchFile =
    "The file “com.qor.velmoranthprefs.plist” couldn’t be opened because there is no such file.";

class SavedSettings : public PanelFiles {
  protected:
    SavedSettings() {
        device.file(kLive, "live");
        device.folder(kSavedFolder);
    }

    // Runs it with nothing before it in the journal.
    bool save(const platform::NullableString& name) {
        device.journal.clear();
        return VelmoranthFileManager::saveCurrentSettinginFolderWithName(name);
    }

    void expectSaved(const std::string& name) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(save(name));
        EXPECT_EQ(device.journal.lines(), joined({kOpenUp, kCopy, moveLines(name)}));
        EXPECT_EQ(device.contents(savedFile(name)), "live");
        EXPECT_FALSE(device.exists(kStaging));
    }
};

TEST_F(SavedSettings, StandInTheirFolderWithABlankOnEachSideOfTheName) {
    setMode(kSavedFolder, 0700);
    setMode(kLive, 0640);
    EXPECT_TRUE(save("Night"));
    EXPECT_EQ(device.journal.lines(), joined({kOpenUp, kCopy, moveLines("Night")}));
    EXPECT_EQ(names(kSavedFolder), (Lines{" Night com.qor.velmoranthprefs.plist"}));
    EXPECT_EQ(device.contents(kSavedFolder + "/ Night com.qor.velmoranthprefs.plist"), "live");
    EXPECT_EQ(device.contents(kLive), "live");
    EXPECT_EQ(device.mode(kSavedFolder), 0777U);
    // The file's own mode is not changed.
    EXPECT_EQ(device.mode(savedFile("Night")), 0640U);
    EXPECT_EQ(device.mode(kLive), 0640U);
}

TEST_F(SavedSettings, ManyNamesStandSideBySide) {
    expectSaved("Night");
    expectSaved("Day");
    expectSaved("night");
    EXPECT_EQ(names(kSavedFolder).size(), 3U);
}

TEST_F(SavedSettings, AnyNameThatIsOneOfAFile) {
    for (const char* name : {"Größe", "夜🌙", " two  blanks ", "", ".", "..", "a.plist", "100%@ %s",
                             "line\nbreak", "\xff\xfe"}) {
        expectSaved(name);
    }
}

TEST_F(SavedSettings, NilIsPrinted) {
    EXPECT_TRUE(save(std::nullopt));
    EXPECT_EQ(names(kSavedFolder), (Lines{" (null) com.qor.velmoranthprefs.plist"}));
}

TEST_F(SavedSettings, ANameOf255BytesIsTheLongest) {
    const std::size_t longest = 255 - std::string("  com.qor.velmoranthprefs.plist").size();
    expectSaved(std::string(longest, 'n'));
    const std::string tooLong(longest + 1, 'n');
    EXPECT_FALSE(save(tooLong));
    const std::string error = "The operation couldn’t be completed. (Cocoa error 514.)";
    EXPECT_EQ(device.journal.lines(),
              joined({kOpenUp, kCopy, moveLines(tooLong), alertLines(error), logLines(error)}));
    EXPECT_EQ(device.contents(kStaging), "live");
    // A byte of a letter counts, not the letter.
    device.remove(kStaging);
    std::string letters;
    for (std::size_t i = 0; i < longest / 2; ++i) {
        letters += "é";
    }
    expectSaved(letters);
    EXPECT_FALSE(save(letters + "é"));
}

TEST_F(SavedSettings, ASlashInTheNameIsAFolderThatMustBeThere) {
    EXPECT_FALSE(save("a/b"));
    const std::string error =
        "“com.qor.velmoranthprefs.plist” couldn’t be moved to “ a” because either the former "
        "doesn’t exist, or the folder containing the latter doesn’t exist.";
    EXPECT_EQ(device.journal.lines(),
              joined({kOpenUp, kCopy, moveLines("a/b"), alertLines(error), logLines(error)}));
    device.remove(kStaging);
    device.folder(kSavedFolder + "/ a");
    expectSaved("a/b");
}

TEST_F(SavedSettings, ATakenNameFailsAtTheMoveAndThenAtTheCopy) {
    expectSaved("Night");
    device.file(kLive, "changed");
    EXPECT_FALSE(save("Night"));
    EXPECT_EQ(device.journal.lines(),
              joined({kOpenUp, kCopy, moveLines("Night"), alertLines(kExists), logLines(kExists)}));
    EXPECT_EQ(device.contents(savedFile("Night")), "live");
    EXPECT_EQ(device.contents(kStaging), "changed");

    device.file(kLive, "changed again");
    EXPECT_FALSE(save("Night"));
    EXPECT_EQ(device.journal.lines(), joined({kOpenUp, kCopy, alertLines(kCopyExists)}));
    EXPECT_EQ(device.contents(kStaging), "changed");

    // The staging copy is in the way of every name.
    EXPECT_FALSE(save("Other"));
    EXPECT_EQ(device.journal.lines(), joined({kOpenUp, kCopy, alertLines(kCopyExists)}));
    EXPECT_EQ(names(kSavedFolder),
              (Lines{" Night com.qor.velmoranthprefs.plist", kPreferencesFile}));
    device.remove(kStaging);
    EXPECT_TRUE(save("Other"));
    EXPECT_EQ(device.contents(savedFile("Other")), "changed again");
}

TEST_F(SavedSettings, ALinkAtTheNameIsInTheWayToo) {
    link(savedFile("Night"), "/nowhere");
    EXPECT_FALSE(save("Night"));
    EXPECT_EQ(device.journal.log(), (Lines{"Velmoranth Failed to move '" + kLive + "' to '" +
                                           kStaging + "': " + kExists}));
    EXPECT_FALSE(device.exists("/nowhere"));
}

TEST_F(SavedSettings, MissingLivePreferences) {
    device.remove(kLive);
    EXPECT_FALSE(save("Night"));
    EXPECT_EQ(device.journal.lines(), joined({kOpenUp, kCopy, alertLines(kNoSuchFile)}));
    EXPECT_EQ(names(kSavedFolder), Lines{});
}

TEST_F(SavedSettings, AMissingFolder) {
    device.remove(kSavedFolder);
    EXPECT_FALSE(save("Night"));
    EXPECT_EQ(device.journal.lines(),
              joined({kOpenUp, kCopy,
                      alertLines("The file “com.qor.velmoranthprefs.plist” doesn’t exist.")}));
    EXPECT_FALSE(device.exists(kSavedFolder));
}

TEST_F(SavedSettings, AFileInTheFoldersPlace) {
    device.remove(kSavedFolder);
    device.file(kSavedFolder, "file");
    EXPECT_FALSE(save("Night"));
    EXPECT_EQ(device.journal.lines(),
              joined({kOpenUp, kCopy,
                      alertLines("“com.qor.velmoranthprefs.plist” couldn’t be copied to "
                                 "“UserSettings”.")}));
    EXPECT_EQ(device.contents(kSavedFolder), "file");
}

TEST_F(SavedSettings, AFolderThatCannotBeWritten) {
    forbidChanges(EACCES);
    EXPECT_FALSE(save("Night"));
    EXPECT_EQ(device.journal.lines(),
              joined({kOpenUp, kCopy,
                      alertLines("“com.qor.velmoranthprefs.plist” couldn’t be copied because you "
                                 "don’t have permission to access “UserSettings”.")}));
    EXPECT_EQ(names(kSavedFolder), Lines{});
}

TEST_F(SavedSettings, AReadOnlyVolume) {
    forbidChanges(EROFS);
    EXPECT_FALSE(save("Night"));
    EXPECT_EQ(device.journal.lines(),
              joined({kOpenUp, kCopy,
                      alertLines("You can’t save the file “com.qor.velmoranthprefs.plist” because "
                                 "the volume is read only.")}));
}

TEST_F(SavedSettings, AFullDisk) {
    fillDisk();
    EXPECT_FALSE(save("Night"));
    const std::string error =
        "You can’t save the file “com.qor.velmoranthprefs.plist” because the volume “/” is out of "
        "space.";
    EXPECT_EQ(device.journal.lines(), joined({kOpenUp, kCopy, alertLines(error)}));
    EXPECT_EQ(device.contents(kLive), "live");
    EXPECT_FALSE(device.exists(savedFile("Night")));
}

TEST_F(SavedSettings, AMoveThatIsForbidden) {
    desktop::FileCalls calls;
    calls.renameNoReplace = [](int, const char*, int, const char*) {
        errno = EPERM;
        return -1;
    };
    use(std::move(calls));
    EXPECT_FALSE(save("Night"));
    const std::string error =
        "“com.qor.velmoranthprefs.plist” couldn’t be moved because you don’t have permission to "
        "access “UserSettings”.";
    EXPECT_EQ(device.journal.lines(),
              joined({kOpenUp, kCopy, moveLines("Night"), alertLines(error), logLines(error)}));
    EXPECT_EQ(names(kSavedFolder), (Lines{kPreferencesFile}));
}

TEST_F(SavedSettings, AModeThatCannotBeSetIsNoFailure) {
    device.libSystem.hostFolder = "/nowhere";  // chmod fails
    expectSaved("Night");
    use(std::make_unique<FailingFiles>("no"));
    EXPECT_FALSE(save("Night"));
    // The copy's failure is the one that is told.
    EXPECT_EQ(device.journal.lines(), joined({kOpenUp, kCopy, alertLines("no")}));
}

TEST_F(SavedSettings, AFolderOfPreferencesIsSavedWhole) {
    device.remove(kLive);
    device.file(kLive + "/inner", "x");
    EXPECT_TRUE(save("Night"));
    EXPECT_EQ(device.contents(savedFile("Night") + "/inner"), "x");
}

}  // namespace
}  // namespace velmoranth::filemanager::saved_settings_test
