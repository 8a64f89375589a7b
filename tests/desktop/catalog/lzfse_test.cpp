#include "desktop/catalog/lzfse.h"

#include "desktop/catalog/fse_table.h"
#include "tests/support/catalog/lzfse_writer.h"

#include "lzfse_checks.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

namespace velmoranth::catalog::lzfse_test {

namespace {

using tests::LzfseBlock;
using tests::LzfseTriple;
using tests::LzfseWriter;

constexpr std::array kBlocks = {LzfseBlock::stored, LzfseBlock::lzvn, LzfseBlock::plainTables,
                                LzfseBlock::packedTables};
constexpr std::array kTableBlocks = {LzfseBlock::plainTables, LzfseBlock::packedTables};

std::optional<Octets> decoded(std::span<const std::uint8_t> stream, std::size_t room) {
    return decodeWith(decodeLzfse, stream, room);
}

// A stream of one block of packed tables.
Octets triples(std::string_view literals, const std::vector<LzfseTriple>& triples,
               std::uint32_t rawBytes, LzfseBlock kind = LzfseBlock::packedTables,
               std::uint32_t unusedStates = 0) {
    LzfseWriter writer;
    writer.appendTriples(octets(literals), triples, rawBytes, kind, unusedStates);
    return writer.finish();
}

TEST(Lzfse, EveryKindOfBlockComesBack) {
    for (const Octets& bytes :
         {Octets(), octets("a"), octets("abcabcabcabcabcabcabcabc"), Octets(100000, 7), noise(3000),
          pictureBytes(60000), noise(130000)}) {
        for (const LzfseBlock kind : kBlocks) {
            const Octets stream = tests::lzfse(bytes, kind);
            EXPECT_TRUE(isLzfse(stream));
            EXPECT_EQ(lzfseSize(stream), bytes.size());
            EXPECT_EQ(decoded(stream, bytes.size()), bytes);
            EXPECT_EQ(decoded(stream, bytes.size() + 1000), bytes);
            EXPECT_EQ(decodeWith(decodeLzfseOrLzvn, stream, bytes.size()), bytes);
            if (!bytes.empty()) {
                EXPECT_EQ(decoded(stream, bytes.size() - 1), std::nullopt);
            }
        }
    }
}

TEST(Lzfse, MatchesReachIntoEarlierBlocks) {
    const Octets bytes = noise(5000);
    Octets twice = bytes;
    twice.insert(twice.end(), bytes.begin(), bytes.end());
    for (const LzfseBlock first : kBlocks) {
        for (const LzfseBlock second : kBlocks) {
            LzfseWriter writer;
            writer.append(bytes, first);
            const std::size_t before = writer.finish().size();
            writer.append(bytes, second);
            const Octets stream = writer.finish();
            if (second != LzfseBlock::stored) {
                EXPECT_LT(stream.size() - before, 1000U) << "no matches to speak of";
            }
            EXPECT_EQ(decoded(stream, twice.size()), twice);
        }
    }
}

TEST(Lzfse, TriplesAreLiteralsThenAMatch) {
    for (const LzfseBlock kind : kTableBlocks) {
        const auto stream =
            triples("abcdef", {{3, 4, 2}, {0, 2, 0}, {1, 0, 0}, {0, 0, 1}, {2, 5, 0}}, 17, kind);
        EXPECT_EQ(decoded(stream, 17), octets("abc"
                                              "bcbc"
                                              "bc"
                                              "d"
                                              "ef"
                                              "fffff"));
    }
}

// Copies may write more than they mean to, but never beyond the output.
TEST(Lzfse, TriplesOfNothingWriteNothing) {
    for (const LzfseBlock kind : kTableBlocks) {
        for (std::size_t size = 0; size < 80; ++size) {
            const std::string text(size, 'a');
            const auto run = static_cast<std::uint32_t>(size);
            const auto stream =
                triples(text, {{0, 0, 0}, {0, 0, 1}, {run, 0, 0}, {0, 0, 0}}, run, kind);
            EXPECT_EQ(decoded(stream, size), octets(text));
            EXPECT_EQ(decoded(stream, size + 1), octets(text));
        }
        EXPECT_EQ(decodeLzfse(triples("", {{0, 0, 0}}, 0, kind), {}), 0U);
    }
}

TEST(Lzfse, LargestValues) {
    const Octets far = noise(262139 - 315);
    const Octets literals = noise(315, 2);
    for (const LzfseBlock kind : kTableBlocks) {
        LzfseWriter writer;
        writer.append(far, LzfseBlock::stored);
        writer.appendTriples(literals, std::vector<LzfseTriple>{{315, 2359, 262139}}, 315 + 2359,
                             kind);
        Octets expected = far;
        expected.insert(expected.end(), literals.begin(), literals.end());
        expected.insert(expected.end(), far.begin(), far.begin() + 2359);
        EXPECT_EQ(decoded(writer.finish(), expected.size()), expected);
    }
}

TEST(Lzfse, OverlapsRepeatThePattern) {
    const Octets literals = noise(64);
    for (std::uint32_t distance = 1; distance <= 40; ++distance) {
        for (const std::uint32_t match : {1U, 2U, 7U, 8U, 15U, 16U, 17U, 31U, 33U, 64U, 100U}) {
            LzfseWriter writer;
            writer.appendTriples(literals, std::vector<LzfseTriple>{{64, match, distance}},
                                 64 + match, LzfseBlock::packedTables);
            Octets expected = literals;
            for (std::uint32_t i = 0; i < match; ++i) {
                expected.push_back(expected[expected.size() - distance]);
            }
            const Octets stream = writer.finish();
            ASSERT_EQ(decoded(stream, expected.size()), expected) << distance << ' ' << match;
            ASSERT_EQ(decoded(stream, expected.size() + 200), expected) << distance << ' ' << match;
        }
    }
}

TEST(Lzfse, DistancesThatReachNothing) {
    for (const LzfseBlock kind : kTableBlocks) {
        EXPECT_EQ(decoded(triples("abcd", {{4, 3, 4}}, 7, kind), 7), octets("abcdabc"));
        EXPECT_EQ(decoded(triples("abcd", {{4, 3, 5}}, 7, kind), 7), std::nullopt);
        EXPECT_EQ(decoded(triples("abcd", {{4, 3, 0}}, 7, kind), 7), std::nullopt) << "none before";
        EXPECT_EQ(decoded(triples("abcd", {{4, 3, 5}}, 7, kind), 100), std::nullopt);
        EXPECT_EQ(decoded(triples("abcd", {{4, 3, 0}}, 7, kind), 100), std::nullopt);
    }
    // The distance of an earlier block does not last.
    LzfseWriter writer;
    writer.appendTriples(octets("abcd"), std::vector<LzfseTriple>{{4, 3, 4}}, 7,
                         LzfseBlock::packedTables);
    writer.appendTriples(octets("abcd"), std::vector<LzfseTriple>{{4, 3, 0}}, 7,
                         LzfseBlock::packedTables);
    EXPECT_EQ(decoded(writer.finish(), 14), std::nullopt);
}

TEST(Lzfse, BlocksThatAreNotAsLongAsTheySay) {
    for (const LzfseBlock kind : kTableBlocks) {
        for (const std::uint32_t rawBytes : {0U, 3U, 4U, 6U, 8U, 0xFFFFFFFFU}) {
            const auto stream = triples("abcd", {{4, 3, 4}}, rawBytes, kind);
            EXPECT_EQ(decoded(stream, 7), std::nullopt) << rawBytes;
            EXPECT_EQ(decoded(stream, 100), std::nullopt) << rawBytes;
        }
        EXPECT_EQ(decoded(triples("abcd", {{5, 3, 4}}, 8, kind), 8), std::nullopt)
            << "more literals than there are";
    }
    for (const LzfseBlock kind : {LzfseBlock::stored, LzfseBlock::lzvn}) {
        for (const int change : {-1, 1}) {
            Octets stream = tests::lzfse(octets("abcdabcdabcd"), kind);
            stream[4] = static_cast<std::uint8_t>(stream[4] + change);
            EXPECT_EQ(decoded(stream, 12), std::nullopt);
            EXPECT_EQ(decoded(stream, 100), std::nullopt);
        }
    }
}

TEST(Lzfse, LzvnBlockUsesItsWholePayload) {
    Octets stream = tests::lzfse(octets("abcd"), LzfseBlock::lzvn);
    stream.insert(stream.end() - 4, 0);
    EXPECT_EQ(decoded(stream, 4), std::nullopt);
    ++stream[8];
    EXPECT_EQ(lzfseSize(stream), 4U);
    EXPECT_EQ(decoded(stream, 4), std::nullopt);
}

TEST(Lzfse, EmptyBlocks) {
    LzfseWriter writer;
    for (const LzfseBlock kind : kTableBlocks) {
        writer.appendTriples({}, {}, 0, kind);
    }
    writer.append(octets("ab"), LzfseBlock::stored);
    const Octets tables = writer.finish();
    EXPECT_EQ(decoded(tables, 2), octets("ab"));

    Octets stream = octets(std::string_view("bvx-\0\0\0\0", 8));
    const Octets lzvn = octets(std::string_view("bvxn\0\0\0\0\x08\0\0\0\x06\0\0\0\0\0\0\0", 20));
    stream.insert(stream.end(), lzvn.begin(), lzvn.end());
    stream.insert(stream.end(), tables.begin(), tables.end());
    EXPECT_EQ(decoded(stream, 2), octets("ab"));
    EXPECT_EQ(decoded(stream, 1), std::nullopt);
    EXPECT_EQ(decoded(octets("bvx$"), 0), Octets());
}

TEST(Lzfse, TruncatedAnywhere) {
    const Octets bytes = pictureBytes(500);
    for (const LzfseBlock kind : kBlocks) {
        const Octets stream = tests::lzfse(bytes, kind);
        for (std::size_t size = 0; size < stream.size(); ++size) {
            const std::span<const std::uint8_t> cut = std::span(stream).first(size);
            ASSERT_EQ(decoded(cut, bytes.size()), std::nullopt) << size;
            ASSERT_EQ(lzfseSize(cut), std::nullopt) << size;
        }
    }
}

TEST(Lzfse, OnlyTheFirstOfTwoStreamsCounts) {
    Octets stream = tests::lzfse(octets("first"));
    const Octets second = tests::lzfse(octets("second one"));
    stream.insert(stream.end(), second.begin(), second.end());
    EXPECT_EQ(lzfseSize(stream), 5U);
    EXPECT_EQ(decoded(stream, 100), octets("first"));
}

TEST(Lzfse, WhatIsNoStream) {
    EXPECT_FALSE(isLzfse({}));
    EXPECT_FALSE(isLzfse(octets("bvx")));
    EXPECT_FALSE(isLzfse(octets("bvy$")));
    for (const std::string_view text : {"", "bvx", "bvx3", "bvxxabcdabcd", "\x06"}) {
        EXPECT_EQ(decoded(octets(text), 100), std::nullopt) << text;
        EXPECT_EQ(lzfseSize(octets(text)), std::nullopt) << text;
    }
}

// One bit of a header each, by its place; none of them may pass.
TEST(Lzfse, HeadersThatCannotBe) {
    struct Row {
        LzfseBlock kind;
        std::size_t byte;
        std::uint8_t bits;
        const char* what;
    };

    const std::vector<Row> rows = {
        {LzfseBlock::packedTables, 10, 0x08, "more literals than a block has"},
        {LzfseBlock::packedTables, 14, 0x08, "more triples than a block has"},
        {LzfseBlock::packedTables, 12, 0x80, "literal payload behind the end"},
        {LzfseBlock::packedTables, 22, 0x08, "payload of the triples behind the end"},
        {LzfseBlock::packedTables, 24, 0x80, "header without its payload's begin"},
        {LzfseBlock::packedTables, 24, 0xE0, "header of other size"},
        {LzfseBlock::packedTables, 25, 0x08, "header too large"},
        {LzfseBlock::packedTables, 29, 0x02, "state of matches"},
        {LzfseBlock::packedTables, 28, 0x40, "state of literal runs"},
        {LzfseBlock::packedTables, 31, 0x20, "state of distances"},
        {LzfseBlock::plainTables, 14, 0x01, "more literals than a block has"},
        {LzfseBlock::plainTables, 17, 0x40, "more triples than a block has"},
        {LzfseBlock::plainTables, 9, 0x01, "payload of other size"},
        {LzfseBlock::plainTables, 22, 0x01, "literal payload behind the end"},
        {LzfseBlock::plainTables, 26, 0x01, "payload of the triples behind the end"},
        {LzfseBlock::plainTables, 31, 0x7F, "bits that do not count"},
        {LzfseBlock::plainTables, 33, 0x04, "state of literals"},
        {LzfseBlock::plainTables, 39, 0x80, "state of literals"},
        {LzfseBlock::plainTables, 44, 0x40, "state of literal runs"},
        {LzfseBlock::plainTables, 46, 0x40, "state of matches"},
        {LzfseBlock::plainTables, 49, 0x01, "state of distances"},
        {LzfseBlock::plainTables, 50, 0x80, "more states of literal runs than there are"},
        {LzfseBlock::plainTables, 90, 0x80, "more states of matches than there are"},
        {LzfseBlock::plainTables, 131, 0x10, "more states of distances than there are"},
        {LzfseBlock::plainTables, 259, 0x80, "more states of literals than there are"},
    };
    const Octets bytes = pictureBytes(300);
    for (const Row& row : rows) {
        Octets stream = tests::lzfse(bytes, row.kind);
        ASSERT_EQ(decoded(stream, bytes.size()), bytes);
        stream[row.byte] ^= row.bits;
        EXPECT_EQ(decoded(stream, bytes.size()), std::nullopt) << row.what;
    }
}

TEST(Lzfse, StatesWithoutASymbol) {
    for (const LzfseBlock kind : kTableBlocks) {
        const Octets stream = triples("abcdabceabcfabca", {{16, 9, 16}, {0, 3, 2}}, 28, kind, 3);
        EXPECT_TRUE(decoded(stream, 28));
    }

    struct Row {
        std::size_t byte;
        std::uint16_t last;
        const char* what;
    };

    for (const Row& row :
         {Row{32, 1023, "literals"}, Row{38, 1023, "literals"}, Row{44, 63, "literal runs"},
          Row{46, 63, "matches"}, Row{48, 255, "distances"}}) {
        Octets stream =
            triples("abcdabceabcfabca", {{16, 9, 16}, {0, 3, 2}}, 28, LzfseBlock::plainTables, 3);
        stream[row.byte] = static_cast<std::uint8_t>(row.last);
        stream[row.byte + 1] = static_cast<std::uint8_t>(row.last >> 8U);
        EXPECT_EQ(decoded(stream, 28), std::nullopt) << row.what;
        EXPECT_EQ(decoded(stream, 100), std::nullopt) << row.what;
    }
}

TEST(Lzfse, BitsThatDoNotCountAreZero) {
    // Of both payloads, in streams whose last bytes are not full.
    std::size_t tried = 0;
    for (std::size_t size = 60; size < 100; ++size) {
        const Octets bytes = noise(size);
        Octets stream = tests::lzfse(bytes, LzfseBlock::plainTables);
        const std::size_t literalEnd = 772 + stream[20] + stream[21] * 256U;
        for (const auto& [bits, end] :
             {std::pair<std::size_t, std::size_t>{28, literalEnd}, {40, stream.size() - 4}}) {
            if (stream[bits] != 0) {
                Octets damaged = stream;
                damaged[end - 1] |= 0x80;
                EXPECT_EQ(decoded(damaged, size), std::nullopt);
                ++tried;
            }
        }
    }
    EXPECT_GT(tried, 20U);
}

TEST(Lzfse, PayloadsThatEndEarly) {
    // The tables stay and the payload is empty: a reader must not go on before its begin.
    const Octets bytes = noise(4000);
    for (const std::size_t field : {20U, 24U}) {
        Octets stream = tests::lzfse(bytes, LzfseBlock::plainTables);
        const std::size_t literalBytes = stream[20] + stream[21] * 256U;
        const std::size_t payload = stream[field] + stream[field + 1] * 256U;
        const std::size_t begin = field == 20 ? 772 : 772 + literalBytes;
        stream.erase(stream.begin() + static_cast<std::ptrdiff_t>(begin),
                     stream.begin() + static_cast<std::ptrdiff_t>(begin + payload));
        const std::size_t rest = stream.size() - 772 - 4;
        stream[8] = static_cast<std::uint8_t>(rest);
        stream[9] = static_cast<std::uint8_t>(rest >> 8U);
        std::fill_n(stream.begin() + static_cast<std::ptrdiff_t>(field), 2, 0);
        std::fill_n(stream.begin() + (field == 20 ? 28 : 40), 4, 0);
        ASSERT_EQ(lzfseSize(stream), 4000U);
        EXPECT_EQ(decoded(stream, 4000), std::nullopt);
    }
}

// Where only the state can tell: it stands for no match, as the right one does.
TEST(Lzfse, StatesWithoutASymbolThatDoNoHarm) {
    for (const std::size_t byte : {46U, 48U}) {
        Octets stream = triples("abcdabceabcfabca", {{16, 0, 0}}, 16, LzfseBlock::plainTables, 3);
        ASSERT_EQ(decoded(stream, 16), octets("abcdabceabcfabca"));
        stream[byte] = byte == 46 ? 63 : 255;
        EXPECT_EQ(decoded(stream, 16), std::nullopt) << byte;
    }
}

TEST(Lzfse, AsManyAsABlockHas) {
    for (const LzfseBlock kind : kTableBlocks) {
        for (const std::size_t count : {40000U, 40004U}) {
            std::vector<LzfseTriple> runs(count / 315, {315, 0, 0});
            runs.push_back({static_cast<std::uint32_t>(count % 315), 0, 0});
            const auto bytes = decoded(
                triples(std::string(count, 'a'), runs, static_cast<std::uint32_t>(count), kind),
                count);
            EXPECT_EQ(bytes.has_value(), count == 40000) << count << " literals";
        }
        for (const std::size_t count : {10000U, 10001U}) {
            std::vector<LzfseTriple> runs(count, {0, 1, 0});
            runs.front() = {4, 1, 1};
            const std::size_t size = 4 + count;
            const auto bytes =
                decoded(triples("abcd", runs, static_cast<std::uint32_t>(size), kind), size);
            EXPECT_EQ(bytes.has_value(), count == 10000) << count << " triples";
        }
    }
}

TEST(Lzfse, PayloadsThatAreABitShort) {
    // Without its first byte a payload ends some bits before what it holds does; what a reader
    // finds there is of the header.
    const Octets bytes = noise(400);
    for (const std::size_t field : {20U, 24U}) {
        Octets stream = tests::lzfse(bytes, LzfseBlock::plainTables);
        const std::size_t begin = 772 + (field == 20 ? 0 : stream[20] + stream[21] * 256U);
        // The writer puts 8 bytes of nothing before the triples.
        const std::size_t cut = field == 20 ? 1 : 9;
        stream.erase(stream.begin() + static_cast<std::ptrdiff_t>(begin),
                     stream.begin() + static_cast<std::ptrdiff_t>(begin + cut));
        for (const std::size_t size : {std::size_t{8}, field}) {
            const std::size_t shorter = stream[size] + stream[size + 1] * 256U - cut;
            stream[size] = static_cast<std::uint8_t>(shorter);
            stream[size + 1] = static_cast<std::uint8_t>(shorter >> 8U);
        }
        ASSERT_EQ(lzfseSize(stream), bytes.size());
        EXPECT_EQ(decoded(stream, bytes.size()), std::nullopt) << field;
    }
}

TEST(Lzfse, NoMoreThanSevenBitsThatDoNotCount) {
    Octets stream = tests::lzfse(pictureBytes(100), LzfseBlock::plainTables);
    ASSERT_TRUE(decoded(stream, 400));
    stream.insert(stream.end() - 4, 0);
    for (const std::size_t size : {8U, 24U}) {
        ASSERT_LT(stream[size], 255);
        ++stream[size];
    }
    const int bits = (stream[40] == 0 ? 0 : stream[40] - 256) - 8;
    stream[40] = static_cast<std::uint8_t>(bits);
    std::fill_n(stream.begin() + 41, 3, 0xFF);
    EXPECT_EQ(decoded(stream, 400), std::nullopt);
}

TEST(Lzfse, TablesFillTheirHeader) {
    Octets stream = tests::lzfse(pictureBytes(100), LzfseBlock::packedTables);
    const std::size_t header = stream[24] + stream[25] * 256U;
    stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(header), 0);
    stream[24] = static_cast<std::uint8_t>(header + 1);
    stream[25] = static_cast<std::uint8_t>((header + 1) >> 8U);
    ASSERT_EQ(lzfseSize(stream), 400U);
    EXPECT_EQ(decoded(stream, 400), std::nullopt);
}

TEST(Lzfse, DamagedStreamsStayWithinBounds) {
    const Octets bytes = pictureBytes(400);
    for (const LzfseBlock kind : kBlocks) {
        const Octets sound = tests::lzfse(bytes, kind);
        for (std::uint32_t seed = 0; seed < 500; ++seed) {
            const Octets random = noise(6, seed);
            Octets stream = sound;
            for (std::size_t i = 0; i < random.size(); i += 3) {
                stream[(random[i] * 256U + random[i + 1]) % stream.size()] = random[i + 2];
            }
            static_cast<void>(decoded(stream, bytes.size()));
        }
    }
}

TEST(FseTable, StatesOfASymbol) {
    // Three of 64 states take 5 bits once and 4 bits twice; the others do as many as fill up.
    std::array<std::uint16_t, kLengthSymbols> frequencies = {};
    frequencies[2] = 3;
    frequencies[17] = 61;
    LengthTable table;
    ASSERT_EQ(fillTable(frequencies, kLiteralRunCodes, table), 64U);
    const auto row = [&table](std::size_t state) {
        const ValueEntry& entry = table[state];
        return std::array<std::uint32_t, 5>{entry.value, entry.base, entry.stateBits,
                                            entry.extraBits, entry.bits};
    };
    using Row = std::array<std::uint32_t, 5>;
    EXPECT_EQ(row(0), (Row{2, 32, 5, 0, 5}));
    EXPECT_EQ(row(1), (Row{2, 0, 4, 0, 4}));
    EXPECT_EQ(row(2), (Row{2, 16, 4, 0, 4}));
    EXPECT_EQ(row(3), (Row{20, 58, 1, 3, 4}));
    EXPECT_EQ(row(6), (Row{20, 0, 0, 3, 3}));
    EXPECT_EQ(row(63), (Row{20, 57, 0, 3, 3}));
}

TEST(FseTable, ValuesOfSymbols) {
    EXPECT_EQ(kLiteralRunCodes[15].base, 15U);
    EXPECT_EQ(kLiteralRunCodes[18].base, 28U);
    EXPECT_EQ(kMatchCodes[18].base, 56U);
    for (const auto& [symbol, base] : std::vector<std::pair<std::size_t, std::uint32_t>>{
             {4, 4}, {8, 12}, {16, 60}, {32, 1020}, {48, 16380}, {63, 229372}}) {
        EXPECT_EQ(kDistanceCodes[symbol].base, base);
    }
}

TEST(FseTable, MoreThanThereAreStates) {
    std::array<std::uint16_t, kLengthSymbols> frequencies = {};
    frequencies[0] = 60;
    frequencies[1] = 5;
    LengthTable table;
    EXPECT_EQ(fillTable(frequencies, kLiteralRunCodes, table), 0U);
    frequencies[1] = 4;
    EXPECT_EQ(fillTable(frequencies, kLiteralRunCodes, table), 64U);
}

}  // namespace

}  // namespace velmoranth::catalog::lzfse_test
