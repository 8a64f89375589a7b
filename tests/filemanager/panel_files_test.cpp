// Renaming and deleting saved files.
#include "panel_fixture.h"

namespace velmoranth::filemanager::panel_files_test {
namespace {

const std::string kOld = kSavedFolder + "/ Night " + kPreferencesFile;
const std::string kNew = kSavedFolder + "/ Day " + kPreferencesFile;

Lines renameLines(const std::string& from, const std::string& to) {
    return {tests::kSetMode + from + " 0777", "setuid 0", "setgid 0", "chmod " + from + " 0777",
            tests::moveLine(from, to)};
}

Lines deleteLines(const std::string& path, const std::string& folder) {
    return {
        "log VELMORANTH FILE MANAGER: deleteFileFromDevice: " + path + " fromThemeDir: " + folder,
        "-[NSFileManager removeItemAtPath:error:] " + path};
}

class RenamedFile : public PanelFiles {
  protected:
    RenamedFile() { device.file(kOld, "night"); }

    bool rename(const platform::NullableString& from, const platform::NullableString& to) {
        device.journal.clear();
        return VelmoranthFileManager::renameFileFromTo(from, to);
    }

    // It failed, and said why in an alert, and no more.
    void expectAlert(const std::string& from, const std::string& to, const std::string& message) {
        EXPECT_FALSE(rename(from, to));
        EXPECT_EQ(device.journal.lines(), joined({renameLines(from, to), alertLines(message)}));
    }
};

TEST_F(RenamedFile, IsOpenedUpAsRootAndMoved) {
    setMode(kOld, 0600);
    EXPECT_TRUE(rename(kOld, kNew));
    EXPECT_EQ(device.journal.lines(), renameLines(kOld, kNew));
    EXPECT_FALSE(device.exists(kOld));
    EXPECT_EQ(device.contents(kNew), "night");
    EXPECT_EQ(device.mode(kNew), 0777U);
}

// Either way of setting the mode does it alone.
TEST_F(RenamedFile, IsOpenedUpTwice) {
    setMode(kOld, 0600);
    device.libSystem.hostFolder = "/nowhere";
    EXPECT_TRUE(rename(kOld, kNew));
    EXPECT_EQ(device.mode(kNew), 0777U);
    setMode(kNew, 0600);
    device.libSystem.hostFolder = device.hostFolder();
    use(std::make_unique<FailingFiles>("no"));
    EXPECT_FALSE(rename(kNew, kOld));
    EXPECT_EQ(device.mode(kNew), 0777U);
}

TEST_F(RenamedFile, GoesToAnotherFolder) {
    device.folder("/Library/Other");
    EXPECT_TRUE(rename(kOld, "/Library/Other/x"));
    EXPECT_EQ(device.contents("/Library/Other/x"), "night");
}

TEST_F(RenamedFile, AFolderGoesWhole) {
    device.file(kSavedFolder + "/folder/inner", "x");
    setMode(kSavedFolder + "/folder/inner", 0600);
    EXPECT_TRUE(rename(kSavedFolder + "/folder", kSavedFolder + "/other"));
    EXPECT_EQ(device.contents(kSavedFolder + "/other/inner"), "x");
    EXPECT_EQ(device.mode(kSavedFolder + "/other"), 0777U);
    EXPECT_EQ(device.mode(kSavedFolder + "/other/inner"), 0600U);
}

TEST_F(RenamedFile, ALinkGoesItself) {
    const std::string target = "/User/Library/VelMoranth/target";
    device.file(target, "target");
    setMode(target, 0600);
    link(kSavedFolder + "/link", "../target");
    ASSERT_EQ(device.contents(kSavedFolder + "/link"), "target");
    EXPECT_TRUE(rename(kSavedFolder + "/link", kNew));
    EXPECT_FALSE(isThere(kSavedFolder + "/link"));
    EXPECT_TRUE(std::filesystem::is_symlink(device.hostFolder() + kNew));
    EXPECT_EQ(device.contents(target), "target");
    // What it leads to is opened up.
    EXPECT_EQ(device.mode(target), 0777U);
}

TEST_F(RenamedFile, ATakenNameIsKept) {
    device.file(kNew, "day");
    setMode(kOld, 0600);
    setMode(kNew, 0600);
    expectAlert(kOld, kNew,
                "“ Night com.qor.velmoranthprefs.plist” couldn’t be moved to “UserSettings” "
                "because an item with the same name already exists.");
    EXPECT_EQ(device.contents(kOld), "night");
    EXPECT_EQ(device.contents(kNew), "day");
    // Nothing is taken back, and the other was not touched.
    EXPECT_EQ(device.mode(kOld), 0777U);
    EXPECT_EQ(device.mode(kNew), 0600U);
}

TEST_F(RenamedFile, ItsOwnNameIsTaken) {
    expectAlert(kOld, kOld,
                "“ Night com.qor.velmoranthprefs.plist” couldn’t be moved to “UserSettings” "
                "because an item with the same name already exists.");
    EXPECT_EQ(device.contents(kOld), "night");
}

TEST_F(RenamedFile, AMissingFile) {
    device.remove(kOld);
    expectAlert(kOld, kNew,
                "“ Night com.qor.velmoranthprefs.plist” couldn’t be moved to “UserSettings” "
                "because either the former doesn’t exist, or the folder containing the latter "
                "doesn’t exist.");
    EXPECT_EQ(names(kSavedFolder), Lines{});
}

TEST_F(RenamedFile, AMissingFolder) {
    expectAlert(kOld, kSavedFolder + "/none/x",
                "“ Night com.qor.velmoranthprefs.plist” couldn’t be moved to “none” because either "
                "the former doesn’t exist, or the folder containing the latter doesn’t exist.");
    EXPECT_EQ(device.contents(kOld), "night");
}

TEST_F(RenamedFile, ANameThatIsTooLong) {
    expectAlert(kOld, kSavedFolder + "/" + std::string(256, 'n'),
                "The operation couldn’t be completed. (Cocoa error 514.)");
    EXPECT_TRUE(rename(kOld, kSavedFolder + "/" + std::string(255, 'n')));
}

TEST_F(RenamedFile, NamesOfOtherLetters) {
    const std::string name = kSavedFolder + "/ 夜 🌙 100%@";
    EXPECT_TRUE(rename(kOld, name));
    EXPECT_EQ(device.contents(name), "night");
    device.file(kOld, "night");
    expectAlert(name, kOld,
                "“ 夜 🌙 100%@” couldn’t be moved to “UserSettings” because an item with the same "
                "name already exists.");
}

TEST_F(RenamedFile, AFolderThatCannotBeWritten) {
    forbidChanges(EACCES);
    expectAlert(kOld, kNew,
                "“ Night com.qor.velmoranthprefs.plist” couldn’t be moved because you don’t have "
                "permission to access “UserSettings”.");
    EXPECT_EQ(device.contents(kOld), "night");
}

TEST_F(RenamedFile, AReadOnlyVolume) {
    forbidChanges(EROFS);
    expectAlert(kOld, kNew,
                "You can’t save the file “ Night com.qor.velmoranthprefs.plist” because the volume "
                "is read only.");
}

// Onto another volume the file is copied.
TEST_F(RenamedFile, AFullOtherVolume) {
    desktop::FileCalls calls;
    calls.renameNoReplace = [](int, const char*, int, const char*) {
        errno = EXDEV;
        return -1;
    };
    calls.write = [](int, const void*, std::size_t) -> ssize_t {
        errno = ENOSPC;
        return -1;
    };
    use(std::move(calls));
    expectAlert(kOld, kNew,
                "You can’t save the file “ Night com.qor.velmoranthprefs.plist” because the volume "
                "“/” is out of space.");
    EXPECT_EQ(device.contents(kOld), "night");
    EXPECT_FALSE(device.exists(kNew));
}

TEST_F(RenamedFile, NilIsAPathOfNothing) {
    device.libSystem.hostFolder = "/nowhere";
    EXPECT_FALSE(rename(std::nullopt, kNew));
    EXPECT_FALSE(rename(kOld, std::nullopt));
    EXPECT_EQ(device.contents(kOld), "night");
    EXPECT_EQ(names(kSavedFolder).size(), 1U);
}

class DeletedFile : public PanelFiles {
  protected:
    DeletedFile() { device.file(kOld, "night"); }

