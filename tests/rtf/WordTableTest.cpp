#include "rtf/read/WordTable.h"

#include <gtest/gtest.h>

#include "Merged.h"
#include "NestedTableText.h"
#include "Pieces.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/HeadersFooters.h"
#include "rtf/read/CodePages.h"
#include "rtf/read/GroupSet.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/tables/NestedTables.h"
#include "rtf/tables/RowDefinition.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

// A header marker after shown content begins a section.
bool showsInBody(const std::u16string& piece) {
    const std::u16string marker = u"{\\rtf1{\\*\\korvanenewheader}}";
    std::u16string text = u"{\\rtf1{\\header h}" + piece + marker + u"{\\rtf1{\\header n}b}c}";
    TableCollection tables(u'\uFDD0');
    Module1::ExtractEmbeddedDocuments(text, tables, {});
    Module1::ApplyHeadersFooters(text, tables, {});
    return text.find(u"\\sbkpage") != text.npos;
}

// Shown content before a table in its cell ends with \par.
bool showsInCell(const std::u16string& piece) {
    std::u16string text = u"<1:\\intbl " + piece + u"<2:\\intbl\\cell\\trowd\\cellx9\\row:2>\\cell\\row:1>";
    text = test::withMarkers(text);
    Module1::ConvertNestedTables(text, {});
    return text.find(piece + u"\\par{\\*") != std::u16string::npos;
}

TEST(WordTable, KnowsTheWordsThatShowOnAPage) {
    for (const auto piece : test::piecesOf(
             u"x|\\bullet |\\chdate |\\chdpa |\\chdpl |\\chftn |\\chpgn |\\chtime |\\column |\\emdash |\\emspace |"
             u"\\endash |\\enspace |\\lbr0 |\\ldblquote |\\line |\\lquote |\\qmspace |\\rdblquote |\\rquote |"
             u"\\sectnum |\\softline |\\tab |\\u1076 |\\'e4|\\~|\\_|\\{|\\}|\\\\|{\\*\\do x}|{\\footnote}|"
             u"{\\object}|{\\pict}|{\\shp}|{\\shpgrp}|{\\*\\shppict}|"
             u"{\\field{\\*\\fldinst x}{\\fldrslt y}}|{\\b x}")) {
        EXPECT_TRUE(showsInBody(std::u16string(piece))) << toUtf8(piece);
        EXPECT_TRUE(showsInCell(std::u16string(piece))) << toUtf8(piece);
    }
    for (const auto piece : test::piecesOf(
             u"{\\annotation x}|{\\colortbl x}|{\\filetbl x}|{\\field{\\*\\fldinst x}{\\fldrslt }}|"
             u"{\\field{\\fldinst x}}|{\\fonttbl x}|{\\footer x}|{\\footerf x}|{\\footerl x}|{\\footerr x}|{\\header "
             u"x}|"
             u"{\\headerf x}|{\\headerl x}|{\\headerr x}|{\\info x}|{\\listoverridetable x}|{\\listtable x}|"
             u"{\\listtext x}|{\\nonesttables x}|{\\nonshppict x}|{\\pntext x}|{\\rxe x}|{\\stylesheet x}|{\\tc x}|"
             u"{\\tcn x}|{\\xe x}|{\\*\\bkmkstart x}|\\b |\\-|{\\b }")) {
        EXPECT_FALSE(showsInBody(std::u16string(piece))) << toUtf8(piece);
        EXPECT_FALSE(showsInCell(std::u16string(piece))) << toUtf8(piece);
    }
    for (const auto word : test::piecesOf(u"\\cell |\\nestcell |\\row ")) {
        EXPECT_TRUE(showsInBody(std::u16string(word))) << toUtf8(word);
    }
    EXPECT_TRUE(wordIs(WordTrait::shownCell, u"trowd"));
    EXPECT_TRUE(showsInCell(u"\\page "));
}

