#include "check/RtfCheck.h"

#include <vector>

#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"

namespace velmor {

namespace {

class RtfCheck {
public:
    RtfCheck(const TemplateFile& file, DiagnosticList& found) : file_(file), found_(found) {}

    void run();

private:
    void takeBrace(const RtfReader& reader);
    void takeWord(const ControlWord& word);
    void endRow(const ControlWord& word);

    const TemplateFile& file_;
    DiagnosticList& found_;
    std::vector<std::size_t> open_;  // braces
    bool isEnded_ = false;
    std::size_t nested_ = 0;  // the depth of the group of a nested row's definition; 0 outside one
    std::int64_t defined_ = 0;
    std::int64_t cells_ = 0;
    bool hasDefinition_ = false;
};

void RtfCheck::run() {
    RtfReader reader(file_.source(), 0, file_.source().size(), true);
    while (reader.next() && !isEnded_) {
        if (reader.opens() || reader.closes()) {
            takeBrace(reader);
        } else {
            takeWord(reader.word());
        }
    }
    if (open_.empty()) return;
    found_.addInSource(DiagnosticCode::damagedGroups, file_, {open_.back(), open_.back() + 1},
                       u"the group that begins here is never closed");
}

void RtfCheck::takeBrace(const RtfReader& reader) {
    if (reader.opens()) {
        open_.push_back(reader.position());
        if (nested_ == 0 && readOpening(file_.source(), reader.position()).letters == u"nesttableprops") {
            nested_ = open_.size();
        }
        return;
    }
    if (nested_ == open_.size()) nested_ = 0;
    open_.pop_back();
    isEnded_ = open_.empty();
    if (!isEnded_) return;
    const std::size_t next =
        file_.source().find_first_not_of(std::u16string_view(u" \t\r\n\0", 5), reader.position() + 1);
    if (next == file_.source().npos) return;
    found_.addInSource(DiagnosticCode::damagedGroups, file_, {reader.position(), reader.position() + 1},
                       u"this brace ends the document, and text follows");
}

void RtfCheck::takeWord(const ControlWord& word) {
    static const WordSet set({}, {Word::trowd, Word::cellx, Word::cell, Word::row});
    if (nested_ != 0 || !set.mayHold(file_.source(), word.begin)) return;
    switch (meaningOf(word.letters).word) {
        case Word::trowd:
            defined_ = 0;
            hasDefinition_ = true;
            break;
        case Word::cellx:
            ++defined_;
            break;
        case Word::cell:
            ++cells_;
            break;
        case Word::row:
            endRow(word);
            break;
        default:
            break;
    }
}

void RtfCheck::endRow(const ControlWord& word) {
    if (cells_ > defined_) {
        const std::u16string what =
            hasDefinition_ ? u"the row has " + decimal(cells_) + u" cells, but its definition has " + decimal(defined_)
                           : std::u16string(u"the row has no definition");
        found_.addInSource(DiagnosticCode::damagedTable, file_, {word.begin, word.end}, what);
    }
    cells_ = 0;
}

}  // namespace

void checkRtf(const TemplateFile& file, DiagnosticList& found) {
    if (documentStandsAt(file.source(), 0)) RtfCheck(file, found).run();
}

}  // namespace velmor
