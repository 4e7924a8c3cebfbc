#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TableCollection.h"

namespace velmor {

inline constexpr std::size_t noDocument = std::u16string_view::npos;

// The begin of the host document: the first "{\rtf", in any letter case, that is not escaped. Text may precede
// it, and a version may be absent.
std::size_t findHostDocument(std::u16string_view text) noexcept;

// The begin of the host's header, after its opening word and version.
std::size_t hostHeaderStart(std::u16string_view text, std::size_t host) noexcept;

// The groups of a text that no document follows its host's opening; nothing when one does.
std::optional<GroupSet> groupsOfSingleDocument(std::u16string_view text, bool tolerant);

namespace Module1 {

// Lifts every document after the host's opening, and every document in a lifted one, into poTables, and leaves
// placeholders. Documents with a header or footer marker only lose their wrapping instead. A document without
// its closing brace stays, and so does everything after its opening. Notes the groups of each text.
//
// True when a document follows the host's opening. One pass, no recursion, and no more memory than the lifted
// documents (twice as much for those that hold others); without memory an exception leaves the text unchanged.
bool ExtractEmbeddedDocuments(std::u16string& psText, TableCollection& poTables, const CleanOptions& options);

}  // namespace Module1
}  // namespace velmor
