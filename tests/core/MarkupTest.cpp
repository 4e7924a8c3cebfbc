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

TEST(Markup, AgreesWithTheDescribedSearch) {
    const std::u16string pieces[] = {u"<KV:", u"</KV>", u"<kV:", u"</Kv>",  u"<",  u"/",   u"K",
                                     u"V",    u":",     u">",    u"\u212A", u"</", u"<KV", u"xyzxyzxyz"};
    Random random;
    for (int turn = 0; turn < 20000; ++turn) ASSERT_NO_FATAL_FAILURE(expectSame(random.text(pieces, 23)));
}

}  // namespace
}  // namespace velmor
