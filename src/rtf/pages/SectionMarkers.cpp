#include "rtf/pages/SectionMarkers.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/SectionDescriptions.h"
#include "rtf/pages/SectionGroups.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::size_t nowhere = std::u16string_view::npos;

// What the stage does by the plain rules, collected by the places of the text as it is.
class SectionReader {
public:
    explicit SectionReader(std::u16string_view text) : text_(text), groups_(text, 0, text.size(), {}, false) {}

    void read();
    TextEdits edits();

private:
    struct Change {
        std::size_t begin;
        std::size_t end;
        std::u16string text;
    };

    void place(const PageSetup& page);

    std::u16string_view text_;
    SectionGroups groups_;
    std::vector<std::size_t> pages_;  // not yet made section breaks
    std::size_t section_ = nowhere;   // the last "\sectd"
    std::vector<Change> changes_;
};

void SectionReader::read() {
    const std::size_t last = findTextReverse(text_, SectionGroups::opening, Comparison::binary);
    if (last == nowhere) return;
    RtfReader scanner(text_, 0, std::min(text_.size(), last + SectionGroups::opening.size()));
    while (scanner.next()) {
        const std::size_t index = scanner.position();
        if (wordStandsAt(text_, index, u"\\page")) {
            pages_.push_back(index);
        } else if (wordStandsAt(text_, index, u"\\sectd")) {
            section_ = index;
        } else if (standsAt(text_, index, SectionGroups::opening)) {
            if (!groups_.read(index)) return;
            const std::size_t name = index + SectionGroups::nameOffset;
            const std::u16string done(SectionGroups::doneName);
            changes_.push_back({name, name + done.size(), done});
            place(groups_.page());
        }
    }
}

void SectionReader::place(const PageSetup& page) {
    if (!pages_.empty()) {
        const std::size_t at = pages_.back();
        pages_.pop_back();
        changes_.push_back({at, at + 5, u"\\sect" + page.words()});
    } else if (section_ != nowhere) {
        changes_.push_back({section_ + 6, section_ + 6, page.words()});
    }
}

// Where several groups describe one "\sectd", the words of the later ones precede.
TextEdits SectionReader::edits() {
    std::reverse(changes_.begin(), changes_.end());
    std::stable_sort(changes_.begin(), changes_.end(),
                     [](const Change& left, const Change& right) { return left.begin < right.begin; });
    TextEdits edits;
    for (Change& change : changes_) edits.replaceVal(change.begin, change.end, std::move(change.text));
    return edits;
}

}  // namespace

void Module1::ApplySectionMarkers(std::u16string& psText, const CleanOptions& options) {
    if (options.tolerant) {
        SectionDescriptions(psText, options.mergeMode).edits().apply(psText);
        return;
    }
    SectionReader reader(psText);
    reader.read();
    reader.edits().apply(psText);
}

}  // namespace velmor
