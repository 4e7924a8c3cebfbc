#include <gtest/gtest.h>

#include "Merged.h"

namespace velmor {
namespace {

using test::merged;
using test::narrow;

// The begin of the merged header if no document has fonts and colours.
const std::u16string header =
    u"{\\rtf1{\\colortbl;\\red0\\green0\\blue0;\\red255\\green255\\blue255;\\red255\\green0\\blue0;"
    u"\\red0\\green255\\blue0;\\red0\\green0\\blue255;}{\\fonttbl}";

struct MergeCase {
    const char* what;
    std::u16string host;    // after "{\rtf1"; "@" is the place of the lifted document
    std::u16string lifted;  // after "{\rtf1"
    std::u16string mergedHost;
    std::u16string mergedLifted;
};

const MergeCase styleCases[] = {
    {"nothing collected", u"\\s1 x@", u"\\s2 y", u"\\s1 x@", u"\\s2 y"},
    {"an empty table", u"\\ansi{\\stylesheet}{\\*\\listtable}Text@", u"y", u"\\ansi Text@", u"y"},
    {"a name before a group", u"{\\stylesheet{\\s1\\b A;}}@", u"{\\stylesheet{\\s1\\i A{\\*\\keycode x};}}",
     u"{\\stylesheet\r\n{\\s1\\b A;}\r\n{\\s0 Normal;}\r\n{\\s2\\i A (2){\\*\\keycode x};}}@", u""},
    {"the host's alone keep their numbers", u"{\\stylesheet{Normal;}\n{\\s7 Seven;}}\\s7 x@", u"\\s7 y",
     u"{\\stylesheet\r\n{Normal;}\r\n{\\s7 Seven;}}\\s7 x@", u"\\s7 y"},
    {"equal in name and definition", u"{\\stylesheet{\\s0 Normal;}{\\s4\\b\\sbasedon0\\snext4 Head;}}@",
     u"{\\stylesheet{Normal;}{\\s9\\sbasedon0\\b\\styrsid7 head;}}\\s9 y\\pard z",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s4\\b\\sbasedon0\\snext4 Head;}}@", u"\\s4 y\\pard z"},
    {"equal in name only", u"{\\stylesheet{\\s0 Normal;}{\\s4\\b Head;}{\\s1 Head (2);}}@",
     u"{\\stylesheet{\\s0 Normal;}{\\s4\\i Head,Kopf;}}\\s4 y",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s4\\b Head;}\r\n{\\s1 Head (2);}\r\n{\\s2\\i Head (3),Kopf;}}@",
     u"\\s2 y"},
    {"another base", u"{\\stylesheet{\\s0 Normal;}{\\s1\\b A;}{\\s2\\sbasedon1 B;}}@",
     u"{\\stylesheet{\\s0 Normal;}{\\s1\\i A;}{\\s2\\sbasedon1 B;}}\\s1 y\\s2 z",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s1\\b A;}\r\n{\\s2\\sbasedon1 B;}\r\n{\\s3\\i A (2);}\r\n{\\s4\\sbasedon3 "
     u"B (2);}}@",
     u"\\s3 y\\s4 z"},
    {"all kinds of reference", u"@",
     u"{\\stylesheet{\\s0 Normal;}{\\s5\\sbasedon0\\snext6\\slink7 P;}{\\s6\\sbasedon5 Q;}{\\*\\cs7\\additive\\slink5 "
     u"C;}"
     u"{\\*\\ts8\\tsrowd T;}{\\ds9 D;}}\\s5\\cs7\\ts8\\yts8\\ds9\\sbasedon5\\s0\\s77\\cs78 x",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s1\\sbasedon0\\snext2\\slink3 P;}\r\n{\\s2\\sbasedon1 Q;}\r\n"
     u"{\\*\\cs3\\additive\\slink1 C;}\r\n{\\*\\ts4\\tsrowd T;}\r\n{\\ds5 D;}}@",
     u"\\s1\\cs3\\ts4\\yts4\\ds5\\sbasedon5\\s0\\s222\\cs222 x"},
    {"its Normal is not the host's", u"\\pard a@",
     u"{\\stylesheet{\\fs30 Normal;}{\\s1\\sbasedon0 Body;}}\\pard\\plain a\\pard\\plain\\s1 b\\pard{c}",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s1\\fs30 Normal (2);}\r\n{\\s2\\sbasedon1 Body;}}\\pard a@",
     u"\\pard\\s1\\plain a\\pard\\plain\\s2 b\\pard\\s1{c}"},
    {"what the host refers to without having it", u"\\s1\\s2 x@", u"{\\stylesheet{\\s1\\b A;}}\\s1 y",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s3\\b A;}}\\s1\\s2 x@", u"\\s3 y"},
    {"the largest numbers", u"{\\stylesheet{\\s2147483647 A;}{\\s-5 B;}}\\s2147483647 x\\s-5 y@", u"",
     u"{\\stylesheet\r\n{\\s2147483647 A;}\r\n{\\s1 B;}}\\s2147483647 x\\s1 y@", u""},
    {"a link to a style of the same number", u"@",
     u"{\\stylesheet{\\s0 Normal;}{\\s7\\slink7 P;}{\\*\\cs7\\slink7 C;}}",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s1\\slink2 P;}\r\n{\\*\\cs2\\slink1 C;}}@", u""},
    {"a ring of bases, and none", u"@",
     u"{\\stylesheet{\\s1\\sbasedon2 A;}{\\s2\\sbasedon1 B;}{\\s3\\sbasedon222 C;}"
     u"{\\s4\\sbasedon9\\snext9 D;}}",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s2\\sbasedon1 A;}\r\n{\\s1\\sbasedon2 B;}\r\n{\\s3\\sbasedon222 C;}\r\n"
     u"{\\s4\\sbasedon222\\snext4 D;}}@",
     u""},
};

