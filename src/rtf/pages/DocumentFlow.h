#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "rtf/edit/TableCollection.h"
#include "rtf/pages/HeaderSections.h"

namespace velmor {

// Walks the host's text and, at its placeholder, each lifted document, in the order of reading, and reports to
// the sections everything about headers and footers. Escapes and the data of \bin are read as in RTF. One pass,
// no recursion.
class DocumentFlow {
public:
    DocumentFlow(std::u16string_view host, const TableCollection& tables, HeaderSections& sections)
        : host_(host), tables_(tables), sections_(sections) {}

    void run();

private:
    struct Level {
        bool body;
        bool inTable;     // its paragraph is in a table
        bool passedOver;  // inside a header or footer group that is removed from its document
    };

    struct OpenGroup {
        HeaderName name;
        std::size_t begin;
        std::size_t level;
        bool body;
    };

    // A text that is being read, and the place reached.
    struct Reading {
        std::u16string_view text;
        std::size_t at;
        std::uint32_t number;  // as in FlowPlace
        std::size_t base;      // levels around it
        bool inTable;
        std::optional<OpenGroup> group;
    };

    void enter(std::u16string_view text, std::size_t at, std::uint32_t number);
    void leave();
    void step();
    void readPlaceholder();
    void readPlainText();
    bool readMarker();
    void openGroup();
    void classify(std::size_t index);
    bool showsResult(std::size_t index) const;
    void closeGroup();
    void readBackslash();
    void take(const ControlWord& word, std::size_t behind);
    void takeFrame(const ControlWord& word);
    void takeBodyWord(const ControlWord& word, std::size_t behind);

    bool inTable() const noexcept { return rowIsOpen_ || readings_.back().inTable || levels_.back().inTable; }
    FlowPlace place(std::size_t begin, std::size_t end) const noexcept {
        return {readings_.back().number, begin, end, levels_.back().body, inTable(), levels_.size()};
    }
    void content(std::size_t index) {
        if (levels_.back().body && sections_.awaitsContent()) sections_.content(place(index, index));
    }

    std::u16string_view host_;
    const TableCollection& tables_;
    HeaderSections& sections_;
    std::vector<Reading> readings_;
    std::vector<Level> levels_;
    bool rowIsOpen_ = false;
};

}  // namespace velmor
