// The phone's C++ library is libc++ on libc++abi. This process has these beside its own C++
// library, bound to themselves alone, so that neither sees the other. They and this process's own
// exceptions share one unwinder.
#include "device/emulator/calls.h"
#include "device/emulator/imports.h"
#include "device/emulator/load_error.h"
#include <cxxabi.h>
#include <dlfcn.h>

#include <array>
#include <cstdlib>
#include <memory>

namespace velmoranth::emulator {
namespace {

void* open(const char* name) {
    void* const library = dlopen(name, RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
    if (library == nullptr) {
        throw LoadError(dlerror());
    }
    return library;
}

// In the order of search: what takes or gives a std::string in the layout that the phone's library
// has on arm64, then everything else. The latter are opened first, so that they do not use the
// former.
const std::array<void*, 3>& libraries() {
    static const auto kLibraries = [] {
        void* const abi = open("libc++abi.so.1");
        void* const library = open("libc++.so.1");
        return std::array{open("libvelmoranth_phone_strings.so"), library, abi};
    }();
    return kLibraries;
}

// The name of a scope or function without its template arguments.
std::string_view withoutTemplate(std::string_view name) {
    return name.substr(0, name.find('<'));
}

// Whether a demangled name is X::X(...) or X::~X(...).
bool isConstructorOrDestructor(std::string_view name) {
    int depth = 0;
    std::size_t component = 0;  // where the last one begins, and the one before it
    std::size_t scope = 0;
    std::size_t i = 0;
    for (; i < name.size() && (depth != 0 || name[i] != '('); ++i) {
        depth += name[i] == '<' ? 1 : 0;
        depth -= name[i] == '>' ? 1 : 0;
        if (depth == 0 && name.substr(i).starts_with("::")) {
            scope = component;
            component = i + 2;
        }
    }
    if (component == 0) {
        return false;
    }
    std::string_view last = name.substr(component, i - component);
    if (last.starts_with('~')) {
        last.remove_prefix(1);
    }
    return withoutTemplate(last) == withoutTemplate(name.substr(scope, component - 2 - scope));
}

bool returnsItsObject(const char* mangled) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    return name != nullptr && isConstructorOrDestructor(name.get());
}

}  // namespace

const void* cxxImport(const std::string& name) {
    const char* const symbol = name.c_str() + 1;
    for (void* const library : libraries()) {
        if (void* const address = dlsym(library, symbol)) {
            return returnsItsObject(symbol) ? constructorFromLibrary(address) : address;
        }
    }
    return nullptr;
}

}  // namespace velmoranth::emulator
