#include "tests/support/places.h"

#include <cstdlib>
#include <string>

namespace velmoranth::tests {

const char* const kSourceFolder = SOURCE_FOLDER;
const char* const kLayoutFolder = SOURCE_FOLDER "/layout";
const char* const kExampleTheme = SOURCE_FOLDER "/examples/themes/Kilnware.theme";
const char* const kTestFonts = SOURCE_FOLDER "/tests/support/fonts";
const char* const kBuildFolder = BUILD_FOLDER;
const char* const kCommand = BUILD_FOLDER "/velmoranth";
const char* const kEngineLibrary = BUILD_FOLDER "/VelMoranth.so";
const char* const kPython = PYTHON;

std::filesystem::path standInLibrary(const char* name) {
    return std::filesystem::path(BUILD_FOLDER "/tests/libraries") / (std::string(name) + ".so");
}

std::filesystem::path samples(const char* part) {
    const char* const named = std::getenv("VELMORANTH_SAMPLES");
    return std::filesystem::path(named != nullptr ? named : SOURCE_FOLDER "/../shared/samples") /
           part;
}

}  // namespace velmoranth::tests
