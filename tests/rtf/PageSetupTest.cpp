#include <gtest/gtest.h>

#include "CleaningOfPieces.h"
#include "SectionReader.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

// The sections of the cleaned text: "text: page", with the headers and footers of its pages.
std::string sectionsOf(std::u16string text, bool mergeMode) {
    CleanOptions options;
    options.tolerant = true;
    options.mergeMode = mergeMode;
    platform::MemoryServices machine;
    Module1::CleanRTFText(text, options, machine);
    std::u16string sections;
    for (const auto& section : test::SectionReader::of(text)) {
        sections += section.text + u": " + section.page;
        if (section.shows != u"// ;// ;") sections += u" " + section.shows;
        sections += u"\n";
    }
    return toUtf8(sections);
}

// Text with tags as a word processor writes it.
#define RUN(text) u"{\\rtlch\\fcs1 \\af0 \\ltrch\\fcs0 \\insrsid123 " text u"}"
#define LANDSCAPE u"{\\*\\korvanesection\\landscape}"
#define HEADER u"{\\rtf1{\\*\\korvanenewheader}}"
#define MERGE u"{\\*\\korvanemergepagebreak}"
#define LETTER "12240 15840 1800 1800 1440 1440"
#define TURNED "15840 12240 1800 1800 1440 1440 lndscpsxn"

struct Case {
    const char* what;
    bool mergeMode;
    const char16_t* before;
    const char* sections;
};

