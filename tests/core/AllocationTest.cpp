// Evaluation when memory runs out: each allocation fails once.

#include <gtest/gtest.h>

#include "Allocations.h"
#include "core/TestTags.h"

namespace velmor {
namespace {

using test::TagTest;

// Evaluates with the allocation failing that `before` others precede; false when that many are not made.
bool evaluateFailing(kvTag& tag, const std::u16string& text, int before) {
    std::u16string copy = text;
    const test::LimitedAllocations limited(before, true);
    try {
        tag.Value(std::move(copy));
        tag.Result();
    } catch (const std::bad_alloc&) {
        // For the copy that Result returns.
    }
    return test::allocationFailed;
}

TEST(Allocation, FailuresAreReportedAndHarmNothing) {
    TagTest on;
    on.set(u"a", u"a text of some length with [PROPERTY:b=in it:] that needs memory");
    on.set(u"free", u"<KV:");
    on.addHandler(u"H", 5, [](kvTag& tag) { return automation::Variant(tag.CommandName() + u" from the handler H"); });
    for (const auto* shortened : {u"{\\rtf1 [PROPERTY:a=:] and <KV:H>some command:</KV>}",
                                  u"[SETPROPERTY:c=[PROPERTY:a=:] more: d=7:]<[PROPERTY:c=:]|[PROPERTY:d=:]>",
                                  u"[PROPERTY:free=:][PROPERTY:a=:] [PROPERTY:a] <KV:missing>:</KV>"}) {
        const std::u16string text = test::tagged(shortened);
        const std::u16string expected = on.evaluate(shortened);
        int failures = 0;
        for (const auto tag = on.make(u"");; ++failures) {
            tag->ErrorLog()->RemoveAll();
            if (!evaluateFailing(*tag, text, failures)) break;
            bool isTold = false;
            for (std::int32_t i = 1; i <= tag->ErrorLog()->Count(); ++i) {
                isTold |= tag->ErrorLog()->Item(i)->Properties()->GetValueLng(u"Err") == 7;
            }
            EXPECT_TRUE(isTold || (tag->Value() == text && tag->Result() == expected)) << failures;
            tag->Value(text);
            ASSERT_EQ(tag->Result(), expected) << failures;
        }
        EXPECT_GT(failures, 30);
    }
}

}  // namespace
}  // namespace velmor
