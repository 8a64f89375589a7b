// Sends two messages that the home screen sends all the time, for the emulator to count the
// instructions that the library takes for them.  usage: device_cost CALLS
#include "device/emulator/pac.h"
#include "quiet_phone.h"
#import <Foundation/Foundation.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

using namespace velmoranth::benchmarks;

namespace {

// As instruction_counter.cpp has them.
constexpr long kBegin = 0x7000;
constexpr long kEnd = 0x7001;

template <class Call>
void count(const char* name, int calls, Call call) {
    call();  // what is done once a process
    const auto library = velmoranth::emulator::pac::libraryPlace();
    std::fprintf(stderr, "%s\n", name);
    syscall(kBegin, library.first, library.second);
    for (int i = 0; i < calls; ++i) {
        call();
    }
    syscall(kEnd);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fputs("usage: device_cost CALLS\n", stderr);
        return 2;
    }
    const int calls = std::atoi(arguments[1]);
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    startQuietPhone();
    const id label = labelView(Hooked::byLibrary);
    count("alpha", calls, [label] { [label alpha]; });
    const id cache = imageCache(Hooked::byLibrary);
    const id icon = iconNamed("com.example.application");
    count("imageForIcon:", calls, [cache, icon] { [cache imageForIcon:icon]; });
    [pool release];
    return 0;
}