    bool remove(const platform::NullableString& path,
                const platform::NullableString& folder = kSavedFolder) {
        device.journal.clear();
        return VelmoranthFileManager::deleteFileFromDeviceFromDir(path, folder);
    }

    void expectAlert(const std::string& path, const std::string& message) {
        EXPECT_FALSE(remove(path));
        EXPECT_EQ(device.journal.lines(),
                  joined({deleteLines(path, kSavedFolder), alertLines(message)}));
    }
};

TEST_F(DeletedFile, IsLoggedAndGone) {
    device.file(kNew, "day");
    EXPECT_TRUE(remove(kOld));
    EXPECT_EQ(device.journal.lines(), deleteLines(kOld, kSavedFolder));
    EXPECT_FALSE(device.exists(kOld));
    EXPECT_EQ(device.contents(kNew), "day");
}

TEST_F(DeletedFile, TheFolderIsLoggedAndNotUsed) {
    for (const char* folder : {"", "/nowhere", "100%@ é"}) {
        device.file(kOld, "night");
        EXPECT_TRUE(remove(kOld, folder));
        EXPECT_EQ(device.journal.lines(), deleteLines(kOld, folder));
    }
    // Neither is it put before the path.
    device.file("/Library/x", "x");
    device.file(kSavedFolder + "/Library/x", "kept");
    EXPECT_TRUE(remove("/Library/x"));
    EXPECT_EQ(device.contents(kSavedFolder + "/Library/x"), "kept");
    EXPECT_FALSE(device.exists("/Library/x"));
}

TEST_F(DeletedFile, AMissingFile) {
    device.remove(kOld);
    expectAlert(kOld, "“ Night com.qor.velmoranthprefs.plist” couldn’t be removed.");
}

TEST_F(DeletedFile, TwiceIsMissingTheSecondTime) {
    EXPECT_TRUE(remove(kOld));
    expectAlert(kOld, "“ Night com.qor.velmoranthprefs.plist” couldn’t be removed.");
}

TEST_F(DeletedFile, AFolderGoesWithItsContents) {
    device.file(kSavedFolder + "/folder/a/b", "x");
    device.file(kSavedFolder + "/folder/c", "x");
    EXPECT_TRUE(remove(kSavedFolder + "/folder"));
    EXPECT_FALSE(device.exists(kSavedFolder + "/folder"));
    EXPECT_TRUE(device.exists(kOld));
}

TEST_F(DeletedFile, ALinkGoesAndItsTargetStays) {
    const std::string target = "/User/Library/VelMoranth/target";
    device.file(target + "/inner", "kept");
    link(kSavedFolder + "/link", "../target");
    ASSERT_EQ(device.contents(kSavedFolder + "/link/inner"), "kept");
    link(kSavedFolder + "/dangling", "/nowhere");
    EXPECT_TRUE(remove(kSavedFolder + "/link"));
    EXPECT_TRUE(remove(kSavedFolder + "/dangling"));
    EXPECT_FALSE(isThere(kSavedFolder + "/link"));
    EXPECT_FALSE(isThere(kSavedFolder + "/dangling"));
    EXPECT_EQ(device.contents(target + "/inner"), "kept");
}

TEST_F(DeletedFile, AFileInAFoldersPlaceOnTheWay) {
    expectAlert(kOld + "/x", "“x” couldn’t be removed.");
    EXPECT_EQ(device.contents(kOld), "night");
}

TEST_F(DeletedFile, ThatIsNotPermitted) {
    use(
        std::make_unique<FailingFiles>("“x” couldn’t be removed because you don’t have permission "
                                       "to access it."));
    expectAlert(kOld, "“x” couldn’t be removed because you don’t have permission to access it.");
}

TEST_F(DeletedFile, NilIsPrintedAndRemovesNothing) {
    EXPECT_FALSE(remove(std::nullopt, std::nullopt));
    EXPECT_EQ(device.journal.log(),
              (Lines{"VELMORANTH FILE MANAGER: deleteFileFromDevice: (null) fromThemeDir: "
                     "(null)"}));
    EXPECT_EQ(device.journal.count(kAlert), 1U);
    EXPECT_TRUE(device.exists(kOld));
    EXPECT_TRUE(device.exists("/Library"));
}

// None of it asks for root or opens the file up.
TEST_F(DeletedFile, ItsModeIsNotChanged) {
    EXPECT_TRUE(remove(kOld));
    EXPECT_EQ(device.journal.count("setuid "), 0U);
    EXPECT_EQ(device.journal.count("chmod "), 0U);
    EXPECT_EQ(device.journal.count(tests::kSetMode), 0U);
}

}  // namespace
}  // namespace velmoranth::filemanager::panel_files_test