// Tolerant: nothing of the host's text changes, and a document with its own look does not get the host's style.
const MergeCase tolerantCases[] = {
    {"no Normal for a host without one", u"\\fs20 @", u"{\\stylesheet{\\s0\\b Normal;}}\\pard y",
     u"{\\stylesheet\r\n{\\s1\\b Normal (2);}}\\fs20 @", u"\\pard\\s1\\plain\\pard\\s1 y"},
    {"a plain style where the host's is not plain", u"{\\stylesheet{\\s0\\sb400 Normal;}}@",
     u"\\paperw9\\pard y\\s1\\s0 z", u"{\\stylesheet\r\n{\\s0\\sb400 Normal;}\r\n{\\s1\\sb0 Normal (2);}}@",
     u"\\pard\\s1\\plain\\paperw9\\pard\\s1 y\\s222\\s1 z"},
    {"a sheet without style 0", u"{\\stylesheet{\\sb400 Normal;}}@", u"{\\stylesheet{\\s3 A;}}\\pard y",
     u"{\\stylesheet\r\n{\\sb400 Normal;}\r\n{\\s1 A;}\r\n{\\s2\\sb0 Normal (2);}}@", u"\\pard\\s2\\plain\\pard\\s2 y"},
    {"no spacing of the host's Normal, nor of their own", u"{\\stylesheet{\\s0\\sb4 Normal;}}@",
     u"{\\stylesheet{\\s0\\sa9\\sl8\\sbauto1 Normal;}{\\s2\\sl7\\sbasedon0 A;}{\\s3\\sbasedon2 B;}}",
     u"{\\stylesheet\r\n{\\s0\\sb4 Normal;}\r\n{\\s1\\sb0\\sa9\\sl8\\sbauto1 Normal (2);}\r\n"
     u"{\\s2\\sa0\\sl7\\sbasedon1 A;}\r\n{\\s3\\sbasedon2 B;}}@",
     u"\\pard\\s1\\plain"},
    {"no base where readers would show it", u"{\\stylesheet{\\s0\\fs24 Normal;}}@",
     u"{\\stylesheet{\\s0\\fs22 Normal;}{\\s2\\fs24\\sbasedon0 A;}{\\s3\\fs24\\sbasedon2 \\snext3 B;}}",
     u"{\\stylesheet\r\n{\\s0\\fs24 Normal;}\r\n{\\s1\\fs22 Normal (2);}\r\n{\\s2\\fs24A;}\r\n"
     u"{\\s3\\fs24\\sbasedon2 \\snext3 B;}}@",
     u"\\pard\\s1\\plain"},
    {"no base that gives a character style a size", u"{\\stylesheet{\\s0\\fs20 Normal;}}@",
     u"{\\stylesheet{\\s0 Normal;}{\\*\\cs1\\additive Font;}{\\*\\cs2\\super\\sbasedon1 Mark;}}",
     u"{\\stylesheet\r\n{\\s0\\fs20 Normal;}\r\n{\\s1 Normal (2);}\r\n{\\*\\cs2\\additive Font;}\r\n"
     u"{\\*\\cs3\\super Mark;}}@",
     u"\\pard\\s1\\plain"},
    {"a character style that is one of paragraphs", u"@", u"{\\stylesheet{\\s3 A;}}\\s3\\cs3 y",
     u"{\\stylesheet\r\n{\\s1 A;}}@", u"\\pard\\plain\\s1\\cs222 y"},
    {"a host's Normal that is not style 0", u"{\\stylesheet{\\s3\\fs20 Normal;}}@", u"\\paperw9 y",
     u"{\\stylesheet\r\n{\\s3\\fs20 Normal;}\r\n{\\s1 Normal (2);}}@", u"\\pard\\s1\\plain\\paperw9 y"},
    {"lists beside paragraphs that describe their own", u"{\\*\\pn\\pnlvlblt}{\\*\\pnseclvl1}@",
     u"{\\*\\listtable{\\list\\listid5}}{\\*\\listoverridetable{\\listoverride\\listid5\\ls1}}\\ls1 y",
     u"{\\*\\listtable\r\n{\\list\\listid2}}{\\*\\listoverridetable\r\n{\\listoverride\\listid2\\ls2}}"
     u"{\\*\\pn\\pnlvlblt}{\\*\\pnseclvl1}@",
     u"\\ls2 y"},
    {"no widow control of the host", u"\\widowctrl @", u"\\paperw9\\pard y", u"\\widowctrl @",
     u"\\pard\\nowidctlpar\\plain\\paperw9\\pard\\nowidctlpar y"},
    {"but their own", u"@", u"\\paperw9\\widowctrl\\pard y", u"@",
     u"\\pard\\widctlpar\\plain\\paperw9\\widowctrl\\pard\\widctlpar y"},
    {"a fragment", u"{\\stylesheet{\\s0\\sb400 Normal;}}@", u"\\pard y", u"{\\stylesheet\r\n{\\s0\\sb400 Normal;}}@",
     u"\\pard y"},
};