TEST(WordTable, KnowsTheWordsOfADocument) {
    const auto unwrapped = [](const std::u16string& lifted) {
        CleanOptions options;
        options.tolerant = true;
        std::u16string text = u"{\\rtf1{\\rtf1" + lifted + u"x}}";
        Module1::UnwrapNestedDocuments(text, options);
        return toUtf8(text);
    };
    for (const auto word : test::piecesOf(
             u"ApplyBrkRules|adeff|adeflang|aenddoc|aendnotes|aftnbj|aftnnalc|aftnnar|aftnnauc|aftnnchi|aftnnrlc|"
             u"aftnnruc|aftnrestart|aftnrstcont|aftnstart|aftntj|allowfieldendsel|allprot|alntblind|annotprot|"
             u"ansi|ansicpg|asianbrkrule|autofmtoverride|bdbfhdr|bdrrlswsix|bookfold|bookfoldrev|bookfoldsheets|"
             u"brkfrm|cachedcolbal|cvmme|deff|defformat|deflang|deflangfe|deftab|dghorigin|dghshow|dghspace|"
             u"dgmargin|dgsnap|dgvorigin|dgvshow|dgvspace|dntblnsbdb|doctype|donotembedlingdata|"
             u"donotembedsysfont|donotshowcomments|donotshowinsdel|donotshowmarkup|donotshowprops|enddoc|"
             u"endnotes|enforceprot|expshrtn|felnbrelev|fet|forceupgrade|formdisp|formprot|formshade|fracwidth|"
             u"fromhtml|fromtext|ftnalt|ftnbj|ftnlytwnine|ftnnalc|ftnnar|ftnnauc|ftnnchi|ftnnrlc|ftnnruc|"
             u"ftnrestart|ftnrstcont|ftnrstpg|ftnstart|ftntj|grfdocevents|gutter|gutterprl|horzdoc|htmautsp|"
             u"hyphauto|hyphcaps|hyphconsec|hyphhotz|ignoremixedcontent|ilfomacatclnup|indrlsweleven|jcompress|"
             u"jexpand|krnprsnet|landscape|linestart|linkstyles|lnbrkrule|lnongrid|ltrdoc|lytcalctblwd|lytexcttp|"
             u"lytprtmet|lyttblrtgr|mac|makebackup|margb|margl|margmirror|margr|margt|msmcap|muser|nafterindp|"
             u"newtblstyruls|nobrkwrptbl|nocolbal|nocompatoptions|nocxsptable|noextrasprl|nofeaturethrottle|"
             u"nogrowautofit|noindnmbrts|nojkernpunct|nolead|nolnhtadjtbl|nospaceforul|notabind|notbrkcnstfrctbl|"
             u"notcvasp|notvatxbx|noultrlspc|noxlattoyen|ogutter|oldas|oldlinewrap|otblrul|paperh|paperw|pc|pca|"
             u"pgnstart|prcolbl|printdata|private|protlevel|psover|psz|readonlyrecommended|readprot|relyonvml|"
             u"remdttm|rempersonalinfo|revbar|revisions|revprop|revprot|rtldoc|rtlgutter|saveinvalidxml|"
             u"saveprevpict|showplaceholdtext|showxmlerrors|snaptogridincell|splytwnine|sprsbsp|sprslnsp|"
             u"sprsspbf|sprstsm|sprstsp|stshfbi|stshfdbch|stshfhich|stshfloch|stylelock|stylelockbackcomp|"
             u"stylelockenforced|stylelockqfset|stylelocktheme|stylesortmethod|subfontbysize|swpbdr|themelang|"
             u"themelangcs|themelangfe|toplinepunct|trackformatting|trackmoves|transmf|truncatefontheight|"
             u"truncex|twoonone|useltbaln|usenormstyforlist|usexform|utinl|validatexml|vertdoc|viewbksp|viewkind|"
             u"viewnobound|viewscale|viewzk|widowctrl|windowcaption|wpjst|wpsp|wptb|wraptrsp|wrppunct")) {
        EXPECT_EQ(unwrapped(u"\\" + std::u16string(word) + u"1 "), "{\\rtf1{x}}");
    }
    for (const auto word : test::piecesOf(
             u"aftncn|aftnsep|aftnsepc|colorschememapping|datastore|defchp|defpap|docvar|filetbl|ftncn|ftnsep|"
             u"ftnsepc|hlinkbase|info|latentstyles|mailmerge|mmathPr|nextfile|password|passwordhash|pgptbl|"
             u"protusertbl|revtbl|rsidtbl|template|themedata|userprops|wgrffmtfilter|writereservhash|xmlnstbl")) {
        EXPECT_EQ(unwrapped(u"{\\*\\" + std::u16string(word) + u" y}"), "{\\rtf1{x}}");
    }
}

