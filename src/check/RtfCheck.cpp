#include "check/RtfCheck.h"

#include <utility>

#include "check/DiagnosticList.h"
#include "check/TemplateFile.h"

namespace velmor {

namespace {

constexpr std::size_t deepestGroup = 1000;

DiagnosticCode codeOf(RtfFault::Kind kind) noexcept {
    using Kind = RtfFault::Kind;
    const bool isOfGroups = kind == Kind::tooDeep || kind == Kind::neverClosed || kind == Kind::endsEarly;
    return isOfGroups ? DiagnosticCode::damagedGroups : DiagnosticCode::damagedTable;
}

std::u16string messageOf(const RtfFault& fault) {
    switch (fault.kind) {
        case RtfFault::Kind::tooDeep:
            return u"groups nest deeper than 1000 levels";
        case RtfFault::Kind::neverClosed:
            return u"the group that begins here is never closed";
        case RtfFault::Kind::endsEarly:
            return u"this brace ends the document, and text follows";
        case RtfFault::Kind::wrongCells:
            return u"the row has " + decimal(fault.cells) + u" cells, but its definition has " + decimal(fault.columns);
        case RtfFault::Kind::noDefinition:
            return u"the row has no definition";
        case RtfFault::Kind::noRow:
            break;
    }
    return u"no row ends after this cell";
}

}  // namespace

void RtfCheck::open(std::size_t brace, WordMeaning meaning) {
    if (isEnded_) return;
    open_.push_back(brace);
    if (open_.size() > deepestGroup && !std::exchange(isTooDeep_, true)) {
        faults_.push_back({RtfFault::Kind::tooDeep, {brace, brace + 1}});
    }
    if (nested_ == 0 && meaning.word == Word::nesttableprops) {
        nested_ = open_.size();
        nestedDefinition_ = {};
    }
    if (!meaning.is(WordTrait::apartGroup)) return;
    states_.emplace_back();
    states_.back().depth = open_.size();
}

void RtfCheck::close(std::size_t brace) {
    if (isEnded_) return;
    if (nested_ == open_.size()) nested_ = 0;
    if (states_.back().depth == open_.size()) {
        endTables();
        states_.pop_back();
    }
    open_.pop_back();
    isEnded_ = open_.empty();
    if (!isEnded_) return;
    const std::size_t next = source_.find_first_not_of(std::u16string_view(u" \t\r\n\0", 5), brace + 1);
    if (next != source_.npos) faults_.push_back({RtfFault::Kind::endsEarly, {brace, brace + 1}});
}

void RtfCheck::takeWord(const ControlWord& word, Word meaning) {
    if (isEnded_) return;
    TableState& state = states_.back();
    if (nested_ != 0) {
        nestedDefinition_.take(meaning);
        if (meaning == Word::nestrow) endRow(word, state.level.nestedRow(), nestedDefinition_);
        return;
    }
    state.definition.take(meaning);
    const std::optional<Level> level = state.level.take(word, meaning);
    if (meaning == Word::row) endRow(word, 1, state.definition);
    if (meaning != Word::cell && meaning != Word::nestcell) return;
    Cells& cells = state.cells[*level];
    ++cells.count;
    cells.last = {word.begin, word.end};
}

void RtfCheck::endRow(const ControlWord& word, Level level, const RowDefinition& definition) {
    std::map<Level, Cells>& all = states_.back().cells;
    const std::int64_t count = all[level].count;
    all.erase(all.lower_bound(level), all.end());
    if (count == definition.columns || count == 0) return;
    const auto kind = definition.isThere ? RtfFault::Kind::wrongCells : RtfFault::Kind::noDefinition;
    faults_.push_back({kind, {word.begin, word.end}, count, definition.columns});
}

// Cells without a row.
void RtfCheck::endTables() {
    for (const auto& [level, cells] : states_.back().cells) faults_.push_back({RtfFault::Kind::noRow, cells.last});
}

std::vector<RtfFault> RtfCheck::faults() {
    endTables();
    if (!open_.empty()) faults_.push_back({RtfFault::Kind::neverClosed, {open_.back(), open_.back() + 1}});
    return std::move(faults_);
}

void reportRtf(const TemplateFile& file, DiagnosticList& found) {
    for (const RtfFault& fault : file.faults()) {
        found.addInSource(codeOf(fault.kind), file, fault.range, messageOf(fault));
    }
}

}  // namespace velmor
