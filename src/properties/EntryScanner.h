#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text/Characters.h"
#include "text/Compare.h"

namespace velmor {

// Finds where the parts of entries end in the text form. Positions are 0-based, and each member must
// be called with ascending ones; all calls together then take time linear in the text, however many
// openings have no end. The text must end with the delimiter.
class EntryScanner {
public:
    static constexpr std::size_t npos = std::u16string_view::npos;

    // Both must outlive the scanner.
    EntryScanner(std::u16string_view text, std::u16string_view delimiter) : text_(text), delimiter_(delimiter) {
        quote_.sought.append(1, u'"').append(delimiter);
        hash_.sought.append(1, u'#').append(delimiter);
    }

    std::u16string_view text() const noexcept { return text_; }

    // The first "=" or delimiter; npos if the text has neither.
    std::size_t nameEnd(std::size_t from) const noexcept {
        const char16_t first = delimiter_[0];
        const char16_t last = std::max(u'=', first);  // letters, most of a name, have higher codes
        for (std::size_t i = from; i < text_.size(); ++i) {
            const char16_t unit = text_[i];
            if (unit > last) continue;
            if (unit == u'=' || (unit == first && delimiterAt(i))) return i;
        }
        return npos;
    }

    std::size_t delimiter(std::size_t from) const noexcept {
        if (delimiter_.size() == 1) return text_.find(delimiter_[0], from);
        return findText(text_, delimiter_, from, Comparison::binary);
    }

    // The next quote, and the next "#", that a delimiter follows directly.
    std::size_t closingQuote(std::size_t from) { return next(quote_, from); }

    std::size_t closingHash(std::size_t from) { return next(hash_, from); }

    // The end of an unquoted value in a tag: the next delimiter that neither follows a drive's letter
    // nor is part of a complete nested tag.
    std::size_t tagValueEnd(std::size_t from) {
        if (!tagsFound_) findNestedTags();
        const std::size_t plainEnd = delimiter(afterDrive(from));
        std::size_t end = plainEnd;
        for (; nextTag_ < tags_.size() && tags_[nextTag_].begin < end; ++nextTag_) {
            const NestedTag& tag = tags_[nextTag_];
            if (tag.begin < from || tag.end == npos) continue;
            from = tag.end;
            if (end < from) end = delimiter(from);
        }
        return end == npos ? plainEnd : end;  // a delimiter may be part of a closing marker
    }

private:
    static constexpr std::u16string_view tagOpening = u"<KV:", tagClosing = u"</KV>";

    static bool startsIgnoringCase(std::u16string_view text, std::u16string_view marker) {
        return equalIgnoringCase(text.substr(0, marker.size()), marker);
    }

    // The last answer holds for every start up to the position that it found.
    struct Closing {
        std::u16string sought;
        std::size_t found = 0;
    };
    struct NestedTag {
        std::size_t begin;
        std::size_t end;  // after the closing marker; npos for a tag that is never closed
    };

    bool delimiterAt(std::size_t position) const noexcept {
        return position <= text_.size() && text_.substr(position).starts_with(delimiter_);
    }

    std::size_t next(Closing& closing, std::size_t from) const noexcept {
        if (closing.found < from) {
            closing.found = delimiter_.size() == 1 ? nextPair(closing.sought[0], from)
                                                   : findText(text_, closing.sought, from, Comparison::binary);
        }
        return closing.found;
    }

    // Values are short: a plain loop is done before a general search has begun.
    std::size_t nextPair(char16_t mark, std::size_t from) const noexcept {
        const char16_t second = delimiter_[0];
        for (std::size_t i = from; i + 1 < text_.size(); ++i) {
            if (text_[i + 1] == second && text_[i] == mark) return i;
        }
        return npos;
    }

    std::size_t afterDrive(std::size_t from) const noexcept {
        const std::size_t next = from + 1 + delimiter_.size();
        if (next >= text_.size() || !isLetter(text_[from]) || !delimiterAt(from + 1)) return from;
        return text_[next] == u'\\' || text_[next] == u'/' ? next : from;
    }

    // A closing marker belongs to the last opening marker without one.
    void findNestedTags() {
        tagsFound_ = true;
        std::vector<std::size_t> open;
        for (std::size_t i = text_.find(u'<'); i != npos; i = text_.find(u'<', i + 1)) {
            const std::u16string_view rest = text_.substr(i);
            if (startsIgnoringCase(rest, tagOpening)) {
                open.push_back(tags_.size());
                tags_.push_back({i, npos});
            } else if (!open.empty() && startsIgnoringCase(rest, tagClosing)) {
                tags_[open.back()].end = i + tagClosing.size();
                open.pop_back();
            }
        }
    }

    std::u16string_view text_;
    std::u16string_view delimiter_;
    Closing quote_;
    Closing hash_;
    std::vector<NestedTag> tags_;  // by begin
    std::size_t nextTag_ = 0;
    bool tagsFound_ = false;
};

}  // namespace velmor
