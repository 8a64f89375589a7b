// The stand-in for the hooking loader: maps the engine's library into this process, whose load-time
// code does the rest.
#pragma once

#include "desktop/result/result.h"

#include <string>

namespace velmoranth::simulator {

inline constexpr const char* kEngineFileName = "VelMoranth.so";

// The library of this program: beside it, else in ../../lib/velmoranth. Fails with the places that
// were tried.
[[nodiscard]] desktop::Result<std::string> findEngine();

// Maps the library for the life of the process, all symbols bound at once. The platform record is
// set and exported by this program. Fails with the dynamic linker's words.
[[nodiscard]] desktop::Result<void> loadEngine(const std::string& path);

}  // namespace velmoranth::simulator
