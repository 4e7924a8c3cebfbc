// Compares the table stages with literal models, on table RTF made of pieces and on any text of the same bytes.

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "rtf/LiteralModule1.h"
#include "rtf/LiteralProtectRTF.h"
#include "rtf/NestedTableText.h"
#include "rtf/TableDuel.h"
#include "rtf/edit/ProtectRTF.h"
#include "rtf/read/Module1.h"
#include "rtf/tables/NestedTables.h"

namespace {

using namespace velmor;

void require(bool same, const char* what) {
    if (same) return;
    std::fprintf(stderr, "%s differs\n", what);
    std::abort();
}

void fuzzTables(const std::uint8_t* data, std::size_t size) {
    const std::u16string text = test::tableText(data + 2, size - 2);
    const auto length = static_cast<std::int32_t>(text.size());
    const std::int32_t start = length * data[0] / 256 + 1;
    const std::int32_t end = length * data[1] / 256 + 1;
    require(test::duelAddMarkers(text).same(), "addTableMarkers");
    require(test::duelRemoveExtraTrowd(text, start, end).same(), "RemoveExtraTrowd");
}

void fuzzNestedTables(const std::uint8_t* data, std::size_t size) {
    const std::u16string text = test::nestedTableText(data, size);
    std::u16string converted = text;
    Module1::ConvertNestedTables(converted, {});
    CleanOptions tolerant;
    tolerant.tolerant = true;
    converted = text;
    Module1::ConvertNestedTables(converted, tolerant);
}

void fuzzSearches(const std::uint8_t* data, std::size_t size) {
    constexpr std::u16string_view alphabet = u"\\{}row \r\n";
    std::u16string text;
    for (std::size_t i = 1; i < size; ++i) text += alphabet[data[i] % alphabet.size()];
    const auto length = static_cast<std::int32_t>(text.size());
    const test::LiteralBuffer literal{text, length};
    const std::u16string sought = text.substr(0, data[0] % 5);
    for (const bool delimited : {false, true}) {
        require(Module1::FindRTFWordInText(2, text, sought, 0, delimited) ==
                    literal.findRTFWordForward(2, sought, false, delimited),
                "FindRTFWordInText");
        require(Module1::FindRTFWordInTextReverse(text, sought, length - 1, 0, delimited) ==
                    literal.findRTFWordReverse(sought, length - 1, false, delimited),
                "FindRTFWordInTextReverse");
        require(Module1::CountRTFWord(1, text, sought, 0, 0, delimited) == literal.count(1, sought, 0, delimited),
                "CountRTFWord");
    }
    require(Module1::FindGroupEnd(1, text, u"{", 0).end == literal.groupEnd(1, u"{", 0).second, "FindGroupEnd");
    std::u16string escaped = text;
    ProtectRTFCode(escaped);
    require(escaped == test::literallyProtected(text), "ProtectRTFCode");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    constexpr std::size_t longest = 120;
    fuzzTables(data, std::min(size, longest));
    fuzzNestedTables(data, std::min(size, longest));
    fuzzSearches(data, std::min(size, longest));
    return 0;
}
