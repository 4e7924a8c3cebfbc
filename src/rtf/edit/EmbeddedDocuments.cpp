#include "rtf/edit/EmbeddedDocuments.h"

#include <cstdint>
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
    while (at < text.size() && isDecimalDigit(text[at])) ++at;
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

// Finds the documents of a text in the order in which they begin.
class DocumentFinder {
public:
    struct Found {
        std::uint32_t begin;
        std::uint32_t end;
        std::uint32_t parent;
        bool carrier;
        GroupSet groups;
    };

    static constexpr std::uint32_t host = 0xffffffff;

    DocumentFinder(std::u16string_view text, std::size_t hostAt, bool tolerant)
        : text_(text), hostAt_(hostAt), tolerant_(tolerant) {}

    void run();

    const std::vector<Found>& found() const noexcept { return found_; }
    GroupSet hostGroups() const noexcept { return hostGroups_; }
    bool sawDocument() const noexcept { return sawDocument_; }

    // Forgets the first document without an end, and all after its opening.
    void dropUnclosed();

private:
    struct Open {
        std::uint32_t document;
        std::int64_t depth;
    };

    void closeBrace(std::size_t index);
    std::size_t openDocument(std::size_t index);
    GroupSet& groups() noexcept { return open_.empty() ? hostGroups_ : found_[open_.back().document].groups; }

    std::u16string_view text_;
    std::size_t hostAt_;
    bool tolerant_;
    std::vector<Found> found_;
    std::vector<Open> open_;
    std::int64_t depth_ = 0;
    GroupSet hostGroups_;
    bool sawDocument_ = false;
};

void DocumentFinder::run() {
    RtfReader reader(text_, 0, text_.size(), tolerant_);
    while (reader.nextAnyBrace()) {
        const std::size_t index = reader.position();
        if (reader.closes()) {
            if (reader.counts()) closeBrace(index);
        } else if (index > hostAt_ && documentStandsAt(text_, index)) {
            reader.goOnAt(openDocument(index));
        } else {
            // Escaped groups are noted too: the set may hold more groups than the text, never fewer.
            groups().note(text_, index);
            depth_ += reader.counts();
        }
    }
}

// Returns the index to continue at.
std::size_t DocumentFinder::openDocument(std::size_t index) {
    const auto parent = open_.empty() ? host : open_.back().document;
    const auto begin = static_cast<std::uint32_t>(index);
    if (carrierStandsAt(text_, index)) {
        groups().note(text_, index + carrierOpening);
        const auto end = static_cast<std::uint32_t>(index + carrierLength);
        found_.push_back({begin, end, parent, true, {}});
        return end;
    }
    sawDocument_ = true;
    open_.push_back({static_cast<std::uint32_t>(found_.size()), depth_++});
    found_.push_back({begin, 0, parent, false, {}});
    return index + 1;
}

void DocumentFinder::closeBrace(std::size_t index) {
    --depth_;
    if (open_.empty() || open_.back().depth != depth_) return;
    found_[open_.back().document].end = static_cast<std::uint32_t>(index + 1);
    open_.pop_back();
}

void DocumentFinder::dropUnclosed() {
    if (open_.empty()) return;
    const std::uint32_t first = open_.front().document;
    for (std::size_t i = first; i < found_.size(); ++i) hostGroups_.add(found_[i].groups);
    found_.erase(found_.begin() + first, found_.end());
    open_.clear();
}

// Builds the lifted documents, each from its own parts of the text, and the edits of the host.
class Lifting {
public:
    Lifting(std::u16string_view text, const std::vector<DocumentFinder::Found>& found, TableCollection& tables)
        : text_(text), found_(found), tables_(tables) {}

    void run();
    TextEdits& hostEdits() noexcept { return hostEdits_; }

private:
    struct Part {
        std::uint32_t document = DocumentFinder::host;  // index in found
        std::size_t number = 0;                         // index in the collection
        std::size_t from = 0;                           // the text before it is copied
    };

    void reserve();
    void lift(std::uint32_t index);
    void unwrap(const DocumentFinder::Found& carrier);
    void copyUpTo(std::size_t end, std::size_t next);
    void finish();

    std::u16string_view text_;
    const std::vector<DocumentFinder::Found>& found_;
    TableCollection& tables_;
    TextEdits hostEdits_;
    std::vector<Part> open_;
    std::size_t lifted_ = 0;
};

void Lifting::run() {
    reserve();
    for (std::uint32_t i = 0; i < found_.size(); ++i) {
        while (!open_.empty() && open_.back().document != found_[i].parent) finish();
        found_[i].carrier ? unwrap(found_[i]) : lift(i);
    }
    while (!open_.empty()) finish();
}

// Makes the documents, each with the capacity that it needs: its length without the documents in it.
void Lifting::reserve() {
    std::vector<std::size_t> lengths(found_.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i < found_.size(); ++i) {
        if (found_[i].carrier) continue;
        const std::size_t length = found_[i].end - found_[i].begin;
        lengths[i] += length;
        if (found_[i].parent != DocumentFinder::host) {
            lengths[found_[i].parent] -= length;
            lengths[found_[i].parent] += tables_.placeholder(count).size();
        }
        ++count;
    }
    for (std::size_t i = 0; i < found_.size(); ++i) {
        if (found_[i].carrier) continue;
        TableCollection::Document& document = tables_.documents().emplace_back();
        document.groups = found_[i].groups;
        document.text.reserve(lengths[i]);
    }
}

void Lifting::lift(std::uint32_t index) {
    const DocumentFinder::Found& document = found_[index];
    const std::size_t number = lifted_++;
    const std::u16string placeholder = tables_.placeholder(number);
    if (open_.empty()) {
        hostEdits_.replaceVal(document.begin, document.end, placeholder);
    } else {
        copyUpTo(document.begin, document.end);
        tables_.documents()[open_.back().number].text += placeholder;
    }
    open_.push_back({index, number, document.begin});
}

void Lifting::unwrap(const DocumentFinder::Found& carrier) {
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
void Lifting::copyUpTo(std::size_t end, std::size_t next) {
    Part& part = open_.back();
    std::u16string& text = tables_.documents()[part.number].text;
    const bool joins = part.from < end && !text.empty() && wordTakesIn(text, text_[part.from]);
    if (joins) text += u' ';
    text.append(text_, part.from, end - part.from);
    part.from = next;
}

void Lifting::finish() {
    const std::size_t end = found_[open_.back().document].end;
    copyUpTo(end, end);
    open_.pop_back();
}

}  // namespace

bool Module1::ExtractEmbeddedDocuments(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    const std::size_t host = findHostDocument(psText);
    if (host == noDocument) return false;
    DocumentFinder finder(psText, host, options.tolerant);
    finder.run();
    finder.dropUnclosed();
    Lifting lifting(psText, finder.found(), poTables);
    lifting.run();
    lifting.hostEdits().apply(psText);
    poTables.hostGroups() = finder.hostGroups();
    return finder.sawDocument();
}

}  // namespace velmor
