// On which systems the replacements of icon view, label and badge are installed, and what a class
// that is missing does to the others.
#include "springboard_fixture.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace velmoranth::hooks::icon_view_installation_test {
namespace {

using core::HookRow;
using core::HookSide;
using core::HookTable;
using platform::ClassRef;
using tests::kiOS12;
using tests::kiOS13;

struct Method {
    const char* targetClass;
    HookSide side;
    const char* selector;
};

constexpr std::array<Method, 9> kMethods{{
    {"SBIconView", HookSide::instanceSide, "layoutSubviews"},
    {"SBIconImageView", HookSide::instanceSide, "darkeningOverlayImage"},
    {"SBIconLabelImage", HookSide::instanceSide,
     "_initWithCGImage:scale:orientation:parameters:maxSizeOffset:"},
    {"SBIconBadgeView", HookSide::instanceSide, "layoutSubviews"},
    {"SBIconBadgeView", HookSide::classSide, "_maxTextWidth"},
    {"SBIconLegibilityLabelView", HookSide::instanceSide, "setHidden:"},
    {"SBIconLegibilityLabelView", HookSide::instanceSide, "isHidden"},
    {"SBIconLegibilityLabelView", HookSide::instanceSide, "alpha"},
    {"SBIconLegibilityLabelView", HookSide::instanceSide, "setAlpha:"},
}};

// Null when the table has none.
const HookRow* rowOf(const Method& method) {
    const std::span<const HookRow> rows = core::HookTable::rows();
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const HookRow& row) {
        return row.targetClass == method.targetClass && row.side == method.side &&
               row.selector == method.selector;
    });
    return found == rows.end() ? nullptr : &*found;
}

class IconViewInstallation : public tests::SpringBoardProcess {
  protected:
    // Every class but one, with methods of the types that the replacements have.
    void addClasses(const std::string& without = "") {
        for (const Method& method : kMethods) {
            if (method.targetClass != without) {
                device.runtime.addClass(method.targetClass);
                const HookRow* const row = rowOf(method);
                ASSERT_NE(row, nullptr);
                ClassRef cls = device.runtime.getClass(method.targetClass);
                if (method.side == HookSide::classSide) {
                    cls = device.runtime.getMetaclass(cls);
                }
                device.runtime.addMethod(
                    cls, method.selector,
                    row->replacement.forwarding([] { return platform::Implementation(); }), "");
            }
        }
    }

    static bool isInstalled(const Method& method) { return rowOf(method)->isInstalled(); }

    void expectAllInstalled(double versionNumber) {
        addClasses();
        device.system.number = versionNumber;
        device.journal.clear();
        HookTable::install();
        for (const Method& method : kMethods) {
            EXPECT_TRUE(isInstalled(method)) << method.targetClass << " " << method.selector;
        }
        EXPECT_EQ(device.journal.count("warning: MS:Warning: [SBIcon"), 0U);
        EXPECT_EQ(device.journal.count("log "), 0U);
    }
};

TEST_F(IconViewInstallation, OnIos12) {
    expectAllInstalled(kiOS12);
}

TEST_F(IconViewInstallation, OnIos13) {
    expectAllInstalled(kiOS13);
}

TEST_F(IconViewInstallation, BetweenThem) {
    expectAllInstalled(1600);
}

TEST_F(IconViewInstallation, EachRowHasAReplacementOfItsOwn) {
    for (const Method& one : kMethods) {
        for (const Method& other : kMethods) {
            const HookRow* const a = rowOf(one);
            const HookRow* const b = rowOf(other);
            EXPECT_TRUE(static_cast<bool>(a->replacement));
            EXPECT_EQ(a->replacement == b->replacement, a == b);
        }
    }
}

TEST_F(IconViewInstallation, AMissingClassHarmsNoOther) {
    addClasses("SBIconBadgeView");
    install();
    for (const Method& method : kMethods) {
        EXPECT_EQ(isInstalled(method), std::string("SBIconBadgeView") != method.targetClass)
            << method.targetClass << " " << method.selector;
    }
    // A message to it is answered by nothing, as before.
    EXPECT_EQ(device.runtime.sendToClass<double>("SBIconBadgeView", "_maxTextWidth"), 0);
}

TEST_F(IconViewInstallation, AProcessWithoutAnyOfThemIsLeftAlone) {
    install();
    for (const Method& method : kMethods) {
        EXPECT_FALSE(isInstalled(method));
        EXPECT_EQ(device.runtime.getClass(method.targetClass), nullptr);
    }
}

}  // namespace
}  // namespace velmoranth::hooks::icon_view_installation_test
