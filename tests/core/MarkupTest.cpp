#include "Seed.h"
#include "core/Markup.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/LiteralTags.h"

namespace velmor {
namespace {

std::vector<literal::Tag> fastTags(const std::u16string& text) {
    std::vector<literal::Tag> tags;
    for (const TagSpan span : findTopLevelTags(text).tags) tags.push_back({span.open + 1u, span.close + 1u});
    return tags;
}

std::string shown(const std::u16string& text) {
    return {text.begin(), text.end()};
}

void expectSameTags(const std::u16string& text) {
    ASSERT_EQ(fastTags(text), literal::topLevelTags(text)) << shown(text);
}

void expectSamePairs(const std::u16string& text) {
    for (const TagSpan span : findMarkerPairs(text)) {
        const std::size_t close = literal::findTagEnd(text, span.open + 2u);
        ASSERT_EQ(span.complete() ? span.close + 1u : 0u, close) << shown(text) << " at " << span.open;
    }
}

TEST(Markup, AgreesWithTheDescribedSearchOnEveryShortText) {
    const std::u16string pieces[] = {u"<KV:", u"</kv>", u"x", u"<K"};
    const int most = 7;
    for (int length = 0; length <= most; ++length) {
        int texts = 1;
        for (int i = 0; i < length; ++i) texts *= 4;
        for (int number = 0; number < texts; ++number) {
            std::u16string text;
            for (int i = 0, rest = number; i < length; ++i, rest /= 4) text += pieces[rest % 4];
            expectSameTags(text);
            expectSamePairs(text);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(Markup, AgreesWithTheDescribedSearchOnEveryLongerTextOfMarkers) {
    const std::u16string pieces[] = {u"<KV:", u"</KV>", u"x"};
    for (int number = 0; number < 19683; ++number) {
        std::u16string text;
        for (int i = 0, rest = number; i < 9; ++i, rest /= 3) text += pieces[rest % 3];
        expectSameTags(text);
        if (HasFatalFailure()) return;
    }
}

TEST(Markup, AgreesWithTheDescribedSearchOnRandomPieces) {
    const unsigned seed = testSeed();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::u16string pieces[] = {u"<KV:", u"</KV>", u"<kV:", u"</Kv>",  u"<",  u"/",   u"K",
                                     u"V",    u":",     u">",    u"\u212A", u"</", u"<KV", u"xyzxyzxyz"};
    for (int turn = 0; turn < 20000; ++turn) {
        std::u16string text;
        for (unsigned count = random() % 24; count > 0; --count) text += pieces[random() % std::size(pieces)];
        expectSameTags(text);
        expectSamePairs(text);
        if (HasFatalFailure()) return;
    }
}

TEST(Markup, StaysLinearOnUnclosedAndNestedMarkers) {
    const std::size_t count = 250000;
    std::u16string open;
    std::u16string close;
    for (std::size_t i = 0; i < count; ++i) {
        open += u"<KV:";
        close += u"</KV>";
    }
    EXPECT_TRUE(findTopLevelTags(open).tags.empty());
    EXPECT_EQ(findTopLevelTags(open + close).tags,
              (std::vector<TagSpan>{{0, static_cast<std::uint32_t>(9 * count - 5)}}));
}

}  // namespace
}  // namespace velmor
