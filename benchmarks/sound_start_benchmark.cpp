// From the message `play` of a key's feedback to the first sample that is heard, in steps: the hook
// with its search for the theme's folder, the opening of the file, and the first block that a sound
// card pulls. Each against what it cannot do without: the reads and probes by hand, and the
// decoding library alone up to its first frame.
#include "core/entry_points.h"
#include "core/velmoranth.h"
#include "desktop/audio/audio.h"
#include "desktop/audio/audio_session.h"
#include "desktop/audio/mixer.h"
#include "desktop/audio/sound_decoder.h"
#include "desktop/audio/sound_file.h"
#include "desktop/files/device_root.h"
#include "desktop/files/file_manager.h"
#include "desktop/plist/property_lists.h"
#include "tests/support/replaced_services.h"
#include "tests/support/sounds/sounds.h"
#include "tests/support/test_device.h"

#include "timing.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::benchmarks {

namespace {

const std::string kPreferences = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kFolder = "/Library/Themes/Tones.theme/UISounds";
const std::string kClick = kFolder + "/key_press_click.caf";
constexpr std::size_t kBlockFrames = 512;  // what a sound card asks for

struct Feedback final : platform::UIFeedback {
    [[nodiscard]] std::string className() const override { return "_UIFeedback"; }

    [[nodiscard]] std::uint32_t _effectiveSystemSoundID() override { return 1104; }
};

struct SilentLog final : platform::SystemLog {
    void write(const std::string& /*line*/) override {}
};

// Finds no sound, so that a search for one is left.
class NoSounds final : public platform::Audio {
  public:
    [[nodiscard]] platform::AudioSessionRef sharedInstance() override { return session_; }

    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithContentsOfURL(
        const std::string& /*path*/) override {
        return nullptr;
    }

    [[nodiscard]] platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<platform::Data>& /*data*/) override {
        return nullptr;
    }

  private:
    platform::AudioSessionRef session_ = std::make_shared<desktop::RecordedAudioSession>();
};

class NoOutput final : public desktop::SoundOutput {
  public:
    void open() override {}
};

// A device with a theme's key click: 16-bit CAF, or IMA4 where `encoder` says so.
class Device {
  public:
    explicit Device(const std::string& encoder)
        : root(*desktop::DeviceRoot::open(tests_.hostFolder())),
          files(root),
          plists(root),
          audio(root, mixer, output_) {
        tests_.stopRecording();
        tests_.file(kClick, tests::soundFile("caf", encoder, {.seconds = 0.05}));
        tests_.activeThemes({"Tones.theme"}, {{"enable", true}});
        tests_.runtime.addClass("_UIFeedback");
        tests_.runtime.addInstanceMethod(
            "_UIFeedback", "play",
            std::function<void(platform::UIFeedback&)>([](platform::UIFeedback&) {}));
        core::registerClasses();
        core::installHooks();
        core::startSettings();
        tests::replaceServices(
            {.propertyLists = &plists, .fileManager = &files, .log = &log_, .audio = &audio});
    }

    void useNoSounds() { tests::replaceServices({.audio = &noSounds_}); }

    void play() { tests_.runtime.send<void>(feedback_, "play"); }

    // The search for the folder that every sound takes.
    void searchByHand() {
        const auto file = root->readFile(kPreferences, desktop::kMaxPropertyListBytes);
        benchmark::DoNotOptimize(desktop::parsePropertyList(*file));
        benchmark::DoNotOptimize(files.fileExistsAtPath(kFolder));
    }

    // The decoding library alone, told what kind of file it is, to the first frame.
    void decodeByHand() const {
        AVFormatContext* container = nullptr;
        const std::string path = tests_.hostFolder() + kClick;
        const AVInputFormat* const caf = av_find_input_format("caf");
        if (avformat_open_input(&container, path.c_str(), caf, nullptr) != 0) {
            std::abort();
        }
        const AVCodecParameters* const parameters = container->streams[0]->codecpar;
        const AVCodec* const decoder = avcodec_find_decoder(parameters->codec_id);
        AVCodecContext* codec = avcodec_alloc_context3(decoder);
        AVPacket* packet = av_packet_alloc();
        AVFrame* frame = av_frame_alloc();
        if (avcodec_parameters_to_context(codec, parameters) < 0 ||
            avcodec_open2(codec, decoder, nullptr) != 0 || av_read_frame(container, packet) != 0 ||
            avcodec_send_packet(codec, packet) != 0 || avcodec_receive_frame(codec, frame) != 0) {
            std::abort();
        }
        benchmark::DoNotOptimize(frame->data[0][0]);
        av_frame_free(&frame);
        av_packet_free(&packet);
        avcodec_free_context(&codec);
        avformat_close_input(&container);
    }

