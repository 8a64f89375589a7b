// The sound of a simulated process: what it plays comes out of the machine's device, and a process
// that plays nothing has nothing of sound in it.
#include "desktop/audio/recording_output.h"
#include "desktop/files/create_device_root.h"
#include "platform/platform.h"
#include "simulator/device.h"
#include "simulator/process/process.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace velmoranth::simulator::process_sounds_test {
namespace {

const std::string kSound = "/Library/Themes/T.theme/UISounds/lock.wav";
constexpr float kLevel = 0.25F;
constexpr std::size_t kSamples = 20000;

bool isLoaded(std::string_view library) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(library) != std::string::npos) {
            return true;
        }
    }
    return false;
}

class ProcessSounds : public ::testing::Test {
  protected:
    ProcessSounds() {
        desktop::createDeviceRoot(folder / "device").value();
        const platform::Data wav = desktop::writeWav(std::vector<float>(kSamples, kLevel));
        folder.file("device" + kSound, std::string(wav.begin(), wav.end()));
        ScreenRequest request;
        request.device = deviceConfiguration("phone", 13).value();
        request.deviceFiles = folder / "device";
        request.loadEngine = false;
        process = SimulatedProcess::start(request, [this](const std::string& line) {
                      lines.push_back(line);
                  }).value();
    }

    // Of those in the file, how many SDL has written.
    [[nodiscard]] std::size_t samplesHeard() const {
        const std::string bytes = folder.contents("heard");
        std::vector<float> heard(bytes.size() / sizeof(float));
        if (!heard.empty()) {
            std::memcpy(heard.data(), bytes.data(), heard.size() * sizeof(float));
        }
        return static_cast<std::size_t>(std::count(heard.begin(), heard.end(), kLevel));
    }

    const tests::TemporaryFolder folder;
    std::vector<std::string> lines;
    std::unique_ptr<SimulatedProcess> process;
};

TEST_F(ProcessSounds, NothingOfSoundIsLoadedBeforeTheFirst) {
    EXPECT_EQ(platform::platform().audio.audioPlayerWithContentsOfURL("/no.caf"), nullptr);
    EXPECT_TRUE(platform::platform().audio.sharedInstance()->setActive(true));
    for (const char* const library : {"libSDL2", "libavformat", "libavcodec"}) {
        EXPECT_FALSE(isLoaded(library)) << library;
    }
}

TEST_F(ProcessSounds, ComeOutOfTheMachinesDevice) {
    ::setenv("SDL_AUDIODRIVER", "disk", 1);
    ::setenv("SDL_DISKAUDIOFILE", (folder / "heard").c_str(), 1);
    {
        const auto player = platform::platform().audio.audioPlayerWithContentsOfURL(kSound);
        ASSERT_NE(player, nullptr);
        EXPECT_TRUE(isLoaded("libavformat"));
        EXPECT_FALSE(isLoaded("libSDL2"));
        EXPECT_TRUE(player->play());
        EXPECT_TRUE(isLoaded("libSDL2"));
        // SDL writes the file as fast as a device plays; the last of it when the device closes.
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (samplesHeard() < kSamples && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    process.reset();
    EXPECT_EQ(samplesHeard(), kSamples);
    EXPECT_TRUE(lines.empty());
}

TEST_F(ProcessSounds, WithoutADeviceOneLineInTheLog) {
    ::setenv("SDL_AUDIODRIVER", "none such", 1);
    for (int i = 0; i < 3; ++i) {
        const auto player = platform::platform().audio.audioPlayerWithContentsOfURL(kSound);
        ASSERT_NE(player, nullptr);
        EXPECT_TRUE(player->play());
    }
    EXPECT_EQ(lines, std::vector<std::string>{"no sound device: sounds stay silent (Audio target "
                                              "'none such' not available)"});
}

}  // namespace
}  // namespace velmoranth::simulator::process_sounds_test
