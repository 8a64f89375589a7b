// The library built for this machine, through the system's own loader.
#include "device/library/load_library.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace velmoranth::standins {
namespace {

void* library = nullptr;

const char* libraryPath() {
    const char* const given = std::getenv("VELMORANTH_LIBRARY");
    return given == nullptr ? DEVICE_LIBRARY : given;
}

}  // namespace

void loadLibrary() {
    library = dlopen(libraryPath(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        std::abort();
    }
}

void* exportedSymbol(const char* name) {
    return library == nullptr ? nullptr : dlsym(library, name);
}

}  // namespace velmoranth::standins