TEST(WordTable, KnowsTheWordsOfASection) {
    for (const auto word : test::piecesOf(
             u"binfsxn|binsxn|guttersxn|margbsxn|margmirsxn|margrsxn|margtsxn|pghsxn|pgwsxn|colno|cols|colsr|colsx|"
             u"colw|endnhere|footery|headery|horzsect|linebetcol|linecont|linemod|"
             u"lineppage|linerestart|linestarts|linex|lndscpsxn|ltrsect|marglsxn|pgbrdrt|pgndec|pgnstarts|rtlsect|"
             u"saftnstart|sbknone|sectd|sectdefaultcl|sectexpand|sectlinegrid|sectrsid|sectspecifyl|sectunlocked|"
             u"sftnbj|stextflow|titlepg|vertalc|vertsect")) {
        EXPECT_TRUE(wordIs(WordTrait::section, word)) << toUtf8(word);
    }
    for (const auto word : test::piecesOf(u"sect|sectnum|column|line|pgnstart|margl|pard|headers")) {
        EXPECT_FALSE(wordIs(WordTrait::section, word)) << toUtf8(word);
    }
    const std::pair<WordTrait, const char16_t*> parts[] = {
        {WordTrait::sectionPage,
         u"binfsxn|binsxn|guttersxn|lndscpsxn|margbsxn|marglsxn|margmirsxn|margrsxn|margtsxn|pghsxn|pgwsxn"},
        {WordTrait::columns, u"colno|cols|colsr|colsx|colw|linebetcol"},
        {WordTrait::sectionStart, u"linerestart|linestarts|pgnrestart|pgnstarts|sbkodd|sectd|titlepg"},
        {WordTrait::generatorRest,
         u"boxed|brdrs|brsp|colno|colsx|colw|footery|guttersxn|headery|linebetcol|lndscpsxn|"
         u"margl|pgbrdrt|pghsxn|pgwsxn|titlepg"},
    };
    for (const auto& [trait, words] : parts) {
        for (const auto word : test::piecesOf(words)) EXPECT_TRUE(wordIs(trait, word)) << toUtf8(word);
        EXPECT_FALSE(wordIs(trait, u"pgnstart"));
    }
}

using test::narrow;

// Each word of each list of merging and of the table stages, in the smallest text in which it matters.

TEST(WordLists, References) {
    const std::u16string tables =
        u"{\\fonttbl{\\f9 A;}}{\\colortbl;\\red1;\\red1;}{\\stylesheet{\\s0 Normal;}{\\s9 P;}{\\*\\cs9 C;}{\\ds9 "
        u"D;}{\\*\\ts9 "
        u"T;}}{\\*\\listoverridetable{\\listoverride\\ls9}}";
    const auto reference = [&](std::u16string_view word, std::u16string_view before, bool tolerant) {
        const std::u16string written = u"\\" + std::u16string(word) + std::u16string(before) + u" ";
        const std::u16string text = test::merged(
            u"{\\rtf1\\deff9{\\fonttbl{\\f9 A;}}{\\rtf1\\deff9" + tables + u"!" + written + u"}}", tolerant);
        const std::size_t begin = text.find(u'!') + 2 + word.size();
        return narrow(text.substr(begin, text.find(u' ', begin) - begin));
    };
    for (const auto word : test::piecesOf(u"af|adeff|deff|mmathFont|pnf|stshfdbch|stshfloch|stshfhich|stshfbi")) {
        EXPECT_EQ(reference(word, u"9", true), "0") << narrow(word);
        EXPECT_EQ(reference(word, u"9", false), "9") << narrow(word);
    }
    for (const auto word : test::piecesOf(u"clcfpatraw|clcbpatraw|trcfpat|trcbpat|tscellcfpat|tscellcbpat")) {
        EXPECT_EQ(reference(word, u"2", true), "1") << narrow(word);
        EXPECT_EQ(reference(word, u"2", false), "2") << narrow(word);
    }
    for (const bool tolerant : {false, true}) {
        EXPECT_EQ(reference(u"f", u"9", tolerant), "0");
        for (const auto word : test::piecesOf(u"cf|cb|chcfpat|chcbpat|pncf|brdrcf|cfpat|cbpat|clcfpat|clcbpat|afc|"
                                              u"highlight|ulc")) {
            EXPECT_EQ(reference(word, u"2", tolerant), "1") << narrow(word);
        }
        const std::pair<const char16_t*, const char*> styles[] = {{u"s", "1"},  {u"cs", "2"},  {u"ds", "3"},
                                                                  {u"ts", "4"}, {u"yts", "4"}, {u"ls", "1"}};
        for (const auto& [word, number] : styles) EXPECT_EQ(reference(word, u"9", tolerant), number) << narrow(word);
    }
    for (const auto word : test::piecesOf(u"CF|CB|CHCFPAT|CHCBPAT|PNCF|BRDRCF|CLCFPAT|CLCBPAT|AFC|HIGHLIGHT|"
                                          u"ULC|F")) {
        const std::u16string text =
            test::merged(u"{\\rtf1{\\fonttbl{\\f9 A;}}{\\colortbl;\\red1;}\\" + std::u16string(word) + u"7 }");
        EXPECT_NE(text.find(u"\\" + lowerCase(word) + u"7 "), text.npos) << narrow(word);
    }
}

