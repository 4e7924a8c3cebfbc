#include "rtf/pages/HeadersFooters.h"

#include <gtest/gtest.h>

#include "Pieces.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/pages/MergePageBreaks.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

#define H u"{\\rtf1{\\*\\korvanenewheader}}"
#define F u"{\\rtf1{\\*\\korvanenewfooter}}"
#define NEW u"\\sect\\sbkpage\\pgncont"

std::u16string applied(std::u16string text, bool tolerant = false) {
    CleanOptions options;
    options.tolerant = tolerant;
    TableCollection tables(u'\uFDD0');
    Module1::ExtractEmbeddedDocuments(text, tables, options);
    Module1::ApplyHeadersFooters(text, tables, options);
    tables.expand(text);
    return text;
}

struct Case {
    const char* what;
    const char16_t* before;
    const char16_t* after;
    bool tolerant = false;
};

class HeadersFooters : public testing::TestWithParam<Case> {};

TEST_P(HeadersFooters, BelongToTheirSections) {
    EXPECT_EQ(toUtf8(applied(GetParam().before, GetParam().tolerant)), toUtf8(GetParam().after)) << GetParam().what;
}

// Without a marker, headers and footers of a lifted document do not affect the host.
const Case leaks[] = {
    {"groups of all kinds", u"{\\rtf1{\\header h}a{\\rtf1{\\header 1}{\\headerf 2}{\\footerl 3}{\\footerr{4}}b}c}",
     u"{\\rtf1{\\header h}a{\\rtf1b}c}"},
    {"longer words stay", u"{\\rtf1{\\rtf1{\\headers x}{\\footery}{\\*\\header x}b}}",
     u"{\\rtf1{\\rtf1{\\headers x}{}{\\*\\header x}b}}"},
    {"words", u"{\\rtf1{\\rtf1\\facingp\\sectd\\headery1 \\footery2\\titlepg\\pgbrdrhead\\pgbrdrfoot x}}",
     u"{\\rtf1{\\rtf1\\sectd x}}"},
    {"page borders",
     u"{\\rtf1\\pgbrdrt\\brdrs\\brdrw5 {\\rtf1\\sectd\\pgbrdrl\\brdrs\\brsp9 \\pgbrdropt8\\brdrb\\brdrs x}}",
     u"{\\rtf1\\pgbrdrt\\brdrs\\brdrw5 {\\rtf1\\sectd\\pgbrdrt\\brdrs\\brdrw5\\brdrb\\brdrs x}}"},
    {"the host's header with a document in it", u"{\\rtf1{\\header{\\rtf1{\\header x}{\\footer y}logo}}a}",
     u"{\\rtf1{\\header{\\rtf1logo}}a}"},
    {"the host's words return after \\sectd",
     u"{\\rtf1\\sectd\\headery5\\titlepg a{\\rtf1\\sectd\\headery9\\cols2 b\\sect\\sectd c}}",
     u"{\\rtf1\\sectd\\headery5\\titlepg a{\\rtf1\\sectd\\headery5\\titlepg\\cols2 b\\sect\\sectd\\headery5c}}"},
    {"escaped braces", u"{\\rtf1{\\rtf1{\\header a\\}b\\\\}c}}", u"{\\rtf1{\\rtf1c}}"},
    {"other words stay", u"{\\rtf1 a{\\rtf1\\sectd\\pgbrdrt\\brdrs\\brdrcf1\\brdrb\\brdrs x}}",
     u"{\\rtf1 a{\\rtf1\\sectd\\brdrb\\brdrs x}}"},
    {"no end", u"{\\rtf1{\\rtf1{\\header x}y}{\\rtf1{\\header x", u"{\\rtf1{\\rtf1y}{\\rtf1{\\header x"},
};
INSTANTIATE_TEST_SUITE_P(Leaks, HeadersFooters, testing::ValuesIn(leaks));

