// Streams of real catalogs, where they are: below car/ of the folder that VELMORANTH_SAMPLES names.
#include "desktop/catalog/lzfse.h"
#include "tests/support/places.h"

#include "lzfse_checks.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velmoranth::catalog::lzfse_samples_test {

namespace {

namespace fs = std::filesystem;

TEST(LzfseSamples, EveryStreamDecodesToItsSize) {
    const fs::path catalogs = tests::samples("car");
    std::error_code none;
    if (!fs::is_directory(catalogs, none)) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    std::size_t streams = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(catalogs)) {
        if (entry.path().extension() != ".car") {
            continue;
        }
        std::ifstream file(entry.path(), std::ios::binary);
        const Octets bytes{std::istreambuf_iterator<char>(file), {}};
        const Octets begin = octets("bvx");
        const Octets end = octets("bvx$");
        for (auto at = bytes.begin();;) {
            at = std::search(at, bytes.end(), begin.begin(), begin.end());
            if (at == bytes.end()) {
                break;
            }
            const std::span<const std::uint8_t> stream(at, bytes.end());
            const auto size = lzfseSize(stream);
            ASSERT_TRUE(size) << entry.path() << " at " << at - bytes.begin();
            const auto decoded = decodeWith(decodeLzfse, stream, *size);
            ASSERT_TRUE(decoded) << entry.path() << " at " << at - bytes.begin();
            EXPECT_EQ(decoded->size(), *size);
            ++streams;
            at = std::search(at, bytes.end(), end.begin(), end.end()) + 4;
        }
    }
    EXPECT_GT(streams, 0U) << "no streams below " << catalogs;
}

}  // namespace

}  // namespace velmoranth::catalog::lzfse_samples_test
