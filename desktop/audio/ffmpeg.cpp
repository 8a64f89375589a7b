#include "desktop/audio/ffmpeg.h"

#include "desktop/audio/shared_library.h"

#include <cstdarg>
#include <cstddef>
#include <string>

namespace velmoranth::desktop {

namespace {

// More than one allocation of a sound that is as it should be: the index of ten hours of AAC.
constexpr std::size_t kMaxAllocation = std::size_t{32} * 1024 * 1024;

void dropLogLine(void* /*context*/, int /*level*/, const char* /*format*/,
                 std::va_list /*arguments*/) {}

Result<Ffmpeg> loadFfmpeg() {
    // It brings those that the other functions are in.
    constexpr const char* kLibrary = "libavformat.so." AV_STRINGIFY(LIBAVFORMAT_VERSION_MAJOR);
    const auto library = SharedLibrary::load(kLibrary);
    if (!library) {
        return tl::unexpected(Problem{"sounds cannot be read without " + library.error().message});
    }
    Ffmpeg functions;
    const char* missing = nullptr;
#define VELMORANTH_FIND(name)                    \
    if (!library->find(#name, functions.name)) { \
        missing = #name;                         \
    }
    VELMORANTH_FFMPEG_FUNCTIONS(VELMORANTH_FIND)
#undef VELMORANTH_FIND
    if (missing != nullptr) {
        return tl::unexpected(
            Problem{std::string("sounds cannot be read: ") + kLibrary + " lacks " + missing});
    }
    functions.av_log_set_callback(dropLogLine);
    functions.av_max_alloc(kMaxAllocation);
    return functions;
}

}  // namespace

const Result<Ffmpeg>& loadedFfmpeg() {
    // Never destroyed: a sound that the engine's singleton holds is freed after main() has ended.
    static const auto* const kLoaded = new Result<Ffmpeg>(loadFfmpeg());
    return *kLoaded;
}

}  // namespace velmoranth::desktop
