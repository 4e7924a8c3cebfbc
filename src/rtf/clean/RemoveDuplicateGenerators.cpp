#include "rtf/clean/RemoveDuplicateGenerators.h"

#include <string_view>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

std::u16string Module1::RemoveDuplicateGenerators(std::u16string& psText, std::u16string psKept) {
    constexpr std::u16string_view opening = u"{\\*\\generator";
    const std::u16string_view text = psText;
    TextEdits edits;
    RtfSearch search(text);
    for (std::size_t at = 0; (at = search.find(opening, at)) != text.npos;) {
        const std::size_t end = text.find(u'}', at + opening.size());
        if (end == text.npos) break;
        const std::u16string_view group = text.substr(at, end + 1 - at);
        if (group == psKept) {
            edits.cut(at, end + 1);
        } else {
            psKept = group;
        }
        at = end + 1;
    }
    edits.apply(psText);
    return psKept;
}

}  // namespace velmor
