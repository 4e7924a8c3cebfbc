#include "rtf/JoinedHeaders.h"

#include <string_view>

#include "rtf/HeaderWords.h"
#include "rtf/MergePageBreaks.h"
#include "rtf/RtfScanner.h"
#include "rtf/TextEdits.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::u16string_view marker = Module1::mergePageBreakMarker;

constexpr Group groupOf(HeaderKind kind) noexcept {
    return kind == HeaderKind::header ? Group::header : Group::footer;
}

// For all pages, whatever the document in front distinguishes.
std::u16string emptyGroups(HeaderKind kind) {
    std::u16string text;
    for (const HeaderPages pages : {HeaderPages::all, HeaderPages::left, HeaderPages::first}) {
        text += HeaderName{kind, pages}.opening();
        text += u"\\pard\\plain\\par}";
    }
    return text;
}

}  // namespace

void Module1::SeparateJoinedHeaders(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    if (!options.mergeMode || !options.tolerant || !poTables.hostGroups().has(Group::mergePageBreak)) return;
    GroupSet before = poTables.hostGroups();
    TextEdits edits;
    for (std::size_t at = 0; (at = findText(psText, marker, at, Comparison::binary)) != psText.npos;) {
        at += marker.size();
        const std::size_t next = skipWhiteSpace(psText, at);
        if (next == psText.size() || psText[next] != poTables.mark()) continue;
        const auto document = poTables.placeholderAt(psText, next).document;
        if (!document) continue;
        const GroupSet own = poTables.documents()[*document].groups;
        std::u16string groups;
        for (const HeaderKind kind : headerKinds) {
            if (before.has(groupOf(kind)) && !own.has(groupOf(kind))) groups += emptyGroups(kind);
        }
        if (!groups.empty()) edits.replaceVal(at, at, std::move(groups));
        before.add(own);
    }
    edits.apply(psText);
}

}  // namespace velmor