const MergeCase listCases[] = {
    {"the host's alone",
     u"{\\*\\listtable{\\list\\listtemplateid-9{\\listlevel}\\listid-7}}"
     u"{\\*\\listoverridetable{\\listoverride\\listid-7\\listoverridecount0\\ls3}}\\ls3 x@",
     u"\\ls3 y",
     u"{\\*\\listtable\r\n{\\list\\listtemplateid-9{\\listlevel}\\listid-7}}"
     u"{\\*\\listoverridetable\r\n{\\listoverride\\listid-7\\listoverridecount0\\ls3}}\\ls3 x@",
     u"\\ls3 y"},
    {"equal lists are not shared",
     u"{\\*\\listtable{\\list\\listtemplateid1\\listid5}}"
     u"{\\listoverridetable{\\listoverride\\listid5\\listoverridecount0\\ls1}}\\ls1 x@",
     u"{\\*\\listtable{\\list\\listtemplateid1\\listid5}}"
     u"{\\*\\listoverridetable{\\listoverride\\listid5\\listoverridecount9\\ls1}}\\ls1 x\\ls0\\ls8 y",
     u"{\\*\\listtable\r\n{\\list\\listtemplateid1\\listid5}\r\n{\\list\\listtemplateid2\\listid1}}"
     u"{\\*\\listoverridetable\r\n{\\listoverride\\listid5\\listoverridecount0\\ls1}\r\n"
     u"{\\listoverride\\listid1\\listoverridecount0\\ls2}}\\ls1 x@",
     u"\\ls2 x\\ls0\\ls0 y"},
    {"styles and lists of one another", u"@",
     u"{\\stylesheet{\\s0 Normal;}{\\s8\\ls4 L;}}{\\*\\listtable{\\list{\\listlevel\\s8\\f0}\\listid5{\\listname a;}}}"
     u"{\\*\\listoverridetable{\\listoverride\\listid5\\listoverridecount1\\ls4{\\lfolevel\\listoverridestartat}}"
     u"{\\listoverride\\listid6\\listoverridecount0\\ls6}}{\\fonttbl{\\f0 A;}}\\ls4\\ls6\\f0 x",
     u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s1\\ls1 L;}}{\\*\\listtable\r\n"
     u"{\\list{\\listlevel\\s1\\f0}\\listid1{\\listname a;}}}{\\*\\listoverridetable\r\n"
     u"{\\listoverride\\listid1\\listoverridecount1\\ls1{\\lfolevel\\listoverridestartat}}\r\n"
     u"{\\listoverride\\listid2\\listoverridecount0\\ls2}}@",
     u"\\ls1\\ls2\\f0 x"},
    {"blanks between groups", u"{\\*\\listtable {\\list {\\listname a b;} \\listid5} }@",
     u"{\\*\\listtable {\\list {\\listlevel {\\leveltext a b;} {\\levelnumbers;}}\r\n \\listid5 } }"
     u"{\\*\\listoverridetable {\\listoverride \\listid5 {\\lfolevel \\listoverridestartat {\\listlevel } } \\ls1}}",
     u"{\\*\\listtable\r\n{\\list {\\listname a b;} \\listid5}\r\n{\\list {\\listlevel {\\leveltext a "
     u"b;}{\\levelnumbers;}}\\listid1 }}{\\*\\listoverridetable\r\n{\\listoverride \\listid1 {\\lfolevel "
     u"\\listoverridestartat {\\listlevel }}\\ls1}}@",
     u""},
    {"a list of another one's style", u"@",
     u"{\\*\\listtable{\\list\\listid5{\\*\\liststylename S;}}{\\list\\listid6\\liststyleid5}}",
     u"{\\*\\listtable\r\n{\\list\\listid1{\\*\\liststylename S;}}\r\n{\\list\\listid2\\liststyleid1}}@", u""},
    {"bullets that are pictures",
     u"{\\*\\listtable{\\*\\listpicture{\\pict a}{\\nonshppict n}}{\\list{\\listlevel\\levelpicture0}\\listid5}}@",
     u"{\\*\\listtable{\\*\\listpicture{\\pict b}{\\pict c}}{\\list{\\listlevel\\levelpicture1}}}"
     u"{\\*\\listoverridetable{\\listoverride\\ls1{\\lfolevel{\\listlevel\\levelpicture0}}}}",
     u"{\\*\\listtable\r\n{\\*\\listpicture{\\pict a}{\\nonshppict n}{\\pict b}{\\pict "
     u"c}}\r\n{\\list{\\listlevel\\levelpicture0}\\listid5}\r\n"
     u"{\\list{\\listlevel\\levelpicture2}\\listid1}}"
     u"{\\*\\listoverridetable\r\n{\\listoverride\\ls1{\\lfolevel{\\listlevel\\levelpicture1}}}}@",
     u""},
};

