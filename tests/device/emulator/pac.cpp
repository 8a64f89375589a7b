#include "device/emulator/pac.h"

#include "device/emulator/image.h"
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace velmoranth::emulator::pac {
namespace {

struct State {
    bool isArm64e = false;
    bool hasKeys = false;
    std::uint64_t start = 0;  // of the library
    std::uint64_t end = 0;
    std::array<std::atomic<unsigned>, std::size(kRules)> authenticated = {};
};

State& state() {
    static State theState;
    return theState;
}

using Operation = std::uint64_t (*)(std::uint64_t pointer, std::uint64_t modifier);

#define VM_OPERATION(name)                                                                \
    std::uint64_t name(std::uint64_t pointer, std::uint64_t modifier) {                   \
        asm(".arch_extension pauth\n\t" #name " %0, %1" : "+r"(pointer) : "r"(modifier)); \
        return pointer;                                                                   \
    }
VM_OPERATION(pacia)
VM_OPERATION(pacib)
VM_OPERATION(pacda)
VM_OPERATION(pacdb)
VM_OPERATION(autia)
VM_OPERATION(autib)
VM_OPERATION(autda)
VM_OPERATION(autdb)
#undef VM_OPERATION

// In the order of the keys.
constexpr std::array<Operation, 4> kSign = {&pacia, &pacib, &pacda, &pacdb};
constexpr std::array<Operation, 4> kAuthenticate = {&autia, &autib, &autda, &autdb};

std::uint64_t stripped(std::uint64_t pointer, Key key) {
    if (key == Key::ia || key == Key::ib) {
        asm(".arch_extension pauth\n\txpaci %0" : "+r"(pointer));
    } else {
        asm(".arch_extension pauth\n\txpacd %0" : "+r"(pointer));
    }
    return pointer;
}

std::uint64_t checked(Kind kind, std::uint64_t pointer, std::uint64_t modifier,
                      const std::string& what) {
    const auto index = static_cast<std::size_t>(kind);
    const Rule& rule = kRules[index];
    const std::uint64_t plain =
        kAuthenticate[static_cast<std::size_t>(rule.key)](pointer, modifier);
    // A signature may be all zeros by chance, and one of 128 wrong ones is right.
    if (plain != stripped(pointer, rule.key)) {
        stop(LoadError(std::string("a ") + rule.name + " that is not signed as one: " + what));
    }
    ++state().authenticated[index];
    return plain;
}

// A line of numbers, in the order of the kinds, for scripts/device-emulate to add up.
void report() {
    const char* const path = std::getenv("VELMORANTH_AUTHENTICATED");
    if (path == nullptr) {
        return;
    }
    std::string line;
    for (const auto& count : state().authenticated) {
        line += std::to_string(count) + ' ';
    }
    line.back() = '\n';
    const int file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0 || write(file, line.data(), line.size()) < 0) {
        std::perror(path);
    }
    close(file);
}

// Whether VELMORANTH_KEYS leaves the keys for functions and data.
bool hasAllKeys() {
    const char* const given = std::getenv("VELMORANTH_KEYS");
    const std::string_view keys = given == nullptr ? "all" : given;
    if (keys != "all" && keys != "returns") {
        throw LoadError("VELMORANTH_KEYS is all or returns, not \"" + std::string(keys) + '"');
    }
    return keys == "all";
}

}  // namespace

void begin(const Image& image, bool isArm64e) {
    State& now = state();
    now.isArm64e = isArm64e;
    now.hasKeys = hasAllKeys() && isArm64e;
    now.start = image.base();
    now.end = image.end();
    if (!isArm64e) {
        return;
    }
    // By chance a signature is none; two are not.
    if (pacia(now.start, 0) == now.start && pacia(now.start, 1) == now.start) {
        stop(LoadError("this processor authenticates no pointers (QEMU_CPU=max does)"));
    }
    // The latter where a process ends without its destructors.
    std::atexit(&report);
    std::at_quick_exit(&report);
}

bool isArm64e() {
    return state().isArm64e;
}

bool hasKeys() {
    return state().hasKeys;
}

std::uint64_t sign(std::uint64_t pointer, Key key, std::uint64_t modifier) {
    return kSign[static_cast<std::size_t>(key)](pointer, modifier);
}

std::uint64_t modifierOf(bool address, std::uint16_t number, const void* place) {
    constexpr unsigned kNumberShift = 48;
    constexpr std::uint64_t kPlace = (std::uint64_t{1} << kNumberShift) - 1;
    return address ? (reinterpret_cast<std::uint64_t>(place) & kPlace) | std::uint64_t{number}
                                                                             << kNumberShift
                   : number;
}

std::uint64_t authentic(Kind kind, std::uint64_t pointer, const void* place,
                        const std::string& what) {
    if (!state().hasKeys || pointer == 0) {
        return pointer;
    }
    const Rule& rule = kRules[static_cast<std::size_t>(kind)];
    return checked(kind, pointer, modifierOf(rule.address, rule.number, place), what);
}

std::uint64_t authenticEntry(const char* name, std::uint64_t pointer, const void* place) {
    if (!state().hasKeys) {
        return pointer;
    }
    const auto* const number = std::ranges::find(kNumbers, std::string_view(name), &Number::name);
    if (number == std::end(kNumbers)) {
        stop(LoadError(std::string("a virtual function whose number is not known: ") + name));
    }
    return checked(Kind::vtableEntry, pointer,
                   modifierOf(kRules[static_cast<std::size_t>(Kind::vtableEntry)].address,
                              number->number, place),
                   name);
}

std::pair<std::uint64_t, std::uint64_t> libraryPlace() {
    return {state().start, state().end};
}

bool isInLibrary(const void* pointer) {
    const auto address = reinterpret_cast<std::uint64_t>(pointer);
    return address >= state().start && address < state().end;
}

}  // namespace velmoranth::emulator::pac
