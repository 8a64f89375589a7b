// Cases that end in every way, for the test of the runner.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

TEST(Outcomes, Passes) {}

TEST(Outcomes, Fails) {
    EXPECT_TRUE(false);
}

TEST(Outcomes, Skips) {
    GTEST_SKIP() << "why";
}

TEST(Outcomes, LeavesEarly) {
    std::exit(0);
}

TEST(Outcomes, Crashes) {
    std::abort();
}

TEST(Outcomes, Hangs) {
    sleep(60);
}
