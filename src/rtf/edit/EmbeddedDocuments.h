#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TableCollection.h"

namespace velmor {

inline constexpr std::size_t noDocument = std::u16string_view::npos;

// Where the host document begins: the first "{\rtf", in any letter case, that is not escaped. It
// need not stand at the start of the text, nor have a version.
std::size_t findHostDocument(std::u16string_view text) noexcept;

// The index behind the host's opening word and its version, where its header begins.
std::size_t hostHeaderStart(std::u16string_view text, std::size_t host) noexcept;

namespace Module1 {

// Lifts every document behind the host's opening out of the text, and every document inside those,
// into poTables, and leaves placeholders. Documents that only carry a header or footer marker lose
// their wrapping instead. A document without its closing brace stays, and so does all behind its
// opening. Notes the groups of each text on the way.
//
// True when there was a document behind the host's opening. One pass, no recursion, and no more
// memory than the documents lifted; when it runs out, an exception leaves the text as it was.
bool ExtractEmbeddedDocuments(std::u16string& psText, TableCollection& poTables, const CleanOptions& options);

}  // namespace Module1
}  // namespace velmor
