#include <gtest/gtest.h>

#include "Random.h"
#include "core/EvaluationDuel.h"
#include "core/TestTags.h"

namespace velmor {
namespace {

TEST(Evaluation, EqualsTheLiteralLoop) {
    Random random;
    int compared = 0, plain = 0;
    for (int turn = 0; turn < 45000; ++turn) {
        const auto bytes = random.bytes(60);
        test::EvaluationDuel duel(bytes.data(), bytes.size());
        ASSERT_EQ(duel.run(), "");
        compared += duel.compared();
        plain += duel.wasPlain();
    }
    EXPECT_GT(compared, 20000);
    EXPECT_GT(plain, 400);
}

// The first, without its final colon, is sought with one: it is found at the second's place.
TEST(Evaluation, ChangesPlacesWhateverANameHolds) {
    for (const int pairs : {0, 3, 125, 126}) {
        test::TagTest on;
        std::int32_t calls = 0;
        on.addHandler(u"H", 3, [&](kvTag&) { return automation::Variant(++calls); });
        std::u16string tag = u"<KV:H>x";
        for (int i = 0; i < pairs; ++i) tag += u"<KV:</KV>";
        EXPECT_EQ(on.evaluate(tag + u"</KV>-" + tag + u":</KV>"), u"2-1") << pairs;
    }
}

}  // namespace
}  // namespace velmor
