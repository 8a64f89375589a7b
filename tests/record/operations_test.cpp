// The table of operations against the headers of the platform's interface.
#include "record/operations.h"

#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace velmoranth::record::operations_test {
namespace {

std::string key(const std::string& interface, const std::string& function) {
    return interface + "::" + function;
}

// Every virtual function of every class of src/platform, destructors and what is for the platform's
// own code left out.
std::set<std::string> functionsOfThePlatform() {
    std::set<std::string> functions;
    const std::regex begin(R"(^class (\w+)[^;]*\{)");
    const std::regex function(R"(virtual [^~;=(]*?(\w+)\s*\()");
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(tests::kSourceFolder) + "/src/platform")) {
        std::ifstream file(entry.path());
        std::string interface;
        std::string declaration;
        for (std::string line; std::getline(file, line);) {
            std::smatch match;
            if (std::regex_search(line, match, begin)) {
                interface = match[1];
            }
            line = line.substr(0, line.find("//"));
            if (line.find("virtual") != std::string::npos || !declaration.empty()) {
                declaration += line + " ";
                if (line.find_first_of(";{") != std::string::npos) {
                    if (std::regex_search(declaration, match, function)) {
                        functions.insert(key(interface, match[1]));
                    }
                    declaration.clear();
                }
            }
        }
    }
    functions.erase("Object::native");
    return functions;
}

TEST(RecordOperations, EveryFunctionOfThePlatformHasItsRowAndNoOther) {
    const std::set<std::string> expected = functionsOfThePlatform();
    EXPECT_GT(expected.size(), 100U);
    std::set<std::string> rows;
    for (const Operation& row : operations()) {
        EXPECT_TRUE(rows.insert(key(std::string(row.interface), std::string(row.function))).second)
            << row.interface << " " << row.function << " stands twice";
        EXPECT_FALSE(row.message.empty());
    }
    for (const std::string& function : expected) {
        EXPECT_TRUE(rows.contains(function)) << function << " has no row";
    }
    for (const std::string& row : rows) {
        EXPECT_TRUE(expected.contains(row)) << row << " is no function of the platform";
    }
}

}  // namespace
}  // namespace velmoranth::record::operations_test