    // Pulls until something is heard.
    void pullFirstSample() {
        do {
            mixer.render(block_);
        } while (
            std::all_of(block_.begin(), block_.end(), [](float sample) { return sample == 0; }));
    }

    [[nodiscard]] const std::vector<float>& block() const { return block_; }

  private:
    tests::TestDevice tests_;
    SilentLog log_;
    NoSounds noSounds_;
    NoOutput output_;
    Feedback feedback_;
    std::vector<float> block_ = std::vector<float>(kBlockFrames * desktop::kChannels);

  public:
    std::shared_ptr<desktop::DeviceRoot> root;
    desktop::DesktopFileManager files;
    desktop::DesktopPropertyLists plists;
    desktop::Mixer mixer;
    desktop::DesktopAudio audio;
};

void clickToFirstSample(benchmark::State& state, const std::string& encoder) {
    Device device(encoder);
    device.play();  // The libraries are loaded once.
    compare(
        state,
        [&] {
            device.play();
            device.pullFirstSample();
        },
        [&] {
            device.searchByHand();
            device.decodeByHand();
        });
}

void searchForTheme(benchmark::State& state) {
    Device device("pcm_s16le");
    device.useNoSounds();
    compare(state, [&] { device.play(); }, [&] { device.searchByHand(); });
}

void openFile(benchmark::State& state, const std::string& encoder) {
    Device device(encoder);
    compare(
        state,
        [&] {
            const auto file = desktop::SoundFile::open(*device.root, kClick);
            benchmark::DoNotOptimize(desktop::SoundDecoder::open(*file, 44100));
        },
        [&] { device.decodeByHand(); });
}

// A block of one voice, against adding it up by hand.
void firstBlock(benchmark::State& state) {
    Device device("pcm_s16le");
    const std::vector<float> samples = tests::samplesOf({.seconds = 0.1});
    std::vector<float> sum(device.block().size());

    // A sound that is there already, as long as it is asked for.
    class Ready final : public desktop::SoundStream {
      public:
        explicit Ready(const std::vector<float>& samples) : samples_(samples) {}

        std::size_t read(std::span<float> stereo) override {
            std::copy_n(samples_.begin(), stereo.size(), stereo.begin());
            return stereo.size() / desktop::kChannels;
        }

      private:
        const std::vector<float>& samples_;
    };

    const auto voice = device.mixer.start(std::make_unique<Ready>(samples), "ready", 0.5F);
    constexpr int kTurns = 100;  // one is too short to be measured
    compare(
        state,
        [&] {
            for (int i = 0; i < kTurns; ++i) {
                device.pullFirstSample();
            }
        },
        [&] {
            for (int turn = 0; turn < kTurns; ++turn) {
                for (std::size_t i = 0; i < sum.size(); ++i) {
                    sum[i] = std::clamp(samples[i] * 0.5F, -1.0F, 1.0F);
                }
                benchmark::ClobberMemory();
            }
        });
}

BENCHMARK_CAPTURE(clickToFirstSample, pcm, std::string("pcm_s16le"))->UseManualTime();
BENCHMARK_CAPTURE(clickToFirstSample, ima4, std::string("adpcm_ima_qt"))->UseManualTime();
BENCHMARK(searchForTheme)->UseManualTime();
BENCHMARK_CAPTURE(openFile, pcm, std::string("pcm_s16le"))->UseManualTime();
BENCHMARK_CAPTURE(openFile, ima4, std::string("adpcm_ima_qt"))->UseManualTime();
BENCHMARK(firstBlock)->UseManualTime();

}  // namespace

}  // namespace velmoranth::benchmarks
