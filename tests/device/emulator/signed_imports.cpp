// Imports that are given functions and objects of the library, which are signed where the library
// signs. Each does what this system's own function does, once it has authenticated what it was
// given.
#include "device/emulator/imports.h"
#include "device/emulator/load_error.h"
#include "device/emulator/pac.h"
#include <dlfcn.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace velmoranth::emulator {
namespace {

template <class Function>
Function ofProcess(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
}

template <class Function>
Function ofCxxLibrary(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<std::uint64_t>(cxxImport(name)));
}

void addObserver(void* center, const void* observer, void (*callback)(), const void* name,
                 const void* object, long behavior) {
    using Add = void (*)(void*, const void*, void (*)(), const void*, const void*, long);
    ofProcess<Add>("CFNotificationCenterAddObserver")(
        center, observer, pac::given(callback, "CFNotificationCenterAddObserver's callback"), name,
        object, behavior);
}

void* createDataProvider(void* info, const void* data, std::size_t size, void (*release)()) {
    using Create = void* (*)(void*, const void*, std::size_t, void (*)());
    return ofProcess<Create>("CGDataProviderCreateWithData")(
        info, data, size, pac::given(release, "CGDataProviderCreateWithData's callback"));
}

void callOnce(volatile unsigned long* flag, void* argument, void (*function)(void*)) {
    using Call = void (*)(volatile unsigned long*, void*, void (*)(void*));
    ofCxxLibrary<Call>("__ZNSt3__111__call_onceERVmPvPFvS2_E")(
        flag, argument, pac::given(function, "what std::call_once calls"));
}

[[noreturn]] void throwException(void* object, void* type, void* (*destructor)(void*)) {
    using Throw = void (*)(void*, void*, void* (*)(void*));
    ofCxxLibrary<Throw>("___cxa_throw")(object, type,
                                        pac::given(destructor, "the destructor of an exception"));
    std::abort();
}

// The vtable that an object of the library has.
const std::uint64_t* vtableOf(const void* object) {
    const auto& pointer = *static_cast<const std::uint64_t*>(object);
    return reinterpret_cast<const std::uint64_t*>(
        pac::authentic(pac::Kind::vtablePointer, pointer, &pointer, "an object's"));
}

// The last weak reference to what std::make_shared made: the library's own object has to go. Counts
// begin with 0 and end with -1.
void releaseWeak(void* control) {
    struct Counts {
        const void* vtable;
        long shared;
        long weak;
    };

    constexpr std::size_t kOnZeroSharedWeak = 4;
    auto* const counts = static_cast<Counts*>(control);
    if (__atomic_load_n(&counts->weak, __ATOMIC_ACQUIRE) != 0 &&
        __atomic_add_fetch(&counts->weak, -1, __ATOMIC_ACQ_REL) != -1) {
        return;
    }
    const std::uint64_t* const entry = vtableOf(control) + kOnZeroSharedWeak;
    reinterpret_cast<void (*)(void*)>(pac::authenticEntry(
        "_ZNSt3__119__shared_weak_count21__on_zero_shared_weakEv", *entry, entry))(control);
}

// As the C++ library has them. Their vtable pointers are authenticated by the loader already.
struct TypeInfo {
    const void* vtable;
    std::uint64_t name;
    const TypeInfo* base;  // of a class with one base, which lies at its beginning
};

const char* nameOf(const TypeInfo& type) {
    constexpr std::uint64_t kNotUnique = std::uint64_t{1} << 63U;
    return reinterpret_cast<const char*>(type.name & ~kNotUnique);
}

const void* typeTable(const char* name) {
    constexpr std::size_t kFunctions = 16;
    return static_cast<const char*>(cxxImport(name)) + kFunctions;
}

// Up from the object's own class. The library's classes have one base each, or none.
void* castDynamically(void* object, const TypeInfo* /*from*/, const TypeInfo* to, long /*hint*/) {
    static const void* const kOneBase = typeTable("__ZTVN10__cxxabiv120__si_class_type_infoE");
    static const void* const kNoBase = typeTable("__ZTVN10__cxxabiv117__class_type_infoE");
    const std::uint64_t* const vtable = vtableOf(object);
    if (vtable[-2] != 0) {
        stop(LoadError("dynamic_cast from a base that does not lie at the beginning"));
    }
    const auto* type = reinterpret_cast<const TypeInfo*>(vtable[-1]);
    while (type != to && std::strcmp(nameOf(*type), nameOf(*to)) != 0) {
        if (type->vtable == kNoBase) {
            return nullptr;
        }
        if (type->vtable != kOneBase) {
            stop(LoadError(std::string("dynamic_cast of a class with several bases: ") +
                           nameOf(*type)));
        }
        type = type->base;
    }
    return object;
}

template <class Function>
const void* addressOf(Function* function) {
    return reinterpret_cast<const void*>(function);
}

}  // namespace

std::span<const Import> signedImports() {
    static const std::array kImports = {
        Import{"_CFNotificationCenterAddObserver", addressOf(&addObserver)},
        Import{"_CGDataProviderCreateWithData", addressOf(&createDataProvider)},
        Import{"__ZNSt3__111__call_onceERVmPvPFvS2_E", addressOf(&callOnce)},
        Import{"__ZNSt3__119__shared_weak_count14__release_weakEv", addressOf(&releaseWeak)},
        Import{"___cxa_throw", addressOf(&throwException)},
        Import{"___dynamic_cast", addressOf(&castDynamically)},
    };
    return pac::hasKeys() ? std::span<const Import>(kImports) : std::span<const Import>();
}

}  // namespace velmoranth::emulator
