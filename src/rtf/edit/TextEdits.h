#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Collects changes of a text by its places as it is (0-based), then makes them all in one pass: in
// place as far as the text's capacity goes, else into a new text of the right size. Changes are added in any order;
// ascending ones cost least. At one place what is inserted comes first, in the order of adding. A change that begins
// in what another one replaces is lost in it.
class TextEdits {
public:
    bool empty() const noexcept { return edits_.empty(); }
    std::size_t size() const noexcept { return edits_.size(); }
    // Forgets those that were added since there were so many.
    void truncate(std::size_t size) { edits_.erase(edits_.begin() + static_cast<std::ptrdiff_t>(size), edits_.end()); }

    // Takes [begin, end) out. Words stay apart: where the control word in front would take in what
    // follows, one blank is left.
    void cut(std::size_t begin, std::size_t end) { add({begin, end, {}, Seam::apart}); }
    // As cut, but what follows may be taken in: it ended a word that goes as well.
    void cutJoining(std::size_t begin, std::size_t end) { add({begin, end, {}, Seam::joined}); }
    // `text` must outlive apply() and be no part of the text that changes.
    void replace(std::size_t begin, std::size_t end, std::u16string_view text) { add({begin, end, text, Seam::plain}); }
    void insert(std::size_t at, std::u16string_view text) { replace(at, at, text); }
    // Keeps a text until apply() has used the edits up.
    std::u16string_view keep(std::u16string text) { return kept_.emplace_back(std::move(text)); }
    void replaceVal(std::size_t begin, std::size_t end, std::u16string text) {
        replace(begin, end, keep(std::move(text)));
    }
    // As replaceVal, and the last word of `text` stays apart from what follows.
    void replaceApartVal(std::size_t begin, std::size_t end, std::u16string text) {
        add({begin, end, keep(std::move(text)), Seam::apart});
    }
    // Inserts a copy of a part of the text that changes, as it is before all changes.
    void insertPart(std::size_t at, std::u16string_view text, TextRange part) {
        copiesParts_ = true;
        insert(at, text.substr(part.begin, part.end - part.begin));
    }

    // A place whose change is known only later: does nothing until it is filled. A cut may then take
    // in what follows, up to the place of the next edit.
    std::size_t reserve(std::size_t at) {
        insert(at, {});
        return edits_.size() - 1;
    }
    void fill(std::size_t place, std::u16string_view text) { edits_[place].put(text, Seam::plain); }
    void fillApart(std::size_t place, std::u16string_view text) { edits_[place].put(text, Seam::apart); }
    void fillApartVal(std::size_t place, std::u16string text) { fillApart(place, keep(std::move(text))); }
    void fillCut(std::size_t place, std::size_t end) {
        edits_[place].put({}, Seam::apart);
        edits_[place].end = static_cast<std::uint32_t>(end);
    }

    // A place becomes a replacement of another range.
    void refillVal(std::size_t place, std::size_t begin, std::size_t end, std::u16string text) {
        edits_[place] = {begin, end, keep(std::move(text)), Seam::plain};
    }

    // The edits are used up. Raises std::length_error when the text would grow beyond the limit of a
    // string builder, or std::bad_alloc; the text is then as it was.
    void apply(std::u16string& text);

private:
    // Where the text goes on: whether a blank keeps it from the word in front. A plain seam without
    // text leaves that to the edit before.
    enum class Seam : std::uint8_t { plain, apart, joined };

    struct Edit {
        Edit(std::size_t from, std::size_t to, std::u16string_view put, Seam goingOn)
            : begin(static_cast<std::uint32_t>(from)),
              end(static_cast<std::uint32_t>(to)),
              text(put.data()),
              length(static_cast<std::uint32_t>(put.size())),
              seam(goingOn) {}

        void put(std::u16string_view changed, Seam goingOn) noexcept {
            text = changed.data();
            length = static_cast<std::uint32_t>(changed.size());
            seam = goingOn;
        }

        std::uint32_t begin;
        std::uint32_t end;
        const char16_t* text;
        std::uint32_t length;
        Seam seam;
    };

    void add(Edit edit) { edits_.push_back(edit); }
    void order();
    struct Growth {
        std::size_t length = 0;  // of the changed text, at most
        std::size_t lead = 0;    // how far writing may come to be ahead of reading
    };

    Growth growth(std::size_t length) const noexcept;
    template <typename Target>
    void write(std::u16string_view from, Target& target) const;

    std::vector<Edit> edits_;
    std::deque<std::u16string> kept_;
    bool copiesParts_ = false;
};

// True when a text that ends so, and goes on with `next`, would have `next` as a part of its last
// control word, or as the blank that ends it.
bool wordTakesIn(std::u16string_view text, char16_t next) noexcept;

}  // namespace velmor