void check(const MergeCase& c, bool tolerant = false) {
    const auto at = [](const std::u16string& text) { return text.find(u'@'); };
    std::u16string text = u"{\\rtf1" + c.host + u"}";
    text.replace(at(text), 1, u"{\\rtf1" + c.lifted + u"}");
    std::u16string expected = header + c.mergedHost + u"}";
    expected.replace(at(expected), 1, u"{\\rtf1" + c.mergedLifted + u"}");
    std::u16string result = merged(text, tolerant);
    // Fonts are ignored.
    const std::size_t font = result.find(u"\r\n{\\f0 A;}");
    if (font != std::u16string::npos) result.erase(font, 10);
    EXPECT_EQ(narrow(result), narrow(expected)) << c.what;
}

TEST(ListsAndStyles, StylesKeepTheirLook) {
    for (const MergeCase& c : styleCases) check(c);
    for (const MergeCase& c : tolerantCases) check(c, true);
}

TEST(ListsAndStyles, ListsKeepTheirNumbering) {
    for (const MergeCase& c : listCases) check(c);
}

// A renamed style is shared again. The numbers to which a document without tables refers stay free; a
// reference to a number that another document has already becomes none.
TEST(ListsAndStyles, DocumentsReferToTheHostOnly) {
    const std::u16string bare = u"{\\rtf1\\s1\\s2\\ls1 x}";
    const std::u16string lifted =
        u"{\\rtf1{\\stylesheet{\\s0 Normal;}{\\s1\\i A;}}{\\*\\listoverridetable{\\listoverride\\ls1}}\\s1\\ls1 x}";
    EXPECT_EQ(
        narrow(merged(u"{\\rtf1{\\stylesheet{\\s0 Normal;}{\\s1\\b A;}}" + lifted + lifted + bare + u"}")),
        narrow(header + u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s1\\b A;}\r\n{\\s2\\i A (2);}}{\\*\\listoverridetable"
                        u"\r\n{\\listoverride\\ls1}\r\n{\\listoverride\\ls2}}{\\rtf1\\s2\\ls1 x}{\\rtf1\\s2\\ls2 x}"
                        u"{\\rtf1\\s1\\s222\\ls0 x}}"));
    EXPECT_EQ(
        narrow(merged(u"{\\rtf1" + bare + lifted + u"}")),
        narrow(header +
               u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s3\\i A;}}{\\*\\listoverridetable\r\n{\\listoverride\\ls2}}" +
               bare + u"{\\rtf1\\s3\\ls2 x}}"));
}

