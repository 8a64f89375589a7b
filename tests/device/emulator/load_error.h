// What stops the loading of a library: a file that is not as it should be, or something that it
// needs and this process does not have. The text names it.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace velmoranth::emulator {

struct LoadError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// For where nothing could handle the error: the library's own code runs already, or the source is
// one of Objective-C++, whose functions catch no C++ exceptions on GCC's runtime.
[[noreturn]] inline void stop(const std::exception& error) {
    std::fprintf(stderr, "emulator: %s\n", error.what());
    std::_Exit(3);
}

}  // namespace velmoranth::emulator
