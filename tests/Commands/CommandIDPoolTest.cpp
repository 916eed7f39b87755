#include "Commands/CommandIDPool.h"

#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

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

/// Takes one number more than the pool holds, its message on standard error where a death test
/// looks.
void Exhaust() {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    CommandIDPool pool(1, 3);
    for (int taken = 0; taken <= 3; ++taken)
        pool.GetNextID();
}

TEST(CommandIDPoolDeathTest, EndsTheProcessWhenItIsEmpty) {
    EXPECT_DEATH(Exhaust(), "CommandIDPool - cmd pool empty\n");
}

} // namespace
