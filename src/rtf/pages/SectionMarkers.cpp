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

// The changes of the exact rules, by their places in the unchanged text.
class SectionReader {
public:
    explicit SectionReader(std::u16string_view text) : text_(text), groups_(text, 0, text.size(), {}, false) {}

    TextEdits edits();

private:
    void describe(const std::u16string& words);
    void writeDescriptions();

    std::u16string_view text_;
    SectionGroups groups_;
    TextEdits edits_;
    std::vector<std::size_t> pages_;  // not yet made section breaks
    std::size_t section_ = nowhere;   // after the last "\sectd"
    std::u16string descriptions_;     // of that one
};

TextEdits SectionReader::edits() {
    const std::size_t last = findTextReverse(text_, SectionGroups::opening, Comparison::binary);
    if (last == nowhere) return {};
    RtfReader reader(text_, 0, std::min(text_.size(), last + SectionGroups::opening.size()));
    while (reader.next()) {
        const std::size_t index = reader.position();
        if (reader.isWord(u"\\page")) {
            pages_.push_back(index);
        } else if (reader.isWord(u"\\sectd")) {
            writeDescriptions();
            section_ = index + 6;
        } else if (standsAt(text_, index, SectionGroups::opening)) {
            if (!groups_.read(index)) break;
            const std::size_t name = index + SectionGroups::nameOffset;
            edits_.replace(name, name + SectionGroups::doneName.size(), SectionGroups::doneName);
            describe(groups_.page().words());
        }
    }
    writeDescriptions();
    return std::move(edits_);
}

// If several groups describe one "\\sectd", the words of the later ones precede.
void SectionReader::describe(const std::u16string& words) {
    if (!pages_.empty()) {
        edits_.replaceVal(pages_.back(), pages_.back() + 5, u"\\sect" + words);
        pages_.pop_back();
    } else if (section_ != nowhere) {
        descriptions_.insert(0, words);
    }
}

void SectionReader::writeDescriptions() {
    if (!descriptions_.empty()) edits_.replaceVal(section_, section_, std::exchange(descriptions_, {}));
}

}  // namespace

void Module1::ApplySectionMarkers(std::u16string& psText, const CleanOptions& options) {
    if (options.tolerant) {
        SectionDescriptions(psText, options.mergeMode).edits().apply(psText);
    } else {
        SectionReader(psText).edits().apply(psText);
    }
}

}  // namespace velmor
