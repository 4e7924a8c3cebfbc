#include "rtf/clean/JoinDocuments.h"

#include <algorithm>
#include <utility>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/read/RtfReader.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {
namespace {

constexpr std::size_t maximalLength = (std::size_t{1} << 30) - 1;

std::size_t countVisible(std::u16string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char16_t unit) { return !isWhiteSpace(unit) && unit != 0; }));
}

}  // namespace

// Counts braces as a reader of RTF does, also for exact cleaning.
TextRange documentIn(std::u16string_view text, const std::string& name) {
    const std::size_t begin = findHostDocument(text);
    const std::size_t end = findGroupEnd(text, begin + 1, true);
    if (end == noGroupEnd) throw Error(5, fromUtf8(name) + u" cannot be joined: its closing brace is missing");
    return {begin, end + 1};
}

std::size_t countOutside(std::u16string_view text, TextRange document) {
    return countVisible(text.substr(0, document.begin)) + countVisible(text.substr(document.end));
}

void requireDocument(std::u16string& text, bool addVersion, const std::string& name) {
    const std::size_t document = findHostDocument(text);
    if (document == noDocument) throw Error(5, fromUtf8(name) + u" contains no RTF document");
    const std::size_t version = document + std::u16string_view(u"{\\rtf").size();
    if (addVersion && version < text.size() && !isLetter(text[version]) && text[version] != u'-' &&
        hostHeaderStart(text, document) == version) {
        text.insert(version, 1, u'1');
    }
}

std::u16string joinDocuments(std::vector<std::u16string> texts, const std::vector<std::string>& names,
                             const std::function<void(const std::string& name, std::size_t count)>& lost) {
    std::u16string joined = std::move(texts.front());
    const std::size_t last = documentIn(joined, names.front()).end - 1;
    const std::u16string tail = joined.substr(last);
    joined.resize(last);
    for (std::size_t i = 1; i < texts.size(); ++i) {
        const std::u16string_view text = texts[i];
        const TextRange document = documentIn(text, names[i]);
        const std::size_t added = Module1::mergePageBreakMarker.size() + (document.end - document.begin);
        if (joined.size() + tail.size() + added > maximalLength) {
            throw Error(7, u"with " + fromUtf8(names[i]) + u" the joined document is too large");
        }
        joined.append(Module1::mergePageBreakMarker).append(document.of(text));
        const std::size_t left = countOutside(text, document);
        if (left > 0) lost(names[i], left);
    }
    return joined += tail;
}

}  // namespace velmor
