// The table itself: what it says of each row, and its gates.
#include "core/hook_table.h"

#include "tests/support/test_device.h"

#include "expected_rows.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace velmoranth::core::hook_table_test {
namespace {

TEST(HookTable, HoldsEachRowInTheOrderOfInstallation) {
    const tests::TestDevice device;
    const std::span<HookRow> rows = HookTable::rows();
    ASSERT_EQ(rows.size(), 54U);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const HookRow& row = rows[i];
        const ExpectedRow& expected = kExpectedRows[i];
        SCOPED_TRACE(expected.number);
        EXPECT_EQ(row.number, expected.number);
        EXPECT_EQ(row.targetClass, expected.targetClass);
        EXPECT_EQ(row.side, expected.side);
        EXPECT_EQ(row.selector, expected.selector);
        EXPECT_EQ(row.gate, expected.gate);
        EXPECT_FALSE(row.isInstalled());
    }
}

TEST(HookTable, FortyNineRowsAreAlwaysOpenThreeAndTwoAreGated) {
    const tests::TestDevice device;
    const std::span<HookRow> rows = HookTable::rows();
    const auto count = [&](HookGate gate) {
        return std::count_if(rows.begin(), rows.end(),
                             [gate](const HookRow& row) { return row.gate == gate; });
    };
    EXPECT_EQ(count(HookGate::always), 49);
    EXPECT_EQ(count(HookGate::ios12), 3);
    EXPECT_EQ(count(HookGate::ios13), 2);
}

TEST(HookTable, IsOneTableForTheProcess) {
    const tests::TestDevice device;
    EXPECT_EQ(HookTable::rows().data(), HookTable::rows().data());
    std::set<const platform::Implementation*> slots;
    for (const HookRow& row : HookTable::rows()) {
        slots.insert(&row.saved);
    }
    EXPECT_EQ(slots.size(), 54U);
}

TEST(HookTable, EveryRowHasAReplacement) {
    const tests::TestDevice device;
    for (const HookRow& row : HookTable::rows()) {
        EXPECT_TRUE(static_cast<bool>(row.replacement)) << row.number;
    }
}

TEST(HookTable, NoTwoRowsShareAReplacement) {
    const tests::TestDevice device;
    const std::span<HookRow> rows = HookTable::rows();
    for (const HookRow& one : rows) {
        for (const HookRow& other : rows) {
            if (one.number != other.number) {
                EXPECT_FALSE(one.replacement == other.replacement)
                    << one.number << " " << other.number;
            }
        }
    }
}

TEST(HookTable, RowsOfOneMethodHaveReplacementsOfTheirOwn) {
    const tests::TestDevice device;
    const HookRow& ios12 = HookTable::rows()[49];
    const HookRow& ios13 = HookTable::rows()[52];
    EXPECT_FALSE(ios12.replacement == ios13.replacement);
    EXPECT_NE(&ios12.saved, &ios13.saved);
    EXPECT_FALSE(HookTable::rows()[43].replacement == HookTable::rows()[44].replacement);
}

TEST(HookTable, AddsOneMethodAfterTheTenthRow) {
    const std::span<const AddedMethod> methods = HookTable::addedMethods();
    ASSERT_EQ(methods.size(), 1U);
    EXPECT_EQ(methods[0].afterRow, 10);
    EXPECT_EQ(methods[0].targetClass, "SBFloatyFolderView");
    EXPECT_EQ(methods[0].selector, "handleTap");
    EXPECT_EQ(methods[0].typeEncoding, "v@:");
    // A message without arguments or result.
    EXPECT_NE(methods[0].implementation.as<void(platform::Object&)>(), nullptr);
}

TEST(HookGate, AlwaysIsOpenForEverySystem) {
    for (const double version : {-1.0, 0.0, 1575.23, 1600.0, 1665.15, 1e9}) {
        EXPECT_TRUE(isGateOpen(HookGate::always, version)) << version;
    }
}

TEST(HookGate, Ios12IsOpenUpToItsThreshold) {
    for (const double version : {0.0, 1443.0, 1556.0, 1575.22, 1575.23}) {
        EXPECT_TRUE(isGateOpen(HookGate::ios12, version)) << version;
    }
    for (const double version :
         {std::nextafter(1575.23, 2000.0), 1575.24, 1600.0, 1665.14, 1665.15, 1674.102}) {
        EXPECT_FALSE(isGateOpen(HookGate::ios12, version)) << version;
    }
    // Not greater, rather than less or equal.
    EXPECT_TRUE(isGateOpen(HookGate::ios12, std::numeric_limits<double>::quiet_NaN()));
}

TEST(HookGate, Ios13IsOpenFromItsThreshold) {
    for (const double version : {1665.15, std::nextafter(1665.15, 2000.0), 1674.102, 1751.108}) {
        EXPECT_TRUE(isGateOpen(HookGate::ios13, version)) << version;
    }
    for (const double version :
         {std::nextafter(1665.15, 0.0), 1665.14, 1600.0, 1575.24, 1575.23, 0.0}) {
        EXPECT_FALSE(isGateOpen(HookGate::ios13, version)) << version;
    }
    EXPECT_FALSE(isGateOpen(HookGate::ios13, std::numeric_limits<double>::quiet_NaN()));
}

}  // namespace
}  // namespace velmoranth::core::hook_table_test
