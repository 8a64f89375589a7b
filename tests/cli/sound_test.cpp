// velmoranth sound
#include "tests/cli/settings_fixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <signal.h>    // NOLINT(modernize-deprecated-headers): SIGINT
#include <sys/stat.h>  // mkfifo

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

namespace velmoranth::cli::sound_test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr int kRate = 44100;
constexpr double kLevel = 0.5;

void append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    }
}

// A tone of one channel in 16 bits, as a WAV file; the system goes by contents, not by endings.
std::string tone(double seconds, double frequency = 441) {
    const auto frames = static_cast<std::uint32_t>(std::lround(seconds * kRate));
    std::string bytes = "RIFF";
    append(bytes, 36 + frames * 2, 4);
    bytes += "WAVEfmt ";
    append(bytes, 16, 4);
    append(bytes, 1, 2);
    append(bytes, 1, 2);
    append(bytes, kRate, 4);
    append(bytes, kRate * 2, 4);
    append(bytes, 2, 2);
    append(bytes, 16, 2);
    bytes += "data";
    append(bytes, frames * 2, 4);
    for (std::uint32_t i = 0; i < frames; ++i) {
        const double value =
            kLevel * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / kRate);
        append(bytes, static_cast<std::uint32_t>(std::lround(value * 32767)) & 0xFFFFU, 2);
    }
    return bytes;
}

// The samples of a 16-bit stereo WAV file with a plain head, left and right by turns; none for
// another file.
std::vector<std::int16_t> stereoSamples(const std::string& wav) {
    constexpr std::size_t kHead = 44;
    if (wav.size() < kHead || wav.substr(0, 4) != "RIFF" || wav.substr(8, 8) != "WAVEfmt " ||
        wav[22] != 2 || wav[34] != 16) {
        return {};
    }
    std::vector<std::int16_t> samples((wav.size() - kHead) / 2);
    std::memcpy(samples.data(), wav.data() + kHead, samples.size() * 2);
    return samples;
}

int peakOf(const std::vector<std::int16_t>& samples) {
    int peak = 0;
    for (const std::int16_t sample : samples) {
        peak = std::max(peak, std::abs(int{sample}));
    }
    return peak;
}

const std::string kSystemToo =
    "the system's own sound plays with it; it is the phone's, and is not played here\n";
const std::string kSystemAlone =
    "the system's own sound plays alone; it is the phone's, and is not played here\n";
const std::string kSystemKept = "the system's own sound is kept from playing\n";

class Sound : public SettingsTest {
  protected:
    Sound() {
        folder.folder("tmp");
        fs::permissions(folder / "tmp", fs::perms(0777));
    }

    [[nodiscard]] CommandSetting setting() const {
        return {.folder = folder.path(),
                .variables = {{"TMPDIR", folder / "tmp"}, {"SDL_AUDIODRIVER", "dummy"}}};
    }

    [[nodiscard]] CommandResult sound(std::vector<std::string> words) const {
        words.insert(words.begin(), "sound");
        CommandResult result = runCommand(words, setting());
        EXPECT_EQ(folder.names("tmp"), "");
        return result;
    }

    void themeSound(const std::string& theme, const std::string& file,
                    const std::string& contents) const {
        folder.file(theme + "/UISounds/" + file, contents);
    }

    // The device's own themes and preferences.
    void activate(const std::string& entries) const { folder.file(kLiveFile, plist(entries)); }

    [[nodiscard]] std::vector<std::int16_t> written(const std::string& file = "out.wav") const {
        return stereoSamples(folder.contents(file));
    }
};

