#include "platform/objc_runtime.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <string>

namespace velmoranth::platform {

std::string Object::description() const {
    char address[24];  // NOLINT(modernize-avoid-c-arrays): snprintf's buffer
    std::snprintf(address, sizeof address, "0x%" PRIxPTR, reinterpret_cast<std::uintptr_t>(this));
    return "<" + className() + ": " + address + ">";
}

}  // namespace velmoranth::platform
