// velmoranth settings save, rename, delete and restore
#include "tests/cli/ordinary_user.h"
#include "tests/cli/settings_fixture.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli::settings_copies_test {
namespace {

namespace fs = std::filesystem;

const std::string kThemeChangedLine = "com.qor.velmoranththemechanged.prefs: 0 processes told\n";
const std::string kSavedPlace = "device/User/Library/VelMoranth/UserSettings/";

std::string savedFile(const std::string& name) {
    return kSaved + "/ " + name + " " + kFileName;
}

class SettingsCopies : public SettingsTest {
  protected:
    SettingsCopies() { folder.file(kLiveFile, live); }

    std::string live = plist("<key>enable</key><true/>");
};

TEST_F(SettingsCopies, SaveCopiesThePreferencesUnderTheName) {
    const CommandResult result = settings({"save", "Night, late"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "the preferences are saved as \"Night, late\"\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(folder.contents(savedFile("Night, late")), live);
    EXPECT_EQ(folder.names(kSaved), " Night, late " + kFileName);
    EXPECT_EQ(folder.mode(kSaved), 0777U) << "as the panel leaves it";
}

TEST_F(SettingsCopies, NamesThatNoFileCanHaveAreWrongUsage) {
    for (const char* const command : {"save", "delete", "restore"}) {
        expectRefused({command, ""}, 2, "a saved copy needs a name, and this one is empty");
        expectRefused({command, "."}, 2,
                      "a saved copy's name is plain text without slashes, which \".\" is not");
        expectRefused({command, ".."}, 2,
                      "a saved copy's name is plain text without slashes, which \"..\" is not");
        expectRefused(
            {command, "a/../../b"}, 2,
            "a saved copy's name is plain text without slashes, which \"a/../../b\" is not");
        expectRefused({command, "a\nb"}, 2,
                      "a saved copy's name is plain text without slashes, which \"a?b\" is not");
        expectRefused({command, "\xff"}, 2,
                      "a saved copy's name is plain text without slashes, which \"?\" is not");
    }
    expectRefused({"rename", "Night", "/x"}, 2,
                  "a saved copy's name is plain text without slashes, which \"/x\" is not");
    expectRefused({"rename", "", "x"}, 2, "a saved copy needs a name, and this one is empty");
}

TEST_F(SettingsCopies, ANameThatIsTakenIsRefusedBeforeAnythingIsStaged) {
    folder.file(savedFile("Night"), "old");
    folder.file(savedFile("Day"), "other");
    const std::string start =
        kSavedPlace + " Night " + kFileName + ": the name \"Night\" is taken; take another, or ";
    const std::string taken = start + "velmoranth settings delete Night first";
    expectRefused({"save", "Night"}, 3, start + "--force replaces it");
    expectRefused({"rename", "Day", "Night"}, 3, taken);
    expectRefused({"rename", "Night", "Night"}, 3, taken);
}

TEST_F(SettingsCopies, AStagingCopyThatWasLeftIsNamedWithWhatToDo) {
    folder.file(kSaved + "/" + kFileName, "left");
    expectRefused({"save", "Night"}, 3,
                  kSavedPlace + kFileName +
                      ": a save that failed earlier has left this, and it is in the way; remove it "
                      "with rm " +
                      kSavedPlace + kFileName);
}

TEST_F(SettingsCopies, ANameThatIsTooLongHasThePlatformsErrorAndLeavesNothing) {
    const std::string name(250, 'n');
    const CommandResult result = settings({"save", name});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(
        result.errors.ends_with(": not saved: The operation couldn’t be completed. (Cocoa error "
                                "514.) take a shorter name\n"))
        << result.errors;
    EXPECT_EQ(folder.names(kSaved), "");
    EXPECT_EQ(settings({"save", "Night"}).code, 0);
}

TEST_F(SettingsCopies, FailuresArePanelsAlertsWithWhatToDo) {
    fs::remove(folder / kLiveFile);
    CommandResult result = settings({"save", "Night"});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors, "velmoranth: error: " + kSavedPlace + " Night " + kFileName +
                                 ": not saved: The file “" + kFileName +
                                 "” couldn’t be opened because there is no such file. there are no "
                                 "preferences yet; velmoranth settings restore or set makes "
                                 "them\n");
    folder.file(kLiveFile, live);
    fs::remove(folder / kSaved);
    result = settings({"save", "Night"});
    EXPECT_EQ(result.code, 3);
    EXPECT_TRUE(
        result.errors.ends_with("make the folder device/User/Library/VelMoranth/UserSettings\n"))
        << result.errors;
}

TEST_F(SettingsCopies, FolderWithoutTheRightIsThePanelsAlertWithWhatToDo) {
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    // The panel opens a folder of its user's own to itself.
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can make a folder of another user";
    }
    folder.file(kLiveFile, live);
    folder.file(savedFile("Night"), "kept");
    fs::permissions(folder / kSaved, fs::perms(0555));
    const std::string advice = "see who may write to device/User/Library/VelMoranth/UserSettings\n";
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"save", "Day"}, {"delete", "Night"}, {"rename", "Night", "Day"}}) {
        const Tree before = tree();
        const CommandResult result = settings(words, user.with());
        EXPECT_EQ(result.code, 3) << words[0];
        EXPECT_TRUE(result.errors.ends_with(advice)) << result.errors;
        EXPECT_NE(result.errors.find(" permission "), std::string::npos) << result.errors;
        EXPECT_EQ(tree(), before);
    }
    fs::permissions(folder / kSaved, fs::perms(0755));
}

