#include "tests/cli/command.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace velmoranth::cli::hooks_test {
namespace {

nlohmann::json rowsFor(std::vector<std::string> more) {
    std::vector<std::string> words{"hooks", "--json"};
    words.insert(words.end(), more.begin(), more.end());
    const CommandResult result = runCommand(words);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    return nlohmann::json::parse(result.output, nullptr, false);
}

TEST(HooksCommand, JsonHasTheRowsInOrderWithExactlyTheirMembers) {
    const nlohmann::json rows = rowsFor({});
    ASSERT_TRUE(rows.is_array());
    ASSERT_EQ(rows.size(), 54U);
    int number = 0;
    for (const nlohmann::json& row : rows) {
        EXPECT_EQ(row.size(), 6U);
        EXPECT_EQ(row.at("number"), ++number);
        EXPECT_TRUE(row.at("class").is_string());
        EXPECT_TRUE(row.at("side") == "instance" || row.at("side") == "class");
        EXPECT_TRUE(row.at("selector").is_string());
        EXPECT_TRUE(row.at("gate") == "always" || row.at("gate") == "ios12" ||
                    row.at("gate") == "ios13");
        EXPECT_TRUE(row.at("installed").is_boolean());
    }
    EXPECT_EQ(rows[0].at("class"), "SBIconView");
    EXPECT_EQ(rows[0].at("selector"), "layoutSubviews");
    EXPECT_EQ(rows[43].at("class"), "SBHIconImageCache");
    EXPECT_EQ(rows[43].at("selector"), "imageForIcon:");
    EXPECT_EQ(rows[49].at("side"), "class");
    EXPECT_EQ(rows[49].at("gate"), "ios12");
    EXPECT_EQ(rows[53].at("gate"), "ios13");
}

// A row is installed when its gate is open, and no other.
void expectInstalled(const std::vector<std::string>& more, const std::set<std::string>& openGates) {
    int installed = 0;
    for (const nlohmann::json& row : rowsFor(more)) {
        const bool expected = openGates.contains(row.at("gate"));
        EXPECT_EQ(row.at("installed"), expected) << row;
        installed += row.at("installed").get<bool>() ? 1 : 0;
    }
    EXPECT_GT(installed, 0);
}

TEST(HooksCommand, VersionNumberDecidesWhatIsInstalled) {
    expectInstalled({}, {"always", "ios13"});
    expectInstalled({"--version-number", "1674.102"}, {"always", "ios13"});
    expectInstalled({"--version-number", "1575.23"}, {"always", "ios12"});
    expectInstalled({"--version-number", "1600"}, {"always"});
    expectInstalled({"--version-number", "1665.15"}, {"always", "ios13"});
    expectInstalled({"--version-number", "1665.14999"}, {"always"});
    expectInstalled({"--version-number", "1575.2300001"}, {"always"});
    expectInstalled({"--version-number", "-5"}, {"always", "ios12"});
}

TEST(HooksCommand, TextIsATableWithASummary) {
    const CommandResult result = runCommand({"hooks"});
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(result.output.find(" 44  installed      instance  always  SBHIconImageCache"),
              std::string::npos);
    EXPECT_NE(result.output.find("\n54 methods: 51 installed"), std::string::npos);
    EXPECT_TRUE(result.output.ends_with(" installed for version number 1674.102\n"));
    EXPECT_EQ(result.output.find('\033'), std::string::npos) << "colour off a terminal";
}

}  // namespace
}  // namespace velmoranth::cli::hooks_test
