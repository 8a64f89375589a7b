// Where the replacements of the home screen go: onto the class itself and the right side of it, and
// nowhere else; and what a system does with them that lacks a class or a method.
#include "device/library/replaced_methods.h"
#include "device/library/rows_support.h"
#include <objc/runtime.h>

namespace velmoranth::standins::installation_rows_test {
namespace {

// On every system.
const Lines kRows(kAlways.begin(), kAlways.begin() + kHomeScreenMethods);

struct Place {
    IMP own;
    IMP parents;
    Method otherSides;
};

class HomeScreenRows : public DeviceProcess {
  protected:
    HomeScreenRows() {
        for (const std::string& row : kRows) {
            methods_.emplace_back(row);
        }
        before = places();
    }

    [[nodiscard]] std::vector<Place> places() const {
        std::vector<Place> found;
        for (const MethodName& method : methods_) {
            found.push_back(
                {method.implementation(), method.parentsImplementation(), method.otherSides()});
        }
        return found;
    }

    void expectReplaced() const {
        const std::vector<Place> after = places();
        for (std::size_t row = 0; row < before.size(); ++row) {
            SCOPED_TRACE(kRows[row]);
            ASSERT_NE(before[row].own, nullptr);
            EXPECT_NE(after[row].own, before[row].own);
            EXPECT_EQ(after[row].parents, before[row].parents);
            EXPECT_EQ(after[row].otherSides, nullptr);
        }
    }

    void expectUntouched() const {
        const std::vector<Place> after = places();
        for (std::size_t row = 0; row < before.size(); ++row) {
            SCOPED_TRACE(kRows[row]);
            EXPECT_EQ(after[row].own, before[row].own);
            EXPECT_EQ(after[row].parents, before[row].parents);
            EXPECT_EQ(after[row].otherSides, nullptr);
        }
    }

    std::vector<Place> before;

  private:
    std::vector<MethodName> methods_;
};

TEST_F(HomeScreenRows, AreInstalledOniOS12) {
    runSystem(kiOS12);
    loaded();
    expectReplaced();
}

TEST_F(HomeScreenRows, AreInstalledBetweenTheSystems) {
    runSystem(kBetween);
    loaded();
    expectReplaced();
}

TEST_F(HomeScreenRows, AreInstalledOniOS13) {
    runSystem(kiOS13);
    loaded();
    expectReplaced();
}

TEST_F(HomeScreenRows, WithoutTheirMethodAreNotInstalled) {
    for (const std::string& row : kRows) {
        hideMethod(row);
    }
    loaded();
    showMethods();
    expectUntouched();
}

TEST_F(HomeScreenRows, WithoutTheirClassAreNotInstalled) {
    const Class folder = [SBFloatyFolderView class];
    for (const std::string& row : kRows) {
        const std::string name(row);
        hideClass(name.substr(2, name.find(' ') - 2));
    }
    loaded();
    expectUntouched();
    EXPECT_EQ(class_getInstanceMethod(folder, sel_registerName("handleTap")), nullptr);
}

}  // namespace
}  // namespace velmoranth::standins::installation_rows_test
