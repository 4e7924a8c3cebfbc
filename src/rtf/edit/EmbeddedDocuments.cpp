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

bool carrierStandsAt(std::u16string_view text, std::size_t index) noexcept {
    return standsAt(text, index, carriers[0]) || standsAt(text, index, carriers[1]);
}

constexpr std::size_t host = static_cast<std::size_t>(-1);

// A document in the text; its parent is the document that holds it.
struct Found {
    std::uint32_t begin;
    std::uint32_t end;
    std::size_t parent;
    bool isCarrier;
    GroupSet groups;
};

// Finds the documents of a text in the order in which they begin.
class DocumentFinder {
public:
    DocumentFinder(std::u16string_view text, std::size_t hostAt, bool tolerant)
        : text_(text), hostAt_(hostAt), reader_(text, 0, text.size(), tolerant) {
        while (reader_.nextAnyBrace()) takeBrace(reader_.position());
        dropUnclosed();
    }

    const std::vector<Found>& found() const noexcept { return found_; }
    GroupSet hostGroups() const noexcept { return hostGroups_; }
    bool sawDocument() const noexcept { return sawDocument_; }

private:
    struct Open {
        std::size_t document;
        std::int64_t depth;
    };

    void takeBrace(std::size_t index) {
        if (reader_.closes()) {
            if (reader_.counts()) closeBrace(index);
        } else if (index > hostAt_ && documentStandsAt(text_, index)) {
            openDocument(index);
        } else {
            // Escaped groups are noted too: the set may hold more groups than the text, never fewer.
            groups().note(text_, index);
            depth_ += reader_.counts();
        }
    }

    void openDocument(std::size_t index) {
        const std::size_t parent = open_.empty() ? host : open_.back().document;
        const bool isCarrier = carrierStandsAt(text_, index);
        const std::size_t end = isCarrier ? index + carrierLength : index;
        if (isCarrier) {
            groups().note(text_, index + carrierOpening);
            reader_.goOnAt(end);
        } else {
            sawDocument_ = true;
            open_.push_back({found_.size(), depth_++});
        }
        found_.push_back({static_cast<std::uint32_t>(index), static_cast<std::uint32_t>(end), parent, isCarrier, {}});
    }

    void closeBrace(std::size_t index) {
        --depth_;
        if (open_.empty() || open_.back().depth != depth_) return;
        found_[open_.back().document].end = static_cast<std::uint32_t>(index + 1);
        open_.pop_back();
    }

    // Forgets the first document without an end, and all after its opening.
    void dropUnclosed() {
        if (open_.empty()) return;
        const std::size_t first = open_.front().document;
        for (std::size_t i = first; i < found_.size(); ++i) hostGroups_.add(found_[i].groups);
        found_.resize(first);
        open_.clear();
    }

    GroupSet& groups() noexcept { return open_.empty() ? hostGroups_ : found_[open_.back().document].groups; }

    std::u16string_view text_;
    std::size_t hostAt_;
    RtfReader reader_;
    std::vector<Found> found_;
    std::vector<Open> open_;
    std::int64_t depth_ = 0;
    GroupSet hostGroups_;
    bool sawDocument_ = false;
};

// Builds the lifted documents, each from its own parts of the text, and the edits of the host.
class Lifting {
public:
    Lifting(std::u16string_view text, const std::vector<Found>& found, TableCollection& tables)
        : text_(text), found_(found), tables_(tables) {
        for (std::size_t i = 0; i < found_.size(); ++i) {
            while (!open_.empty() && open_.back().document != found_[i].parent) finish();
            found_[i].isCarrier ? unwrap(found_[i]) : lift(i);
        }
        while (!open_.empty()) finish();
    }

    TextEdits& hostEdits() noexcept { return hostEdits_; }

private:
    struct Part {
        std::size_t document;  // index in found
        std::u16string& text;
        std::size_t from;  // the text before it is copied
    };

    void lift(std::size_t index) {
        const Found& document = found_[index];
        std::u16string placeholder = tables_.placeholder(tables_.documents().size());
        if (open_.empty()) {
            hostEdits_.replaceVal(document.begin, document.end, std::move(placeholder));
        } else {
            copyUpTo(document.begin, document.end);
            open_.back().text += placeholder;
        }
        TableCollection::Document& lifted = tables_.documents().emplace_back();
        lifted.groups = document.groups;
        open_.push_back({index, lifted.text, document.begin});
    }

    void unwrap(const Found& carrier) {
        const std::size_t inner = carrier.begin + carrierOpening;
        if (open_.empty()) {
            hostEdits_.cut(carrier.begin, inner);
            hostEdits_.cut(carrier.end - 1, carrier.end);
        } else {
            copyUpTo(carrier.begin, inner);
            copyUpTo(carrier.end - 1, carrier.end);
        }
    }

    // Gives the innermost open document its text up to `end`, and continues it at `next`.
    void copyUpTo(std::size_t end, std::size_t next) {
        auto& [document, text, from] = open_.back();
        text.append(text_, from, end - from);
        from = next;
    }

    void finish() {
        const std::size_t end = found_[open_.back().document].end;
        copyUpTo(end, end);
        open_.pop_back();
    }

    std::u16string_view text_;
    const std::vector<Found>& found_;
    TableCollection& tables_;
    TextEdits hostEdits_;
    std::vector<Part> open_;
};

}  // namespace

std::optional<GroupSet> groupsOfSingleDocument(std::u16string_view text, bool tolerant) {
    const DocumentFinder finder(text, findHostDocument(text), tolerant);
    if (finder.sawDocument() || !finder.found().empty()) return std::nullopt;
    return finder.hostGroups();
}

bool Module1::ExtractEmbeddedDocuments(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    const std::size_t hostAt = findHostDocument(psText);
    if (hostAt == noDocument) return false;
    const DocumentFinder finder(psText, hostAt, options.tolerant);
    Lifting(psText, finder.found(), poTables).hostEdits().apply(psText);
    poTables.hostGroups() = finder.hostGroups();
    return finder.sawDocument();
}

}  // namespace velmor