TEST(WordLists, GroupsThatStandApart) {
    for (const auto word :
         test::piecesOf(u"annotation|dptxbxtext|footer|footerf|footerl|footerr|footnote|header|headerf|"
                        u"headerl|headerr|nonesttables|shprslt|shptxt")) {
        const std::u16string group = u"{\\*\\" + std::u16string(word) + u"\\pard x\\par}";
        std::u16string text = test::withMarkers(u"<1:\\intbl" + group + u"\\cell\\row:1>");
        Module1::ConvertNestedTables(text, {});
        EXPECT_NE(text.find(group), text.npos) << narrow(text);
    }
}

TEST(WordLists, DefinitionsOfRows) {
    const auto definition = [](std::u16string_view text) { return rowDefinitionAt(text, 0, text.size()).range.end; };
    for (const auto word :
         test::piecesOf(u"clvertalt|cellx9|irow0|irowband0|lastrow|ltrrow|rtlrow|trgaph9|ts9|tblrsid9|"
                        u"tposx9|tphcol|tpvpara|tdfrmtxtLeft9")) {
        const std::u16string text = u"\\trowd\\b\\" + std::u16string(word) + u"\\i x";
        EXPECT_EQ(definition(text), text.size() - 4) << narrow(word);
    }
    // A word that ends the run keeps words of the paragraph in place; one that ends the definition does not.
    for (const auto word : test::piecesOf(u"cell|intbl|itap2|nestcell")) {
        EXPECT_EQ(definition(u"\\trowd\\b\\" + std::u16string(word) + u"\\cellx9"), 6u) << narrow(word);
    }
    for (const auto word : test::piecesOf(u"par|pard|row|nestrow|trowd")) {
        EXPECT_EQ(definition(u"\\trowd\\b\\" + std::u16string(word) + u"\\cellx9"), 8u) << narrow(word);
    }
}

TEST(WordLists, WordsOfParagraphs) {
    for (const auto word : test::piecesOf(
             u"adjustright|aspalpha|aspnum|box|brdrt|brsp9|cbpat1|cfpat1|contextualspace|cufi9|culi9|curi9|faauto|"
             u"facenter|"
             u"fafixed|fahang|faroman|favar|fi9|hyphpar|indmirror|keep|keepn|li9|lin9|lisa9|lisb9|ltrpar|noline|"
             u"nooverflow|"
             u"nosnaplinegrid|nowidctlpar|nowwrap|qc|qd|qj|qk|ql|qr|qt|ri9|rin9|rtlpar|s9|sa9|saauto|sb9|sbauto|"
             u"shading9|sl9|slmult1|tb9|tldot|tleq|tlhyph|tlmdot|tlth|tlul|tqc|tqdec|tqr|tx9|widctlpar|wrapdefault")) {
        const std::u16string words = u"\\" + std::u16string(word);
        EXPECT_EQ(narrow(paragraphWords(u"\\pard\\b" + words + u"\\plain x", 0)), narrow(words));
    }
    for (const auto word : test::piecesOf(u"cell|nestcell|nestrow|par|pard|row|sect|trowd")) {
        EXPECT_EQ(narrow(paragraphWords(u"\\pard\\qc\\" + std::u16string(word) + u"\\li9 x", 0)), "\\qc");
    }
}

TEST(WordLists, Groups) {
    const std::pair<const char16_t*, Group> openings[] = {
        {u"{\\fonttbl", Group::fontTable},
        {u"{\\colortbl", Group::colourTable},
        {u"{\\listtable", Group::listTable},
        {u"{\\*\\listtable", Group::listTable},
        {u"{\\listoverridetable", Group::listOverrideTable},
        {u"{\\*\\listoverridetable", Group::listOverrideTable},
        {u"{\\stylesheet", Group::styleSheet},
        {u"{\\headerf", Group::header},
        {u"{\\footerl", Group::footer},
        {u"{\\*\\korvanenewheader", Group::newHeader},
        {u"{\\*\\korvanenewfooter", Group::newFooter},
        {u"{\\*\\korvanemergepagebreak", Group::mergePageBreak},
        {u"{\\*\\korvanesection", Group::section},
        {u"{\\*\\korvane\\starttable", Group::tableMarker},
        {u"{\\*\\background", Group::background},
        {u"{\\*\\generator", Group::generator},
    };
    for (const auto& [text, group] : openings) {
        GroupSet groups;
        groups.note(text, 0);
        EXPECT_TRUE(groups.has(group)) << narrow(text);
    }
}

TEST(WordLists, CodePages) {
    const std::pair<const char16_t*, std::int32_t> words[] = {
        {u"\\ansi", 1252}, {u"\\mac", 10000}, {u"\\pc", 437}, {u"\\pca", 850}, {u"\\ansicpg1251", 1251}, {u"\\b", 0}};
    for (const auto& [text, page] : words) EXPECT_EQ(codePageNamedBy(readWord(text, 0)), page) << narrow(text);
}

}  // namespace
}  // namespace velmor
