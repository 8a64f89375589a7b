#include "device/emulator/imports.h"

#include "device/emulator/calls.h"
#include "device/emulator/load_error.h"
#include <dlfcn.h>
#include <objc/runtime.h>

#include <algorithm>
#include <array>

namespace velmoranth::emulator {
namespace {

constexpr std::string_view kCxxLibrary = "/usr/lib/libc++.1.dylib";
constexpr std::string_view kClassPrefix = "_OBJC_CLASS_$_";
constexpr std::string_view kMetaclassPrefix = "_OBJC_METACLASS_$_";

// Functions of this process that return a truth value, whose bits above the eighth may be anything
// here. Each such import has to be listed.
constexpr std::array<std::string_view, 2> kTruthFunctions = {"_CGImageIsMask",
                                                             "_class_isMetaClass"};

const void* find(std::span<const Import> imports, const std::string& name) {
    const auto found = std::ranges::find(imports, name, &Import::name);
    return found == imports.end() ? nullptr : found->address;
}

// Classes bring their own names; nil for other imports.
id classNamed(const std::string& name) {
    if (name.starts_with(kClassPrefix)) {
        return static_cast<id>(objc_getClass(name.c_str() + kClassPrefix.size()));
    }
    if (name.starts_with(kMetaclassPrefix)) {
        const Class cls = objc_getClass(name.c_str() + kMetaclassPrefix.size());
        return cls == Nil ? nil : static_cast<id>(object_getClass(static_cast<id>(cls)));
    }
    // Constant strings are of GNUstep's class.
    return name == "___CFConstantStringClassReference"
               ? static_cast<id>(objc_getClass("NSConstantString"))
               : nil;
}

const void* processImport(const std::string& name) {
    void* const address = dlsym(RTLD_DEFAULT, name.c_str() + 1);
    if (address != nullptr && std::ranges::find(kTruthFunctions, name) != kTruthFunctions.end()) {
        return callFromLibrary(address, SmallType::boolean);
    }
    return address;
}

const void* findImport(const std::string& name, std::string_view library) {
    for (const auto imports : {signedImports(), systemImports()}) {
        if (const void* const known = find(imports, name)) {
            return known;
        }
    }
    if (library == kCxxLibrary) {
        return cxxImport(name);
    }
    for (const auto imports : {objectiveCImports(), exceptionImports()}) {
        if (const void* const known = find(imports, name)) {
            return known;
        }
    }
    if (const id cls = classNamed(name)) {
        return cls;
    }
    return name.starts_with('_') ? processImport(name) : nullptr;
}

}  // namespace

std::uint64_t importOf(const std::string& name, std::string_view library) {
    const void* const address = findImport(name, library);
    if (address == nullptr) {
        throw LoadError("nothing stands for " + name + " of " +
                        std::string(library.empty() ? "any library" : library));
    }
    return reinterpret_cast<std::uint64_t>(address);
}

}  // namespace velmoranth::emulator
