#pragma once

#include <string>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TableCollection.h"
#include "rtf/merge/MergeTables.h"

namespace velmor::test {

// The text with the tables of all its documents merged, and every document in its place again.
inline std::u16string merged(std::u16string text, const CleanOptions& options) {
    TableCollection tables(u'\uE000');
    Module1::ExtractEmbeddedDocuments(text, tables, options);
    Module1::MergeDocumentTables(text, tables, options);
    tables.expand(text);
    return text;
}

inline std::u16string merged(std::u16string text, bool tolerant = false) {
    CleanOptions options;
    options.tolerant = tolerant;
    return merged(std::move(text), options);
}

inline std::string narrow(std::u16string_view text) {
    return {text.begin(), text.end()};
}

}  // namespace velmor::test
