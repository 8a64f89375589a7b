#include "cli/device_program.h"

#include "cli/messages.h"
#include "desktop/program/beside_program.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace velmoranth::cli {
namespace {

constexpr std::array<std::string_view, 2> kPlaces{"velmoranth-device",
                                                  "../libexec/velmoranth/velmoranth-device"};

char** programArguments = nullptr;

// A screen's pictures are tens of megabytes, and to be given them in pages of 4 KiB takes a tenth
// of what drawing it does. The C library reads this when a program starts, and those that a program
// starts get it too. Whoever tunes the library is let be.
void askForLargePages() {
    constexpr int kKeepWhatIsSet = 0;
    setenv("GLIBC_TUNABLES", "glibc.malloc.hugetlb=1", kKeepWhatIsSet);
}

}  // namespace

void keepProgramArguments(char** arguments) {
    programArguments = arguments;
}

ExitCode becomeDevice() {
    const auto path = desktop::findBesideProgram("the program that draws", kPlaces);
    if (!path) {
        return fail(ExitCode::badInput, path.error().message + "; install velmoranth again");
    }
    askForLargePages();
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
