// A device with preferences, themes and saved copies, and running `velmoranth settings` on it.
#pragma once

#include "tests/cli/command.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using tests::TemporaryFolder;

inline const std::string kFileName = "com.qor.velmoranthprefs.plist";
// On the device, below the test's folder.
inline const std::string kLiveFile = "device/var/mobile/Library/Preferences/" + kFileName;
inline const std::string kSaved = "device/var/mobile/Library/VelMoranth/UserSettings";
inline const std::string kFactoryFile =
    "device/var/mobile/Library/VelMoranth/DefaultSettings/" + kFileName;

inline std::string plist(const std::string& entries) {
    return "<plist><dict>" + entries + "</dict></plist>";
}

class SettingsTest : public testing::Test {
  protected:
    SettingsTest() {
        for (const char* const name :
             {"Library/Themes/A.theme", "Library/Themes/B.theme", "var/mobile/Library/Preferences",
              "var/mobile/Library/VelMoranth/DefaultSettings",
              "var/mobile/Library/VelMoranth/UserSettings"}) {
            folder.folder("device/" + std::string(name));
        }
        folder.link("device/User", "var/mobile");
    }

    [[nodiscard]] CommandResult settings(std::vector<std::string> words,
                                         CommandSetting setting = {}) const {
        words.insert(words.begin(), "settings");
        words.insert(words.end(), {"--root", "device"});
        setting.folder = folder.path();
        return runCommand(words, setting);
    }

    // A file that could not be written was there for a moment beside the one that stays.
    enum class Times { kept, mayDiffer };

    // Refused with that one line and that exit code, and the whole device as it was.
    void expectRefused(const std::vector<std::string>& words, int code, const std::string& message,
                       const CommandSetting& setting = {}, Times times = Times::kept) const {
        const Tree before = tree(times);
        const CommandResult result = settings(words, setting);
        EXPECT_EQ(result.code, code) << message;
        EXPECT_EQ(result.errors, "velmoranth: error: " + message + "\n");
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(tree(times) == before) << message;
    }

    // Every item of the device with kind, mode, time of change and contents.
    using Tree = std::map<std::string, std::string>;

    [[nodiscard]] Tree tree(Times times = Times::kept) const {
        namespace fs = std::filesystem;
        Tree items;
        for (const auto& entry : fs::recursive_directory_iterator(folder / "device")) {
            const fs::path path = entry.path();
            const std::string name = path.lexically_relative(folder.path());
            std::string item = std::to_string(folder.mode(name)) + " ";
            if (entry.is_symlink()) {
                item += "-> " + fs::read_symlink(path).string();
            } else if (times == Times::kept) {
                item += std::to_string(entry.last_write_time().time_since_epoch().count());
            }
            if (entry.is_regular_file() && !entry.is_symlink()) {
                item += " " + folder.contents(name);
            }
            items[name] = item;
        }
        const auto time = fs::last_write_time(folder / "device").time_since_epoch().count();
        items["."] = std::to_string(time);
        return items;
    }

    TemporaryFolder folder;
};

}  // namespace velmoranth::cli
