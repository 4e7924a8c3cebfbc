#include "rtf/clean/JoinedCleaning.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "CleaningOfPieces.h"
#include "Corpus.h"
#include "NumberedTables.h"
#include "Random.h"
#include "RtfText.h"
#include "rtf/clean/JoinDocuments.h"
#include "rtf/merge/MergeReport.h"
#include "text/Error.h"

namespace velmor {
namespace {

using Texts = std::vector<std::u16string>;
using Limits = JoinLimits;

class MemorySpool : public Spool {
public:
    void append(std::string_view bytes) override { bytes_ += bytes; }
    void rewind() override { read_ = 0; }
    void read(char* bytes, std::size_t size) override { read_ += bytes_.copy(bytes, size, read_); }

private:
    std::string bytes_;
    std::size_t read_ = 0;
};

// With identifiers that withNumberedIdentities() knows.
class Machine {
public:
    operator const platform::Services&() const noexcept { return services_; }

private:
    platform::MemoryServices memory_;
    test::CountedGuids guids_;
    platform::Services services_{memory_.registry, memory_.files,    memory_.clock, memory_.folders,
                                 memory_.objects,  memory_.pictures, guids_};
};

CleanOptions optionsOf(bool tolerant, StyleConflict styles = StyleConflict::rename) {
    CleanOptions options;
    options.mergeMode = true;
    options.tolerant = tolerant;
    options.styles = styles;
    return options;
}

// The text of all documents cleaned at once.
std::u16string atOnce(Texts texts, const CleanOptions& options) {
    const std::vector<std::string> names(texts.size());
    for (std::u16string& text : texts) requireDocument(text, true, "");
    std::u16string joined = joinDocuments(std::move(texts), names);
    Machine machine;
    Module1::CleanRTFText(joined, options, machine);
    return test::withNumberedIdentities(std::move(joined));
}

struct Joined {
    std::u16string text;
    std::size_t pieces = 0;
};

Joined joined(const Texts& texts, const CleanOptions& options, Limits limits = {1, std::size_t{1} << 25, true}) {
    Machine machine;
    MemorySpool letters, cleaned;
    JoinedCleaning joining(options, machine, letters, cleaned, limits);
    for (const std::u16string& text : texts) joining.add({text, options.tolerant, "a letter"});
    Joined result;
    joining.finish([&](std::u16string_view text) {
        result.text += text;
        ++result.pieces;
    });
    result.text = test::withNumberedIdentities(std::move(result.text));
    return result;
}

// Whether the text, and what precedes the first difference.
::testing::AssertionResult equal(const std::u16string& one, const std::u16string& other) {
    if (one == other) return ::testing::AssertionSuccess();
    const auto at =
        static_cast<std::size_t>(std::mismatch(one.begin(), one.end(), other.begin(), other.end()).first - one.begin());
    const std::size_t from = at - std::min<std::size_t>(at, 60);
    return ::testing::AssertionFailure() << toUtf8(one.substr(from, 160)) << "\n  is not\n"
                                         << toUtf8(other.substr(from, 160));
}

// ---- What one document means for another one

TEST(JoinedCleaning, CleansInPartsAsAtOnce) {
    struct Case {
        const char* what;
        const char16_t* documents;  // between bars
    };
    const Case cases[] = {
        {"numbers of fonts, colours and styles",
         u"{\\rtf1{\\fonttbl{\\f0 A;}}{\\colortbl;\\red1;}\\f0 a}|{\\rtf1{\\fonttbl{\\f0 B;}}{\\colortbl;\\red2;}"
         u"{\\stylesheet{\\s1\\b S;}}\\s1\\f0\\cf1 b}|{\\rtf1{\\fonttbl{\\f0 C;}{\\f1 A;}}{\\stylesheet{\\s1\\i S;}}"
         u"\\s1\\f0\\f1 c}"},
        {"headers end with their document",
         u"{\\rtf1{\\header h}a}|{\\rtf1 b}|{\\rtf1 c\\sect d}|{\\rtf1{\\header e}{\\footer f}e}|{\\rtf1 g}"},
        {"headers of first pages", u"{\\rtf1\\titlepg{\\headerf h}a}|{\\rtf1 b}|{\\rtf1\\sectd\\titlepg c}|{\\rtf1 d}"},
        {"facing pages of the last one",
         u"{\\rtf1{\\header h}a}|{\\rtf1{\\header i}b}|{\\rtf1\\facingp{\\headerl l}c}"},
        {"a table style with padding in the last one",
         u"{\\rtf1\\trowd\\cellx9\\intbl a\\cell\\row}|{\\rtf1\\trowd\\cellx9\\intbl b\\cell\\row\\pard c\\par}|"
         u"{\\rtf1{\\stylesheet{\\ts1\\tsrowd T;}}c}"},
        {"lists that paragraphs describe, in the last one",
         u"{\\rtf1 a}|{\\rtf1{\\*\\listtable{\\list\\listid7}}{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}}"
         u"\\ls1 b}|{\\rtf1{\\*\\pn\\pnlvlblt}c}"},
        {"pages of their own",
         u"{\\rtf1\\paperw8000\\sectd a\\sect\\sectd b}|{\\rtf1\\paperw9000\\sectd\\sbknone a\\sect\\sectd b}|"
         u"{\\rtf1\\paperw7000\\sectd\\lndscpsxn a\\sect\\sectd b\\page c}|{\\rtf1 d}"},
        {"equal generators",
         u"{\\rtf1{\\*\\generator G}a}|{\\rtf1{\\*\\generator G}b}|{\\rtf1{\\*\\generator H}c}|"
         u"{\\rtf1{\\*\\generator H}d}|{\\rtf1{\\*\\generator G}{\\*\\background x}e}"},
        {"marked and unmarked tables",
         u"{\\rtf1\\trowd\\irow0\\lastrow\\cellx9\\intbl a\\cell\\row\\pard b\\par}|"
         u"{\\rtf1\\trowd\\cellx9\\intbl c{\\*\\nesttableprops\\trowd\\nestrow}\\cell\\row}|"
         u"{\\rtf1\\trowd\\irow0\\lastrow\\cellx9\\intbl d\\cell\\row}|{\\rtf1 e}"},
        {"other code pages, blanks and lines",
         u"x{\\rtf1\\ansi\\ansicpg1250\\deff3{\\fonttbl{\\f3 A;}}\\'e4\r\n\r\n}\r\n\r\n |{\\rtf1\\ansi\\ansicpg1251"
         u"{\\fonttbl{\\f0 A;}{\\f1\\fcharset204 B;}}\\f0\\'e4\\f1\\'e4\\plain\\'e4\r\n}|{\\rtf1\r\n\\'e4}   "
         u"|{\\rtf1\\uc2 c}"},
    };
    for (const Case& c : cases) {
        Texts texts;
        for (const std::u16string_view document : test::piecesOf(c.documents)) texts.emplace_back(document);
        for (const auto& [tolerant, twoThreads] :
             {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
            SCOPED_TRACE(std::string(c.what) + (tolerant ? ", tolerant" : ""));
            const Joined result = joined(texts, optionsOf(tolerant), {1, std::size_t{1} << 25, twoThreads});
            EXPECT_TRUE(equal(result.text, atOnce(texts, optionsOf(tolerant))));
            EXPECT_GE(result.pieces, tolerant ? texts.size() - 1 : 2);
        }
    }
}

// ---- Documents that are cleaned at once

TEST(JoinedCleaning, CleansAtOnceWhatCannotBeCleanedInParts) {
    const char16_t* const texts[] = {
        u"{\\rtf1 a{\\rtf1 b}c}",
        u"{\\rtf1 a{\\*\\korvanesection\\landscape}b}",
        u"{\\rtf1 a{\\*\\korvanemergepagebreak}b}",
        u"{\\rtf1 a\\bin1 }b}",
        u"{\\rtf1\\trowd\\cellx9\\intbl a\\cell}",
        u"{\\rtf1\\trowd\\cellx9\\intbl a\\cell{\\footnote\\trowd\\intbl\\cell\\row}}",
        u"{\\rtf1{\\*\\korvane\\starttable{x}}a}",
        u"{\\rtf1\\pard\\intbl a}",
        u"{\\rtf1\\{\\*\\generator Korvane RTF Control}",
        u"{\\rtf1 a\\\\}",
    };
    const std::u16string other =
        u"{\\rtf1\\trowd\\cellx9\\intbl x\\cell\\row\\pard\\page y{\\*\\korvane\\endtable{x}}}";
    for (const char16_t* text : texts) {
        for (const bool tolerant : {false, true}) {
            SCOPED_TRACE(toUtf8(text) + (tolerant ? ", tolerant" : ""));
            for (const Texts& letters :
                 {Texts{text, other, other}, Texts{u"{\\rtf1 a}", text, u"{\\rtf1 b}", u"{\\rtf1 c}"}}) {
                EXPECT_TRUE(equal(joined(letters, optionsOf(tolerant)).text, atOnce(letters, optionsOf(tolerant))));
            }
        }
    }
}

TEST(JoinedCleaning, RefusesLettersAndGoesOn) {
    Machine machine;
    MemorySpool letters, cleaned;
    std::size_t lost = 0;
    JoinedCleaning joining(optionsOf(true), machine, letters, cleaned, {1, 60});
    const auto errorOf = [&](std::u16string text) {
        try {
            lost = joining.add({std::move(text), true, "x.rtf"});
        } catch (const Error& error) {
            return std::to_string(error.number()) + " " + error.what();
        }
        return std::string();
    };
    EXPECT_EQ(errorOf(u"text"), "5 x.rtf contains no RTF document");
    EXPECT_EQ(errorOf(u"{\\rtf a}"), "");
    EXPECT_EQ(errorOf(u"{\\rtf1 b"), "5 x.rtf cannot be joined: its closing brace is missing");
    EXPECT_EQ(errorOf(u"{\\rtf1 {\\rtf1 b}" + std::u16string(50, u'b') + u"}"),
              "7 the joined document is too large to be cleaned at once, as it must be: x.rtf holds another document");
    EXPECT_EQ(errorOf(u" 1 {\\rtf1 c} 2"), "");
    EXPECT_EQ(lost, 2u);
    std::u16string result;
    joining.finish([&](std::u16string_view text) { result += text; });
    EXPECT_TRUE(equal(result, atOnce({u"{\\rtf a}", u"{\\rtf1 c}"}, optionsOf(true))));
}

TEST(JoinedCleaning, JoinsWithoutCleaning) {
    for (const Texts& texts :
         {Texts{u"{\\rtf1 a}", u"{\\rtf1 <KV:TAG>}", u"{\\rtf1 c}"}, Texts{u"{\\rtf2 a}", u"{\\rtf2 b}"}}) {
        EXPECT_TRUE(equal(joined(texts, optionsOf(true)).text, atOnce(texts, optionsOf(true))));
    }
    EXPECT_TRUE(equal(joined({u"a {\\rtf1 b} c"}, optionsOf(true)).text, u"a {\\rtf1 b} c"));
    EXPECT_EQ(joined({}, optionsOf(true)).pieces, 0u);
}

// ---- Random documents

TEST(JoinedCleaning, CleansRandomDocumentsAsAtOnce) {
    static const auto pieces = test::piecesOf(
        u"a |\r\n\r\n|\\par |\\pard |\\pard\\plain |\\plain\\f1 |\\f2\\cf1 |\\s1 |\\ls1 |\\'e4|\\u1076?|\\uc0 |\\deff1 "
        u"|"
        u"{\\fonttbl{\\f0 A;}{\\f1\\fcharset204 B;}}|{\\fonttbl{\\f2 C;}}|{\\colortbl;\\red9;\\red8;}|"
        u"{\\stylesheet{\\s0\\b Normal;}{\\s1\\f1 S;}}|{\\stylesheet{\\s1\\i S;}{\\ts2\\tsrowd T;}}|"
        u"{\\*\\listtable{\\list\\listid7}}{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}}|{\\*\\pn x}|"
        u"\\ansicpg1251 |\\paperw9000 |\\margl99 |\\facingp |\\titlepg |\\sectd |\\sectd\\pgwsxn8000 |\\sect |\\page |"
        u"\\sbknone |\\lndscpsxn |\\headery9 |{\\header h}|{\\headerl l}|{\\headerf f}|{\\footer o}|{\\footerr r}|"
        u"{\\*\\generator G}|{\\*\\generator Korvane RTF Control}\\marglsxn9 |{\\*\\background {b}}|{\\b "
        u"x}|{\\widowctrl y}|"
        u"\\trowd\\irow0\\lastrow\\cellx9\\intbl c\\cell\\row |\\trowd\\cellx9 c\\cell\\row |{\\footnote\\trowd\\row}|"
        u"\\trowd\\cellx9\\intbl\\itap2 n\\nestcell{\\*\\nesttableprops\\trowd\\nestrow}\\cell\\row |\\pard\\intbl |"
        u"\\trowd |\\row |\\cell |\\\\ |\\{|{\\*\\korvane\\starttable{x}}\\trowd\\row{\\*\\korvane\\endtable{x}}|\\tab "
        u"|\\deftab9 ");
    Random random;
    std::size_t inParts = 0;
    for (int round = 0; round < 300; ++round) {
        Texts texts;
        for (unsigned left = 2 + random.below(5); left > 0; --left) {
            texts.push_back(!texts.empty() && random.below(3) == 0 ? random.of(texts)
                                                                   : u"{\\rtf1" + random.text(pieces, 12) + u"}");
        }
        const auto styles = static_cast<StyleConflict>(random.below(3));
        const CleanOptions options = optionsOf(random.below(3) != 0, styles);
        const Joined result = joined(texts, options, {1 + random.below(200), std::size_t{1} << 20});
        inParts += result.pieces > 1;
        std::string trace;
        for (const std::u16string& text : texts) trace += toUtf8(text) + "|\n";
        ASSERT_TRUE(equal(result.text, atOnce(texts, options))) << trace << options.tolerant;
    }
    EXPECT_GT(inParts, 20u);
}

// ---- Real documents

TEST(JoinedCleaning, CleansRealDocumentsAsAtOnce) {
    Texts documents;
    for (const auto& [name, text] : test::corpus()) {
        if (text.size() < 60000) documents.push_back(text);
    }
    Random random;
    for (int round = 0; round < 15; ++round) {
        Texts texts;
        while (texts.size() < 2 + random.below(4)) {
            std::u16string text = random.of(documents);
            try {
                text = JoinableDocument(text, true, "").text;
            } catch (const Error&) {
                continue;
            }
            Machine machine;
            Module1::CleanRTFText(text, optionsOf(true), machine);
            texts.push_back(text);
        }
        const CleanOptions options = optionsOf(random.below(2) != 0);
        MergeReport report, other;
        CleanOptions reported = options;
        reported.report = &report;
        const Joined result = joined(texts, reported);
        reported.report = &other;
        ASSERT_TRUE(equal(result.text, atOnce(texts, reported)));
        ASSERT_EQ(report.documents.size(), other.documents.size());
    }
}

}  // namespace
}  // namespace velmor
