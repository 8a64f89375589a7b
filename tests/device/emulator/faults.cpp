#include "device/emulator/faults.h"

#include "device/emulator/pac.h"
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace velmoranth::emulator {
namespace {

struct Watched {
    const Image* image = nullptr;
    std::string names;  // the file with the library's symbols
};

Watched& watched() {
    static Watched theLibrary;
    return theLibrary;
}

std::string hexadecimal(std::uint64_t number) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "%#llx", static_cast<unsigned long long>(number));
    return text.data();
}

// The kind of pointer that an instruction of the library called, jumped to or read through.
const char* kindUsedBy(std::uint32_t instruction) {
    constexpr std::uint32_t kWithModifier = 1U << 24U;
    const bool isCall = (instruction & 0xfedff800U) == 0xd61f0800U;  // blraa, blraaz, braa, braaz
    if (!isCall) {
        return "pointer to data";
    }
    return (instruction & kWithModifier) != 0 ? "vtable entry" : "function";
}

// A call has gone to where nothing is: the library's own code is where it came from.
std::uint64_t culprit(const ucontext_t& context) {
    const std::uint64_t here = context.uc_mcontext.pc;
    return pac::isInLibrary(reinterpret_cast<const void*>(here)) ? here
                                                                 : context.uc_mcontext.regs[30] - 4;
}

void tell(int signal, siginfo_t* /*info*/, void* context) {
    const std::uint64_t place = culprit(*static_cast<const ucontext_t*>(context));
    if (pac::isInLibrary(reinterpret_cast<const void*>(place))) {
        const std::uint64_t address = place - watched().image->base();
        const std::string text = std::string("emulator: a ") +
                                 kindUsedBy(watched().image->at<std::uint32_t>(address)) +
                                 " that is not what the library takes it for, used in " +
                                 symbolBefore(watched().names, address) + "\n";
        static_cast<void>(write(STDERR_FILENO, text.data(), text.size()));
    }
    std::signal(signal, SIG_DFL);  // and the same again
}

}  // namespace

std::string symbolBefore(const std::string& path, std::uint64_t address) {
    constexpr std::uint32_t kSymtab = 2;
    constexpr std::size_t kEntry = 16;
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    const auto word = [&](std::uint64_t place) {
        std::uint32_t value = 0;
        if (place + sizeof value <= bytes.size()) {
            std::memcpy(&value, &bytes[place], sizeof value);
        }
        return value;
    };
    std::uint64_t command = 32;
    for (std::uint32_t left = word(16); left > 0 && word(command) != kSymtab; --left) {
        command += word(command + 4);
    }
    std::uint64_t best = 0;
    std::uint64_t name = 0;
    for (std::uint32_t i = 0; word(command) == kSymtab && i < word(command + 12); ++i) {
        const std::uint64_t entry = word(command + 8) + i * kEntry;
        const bool isDefined = (word(entry + 4) & 0x0eU) == 0x0eU;
        const std::uint64_t value = word(entry + 8);
        if (isDefined && value <= address && value >= best) {
            best = value;
            name = word(command + 16) + std::uint64_t{word(entry)};
        }
    }
    if (name == 0 || name >= bytes.size()) {
        return hexadecimal(address);
    }
    const auto* const end =
        static_cast<const char*>(std::memchr(&bytes[name], 0, bytes.size() - name));
    return end == nullptr ? hexadecimal(address)
                          : std::string(&bytes[name], end) + "+" + hexadecimal(address - best);
}

void tellOfFaults(const Image& image, const std::string& path) {
    const std::size_t folder = path.rfind('/') + 1;  // 0 when there is none
    watched() = {&image, path.substr(0, folder) + "unstripped/" + path.substr(folder)};
    struct sigaction action = {};
    action.sa_sigaction = &tell;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    for (const int signal : {SIGSEGV, SIGBUS, SIGILL}) {
        sigaction(signal, &action, nullptr);
    }
}

}  // namespace velmoranth::emulator
