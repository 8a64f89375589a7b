// What is no sound, or a damaged one: a player that is nil or one that ends, a line that says why,
// never more memory than a sound takes, and never a wait.
#include "tests/support/sanitizers.h"

#include "audio_fixture.h"
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>

namespace velmoranth::desktop::bad_sounds_test {
namespace {

using tests::RawCaf;
using tests::rawCaf;
using tests::soundFile;

std::string problemOf(const std::string& bytes) {
    const auto decoder = decoderOf(bytes);
    return decoder ? "none" : toLine(decoder.error());
}

std::size_t memoryBytes(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(key)) {
            return std::stoull(line.substr(key.size() + 1)) * 1024;
        }
    }
    return 0;
}

TEST(BadSounds, EachIsNamed) {
    EXPECT_EQ(problemOf(""), "sound: the file is empty");
    const std::string unknown = "sound: not a sound file of a kind that can be played";
    EXPECT_EQ(problemOf("a"), unknown);
    EXPECT_EQ(problemOf("caf"), unknown);
    EXPECT_EQ(problemOf("This is a text, and it is long enough to be looked at.\n"), unknown);
    EXPECT_EQ(problemOf(std::string(100000, '\0')), unknown);
    EXPECT_EQ(problemOf("\x89PNG\r\n\x1A\n and more"), unknown);
    EXPECT_EQ(problemOf("OggS and more of it"), unknown);
    EXPECT_EQ(problemOf("#EXTM3U\nfile:///etc/passwd\n"), unknown);
    EXPECT_EQ(problemOf("caff"), "sound: the caf file is damaged");
    EXPECT_EQ(problemOf(std::string("FORM\0\0\0\4AIFF", 12)), "sound: the aiff file is damaged");
    EXPECT_EQ(problemOf(std::string("RIFF\4\0\0\0WAVE", 12)), "sound: the wav file is damaged");
    EXPECT_EQ(problemOf(rawCaf({})), "sound: there is no sound in the file");
    EXPECT_EQ(problemOf(rawCaf({.format = "zzzz", .data = "abcd"})),
              "sound: sound of the kind none cannot be played");
    EXPECT_EQ(problemOf(rawCaf({.format = "QDM2", .data = "abcd"})),
              "sound: sound of the kind qdm2 cannot be played");
    EXPECT_EQ(problemOf(rawCaf({.channels = 0, .data = "abcd"})),
              "sound: the sound has 0 channels; 1 to 8 can be played");
    EXPECT_EQ(problemOf(rawCaf({.bytesPerPacket = 18, .channels = 9, .data = std::string(36, 1)})),
              "sound: the sound has 9 channels; 1 to 8 can be played");
    EXPECT_EQ(problemOf(rawCaf({.sampleRate = 0, .data = "abcd"})),
              "sound: the sound's sample rate is 0 Hz; 1000 to 384000 can be played");
    EXPECT_EQ(problemOf(rawCaf({.sampleRate = 1, .data = "abcd"})),
              "sound: the sound's sample rate is 1 Hz; 1000 to 384000 can be played");
    EXPECT_EQ(problemOf(rawCaf({.sampleRate = 500000, .data = "abcd"})),
              "sound: the sound's sample rate is 500000 Hz; 1000 to 384000 can be played");
    EXPECT_EQ(toLine(decoderOf(tests::cafFile({}), 0).error()),
              "sound: sound cannot be played at 0 Hz");
}

