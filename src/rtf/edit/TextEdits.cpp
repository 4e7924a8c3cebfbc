#include "rtf/edit/TextEdits.h"

#include <algorithm>
#include <stdexcept>

#include "rtf/read/RtfReader.h"
#include "text/privStrCat.h"

namespace velmor {
namespace {

using Traits = std::char_traits<char16_t>;

}  // namespace

bool wordTakesIn(std::u16string_view text, char16_t next) noexcept {
    if (!isLetter(next) && !isDecimalDigit(next) && next != u'-' && next != u' ') return false;
    // No word is longer; reading further back would be quadratic in a text of letters.
    constexpr std::size_t longestWord = 256;
    const std::size_t first = text.size() - std::min(text.size(), longestWord);
    std::size_t at = text.size();
    while (at > first && isDecimalDigit(text[at - 1])) --at;
    if (at > first && text[at - 1] == u'-') --at;
    const bool hasNumber = at != text.size();
    std::size_t letters = at;
    while (letters > first && isLetter(text[letters - 1])) --letters;
    const bool isWord = letters != at && letters > first && text[letters - 1] == u'\\' && !isEscaped(text, letters - 1);
    return isWord && (next == u' ' || isDecimalDigit(next) || !hasNumber);
}

void makeRoomBefore(std::u16string& text, std::size_t length) {
    if (length == 0) return;
    const std::size_t old = text.size();
    if (length <= text.capacity() - old) {
        text.resize(old + length);
        Traits::move(text.data() + length, text.data(), old);
    } else {
        std::u16string moved;
        moved.reserve(old + length);
        text = std::move(moved.append(length, u' ').append(text));
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

// Every cut may need a blank between words.
TextEdits::Growth TextEdits::growth(std::size_t length) const noexcept {
    Growth result;
    std::size_t removed = 0, added = 0;
    for (const Edit& edit : edits_) {
        added += edit.length + (edit.seam == Seam::apart);
        removed += edit.end - edit.begin;
        if (added > removed) result.lead = std::max(result.lead, added - removed);
    }
    result.length = length - removed + added;
    return result;
}

// Writes the changed text, and returns its length. The target may precede `from` in the same memory.
std::size_t TextEdits::write(std::u16string_view from, char16_t* target) const {
    std::size_t written = 0;
    const auto put = [&](std::u16string_view text) {
        Traits::move(target + written, text.data(), text.size());
        written += text.size();
    };
    std::size_t at = 0;
    bool apart = false;
    const auto writeRest = [&](std::size_t end) {
        if (at == end) return;
        if (apart && wordTakesIn({target, written}, from[at])) put(u" ");
        apart = false;
        put(from.substr(at, end - at));
    };
    for (const Edit& edit : edits_) {
        writeRest(edit.begin);
        if (edit.length != 0) put({edit.text, edit.length});
        if (edit.seam != Seam::plain || edit.length != 0) apart = edit.seam == Seam::apart;
        at = edit.end;
    }
    writeRest(from.size());
    return written;
}

void TextEdits::apply(std::u16string& text) {
    if (edits_.empty()) return;
    order();
    const Growth growth = this->growth(text.size());
    if (growth.length > privStrCat::maximumLength) throw std::length_error("TextEdits");
    if (copiesParts_) {
        std::u16string changed(growth.length, u' ');
        changed.resize(write(text, changed.data()));
        text = std::move(changed);
    } else {
        const std::size_t length = text.size();
        makeRoomBefore(text, growth.lead);
        text.resize(write({text.data() + growth.lead, length}, text.data()));
    }
    edits_.clear();
    kept_.clear();
    copiesParts_ = false;
}

}  // namespace velmor
