// A device with preferences, themes and saved copies, and running `velmoranth settings` on it.
#pragma once

#include "tests/cli/command.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

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
    using Times = TemporaryFolder::Times;

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

    using Tree = TemporaryFolder::Tree;

    [[nodiscard]] Tree tree(Times times = Times::kept) const {
        return folder.tree("device", times);
    }

    TemporaryFolder folder;
};

}  // namespace velmoranth::cli
