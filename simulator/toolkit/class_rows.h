// Tables of the platform's classes.
#pragma once

#include "desktop/runtime/runtime.h"
#include "simulator/device.h"

#include <span>
#include <string>
#include <string_view>

namespace velmoranth::simulator {

enum class Systems { both, only12, only13 };

struct ClassRow {
    std::string_view name;
    std::string_view superclass;  // "" for a root
    Systems systems = Systems::both;
};

[[nodiscard]] inline bool isIn(Systems systems, const SystemVersion& system) {
    return systems == Systems::both || (systems == Systems::only12) == (system.major < 13);
}

// Makes the classes of that system known. Each stands after its superclass.
inline void addClasses(std::span<const ClassRow> rows, const SystemVersion& system,
                       desktop::Runtime& runtime) {
    for (const ClassRow& row : rows) {
        if (isIn(row.systems, system)) {
            runtime.addClass(std::string(row.name), std::string(row.superclass));
        }
    }
}

}  // namespace velmoranth::simulator