TEST_F(SettingsCopies, RenameAndDelete) {
    folder.file(savedFile("Night"), "saved");
    CommandResult result = settings({"rename", "Night", "Late night"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "\"Night\" is called \"Late night\" now\n");
    EXPECT_EQ(folder.names(kSaved), " Late night " + kFileName);
    EXPECT_EQ(folder.contents(savedFile("Late night")), "saved");
    result = settings({"delete", "Late night"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "\"Late night\" is deleted\n");
    EXPECT_EQ(folder.names(kSaved), "");
}

TEST_F(SettingsCopies, ACopyThatIsNotThereIsNamedWithTheNearest) {
    folder.file(savedFile("Night"), live);
    folder.folder(savedFile("Folder"));
    const std::string place = kSavedPlace + " Nihgt " + kFileName;
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"delete", "Nihgt"}, {"rename", "Nihgt", "Day"}, {"restore", "Nihgt"}}) {
        expectRefused(words, 3, place + ": there is no saved copy \"Nihgt\"; did you mean Night?");
    }
    expectRefused({"delete", "Something else"}, 3,
                  kSavedPlace + " Something else " + kFileName +
                      ": there is no saved copy \"Something else\"; velmoranth settings list shows "
                      "the saved copies");
    expectRefused({"delete", "Folder"}, 3,
                  kSavedPlace + " Folder " + kFileName + ": this is no file, and so no saved copy");
}

