#include "device/emulator/signature.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>

namespace velmoranth::emulator {
namespace {

constexpr unsigned kArgumentRegisters = 8;
constexpr std::string_view kQualifiers = "rnNoORVA";

SmallType smallTypeOf(char letter) {
    switch (letter) {
        case 'B':
        case 'C':
            return SmallType::boolean;
        case 'c':
            return SmallType::signedChar;
        case 's':
            return SmallType::signedShort;
        case 'S':
            return SmallType::unsignedShort;
        default:
            return SmallType::none;
    }
}

constexpr bool has(std::string_view letters, char letter) {
    return letters.find(letter) != std::string_view::npos;
}

constexpr bool isFloating(char letter) {
    return letter == 'f' || letter == 'd';
}

// Takes an encoding apart, a type at a time.
class EncodingReader {
  public:
    explicit EncodingReader(std::string_view encoding) : rest_(encoding) {}

    // The next type without qualifiers and offsets; empty at the end.
    std::string_view next() {
        while (!rest_.empty() && has(kQualifiers, rest_.front())) {
            rest_.remove_prefix(1);
        }
        const std::string_view type = rest_.substr(0, lengthOf(rest_));
        rest_.remove_prefix(type.size());
        while (!rest_.empty() && (std::isdigit(static_cast<unsigned char>(rest_.front())) != 0 ||
                                  rest_.front() == '-' || rest_.front() == '+')) {
            rest_.remove_prefix(1);
        }
        return type;
    }

  private:
    static std::size_t lengthOf(std::string_view text) {
        if (text.empty()) {
            return 0;
        }
        switch (text.front()) {
            case '^':
                return 1 + lengthOf(text.substr(1));
            case '{':
            case '(':
            case '[':
                return bracketed(text);
            case '@':
                return object(text);
            default:
                return has(kQualifiers, text.front()) ? 1 + lengthOf(text.substr(1)) : 1;
        }
    }

    // An object may be followed by its class's name or by the mark of a block.
    static std::size_t object(std::string_view text) {
        if (text.substr(1).starts_with('?')) {
            return 2;
        }
        if (text.substr(1).starts_with('"')) {
            const std::size_t close = text.find('"', 2);
            return close == std::string_view::npos ? text.size() : close + 1;
        }
        return 1;
    }

    static std::size_t bracketed(std::string_view text) {
        std::size_t depth = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            depth += has("{([", text[i]) ? 1 : 0;
            depth -= has("})]", text[i]) ? 1 : 0;
            if (depth == 0) {
                return i + 1;
            }
        }
        return text.size();
    }

    std::string_view rest_;
};

// The members of a structure, those of structures within it in their place.
void appendMembers(std::string_view type, std::string& letters) {
    const std::size_t equals = type.find('=');
    if (equals == std::string_view::npos) {
        letters += '?';
        return;
    }
    EncodingReader members(type.substr(equals + 1, type.size() - equals - 2));
    for (std::string_view member = members.next(); !member.empty(); member = members.next()) {
        if (member.front() == '{') {
            appendMembers(member, letters);
        } else {
            letters += member.front();
        }
    }
}

// Which registers have been given to arguments so far.
class Registers {
  public:
    void add(std::string_view type, Signature& signature) {
        if (type.front() == '{') {
            return addStructure(type);
        }
        if (isFloating(type.front())) {
            return;  // in a vector register
        }
        const SmallType small = smallTypeOf(type.front());
        if (small != SmallType::none && general_ >= kArgumentRegisters) {
            signature.isSmallArgumentOnStack = true;
        } else if (small != SmallType::none) {
            signature.smallArguments.push_back({general_, small});
        }
        takeGeneral(1);
    }

  private:
    // Up to four floating numbers of a kind have a vector register each; anything else of up to 16
    // bytes has general ones, and what is larger is passed by its address.
    void addStructure(std::string_view type) {
        std::string members;
        appendMembers(type, members);
        constexpr std::size_t kMostVectors = 4;
        if (members.size() <= kMostVectors && !members.empty() && isFloating(members.front()) &&
            std::ranges::all_of(members, [&](char letter) { return letter == members.front(); })) {
            return;
        }
        std::size_t bytes = 0;
        for (const char letter : members) {
            const std::size_t size = sizeOf(letter);
            bytes = (bytes + size - 1) / size * size + size;
        }
        takeGeneral(bytes > 16 ? 1 : static_cast<unsigned>((bytes + 7) / 8));
    }

    static std::size_t sizeOf(char letter) {
        if (has("cCB", letter)) {
            return 1;
        }
        if (has("sS", letter)) {
            return 2;
        }
        return has("iIf", letter) ? 4 : 8;
    }

    // An argument that has no room in the registers left has none, and neither has any later one.
    void takeGeneral(unsigned count) {
        general_ = general_ + count > kArgumentRegisters ? kArgumentRegisters : general_ + count;
    }

    unsigned general_ = 0;
};

}  // namespace

Signature signatureOf(std::string_view encoding) {
    EncodingReader types(encoding);
    Signature signature;
    if (const std::string_view result = types.next(); !result.empty()) {
        signature.result = smallTypeOf(result.front());
    }
    Registers registers;
    for (std::string_view type = types.next(); !type.empty(); type = types.next()) {
        registers.add(type, signature);
    }
    return signature;
}

}  // namespace velmoranth::emulator
