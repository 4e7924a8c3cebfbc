#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TableCollection.h"

namespace velmor {

// What merging one document needs to know of all documents of a run. Tolerant merging only; exact merging needs none
// of it, and note() may be left out.
struct LiftedDocuments {
    // Takes a text of the run before anything is merged; those of lifted documents are without the documents in them.
    void note(std::u16string_view text, GroupSet groups);
    // The facts of further texts.
    void add(const LiftedDocuments& other) noexcept;

    bool exist = false;  // beside the host
    bool bringTableStyles = false;
    std::int32_t ownLists = 0;  // paragraphs that describe their lists themselves
};

// Merges the font, colour, list and style tables of documents into shared ones, one document after the other. The
// numbers that a document gets depend on the documents before it alone.
class DocumentMerge {
public:
    static std::unique_ptr<DocumentMerge> begin(const CleanOptions& options, const LiftedDocuments& lifted);
    virtual ~DocumentMerge() = default;

    // The host comes first. It receives the placeholders of the shared tables.
    virtual void mergeHost(std::u16string& text, TableCollection& tables) = 0;
    // The document loses its tables, and its references are renumbered.
    virtual void mergeLifted(TableCollection::Document& document) = 0;
    // The shared tables of the documents so far.
    virtual void store(TableCollection& tables) const = 0;
    // Whether a further document can add a font with this number.
    virtual bool canAddFont(std::int32_t number) const noexcept = 0;
};

namespace Module1 {

// Merges the tables of the host and of every lifted document, in this order. Linear in the documents. Raises only when
// memory runs out.
void MergeDocumentTables(std::u16string& psText, TableCollection& poTables, const CleanOptions& options);

}  // namespace Module1
}  // namespace velmor
