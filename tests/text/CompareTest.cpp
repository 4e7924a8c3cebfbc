#include "text/Compare.h"

#include <gtest/gtest.h>

#include "Random.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

TEST(Compare, OneUnitEqualsOneUnit) {
    // The Kelvin sign is not a k, the long s not an s, a dotted or dotless i not an i. The sharp s has a capital of
    // one unit; the micro sign shares that of mu. A capital of two units is ignored, and a soft hyphen counts.
    // clang-format off
    const struct {
        std::u16string_view left, right;
        bool equal;
    } pairs[] = {
        {u"<KV:Tag>", u"<kv:tAG>", true}, {u"<KV:", u"<\u212AV:", false}, {u"s", u"\u017F", false},
        {u"i", u"\u0130", false}, {u"I", u"\u0131", false}, {u"\u00DF", u"ss", false}, {u"\u00DF", u"\u1E9E", true},
        {u"\u00E9\u00FF", u"\u00C9\u0178", true}, {u"\u03C3\u03C2", u"\u03A3\u03A3", true}, {u"\u00B5", u"\u03BC", true},
        {u"\u01C4\u01C5", u"\u01C6\u01C6", true}, {u"\u0439", u"\u0419", true}, {u"\U00010400", u"\U00010428", false},
        {u"\xD801", u"\xD801", true}, {u"a\u00ADb", u"ab", false}, {u"", u"a", false}, {u"[", u"{", false}, {u"@", u"`", false}};
    // clang-format on
    for (const auto& pair : pairs) {
        SCOPED_TRACE(toUtf8(pair.left) + " " + toUtf8(pair.right));
        EXPECT_EQ(equalIgnoringCase(pair.left, pair.right), pair.equal);
        EXPECT_EQ(hashIgnoringCase(pair.left) == hashIgnoringCase(pair.right), pair.equal);
        EXPECT_EQ(findText(pair.left, pair.right, 0, Comparison::text) == 0, pair.equal);
    }
}

TEST(Compare, CaseMappingKeepsLengthsAndComparesEqual) {
    EXPECT_EQ(upperCase(u"stra\u00DFe \u0149 \u00FF \u0131 \u017F"), u"STRA\u00DFE \u0149 \u0178 \u0131 \u017F");
    EXPECT_EQ(lowerCase(u"K\u212A \u0130 \u00C0"), u"k\u212A \u0130 \u00E0");
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const char16_t u = static_cast<char16_t>(unit);
        ASSERT_EQ(foldUnit(u), foldUnit(upperUnit(u))) << unit;
        ASSERT_EQ(foldUnit(u), foldUnit(lowerUnit(u))) << unit;
        ASSERT_EQ(foldUnit(u) < 0x80, unit < 0x80) << unit;
    }
}

// Compared with the library's plain search, in both directions and comparisons.
void expectPlain(const std::u16string& text, const std::u16string& sought, std::size_t start) {
    const auto expect = [&](Comparison comparison, const std::u16string& plain, const std::u16string& plainSought) {
        const std::string said = toUtf8(sought) + " in " + toUtf8(text);
        ASSERT_EQ(findText(text, sought, start, comparison), plain.find(plainSought, start))
            << said << " from " << start;
        ASSERT_EQ(findTextReverse(text, sought, comparison), plain.rfind(plainSought)) << said;
    };
    expect(Comparison::binary, text, sought);
    expect(Comparison::text, lowerCase(text), lowerCase(sought));
}

std::u16string spelled(std::u16string_view alphabet, unsigned number, std::size_t length) {
    std::u16string text;
    for (std::size_t i = 0; i < length; ++i, number /= 2) text += alphabet[number % 2];
    return text;
}

// Every text of ten letters and every sought text of up to six: of two letters that differ in case only,
// in ASCII and beyond (where text comparison always takes its thorough path).
TEST(Search, EveryShortText) {
    for (const std::u16string_view alphabet : {u"aA", u"ab", u"\u00E9\u00E4"}) {
        for (unsigned text = 0; text < 1024; ++text) {
            for (std::size_t size = 0; size <= 6; ++size) {
                for (unsigned sought = 0; sought < 1u << size; ++sought) {
                    expectPlain(spelled(alphabet, text, 10), spelled(alphabet, sought, size), sought % 3);
                }
            }
        }
    }
    expectPlain(u"abc", u"", 4);
    expectPlain(u"", u"", 0);
}

// The sought text differs from the text in a late unit: the search changes to its thorough path at any
// place.
TEST(Search, LateDifferences) {
    Random random;
    for (int round = 0; round < 1000; ++round) {
        const std::u16string period = u"a" + random.text(u"ab", 4);
        std::u16string text;
        while (text.size() < 1500) text += period;
        for (unsigned i = random.below(12); i > 0; --i) text[random.below(text.size())] = u'A';
        for (unsigned i = random.below(6); i > 0; --i) text.insert(random.below(text.size()), random.text(u"ab", 3));
        const std::size_t size = 100 + random.below(200);
        std::u16string sought = text.substr(random.below(text.size() - size), size);
        if (random.below(4) == 0) sought[64 + random.below(size - 64)] = u'B';
        expectPlain(text, sought, random.below(50));
    }
}

}  // namespace
}  // namespace velmor
