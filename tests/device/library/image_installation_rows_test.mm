// Where the replacements of images, icons and of the classic dock go, on which system, and what a
// system does with them that lacks a class or a method.
#include "device/library/replaced_methods.h"
#include "device/library/rows_support.h"
#include <objc/runtime.h>

#include <algorithm>

namespace velmoranth::standins::image_installation_rows_test {
namespace {

// On every system.
const Lines kImageMethods(kAlways.begin() + kHomeScreenMethods, kAlways.end());

struct Place {
    IMP own;
    IMP parents;
    Method otherSides;
};

std::map<std::string, Place> places() {
    std::map<std::string, Place> found;
    for (const std::string& row : joined({kImageMethods, kOniOS12})) {
        const MethodName method(row);
        found[row] = {method.implementation(), method.parentsImplementation(), method.otherSides()};
    }
    return found;
}

class ImageRowsInstallation : public DeviceProcess {
  protected:
    // Those rows are on their class's right side and no other is, nor any parent's.
    static void expectInstalled(const SystemVersion& system, const Lines& installed) {
        const auto before = places();
        runSystem(system);
        loaded();
        for (const auto& [row, place] : places()) {
            SCOPED_TRACE(row);
            ASSERT_NE(before.at(row).own, nullptr);
            EXPECT_EQ(place.own != before.at(row).own,
                      std::ranges::find(installed, row) != installed.end());
            EXPECT_EQ(place.parents, before.at(row).parents);
            EXPECT_EQ(place.otherSides, before.at(row).otherSides);
        }
    }
};

TEST_F(ImageRowsInstallation, OniOS12) {
    expectInstalled(kiOS12, joined({kImageMethods, kOniOS12}));
}

TEST_F(ImageRowsInstallation, OniOS13) {
    expectInstalled(kiOS13, joined({kImageMethods, kOniOS13}));
}

TEST_F(ImageRowsInstallation, BetweenTheTwo) {
    expectInstalled(kBetween, kImageMethods);
}

TEST_F(ImageRowsInstallation, WithoutTheMethodsHarmsNothing) {
    const auto before = places();
    for (const auto& [row, place] : before) {
        hideMethod(row);
    }
    loaded();
    showMethods();
    for (const auto& [row, place] : places()) {
        EXPECT_EQ(place.own, before.at(row).own) << row;
    }
}

TEST_F(ImageRowsInstallation, WithoutTheClassesHarmsNothing) {
    const auto before = places();
    std::vector<std::pair<std::string, MethodName>> methods;
    for (const auto& [row, place] : before) {
        methods.emplace_back(row, MethodName(row));
    }
    for (const auto& [row, place] : before) {
        hideClass(row.substr(2, row.find(' ') - 2));
    }
    loaded();
    for (const auto& [row, method] : methods) {
        EXPECT_EQ(method.implementation(), before.at(row).own) << row;
    }
    EXPECT_NE([velMoranth() sharedIconManager], nil);
}

}  // namespace
}  // namespace velmoranth::standins::image_installation_rows_test
