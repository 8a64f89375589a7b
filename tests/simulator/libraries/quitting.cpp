// A library that ends its process with a status of its own while it is being mapped.
#include <unistd.h>

namespace {

[[gnu::constructor]] void load() {
    _exit(7);
}

}  // namespace
