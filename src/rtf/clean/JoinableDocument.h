#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "rtf/clean/JoinDocuments.h"
#include "rtf/clean/JoinedFacts.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// A document that is to be joined, with what joining needs to know of it. To make one is most of the work of adding it,
// and any thread may do that.
class JoinableDocument {
public:
    // Throws Error 5 for a text without RTF document or without its closing brace; `name` is for messages. Linear.
    JoinableDocument(std::u16string text, bool tolerant, const std::string& name) : text_(std::move(text)) {
        requireDocument(text_, true, name);
        range_ = documentIn(text_, name);
        facts_ = JoinedFacts::of(document(), tolerant);
        countOutside_ = velmor::countOutside(text_, range_);
    }

    // With what is around the document.
    const std::u16string& text() const noexcept { return text_; }
    std::u16string takeText() noexcept { return std::move(text_); }
    TextRange range() const noexcept { return range_; }
    std::u16string_view document() const noexcept { return range_.of(text_); }
    // As a document that is not the first one.
    const JoinedFacts& facts() const noexcept { return facts_; }
    // The characters around the document, white space and NULs aside.
    std::size_t countOutside() const noexcept { return countOutside_; }

private:
    std::u16string text_;
    TextRange range_;
    JoinedFacts facts_;
    std::size_t countOutside_;
};

}  // namespace velmor
