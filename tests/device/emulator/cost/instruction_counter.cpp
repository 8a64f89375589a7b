// What the emulator loads into itself to count instructions of the process that it runs: those of
// the library and all. The process says by system calls that there are not where the library lies
// and what is counted (device_cost.mm).
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" {

// The emulator's interface, of which no package has a header.
struct qemu_plugin_tb;
using Block = qemu_plugin_tb;

void qemu_plugin_register_vcpu_tb_trans_cb(std::uint64_t plugin,
                                           void (*called)(std::uint64_t, Block*));
void qemu_plugin_register_vcpu_tb_exec_cb(Block* block, void (*called)(unsigned, void*), int flags,
                                          void* data);
void qemu_plugin_register_vcpu_syscall_cb(
    std::uint64_t plugin, void (*called)(std::uint64_t, unsigned, std::int64_t, std::uint64_t,
                                         std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t,
                                         std::uint64_t, std::uint64_t, std::uint64_t));
std::size_t qemu_plugin_tb_n_insns(const Block* block);
std::uint64_t qemu_plugin_tb_vaddr(const Block* block);

[[gnu::visibility("default")]] extern int qemu_plugin_version;
int qemu_plugin_version = 1;

}  // extern "C"

namespace {

constexpr std::int64_t kBegin = 0x7000;  // with where the library begins and ends
constexpr std::int64_t kEnd = 0x7001;

std::atomic<bool> isCounting = false;
std::uint64_t libraryStart = 0;
std::uint64_t libraryEnd = 0;
std::uint64_t ofLibrary = 0;
std::uint64_t ofAll = 0;

// A piece of code that runs from its first instruction to its last.
struct Piece {
    std::uint64_t address;
    std::uint64_t instructions;
};

void run(unsigned /*processor*/, void* data) {
    if (!isCounting) {
        return;
    }
    const auto* const piece = static_cast<const Piece*>(data);
    ofAll += piece->instructions;
    if (piece->address >= libraryStart && piece->address < libraryEnd) {
        ofLibrary += piece->instructions;
    }
}

void translated(std::uint64_t /*plugin*/, Block* block) {
    auto* const piece = new Piece{qemu_plugin_tb_vaddr(block), qemu_plugin_tb_n_insns(block)};
    constexpr int kNoRegisters = 0;
    qemu_plugin_register_vcpu_tb_exec_cb(block, &run, kNoRegisters, piece);
}

void called(std::uint64_t /*plugin*/, unsigned /*processor*/, std::int64_t number,
            std::uint64_t first, std::uint64_t second, std::uint64_t /*third*/,
            std::uint64_t /*fourth*/, std::uint64_t /*fifth*/, std::uint64_t /*sixth*/,
            std::uint64_t /*seventh*/, std::uint64_t /*eighth*/) {
    if (number == kBegin) {
        libraryStart = first;
        libraryEnd = second;
        ofLibrary = ofAll = 0;
        isCounting = true;
    } else if (number == kEnd) {
        isCounting = false;
        std::fprintf(stderr, "instructions %llu %llu\n", static_cast<unsigned long long>(ofLibrary),
                     static_cast<unsigned long long>(ofAll));
    }
}

}  // namespace

extern "C" [[gnu::visibility("default")]] int qemu_plugin_install(std::uint64_t plugin,
                                                                  const void* /*emulator*/,
                                                                  int /*count*/,
                                                                  char** /*arguments*/) {
    qemu_plugin_register_vcpu_tb_trans_cb(plugin, &translated);
    qemu_plugin_register_vcpu_syscall_cb(plugin, &called);
    return 0;
}
