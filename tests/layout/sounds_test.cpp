// The panel's sounds: what is in the files, read by hand, and that the script makes these very
// files.
#include "desktop/audio/sound_decoder.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace velmoranth::tests::sounds_test {
namespace {

constexpr double kRate = 44100;
constexpr double kFullScale = 32767;

// A file, the volume that the panel plays it at, and what it should be like.
struct PanelSound {
    const char* file;
    double volume;
    double seconds;
    double heard;  // effective value of the loudest 50 ms at that volume, 1 is full scale
    double leastPeak;
    double mostPeak;
};

std::ostream& operator<<(std::ostream& out, const PanelSound& sound) {
    return out << sound.file;
}

constexpr std::array<PanelSound, 8> kSounds{{
    {"button_click.caf", 0.05, 0.09, 0.013, 0.85, 0.98},
    {"cell_swoosh.caf", 0.8, 0.3, 0.025, 0.08, 0.15},
    {"SlideClick.caf", 0.05, 0.19, 0.013, 0.85, 0.98},
    {"Error.caf", 0.5, 0.5, 0.025, 0.06, 0.15},
    {"Reboot.caf", 0.5, 0.6, 0.025, 0.06, 0.15},
    {"success.aif", 0.5, 0.6, 0.025, 0.06, 0.15},
    {"beepShortOn.aif", 1.0, 0.14, 0.025, 0.03, 0.08},
    {"beepShortOff.aif", 1.0, 0.14, 0.025, 0.03, 0.08},
}};

const std::string kFolder =
    tests::kLayoutFolder + std::string("/var/mobile/Library/VelMoranth/Sounds");

std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

// Numbers of a file, one after the other.
class Reader {
  public:
    explicit Reader(std::string bytes) : bytes_(std::move(bytes)) {}

    std::uint64_t big(std::size_t count) {
        std::uint64_t value = 0;
        for (const char byte : text(count)) {
            value = value << 8U | static_cast<std::uint8_t>(byte);
        }
        return value;
    }

    std::string text(std::size_t count) {
        EXPECT_LE(count, left());
        std::string taken = bytes_.substr(at_, std::min(count, left()));
        at_ += taken.size();
        return taken;
    }

    [[nodiscard]] std::size_t left() const { return bytes_.size() - at_; }

  private:
    std::string bytes_;
    std::size_t at_ = 0;
};

std::vector<double> samplesOf(const std::string& bytes, bool isLittleEndian) {
    std::vector<double> samples;
    EXPECT_EQ(bytes.size() % 2, 0U);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<std::uint8_t>(bytes[i]);
        const auto second = static_cast<std::uint8_t>(bytes[i + 1]);
        const unsigned high = isLittleEndian ? second : first;
        const unsigned low = isLittleEndian ? first : second;
        samples.push_back(static_cast<std::int16_t>(high << 8U | low));
    }
    return samples;
}

std::vector<double> readCaf(Reader file) {
    EXPECT_EQ(file.text(4), "caff");
    EXPECT_EQ(file.big(2), 1U) << "version";
    EXPECT_EQ(file.big(2), 0U) << "flags";
    EXPECT_EQ(file.text(4), "desc");
    EXPECT_EQ(file.big(8), 32U);
    const std::uint64_t rateBits = file.big(8);
    double rate = 0;
    std::memcpy(&rate, &rateBits, sizeof rate);
    EXPECT_EQ(rate, kRate);
    EXPECT_EQ(file.text(4), "lpcm");
    EXPECT_EQ(file.big(4), 2U) << "integers, little-endian";
    EXPECT_EQ(file.big(4), 2U) << "bytes a packet";
    EXPECT_EQ(file.big(4), 1U) << "frames a packet";
    EXPECT_EQ(file.big(4), 1U) << "channels";
    EXPECT_EQ(file.big(4), 16U) << "bits";
    EXPECT_EQ(file.text(4), "data");
    const std::uint64_t size = file.big(8);
    EXPECT_EQ(size, file.left());
    EXPECT_EQ(file.big(4), 0U) << "edits";
    return samplesOf(file.text(file.left()), true);
}

std::vector<double> readAiff(Reader file) {
    EXPECT_EQ(file.text(4), "FORM");
    const std::uint64_t whole = file.big(4);
    EXPECT_EQ(whole, file.left());
    EXPECT_EQ(file.text(4), "AIFF");
    EXPECT_EQ(file.text(4), "COMM");
    EXPECT_EQ(file.big(4), 18U);
    EXPECT_EQ(file.big(2), 1U) << "channels";
    const std::uint64_t frames = file.big(4);
    EXPECT_EQ(file.big(2), 16U) << "bits";
    const auto exponent = static_cast<int>(file.big(2)) - 16383 - 63;
    EXPECT_EQ(std::ldexp(static_cast<double>(file.big(8)), exponent), kRate);
    EXPECT_EQ(file.text(4), "SSND");
    const std::uint64_t size = file.big(4);
    EXPECT_EQ(size, file.left());
    EXPECT_EQ(file.big(8), 0U) << "offset and block";
    std::vector<double> samples = samplesOf(file.text(file.left()), false);
    EXPECT_EQ(samples.size(), frames);
    return samples;
}

