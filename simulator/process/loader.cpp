#include "simulator/process/loader.h"

#include "desktop/program/beside_program.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <string_view>

namespace velmoranth::simulator {

desktop::Result<std::string> findEngine() {
    const std::string installed = std::string("../../lib/velmoranth/") + kEngineFileName;
    const std::array<std::string_view, 2> places{kEngineFileName, installed};
    return desktop::findBesideProgram("the engine's library", places);
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
