#include "desktop/program/beside_program.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>

namespace velmoranth::desktop {
namespace {

std::string programFolder() {
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    const std::string whole(path.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return whole.substr(0, whole.rfind('/') + 1);
}

}  // namespace

Result<std::string> findBesideProgram(std::string_view what,
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
    return tl::unexpected(Problem{std::string(what) + " was not found; tried " + tried});
}

}  // namespace velmoranth::desktop
