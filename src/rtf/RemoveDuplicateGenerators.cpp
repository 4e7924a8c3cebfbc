#include "rtf/RemoveDuplicateGenerators.h"

#include <string_view>

#include "rtf/BraceScanner.h"
#include "rtf/TextEdits.h"
#include "text/Compare.h"

namespace velmor {

void Module1::RemoveDuplicateGenerators(std::u16string& psText, const CleanOptions& options) {
    constexpr std::u16string_view opening = u"{\\*\\generator";
    const std::u16string_view text = psText;
    TextEdits edits;
    std::u16string_view kept;
    for (std::size_t at = 0; (at = findText(text, opening, at, Comparison::binary)) != text.npos;) {
        if (isEscaped(text, at)) {
            ++at;
            continue;
        }
        // The group's own brace: a group inside it, or an escaped brace, does not end it.
        const std::size_t end = findGroupEnd(text, at + opening.size(), options.tolerant);
        if (end == noGroupEnd) break;
        const std::u16string_view group = text.substr(at, end + 1 - at);
        if (group == kept) {
            edits.cut(at, end + 1);
        } else {
            kept = group;
        }
        at = end + 1;
    }
    edits.apply(psText);
}

}  // namespace velmor
