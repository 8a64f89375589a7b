// Any bytes as an archive, unpacked under small limits: nothing may stand outside the folder, and
// no more in it than the limits allow.
#include "desktop/files/cleanup.h"

#include "makers/archives/unpack.h"
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp() is POSIX's

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace velmoranth;
    namespace fs = std::filesystem;
    static const std::string folder = [] {
        std::string made = fs::temp_directory_path() / "velmoranth-XXXXXX";
        if (::mkdtemp(made.data()) == nullptr) {
            std::abort();
        }
        return made;
    }();
    static const desktop::RemovedAtEnd removed(folder);
    const std::string inside = folder + "/in";
    fs::create_directory(inside);
    const makers::ArchiveLimits limits{.entries = 100, .bytes = 1000000};
    static_cast<void>(makers::unpackArchive({bytes, size}, "archive", inside, limits));
    const auto entries = std::distance(fs::recursive_directory_iterator(inside), {});
    if (std::distance(fs::directory_iterator(folder), {}) != 1 || entries > 101) {
        std::abort();
    }
    fs::remove_all(inside);
    return 0;
}
