#include "cli/device_program.h"

#include "cli/messages.h"
#include "desktop/program/beside_program.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

namespace velmoranth::cli {
namespace {

constexpr std::array<std::string_view, 2> kPlaces{"velmoranth-device",
                                                  "../libexec/velmoranth/velmoranth-device"};

char** programArguments = nullptr;

}  // namespace

void keepProgramArguments(char** arguments) {
    programArguments = arguments;
}

ExitCode becomeDevice() {
    const auto path = desktop::findBesideProgram("the program that draws", kPlaces);
    if (!path) {
        return fail(ExitCode::badInput, path.error().message + "; install velmoranth again");
    }
    execv(path->c_str(), programArguments);
    return fail(ExitCode::badInput,
                desktop::Problem{std::string("the program that draws cannot be started: ") +
                                     std::strerror(errno),
                                 *path});
}

ExitCode becomeDevice(const Arguments& /*arguments*/) {
    return becomeDevice();
}

}  // namespace velmoranth::cli
