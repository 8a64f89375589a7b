// How the library comes into a test's process: loaded as the hooking loader does it, start-up and
// all. Tests see nothing of it but its classes, by name, and the names that it exports. Each build
// of the tests brings the loader for the library that it tests.
#pragma once

namespace velmoranth::standins {

// Once a process. Ends it, with a message, when the library cannot be loaded.
void loadLibrary();

// The function or variable that the library exports under that name, in C's spelling; null when it
// exports none. The library has been loaded.
[[nodiscard]] void* exportedSymbol(const char* name);

}  // namespace velmoranth::standins
