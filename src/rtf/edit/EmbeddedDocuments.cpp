#include "rtf/edit/EmbeddedDocuments.h"

#include <cstdint>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {

std::size_t findHostDocument(std::u16string_view text) noexcept {
    return RtfSearch(text).find(u"{\\rtf", 0, Comparison::text);
}

std::size_t hostHeaderStart(std::u16string_view text, std::size_t host) noexcept {
    std::size_t at = host + 5;
    while (at < text.size() && isDigit(text[at])) ++at;
    return at;
}

namespace {

// "{\rtf1", a marker group, "}": a document with a marker only.
constexpr std::u16string_view carriers[] = {u"{\\rtf1{\\*\\korvanenewheader}}", u"{\\rtf1{\\*\\korvanenewfooter}}"};
constexpr std::size_t carrierLength = carriers[0].size();
constexpr std::size_t carrierOpening = 6;

// Lifts the documents after the host's opening, each from its own parts of the text, and collects the edits of the
// host.
class Lifting {
public:
    Lifting(std::u16string_view text, std::size_t hostAt, bool tolerant, TableCollection& tables)
        : text_(text), hostAt_(hostAt), reader_(text, 0, text.size(), tolerant), tables_(tables) {
        while (reader_.nextAnyBrace()) takeBrace(reader_.position());
        if (open_.empty()) return;
        // Forgets the first document without an end, and all after its opening.
        auto& documents = tables_.documents();
        const auto first = documents.begin() + static_cast<std::ptrdiff_t>(open_.front().document);
        for (auto each = first; each != documents.end(); ++each) tables_.hostGroups().add(each->groups);
        documents.erase(first, documents.end());
    }

    TextEdits& hostEdits() noexcept { return hostEdits_; }
    bool sawDocument() const noexcept { return sawDocument_; }

private:
    // A document whose closing brace has not been read.
    struct Open {
        std::size_t document;  // index in the collection
        std::size_t begin;
        std::int64_t depth;
        std::size_t from;  // the text before it is copied
    };

    void takeBrace(std::size_t index) {
        if (reader_.closes()) {
            if (reader_.counts()) closeBrace(index + 1);
        } else if (index > hostAt_ && documentStandsAt(text_, index)) {
            const bool isCarrier = standsAt(text_, index, carriers[0]) || standsAt(text_, index, carriers[1]);
            isCarrier ? unwrap(index) : lift(index);
        } else {
            // Escaped groups are noted too: the set may hold more groups than the text, never fewer.
            groups().note(text_, index);
            depth_ += reader_.counts();
        }
    }

    void lift(std::size_t index) {
        const std::size_t document = tables_.documents().size();
        if (!open_.empty()) {
            copyUpTo(index);
            textOf(open_.back()) += tables_.placeholder(document);
        }
        tables_.documents().emplace_back();
        open_.push_back({document, index, depth_++, index});
        sawDocument_ = true;
    }

    void closeBrace(std::size_t end) {
        --depth_;
        if (open_.empty() || open_.back().depth != depth_) return;
        copyUpTo(end);
        const Open closed = open_.back();
        open_.pop_back();
        if (open_.empty()) {
            hostEdits_.replaceVal(closed.begin, end, tables_.placeholder(closed.document));
        } else {
            open_.back().from = end;
        }
    }

    void unwrap(std::size_t index) {
        const std::size_t inner = index + carrierOpening, end = index + carrierLength;
        groups().note(text_, inner);
        reader_.goOnAt(end);
        for (const auto& [from, to] : {TextRange{index, inner}, TextRange{end - 1, end}}) {
            if (open_.empty()) {
                hostEdits_.cut(from, to);
            } else {
                copyUpTo(from);
                open_.back().from = to;
            }
        }
    }

    // Gives the innermost open document its text up to `end`.
    void copyUpTo(std::size_t end) { textOf(open_.back()).append(text_, open_.back().from, end - open_.back().from); }

    std::u16string& textOf(const Open& open) { return tables_.documents()[open.document].text; }
    GroupSet& groups() {
        return open_.empty() ? tables_.hostGroups() : tables_.documents()[open_.back().document].groups;
    }

    std::u16string_view text_;
    std::size_t hostAt_;
    RtfReader reader_;
    TableCollection& tables_;
    TextEdits hostEdits_;
    std::vector<Open> open_;
    std::int64_t depth_ = 0;
    bool sawDocument_ = false;
};

}  // namespace

std::optional<GroupSet> groupsOfSingleDocument(std::u16string_view text, bool tolerant) {
    TableCollection tables(u'\0');
    Lifting lifting(text, findHostDocument(text), tolerant, tables);
    if (lifting.sawDocument() || !lifting.hostEdits().empty()) return std::nullopt;
    return tables.hostGroups();
}

bool Module1::ExtractEmbeddedDocuments(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    const std::size_t hostAt = findHostDocument(psText);
    if (hostAt == noDocument) return false;
    Lifting lifting(psText, hostAt, options.tolerant, poTables);
    lifting.hostEdits().apply(psText);
    return lifting.sawDocument();
}

}  // namespace velmor
