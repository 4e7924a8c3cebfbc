#include "text/Compare.h"

#include <gtest/gtest.h>

#include <random>

#include "text/Encoding.h"

namespace velmor {
namespace {

struct CasePair {
    std::u16string_view left;
    std::u16string_view right;
    bool equal;
};

TEST(Compare, OneUnitEqualsOneUnit) {
    const CasePair pairs[] = {
        {u"<KV:Tag>", u"<kv:tAG>", true},
        {u"<KV:", u"<\u212AV:", false},  // the Kelvin sign is no k
        {u"s", u"\u017F", false},        // nor the long s an s
        {u"i", u"\u0130", false},        // nor a dotted I an i
        {u"I", u"\u0131", false},        // nor a dotless i an I
        {u"\u00DF", u"ss", false},       // sharp s
        {u"\u00DF", u"\u1E9E", true},    // and its capital
        {u"\u00E9\u00FF", u"\u00C9\u0178", true},
        {u"\u03C3\u03C2", u"\u03A3\u03A3", true},
        {u"\u00B5", u"\u03BC", true},  // the micro sign and mu share their capital
        {u"\u01C4\u01C5", u"\u01C6\u01C6", true},
        {u"\u0439", u"\u0419", true},
        {u"\U00010400", u"\U00010428", false},  // beyond one unit: as they are
        {u"\xD801", u"\xD801", true},
        {u"a\u00ADb", u"ab", false},  // a soft hyphen counts
        {u"", u"a", false},
        {u"[", u"{", false},
        {u"@", u"`", false},
    };
    for (const CasePair& pair : pairs) {
        SCOPED_TRACE(toUtf8(pair.left) + " " + toUtf8(pair.right));
        EXPECT_EQ(equalIgnoringCase(pair.left, pair.right), pair.equal);
        const bool equalHashes = hashIgnoringCase(pair.left) == hashIgnoringCase(pair.right);
        EXPECT_EQ(equalHashes, pair.equal);
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

// All sought texts and texts over an alphabet that makes them overlap, both ways, against the
// library's plain search; then long ones that drive the search to its thorough path.
std::size_t plainFind(std::u16string text, std::u16string sought, std::size_t start, bool binary) {
    return binary ? text.find(sought, start) : lowerCase(text).find(lowerCase(sought), start);
}

std::size_t plainFindReverse(std::u16string text, std::u16string sought, bool binary) {
    return binary ? text.rfind(sought) : lowerCase(text).rfind(lowerCase(sought));
}

void expectPlain(const std::u16string& text, const std::u16string& sought, std::size_t start) {
    for (const bool binary : {true, false}) {
        const Comparison comparison = binary ? Comparison::binary : Comparison::text;
        ASSERT_EQ(findText(text, sought, start, comparison), plainFind(text, sought, start, binary))
            << toUtf8(sought) << " in " << toUtf8(text) << " from " << start;
        ASSERT_EQ(findTextReverse(text, sought, comparison), plainFindReverse(text, sought, binary))
            << toUtf8(sought) << " in " << toUtf8(text);
    }
}

std::u16string spelled(unsigned number, std::size_t length) {
    std::u16string text;
    for (std::size_t i = 0; i < length; ++i, number /= 3) text += u"aA\u00E9"[number % 3];
    return text;
}

TEST(Search, EveryShortText) {
    for (unsigned i = 0; i < 729; ++i) {
        for (unsigned j = 0; j < 39; ++j) {
            const std::size_t size = j < 3 ? 1 : j < 12 ? 2 : 3;
            expectPlain(spelled(i, 6), spelled(j < 3 ? j : j < 12 ? j - 3 : j - 12, size), j % 3);
        }
    }
    expectPlain(u"abc", u"", 0);
    expectPlain(u"abc", u"", 3);
    expectPlain(u"abc", u"", 4);
    expectPlain(u"", u"", 0);
}

TEST(Search, LongRepetitiveTexts) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 400; ++round) {
        const unsigned letters = 1 + random() % 3;
        const auto some = [&](std::size_t length) {
            std::u16string text;
            while (text.size() < length) text += u"abA\u00E9"[random() % letters + (round % 4 == 0)];
            return text;
        };
        std::u16string unit = some(1 + random() % 9);
        std::u16string text, sought;
        while (text.size() < 3000) text += unit;
        for (unsigned i = random() % 4; i > 0; --i) text[random() % text.size()] = u'b';
        while (sought.size() < 1 + random() % 300) sought += unit;
        if (round % 3 == 0) sought += some(random() % 2);
        expectPlain(text, sought, random() % 50);
    }
}

// Hits and near hits at every place of a block.
TEST(Search, EveryPlace) {
    for (std::size_t place = 0; place + 7 <= 100; ++place) {
        std::u16string text(100, u'\\');
        text.replace(place, 7, u"\\trowd ");
        expectPlain(text, u"\\TROWD", 0);
        expectPlain(text, u"\\trowd", 0);
        expectPlain(text, u"\\trowd", place);
        expectPlain(text, u"\\trowd", place + 1);
    }
}

}  // namespace
}  // namespace velmor
