#include "rtf/merge/UnwrapNestedDocuments.h"

#include <cstdint>
#include <string_view>
#include <vector>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/merge/DocumentUnwrapper.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

constexpr std::size_t openingLength = 6;

bool versionOneStandsAt(std::u16string_view text, std::size_t index) noexcept {
    return index + 5 < text.size() && text[index + 5] == u'1' && documentStandsAt(text, index);
}

// One of the two braces of a document.
struct Brace {
    std::size_t index;
    std::uint32_t document;
    bool opens;
};

// The braces of the documents behind `from`, up to the first that is not closed.
std::vector<Brace> documentBraces(std::u16string_view text, std::size_t from) {
    struct Open {
        std::int64_t depth;
        std::uint32_t document;
    };
    std::vector<Brace> braces;
    std::vector<Open> open;
    std::uint32_t documents = 0;
    std::int64_t depth = 0;
    RtfReader scanner(text, from, text.size());
    while (scanner.nextBrace()) {
        const std::size_t index = scanner.position();
        if (scanner.opens()) {
            if (versionOneStandsAt(text, index)) {
                open.push_back({depth, documents});
                braces.push_back({index, documents++, true});
            }
            ++depth;
        } else if (--depth; !open.empty() && open.back().depth == depth) {
            braces.push_back({index, open.back().document, false});
            open.pop_back();
        }
    }
    if (!open.empty()) std::erase_if(braces, [&](const Brace& brace) { return brace.document >= open[0].document; });
    return braces;
}

}  // namespace

void Module1::UnwrapNestedDocuments(std::u16string& psText, const CleanOptions& options) {
    const std::size_t host = findHostDocument(psText);
    if (host == noDocument) return;
    if (options.tolerant) {
        DocumentUnwrapper(psText, host).edits().apply(psText);
        return;
    }
    TextEdits edits;
    for (const Brace& brace : documentBraces(psText, host + 1)) {
        const std::size_t end = brace.index + (brace.opens ? openingLength : 1);
        // A blank behind the opening word was its end, and may end the word in front.
        if (brace.opens && standsAt(psText, end, u" ")) {
            edits.cutJoining(brace.index, end);
        } else {
            edits.cut(brace.index, end);
        }
    }
    edits.apply(psText);
}

}  // namespace velmor
