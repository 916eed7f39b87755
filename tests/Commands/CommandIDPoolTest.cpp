#include "Commands/CommandIDPool.h"

#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

namespace {

TEST(CommandIDPool, HandsOutFromTheTopAndReusesTheLastReleased) {
    CommandIDPool pool(6000, 4096);
    EXPECT_EQ(pool.GetNextID(), 10095u);
    EXPECT_EQ(pool.GetNextID(), 10094u);
    pool.ReleaseID(10095);
    EXPECT_EQ(pool.GetNextID(), 10095u);
    EXPECT_EQ(pool.GetNextID(), 10093u);
}

TEST(CommandIDPool, TakesBackItsRangeAndTheNumberBehindIt) {
    CommandIDPool pool(6000, 4096);
    CapturedOutput output;
    pool.ReleaseID(5999);
    pool.ReleaseID(10097);
    pool.ReleaseID(6000);
    pool.ReleaseID(10096);
    EXPECT_EQ(output.Text(), "CommandIDPool release invalid cmd 5999\n"
                             "CommandIDPool release invalid cmd 10097\n");
    EXPECT_EQ(pool.GetNextID(), 10096u);
    EXPECT_EQ(pool.GetNextID(), 6000u);
    EXPECT_EQ(pool.GetNextID(), 10095u);
}

/// Takes one number more than the pool holds, its message on standard error where a death test
/// looks.
void Exhaust(long count) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    CommandIDPool pool(1, count);
    for (long taken = 0; taken <= count; ++taken)
        pool.GetNextID();
}

TEST(CommandIDPoolDeathTest, EndsTheProcessWhenItIsEmpty) {
    EXPECT_DEATH(Exhaust(0), "CommandIDPool - cmd pool empty\n");
    EXPECT_DEATH(Exhaust(3), "CommandIDPool - cmd pool empty\n");
}

} // namespace
