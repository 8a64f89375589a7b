// Sounds of the platform in a simulated process that has the engine: the theme's are asked for.
#include "desktop/files/create_device_root.h"
#include "desktop/plist/property_lists.h"
#include "simulator/device.h"
#include "simulator/process/process.h"
#include "simulator/toolkit/feedback_classes.h"
#include "tests/support/journal.h"
#include "tests/support/places.h"
#include "tests/support/replaced_services.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_audio.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::simulator::process_feedback_test {
namespace {

using Lines = std::vector<std::string>;

const std::string kSounds = "/Library/Themes/T.theme/UISounds/";

class ProcessFeedback : public ::testing::TestWithParam<int> {
  protected:
    void start(ScreenKind screen) {
        desktop::createDeviceRoot(folder / "device").value();
        folder.file("device" + kSounds + "key_press_click.caf", "");
        const platform::Data preferences = desktop::writeXmlPropertyList(platform::Dictionary{
            {"ActiveThemes", platform::PropertyList::Array{"T.theme"}}, {"enable", true}});
        folder.file("device/private/var/mobile/Library/Preferences/com.qor.velmoranthprefs.plist",
                    std::string(preferences.begin(), preferences.end()));
        ScreenRequest request;
        request.device = deviceConfiguration("phone", GetParam()).value();
        request.deviceFiles = folder / "device";
        request.enginePath = tests::kEngineLibrary;
        request.screen = screen;
        process = SimulatedProcess::start(request, [](const std::string&) {}).value();
        tests::replaceServices({.audio = &audio});
    }

    [[nodiscard]] Lines played() const { return journal.linesWith("-[AVAudioPlayer play] "); }

    const tests::TemporaryFolder folder;
    tests::Journal journal;
    const record::InEngine engine;
    tests::TestAudio audio{[this](const std::string& path) {
        return std::filesystem::is_regular_file(folder / "device" + path);
    }};
    std::unique_ptr<SimulatedProcess> process;
};

INSTANTIATE_TEST_SUITE_P(Systems, ProcessFeedback, ::testing::Values(12, 13));

TEST_P(ProcessFeedback, PlaysTheThemesClickOnTheHomeScreen) {
    start(ScreenKind::home);
    process->runtime().send<void>(*makeFeedback(process->runtime(), 1104), "play");
    const Lines click{"-[AVAudioPlayer play] " + kSounds + "key_press_click.caf"};
    EXPECT_EQ(played(), click);
    journal.clear();
    // The theme's sound in place of the platform's.
    EXPECT_FALSE(playFeedbackEvent(process->runtime(), 1004, nullptr));
    EXPECT_EQ(played(), click);
}

TEST_P(ProcessFeedback, OtherProcessesHaveFeedbackAlone) {
    start(ScreenKind::settings);
    process->runtime().send<void>(*makeFeedback(process->runtime(), 1104), "play");
    EXPECT_EQ(played().size(), 1U);
    EXPECT_EQ(process->runtime().getClass("SBUISound"), nullptr);
}

}  // namespace
}  // namespace velmoranth::simulator::process_feedback_test
