#include "rtf/edit/TextEdits.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "rtf/read/RtfReader.h"
#include "text/privStrCat.h"

namespace velmor {

bool wordTakesIn(std::u16string_view text, char16_t next) noexcept {
    if (!isLetter(next) && !isDigit(next) && next != u'-' && next != u' ') return false;
    // No word is longer; reading further back would be quadratic in a text of letters.
    constexpr std::size_t longestWord = 256;
    const std::size_t first = text.size() - std::min(text.size(), longestWord);
    std::size_t at = text.size();
    while (at > first && isDigit(text[at - 1])) --at;
    if (at > first && text[at - 1] == u'-') --at;
    const bool hasNumber = at != text.size();
    std::size_t letters = at;
    while (letters > first && isLetter(text[letters - 1])) --letters;
    const bool isWord = letters != at && letters > first && text[letters - 1] == u'\\' && !isEscaped(text, letters - 1);
    return isWord && (next == u' ' || isDigit(next) || !hasNumber);
}

Rewriting::Rewriting(std::u16string& text, std::size_t lead)
    : text_(text), inPlace_(lead <= text.capacity() - text.size()) {
    const std::size_t length = text.size();
    if (inPlace_) {
        text.resize(length + lead);
        if (lead != 0) std::char_traits<char16_t>::move(text.data() + lead, text.data(), length);
        source_ = {text.data() + lead, length};
    } else {
        fresh_.reserve(length + lead + length / 16);  // so that later stages find room
        source_ = text;
    }
}

void Rewriting::finish() {
    if (inPlace_) {
        text_.resize(length_);
    } else {
        text_ = std::move(fresh_);
    }
}

void TextEdits::order() {
    const auto comesFirst = [](const Edit& left, const Edit& right) {
        if (left.begin != right.begin) return left.begin < right.begin;
        const bool inserts = left.begin == left.end;
        return inserts ? right.begin != right.end : right.begin != right.end && left.end > right.end;
    };
    const auto isOutOfPlace = [&](const Edit& left, const Edit& right) {
        return right.begin < left.end || comesFirst(right, left);
    };
    if (std::adjacent_find(edits_.begin(), edits_.end(), isOutOfPlace) == edits_.end()) return;
    std::stable_sort(edits_.begin(), edits_.end(), comesFirst);
    std::uint32_t end = 0;
    std::erase_if(edits_, [&](const Edit& edit) {
        const bool isLost = edit.begin < end;
        if (!isLost) end = edit.end;
        return isLost;
    });
}

void TextEdits::write(Rewriting& target, PlaceShifts* shifts) const {
    const std::u16string_view from = target.source();
    std::size_t at = 0;
    bool apart = false;
    const auto writeRest = [&](std::size_t end) {
        if (at == end) return;
        if (apart && wordTakesIn(target.written(), from[at])) target.put(u" ");
        apart = false;
        if (shifts != nullptr) shifts->push_back({at, target.written().size()});
        target.put(from.substr(at, end - at));
    };
    for (const Edit& edit : edits_) {
        writeRest(edit.begin);
        if (edit.length != 0) target.put({edit.text, edit.length});
        const bool endsWithWord = edit.seam == Seam::words && !standsAt(from, edit.end, u" ");
        if (edit.seam != Seam::plain || edit.length != 0) apart = edit.seam == Seam::apart || endsWithWord;
        at = edit.end;
    }
    writeRest(from.size());
    if (shifts != nullptr) shifts->push_back({from.size(), target.written().size()});
}

void TextEdits::apply(std::u16string& text, PlaceShifts* shifts) {
    if (edits_.empty()) return;
    order();
    std::size_t removed = 0, added = 0;
    std::size_t lead = 0;  // how far writing may be ahead of reading
    for (const Edit& edit : edits_) {
        // Every cut may need a blank between words.
        added += edit.length + (edit.seam == Seam::apart || edit.seam == Seam::words);
        removed += edit.end - edit.begin;
        if (added > removed) lead = std::max(lead, added - removed);
    }
    if (text.size() - removed + added > privStrCat::maximumLength) throw std::length_error("TextEdits");
    Rewriting target(text, lead);
    write(target, shifts);
    target.finish();
    edits_.clear();
    kept_.clear();
}

}  // namespace velmor