double effective(const double* from, std::size_t count) {
    double energy = 0;
    for (std::size_t i = 0; i < count; ++i) {
        energy += from[i] * from[i];
    }
    return std::sqrt(energy / static_cast<double>(count));
}

double loudest50Milliseconds(const std::vector<double>& samples) {
    constexpr std::size_t kWindow = 2205;
    double most = 0;
    for (std::size_t i = 0; i + kWindow <= samples.size(); i += 5) {
        most = std::max(most, effective(&samples[i], kWindow));
    }
    return most;
}

class PanelSounds : public testing::TestWithParam<PanelSound> {
  protected:
    static std::vector<double> samples() {
        const std::string name = GetParam().file;
        Reader file(contentsOf(kFolder + "/" + name));
        return name.ends_with(".caf") ? readCaf(std::move(file)) : readAiff(std::move(file));
    }
};

TEST_P(PanelSounds, AreAsLongAsTheyShouldBe) {
    EXPECT_NEAR(static_cast<double>(samples().size()) / kRate, GetParam().seconds, 0.0001);
}

TEST_P(PanelSounds, AreAsLoudAsTheirVolumeAsks) {
    const std::vector<double> sound = samples();
    ASSERT_GE(sound.size(), 2205U);
    const double heard = loudest50Milliseconds(sound) * GetParam().volume / kFullScale;
    EXPECT_NEAR(heard, GetParam().heard, 0.02 * GetParam().heard);
    double peak = 0;
    for (const double sample : sound) {
        peak = std::max(peak, std::abs(sample) / kFullScale);
    }
    EXPECT_GT(peak, GetParam().leastPeak);
    EXPECT_LT(peak, GetParam().mostPeak);
}

TEST_P(PanelSounds, BeginAndEndInSilence) {
    const std::vector<double> sound = samples();
    ASSERT_GE(sound.size(), 2205U);
    const double most = loudest50Milliseconds(sound);
    EXPECT_EQ(sound.front(), 0);
    EXPECT_EQ(sound.back(), 0);
    constexpr std::size_t kQuarterMillisecond = 11;
    EXPECT_LT(effective(sound.data(), kQuarterMillisecond), 0.03 * most);
    EXPECT_LT(effective(&sound[sound.size() - kQuarterMillisecond], kQuarterMillisecond),
              0.03 * most);
    double mean = 0;
    for (const double sample : sound) {
        mean += sample / static_cast<double>(sound.size());
    }
    EXPECT_LT(std::abs(mean), 0.5) << "of 32767";
}

TEST_P(PanelSounds, PlayAsTheyAreWritten) {
    const std::string bytes = contentsOf(kFolder + "/" + GetParam().file);
    const auto file = desktop::SoundFile::ofData({bytes.begin(), bytes.end()}, GetParam().file);
    const auto decoder = desktop::SoundDecoder::open(file, static_cast<int>(kRate));
    ASSERT_TRUE(decoder) << desktop::toLine(decoder.error());
    const std::vector<double> sound = samples();
    // Room for more than there should be.
    std::vector<float> frames((sound.size() + 1000) * desktop::kChannels);
    ASSERT_EQ((*decoder)->read(frames), sound.size());
    EXPECT_FALSE((*decoder)->problem());
    for (std::size_t i = 0; i < sound.size(); ++i) {
        ASSERT_NEAR(frames[2 * i], sound[i] / 32768, 1e-6) << i;
        ASSERT_EQ(frames[2 * i], frames[2 * i + 1]) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(All, PanelSounds, testing::ValuesIn(kSounds));

TEST(PanelSoundFiles, ComeOutOfTheScriptByteForByte) {
    const TemporaryFolder folder;
    const std::string command = std::string("PYTHONDONTWRITEBYTECODE=1 \"") + tests::kPython +
                                "\" \"" + tests::kLayoutFolder + "/make_sounds.py\" \"" +
                                (folder / "sounds") + "\"";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(folder.count("sounds"), static_cast<std::ptrdiff_t>(kSounds.size()));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(kFolder),
                            std::filesystem::directory_iterator()),
              static_cast<std::ptrdiff_t>(kSounds.size()));
    for (const PanelSound& sound : kSounds) {
        EXPECT_TRUE(contentsOf(folder / "sounds/" + sound.file) ==
                    contentsOf(kFolder + "/" + sound.file))
            << sound.file;
    }
}

TEST(PanelSoundFiles, AreAllDifferent) {
    std::set<std::string> contents;
    for (const PanelSound& sound : kSounds) {
        contents.insert(contentsOf(kFolder + "/" + sound.file));
    }
    EXPECT_EQ(contents.size(), kSounds.size());
}

}  // namespace
}  // namespace velmoranth::tests::sounds_test
