#include "EngineModel.h"

#include <gtest/gtest.h>

namespace {

// Many short lives find more than one long one: a file that is young, small and
// deep in a transaction behaves differently at every step.
TEST(EngineModelTest, EngineAndPlainContainersAgreeAfterEveryStep)
{
    EngineModel::Counts sum;
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        EngineModel model(seed);
        for (int step = 0; step < 200; ++step) {
            model.Step();
            model.Compare();
        }
        const EngineModel::Counts& done = model.Done();
        sum.inserts += done.inserts;
        sum.updates += done.updates;
        sum.deletes += done.deletes;
        sum.refused += done.refused;
        sum.rollbacks += done.rollbacks;
        sum.commits += done.commits;
        sum.schemaChanges += done.schemaChanges;
        sum.reopens += done.reopens;
    }
    // The walk went everywhere.
    EXPECT_GT(sum.inserts, 400);
    EXPECT_GT(sum.updates, 200);
    EXPECT_GT(sum.deletes, 100);
    EXPECT_GT(sum.refused, 10);
    EXPECT_GT(sum.rollbacks, 20);
    EXPECT_GT(sum.commits, 20);
    EXPECT_GT(sum.schemaChanges, 50);
    EXPECT_GT(sum.reopens, 5);
}

TEST(EngineModelTest, EngineAndPlainContainersAgreeAfterALongWalk)
{
    EngineModel model(2024);
    for (int step = 1; step <= 3000; ++step) {
        model.Step();
        if (step % 50 == 0)
            model.Compare();
    }
}

} // namespace
