// The blocks' runtime, for this whole process: that of the packages knows nothing of signed blocks.
// A block of the library is authenticated when it is copied, and its copy, which only this process
// calls, has plain pointers. Blocks of this process are copied as ever.
#include "device/emulator/pac.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace pac = velmoranth::emulator::pac;

extern "C" {

extern void* _NSConcreteMallocBlock[];

void* _Block_copy(const void* argument);
void _Block_release(const void* argument);

}  // extern "C"

namespace {

constexpr int kReferences = 0xfffe;
constexpr int kReference = 2;
constexpr int kNeedsFree = 1 << 24;
constexpr int kHasHelpers = 1 << 25;
constexpr int kIsGlobal = 1 << 28;

// With helpers: others have neither of the two functions.
struct Descriptor {
    std::uint64_t reserved;
    std::uint64_t size;
    std::uint64_t copy;
    std::uint64_t dispose;
};

struct Block {
    void* isa;
    int flags;
    int reserved;
    std::uint64_t function;
    const Descriptor* descriptor;
};

bool isOfLibrary(const Block& block) {
    return pac::isInLibrary(block.descriptor);
}

template <class Function>
Function helperAt(const Block& block, const std::uint64_t& place, const char* what) {
    const std::uint64_t helper =
        isOfLibrary(block) ? pac::authentic(pac::Kind::blockHelper, place, &place, what) : place;
    return reinterpret_cast<Function>(helper);
}

}  // namespace

void* _Block_copy(const void* argument) {
    auto* const block = static_cast<Block*>(const_cast<void*>(argument));
    if (block == nullptr) {
        return nullptr;
    }
    if ((block->flags & kNeedsFree) != 0) {
        __atomic_fetch_add(&block->flags, kReference, __ATOMIC_RELAXED);
        return block;
    }
    const bool isSigned = pac::hasKeys() && isOfLibrary(*block);
    if ((block->flags & kIsGlobal) != 0 && !isSigned) {
        return block;
    }
    auto* const copy = static_cast<Block*>(std::malloc(block->descriptor->size));
    std::memcpy(copy, block, block->descriptor->size);
    if (isSigned) {
        copy->function = pac::authentic(pac::Kind::blockFunction, block->function, &block->function,
                                        "what a block calls");
    }
    copy->isa = _NSConcreteMallocBlock;
    copy->flags = (block->flags & ~(kReferences | kIsGlobal)) | kNeedsFree | kReference;
    if ((copy->flags & kHasHelpers) != 0) {
        helperAt<void (*)(void*, const void*)>(*block, block->descriptor->copy,
                                               "what copies a block")(copy, block);
    }
    return copy;
}

void _Block_release(const void* argument) {
    auto* const block = static_cast<Block*>(const_cast<void*>(argument));
    if (block == nullptr || (block->flags & kNeedsFree) == 0) {
        return;
    }
    if ((__atomic_sub_fetch(&block->flags, kReference, __ATOMIC_ACQ_REL) & kReferences) != 0) {
        return;
    }
    if ((block->flags & kHasHelpers) != 0) {
        helperAt<void (*)(const void*)>(*block, block->descriptor->dispose,
                                        "what disposes of a block")(block);
    }
    std::free(block);
}
