// Cleans any RTF: cleaning ends, the text grows within bounds, no placeholder remains, and balanced
// braces stay balanced.

#include <cstdint>
#include <cstdlib>
#include <iterator>

#include "platform/MemoryServices.h"
#include "rtf/RtfText.h"
#include "rtf/clean/CleanRTF.h"

namespace {

using namespace velmor;

class Host : public CleanHost {
public:
    platform::Services& services() noexcept override { return machine_; }

private:
    platform::MemoryServices machine_;
};

constexpr std::u16string_view pieces[] = {
    u"{",
    u"}",
    u"}",
    u"\\",
    u"\\'e4",
    u"\\u1076?",
    u" ",
    u"\r\n",
    u"x",
    u"1",
    u";",
    u"{\\rtf1",
    u"{\\rtf1\\ansi\\ansicpg1251\\deff1 ",
    u"{\\rtf ",
    u"{\\rtf1{\\*\\korvanenewheader}}",
    u"{\\*\\korvanenewfooter}",
    u"{\\fonttbl{\\f0 A;}{\\f1\\fcharset204 B;}}",
    u"{\\fonttbl",
    u"{\\f3 C;}",
    u"{\\colortbl;\\red9;}",
    u"{\\colortbl",
    u"\\f0",
    u"\\f1\\cf1 ",
    u"\\plain",
    u"{\\stylesheet{\\s1 A;}}",
    u"\\s1",
    u"{\\*\\listtable{\\list\\listid7}}",
    u"{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}}",
    u"\\ls1",
    u"{\\*\\generator Korvane RTF Control}",
    u"\\marglsxn9",
    u"{\\*\\background",
    u"{\\*\\korvanesection\\landscape\\paperheight21}",
    u"{\\*\\korvanemergepagebreak}",
    u"\\sectd",
    u"\\sect",
    u"\\page",
    u"\\paperw9 ",
    u"{\\header h}",
    u"\\trowd\\irow0",
    u"\\cell",
    u"\\cellx9",
    u"\\lastrow\\row ",
    u"\\intbl",
    u"\\itap2",
    u"\\par",
    u"\\pard",
    u"{\\*\\nesttableprops\\trowd\\nestrow}",
    u"{\\*\\korvane\\starttable{01234567-0123-0123-0123-0123456789ab}}",
    u"{\\*\\korvane\\endtable{01234567-0123-0123-0123-0123456789ab}}",
    u"{\\*\\korvane\\starttable{01234567-0123-0123-0123-0123456789ac}}",
    u"{\\*\\korvane\\endtable{01234567-0123-0123-0123-0123456789ac}}",
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    CleanOptions options;
    options.mergeMode = (data[0] & 1) != 0;
    options.tolerant = (data[0] & 2) != 0;
    std::u16string text = u"{\\rtf1";
    for (std::size_t i = 1; i < size; ++i) text += pieces[data[i] % std::size(pieces)];

    Host host;
    std::u16string result = text;
    Module1::CleanRTFText(result, options, host);
    const bool bounded = result.size() < 100 * text.size() + 4000;
    const bool ownsNothing = result.find(u'\ufdd0') == result.npos;
    const bool balanced = !options.tolerant || test::RtfText(result).isBalanced() || !test::RtfText(text).isBalanced();
    if (!bounded || !ownsNothing || !balanced) std::abort();
    return 0;
}
