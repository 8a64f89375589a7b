// A library that logs and then ends its process with a signal while it is being mapped.
#include "platform/platform.h"

#include <cstdlib>

namespace {

[[gnu::constructor]] void load() {
    velmoranth::platform::platform().log.write("about to break");
    std::abort();
}

}  // namespace
