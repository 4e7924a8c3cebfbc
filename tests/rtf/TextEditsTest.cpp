#include "Seed.h"
#include "rtf/edit/TextEdits.h"

#include <gtest/gtest.h>

#include <random>

#include "rtf/edit/TableCollection.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

// The same result in place, with or without spare capacity, and in a new text.
TEST(TextEdits, EqualChangesMadeOneByOneFromTheEnd) {
    const unsigned seed = testSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 5000; ++round) {
        std::u16string text(random() % 60, u'x');
        for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(u'a' + i % 26);
        if (random() % 2 == 0) text.reserve(text.size() + random() % 100);
        const std::u16string before = text;

        struct Change {
            std::size_t begin, end;
            std::u16string text;
        };
        std::vector<Change> changes;
        TextEdits edits;
        for (std::size_t at = random() % 9; at <= before.size(); at += random() % 9) {
            const std::size_t end = std::min(before.size(), at + random() % 6);
            const std::u16string put(random() % 3 == 0 ? random() % 20 : 0, u'-');
            edits.replaceVal(at, end, put);
            changes.push_back({at, end, put});
            at = end;
        }
        std::u16string literal = before;
        for (auto it = changes.rbegin(); it != changes.rend(); ++it) {
            literal.replace(it->begin, it->end - it->begin, it->text);
        }
        edits.apply(text);
        ASSERT_EQ(toUtf8(text), toUtf8(literal)) << toUtf8(before);
        EXPECT_TRUE(edits.empty());
    }
}

TEST(TextEdits, InAnyOrderKeepTheirPlacesAndLoseWhatLiesInOthers) {
    std::u16string text = u"abcdef";
    TextEdits edits;
    edits.cut(4, 5);
    edits.insert(2, u"lost");
    edits.cut(1, 3);
    edits.insert(1, u"1");
    edits.replace(1, 2, u"lost");
    edits.insert(1, u"2");
    edits.insert(3, u"3");
    edits.insert(0, u"forgotten");
    edits.truncate(7);
    edits.apply(text);
    EXPECT_EQ(toUtf8(text), "a123df");
}

// ---- Putting back

TEST(TableCollection, ExpandsAtEveryDepthWithAnyCapacity) {
    for (const std::size_t room : {0, 1000}) {
        TableCollection tables(u'#');
        tables.documents().push_back({u"[1" + tables.placeholder(std::size_t{1}) + u"]", {}});
        tables.documents().push_back({u"[2]", {}});
        tables.store(SharedTable::fonts, u"F");
        std::u16string text = u"a" + tables.placeholder(SharedTable::fonts) + u"b" +
                              tables.placeholder(std::size_t{0}) + tables.placeholder(SharedTable::styles) + u"c";
        text.reserve(room);
        tables.expand(text);
        EXPECT_EQ(toUtf8(text), "aFb[1[2]]c");
    }
}

TEST(TableCollection, EndsForTextsWithinThemselvesOrTwice) {
    TableCollection tables(u'#');
    const std::u16string first = tables.placeholder(std::size_t{0}), second = tables.placeholder(std::size_t{1});
    tables.documents().push_back({u"[" + second + u"]", {}});
    tables.documents().push_back({u"(" + first + u")", {}});
    std::u16string text = first + second + u"#7777777##";
    text.reserve(1000);
    tables.expand(text);
    EXPECT_EQ(toUtf8(text), "[()]([])");
}

}  // namespace
}  // namespace velmor
