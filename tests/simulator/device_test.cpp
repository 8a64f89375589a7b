#include "simulator/device.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace velmoranth::simulator::device_test {
namespace {

TEST(Device, SystemsStandOnEitherSideOfTheEnginesThresholds) {
    ASSERT_TRUE(systemVersion(12) && systemVersion(13));
    EXPECT_LE(systemVersion(12)->coreFoundationVersion, 1575.23);
    EXPECT_GE(systemVersion(13)->coreFoundationVersion, 1665.15);
    EXPECT_FALSE(systemVersion(14));
}

TEST(Device, EveryModelHasAConfigurationOfItsOwn) {
    std::set<std::string_view> names;
    for (const DeviceModel& model : deviceModels()) {
        EXPECT_TRUE(names.insert(model.name).second) << model.name;
        const auto configuration = deviceConfiguration(model.name, 12);
        ASSERT_TRUE(configuration);
        EXPECT_EQ(configuration->screen, model.screen);
        EXPECT_EQ(configuration->kind, model.kind);
        EXPECT_EQ(configuration->machine, model.machine);
        EXPECT_EQ(configuration->system, kSystem12);
    }
}

TEST(Device, PhoneIsTheDefault) {
    EXPECT_EQ(deviceConfiguration("phone", 13).value(), DeviceConfiguration{});
}

TEST(Device, UnknownModelNamesWhatThereIs) {
    const auto configuration = deviceConfiguration("watch", 13);
    ASSERT_FALSE(configuration);
    EXPECT_EQ(configuration.error().message,
              "there is no simulated device \"watch\" (phone, phone-667, pad)");
    EXPECT_FALSE(deviceConfiguration("phone", 11));
}

}  // namespace
}  // namespace velmoranth::simulator::device_test