const Case markers[] = {
    {"groups of the next document", u"{\\rtf1{\\header h}a\\par" H u"{\\rtf1{\\header n}{\\footer m}b}c}",
     u"{\\rtf1{\\header h}a\\par" NEW u"{\\header n}{\\rtf1b}c}"},
    {"distances and borders",
     u"{\\rtf1\\sectd a" H u"{\\rtf1\\sectd\\headery5\\footery6\\pgbrdrhead\\pgbrdrfoot\\pgbrdrt\\brdrs"
     u"{\\header n}b}}",
     u"{\\rtf1\\sectd a" NEW u"\\headery5\\pgbrdrt\\brdrs\\pgbrdrhead{\\header n}{\\rtf1b}}"},
    {"the section begins without text", u"{\\rtf1{\\header h}{\\footer f}\\pard " H u"{\\rtf1\\headery5{\\header n}b}}",
     u"{\\rtf1{\\footer f}\\pard {\\header n}\\headery5{\\rtf1b}}"},
    {"after a page break", u"{\\rtf1 a\\page \\par\\pard" H u"{\\rtf1{\\header n}}b}",
     u"{\\rtf1 a" NEW u"{\\header n}\\par\\pard{\\rtf1}b}"},
    {"before a page break", u"{\\rtf1 a" H u"{\\rtf1{\\header n}\\par}\\page b\\page c}",
     u"{\\rtf1 a" NEW u"{\\header n}{\\rtf1\\par}b\\page c}"},
    {"after a table", u"{\\rtf1 a\\trowd\\intbl b" H u"{\\rtf1{\\header n}x}\\cell\\row\\pard c}",
     u"{\\rtf1 a\\trowd\\intbl b{\\rtf1x}\\cell\\row\\pard " NEW u"{\\header n}c}"},
    {"not in a header or a note", u"{\\rtf1{\\header a" H u"}b{\\footnote c" H u"{\\rtf1{\\header x}}}}",
     u"{\\rtf1{\\header a}b{\\footnote c{\\rtf1}}}"},
    {"a page that is described", u"{\\rtf1 a\\page{\\*\\korvanesection}" H u"{\\rtf1{\\header n}}b}",
     u"{\\rtf1 a\\page\\sbkpage\\pgncont{\\header n}{\\*\\korvanesection}{\\rtf1}b}"},
    {"a page that is described later", u"{\\rtf1 a" H u"{\\rtf1{\\header n}}b{\\*\\korvanesection}}",
     u"{\\rtf1 a\\page\\sbkpage\\pgncont{\\header n}{\\rtf1}b{\\*\\korvanesection}}"},
    {"nothing after it", u"{\\rtf1 a\\par" H u"\\par}", u"{\\rtf1 a\\par\\par}"},
    {"a marker with more in it", u"{\\rtf1 a{\\*\\korvanenewheader x}{\\*\\korvanenewheaders}b}",
     u"{\\rtf1 a{\\*\\korvanenewheader x}{\\*\\korvanenewheaders}b}"},
    {"the first page follows", u"{\\rtf1{\\footer f}a" H u"{\\rtf1\\titlepg{\\header n}{\\headerf 1}b}c}",
     u"{\\rtf1{\\footer f}a" NEW u"\\titlepg{\\header n}{\\headerf 1}{\\footerf f}{\\rtf1b}c}"},
    {"a host's group after the page break", u"{\\rtf1 a\\page{\\header h}" H u"{\\rtf1{\\header n}}b}",
     u"{\\rtf1 a\\page{\\header h}" NEW u"{\\header n}{\\rtf1}b}"},
    {"the first group of a kind counts",
     u"{\\rtf1{\\header h}{\\header i}\\titlepg a" F u"{\\rtf1{\\footer n}{\\footer o}b}}",
     u"{\\rtf1{\\header h}{\\header i}\\titlepg a" NEW u"{\\headerf h}{\\footer n}{\\footerf n}{\\rtf1b}}"},
    {"a document after the next one", u"{\\rtf1 a" H u"{\\rtf1 b}{\\rtf1{\\header n}c}}",
     u"{\\rtf1 a" NEW u"{\\header\\pard\\plain\\fs2\\par}{\\rtf1 b}{\\rtf1c}}"},
    {"only a page break after it", u"{\\rtf1 a" H u"\\page}", u"{\\rtf1 a" NEW u"{\\header\\pard\\plain\\fs2\\par}}"},
    {"a distance of the host, and one after the group",
     u"{\\rtf1 a" H u"\\headery8 {\\rtf1{\\header n}\\headery5 b}\\sect{\\rtf1\\sectd c}}",
     u"{\\rtf1 a" NEW u"\\headery5{\\header n}\\headery8 {\\rtf1b}\\sect{\\rtf1\\sectd\\headery8c}}"},
    {"\\sectd of the host", u"{\\rtf1 a" H u"{\\rtf1\\headery5{\\header n}b}\\sectd c}",
     u"{\\rtf1 a" NEW u"\\headery5{\\header n}{\\rtf1b}\\sectd\\headery5c}"},
    {"a new footer on first pages",
     u"{\\rtf1\\titlepg{\\footer f}a" H u"{\\rtf1{\\header n}b}\\sect{\\footer g}c" H u"{\\rtf1{\\header o}d}}",
     u"{\\rtf1\\titlepg{\\footer f}a" NEW u"{\\header n}{\\headerf n}{\\footerf f}{\\rtf1b}\\sect{\\footer "
     u"g}c" NEW u"{\\header o}{\\headerf o}{\\footerf g}{\\rtf1d}}"},
    {"in a document in a row", u"{\\rtf1\\intbl a{\\rtf1 b" H u"{\\rtf1{\\header n}c}}\\pard d}",
     u"{\\rtf1\\intbl a{\\rtf1 b{\\rtf1c}}\\pard " NEW u"{\\header n}d}"},
    {"words of the section before a page break",
     u"{\\rtf1 a" H u"{\\rtf1\\headery6{\\header n}b}\\page" H u"{\\rtf1{\\header o}c}\\sect{\\rtf1\\sectd d}}",
     u"{\\rtf1 a" NEW u"\\headery6{\\header n}{\\rtf1b}" NEW u"{\\header o}{\\rtf1c}\\sect{\\rtf1\\sectd\\headery6d}}"},
    {"facing pages", u"{\\rtf1\\facingp a" H u"{\\rtf1{\\header n}b}}",
     u"{\\rtf1\\facingp a" NEW u"{\\header n}{\\headerl n}{\\rtf1b}}"},
    {"a group of the host", u"{\\rtf1 a" H u"{\\header h}{\\rtf1{\\header n}b}}",
     u"{\\rtf1 a" NEW u"{\\header h}{\\rtf1b}}"},
    {"the first page without a new section", u"{\\rtf1{\\footer f}" H u"{\\rtf1\\titlepg{\\header n}b}}",
     u"{\\rtf1{\\footer f}{\\header n}{\\headerf\\pard\\plain\\fs2\\par}{\\footerf f}\\titlepg{\\rtf1b}}"},
    {"the first section's words stay", u"{\\rtf1{\\rtf1\\sectd\\cols2 b}c}", u"{\\rtf1{\\rtf1\\sectd\\cols2 b}c}",
     true},
    {"words after a brace", u"{\\rtf1 a" H u"{\\footery9 {\\rtf1\\headery6{\\header n}b}\\sect}{\\rtf1\\sectd c}}",
     u"{\\rtf1 a" NEW u"\\headery6{\\header n}{\\footery9 {\\rtf1b}\\sect}{\\rtf1\\sectd\\headery6c}}", true},
};
INSTANTIATE_TEST_SUITE_P(Markers, HeadersFooters, testing::ValuesIn(markers));

