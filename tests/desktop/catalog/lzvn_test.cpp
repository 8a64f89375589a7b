#include "desktop/catalog/lzfse.h"
#include "tests/support/catalog/lzfse_writer.h"

#include "lzfse_checks.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace velmoranth::catalog::lzvn_test {

namespace {

const Octets kEndMark = {0x06, 0, 0, 0, 0, 0, 0, 0};

Octets joined(std::initializer_list<Octets> parts) {
    Octets all;
    for (const Octets& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

// Decodes the opcodes, with an end mark behind, into room for that and no more; and again with room
// around, which takes other steps to the same end.
std::optional<std::string> decoded(const Octets& opcodes, std::size_t size) {
    const auto exact = decodeWith(decodeLzvn, joined({opcodes, kEndMark}), size);
    const Octets filler = noise(240);
    Octets padding = {0xE0, 240 - 16};
    padding.insert(padding.end(), filler.begin(), filler.end());
    auto wide = decodeWith(decodeLzvn, joined({opcodes, padding, kEndMark}), size + 240 + 100);
    EXPECT_EQ(exact.has_value(), wide.has_value());
    if (!exact || !wide) {
        return std::nullopt;
    }
    EXPECT_TRUE(std::equal(filler.rbegin(), filler.rend(), wide->rbegin()));
    wide->resize(wide->size() - filler.size());
    EXPECT_EQ(*exact, *wide);
    return std::string(exact->begin(), exact->end());
}

std::string decoded(const std::string& before, const Octets& opcodes, const std::string& after) {
    Octets literals = {static_cast<std::uint8_t>(0xE0 | before.size())};
    literals.insert(literals.end(), before.begin(), before.end());
    return decoded(joined({literals, opcodes}), before.size() + after.size()).value_or("damaged");
}

TEST(Lzvn, SmallDistance) {
    EXPECT_EQ(decoded("abcd", {0x00, 2}, "cdc"), "abcdcdc");
    EXPECT_EQ(decoded("abcd", {0x40 | 2 << 3, 3, 'X'}, "XdXdXdX"), "abcdXcdXcd");
    EXPECT_EQ(decoded("abcd", {0xC8, 7, 'X', 'Y', 'Z'}, "XYZabcd"), "abcdXYZabcd");
}

TEST(Lzvn, SmallDistanceHasThreeBitsOfTheOpcode) {
    const Octets bytes = noise(271 * 3);
    Octets opcodes;
    for (std::size_t i = 0; i < 3; ++i) {
        opcodes.insert(opcodes.end(), {0xE0, 0xFF});
        opcodes.insert(opcodes.end(), bytes.begin() + static_cast<std::ptrdiff_t>(271 * i),
                       bytes.begin() + static_cast<std::ptrdiff_t>(271 * (i + 1)));
    }
    opcodes.insert(opcodes.end(), {0x03, 0x01});  // 769 behind: byte 44
    const auto text = decoded(opcodes, 271 * 3 + 3);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->substr(271 * 3), std::string(bytes.begin() + 44, bytes.begin() + 47));
}

TEST(Lzvn, MediumDistance) {
    // Length 3 + (1 << 2 | 2), distance 4.
    EXPECT_EQ(decoded("abcd", {0xA1, 4 << 2 | 2, 0}, "abcdabcda"), "abcdabcdabcda");
    EXPECT_EQ(decoded("abcd", {0xB8, 5 << 2, 0, 'X', 'Y', 'Z'}, "XYZcdX"), "abcdXYZcdX");
}

TEST(Lzvn, LargeDistance) {
    EXPECT_EQ(decoded("abcd", {0x07, 4, 0}, "abc"), "abcdabc");
    EXPECT_EQ(decoded("abcd", {0x8F, 4, 0, 'X', 'Y'}, "XYcdXY"), "abcdXYcdXY");
}

TEST(Lzvn, PreviousDistance) {
    EXPECT_EQ(decoded("abcd", {0x00, 2, 0x46, 'X'}, "cdcXcXc"), "abcdcdcXcXc");
    EXPECT_EQ(decoded("abcd", {0x00, 2, 0xF2}, "cdcdc"), "abcdcdcdc");
    EXPECT_EQ(decoded("abcd", {0x00, 2, 0xF0, 0}, "cdc" + std::string(16, ' ')),
              "abcdcdc"
              "dcdcdcdcdcdcdcdc");
}

TEST(Lzvn, LiteralsLeaveTheDistance) {
    EXPECT_EQ(decoded("abcd", {0x00, 2, 0xE1, 'X', 0xF2}, "cdcXcX"), "abcdcdcXcX");
}

TEST(Lzvn, NoOperations) {
    EXPECT_EQ(decoded("abcd", {0x0E, 0x16, 0x00, 2}, "cdc"), "abcdcdc");
}

TEST(Lzvn, UndefinedOpcodes) {
    Octets undefined = {0x1E, 0x26, 0x2E, 0x36, 0x3E};
    for (std::uint8_t low = 0; low < 16; ++low) {
        undefined.push_back(0x70 | low);
        undefined.push_back(0xD0 | low);
    }
    for (const std::uint8_t opcode : undefined) {
        EXPECT_EQ(decoded("abcd", {0x00, 2, opcode, 0x0E}, "cdc"), "damaged") << int{opcode};
    }
}

TEST(Lzvn, DistancesThatReachNothing) {
    EXPECT_EQ(decoded("abcd", {0x00, 0}, "abc"), "damaged");
    EXPECT_EQ(decoded("abcd", {0x00, 4}, "abc"), "abcdabc");
    EXPECT_EQ(decoded("abcd", {0x00, 5}, "abc"), "damaged");
    EXPECT_EQ(decoded("abcd", {0x07, 0, 1}, "abc"), "damaged");
    EXPECT_EQ(decoded("abcd", {0xF3}, "abc"), "damaged") << "no distance before";
    EXPECT_EQ(decoded("abcd", {0x46, 'X'}, "Xabc"), "damaged") << "no distance before";
}

TEST(Lzvn, EndMarkIsEightBytes) {
    Octets payload = joined({{0xE1, 'a'}, kEndMark});
    EXPECT_EQ(decodeWith(decodeLzvn, payload, 1), octets("a"));
    payload.back() = 1;
    EXPECT_EQ(decodeWith(decodeLzvn, payload, 1), std::nullopt);
    payload.pop_back();
    EXPECT_EQ(decodeWith(decodeLzvn, payload, 1), std::nullopt);
    EXPECT_EQ(decodeWith(decodeLzvn, {}, 1), std::nullopt);
    EXPECT_EQ(decodeWith(decodeLzvn, kEndMark, 0), Octets());
}

TEST(Lzvn, BytesBehindTheEndDoNotCount) {
    EXPECT_EQ(decodeWith(decodeLzvn, joined({{0xE1, 'a'}, kEndMark, {0x70, 0x70}}), 10),
              octets("a"));
}

// The format's table read row by row, one byte at a time.
std::optional<Octets> plainReading(const Octets& in) {
    Octets out;
    std::size_t at = 0;
    std::size_t distance = 0;
    const auto run = [&](std::size_t literals, std::size_t match) {
        if (literals > in.size() - at) {
            return false;
        }
        for (; literals > 0; --literals) {
            out.push_back(in[at++]);
        }
        if (match > 0 && (distance == 0 || distance > out.size())) {
            return false;
        }
        for (; match > 0; --match) {
            out.push_back(out[out.size() - distance]);
        }
        return true;
    };
    while (in.size() - at >= 8) {
        const std::size_t op = in[at];
        const std::size_t low = in[at + 1];
        const std::size_t high = in[at + 2];
        std::size_t literals = op >> 6U;
        std::size_t match = 0;
        if (op == 0x06) {
            const bool zeros = std::all_of(in.begin() + static_cast<std::ptrdiff_t>(at + 1),
                                           in.begin() + static_cast<std::ptrdiff_t>(at + 8),
                                           [](std::uint8_t byte) { return byte == 0; });
            return zeros ? std::optional(out) : std::nullopt;
        }
        if (op == 0x0E || op == 0x16) {
            at += 1;
            continue;
        }
        if (op >= 0xE0) {
            const std::size_t number = op % 16 == 0 ? low + 16 : op % 16;
            at += op % 16 == 0 ? 2 : 1;
            literals = op < 0xF0 ? number : 0;
            match = op < 0xF0 ? 0 : number;
        } else if (op >= 0xA0 && op < 0xC0) {
            literals = op >> 3U & 3U;
            match = ((op & 7U) * 4 + low % 4) + 3;
            distance = (low + high * 256) / 4;
            at += 3;
        } else if ((op >= 0x70 && op < 0x80) || op >= 0xD0 || (op % 8 == 6 && op < 0x40)) {
            return std::nullopt;
        } else {
            match = (op >> 3U & 7U) + 3;
            distance = op % 8 == 7 ? low + high * 256 : op % 8 == 6 ? distance : op % 8 * 256 + low;
            at += op % 8 == 7 ? 3 : op % 8 == 6 ? 1 : 2;
        }
        if (!run(literals, match)) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

TEST(Lzvn, EveryOpcodeReadsAsThePlainReadingHasIt) {
    const Octets start = noise(2000);
    for (std::size_t opcode = 0; opcode < 256; ++opcode) {
        std::size_t sound = 0;
        for (std::uint32_t seed = 0; seed < 40; ++seed) {
            // Literals, a match that says a distance, the opcode, and what may belong to it.
            Octets payload;
            for (std::size_t i = 0; i + 250 <= start.size(); i += 250) {
                payload.insert(payload.end(), {0xE0, 250 - 16});
                payload.insert(payload.end(), start.begin() + static_cast<std::ptrdiff_t>(i),
                               start.begin() + static_cast<std::ptrdiff_t>(i + 250));
            }
            payload.insert(payload.end(), {0x00, static_cast<std::uint8_t>(1 + seed)});
            payload.push_back(static_cast<std::uint8_t>(opcode));
            Octets more = noise(300, seed + 1);
            more[1] %= 8;  // distances that reach something
            // Then opcodes of no operation, so that an end mark is met whatever was read before.
            std::fill(more.begin() + 5, more.end(), 0x0E);
            payload.insert(payload.end(), more.begin(), more.end());
            payload.insert(payload.end(), kEndMark.begin(), kEndMark.end());
            const auto expected = plainReading(payload);
            sound += expected ? 1 : 0;
            ASSERT_EQ(decodeWith(decodeLzvn, payload, 4000), expected)
                << "opcode " << opcode << ", seed " << seed;
            if (expected) {
                ASSERT_EQ(decodeWith(decodeLzvn, payload, expected->size()), expected)
                    << "opcode " << opcode << ", seed " << seed;
                ASSERT_EQ(decodeWith(decodeLzvn, payload, expected->size() - 1), std::nullopt)
                    << "opcode " << opcode << ", seed " << seed;
            }
        }
        const bool undefined = (opcode >= 0x70 && opcode < 0x80) ||
                               (opcode >= 0xD0 && opcode < 0xE0) ||
                               (opcode % 8 == 6 && opcode >= 0x1E && opcode < 0x40);
        EXPECT_EQ(sound > 0, !undefined && opcode != 0x06) << opcode;
    }
}

TEST(Lzvn, WhatIsWrittenComesBack) {
    for (const Octets& bytes : {Octets(), octets("a"), octets("abcabcabcabcabcabcabc"),
                                Octets(5000, 7), noise(3000), pictureBytes(40000)}) {
        const Octets payload = tests::lzvn(bytes);
        EXPECT_EQ(decodeWith(decodeLzvn, payload, bytes.size()), bytes);
        EXPECT_EQ(decodeWith(decodeLzvn, payload, bytes.size() + 1000), bytes);
        EXPECT_EQ(decodeWith(decodeLzfseOrLzvn, payload, bytes.size()), bytes);
        if (!bytes.empty()) {
            EXPECT_EQ(decodeWith(decodeLzvn, payload, bytes.size() - 1), std::nullopt);
        }
    }
}

TEST(Lzvn, TruncatedAnywhere) {
    const Octets payload = tests::lzvn(pictureBytes(1000));
    for (std::size_t size = 0; size < payload.size(); ++size) {
        ASSERT_EQ(decodeWith(decodeLzvn, std::span(payload).first(size), 4000), std::nullopt)
            << size;
    }
}

}  // namespace

}  // namespace velmoranth::catalog::lzvn_test
