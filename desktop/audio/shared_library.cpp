#include "desktop/audio/shared_library.h"

#include <dlfcn.h>

namespace velmoranth::desktop {

Result<SharedLibrary> SharedLibrary::load(const std::string& name) {
    void* const handle = ::dlopen(name.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* const error = ::dlerror();
        return tl::unexpected(Problem{error != nullptr ? error : name + " cannot be loaded"});
    }
    return SharedLibrary(handle);
}

void* SharedLibrary::symbol(const char* name) const {
    return ::dlsym(handle_, name);
}

}  // namespace velmoranth::desktop
