// libSystem: what this system's C library has otherwise, or not at all.
#include "device/emulator/imports.h"
#include "device/emulator/load_error.h"
#include <pthread.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

// dispatch.S
extern "C" void emulatorVariadicSnprintf();

namespace velmoranth::emulator {
namespace {

// A variable argument list whose arguments all lie on the stack.
void listOnStack(va_list& arguments, void* stack) {
    std::memset(&arguments, 0, sizeof arguments);  // no register has any left
    std::memcpy(&arguments, &stack, sizeof stack);
}

extern "C" int emulatorSnprintf(char* text, std::size_t size, const char* format, void* stack) {
    va_list arguments;
    listOnStack(arguments, stack);
    return std::vsnprintf(text, size, format, arguments);
}

// The phone's locks are larger than this system's, and say by a number that they are new; a new one
// of this system's is all zeros, which is what follows that number.
constexpr std::uint64_t kNewMutex = 0x32aaaba7;
constexpr std::uint64_t kNewCondition = 0x3cb0b1bb;
constexpr std::uint64_t kNewOnce = 0x30b1bcba;

template <class Lock>
Lock* native(void* lock, std::uint64_t fresh) {
    // Of several threads that come here first the others find the work done.
    __atomic_compare_exchange_n(static_cast<std::uint64_t*>(lock), &fresh, std::uint64_t{0}, false,
                                __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE);
    return static_cast<Lock*>(lock);
}

pthread_mutex_t* nativeMutex(void* mutex) {
    return native<pthread_mutex_t>(mutex, kNewMutex);
}

pthread_cond_t* nativeCondition(void* condition) {
    return native<pthread_cond_t>(condition, kNewCondition);
}

int lockMutex(void* mutex) {
    return pthread_mutex_lock(nativeMutex(mutex));
}

int tryLockMutex(void* mutex) {
    return pthread_mutex_trylock(nativeMutex(mutex));
}

int unlockMutex(void* mutex) {
    return pthread_mutex_unlock(nativeMutex(mutex));
}

int destroyMutex(void* mutex) {
    return pthread_mutex_destroy(nativeMutex(mutex));
}

// As members of std::mutex and std::condition_variable, which consist of nothing else.
void lock(void* mutex) {
    lockMutex(mutex);
}

bool tryLock(void* mutex) {
    return tryLockMutex(mutex) == 0;
}

void unlock(void* mutex) {
    unlockMutex(mutex);
}

void* destroy(void* mutex) {
    destroyMutex(mutex);
    return mutex;
}

void notifyOne(void* condition) {
    pthread_cond_signal(nativeCondition(condition));
}

void notifyAll(void* condition) {
    pthread_cond_broadcast(nativeCondition(condition));
}

struct UniqueLock {
    void* mutex;
    bool isLocked;
};

void wait(void* condition, UniqueLock* held) {
    pthread_cond_wait(nativeCondition(condition), nativeMutex(held->mutex));
}

void* destroyCondition(void* condition) {
    pthread_cond_destroy(nativeCondition(condition));
    return condition;
}

int once(void* control, void (*routine)()) {
    return pthread_once(native<pthread_once_t>(control, kNewOnce), routine);
}

int isMainThread() {
    return getpid() == syscall(SYS_gettid) ? 1 : 0;
}

// Five texts of 256 bytes.
struct PhoneSystemName {
    char sysname[256];
    char nodename[256];
    char release[256];
    char version[256];
    char machine[256];
};

int systemName(PhoneSystemName* name) {
    utsname own;
    const int status = uname(&own);
    *name = {};
    const auto copy = [](char(&to)[256], const char* from) {
        std::snprintf(to, sizeof to, "%s", from);
    };
    copy(name->sysname, own.sysname);
    copy(name->nodename, own.nodename);
    copy(name->release, own.release);
    copy(name->version, own.version);
    copy(name->machine, own.machine);
    return status;
}

void fillPattern16(void* memory, const void* pattern, std::size_t size) {
    constexpr std::size_t kPattern = 16;
    auto* const bytes = static_cast<char*>(memory);
    for (std::size_t i = 0; i < size; i += kPattern) {
        std::memcpy(bytes + i, pattern, size - i < kPattern ? size - i : kPattern);
    }
}

void zeroMemory(void* memory, std::size_t size) {
    std::memset(memory, 0, size);
}

int* errorNumber() {
    return &errno;
}

[[noreturn]] void bindLazily() {
    stop(LoadError("a call of an import that was left to be bound later"));
}

[[noreturn]] void reportSmashedStack() {
    stop(LoadError("a smashed stack"));
}

constexpr std::uint64_t kStackGuard = 0x5bd1e995a5a5a5a5;
constexpr std::uint64_t kLibraryHandle = 0;

template <class Function>
const void* addressOf(Function* function) {
    return reinterpret_cast<const void*>(function);
}

}  // namespace

std::span<const Import> systemImports() {
    static const std::array kImports = {
        Import{"___dso_handle", &kLibraryHandle},
        Import{"___error", addressOf(&errorNumber)},
        Import{"___stack_chk_fail", addressOf(&reportSmashedStack)},
        Import{"___stack_chk_guard", &kStackGuard},
        Import{"__ZNSt3__118condition_variable10notify_allEv", addressOf(&notifyAll)},
        Import{"__ZNSt3__118condition_variable10notify_oneEv", addressOf(&notifyOne)},
        Import{"__ZNSt3__118condition_variable4waitERNS_11unique_lockINS_5mutexEEE",
               addressOf(&wait)},
        Import{"__ZNSt3__118condition_variableD1Ev", addressOf(&destroyCondition)},
        Import{"__ZNSt3__15mutex4lockEv", addressOf(&lock)},
        Import{"__ZNSt3__15mutex6unlockEv", addressOf(&unlock)},
        Import{"__ZNSt3__15mutex8try_lockEv", addressOf(&tryLock)},
        Import{"__ZNSt3__15mutexD1Ev", addressOf(&destroy)},
        Import{"_bzero", addressOf(&zeroMemory)},
        Import{"_memset_pattern16", addressOf(&fillPattern16)},
        Import{"_pthread_main_np", addressOf(&isMainThread)},
        Import{"_pthread_mutex_destroy", addressOf(&destroyMutex)},
        Import{"_pthread_mutex_lock", addressOf(&lockMutex)},
        Import{"_pthread_mutex_trylock", addressOf(&tryLockMutex)},
        Import{"_pthread_mutex_unlock", addressOf(&unlockMutex)},
        Import{"_pthread_once", addressOf(&once)},
        Import{"_snprintf", addressOf(&emulatorVariadicSnprintf)},
        Import{"_uname", addressOf(&systemName)},
        Import{"dyld_stub_binder", addressOf(&bindLazily)},
    };
    return kImports;
}

}  // namespace velmoranth::emulator
