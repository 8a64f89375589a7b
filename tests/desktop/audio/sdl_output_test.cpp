// SDL's own devices that need no hardware: one that throws the sound away and one that writes it to
// a file.
#include "desktop/audio/sdl_output.h"

#include "audio_fixture.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <thread>

namespace velmoranth::desktop::sdl_output_test {
namespace {

void waitUntil(const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

bool isLoaded(std::string_view library) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(library) != std::string::npos) {
            return true;
        }
    }
    return false;
}

TEST(SdlOutput, NothingIsLoadedBeforeTheFirstSound) {
    Mixer mixer;
    std::vector<std::string> lines;
    {
        const SdlOutput output(mixer, [&](const std::string& line) { lines.push_back(line); });
        EXPECT_FALSE(output.isHeard());
        EXPECT_EQ(output.latency(), 0);
    }
    EXPECT_FALSE(isLoaded("libSDL2"));
    EXPECT_TRUE(lines.empty());
}

TEST(SdlOutput, PlaysWhatIsMixed) {
    const tests::TemporaryFolder folder;
    ::setenv("SDL_AUDIODRIVER", "disk", 1);
    ::setenv("SDL_DISKAUDIOFILE", (folder / "heard").c_str(), 1);
    Mixer mixer;
    std::vector<std::string> lines;
    {
        SdlOutput output(mixer, [&](const std::string& line) { lines.push_back(line); });
        const auto decoder = decoderOf(tests::cafFile({.frequency = 700, .seconds = 0.2}));
        auto voice = mixer.start(std::make_unique<ConstantSound>(4410, 0.25F), "voice");
        output.open();
        output.open();
        EXPECT_TRUE(output.isHeard());
        EXPECT_GT(output.latency(), 0);
        EXPECT_LT(output.latency(), 0.1);
        waitUntil([&] { return !voice->isPlaying(); });
        EXPECT_FALSE(voice->isPlaying());
    }
    EXPECT_TRUE(lines.empty());
    const std::string bytes = folder.contents("heard");
    std::vector<float> heard(bytes.size() / sizeof(float));
    std::memcpy(heard.data(), bytes.data(), heard.size() * sizeof(float));
    ASSERT_GE(heard.size(), 8820U);
    EXPECT_EQ(std::count(heard.begin(), heard.end(), 0.25F), 8820);
}

TEST(SdlOutput, LeavesSignalsAlone) {
    ::setenv("SDL_AUDIODRIVER", "dummy", 1);
    Mixer mixer;
    SdlOutput output(mixer, nullptr);
    output.open();
    EXPECT_TRUE(output.isHeard());
    for (const int number : {SIGINT, SIGTERM}) {
        struct sigaction action{};
        ASSERT_EQ(::sigaction(number, nullptr, &action), 0);
        EXPECT_EQ(action.sa_handler, SIG_DFL);
    }
}

TEST(SdlOutput, WithoutADeviceOneLineAndSilence) {
    ::setenv("SDL_AUDIODRIVER", "no such driver", 1);
    Mixer mixer;
    std::vector<std::string> lines;
    SdlOutput output(mixer, [&](const std::string& line) { lines.push_back(line); });
    const auto voice = mixer.start(std::make_unique<ConstantSound>(2205, 0.25F), "voice");
    const auto start = std::chrono::steady_clock::now();
    output.open();
    output.open();
    EXPECT_FALSE(output.isHeard());
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0],
              "no sound device: sounds stay silent (Audio target 'no such driver' not available)");
    waitUntil([&] { return !voice->isPlaying(); });
    EXPECT_FALSE(voice->isPlaying());
    // In its own time: 50 ms.
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

// Whatever this machine has: at most one line, and nothing on the standard streams.
TEST(SdlOutput, SaysNothingElse) {
    const tests::TemporaryFolder home;  // libraries complain of their own where there is none
    ::setenv("HOME", home.path().c_str(), 1);
    ::unsetenv("SDL_AUDIODRIVER");
    Mixer mixer;
    std::vector<std::string> lines;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    {
        SdlOutput output(mixer, [&](const std::string& line) { lines.push_back(line); });
        output.open();
        EXPECT_EQ(lines.size(), output.isHeard() ? 0U : 1U);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace
}  // namespace velmoranth::desktop::sdl_output_test
