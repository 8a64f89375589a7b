#include "platform/platform.h"

#include <cstdlib>
#include <optional>

namespace velmoranth::platform {
namespace {

// Held by value, so that a record built on the stack of a test may go.
std::optional<Platform>& current() {
    static std::optional<Platform> record;
    return record;
}

}  // namespace

const Platform& platform() {
    const std::optional<Platform>& record = current();
    if (!record) {
        std::abort();
    }
    return *record;
}

void setPlatform(const Platform& record) {
    current().emplace(record);
}

void logRefusedReceiver(const Object& receiver, const std::type_info& wanted) {
    platform().log.write("objc: " + receiver.description() + " is no receiver of type " +
                         wanted.name() + "; the message is refused");
}

}  // namespace velmoranth::platform
