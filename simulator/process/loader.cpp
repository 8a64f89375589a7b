#include "simulator/process/loader.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>
#include <cstdlib>

namespace velmoranth::simulator {
namespace {

std::string programFolder() {
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    const std::string whole(path.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return whole.substr(0, whole.rfind('/') + 1);
}

}  // namespace

desktop::Result<std::string> findBesideProgram(std::string_view what,
                                               std::span<const std::string_view> places) {
    const std::string folder = programFolder();
    std::string tried;
    for (const std::string_view place : places) {
        std::string path = folder + std::string(place);
        if (access(path.c_str(), R_OK) == 0) {
            return path;
        }
        tried += (tried.empty() ? "" : " and ") + path;
    }
    return tl::unexpected(desktop::Problem{std::string(what) + " was not found; tried " + tried});
}

desktop::Result<std::string> findEngine() {
    const std::string installed = std::string("../../lib/velmoranth/") + kEngineFileName;
    const std::array<std::string_view, 2> places{kEngineFileName, installed};
    return findBesideProgram("the engine's library", places);
}

desktop::Result<void> loadEngine(const std::string& path) {
    // A name without a slash would be searched for along the machine's library path.
    const std::string name = path.find('/') == std::string::npos ? "./" + path : path;
    if (access(name.c_str(), R_OK) != 0) {
        return tl::unexpected(desktop::Problem{"the engine's library cannot be read", path});
    }
    if (dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr) {
        const char* const reason = dlerror();
        return tl::unexpected(desktop::Problem{
            "the engine's library cannot be loaded: " + std::string(reason ? reason : "no reason"),
            path});
    }
    return {};
}

}  // namespace velmoranth::simulator
