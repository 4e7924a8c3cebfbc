#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "common/PlaceShift.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// A text while it is read and written anew, in its own memory if that is enough. Without memory the constructor raises,
// and the text is unchanged.
class Rewriting {
public:
    // Writing is at most `lead` units ahead of reading.
    Rewriting(std::u16string& text, std::size_t lead);

    std::u16string_view source() const noexcept { return source_; }
    std::u16string_view written() const noexcept {
        return inPlace_ ? std::u16string_view(text_).substr(0, length_) : fresh_;
    }
    void put(std::u16string_view part) {
        if (!inPlace_) {
            fresh_.append(part);
            return;
        }
        std::char_traits<char16_t>::move(text_.data() + length_, part.data(), part.size());
        length_ += part.size();
    }
    // What was written becomes the text.
    void finish();

private:
    std::u16string& text_;
    std::u16string fresh_;
    std::u16string_view source_;
    bool inPlace_;
    std::size_t length_ = 0;  // of what was written in place
};

// Collects changes of a text by their places in the unchanged text (0-based), then makes all of them in one
// pass: in place if the text's capacity is sufficient, else in new memory. Changes are added in any order;
// ascending order costs least. At one place insertions precede replacements, in the order of adding. A change
// that begins in a range which another one replaces is lost.
class TextEdits {
public:
    bool empty() const noexcept { return edits_.empty(); }
    std::size_t size() const noexcept { return edits_.size(); }
    // Forgets the edits after the first `size`.
    void truncate(std::size_t size) { edits_.erase(edits_.begin() + static_cast<std::ptrdiff_t>(size), edits_.end()); }

    // Removes [begin, end). A blank is left where the preceding control word would include the following text.
    void cut(std::size_t begin, std::size_t end) { add({begin, end, {}, Seam::apart}); }
    // As cut, without the blank: the following text ended a word that is removed as well.
    void cutJoining(std::size_t begin, std::size_t end) { add({begin, end, {}, Seam::joined}); }
    // `text` must outlive apply() and not be a part of the changed text.
    void replace(std::size_t begin, std::size_t end, std::u16string_view text) { add({begin, end, text, Seam::plain}); }
    void insert(std::size_t at, std::u16string_view text) { replace(at, at, text); }
    // Keeps a text until apply() has used the edits up.
    std::u16string_view keep(std::u16string text) { return kept_.emplace_back(std::move(text)); }
    void replaceVal(std::size_t begin, std::size_t end, std::u16string text) {
        replace(begin, end, keep(std::move(text)));
    }
    // As replaceVal, and a blank separates the last word of `text` from the following text if necessary.
    void replaceApartVal(std::size_t begin, std::size_t end, std::u16string text) {
        add({begin, end, keep(std::move(text)), Seam::apart});
    }
    // As replaceApartVal, for control words: a blank that follows ends the last of them.
    void replaceByWordsVal(std::size_t begin, std::size_t end, std::u16string words) {
        add({begin, end, keep(std::move(words)), Seam::words});
    }

    // A place whose change is known later: no change until it is filled. A cut may then extend up to the place
    // of the next edit.
    std::size_t reserve(std::size_t at) {
        insert(at, {});
        return edits_.size() - 1;
    }
    void fill(std::size_t place, std::u16string_view text) { refill(place, edits_[place].end, text, Seam::plain); }
    void fillApart(std::size_t place, std::u16string_view text) { refill(place, edits_[place].end, text, Seam::apart); }
    void fillCut(std::size_t place, std::size_t end) { refill(place, end, {}, Seam::apart); }

    // The edits are used up. Raises std::length_error when the text would grow beyond the limit of a string
    // builder, or std::bad_alloc; the text is then unchanged. `shifts` receives where the parts between the edits are.
    void apply(std::u16string& text, PlaceShifts* shifts = nullptr);

private:
    // The continuation of the text: whether a blank separates it from the preceding word; after words, one of the
    // text's own may. A plain seam without text leaves this to the previous edit.
    enum class Seam : std::uint8_t { plain, apart, words, joined };

    struct Edit {
        Edit(std::size_t from, std::size_t to, std::u16string_view put, Seam goingOn)
            : begin(static_cast<std::uint32_t>(from)),
              end(static_cast<std::uint32_t>(to)),
              text(put.data()),
              length(static_cast<std::uint32_t>(put.size())),
              seam(goingOn) {}

        std::uint32_t begin;
        std::uint32_t end;
        const char16_t* text;
        std::uint32_t length;
        Seam seam;
    };

    void add(Edit edit) { edits_.push_back(edit); }
    void refill(std::size_t place, std::size_t end, std::u16string_view text, Seam seam) {
        edits_[place] = {edits_[place].begin, end, text, seam};
    }
    void order();
    void write(Rewriting& target, PlaceShifts* shifts) const;

    std::vector<Edit> edits_;
    std::deque<std::u16string> kept_;
};

// True when `next` after the text would be a part of the text's last control word, or the blank that ends it.
bool wordTakesIn(std::u16string_view text, char16_t next) noexcept;

}  // namespace velmor
