#include <gtest/gtest.h>

#include "Random.h"
#include "core/EvaluationDuel.h"

namespace velmor {
namespace {

TEST(Evaluation, EqualsTheLiteralLoop) {
    Random random;
    int compared = 0;
    for (int turn = 0; turn < 45000; ++turn) {
        const auto bytes = random.bytes(60);
        test::EvaluationDuel duel(bytes.data(), bytes.size());
        ASSERT_EQ(duel.run(), "");
        compared += duel.compared();
    }
    EXPECT_GT(compared, 20000);
}

}  // namespace
}  // namespace velmor