// Each word of the stages.
TEST(HeadersFootersOf, EveryWord) {
    const std::u16string before = u"{\\rtf1{\\rtf1", after = u"x}}";
    for (const auto word : test::piecesOf(u"\\pgbrdrt|\\pgbrdrb|\\pgbrdrl|\\pgbrdrr|\\pgbrdropt8|\\pgbrdrsnap")) {
        const std::u16string frame = std::u16string(word) + u"\\brdrs ";  // its blank is part of it
        EXPECT_EQ(toUtf8(applied(before + frame + after)), toUtf8(before + after)) << toUtf8(word);
        for (const auto border : test::piecesOf(u"\\brdrt |\\brdrb |\\brdrl |\\brdrr |\\brdrbtw |\\brdrbar ")) {
            const std::u16string kept = std::u16string(border) + after;
            EXPECT_EQ(toUtf8(applied(before + frame + kept)), toUtf8(before + kept)) << toUtf8(border);
        }
    }
}

// An empty header moves no text, whatever its distance.
TEST(JoinedHeaders, EmptyHeadersTakeNoRoom) {
#define M u"{\\*\\korvanemergepagebreak}"
    std::u16string text =
        u"{\\rtf1{\\header h}a" M u"{\\rtf1\\sectd\\headery1440 b\\sect c}" M u"{\\rtf1 d\\sect{\\header n}e}}";
#undef M
    CleanOptions options;
    options.tolerant = true;
    JoinedPart whole;
    Module1::ApplyMergePageBreaks(text, options, true, whole);
    EXPECT_NE(text.find(u"{\\header\\pard\\plain\\fs2\\par}"), text.npos) << toUtf8(text);
    EXPECT_NE(text.find(u"\\headery1440 b{\\headery0\\sect}c}\\headery0\\sect"), text.npos) << toUtf8(text);
    // It inherits the empty header, until it gives one.
    EXPECT_TRUE(text.ends_with(u"d{\\headery0\\sect}{\\header n}e}}")) << toUtf8(text);
}