const Case cases[] = {
    {"a marker in a middle section", false,
     u"{\\rtf1 " RUN(u"A") RUN(u"\\page ") RUN(LANDSCAPE) RUN(u"B") RUN(u"\\sect ") u"\\sectd C}",
     "A: " LETTER "\nB: " TURNED "\nC: " LETTER "\n"},
    {"in the last one", false, u"{\\rtf1 A" RUN(u"\\page ") RUN(LANDSCAPE u"B") u"C}",
     "A: " LETTER "\nBC: " TURNED "\n"},
    {"in the first one, whose own page goes", false,
     u"{\\rtf1\\sectd\\pgwsxn9000 " RUN(LANDSCAPE) u"A" RUN(u"\\sect ") u"\\sectd B}",
     "A: " TURNED "\nB: " LETTER "\n"},
    {"of a handler's document", false, u"{\\rtf1 A" RUN(u"{\\rtf1 B\\page" LANDSCAPE u"C}") u"D}",
     "AB: " LETTER "\nCD: " TURNED "\n"},
    {"after a page break in a row", false, u"{\\rtf1 A\\trowd\\intbl B\\page C\\cell\\row\\pard" LANDSCAPE u"}",
     "AB|C: " LETTER "\n"},
    {"of a joined document", true,
     u"{\\rtf1\\paperw5000 A\\page "
     u"B" MERGE u"{\\rtf1\\paperw8000\\paperh9000\\sectd C" LANDSCAPE u"}" MERGE u"{\\rtf1 D}}",
     "A|B: 5000 15840 1800 1800 1440 1440\nC: 9000 8000 1800 1800 1440 1440 lndscpsxn\nD: " LETTER "\n"},
    {"at the beginning of a joined document", true, u"{\\rtf1 A\\page B" MERGE u"{\\rtf1 " RUN(LANDSCAPE) u"C}}",
     "A|B: " LETTER "\nC: " TURNED "\n"},
    {"merge markers in runs", true,
     u"{\\rtf1 A" RUN(MERGE) RUN(u"{\\rtf1\\paperw9000\\sectd\\cols2 B}") RUN(MERGE) RUN(u"{\\rtf1 C}") u"}",
     "A: " LETTER "\nB: 9000 15840 1800 1800 1440 1440 cols2\nC: " LETTER "\n"},
    {"text directly after a number", true, u"{\\rtf1 A" MERGE u"{\\rtf1\\paperw9000B\\sectd\\margbsxn1000C}D}",
     "A: " LETTER "\nBCD: 9000 15840 1800 1800 1440 1000\n"},
    {"a section marker then", false, u"{\\rtf1\\paperw9000A\\page" LANDSCAPE u"B}",
     "A: 9000 15840 1800 1800 1440 1440\nB: 15840 9000 1800 1800 1440 1440 lndscpsxn\n"},
    {"a merge marker in a row", true, u"{\\rtf1 A\\trowd\\intbl B" MERGE u"{\\rtf1\\paperw5000 C}\\cell\\row\\pard D}",
     "ABCD: " LETTER "\n"},
    {"a blank ends \\sectd", true, u"{\\rtf1 A" MERGE u"{\\rtf1\\margl1700 B\\sect\\sectd \\sbknone C}}",
     "A: " LETTER "\nB: 12240 15840 1700 1800 1440 1440\nC: 12240 15840 1700 1800 1440 1440 sbknone\n"},
    {"the sections of an embedded document", false,
     u"{\\rtf1 A{\\rtf1\\sectd\\pgwsxn9000 B\\sect\\sectd\\pgwsxn8000 C\\par}\\par}",
     "AB: " LETTER "\nC: 8000 15840 1800 1800 1440 1440\n"},
    {"and text after it", false, u"{\\rtf1 A{\\rtf1\\sectd\\pgwsxn9000 B\\sect\\sectd\\pgwsxn8000 C\\par}D}",
     "AB: " LETTER "\nC: 8000 15840 1800 1800 1440 1440\nD: " LETTER "\n"},
    {"and columns that end with it", false, u"{\\rtf1 A{\\rtf1 B\\sect\\sectd\\cols2 C}D\\sect E}",
     "AB: " LETTER "\nC: " LETTER " cols2\nD: " LETTER " sbknone\nE: " LETTER "\n"},
    {"and a section that continues its page", false, u"{\\rtf1 A{\\rtf1 B\\sect\\sectd\\sbknone C}D\\sect E}",
     "AB: " LETTER "\nCD: " LETTER " sbknone\nE: " LETTER "\n"},
    {"and columns in a document in a document", false,
     u"{\\rtf1 A{\\rtf1 {B{\\rtf1 C\\sect\\sectd\\cols2 D}}E}F\\sect\\sectd G}",
     "ABC: " LETTER "\nD: " LETTER " cols2\nEF: " LETTER " sbknone\nG: " LETTER "\n"},
    {"and a section of the host's page", false,
     u"{\\rtf1\\sectd\\lndscpsxn\\pgwsxn9000\\margrsxn400\\pgwsxn9001 A{\\rtf1 B\\sect\\sectd C\\sect\\sectd "
     u"\\pghsxn7000 D}E}",
     "AB: 9001 15840 1800 400 1440 1440 lndscpsxn\nC: 9001 15840 1800 400 1440 1440 lndscpsxn\n"
     "D: 12240 7000 1800 400 1440 1440\nE: 9001 15840 1800 400 1440 1440 lndscpsxn\n"},
    {"but not in a row", false, u"{\\rtf1 \\trowd\\intbl A{\\rtf1 B\\sect\\sectd\\cols2 C}D\\cell\\row\\pard E}",
     "AB: " LETTER "\nCDE: " LETTER "\n"},
    {"a header marker", false,
     u"{\\rtf1\\sbknone A" RUN(HEADER) RUN(u"{\\rtf1\\titlepg\\headery5{\\header h}{\\headerf f}B}") u"C}",
     "A: " LETTER " sbknone\nBC: " LETTER " pgncont  h/ h/ f 5;// ;\n"},
    {"documents of handlers in the first, a middle and the last section", false,
     u"{\\rtf1 " RUN(u"{\\rtf1 " RUN(LANDSCAPE) u"A}")
         RUN(u"\\sect ") u"\\sectd B" RUN(u"{\\rtf1 C" RUN(u"\\page ") RUN(LANDSCAPE) u"D}")
             RUN(u"\\sect ") u"\\sectd E" RUN(u"{\\rtf1 F" RUN(u"\\page ") RUN(LANDSCAPE) u"G}") u"}",
     "A: " TURNED "\nBC: " LETTER "\nD: " TURNED "\nEF: " LETTER "\nG: " TURNED "\n"},
    {"markers for a header and for the page, in a middle section", false,
     u"{\\rtf1 A" RUN(u"\\page ") RUN(HEADER) RUN(LANDSCAPE) RUN(u"{\\rtf1{\\header h}B}")
         RUN(u"\\sect ") u"\\sectd C}",
     "A: " LETTER "\nB: " TURNED " pgncont  h/ h/ h ;// ;\nC: " LETTER "  h/ h/ h ;// ;\n"},
    {"left pages of one joined document", true,
     u"{\\rtf1\\facingp{\\header h}{\\headerl l}A" MERGE u"{\\rtf1\\titlepg{\\headerf f}{\\headerl x}{\\header n}B}}",
     "A: " LETTER "  h/ l/ h ;// ;\nB: " LETTER "  n/ n/ f ;// ;\n"},
    {"joined documents of other sizes", true,
     u"{\\rtf1\\paperw9000\\paperh8000\\landscape\\sectd\\lndscpsxn A" RUN(u"\\sect ") u"\\sectd\\lndscpsxn B" RUN(
         MERGE) RUN(u"{\\rtf1\\paperw5000\\paperh7000\\sectd C" RUN(u"\\page ")
                        RUN(LANDSCAPE) u"D" RUN(u"\\sect ") u"\\sectd E}") RUN(MERGE) RUN(u"{\\rtf1 F}") u"}",
     "A: 9000 8000 1800 1800 1440 1440 lndscpsxn\nB: 9000 8000 1800 1800 1440 1440 lndscpsxn\n"
     "C: 5000 7000 1800 1800 1440 1440\nD: 7000 5000 1800 1800 1440 1440 lndscpsxn\n"
     "E: 5000 7000 1800 1800 1440 1440\nF: " LETTER "\n"},
};

TEST(PageSetup, HoldsInRealDocuments) {
    for (const Case& row : cases) EXPECT_EQ(sectionsOf(row.before, row.mergeMode), row.sections) << row.what;
}

}  // namespace
}  // namespace velmor
