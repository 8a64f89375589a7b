// A library that never finishes being mapped.
#include <unistd.h>

namespace {

[[gnu::constructor]] void load() {
    while (true) {
        pause();
    }
}

}  // namespace
