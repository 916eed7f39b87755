#include "Commands/CommandIDPool.h"

#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

TEST(CommandIDPool, TakesBackItsRangeAndTheNumberBehindItAndReusesTheLast) {
    CommandIDPool pool(6000, 4096);
    EXPECT_EQ(pool.GetNextID(), 10095u);
    CapturedOutput output;
    for (const unsigned int id : {5999u, 10097u, 6000u, 10096u})
        pool.ReleaseID(id);
    EXPECT_EQ(output.Text(), "CommandIDPool release invalid cmd 5999\n"
                             "CommandIDPool release invalid cmd 10097\n");
    for (const unsigned int id : {10096u, 6000u, 10094u})
        EXPECT_EQ(pool.GetNextID(), id);
}

TEST(CommandIDPoolDeathTest, EndsTheProcessWhenItIsEmpty) {
    CommandIDPool pool(1, 0);
    EXPECT_EXIT(pool.GetNextID(), testing::KilledBySignal(SIGABRT), "");
}

} // namespace
