#include "cli/device_program.h"

#include "cli/messages.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace velmoranth::cli {
namespace {

constexpr std::array<std::string_view, 2> kPlaces{"velmoranth-device",
                                                  "../libexec/velmoranth/velmoranth-device"};

char** programArguments = nullptr;

std::string programFolder() {
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    const std::string whole(path.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return whole.substr(0, whole.rfind('/') + 1);
}

}  // namespace

void keepProgramArguments(char** arguments) {
    programArguments = arguments;
}

ExitCode becomeDevice() {
    const std::string folder = programFolder();
    std::string tried;
    for (const std::string_view place : kPlaces) {
        const std::string path = folder + std::string(place);
        execv(path.c_str(), programArguments);
        if (errno != ENOENT && errno != ENOTDIR) {
            return fail(ExitCode::badInput,
                        desktop::Problem{std::string("the program that draws cannot be started: ") +
                                             std::strerror(errno),
                                         path});
        }
        tried += (tried.empty() ? "" : " and ") + path;
    }
    return fail(ExitCode::badInput, "the program that draws was not found; tried " + tried +
                                        "; install velmoranth again");
}

ExitCode becomeDevice(const Arguments& /*arguments*/) {
    return becomeDevice();
}

}  // namespace velmoranth::cli
