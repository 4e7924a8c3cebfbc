#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

// Finds where the parts of entries end in the text form. Positions are 0-based, and each member must
// be called with ascending ones; all calls together then take time linear in the text, however many
// openings have no end. The text must end with the delimiter.
class EntryScanner {
public:
    static constexpr std::size_t npos = std::u16string_view::npos;

    // Both must outlive the scanner.
    EntryScanner(std::u16string_view text, std::u16string_view delimiter);

    std::u16string_view text() const noexcept { return text_; }
    // The first "=" or delimiter; npos if the text has neither.
    std::size_t nameEnd(std::size_t from) const noexcept;
    std::size_t delimiter(std::size_t from) const noexcept;
    // The next quote, and the next "#", that a delimiter follows directly.
    std::size_t closingQuote(std::size_t from);
    std::size_t closingHash(std::size_t from);

    // The end of an unquoted value in a tag: the next delimiter that neither follows a drive's letter
    // nor is part of a complete nested tag.
    std::size_t tagValueEnd(std::size_t from);

private:
    // The last answer holds for every start up to the position that it found.
    struct Closing {
        std::u16string sought;
        std::size_t found = 0;
    };
    struct NestedTag {
        std::size_t begin;
        std::size_t end;  // after the closing marker; npos for a tag that is never closed
    };

    bool delimiterAt(std::size_t position) const noexcept;
    std::size_t next(Closing& closing, std::size_t from) const noexcept;
    std::size_t nextPair(char16_t mark, std::size_t from) const noexcept;
    std::size_t afterDrive(std::size_t from) const noexcept;
    void findNestedTags();

    std::u16string_view text_;
    std::u16string_view delimiter_;
    Closing quote_;
    Closing hash_;
    std::vector<NestedTag> tags_;  // by begin
    std::size_t nextTag_ = 0;
    bool tagsFound_ = false;
};

}  // namespace velmor