TEST(MergeStyles, OfEqualNameFollowTheChoice) {
    const std::u16string text =
        u"{\\rtf1{\\stylesheet{\\s0 Normal;}{\\s1\\b\\fs40\\sqformat Head;}}"
        u"{\\rtf1{\\stylesheet{\\s0\\fs20 Normal;}{\\s7\\i\\fs30 Head;}{\\s8\\sbasedon7\\ul Sub;}}"
        u"\\pard\\plain\\s7\\qc\\i\\fs30 y\\pard\\plain\\fs20 z\\pard\\s8 u\\pard\\s7 v}}";
    const std::u16string sheet = header + u"{\\stylesheet\r\n{\\s0 Normal;}\r\n{\\s1\\b\\fs40\\sqformat Head;}\r\n";
    CleanOptions options;
    options.styles = StyleConflict::host;
    EXPECT_EQ(
        narrow(merged(text, options)),
        narrow(sheet + u"{\\s2\\sbasedon1\\ul Sub;}}{\\rtf1\\pard\\plain\\s1\\b\\fs40\\qc y\\pard\\plain z\\pard\\s2 u"
                       u"\\pard\\s1\\b\\fs40 v}}"));
    options.styles = StyleConflict::keep;
    EXPECT_EQ(
        narrow(merged(text, options)),
        narrow(sheet + u"{\\s2\\b0\\i\\fs30\\sbasedon1\\ul Sub;}}{\\rtf1\\pard\\plain\\s1\\b0\\i\\fs30\\qc\\i\\fs30 y"
                       u"\\pard\\fs20\\plain\\fs20\\fs20 z\\pard\\s2 u\\pard\\s1\\b0\\i\\fs30 v}}"));
}

}  // namespace
}  // namespace velmor
