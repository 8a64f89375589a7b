// Any bytes as a container: every block is asked for, and read as a tree. What is handed out must
// be of the file, and no tree may have more entries than the file has room for.
#include "desktop/catalog/bom_store.h"
#include "desktop/catalog/tree.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace velmoranth::catalog;

void requireWithin(Bytes part, Bytes file) {
    const bool within = part.empty() || (part.data() >= file.data() &&
                                         part.data() + part.size() <= file.data() + file.size());
    if (!within) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const Bytes file(bytes, size);
    const auto store = BomStore::parse(file);
    if (!store) {
        return 0;
    }
    static_cast<void>(store->named("RENDITIONS"));
    // Trees are small; a file of many would only be slow.
    for (std::uint32_t number = 0; number < std::min(store->blockCount(), 256U); ++number) {
        if (const auto block = store->block(number)) {
            requireWithin(*block, file);
        }
        const auto tree = readTree(*store, number);
        if (!tree) {
            continue;
        }
        if (tree->entries.size() > size / 16) {
            std::abort();
        }
        for (const TreeEntry& entry : tree->entries) {
            requireWithin(entry.key, file);
            requireWithin(entry.value.value_or(Bytes()), file);
        }
    }
    return 0;
}
