#include "rtf/merge/UnwrapNestedDocuments.h"

#include <string_view>
#include <vector>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/merge/DocumentUnwrapper.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

bool versionOneStandsAt(std::u16string_view text, std::size_t index) noexcept {
    return index + 5 < text.size() && text[index + 5] == u'1' && documentStandsAt(text, index);
}

void cutOpening(std::u16string_view text, std::size_t index, TextEdits& edits) {
    const std::size_t end = index + 6;
    // A blank after the opening word ended it, and may end the preceding word.
    standsAt(text, end, u" ") ? edits.cutJoining(index, end) : edits.cut(index, end);
}

// The braces of the documents after `from`, up to the first that is not closed.
TextEdits unwrapPlainly(std::u16string_view text, std::size_t from) {
    struct Open {
        std::size_t depth;
        std::size_t edits;  // before its own
    };
    TextEdits edits;
    std::vector<Open> open;
    for (RtfReader reader(text, from, text.size()); reader.nextBrace();) {
        const std::size_t index = reader.position();
        if (reader.opens() && versionOneStandsAt(text, index)) {
            open.push_back({reader.depth(), edits.size()});
            cutOpening(text, index, edits);
        } else if (reader.closes() && !open.empty() && open.back().depth == reader.depth() + 1) {
            edits.cut(index, index + 1);
            open.pop_back();
        }
    }
    if (!open.empty()) edits.truncate(open.front().edits);
    return edits;
}

}  // namespace

void Module1::UnwrapNestedDocuments(std::u16string& psText, const CleanOptions& options) {
    const std::size_t host = findHostDocument(psText);
    if (host == noDocument) return;
    TextEdits edits = options.tolerant ? unwrapTolerantly(psText, host) : unwrapPlainly(psText, host + 1);
    edits.apply(psText);
}

}  // namespace velmor
