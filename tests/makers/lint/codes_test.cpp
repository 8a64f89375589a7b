#include "makers/lint/codes.h"

#include "tests/support/places.h"

#include "makers/conversion/repairs.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <ranges>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::makers::codes_test {
namespace {

std::vector<std::string> wordsOf(std::string_view text) {
    std::istringstream stream{std::string(text)};
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

TEST(LintCodes, AreDifferentAndStandByTheirSeverity) {
    std::set<std::string_view> known;
    for (const CodeRow& row : codes()) {
        EXPECT_TRUE(known.insert(row.code).second) << row.code;
        EXPECT_EQ(codeNamed(row.code), &row);
    }
    EXPECT_TRUE(std::ranges::is_sorted(codes(), {}, &CodeRow::severity));
    EXPECT_EQ(codeNamed("no-such-code"), nullptr);
}

TEST(LintCodes, SayAllInClausesThatFitALine) {
    for (const CodeRow& row : codes()) {
        for (const std::string_view clause : {row.reason, row.fix}) {
            EXPECT_LE(clause.size(), 100U) << row.code;
            EXPECT_FALSE(clause.ends_with('.')) << row.code;
            EXPECT_EQ(clause.find_first_of("\n|"), std::string_view::npos) << row.code;
        }
        EXPECT_FALSE(row.reason.empty()) << row.code;
        EXPECT_TRUE(row.explanation.ends_with('.')) << row.code;
    }
}

TEST(LintRepairs, MendCodesThatThereAreAndStandInTheirOrder) {
    std::set<std::string> mended;
    for (std::size_t i = 0; i < repairs().size(); ++i) {
        const RepairRow& row = repairs()[i];
        EXPECT_EQ(&rowOf(row.repair), &row);
        for (const std::string& code : wordsOf(row.codes)) {
            EXPECT_NE(codeNamed(code), nullptr) << code;
            EXPECT_TRUE(mended.insert(code).second) << code << " is mended twice";
            EXPECT_EQ(repairOf(code), &row) << code;
        }
    }
    EXPECT_EQ(repairOf("one-device"), nullptr);
    EXPECT_EQ(repairOf("icon"), nullptr);  // the beginning of one
    EXPECT_EQ(repairOf(""), nullptr);
}

TEST(LintCodes, StandInTheDocumentationAsTheyAre) {
    std::ifstream file(std::string(tests::kSourceFolder) + "/docs/themes/lint.md");
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    EXPECT_NE(text.find("\n" + codesAsMarkdown() + "\n"), std::string::npos) << codesAsMarkdown();
}

}  // namespace
}  // namespace velmoranth::makers::codes_test
