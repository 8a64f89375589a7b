// SDL, which knows the sound systems of Linux and asks for nothing but a function to call. It is
// loaded with the first sound; shared_library.h says why. Frames are stereo floats, as the mixer's.
#include "desktop/audio/sdl_output.h"

#include "desktop/audio/shared_library.h"

#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

namespace {

constexpr int kBufferFrames = 512;  // 12 ms at 44.1 kHz

struct Sdl {
    decltype(&::SDL_SetHint) setHint = nullptr;
    decltype(&::SDL_InitSubSystem) initSubSystem = nullptr;
    decltype(&::SDL_QuitSubSystem) quitSubSystem = nullptr;
    decltype(&::SDL_OpenAudioDevice) openAudioDevice = nullptr;
    decltype(&::SDL_PauseAudioDevice) pauseAudioDevice = nullptr;
    decltype(&::SDL_CloseAudioDevice) closeAudioDevice = nullptr;
    decltype(&::SDL_GetError) getError = nullptr;
};

Result<Sdl> loadSdl() {
    const auto library = SharedLibrary::load("libSDL2-2.0.so.0");
    if (!library) {
        return tl::unexpected(library.error());
    }
    Sdl sdl;
    if (!library->find("SDL_SetHint", sdl.setHint) ||
        !library->find("SDL_InitSubSystem", sdl.initSubSystem) ||
        !library->find("SDL_QuitSubSystem", sdl.quitSubSystem) ||
        !library->find("SDL_OpenAudioDevice", sdl.openAudioDevice) ||
        !library->find("SDL_PauseAudioDevice", sdl.pauseAudioDevice) ||
        !library->find("SDL_CloseAudioDevice", sdl.closeAudioDevice) ||
        !library->find("SDL_GetError", sdl.getError)) {
        return tl::unexpected(Problem{"libSDL2 lacks a function"});
    }
    return sdl;
}

// ALSA's library writes on the standard error stream when there is no device, unless it is given
// somebody else to tell. Its own header declares it so.
using AlsaErrorHandler = void (*)(const char* file, int line, const char* function, int error,
                                  const char* format, ...);

void dropAlsaError(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                   const char* /*format*/, ...) {}

void silenceAlsa() {
    int (*setHandler)(AlsaErrorHandler) = nullptr;
    const auto library = SharedLibrary::load("libasound.so.2");
    if (library && library->find("snd_lib_error_set_handler", setHandler)) {
        setHandler(dropAlsaError);
    }
}

void pull(void* mixer, Uint8* bytes, int count) {
    static_cast<Mixer*>(mixer)->render(std::span(reinterpret_cast<float*>(bytes),
                                                 static_cast<std::size_t>(count) / sizeof(float)));
}

// The machine's device, which calls `pull` on a thread of its own.
class OpenDevice {
  public:
    static Result<std::unique_ptr<OpenDevice>> open(Mixer& mixer) {
        const Result<Sdl> sdl = loadSdl();
        if (!sdl) {
            return tl::unexpected(sdl.error());
        }
        silenceAlsa();
        // A program's signals are its own.
        sdl->setHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        sdl->setHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "VelMoranth");
        if (sdl->initSubSystem(SDL_INIT_AUDIO) != 0) {
            return tl::unexpected(Problem{sdl->getError()});
        }
        SDL_AudioSpec wanted{};
        wanted.freq = mixer.sampleRate();
        wanted.format = AUDIO_F32SYS;
        wanted.channels = static_cast<Uint8>(kChannels);
        wanted.samples = kBufferFrames;
        wanted.callback = pull;
        wanted.userdata = &mixer;
        const SDL_AudioDeviceID device = sdl->openAudioDevice(nullptr, 0, &wanted, nullptr, 0);
        if (device == 0) {
            Problem problem{sdl->getError()};
            sdl->quitSubSystem(SDL_INIT_AUDIO);
            return tl::unexpected(std::move(problem));
        }
        sdl->pauseAudioDevice(device, 0);
        return std::unique_ptr<OpenDevice>(new OpenDevice(*sdl, device));
    }

    OpenDevice(const OpenDevice&) = delete;
    OpenDevice& operator=(const OpenDevice&) = delete;

    ~OpenDevice() {
        sdl_.closeAudioDevice(device_);
        sdl_.quitSubSystem(SDL_INIT_AUDIO);
    }

  private:
    OpenDevice(const Sdl& sdl, SDL_AudioDeviceID device) : sdl_(sdl), device_(device) {}

    const Sdl sdl_;
    const SDL_AudioDeviceID device_;
};

// Pulls as fast as a device would, and drops what it gets: sounds end when they should.
class SilentDevice {
  public:
    explicit SilentDevice(Mixer& mixer)
        : mixer_(mixer), thread_([this](const std::stop_token& stop) { run(stop); }) {}

    SilentDevice(const SilentDevice&) = delete;
    SilentDevice& operator=(const SilentDevice&) = delete;

  private:
    void run(const std::stop_token& stop) {
        std::vector<float> frames(kBufferFrames * kChannels);
        const auto length = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
            std::chrono::duration<double>(static_cast<double>(kBufferFrames) /
                                          mixer_.sampleRate()));
        auto next = std::chrono::steady_clock::now();
        std::mutex mutex;
        std::condition_variable_any wake;
        std::unique_lock lock(mutex);
        while (!wake.wait_until(lock, stop, next, [&stop] { return stop.stop_requested(); })) {
            mixer_.render(frames);
            next += length;
        }
    }

    Mixer& mixer_;
    std::jthread thread_;  // last: it uses the mixer
};

}  // namespace

struct SdlOutput::Device {
    std::unique_ptr<OpenDevice> open;
    std::optional<SilentDevice> silent;
};

SdlOutput::SdlOutput(Mixer& mixer, std::function<void(const std::string& line)> sayLine)
    : mixer_(mixer), sayLine_(std::move(sayLine)) {}

SdlOutput::~SdlOutput() = default;

void SdlOutput::open() {
    if (device_ != nullptr) {
        return;
    }
    device_ = std::make_unique<Device>();
    auto opened = OpenDevice::open(mixer_);
    if (opened) {
        device_->open = std::move(*opened);
        return;
    }
    device_->silent.emplace(mixer_);
    if (sayLine_) {
        sayLine_("no sound device: sounds stay silent (" + opened.error().message + ")");
    }
}

bool SdlOutput::isHeard() const {
    return device_ != nullptr && device_->open != nullptr;
}

double SdlOutput::latency() const {
    return isHeard() ? 2.0 * kBufferFrames / mixer_.sampleRate() : 0;
}

}  // namespace velmoranth::desktop
