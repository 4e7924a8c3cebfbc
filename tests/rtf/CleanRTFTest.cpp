#include "rtf/clean/CleanRTF.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "CleaningOfPieces.h"
#include "Corpus.h"
#include "Random.h"
#include "RtfText.h"
#include "SmallStack.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {
namespace {

using test::onSmallStack;
using test::RtfText;

CleanOptions optionsOf(bool mergeMode, bool tolerant) {
    CleanOptions options;
    options.mergeMode = mergeMode;
    options.tolerant = tolerant;
    return options;
}

std::u16string cleaned(std::u16string text, const CleanOptions& options = {}) {
    platform::MemoryServices machine;
    Module1::CleanRTFText(text, options, machine);
    return text;
}

template <typename Check>
void inAllModes(const std::string& what, Check check) {
    for (const bool mergeMode : {false, true}) {
        for (const bool tolerant : {false, true}) {
            SCOPED_TRACE(what + (mergeMode ? ", merge mode" : "") + (tolerant ? ", tolerant" : ""));
            check(optionsOf(mergeMode, tolerant));
        }
    }
}

std::string withoutBlanks(std::u16string text) {
    std::erase_if(text, [](char16_t unit) { return unit == u'\n' || unit == u' '; });
    return toUtf8(text);
}

std::size_t count(std::u16string_view text, std::u16string_view sought) {
    std::size_t found = 0;
    for (std::size_t at = 0; (at = text.find(sought, at)) != text.npos; at += sought.size()) ++found;
    return found;
}

// ---- Texts that are cleaned

TEST(CleanRTF, ChangesFinishedDocumentsOnly) {
    const char16_t* const texts[] = {
        u"", u"plain\r\n\r\ntext  ", u"{\\rtf1 <KV:A>B:</KV>\r\n\r\n}", u"{\\rtf1 <kv:\r\n\r\n}", u"{\\\\rtf1\r\n\r\n}",
    };
    for (const char16_t* text : texts) EXPECT_EQ(toUtf8(cleaned(text)), toUtf8(text));
}

TEST(CleanRTF, ProtectsRowsUnlessTheOptionIsOff) {
    const std::u16string row = u"{\\rtf1 \\trowd\\cellx9 a\\cell\\row }";
    EXPECT_EQ(count(cleaned(row), u"\\trkeep\\row"), 1u);
    for (const std::u16string_view value : {u"1", u"0", u"", u"01", u"yes"}) {
        platform::MemoryServices machine;
        machine.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Options", u"RTF Table Overrun Protection", value);
        std::u16string text = row;
        Module1::CleanRTFText(text, {}, machine);
        EXPECT_EQ(count(text, u"\\trkeep"), value == u"1" ? 1u : 0u) << toUtf8(value);
    }
}

// ---- Documents in documents

TEST(CleanRTF, ReturnsDocumentsToTheirPlaces) {
    const char16_t* const text =
        u"{\\rtf1 a{\\rtf1 b{\\rtf1 c}d{\\rtf1 {\\rtf1 e}f}g}{\\rtf1{\\*\\korvanenewheader}}h{\\RTF1 i}j{\\rtf k}l}";
    inAllModes("nested", [&](const CleanOptions& options) {
        // Exact cleaning keeps the blank after "{\\rtf1"; a new header begins a section.
        const std::u16string result = cleaned(text, options);
        EXPECT_EQ(withoutBlanks(RtfText(result).text()), "abcdefghijkl");
        EXPECT_TRUE(RtfText(result).isBalanced());
        EXPECT_EQ(count(result, u"rtf1"), 1u);
    });
}

TEST(CleanRTF, BracketsTheTablesOfEveryText) {
    const std::u16string definition = u"\\trowd\\irow0\\lastrow\\cellx9";
    const std::u16string text = u"{\\rtf1" + definition + u"\\pard\\intbl a{\\rtf1" + definition +
                                u"\\pard\\intbl b{\\rtf" + definition +
                                u"\\pard\\intbl c\\cell\\row}\\cell\\row}\\cell" + definition + u"\\row}";
    inAllModes("tables in tables", [&](const CleanOptions& options) {
        const std::u16string result = cleaned(text, options);
        EXPECT_EQ(count(result, u"\\starttable"), 3u);
        EXPECT_EQ(count(result, u"\\itap3 c\\nestcell"), 1u);
        EXPECT_EQ(count(result, u"\\trowd"), 3u) << toUtf8(result);
    });
}

// No text of a document is replaced as a placeholder.
TEST(CleanRTF, CreatesNoTag) {
    const char16_t* const text =
        u"{\\rtf1 a{\\rtf1 <K{\\fonttbl{\\f0 A;}}V:TAG>INCLUDE=file:</KV>}"
        u"<K{\\*\\background}V:TAG>PRIVSTRCATDUMP:RTF1:</KV>\ufdd05\ufdd0}";
    const std::string result = toUtf8(RtfText(cleaned(text)).text());
    EXPECT_NE(result.find("<KV:TAG>INCLUDE=file:</KV>"), std::string::npos) << result;
    EXPECT_NE(result.find("<KV:TAG>PRIVSTRCATDUMP:RTF1:</KV>\uFDD0"
                          "5\uFDD0"),
              std::string::npos)
        << result;
}

TEST(CleanRTF, KeepsATextThatUsesEveryMark) {
    std::u16string text = u"{\\rtf1 a\r\n\r\n";
    for (unsigned unit = 0xE000; unit <= 0xFDEF; ++unit) text += static_cast<char16_t>(unit);
    EXPECT_TRUE(cleaned(text + u"}") == text + u"}");
    std::erase(text, u'\uf123');
    EXPECT_TRUE(RtfText(cleaned(text + u"}")).text().ends_with(RtfText(text).text()));
}

TEST(CleanRTF, RemovesLeftovers) {
    const std::u16string text =
        u"{\\rtf1{\\*\\generator A;}{\\*\\generator A;}{\\*\\generator A;} x\r\n\r\n\r\n{\\*\\background {\\b}}y}   ";
    const std::u16string result = cleaned(text);
    EXPECT_EQ(count(result, u"generator"), 1u);
    EXPECT_EQ(count(result, u"background"), 0u);
    EXPECT_EQ(count(result, u"x\r\ny}"), 1u) << toUtf8(result);
    EXPECT_EQ(result.back(), u'}');
}

// ---- Damaged and hostile texts

TEST(CleanRTF, LosesNothingOfDamagedTexts) {
    const char16_t* const texts[] = {
        u"{\\rtf1 {\\rtf1 abc",
        u"{\\rtf1 {\\rtf1 a} {\\rtf1 b {\\rtf1 c} d",
        u"}}}{\\rtf1 {\\rtf1 a}}}} b {\\rtf1 c} }{",
        u"{\\rtf1 a{\\*\\generator Korvane RTF Control",
        u"{\\rtf1 a{\\*\\background b",
        u"{\\rtf1 a{\\*\\generator Korvane RTF Control}\\box",
        u"{\\rtf1 a\r\n\r\n}",
        u"{\\rtf1 a}\r\n\r\n",
        u"{\\rtf1 a}\r\n\r\nb",
        u"{\\rtf1 a{\\*\\korvanesection\\paperheight",
        u"{\\rtf1 a\\page{\\*\\korvanesection\\paperheight1,5x}b}",
        u"{\\rtf1 {\\*\\korvanemergepagebreak}\\sectd a\\sect b}",
        u"\\rtf1",
        u"{\\rtf1 \\",
        u"{\\rtf1 C:\\\\{\\rtf1 a}b}",
        u"{\\rtf1 \\{\\rtf1 a}",
    };
    for (const char16_t* text : texts) {
        for (const bool mergeMode : {false, true}) {
            const std::u16string result = cleaned(text, optionsOf(mergeMode, false));
            EXPECT_EQ(withoutBlanks(RtfText(result).text()), withoutBlanks(RtfText(text).text())) << toUtf8(text);
        }
    }
}

// Any text: nothing crashes, hangs or grows, and balanced braces stay balanced.
TEST(CleanRTF, SurvivesRandomTexts) {
    Random random;
    for (int round = 0; round < 20000; ++round) {
        const auto bytes = random.bytes(30);
        ASSERT_EQ(toUtf8(test::faultOfCleaning(bytes.data(), bytes.size())), "");
    }
}

// ---- Size and depth, on a stack of one megabyte

std::u16string repeated(std::u16string_view piece, std::size_t times) {
    std::u16string text;
    text.reserve(piece.size() * times);
    while (times-- > 0) text += piece;
    return text;
}

TEST(CleanRTF, AcceptsAnyDepthAndNumberOfDocuments) {
    onSmallStack([](void*) -> void* {
        constexpr std::size_t deep = 100000;
        const std::u16string texts[] = {
            repeated(u"{\\rtf1 a", deep) + repeated(u"}", deep),
            u"{\\rtf1 " + repeated(u"{", deep) + u"a" + repeated(u"}", deep) + u"}",
            u"{\\rtf1 " + repeated(u"{\\rtf1\\b a{\\*\\generator A}}", 20000) + u"}",
            repeated(u"{\\rtf1 a", deep),
            u"{\\rtf1 " + repeated(u"\\page a{\\*\\korvanesection\\marginl2 }", 10000) + u"}",
            u"{\\rtf1\\sectd a" + repeated(u"{\\*\\korvanesection\\landscape}", 10000) + u"}",
            u"{\\rtf1 " + repeated(u"\\trowd\\cellx9 a\\cell\\row\r\n\r\n", 50000) + u"}",
            u"{\\rtf1 a" + repeated(u"{\\*", 20000) + repeated(u"{\\*\\background}\\background}", 20000) + u"}",
            u"{\\rtf1 a" + repeated(u"{\\*\\background", 20000),
            u"{\\rtf1 a" + repeated(u"{\\*\\korvanesection", 50000) + u"}",
        };
        for (const std::u16string& text : texts) {
            for (const bool tolerant : {false, true}) {
                const std::u16string result = cleaned(text, optionsOf(false, tolerant));
                EXPECT_EQ(std::count(result.begin(), result.end(), u'a') > 0, true);
                EXPECT_EQ(result.find(u'\ufdd0'), result.npos);
            }
        }
        return nullptr;
    });
}

// ---- Real documents

TEST(CleanCorpus, KeepsTheTextAndTheBraces) {
    for (const auto& [name, document] : test::corpus()) {
        const RtfText before(document);
        inAllModes(name, [&](const CleanOptions& options) {
            const std::u16string result = cleaned(document, options);
            const RtfText after(result);
            // Without font and colour tables the blank after "{\\rtf1" follows the added ones.
            EXPECT_TRUE(after.text() == before.text() || (!options.tolerant && after.text() == u" " + before.text()));
            EXPECT_TRUE(after.isBalanced() || !before.isBalanced());
            EXPECT_TRUE(cleaned(result, options) == result) << "cleaned twice";
        });
    }
}

// Each document with another one before its last brace.
TEST(CleanCorpus, KeepsTheTextOfDocumentsInDocuments) {
    std::vector<test::CorpusDocument> documents;
    for (auto [name, text] : test::corpus()) {
        text.resize(text.find_last_of(u'}') + 1);  // without NULs and blanks after it
        const bool whole = RtfText(text).isBalanced() && text.find(u"{\\rtf", 1) == text.npos;
        if (name == "cyrillic_1251.rtf") continue;  // its bytes become other characters
        if (whole && text.size() < 60000) documents.push_back({name, text});
    }
    for (std::size_t i = 0; i < documents.size(); ++i) {
        const auto& [hostName, host] = documents[i];
        const auto& [name, inner] = documents[(i + 7) % documents.size()];
        const std::u16string text = host.substr(0, host.size() - 1) + inner + u"}";
        inAllModes(hostName + " with " + name, [&, &host = host, &inner = inner](const CleanOptions& options) {
            // Outside merge mode the host does not get the inner document's headers and footers.
            const auto part = options.mergeMode ? RtfText::Part::all : RtfText::Part::body;
            const std::u16string result = cleaned(text, options);
            const RtfText after(result, part);
            EXPECT_EQ(withoutBlanks(after.text()),
                      withoutBlanks(RtfText(host, part).text() + RtfText(inner, part).text()));
            EXPECT_TRUE(after.isBalanced());
        });
    }
}

// In a cell all tables of a document are nested: the only row is that of the cell.
TEST(CleanCorpus, NestsTheTablesOfADocumentInACell) {
    const auto visible = [](const std::u16string& text) {
        std::u16string result = RtfText(text, RtfText::Part::body).text();
        std::erase_if(result, [](char16_t unit) { return unit <= u' '; });
        return result;
    };
    platform::MemoryServices machine;
    for (auto [name, document] : test::corpus()) {
        document.resize(document.find_last_of(u'}') + 1);
        if (count(document, u"\\row") == 0 || !RtfText(document).isBalanced()) continue;
        if (!document.starts_with(u"{\\rtf1")) document.insert(5, u"1");
        addTableMarkers(document, machine.guids);
        const std::u16string text = u"{\\rtf1{\\*\\korvane\\starttable{x}}\\trowd\\cellx9000\\pard\\intbl " + document +
                                    u"\\cell\\row{\\*\\korvane\\endtable{x}}}";
        for (const bool tolerant : {false, true}) {
            SCOPED_TRACE(name + (tolerant ? ", tolerant" : ""));
            const std::u16string result = cleaned(text, optionsOf(false, tolerant));
            EXPECT_EQ(count(result, u"\\row"), 1u);
            EXPECT_EQ(count(result, u"\\cell"), 1u + count(result, u"\\cellx"));
            EXPECT_TRUE(visible(result) == visible(document));
        }
    }
}

}  // namespace
}  // namespace velmor
