#include "rtf/read/WordTable.h"

#include <gtest/gtest.h>

#include "LiteralHeaders.h"
#include "NestedTableText.h"
#include "Pieces.h"
#include "rtf/NestedTables.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

// A header marker after something that shows begins a section.
bool showsInBody(const std::u16string& piece) {
    const std::u16string marker = u"{\\rtf1{\\*\\korvanenewheader}}";
    const std::u16string text = u"{\\rtf1{\\header h}" + piece + marker + u"{\\rtf1{\\header n}b}c}";
    return test::withHeadersApplied(text, {}).find(u"\\sbkpage") != std::u16string::npos;
}

// Something that shows before a table in its cell ends with \par.
bool showsInCell(const std::u16string& piece) {
    std::u16string text = u"<1:\\intbl " + piece + u"<2:\\intbl\\cell\\trowd\\cellx9\\row:2>\\cell\\row:1>";
    text = test::withMarkers(text);
    Module1::ConvertNestedTables(text, {});
    return text.find(piece + u"\\par{\\*") != std::u16string::npos;
}

TEST(WordTable, SaysWhatShowsOnAPage) {
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

}  // namespace
}  // namespace velmor
