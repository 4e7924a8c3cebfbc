#include "rtf/read/DocumentHeader.h"

#include "rtf/read/WordTable.h"

namespace velmor {

bool DocumentHeader::next() noexcept {
    while ((at_ = skipWhiteSpace(text_, at_)) < text_.size() && text_[at_] == u'{') {
        const std::size_t end = documentStandsAt(text_, at_) ? noGroupEnd : findGroupEnd(text_, at_ + 1, true);
        if (end == noGroupEnd) return false;  // embedded documents follow the header
        at_ = end + 1;
    }
    if (at_ >= text_.size() || text_[at_] != u'\\') return false;
    word_ = readWord(text_, at_);
    at_ = word_.end;
    // A row ends the search early in a document whose text is in groups.
    const WordMeaning meaning = meaningOf(word_.letters);
    return !word_.letters.empty() && !meaning.is(WordTrait::beginsText) && meaning.word != Word::trowd;
}

}  // namespace velmor
