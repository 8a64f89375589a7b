// Where things lie that tests read or run.
#pragma once

#include <filesystem>

namespace velmoranth::tests {

// Of the checkout.
extern const char* const kSourceFolder;
extern const char* const kLayoutFolder;
extern const char* const kExampleTheme;
// Fonts whose glyphs are boxes of known sizes.
extern const char* const kTestFonts;

// Of the build.
extern const char* const kBuildFolder;
extern const char* const kCommand;
extern const char* const kEngineLibrary;
// Where a library named so lies that stands for the engine's.
[[nodiscard]] std::filesystem::path standInLibrary(const char* name);

extern const char* const kPython;

// The folder `part` of the real themes and catalogs ("themes", "car"): of those that
// VELMORANTH_SAMPLES names, else beside the checkout. It may be missing; a test is skipped then.
[[nodiscard]] std::filesystem::path samples(const char* part);

}  // namespace velmoranth::tests