TEST(BadSounds, NumbersWithoutSenseAreRefused) {
    for (const double rate :
         {2147483648.0, 4294967296.0, -44100.0, 1e300, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(decoderOf(rawCaf({.sampleRate = rate, .data = std::string(4000, 1)}))) << rate;
    }
    for (const std::uint32_t channels :
         {0U, 9U, 255U, 65536U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(decoderOf(rawCaf({.channels = channels, .data = std::string(4000, 1)})))
            << channels;
    }
}

TEST(BadSounds, ChunkSizesThatLieDoNoHarm) {
    const std::string data(4000, 1);
    for (const std::int64_t size :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{4}, std::int64_t{5}, std::int64_t{4003},
          std::int64_t{4005}, std::int64_t{1} << 31, std::int64_t{1} << 40, std::int64_t{1} << 62,
          std::numeric_limits<std::int64_t>::max(), std::int64_t{-1}, std::int64_t{-2},
          std::int64_t{-4000}, std::numeric_limits<std::int64_t>::min()}) {
        const auto decoder = decoderOf(rawCaf({.dataSize = size, .data = data}));
        if (decoder) {
            EXPECT_LE(framesOf(**decoder).size(), 2000U) << size;
        }
        for (const char* const chunk : {"pakt", "kuki", "chan", "info", "free", "desc", "data"}) {
            const auto other = decoderOf(
                rawCaf({.chunks = tests::cafChunk(chunk, size, "0123456789"), .data = data}));
            if (other) {
                EXPECT_LE(framesOf(**other).size(), 2100U) << chunk << size;
            }
        }
    }
}

TEST(BadSounds, TruncatedFilesEndWhereTheyEnd) {
    const tests::Tone tone{.seconds = 0.3};
    for (const auto& [muxer, encoder] : {std::pair{"caf", "pcm_s16le"},
                                         {"caf", "adpcm_ima_qt"},
                                         {"caf", "aac"},
                                         {"caf", "alac"},
                                         {"aiff", "pcm_s16be"},
                                         {"wav", "pcm_s16le"},
                                         {"ipod", "aac"},
                                         {"mp3", "libmp3lame"},
                                         {"adts", "aac"}}) {
        const std::string whole = soundFile(muxer, encoder, tone);
        const auto complete = decoderOf(whole);
        ASSERT_TRUE(complete) << muxer;
        const std::size_t frames = framesOf(**complete).size();
        std::size_t played = 0;
        for (std::size_t part = 0; part < 50; ++part) {
            const auto decoder = decoderOf(whole.substr(0, whole.size() * part / 50));
            if (decoder) {
                ++played;
                EXPECT_LE(framesOf(**decoder).size(), frames) << muxer << encoder << part;
            } else {
                EXPECT_FALSE(decoder.error().message.empty());
                EXPECT_EQ(decoder.error().path, "sound");
            }
        }
        // Without the index at its end there is nothing to be found in an MP4 file, nor in a CAF
        // file of packets that differ in size.
        if (std::string_view(muxer) != "ipod" && std::string_view(encoder) != "alac") {
            EXPECT_GE(played, 20U) << muxer << encoder;
        }
    }
}

TEST(BadSounds, DamagedBytesDoNoHarm) {
    const tests::Tone tone{.seconds = 0.1};
    for (const auto& [muxer, encoder] : {std::pair{"caf", "pcm_s16le"},
                                         {"caf", "adpcm_ima_qt"},
                                         {"caf", "aac"},
                                         {"caf", "alac"},
                                         {"aiff", "pcm_s16be"},
                                         {"wav", "adpcm_ima_wav"},
                                         {"ipod", "alac"}}) {
        const std::string whole = soundFile(muxer, encoder, tone);
        std::uint32_t random = 12345;
        for (int round = 0; round < 150; ++round) {
            std::string damaged = whole;
            for (int i = 0; i < 8; ++i) {
                random = random * 1664525 + 1013904223;
                // Half of them in the head, where they do most.
                const std::size_t reach = (i & 1) == 0 ? std::size_t{200} : damaged.size();
                damaged[(random >> 8) % std::min(reach, damaged.size())] =
                    static_cast<char>(random);
            }
            const auto decoder = decoderOf(damaged);
            if (decoder) {
                const std::vector<float> frames = framesOf(**decoder, 500'000);
                for (const float sample : frames) {
                    ASSERT_FALSE(std::isinf(sample) && muxer == std::string("aiff"));
                }
            }
        }
    }
    EXPECT_LT(memoryBytes("VmHWM:"), std::size_t{400} << 20);
}

// A packet that cannot be decoded is left out; a thousand in a row are the end.
TEST(BadSounds, NothingButDamagedPacketsComesToAnEnd) {
    std::string sizes;
    std::string data;
    constexpr std::size_t kPackets = 5000;
    for (std::size_t i = 0; i < kPackets; ++i) {
        sizes += '\x08';
        data += "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF";
    }
    std::string file = tests::aacCaf(tests::samplesOf({.seconds = 0.5}), 44100, 2);
    file.resize(file.find("pakt"));
    const std::string table = tests::bigEndian(kPackets, 8) + tests::bigEndian(kPackets * 1024, 8) +
                              tests::bigEndian(0, 8) + sizes;
    file += tests::cafChunk("pakt", static_cast<std::int64_t>(table.size()), table) +
            tests::cafChunk("data", -1, tests::bigEndian(0, 4) + data);
    EXPECT_EQ(problemOf(file),
              "sound: the sound is damaged: nothing can be played of 1000 packets in a row");
}

// Nor on the standard streams, where a library likes to complain.
TEST(BadSounds, NobodyHearsOfThem) {
    std::string file = soundFile("adts", "aac", tests::Tone{});
    for (std::size_t i = 500; i < file.size(); i += 13) {
        file[i] = static_cast<char>(i);
    }
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    if (const auto decoder = decoderOf(file)) {
        EXPECT_FALSE(framesOf(**decoder).empty());
    }
    EXPECT_FALSE(decoderOf("caff"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(BadSounds, InputOfZerosComesToAnEnd) {
    // Chunk headers of no size, one after another, in a sparse file of a gigabyte.
    const tests::TemporaryFolder folder;
    const auto root = createDeviceRoot(folder / "device").value();
    folder.file("device/zeros.caf", rawCaf({}).substr(0, 52));
    std::filesystem::resize_file(folder / "device/zeros.caf", std::uintmax_t{1} << 30);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(SoundDecoder::open(SoundFile::open(*root, "/zeros.caf").value(), 44100));
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(20));
}

TEST(BadSounds, HoursDeclaredOverLittleData) {
    // A CAF table that promises ten hours of AAC, over half a second.
    const auto ten = decoderOf(
        tests::aacCaf(tests::samplesOf({}), 44100, 2, {.valid = std::int64_t{10} * 3600 * 44100}));
    ASSERT_TRUE(ten);
    EXPECT_NEAR((*ten)->format().seconds.value_or(0), 36000, 1e-6);
    EXPECT_LT(framesOf(**ten).size() / 2, 30000U);
    // An AIFF file whose number of frames is the largest there is.
    std::string aiff = soundFile("aiff", "pcm_s16be", tests::Tone{.seconds = 0.1});
    aiff.replace(aiff.find("COMM") + 10, 4, "\xFF\xFF\xFF\xFF");
    if (const auto decoder = decoderOf(aiff)) {
        EXPECT_LE(framesOf(**decoder).size() / 2, 4410U);
    }
}

// Memory that came to be used; the address sanitizer keeps what is freed.
void expectLittleMemory(std::size_t used, std::size_t most) {
    if (!tests::kAddressSanitizer) {
        EXPECT_LT(used, most);
    }
}

// An hour of linear PCM, 635 MB of it in a sparse file: it starts at once and in little memory.
TEST(LongSounds, StartAtOnceInLittleMemory) {
    const tests::TemporaryFolder folder;
    const auto root = createDeviceRoot(folder / "device").value();
    constexpr std::uintmax_t kBytes = std::uintmax_t{3600} * 44100 * 4;
    const std::string head = rawCaf({.dataSize = static_cast<std::int64_t>(kBytes) + 4});
    const std::string tone(tests::cafFile({.seconds = 1}).substr(100));
    folder.file("device/long.caf", head + tone.substr(0, tone.size() / 4 * 4));
    std::filesystem::resize_file(folder / "device/long.caf", head.size() + kBytes);
    static_cast<void>(decoderOf(tests::cafFile({})));  // the libraries are there
    const std::size_t before = memoryBytes("VmRSS:");
    const auto decoder = SoundDecoder::open(SoundFile::open(*root, "/long.caf").value(), 44100);
    ASSERT_TRUE(decoder) << toLine(decoder.error());
    std::vector<float> frames(2 * 4410);
    EXPECT_EQ((*decoder)->read(frames), 4410U);
    EXPECT_GT(tests::peakOf(frames), 0.3F);
    EXPECT_NEAR((*decoder)->format().seconds.value_or(0), 3600, 0.1);
    std::size_t total = 4410;
    for (int i = 0; i < 6000; ++i) {  // ten minutes
        total += (*decoder)->read(frames);
    }
    EXPECT_EQ(total, 4410U * 6001);
    expectLittleMemory(memoryBytes("VmRSS:") - before, std::size_t{8} << 20);
}

TEST(LongSounds, HourOfAacStartsInLittleMemory) {
    // One second, repeated packet by packet.
    const std::string second = tests::aacCaf(tests::samplesOf({.seconds = 1}), 44100, 2);
    const std::size_t table = second.find("pakt") + 12;
    const std::size_t dataChunk = second.rfind("data");
    const std::string sizes = second.substr(table + 24, dataChunk - table - 24);
    const std::string packets = second.substr(dataChunk + 16);
    std::string allSizes;
    std::string allPackets;
    for (int i = 0; i < 3600; ++i) {
        allSizes += sizes;
        allPackets += packets;
    }
    const std::uint64_t count = 3600ULL * 45;
    const std::string chunk = tests::bigEndian(count, 8) + tests::bigEndian(count * 1024, 8) +
                              tests::bigEndian(0, 8) + allSizes;
    const tests::TemporaryFolder folder;
    const auto root = createDeviceRoot(folder / "device").value();
    folder.file("device/long.caf",
                second.substr(0, table - 12) +
                    tests::cafChunk("pakt", static_cast<std::int64_t>(chunk.size()), chunk) +
                    tests::cafChunk("data", -1, tests::bigEndian(0, 4) + allPackets));
    const std::size_t before = memoryBytes("VmRSS:");
    const auto decoder = SoundDecoder::open(SoundFile::open(*root, "/long.caf").value(), 44100);
    ASSERT_TRUE(decoder) << toLine(decoder.error());
    EXPECT_NEAR((*decoder)->format().seconds.value_or(0), 3600.0 * 45 * 1024 / 44100, 0.1);
    EXPECT_EQ(framesOf(**decoder, 441000).size() / 2, 441000U);
    expectLittleMemory(memoryBytes("VmRSS:") - before, std::size_t{48} << 20);
}

TEST_F(AudioTest, NoPlayerOfWhatIsNoFile) {
    file("/empty.caf", "");
    file("/text.caf", "not a sound");
    std::filesystem::create_directories(folder_ / "device/folder");
    std::filesystem::create_symlink("nowhere", folder_ / "device/dangling.caf");
    std::filesystem::create_symlink("/etc/hostname", folder_ / "device/outside.caf");
    ASSERT_EQ(::mkfifo((folder_ / "device/pipe.caf").c_str(), 0644), 0);
    for (const auto& [path, message] :
         {std::pair{"/missing.caf", "no such file or directory"},
          {"/no/folder/x.caf", "no such file or directory"},
          {"/folder", "a folder, not a sound"},
          {"/folder/", "a folder, not a sound"},
          {"/", "a folder, not a sound"},
          {"/empty.caf", "the file is empty"},
          {"/text.caf", "not a sound file of a kind that can be played"},
          {"/text.caf/x", "not a directory"},
          {"/dangling.caf", "no such file or directory"},
          {"/outside.caf", "no such file or directory"},
          {"/pipe.caf", "not a regular file"},
          {"", "no such file or directory"}}) {
        EXPECT_EQ(audio_.audioPlayerWithContentsOfURL(path), nullptr) << path;
        ASSERT_TRUE(audio_.lastProblem()) << path;
        EXPECT_EQ(audio_.lastProblem()->message, message) << path;
        EXPECT_EQ(audio_.lastProblem()->path, path);
    }
    EXPECT_EQ(audio_.audioPlayerWithContentsOfURL(std::string("/a\0b", 4)), nullptr);
    EXPECT_EQ(audio_.audioPlayerWithContentsOfURL(std::string(10000, 'a')), nullptr);
    EXPECT_EQ(audio_.audioPlayerWithData(std::nullopt), nullptr);
    EXPECT_EQ(audio_.lastProblem()->message, "no data");
    EXPECT_EQ(audio_.audioPlayerWithData(platform::Data()), nullptr);
    EXPECT_EQ(toLine(*audio_.lastProblem()), "data of 0 bytes: the file is empty");
    EXPECT_TRUE(output_.journal().empty());
}

TEST_F(AudioTest, NoPlayerOfAFileThatCannotBeRead) {
    file("/secret.caf", tests::cafFile({}));
    std::filesystem::permissions(folder_ / "device/secret.caf", std::filesystem::perms::none);
    if (::geteuid() == 0 && ::seteuid(65534) != 0) {
        GTEST_SKIP() << "the files of others cannot be made unreadable";
    }
    const auto player = audio_.audioPlayerWithContentsOfURL("/secret.caf");
    static_cast<void>(::seteuid(0));
    EXPECT_EQ(player, nullptr);
    EXPECT_EQ(toLine(*audio_.lastProblem()), "/secret.caf: permission denied");
}

// A file that shrinks while it plays ends; one that cannot be read again does not play again.
TEST_F(AudioTest, FileThatShrinksEnds) {
    file("/sound.caf", tests::cafFile({.seconds = 5}));
    const auto player = audio_.audioPlayerWithContentsOfURL("/sound.caf");
    ASSERT_NE(player, nullptr);
    player->play();
    output_.advance(0.5);
    std::filesystem::resize_file(folder_ / "device/sound.caf", 0);
    output_.advance(3);
    EXPECT_FALSE(mixer_.isPlaying());
    EXPECT_FALSE(player->play());
    EXPECT_FALSE(player->prepareToPlay());
}

}  // namespace
}  // namespace velmoranth::desktop::bad_sounds_test