TEST_F(Sound, WritesTheThemesSoundAndSaysWhichItIs) {
    themeSound("Kiln.theme", "key_press_click.caf", tone(0.1));
    const CommandResult result = sound({"key-click", "Kiln.theme", "-o", "out.wav"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "key_press_click.caf of Kiln.theme: 0.10 s, linear PCM, 1 channel, 44100 Hz\n"
              "  /Library/Themes/Kiln.theme/UISounds: there\n" +
                  kSystemToo);
    const auto samples = written();
    ASSERT_GE(samples.size(), std::size_t{2} * 4410);
    EXPECT_LT(samples.size(), std::size_t{2} * 4410 + 4096);
    EXPECT_NEAR(peakOf(samples), kLevel * 32767, 40);
    const std::string source = folder.contents("Kiln.theme/UISounds/key_press_click.caf");
    for (std::size_t i = 0; i < 4410; ++i) {
        std::int16_t expected = 0;
        std::memcpy(&expected, source.data() + 44 + i * 2, 2);
        ASSERT_NEAR(samples[i * 2], expected, 1) << i;
        ASSERT_EQ(samples[i * 2], samples[i * 2 + 1]) << i;
    }
}

TEST_F(Sound, EachMomentHasItsFile) {
    const std::vector<std::string> files{"SentMessage.caf",        "lock.caf",
                                         "Anticipate.caf",         "key_press_click.caf",
                                         "key_press_modifier.caf", "key_press_delete.caf",
                                         "photoShutter.caf"};
    for (const std::string& file : files) {
        themeSound("T", file, tone(0.02));
    }
    const std::vector<std::pair<std::string, std::string>> rows{
        {"message-sent", "SentMessage.caf"},
        {"lock", "lock.caf"},
        {"anticipate", "Anticipate.caf"},
        {"key-click", "key_press_click.caf"},
        {"shutter", "photoShutter.caf"},
        {"key-modifier", "key_press_modifier.caf"},
        {"key-delete", "key_press_delete.caf"},
        {"1000", "SentMessage.caf"},
        {"1002", "lock.caf"},
        {"1003", "Anticipate.caf"},
        {"1100", "photoShutter.caf"},
        {"1104", "key_press_click.caf"},
        {"1108", "photoShutter.caf"},
        {"1155", "key_press_modifier.caf"},
        {"1156", "key_press_delete.caf"},
        {"event:lock", "lock.caf"},
        {"event:anticipate", "Anticipate.caf"},
        {"event:key-click", "key_press_click.caf"},
        {"event:shutter", "photoShutter.caf"},
        {"event:1004", "key_press_click.caf"},
    };
    for (const auto& [event, file] : rows) {
        const CommandResult result = sound({event, "T", "-o", "out.wav"});
        EXPECT_EQ(result.code, 0) << event;
        EXPECT_TRUE(result.output.starts_with(file + " of T: 0.02 s")) << event << result.output;
        EXPECT_TRUE(result.output.ends_with(event.starts_with("event") ? kSystemKept : kSystemToo))
            << event;
        EXPECT_GT(peakOf(written()), 16000) << event;
    }
}

TEST_F(Sound, NumbersWithoutASoundAreSilent) {
    themeSound("T", "key_press_click.caf", tone(0.02));
    for (const std::string event : {"1004", "0", "4294967295", "event:1001", "event:1005",
                                    "event:1009", "event:0", "event:18446744073709551615"}) {
        const CommandResult result = sound({event, "T", "-o", "out.wav"});
        EXPECT_EQ(result.code, 1) << event;
        EXPECT_EQ(result.errors, "");
        const bool isEvent = event.starts_with("event:");
        EXPECT_EQ(result.output,
                  "silent: no sound of a theme belongs to " +
                      (isEvent ? "event " + event.substr(6) : "system sound " + event) +
                      "\n  /Library/Themes/T/UISounds: there\n" +
                      (isEvent ? kSystemKept : kSystemAlone));
    }
    EXPECT_EQ(folder.contents("out.wav"), "<none>");
}

TEST_F(Sound, TheFirstThemeWithTheFolderIsTheOne) {
    folder.file("None.theme/Info.plist");
    themeSound("First.theme", "lock.caf", tone(0.02));
    themeSound("Second.theme", "lock.caf", tone(0.04));
    themeSound("Second.theme", "Anticipate.caf", tone(0.04));
    const std::vector<std::string> themes{"None.theme", "First.theme", "Second.theme"};
    const std::string looked =
        "  /Library/Themes/None.theme/UISounds: not there\n"
        "  /Library/Themes/First.theme/UISounds: there\n";
    const auto play = [&](const std::string& event) {
        std::vector<std::string> words{event, "-o", "out.wav"};
        words.insert(words.end(), themes.begin(), themes.end());
        return sound(words);
    };
    EXPECT_EQ(
        play("lock").output,
        "lock.caf of First.theme: 0.02 s, linear PCM, 1 channel, 44100 Hz\n" + looked + kSystemToo);
    const CommandResult missing = play("anticipate");
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.output,
              "silent: /Library/Themes/First.theme/UISounds/Anticipate.caf: no such file or "
              "directory\n" +
                  looked + kSystemAlone);
    EXPECT_EQ(play("event:anticipate").output,
              "silent: /Library/Themes/First.theme/UISounds/Anticipate.caf: no such file or "
              "directory\n" +
                  looked + kSystemKept);
}