TEST(JoinedHeaders, GiveTheHostFacingPages) {
    const auto joined = [](const std::u16string& begin) {
        std::u16string text = u"{\\rtf1" + begin + u"{\\*\\korvanemergepagebreak}{\\rtf1\\facingp b}}";
        JoinedPart whole;
        Module1::ApplyMergePageBreaks(text, {}, true, whole);
        return toUtf8(text.substr(6, text.find(u"\\sect\\pgwsxn") - 6));
    };
    EXPECT_EQ(joined(u"\\ansi{\\fonttbl x}a"), "\\facingp\\ansi{\\fonttbl x}a");
    EXPECT_EQ(joined(u" a"), " \\facingp a");
    EXPECT_EQ(joined(u"{\\fonttbl x}\\facingp a"), "{\\fonttbl x}\\facingp a");
    EXPECT_EQ(joined(u"\\plain\\facingp a"), "\\facingp\\plain\\facingp a");  // the header has ended
}

TEST(HeadersFootersOf, TwentyThousandDocuments) {
    std::u16string text = u"{\\rtf1\\titlepg{\\footer f}a", expected = text;
    for (int i = 0; i < 20000; ++i) {
        text += H u"{\\rtf1{\\header n}b}";
        expected += NEW u"{\\header n}{\\headerf n}";
        if (i == 0) expected += u"{\\footerf f}";
        expected += u"{\\rtf1b}";
    }
    EXPECT_TRUE(applied(text + u"}") == expected + u"}");
}

TEST(HeadersFootersOf, DeepGroupsAndDocuments) {
    constexpr int depth = 100000;
    std::u16string text = u"{\\rtf1 a", ends;
    for (int i = 0; i < depth; ++i) text += u"{\\header{\\rtf1 " H;
    for (int i = 0; i < depth; ++i) ends += u"}}";
    const std::u16string result = applied(text + ends + u"}");
    EXPECT_EQ(result.find(u"korvane"), std::u16string::npos);
    EXPECT_EQ(std::count(result.begin(), result.end(), u'{'), std::count(result.begin(), result.end(), u'}'));
}

}  // namespace
}  // namespace velmor
