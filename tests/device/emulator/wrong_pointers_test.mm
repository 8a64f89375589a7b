// A pointer that is not signed as its kind ends the process, which says what kind it was and what
// it belongs to: where this process authenticates it, and where the library does.
#include "device/emulator/chains.h"
#include "device/emulator/macho_file.h"
#include "device/emulator/pac.h"
#include "device/library/device_process.h"
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <span>
#include <string>

namespace velmoranth::standins::wrong_pointers_test {
namespace {

namespace pac = emulator::pac;

// Any bit of a signature.
constexpr std::uint64_t kOneBit = std::uint64_t{1} << 50U;
constexpr std::uint64_t kAddress = (std::uint64_t{1} << 48U) - 1;

bool isFault(int status) {
    return WIFSIGNALED(status) && (WTERMSIG(status) == SIGSEGV || WTERMSIG(status) == SIGBUS ||
                                   WTERMSIG(status) == SIGILL);
}

class WrongPointers : public DeviceProcess {
  protected:
    WrongPointers() {
        // What is authenticated here is no library's, and not to be reported.
        unsetenv("VELMORANTH_AUTHENTICATED");
        activeThemes({"A"});
        loaded();
    }

    static const char* path() {
        const char* const given = std::getenv("VELMORANTH_LIBRARY");
        return given == nullptr ? DEVICE_LIBRARY : given;
    }

    // The words of the library in memory that are signed, by the file's chains.
    static void eachSignedPlace(
        const std::function<void(const emulator::Signing&, std::uint64_t&)>& visit) {
        const emulator::MachOFile file = emulator::MachOFile::read(path());
        for (const emulator::ChainedPointer& pointer : emulator::chainedPointersOf(file)) {
            if (pointer.signing) {
                visit(*pointer.signing, *reinterpret_cast<std::uint64_t*>(
                                            pac::libraryPlace().first + pointer.address));
            }
        }
    }

    // Of the objects that the library's variables lead to.
    static void breakVtablePointers() {
        const auto [start, end] = pac::libraryPlace();
        const emulator::MachOFile file = emulator::MachOFile::read(path());
        for (const emulator::Section& section : file.sections()) {
            if (section.name != "__bss") {
                continue;
            }
            const std::span<std::uint64_t* const> variables(
                reinterpret_cast<std::uint64_t* const*>(start + section.address),
                section.size / sizeof(std::uint64_t*));
            for (std::uint64_t* const object : variables) {
                if (!isReadable(object)) {
                    continue;
                }
                const std::uint64_t plain = *object & kAddress;
                if (*object != plain && plain >= start && plain < end) {
                    *object ^= kOneBit;
                }
            }
        }
    }

    static bool isReadable(const std::uint64_t* place) {
        std::array<int, 2> ends{};
        if (reinterpret_cast<std::uint64_t>(place) % sizeof *place != 0 || pipe(ends.data()) != 0) {
            return false;
        }
        const bool is = write(ends[1], place, sizeof *place) == sizeof *place;
        close(ends[0]);
        close(ends[1]);
        return is;
    }

    static void breakVirtualFunctions() {
        eachSignedPlace([](const emulator::Signing& signing, std::uint64_t& place) {
            if (signing.number != 0) {
                place ^= kOneBit;
            }
        });
    }

    static void use() {
        [velMoranth() load];
        [velMoranth() selectedTheme];
        [velMoranth() DetectUserDevice];
        [velMoranth() currentThemePlist];
        [velMoranth() userChangedThemes];
    }
};

TEST_F(WrongPointers, OfEachKindEndTheProcessWithKindAndName) {
    std::uint64_t place = 0;
    const auto target = reinterpret_cast<std::uint64_t>(&std::abort);
    for (std::size_t index = 0; index < std::size(pac::kRules); ++index) {
        const pac::Rule& rule = pac::kRules[index];
        const auto kind = static_cast<pac::Kind>(index);
        SCOPED_TRACE(rule.name);
        if (!pac::hasKeys()) {
            EXPECT_EQ(pac::authentic(kind, target ^ kOneBit, &place, "of this test"),
                      target ^ kOneBit);
            continue;
        }
        const std::uint64_t good =
            pac::sign(target, rule.key, pac::modifierOf(rule.address, rule.number, &place));
        EXPECT_EQ(pac::authentic(kind, good, &place, "of this test"), target);
        EXPECT_EXIT(
            static_cast<void>(pac::authentic(kind, good ^ kOneBit, &place, "of this test")),
            ::testing::ExitedWithCode(3),
            std::string("emulator: a ") + rule.name + " that is not signed as one: of this test");
    }
}

TEST_F(WrongPointers, OfAVirtualFunctionAreNamedByIt) {
    const auto target = reinterpret_cast<std::uint64_t>(&std::abort);
    std::uint64_t place = 0;
    const pac::Rule& rule = pac::kRules[static_cast<std::size_t>(pac::Kind::vtableEntry)];
    for (const pac::Number& number : pac::kNumbers) {
        if (!pac::hasKeys()) {
            EXPECT_EQ(pac::authenticEntry(number.name, target, &place), target);
            continue;
        }
        const std::uint64_t good =
            pac::sign(target, rule.key, pac::modifierOf(rule.address, number.number, &place));
        EXPECT_EQ(pac::authenticEntry(number.name, good, &place), target);
        EXPECT_EXIT(static_cast<void>(pac::authenticEntry(number.name, good ^ kOneBit, &place)),
                    ::testing::ExitedWithCode(3),
                    std::string("a vtable entry that is not signed as one: ") + number.name);
    }
}

TEST_F(WrongPointers, ThatTheLibraryUsesAreNamedByItsFunction) {
    if (!pac::hasKeys()) {
        use();
        return;
    }
    const auto told = [](const char* kind) {
        return std::string("emulator: a ") + kind +
               " that is not what the library takes it for, used in [^ ]+\\+0x[0-9a-f]+";
    };
    use();
    EXPECT_EXIT((breakVirtualFunctions(), use()), isFault, told("vtable entry"));
    EXPECT_EXIT((breakVtablePointers(), use()), isFault, told("pointer to data"));
}

}  // namespace
}  // namespace velmoranth::standins::wrong_pointers_test