TEST_F(SettingsCopies, RestorePutsASavedCopyInForceAndTellsTheProcesses) {
    const std::string saved = plist("<key>enable</key><false/><key>xAxisVal</key><real>2</real>");
    folder.file(savedFile("Night"), saved);
    fs::permissions(folder / kLiveFile, fs::perms(0600));
    const CommandResult result = settings({"restore", "Night"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output,
              "what was in force is saved as \"Before restore\"\n"
              "the preferences in force are those of \"Night\" now\n" +
                  kThemeChangedLine);
    EXPECT_EQ(result.errors,
              "velmoranth: enable, xAxisVal: a screen that is running shows this after a respring "
              "(velmoranth device respring --root device)\n");
    EXPECT_EQ(folder.contents(savedFile("Before restore")), live);
    EXPECT_EQ(folder.contents(kLiveFile), saved);
    EXPECT_EQ(folder.mode(kLiveFile), 0600U);
    EXPECT_EQ(folder.contents(savedFile("Night")), saved);
}

TEST_F(SettingsCopies, RestoreWithoutANamePutsTheFactoryPreferencesInForce) {
    const std::string factory = plist("<key>removeDock</key><true/>");
    folder.file(kFactoryFile, factory);
    const std::string line = "the preferences in force are the factory's now\n";
    EXPECT_EQ(settings({"restore"}).output,
              "what was in force is saved as \"Before restore\"\n" + line + kThemeChangedLine);
    EXPECT_EQ(folder.contents(kLiveFile), factory);

    fs::remove(folder / kLiveFile);
    EXPECT_EQ(settings({"restore"}).output, line + kThemeChangedLine)
        << "there was nothing to keep";
    EXPECT_EQ(folder.contents(kLiveFile), factory);
    EXPECT_EQ(folder.mode("device/var/mobile/Library/Preferences"), 0777U)
        << "as a process leaves it that starts without preferences";
}

TEST_F(SettingsCopies, RestoreRefusesWhatIsNoPreferences) {
    const std::string factoryPlace =
        "device/User/Library/VelMoranth/DefaultSettings/" + kFileName + ": ";
    expectRefused({"restore"}, 3,
                  factoryPlace + "there is no such file; the preferences stay as they are");
    folder.file(kFactoryFile, "<plist><array/></plist>");
    const std::string noDictionary =
        "preferences are a dictionary, and this property list is none; the preferences stay as "
        "they are";
    expectRefused({"restore"}, 3, factoryPlace + noDictionary);
    fs::remove(folder / kLiveFile);
    expectRefused({"restore"}, 3, factoryPlace + noDictionary);
    folder.file(savedFile("Night"), "<plist><string/></plist>");
    expectRefused({"restore", "Night"}, 3,
                  kSavedPlace + " Night " + kFileName + ": " + noDictionary);
    folder.file(savedFile("Big"), std::string(20'000'000, ' '));
    expectRefused({"restore", "Big"}, 3,
                  kSavedPlace + " Big " + kFileName +
                      ": the file is larger than 16777216 bytes; the preferences stay as they are");
    folder.file(savedFile("Empty"), "");
    EXPECT_EQ(settings({"restore", "Empty"}).code, 3);
    EXPECT_EQ(folder.contents(kLiveFile), "<none>");
}

TEST_F(SettingsCopies, RestoreRepairsPreferencesThatCannotBeRead) {
    folder.file(savedFile("Night"), live);
    folder.file(kLiveFile, "broken");
    EXPECT_EQ(settings({"set", "enable=no"}).code, 3);
    EXPECT_EQ(settings({"restore", "Night"}).code, 0);
    EXPECT_EQ(folder.contents(kLiveFile), live);
    EXPECT_EQ(folder.contents(savedFile("Before restore")), "broken");
    folder.file(kLiveFile, std::string(20'000'000, ' '));
    const CommandResult result = settings({"restore", "Night"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors.substr(0, result.errors.find('\n') + 1),
              "velmoranth: warning: device/User/Library/Preferences/" + kFileName +
                  ": what was in force cannot be kept: the file is larger than 16777216 bytes\n");
    EXPECT_EQ(folder.contents(kLiveFile), live);
}

TEST_F(SettingsCopies, RestoreKeepsWhatWouldBeLostAndNothingElse) {
    const std::string night = plist("<key>removeDock</key><true/>");
    const std::string factory = plist("<key>enable</key><true/><key>xAxisVal</key><real>1</real>");
    folder.file(savedFile("Night"), night);
    folder.file(kFactoryFile, factory);
    const auto restored = [&](const std::vector<std::string>& words) {
        std::vector<std::string> all{"restore"};
        all.insert(all.end(), words.begin(), words.end());
        const CommandResult result = settings(all);
        EXPECT_EQ(result.code, 0) << result.errors;
        return result.output.substr(0, result.output.find('\n'));
    };
    EXPECT_EQ(restored({"Night"}), "what was in force is saved as \"Before restore\"");
    EXPECT_EQ(restored({}), "what was in force is saved as \"Night\" already");
    EXPECT_EQ(restored({"Night"}), "the preferences in force are those of \"Night\" now")
        << "the factory's are there anyway";
    folder.file(kLiveFile, plist("<key>removeLabels</key><true/>"));
    EXPECT_EQ(restored({"Night"}), "what was in force is saved as \"Before restore 2\"");
    EXPECT_EQ(folder.contents(savedFile("Before restore")), live);
    EXPECT_EQ(folder.contents(savedFile("Before restore 2")),
              plist("<key>removeLabels</key><true/>"));
    EXPECT_EQ(folder.contents(kLiveFile), night);
    EXPECT_EQ(folder.names(kSaved), " Before restore 2 " + kFileName + "  Before restore " +
                                        kFileName + "  Night " + kFileName);
}

TEST_F(SettingsCopies, RestoreThatCannotKeepWhatIsInForceRefuses) {
    folder.file(kFactoryFile, plist(""));
    fs::remove(folder / kSaved);
    expectRefused({"restore"}, 3,
                  "device/User/Library/VelMoranth/UserSettings: what is in force cannot be saved "
                  "here first: no such file or directory; the preferences stay as they are");
}

TEST_F(SettingsCopies, SaveWithForceReplacesTheCopyOfThatNameAlone) {
    folder.file(savedFile("Night"), "old");
    folder.file(savedFile("being saved"), "a user's");
    CommandResult result = settings({"save", "Night", "--force"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "the preferences are saved as \"Night\", in place of the copy that had this name\n");
    EXPECT_EQ(folder.contents(savedFile("Night")), live);
    EXPECT_EQ(folder.contents(savedFile("being saved")), "a user's");
    EXPECT_EQ(folder.names(kSaved), " Night " + kFileName + "  being saved " + kFileName);

    result = settings({"save", "Day", "--force"});
    EXPECT_EQ(result.output, "the preferences are saved as \"Day\"\n");
    EXPECT_EQ(folder.contents(savedFile("Day")), live);

    folder.folder(savedFile("Folder"));
    expectRefused({"save", "Folder", "--force"}, 3,
                  kSavedPlace + " Folder " + kFileName +
                      ": the name \"Folder\" is taken; take another, or --force replaces it");
}

TEST_F(SettingsCopies, SaveWithForceThatFailsLeavesTheOldCopy) {
    folder.file(savedFile("Night"), "old");
    fs::remove(folder / kLiveFile);
    const Tree before = tree(Times::mayDiffer);
    const CommandResult result = settings({"save", "Night", "--force"});
    EXPECT_EQ(result.code, 3);
    EXPECT_TRUE(result.errors.starts_with("velmoranth: error: " + kSavedPlace + " Night " +
                                          kFileName + ": not saved: "))
        << result.errors;
    const Tree after = tree(Times::mayDiffer);
    EXPECT_EQ(folder.contents(savedFile("Night")), "old");
    EXPECT_EQ(folder.names(kSaved), " Night " + kFileName);
    EXPECT_EQ(before.size(), after.size());
}

TEST_F(SettingsCopies, RestoreThatCannotWriteLosesNothing) {
    folder.file(savedFile("Night"),
                plist("<key>a</key><string>" + std::string(200'000, 'x') + "</string>"));
    expectRefused({"restore", "Night"}, 3,
                  "device/User/Library/Preferences/" + kFileName +
                      ": the preferences cannot be written and are as they were: file too large",
                  {.limits = {{RLIMIT_FSIZE, 100'000}}}, Times::mayDiffer);
    fs::remove(folder / kLiveFile);
    folder.folder(kLiveFile);
    expectRefused({"restore", "Night"}, 3,
                  "device/User/Library/Preferences/" + kFileName +
                      ": the preferences cannot be written: this is no file");
}

}  // namespace
}  // namespace velmoranth::cli::settings_copies_test
