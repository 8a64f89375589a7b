// A test that leaves as many objects as it found, once its pool is drained, and begins with an
// empty journal.
#pragma once

#include "device/standins/standin.h"
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmoranth::device {

class BalancedTest : public ::testing::Test {
  protected:
    void SetUp() override {
        standins::clearJournal();
        before_ = standins::allLiving();
        pool_ = [[NSAutoreleasePool alloc] init];
    }

    void TearDown() override {
        drain();
        [pool_ drain];
        EXPECT_EQ(standins::allLiving(), before_);
    }

    // What the platform autoreleased so far ends now.
    void drain() {
        [pool_ drain];
        pool_ = [[NSAutoreleasePool alloc] init];
    }

  private:
    NSAutoreleasePool* pool_ = nil;
    std::vector<std::string> before_;
};

using Lines = std::vector<std::string>;

}  // namespace velmoranth::device
