// velmoranth device init: what is on the device, and what is said when that cannot be.
#include "tests/cli/command.h"
#include "tests/cli/ordinary_user.h"
#include "tests/cli/preview_fixture.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace velmoranth::cli::device_init_test {
namespace {

using tests::TemporaryFolder;

namespace fs = std::filesystem;

const std::string kLive = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kFactory =
    "/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist";

std::string contentsOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Every file below the folder with what it holds, every folder as "/", every link as "-> target".
std::map<std::string, std::string> tree(const fs::path& folder) {
    std::map<std::string, std::string> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        found[entry.path().lexically_relative(folder)] =
            entry.is_symlink()     ? "-> " + fs::read_symlink(entry.path()).string()
            : entry.is_directory() ? "/"
                                   : contentsOf(entry.path());
    }
    return found;
}

TEST(DeviceInit, HasExactlyTheDevicesFoldersAndTheLayoutsFiles) {
    const TemporaryFolder folder;
    ASSERT_EQ(runCommand({"device", "init", folder / "new"}).code, 0);
    std::map<std::string, std::string> expected;
    for (const char* const name :
         {"Library", "Library/Themes", "System", "System/Library", "private", "private/var",
          "private/var/mobile", "private/var/mobile/Library",
          "private/var/mobile/Library/Preferences", "private/var/mobile/Library/SpringBoard",
          "private/var/mobile/Library/VelMoranth", "private/var/root", "private/var/run",
          "private/var/run/notifications", "private/var/tmp"}) {
        expected[name] = "/";
    }
    expected["var"] = "-> private/var";
    expected["User"] = "-> var/mobile";
    expected["tmp"] = "-> private/var/tmp";
    int files = 0;
    for (const auto& [name, contents] : tree(tests::kLayoutFolder + std::string("/var"))) {
        expected["private/var/" + name] = contents;
        files += contents == "/" ? 0 : 1;
    }
    EXPECT_EQ(files, 10);
    const auto found = tree(folder / "new");
    for (const auto& [name, contents] : expected) {
        ASSERT_TRUE(found.contains(name)) << name;
        EXPECT_TRUE(found.at(name) == contents) << name;
    }
    for (const auto& [name, contents] : found) {
        EXPECT_TRUE(expected.contains(name)) << name;
        if (!contents.starts_with("-> ")) {
            EXPECT_EQ(folder.mode("new/" + name), contents == "/" ? 0755U : 0644U) << name;
        }
    }
}

TEST(DeviceInit, DeviceThatCannotBeFinishedIsNotBegun) {
    const TemporaryFolder folder;
    CommandSetting setting;
    setting.limits[RLIMIT_FSIZE] = 20'000;  // less than the larger sounds
    const CommandResult result = runCommand({"device", "init", folder / "new"}, setting);
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "velmoranth: error: " + folder.path() +
                  "/new/var/mobile/Library/VelMoranth/Sounds/Error.caf: file too large\n");
    EXPECT_EQ(folder.names("."), "");
}

TEST(DeviceInit, PlaceThatCannotBeWrittenToIsOneLine) {
    const TemporaryFolder folder;
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    folder.folder("new");
    fs::permissions(folder / "new", fs::perms(0555));
    EXPECT_EQ(runCommand({"device", "init", folder / "new"}, user.with()).errors,
              "velmoranth: error: " + folder.path() + "/new/Library: permission denied\n");
    EXPECT_EQ(runCommand({"device", "init", folder / "new/deeper"}, user.with()).errors,
              "velmoranth: error: " + folder.path() + "/new/deeper: permission denied\n");
    EXPECT_EQ(folder.names("new"), "");
}

// The command somewhere else, with as much beside it as the test puts there.
class MovedCommand : public testing::Test {
  protected:
    MovedCommand() {
        place(tests::kCommand, "bin/velmoranth");
        place(std::string(tests::kCommand) + "-device", "bin/velmoranth-device");
    }

    void place(const std::string& program, const std::string& where) const {
        folder.folder(fs::path(where).parent_path());
        std::error_code error;
        fs::create_hard_link(program, folder / where, error);
        if (error) {
            fs::copy_file(program, folder / where);
        }
    }

    // What it says when it makes the device "new", on both outputs.
    [[nodiscard]] std::string said() const {
        const std::string command = "cd '" + folder.path() +
                                    "' && ( bin/velmoranth device init new ; echo $? ) "
                                    "> said 2>&1";
        EXPECT_EQ(std::system(command.c_str()), 0);
        std::string text = folder.contents("said");
        for (std::size_t at = 0; (at = text.find(folder.path())) != std::string::npos;) {
            text.replace(at, folder.path().size(), "HERE");
        }
        return text;
    }

