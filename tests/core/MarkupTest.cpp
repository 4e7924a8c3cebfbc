#include "core/Markup.h"

#include <gtest/gtest.h>

#include "Random.h"
#include "core/LiteralTags.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

void expectSame(const std::u16string& text) {
    std::vector<literal::Tag> tags;
    for (const TagSpan span : findTopLevelTags(text).tags) tags.push_back({span.open + 1u, span.close + 1u});
    ASSERT_EQ(tags, literal::topLevelTags(text)) << toUtf8(text);
    for (const TagSpan span : findMarkerPairs(text)) {
        const std::size_t close = literal::findTagEnd(text, span.open + 2u);
        ASSERT_EQ(span.complete() ? span.close + 1u : 0u, close) << toUtf8(text) << " at " << span.open;
    }
}

TEST(Markup, AgreesWithTheDescribedSearchOnEveryShortText) {
    const std::u16string pieces[] = {u"<KV:", u"</kv>", u"x", u"<K"};
    for (int number = 0; number < 4 << 14; ++number) {  // eight pieces each
        std::u16string text;
        for (int rest = number, i = 0; i < 8; ++i, rest /= 4) text += pieces[rest % 4];
        ASSERT_NO_FATAL_FAILURE(expectSame(text));
    }
}

TEST(Markup, AgreesWithTheDescribedSearchOnRandomPieces) {
    const std::u16string pieces[] = {u"<KV:", u"</KV>", u"<kV:", u"</Kv>",  u"<",  u"/",   u"K",
                                     u"V",    u":",     u">",    u"\u212A", u"</", u"<KV", u"xyzxyzxyz"};
    Random random;
    for (int turn = 0; turn < 20000; ++turn) ASSERT_NO_FATAL_FAILURE(expectSame(random.text(pieces, 23)));
}

TEST(Markup, StaysLinearOnUnclosedAndNestedMarkers) {
    std::u16string open, close;
    for (int i = 0; i < 250000; ++i) open += u"<KV:", close += u"</KV>";
    EXPECT_TRUE(findTopLevelTags(open).tags.empty());
    EXPECT_EQ(findTopLevelTags(open + close).tags, (std::vector<TagSpan>{{0, 9 * 250000 - 5}}));
}

}  // namespace
}  // namespace velmor
