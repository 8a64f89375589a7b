// What the library shows of itself to others: its dynamic symbols, and the functions among them.
#include "desktop/imaging/data_provider.h"
#include "platform/core_graphics.h"
#include "tests/support/places.h"
#include "tests/support/test_device.h"

#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace velmoranth::tests::exports_test {
namespace {

// Copies what lies at `offset` of the file; all zero when the file ends before.
template <class T>
T at(const std::vector<char>& file, std::size_t offset) {
    T value{};
    if (offset <= file.size() && file.size() - offset >= sizeof(T)) {
        std::memcpy(&value, file.data() + offset, sizeof(T));
    }
    return value;
}

// The names that a shared object defines for whoever loads it, by their names in its file.
std::set<std::string> definedDynamicSymbols(const char* path) {
    std::ifstream stream(path, std::ios::binary);
    const std::vector<char> file{std::istreambuf_iterator<char>(stream), {}};
    const auto header = at<Elf64_Ehdr>(file, 0);
    EXPECT_EQ(std::memcmp(header.e_ident, ELFMAG, SELFMAG), 0) << path;
    const auto section = [&](std::size_t index) {
        return at<Elf64_Shdr>(file, header.e_shoff + index * sizeof(Elf64_Shdr));
    };
    std::set<std::string> names;
    for (std::size_t i = 0; i < header.e_shnum; ++i) {
        const Elf64_Shdr symbols = section(i);
        if (symbols.sh_type != SHT_DYNSYM) {
            continue;
        }
        const std::size_t strings = section(symbols.sh_link).sh_offset;
        for (std::size_t offset = 0; offset < symbols.sh_size; offset += sizeof(Elf64_Sym)) {
            const auto symbol = at<Elf64_Sym>(file, symbols.sh_offset + offset);
            if (symbol.st_shndx != SHN_UNDEF) {
                names.insert(std::string(file.data() + strings + symbol.st_name));
            }
        }
    }
    return names;
}

// The names of C. Those of C++ are the standard library's, of which each shared object has its own.
TEST(Exports, AreTheTwoFunctionsAndThreeVariablesUnderTheirNamesInC) {
    std::set<std::string> plain;
    for (const std::string& name : definedDynamicSymbols(kEngineLibrary)) {
        if (!name.starts_with("_")) {
            plain.insert(name);
        }
        EXPECT_FALSE(name.starts_with("_ZN10velmoranth5hooks")) << name;
        EXPECT_FALSE(name.starts_with("_ZN10velmoranth7imaging")) << name;
        EXPECT_EQ(name.find("GradientImage") != std::string::npos, name == "CreateGradientImage")
            << name;
        EXPECT_EQ(name.find("BitmapContext") != std::string::npos, name == "MyCreateBitmapContext")
            << name;
    }
    EXPECT_EQ(plain, (std::set<std::string>{"CreateGradientImage", "MyCreateBitmapContext",
                                            "blurEffect", "tap", "themeImgFound"}));
}

TEST(Exports, FunctionsGiveWhatTheirCallersHold) {
    TestDevice device;
    void* const library = dlopen(kEngineLibrary, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    using CreateImage = platform::BitmapImageRef (*)(std::int32_t, std::int32_t);
    using CreateContext = platform::GraphicsContextRef (*)(std::int32_t, std::int32_t);
    const auto createImage = reinterpret_cast<CreateImage>(dlsym(library, "CreateGradientImage"));
    const auto createContext =
        reinterpret_cast<CreateContext>(dlsym(library, "MyCreateBitmapContext"));
    ASSERT_NE(createImage, nullptr);
    ASSERT_NE(createContext, nullptr);
    const platform::BitmapImageRef image = createImage(3, 16);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image.use_count(), 1);
    EXPECT_EQ(image->layout().width, 3U);
    EXPECT_EQ(image->layout().height, 16U);
    EXPECT_LT(desktop::samplesOf(image->dataProvider())->at(15 * image->layout().bytesPerRow), 16);
    const platform::GraphicsContextRef context = createContext(5, 7);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(context.use_count(), 1);
    EXPECT_EQ(device.journal.lines().back(), "CGBitmapContextCreate 5 7 8 0 1 8194");
    EXPECT_EQ(createImage(0, 4), nullptr);
    EXPECT_EQ(createContext(4, -1), nullptr);
}

}  // namespace
}  // namespace velmoranth::tests::exports_test