    void copyLayout(const std::string& place) const {
        folder.folder(fs::path(place).parent_path());
        fs::copy(tests::kLayoutFolder, folder / place, fs::copy_options::recursive);
    }

    TemporaryFolder folder;
};

TEST_F(MovedCommand, WithoutALayoutSaysWhereItLooked) {
    EXPECT_EQ(said(),
              "velmoranth: error: the folder of what is installed on a device was not found; tried "
              "HERE/bin/share/velmoranth/layout and HERE/bin/../../share/velmoranth/layout\n3\n");
    EXPECT_FALSE(fs::exists(folder / "new"));
}

TEST_F(MovedCommand, FindsTheLayoutBesideIt) {
    copyLayout("bin/share/velmoranth/layout");
    EXPECT_EQ(said(), "new: a fresh device\n0\n");
}

TEST_F(MovedCommand, FindsItsPartsInAnInstallation) {
    copyLayout("share/velmoranth/layout");
    folder.folder("libexec/velmoranth");
    fs::rename(folder / "bin/velmoranth-device", folder / "libexec/velmoranth/velmoranth-device");
    EXPECT_EQ(said(), "new: a fresh device\n0\n");
}

TEST_F(MovedCommand, WithoutWhatDrawsSaysWhereItLooked) {
    copyLayout("bin/share/velmoranth/layout");
    fs::remove(folder / "bin/velmoranth-device");
    EXPECT_EQ(said(),
              "velmoranth: error: the program that draws was not found; tried "
              "HERE/bin/velmoranth-device and HERE/bin/../libexec/velmoranth/velmoranth-device; "
              "install velmoranth again\n3\n");
    folder.file("bin/velmoranth-device", "");
    EXPECT_EQ(said(),
              "velmoranth: error: HERE/bin/velmoranth-device: the program that draws cannot be "
              "started: Permission denied\n3\n");
    EXPECT_FALSE(fs::exists(folder / "new"));
}

TEST_F(MovedCommand, WithoutOneOfTheFilesNamesIt) {
    copyLayout("bin/share/velmoranth/layout");
    const std::string sound =
        "bin/share/velmoranth/layout/var/mobile/Library/VelMoranth/Sounds/Reboot.caf";
    fs::remove(folder / sound);
    EXPECT_EQ(said(), "velmoranth: error: HERE/" + sound + ": no such file or directory\n3\n");
    EXPECT_FALSE(fs::exists(folder / "new"));
}

class FreshDevice : public PreviewTest {
  protected:
    FreshDevice() { EXPECT_EQ(runCommand({"device", "init", folder / "device"}).code, 0); }

    [[nodiscard]] std::string onDevice(const std::string& path) const {
        return folder.contents("device" + path);
    }
};

TEST_F(FreshDevice, FirstStartPutsTheFactoryPreferencesInPlace) {
    EXPECT_FALSE(fs::exists(folder / "device" + kLive));
    const std::string start = "velmoranth: warning: ../device/User/Library/";
    const std::string end = ": \"ActiveThemes\" is empty, so no theme is active\n";
    EXPECT_EQ(preview({"--root", "../device"}).errors,
              start + "VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist" + end);
    EXPECT_EQ(onDevice(kLive), onDevice(kFactory));
    EXPECT_NE(onDevice(kLive).find("<key>enable</key>\n\t<true/>"), std::string::npos);

    // Later starts leave them alone.
    folder.file("device" + kLive, "<plist><dict><key>enable</key><false/></dict></plist>");
    EXPECT_EQ(preview({"--root", "../device"}).errors,
              start +
                  "Preferences/com.qor.velmoranthprefs.plist: \"enable\" is not on, so theming "
                  "is off\n");
    EXPECT_EQ(onDevice(kLive), "<plist><dict><key>enable</key><false/></dict></plist>");
}

TEST_F(FreshDevice, WritesTheCalendarAsItsSettingsSay) {
    // The weekday's colour, which nothing else on the screen has then.
    std::string calendar = onDevice("/User/Library/VelMoranth/UserSettings/Cal.plist");
    const std::size_t color = calendar.find("FF3B30");
    ASSERT_NE(color, std::string::npos);
    folder.file("device/User/Library/VelMoranth/UserSettings/Cal.plist",
                calendar.replace(color, 6, "FF00FE"));
    EXPECT_EQ(preview({"--root", "../device"}).code, 0);
    EXPECT_GT(picture().count(kMagenta), 10);
}

}  // namespace
}  // namespace velmoranth::cli::device_init_test
