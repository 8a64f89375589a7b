#include "device/emulator/calls.h"

#include "device/emulator/load_error.h"
#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

// dispatch.S
extern "C" void emulatorCallForSmallResult();
extern "C" void emulatorCallReturningThis();

namespace velmoranth::emulator {
namespace {

constexpr unsigned kX9 = 9;  // free between caller and callee, as x16 and x17 are
constexpr unsigned kX16 = 16;
constexpr unsigned kX17 = 17;

// The instructions of one piece, with the 64-bit numbers that they load behind them.
class Piece {
  public:
    void instruction(std::uint32_t word) { instructions_.push_back(word); }

    void load(unsigned reg, std::uint64_t number) {
        loads_.push_back({instructions_.size(), reg, number});
        instruction(0);  // written once the numbers' place is known
    }

    void jump(unsigned reg) { instruction(0xd61f0000U | reg << 5U); }

    [[nodiscard]] std::vector<std::uint8_t> bytes() const {
        constexpr std::uint32_t kLoadLiteral = 0x58000000;
        std::vector<std::uint32_t> words = instructions_;
        words.resize((words.size() + 1) / 2 * 2);  // numbers are aligned
        for (const Load& load : loads_) {
            const auto distance = static_cast<std::uint32_t>(words.size() - load.place);
            words[load.place] = kLoadLiteral | distance << 5U | load.reg;
            words.push_back(static_cast<std::uint32_t>(load.number));
            words.push_back(static_cast<std::uint32_t>(load.number >> 32U));
        }
        std::vector<std::uint8_t> bytes(words.size() * sizeof words.front());
        std::memcpy(bytes.data(), words.data(), bytes.size());
        return bytes;
    }

  private:
    struct Load {
        std::size_t place;
        unsigned reg;
        std::uint64_t number;
    };

    std::vector<std::uint32_t> instructions_;
    std::vector<Load> loads_;
};

// Where pieces lie; each is made once.
class Pieces {
  public:
    static Pieces& instance() {
        static auto* const pieces = new Pieces;
        return *pieces;
    }

    // `kind` tells pieces for the same function apart.
    void* find(const void* function, const std::string& kind, const Piece& piece) {
        const std::scoped_lock lock(mutex_);
        void*& place = made_[{function, kind}];
        if (place == nullptr) {
            place = put(piece.bytes());
        }
        return place;
    }

  private:
    static constexpr std::size_t kBlockSize = 64U << 10U;

    void* put(const std::vector<std::uint8_t>& code) {
        if (code.size() > left_) {
            void* const block = mmap(nullptr, kBlockSize, PROT_READ | PROT_WRITE | PROT_EXEC,
                                     MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
            if (block == MAP_FAILED) {
                stop(LoadError("no memory for code"));
            }
            next_ = static_cast<char*>(block);
            left_ = kBlockSize;
        }
        char* const place = next_;
        std::memcpy(place, code.data(), code.size());
        __builtin___clear_cache(place, place + code.size());
        next_ += code.size();
        left_ -= code.size();
        return place;
    }

    std::mutex mutex_;
    std::map<std::tuple<const void*, std::string>, void*> made_;
    char* next_ = nullptr;
    std::size_t left_ = 0;
};

std::uint64_t addressOf(void (*function)()) {
    return reinterpret_cast<std::uint64_t>(function);
}

void widen(Piece& piece, SmallArgument argument) {
    const unsigned reg = argument.generalRegister;
    switch (argument.type) {
        case SmallType::boolean:
            piece.instruction(0x72001c1fU | reg << 5U);  // tst w, #0xff
            piece.instruction(0x1a9f07e0U | reg);        // cset w, ne
            return;
        case SmallType::signedChar:
            piece.instruction(0x13001c00U | reg << 5U | reg);  // sxtb w, w
            return;
        case SmallType::unsignedChar:
            piece.instruction(0x53001c00U | reg << 5U | reg);  // uxtb w, w
            return;
        case SmallType::signedShort:
            piece.instruction(0x13003c00U | reg << 5U | reg);  // sxth w, w
            return;
        case SmallType::unsignedShort:
            piece.instruction(0x53003c00U | reg << 5U | reg);  // uxth w, w
            return;
        case SmallType::none:
            return;
    }
}

void refuseSmallArgumentsOnStack(const Signature& signature, std::string_view encoding) {
    if (signature.isSmallArgumentOnStack) {
        stop(
            LoadError("a method that takes a small number on the stack: " + std::string(encoding)));
    }
}

}  // namespace

void* callFromLibrary(void* function, SmallType result) {
    if (result == SmallType::none) {
        return function;
    }
    Piece piece;
    piece.load(kX16, reinterpret_cast<std::uint64_t>(function));
    piece.load(kX17, static_cast<std::uint64_t>(result));
    piece.load(kX9, addressOf(&emulatorCallForSmallResult));
    piece.jump(kX9);
    return Pieces::instance().find(function, "result " + std::to_string(static_cast<int>(result)),
                                   piece);
}

void* methodFromLibrary(void* implementation, std::string_view encoding) {
    const Signature signature = signatureOf(encoding);
    refuseSmallArgumentsOnStack(signature, encoding);
    return callFromLibrary(implementation, signature.result);
}

void* methodOfLibrary(void* implementation, std::string_view encoding) {
    const Signature signature = signatureOf(encoding);
    refuseSmallArgumentsOnStack(signature, encoding);
    if (signature.smallArguments.empty()) {
        return implementation;
    }
    Piece piece;
    std::string kind = "arguments";
    for (const SmallArgument& argument : signature.smallArguments) {
        widen(piece, argument);
        kind += ' ' + std::to_string(argument.generalRegister) + ':' +
                std::to_string(static_cast<int>(argument.type));
    }
    piece.load(kX16, reinterpret_cast<std::uint64_t>(implementation));
    piece.jump(kX16);
    return Pieces::instance().find(implementation, kind, piece);
}

void* constructorFromLibrary(void* function) {
    Piece piece;
    piece.load(kX16, reinterpret_cast<std::uint64_t>(function));
    piece.load(kX9, addressOf(&emulatorCallReturningThis));
    piece.jump(kX9);
    return Pieces::instance().find(function, "this", piece);
}

}  // namespace velmoranth::emulator