TEST_F(Sound, NoThemeWithTheFolderSaysWhereItWasLookedFor) {
    folder.file("A/Info.plist");
    folder.file("B/Info.plist");
    const CommandResult result = sound({"lock", "A", "B"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output,
              "silent: no active theme has a folder UISounds\n"
              "  /Library/Themes/A/UISounds: not there\n"
              "  /Library/Themes/B/UISounds: not there\n" +
                  kSystemAlone);
    EXPECT_EQ(sound({"event:lock", "A"}).output,
              "silent: no active theme has a folder UISounds\n"
              "  /Library/Themes/A/UISounds: not there\n" +
                  kSystemKept);
}

TEST_F(Sound, ADeviceIsTakenAsItIsAndStaysSo) {
    themeSound("device/Library/Themes/B.theme", "lock.caf", tone(0.02));
    activate(
        "<key>enable</key><true/><key>ActiveThemes</key><array><string>A.theme</string>"
        "<string>B.theme</string></array>");
    fs::permissions(folder / "device/var/mobile/Library/Preferences", fs::perms(0750));
    const Tree before = tree();
    CommandResult result = sound({"lock", "--root", "device", "-o", "out.wav"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(result.output.starts_with("lock.caf of B.theme: 0.02 s")) << result.output;
    EXPECT_EQ(tree(), before);
    result = sound({"panel:error", "--root", "device"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.output,
              "silent: /User/Library/VelMoranth/Sounds/Error.caf: there is no such file\n");
    EXPECT_EQ(tree(), before);
}

TEST_F(Sound, WithoutPreferencesTheFactorysCountAndAreNotPutInPlace) {
    themeSound("device/Library/Themes/B.theme", "lock.caf", tone(0.02));
    folder.file(kFactoryFile,
                plist("<key>enable</key><true/><key>ActiveThemes</key><array><string>B.theme"
                      "</string></array>"));
    fs::permissions(folder / "device/var/mobile/Library/Preferences", fs::perms(0750));
    const Tree before = tree();
    const CommandResult result = sound({"lock", "--root", "device", "-o", "out.wav"});
    EXPECT_EQ(result.code, 0) << result.output << result.errors;
    EXPECT_TRUE(result.output.starts_with("lock.caf of B.theme: 0.02 s")) << result.output;
    EXPECT_EQ(tree(), before);
    EXPECT_EQ(folder.contents(kLiveFile), "<none>");
}

TEST_F(Sound, ThemingThatIsOffIsTheReason) {
    themeSound("device/Library/Themes/B.theme", "lock.caf", tone(0.02));
    const std::string place =
        "velmoranth: warning: device/User/Library/Preferences/" + kFileName + ": ";
    activate("<key>ActiveThemes</key><array><string>B.theme</string></array>");
    for (const std::string event : {"lock", "event:lock"}) {
        const CommandResult result = sound({event, "--root", "device"});
        EXPECT_EQ(result.code, 1);
        EXPECT_EQ(result.errors, place + "\"enable\" is not on, so theming is off\n");
        EXPECT_EQ(result.output, "silent: theming is off\n" + kSystemAlone);
    }
    activate("<key>enable</key><true/>");
    EXPECT_EQ(sound({"lock", "--root", "device"}).output,
              "silent: no theme is active\n" + kSystemAlone);
    fs::remove(folder / kLiveFile);
    const CommandResult none = sound({"lock", "--root", "device"});
    EXPECT_EQ(none.errors, place + "there are no preferences, so theming is off\n");
    EXPECT_EQ(none.output, "silent: theming is off\n" + kSystemAlone);
}

TEST_F(Sound, ThePanelHasItsOwnSoundsAtItsOwnVolumes) {
    struct Row {
        std::string event;
        std::string file;
        double volume;
    };

    for (const auto& [event, file, volume] : std::vector<Row>{
             {"panel:click", "button_click.caf", 0.05},
             {"panel:slide", "cell_swoosh.caf", 0.8},
             {"panel:slide-click", "SlideClick.caf", 0.05},
             {"panel:error", "Error.caf", 0.5},
             {"panel:reboot", "Reboot.caf", 0.5},
             {"panel:success", "success.aif", 0.5},
             {"panel:on", "beepShortOn.aif", 1},
             {"panel:off", "beepShortOff.aif", 1},
         }) {
        const CommandResult result = sound({event, "-o", "out.wav", "--json"});
        EXPECT_EQ(result.code, 0) << event;
        const json report = json::parse(result.output);
        EXPECT_EQ(report["file"], "/User/Library/VelMoranth/Sounds/" + file);
        EXPECT_NEAR(report["volume"].get<double>(), volume, 1e-6);
        EXPECT_EQ(report["theme"], nullptr);
        EXPECT_EQ(report["systemSound"], false);
        EXPECT_GT(peakOf(written()), 0) << event;
        EXPECT_LE(peakOf(written()), static_cast<int>(volume * 32768) + 1) << event;
    }
    EXPECT_TRUE(sound({"panel:error"}).output.find(", volume 0.5\n") != std::string::npos);
}

TEST_F(Sound, ThePanelsSoundsAreThoseOfTheDevice) {
    folder.file("device/var/mobile/Library/VelMoranth/Sounds/Error.caf", tone(0.05));
    CommandResult result = sound({"panel:error", "--root", "device", "-o", "out.wav"});
    EXPECT_EQ(result.output,
              "/User/Library/VelMoranth/Sounds/Error.caf: 0.05 s, linear PCM, 1 channel, 44100 Hz, "
              "volume 0.5\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_NEAR(peakOf(written()), kLevel * 32767 / 2, 40);
    folder.file("device/var/mobile/Library/VelMoranth/Sounds/Error.caf", "no sound");
    result = sound({"panel:error", "--root", "device", "-o", "out.wav"});
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(result.output.starts_with("silent: /User/Library/VelMoranth/Sounds/Error.caf: "))
        << result.output;
    EXPECT_EQ(result.output.find("no such file"), std::string::npos);
}

TEST_F(Sound, FilesThatAreNoSoundsAreNamedWithTheReason) {
    const auto silent = [&] {
        const CommandResult result = sound({"lock", "T", "-o", "out.wav"});
        EXPECT_EQ(result.code, 1);
        EXPECT_TRUE(result.output.starts_with("silent: /Library/Themes/T/UISounds/lock.caf: "))
            << result.output;
        EXPECT_EQ(folder.contents("out.wav"), "<none>");
        return result.output;
    };
    themeSound("T", "lock.caf", "");
    silent();
    themeSound("T", "lock.caf", std::string(100'000, 'x'));
    silent();
    themeSound("T", "lock.caf", tone(0.02).substr(0, 40));
    silent();
    themeSound("T", "lock.caf", std::string("caff\0\1\0\0desc\xff\xff\xff\xff", 16));
    silent();
    fs::remove(folder / "T/UISounds/lock.caf");
    folder.folder("T/UISounds/lock.caf");
    silent();
    fs::remove(folder / "T/UISounds/lock.caf");
    folder.link("T/UISounds/lock.caf", "lock.caf");
    silent();
}

TEST_F(Sound, APipeOnADeviceDoesNotStopIt) {
    activate(
        "<key>enable</key><true/><key>ActiveThemes</key><array><string>B.theme</string></array>");
    folder.folder("device/Library/Themes/B.theme/UISounds");
    ASSERT_EQ(::mkfifo((folder / "device/Library/Themes/B.theme/UISounds/lock.caf").c_str(), 0666),
              0);
    EXPECT_EQ(sound({"lock", "--root", "device"}).code, 1);
}

TEST_F(Sound, AFileThatEndsEarlyPlaysAsFarAsItGoes) {
    // Its head says 2 s; half of that is there.
    const std::string whole = tone(2);
    themeSound("T", "lock.caf", whole.substr(0, 44 + whole.size() / 2));
    const CommandResult result = sound({"lock", "T", "-o", "out.wav"});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.output.starts_with("lock.caf of T: 1.0")) << result.output;
    EXPECT_NEAR(static_cast<double>(written().size()), 2 * 44100, 4096);
}

TEST_F(Sound, TheWavFileIsWholeOrAsItWas) {
    themeSound("T", "lock.caf", tone(1));
    folder.file("out.wav", "mine");
    folder.folder("folder");
    const auto refused = [&](const std::string& file, const std::string& reason,
                             const CommandSetting& setting) {
        const CommandResult result = runCommand({"sound", "lock", "T", "-o", file}, setting);
        EXPECT_EQ(result.code, 3);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors,
                  "velmoranth: error: " + file + ": the sound cannot be written: " + reason + "\n");
        EXPECT_EQ(folder.names("tmp"), "");
    };
    refused("folder", "is a directory", setting());
    refused("out.wav/out.wav", "not a directory", setting());
    CommandSetting limited = setting();
    // A second of stereo is larger; what the throw-away device holds is not.
    limited.limits = {{RLIMIT_FSIZE, 120'000}};
    refused("out.wav", "file too large", limited);
    EXPECT_EQ(folder.contents("out.wav"), "mine");
    EXPECT_EQ(sound({"lock", "T", "-o", "out.wav"}).code, 0);
    EXPECT_EQ(folder.contents("out.wav").substr(0, 4), "RIFF");
}

TEST_F(Sound, PlaysOnTheMachinesDevice) {
    themeSound("T", "lock.caf", tone(0.3));
    CommandSetting disk = setting();
    disk.variables["SDL_AUDIODRIVER"] = "disk";
    disk.variables["SDL_DISKAUDIOFILE"] = folder / "heard.raw";
    const auto start = std::chrono::steady_clock::now();
    const CommandResult result = runCommand({"sound", "lock", "T"}, disk);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors.find("velmoranth:"), std::string::npos) << result.errors;
    EXPECT_TRUE(result.output.starts_with("lock.caf of T: 0.30 s")) << result.output;
    const std::string raw = folder.contents("heard.raw");
    std::vector<float> heard(raw.size() / sizeof(float));
    std::memcpy(heard.data(), raw.data(), heard.size() * sizeof(float));
    float peak = 0;
    std::size_t loud = 0;
    for (const float sample : heard) {
        peak = std::max(peak, std::abs(sample));
        loud += std::abs(sample) > 0.01F ? 1U : 0U;
    }
    EXPECT_NEAR(peak, kLevel, 0.01);
    EXPECT_GT(loud, std::size_t{2} * 44100 * 3 / 10 * 9 / 10) << "all of it";
}

TEST_F(Sound, AMachineWithoutADeviceSaysSoOnce) {
    themeSound("T", "lock.caf", tone(5));
    CommandSetting deaf = setting();
    deaf.variables["SDL_AUDIODRIVER"] = "none";
    const auto start = std::chrono::steady_clock::now();
    const CommandResult result = runCommand({"sound", "lock", "T"}, deaf);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4)) << "no waiting";
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(result.output.starts_with("lock.caf of T: 5.00 s")) << result.output;
    EXPECT_TRUE(
        result.output.ends_with("\nnothing was heard here: this machine has no sound device; -o "
                                "FILE writes it as a WAV file\n"))
        << result.output;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    EXPECT_TRUE(result.errors.starts_with("velmoranth: ")) << result.errors;

    const json report = json::parse(runCommand({"sound", "lock", "T", "--json"}, deaf).output);
    EXPECT_EQ(report["played"], true) << "by the phone";
    EXPECT_EQ(report["heard"], false);
    EXPECT_EQ(runCommand({"sound", "lock", "T", "-o", "out.wav"}, deaf).code, 0) << "needs none";
    themeSound("T", "lock.caf", tone(0.02));
    EXPECT_EQ(json::parse(sound({"lock", "T", "--json"}).output)["heard"], true);
}

TEST_F(Sound, StopsAtASignalWithNothingLeft) {
    themeSound("T", "lock.caf", tone(30));
    RunningCommand running({"sound", "lock", "T"}, setting());
    ASSERT_TRUE(running.waitForText("lock.caf of T: 30.00 s"));
    running.signal(SIGINT);
    EXPECT_EQ(running.finish().signal, SIGINT);
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(Sound, JsonHasTheFileAndWhatWasLookedFor) {
    folder.file("A/Info.plist");
    themeSound("B", "lock.caf", tone(0.02));
    json report = json::parse(sound({"event:1002", "A", "B", "--json", "-o", "out.wav"}).output);
    EXPECT_EQ(report, json::parse(R"({
        "event": "event:1002", "number": 1002, "played": true,
        "file": "/Library/Themes/B/UISounds/lock.caf", "theme": "B", "reason": null,
        "seconds": 0.02, "codec": "linear PCM", "channels": 1, "sampleRate": 44100, "volume": 1.0,
        "systemSound": false,
        "lookedFor": [{"path": "/Library/Themes/A/UISounds", "exists": false},
                      {"path": "/Library/Themes/B/UISounds", "exists": true}],
        "output": "out.wav"})"));
    const CommandResult silent = sound({"1004", "B", "--json"});
    EXPECT_EQ(silent.code, 1);
    report = json::parse(silent.output);
    EXPECT_EQ(report["played"], false);
    EXPECT_EQ(report["reason"], "no sound of a theme belongs to system sound 1004");
    EXPECT_EQ(report["file"], "/Library/Themes/B/UISounds");
    EXPECT_EQ(report["systemSound"], true);
    EXPECT_FALSE(report.contains("seconds"));
    report = json::parse(sound({"panel:on", "--json", "-o", "out.wav"}).output);
    EXPECT_EQ(report["message"], "PlayOn:");
}

TEST_F(Sound, MissingThemeOrDeviceIsBadInput) {
    CommandResult result = sound({"lock", "none.theme"});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors, "velmoranth: error: none.theme: there is no such theme folder\n");
    result = sound({"lock", "--root", "none"});
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors, "velmoranth: error: none: no such file or directory\n");
}

}  // namespace
}  // namespace velmoranth::cli::sound_test
