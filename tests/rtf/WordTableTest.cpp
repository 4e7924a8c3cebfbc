#include "rtf/read/WordTable.h"

#include <gtest/gtest.h>

#include "NestedTableText.h"
#include "Pieces.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/HeadersFooters.h"
#include "rtf/tables/NestedTables.h"
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

}  // namespace
}  // namespace velmor
