#include "device/platform/phone_test.h"
#include "device/platform/services.h"
#include "device/standins/standin.h"
#include <CoreFoundation/CoreFoundation.h>

#include <vector>

namespace velmoranth::device::core_foundation_test {
namespace {

struct Delivery {
    void* observer;
    std::string name;
    const void* object;
    const void* userInfo;
    bool isFromTheCentre;

    friend bool operator==(const Delivery&, const Delivery&) = default;
};

std::vector<Delivery> deliveries;

void note(platform::DarwinNotificationCenter& center, void* observer, const std::string& name,
          const void* object, const platform::Dictionary* userInfo) {
    deliveries.push_back(
        {observer, name, object, userInfo, &center == &darwinNotificationCenter()});
}

int others = 0;

void countOther(platform::DarwinNotificationCenter& /*center*/, void* /*observer*/,
                const std::string& /*name*/, const void* /*object*/,
                const platform::Dictionary* /*userInfo*/) {
    ++others;
}

using platform::SuspensionBehavior;
using CoreFoundation = PhoneTest;
using DarwinNotificationCenter = PhoneTest;

TEST_F(DarwinNotificationCenter, RegistersByNameAndBehaviour) {
    standins::clearJournal();
    darwinNotificationCenter().addObserver(nullptr, &note, "org.example/changed", nullptr,
                                           SuspensionBehavior::coalesce);
    darwinNotificationCenter().addObserver(nullptr, &note, "org.example/other", nullptr,
                                           SuspensionBehavior::deliverImmediately);
    EXPECT_EQ(standins::journal(),
              (std::vector<std::string>{
                  "CFNotificationCenterAddObserver nil \"org.example/changed\" nil 2",
                  "CFNotificationCenterAddObserver nil \"org.example/other\" nil 4"}));
}

TEST_F(DarwinNotificationCenter, IsGivenTheObserverAsItIs) {
    int self = 0;
    standins::clearJournal();
    darwinNotificationCenter().addObserver(&self, &note, "changed", nullptr,
                                           SuspensionBehavior::coalesce);
    EXPECT_EQ(standins::journal(),
              std::vector<std::string>{"CFNotificationCenterAddObserver set \"changed\" nil 2"});
    // So it is found by the same address.
    CFNotificationCenterRemoveObserver(
        CFNotificationCenterGetDarwinNotifyCenter(), &self,
        static_cast<CFStringRef>(static_cast<const void*>(@"changed")), nullptr);
    standins::postDarwinNotification("changed");
    standins::runMainQueue();
    EXPECT_TRUE(deliveries.empty());
}

// The centre calls back for each registration, and does not say for which.
TEST_F(DarwinNotificationCenter, RunsEachRegistrationOfAPairOnceAPost) {
    darwinNotificationCenter().addObserver(nullptr, &note, "both", nullptr,
                                           SuspensionBehavior::coalesce);
    darwinNotificationCenter().addObserver(nullptr, &countOther, "both", nullptr,
                                           SuspensionBehavior::coalesce);
    for (int posts = 1; posts <= 3; ++posts) {
        standins::postDarwinNotification("both");
        standins::runMainQueue();
        EXPECT_EQ(deliveries.size(), static_cast<std::size_t>(posts));
        EXPECT_EQ(others, posts);
    }
}

TEST_F(DarwinNotificationCenter, TellsObserversOfOneNameApart) {
    int first = 0;
    int second = 0;
    darwinNotificationCenter().addObserver(&first, &note, "shared", nullptr,
                                           SuspensionBehavior::coalesce);
    darwinNotificationCenter().addObserver(&second, &countOther, "shared", nullptr,
                                           SuspensionBehavior::coalesce);
    darwinNotificationCenter().addObserver(&second, &note, "shared", nullptr,
                                           SuspensionBehavior::coalesce);
    standins::postDarwinNotification("shared");
    standins::runMainQueue();
    EXPECT_EQ(deliveries, (std::vector<Delivery>{{&first, "shared", nullptr, nullptr, true},
                                                 {&second, "shared", nullptr, nullptr, true}}));
    EXPECT_EQ(others, 1);
}

TEST_F(DarwinNotificationCenter, CallsBackFromTheMainLoop) {
    int self = 0;
    darwinNotificationCenter().addObserver(&self, &note, "changed", nullptr,
                                           SuspensionBehavior::coalesce);
    standins::postDarwinNotification("changed");
    EXPECT_TRUE(deliveries.empty());
    standins::runMainQueue();
    EXPECT_EQ(deliveries, (std::vector<Delivery>{{&self, "changed", nullptr, nullptr, true}}));
}

TEST_F(DarwinNotificationCenter, KeepsObserversApart) {
    darwinNotificationCenter().addObserver(nullptr, &note, "one", nullptr,
                                           SuspensionBehavior::coalesce);
    darwinNotificationCenter().addObserver(nullptr, &countOther, "two", nullptr,
                                           SuspensionBehavior::coalesce);
    standins::postDarwinNotification("two");
    standins::postDarwinNotification("three");
    standins::postDarwinNotification("two");
    standins::runMainQueue();
    EXPECT_TRUE(deliveries.empty());
    EXPECT_EQ(others, 2);
    standins::postDarwinNotification("one");
    standins::runMainQueue();
    EXPECT_EQ(deliveries, (std::vector<Delivery>{{nullptr, "one", nullptr, nullptr, true}}));
    EXPECT_EQ(others, 2);
}

TEST_F(CoreFoundation, HasTheSystemsVersionNumber) {
    standins::setSystemVersion(12, 4, 0, 1575.17);
    EXPECT_EQ(coreFoundation().versionNumber(), 1575.17);
    standins::setSystemVersion(13, 3, 0, 1674.102);
    EXPECT_EQ(coreFoundation().versionNumber(), 1674.102);
}

TEST_F(CoreFoundation, ComparesVersionsPartByPart) {
    standins::setSystemVersion(12, 4, 1, 1575.17);
    const auto isAtLeast = [](int major, int minor, int patch) {
        return coreFoundation().isSystemVersionAtLeast(major, minor, patch);
    };
    EXPECT_TRUE(isAtLeast(12, 0, 0));
    EXPECT_TRUE(isAtLeast(12, 4, 1));
    EXPECT_TRUE(isAtLeast(11, 9, 9));
    EXPECT_TRUE(isAtLeast(12, 3, 9));
    EXPECT_FALSE(isAtLeast(12, 4, 2));
    EXPECT_FALSE(isAtLeast(12, 5, 0));
    EXPECT_FALSE(isAtLeast(13, 0, 0));
}

}  // namespace
}  // namespace velmoranth::device::core_foundation_test
