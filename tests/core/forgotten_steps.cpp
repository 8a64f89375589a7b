#include "tests/core/forgotten_steps.h"

#include "platform/foundation.h"

#include <string>
#include <string_view>

namespace velmoranth::tests {

namespace forgotten_steps {

Journal* journal = nullptr;

void write(const std::string& line) {
    if (journal != nullptr) {
        journal->write(line);
    }
}

std::string textOf(const platform::PropertyList* value) {
    return value == nullptr ? "(null)" : platform::description(*value);
}

// By the names that the linker gives: __real_ for the engine's own, __wrap_ for what is called in
// its place.
const platform::PropertyList*
realObjectForKey(const platform::Dictionary& dictionary, std::string_view key) __asm__(
    "__real__ZN10velmoranth8platform12objectForKeyERKSt3mapINSt7__cxx"
    "1112basic_stringIcSt11char_traitsIcESaIcEEENS0_12PropertyListESt"
    "4lessIvESaISt4pairIKS7_S8_EEESt17basic_string_viewIcS5_E");
const platform::PropertyList*
wrappedObjectForKey(const platform::Dictionary& dictionary, std::string_view key) __asm__(
    "__wrap__ZN10velmoranth8platform12objectForKeyERKSt3mapINSt7__cxx"
    "1112basic_stringIcSt11char_traitsIcESaIcEEENS0_12PropertyListESt"
    "4lessIvESaISt4pairIKS7_S8_EEESt17basic_string_viewIcS5_E");
bool realBoolValue(const platform::PropertyList* value) __asm__(
    "__real__ZN10velmoranth8platform9boolValueEPKNS0_12PropertyListE");
bool wrappedBoolValue(const platform::PropertyList* value) __asm__(
    "__wrap__ZN10velmoranth8platform9boolValueEPKNS0_12PropertyListE");
float realFloatValue(const platform::PropertyList* value) __asm__(
    "__real__ZN10velmoranth8platform10floatValueEPKNS0_12PropertyListE");
float wrappedFloatValue(const platform::PropertyList* value) __asm__(
    "__wrap__ZN10velmoranth8platform10floatValueEPKNS0_12PropertyListE");
platform::NullableString realWallpaperFileName(platform::NullableString path) __asm__(
    "__real__ZN10velmoranth5hooks17wallpaperFileNameESt8optionalINSt7__cxx1112basic_stringIcSt11"
    "char_traitsIcESaIcEEEE");
platform::NullableString wrappedWallpaperFileName(platform::NullableString path) __asm__(
    "__wrap__ZN10velmoranth5hooks17wallpaperFileNameESt8optionalINSt7__cxx1112basic_stringIcSt11"
    "char_traitsIcESaIcEEEE");

const platform::PropertyList* wrappedObjectForKey(const platform::Dictionary& dictionary,
                                                  std::string_view key) {
    write("objectForKey " + std::string(key));
    return realObjectForKey(dictionary, key);
}

bool wrappedBoolValue(const platform::PropertyList* value) {
    write("boolValue " + textOf(value));
    return realBoolValue(value);
}

float wrappedFloatValue(const platform::PropertyList* value) {
    write("floatValue " + textOf(value));
    return realFloatValue(value);
}

platform::NullableString wrappedWallpaperFileName(platform::NullableString path) {
    write("wallpaperFileName " + path.value_or("(null)"));
    return realWallpaperFileName(path);
}

}  // namespace forgotten_steps

WatchedSteps::WatchedSteps(Journal& journal) {
    forgotten_steps::journal = &journal;
}

WatchedSteps::~WatchedSteps() {
    forgotten_steps::journal = nullptr;
}

}  // namespace velmoranth::tests
