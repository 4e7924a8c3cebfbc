#include "rtf/SectionMarkers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/NumberText.h"
#include "rtf/PageSetup.h"
#include "rtf/RtfScanner.h"
#include "rtf/TextEdits.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::u16string_view opening = u"{\\*\\korvanesection";
constexpr std::u16string_view doneName = u"korvanecmplete";
constexpr std::size_t nameOffset = 4;
constexpr std::size_t nowhere = std::u16string_view::npos;
constexpr PageSetup::Words groupWords = {u"\\paperheight", u"\\paperwidth", u"\\marginl",
                                         u"\\marginr",     u"\\margint",    u"\\marginb"};

// In en-US, wherever it runs: a template gives the same document on every machine.
std::optional<double> number(std::u16string_view text) {
    const auto parsed = automation::portable::parseNumberText(text);
    if (!parsed) return std::nullopt;
    if (parsed->radixValue) return *parsed->radixValue;
    return automation::portable::doubleOf(*parsed);
}

std::optional<std::int32_t> rounded(std::optional<double> value) {
    if (!value) return std::nullopt;
    const double whole = std::nearbyint(*value);
    const bool fits =
        whole >= std::numeric_limits<std::int32_t>::min() && whole <= std::numeric_limits<std::int32_t>::max();
    return fits ? std::optional(static_cast<std::int32_t>(whole)) : std::nullopt;
}

std::optional<std::int32_t> twips(std::u16string_view text) {
    std::optional<double> value = number(text);
    if (value && *value <= 50) value = *value / 2.54 * 1440;
    return rounded(value);
}

// Finds a word in the groups of a text, whose beginnings and ends ascend. Groups without a brace of
// their own reach into the next ones: what was looked at for one is not looked at again.
class GroupWord {
public:
    explicit GroupWord(std::u16string_view word) noexcept : word_(word) {}

    // Where the word stands first in [begin, end); nowhere when it does not.
    std::size_t find(std::u16string_view text, std::size_t begin, std::size_t end) {
        if (next_ < begin) {
            next_ = begin;
            isFound_ = false;
        }
        if (!isFound_ && next_ < end) {
            RtfScanner scanner(text, next_, end);
            while (!isFound_ && scanner.nextWord()) isFound_ = standsAt(text, scanner.position(), word_);
            next_ = isFound_ ? scanner.position() : end;
        }
        return isFound_ ? next_ : nowhere;
    }

private:
    std::u16string_view word_;
    std::size_t next_ = 0;
    bool isFound_ = false;  // at next_; else no group so far has one in front of it
};

// A value of the page that groups give.
class GroupValue {
public:
    explicit GroupValue(std::u16string_view word) noexcept : word_(word), length_(word.size()) {}

    bool standsIn(std::u16string_view text, std::size_t begin, std::size_t end) {
        const std::size_t at = word_.find(text, begin, end);
        if (at == nowhere) return false;
        if (std::exchange(readAt_, at) == at) return true;
        std::u16string_view digits;
        numberTextAt(text, at + length_, digits);  // up to the group's brace, if not before
        value_ = twips(digits);
        return true;
    }

    // Of the group asked for last; nothing when it is no number.
    std::optional<std::int32_t> value() const noexcept { return value_; }

private:
    GroupWord word_;
    std::size_t length_;
    std::size_t readAt_ = nowhere;
    std::optional<std::int32_t> value_;
};

// What the stage does, collected by the places of the text as it is.
class SectionReader {
public:
    SectionReader(std::u16string_view text, bool tolerant) : text_(text), tolerant_(tolerant) {
        if (tolerant) page_.values = PageSetup::defaults;
        for (const std::u16string_view word : groupWords) values_.emplace_back(word);
    }

    void read();
    TextEdits edits();

private:
    struct Change {
        std::size_t begin;
        std::size_t end;
        std::u16string text;
    };

    // A word or group that begins a section or resets one.
    struct Beginning {
        std::size_t index;
        bool resets;     // "\sectd"
        bool described;  // by a group
    };

    bool takeGroup(std::size_t index);
    bool readValue(std::size_t value, std::size_t begin, std::size_t end);
    const std::optional<std::u16string_view>& documentNumber(std::size_t value);
    void findDocumentWords();
    void place();
    void letDescriptionsWin();

    std::u16string_view text_;
    bool tolerant_;
    bool ended_ = false;  // by a group
    PageSetup page_;
    std::size_t groupEnd_ = 0;
    std::vector<GroupValue> values_;
    GroupWord landscape_{u"\\landscape"}, portrait_{u"\\portrait"};
    bool documentRead_ = false;
    std::array<std::optional<std::u16string_view>, PageSetup::valueCount> documentNumbers_;
    std::vector<std::size_t> pages_;  // not yet made section breaks
    std::vector<Beginning> beginnings_;
    std::size_t section_ = nowhere;  // the last "\sectd", among the beginnings
    std::vector<Change> changes_;
};

void SectionReader::read() {
    const std::size_t last = findTextReverse(text_, opening, Comparison::binary);
    if (last == nowhere) return;
    RtfScanner scanner(text_, 0, tolerant_ ? text_.size() : std::min(text_.size(), last + opening.size()));
    while (scanner.next() && (tolerant_ || !ended_)) {
        const std::size_t index = scanner.position();
        if (wordStandsAt(text_, index, u"\\page")) {
            pages_.push_back(index);
        } else if (wordStandsAt(text_, index, u"\\sectd")) {
            section_ = beginnings_.size();
            beginnings_.push_back({index, true, false});
        } else if (wordStandsAt(text_, index, u"\\sect")) {
            beginnings_.push_back({index, false, false});
        } else if (!ended_ && standsAt(text_, index, opening)) {
            ended_ = !takeGroup(index);
        }
    }
    if (tolerant_) letDescriptionsWin();
}

// False when the stage ends here.
bool SectionReader::takeGroup(std::size_t index) {
    if (groupEnd_ <= index) groupEnd_ = text_.find(u'}', index);
    if (groupEnd_ == nowhere) return false;
    for (std::size_t value = 0; value < PageSetup::valueCount; ++value) {
        if (!readValue(value, index, groupEnd_)) return false;
    }
    if (landscape_.find(text_, index, groupEnd_) != nowhere) {
        page_.turnLandscape();
    } else if (portrait_.find(text_, index, groupEnd_) != nowhere) {
        page_.turnPortrait();
    } else {
        page_.landscape = false;
    }
    changes_.push_back({index + nameOffset, index + nameOffset + doneName.size(), std::u16string(doneName)});
    place();
    return true;
}

bool SectionReader::readValue(std::size_t value, std::size_t begin, std::size_t end) {
    std::optional<std::int32_t> read;
    if (values_[value].standsIn(text_, begin, end)) {
        read = values_[value].value();
    } else {
        const auto& digits = documentNumber(value);
        if (!digits) return true;
        read = rounded(number(*digits));
    }
    if (read) page_.values[value] = *read;
    return read.has_value();
}

// The document's first words do not change while the stage runs.
const std::optional<std::u16string_view>& SectionReader::documentNumber(std::size_t value) {
    if (!documentRead_) findDocumentWords();
    return documentNumbers_[value];
}

void SectionReader::findDocumentWords() {
    documentRead_ = true;
    std::array<bool, PageSetup::valueCount> seen{};
    RtfScanner scanner(text_, 0, text_.size());
    while (scanner.nextWord()) {
        const std::size_t index = scanner.position();
        if (text_[index + 1] != u'p' && text_[index + 1] != u'm') continue;
        for (std::size_t i = 0; i < PageSetup::valueCount; ++i) {
            const std::u16string_view word = PageSetup::documentWords[i];
            if (seen[i] || !wordStandsAt(text_, index, word)) continue;
            seen[i] = true;
            std::u16string_view digits;
            if (numberTextAt(text_, index + word.size(), digits)) documentNumbers_[i] = digits;
        }
        if (std::find(seen.begin(), seen.end(), false) == seen.end()) return;
    }
}

void SectionReader::place() {
    if (!pages_.empty()) {
        const std::size_t page = pages_.back();
        pages_.pop_back();
        changes_.push_back({page, page + 5, u"\\sect"});
        changes_.push_back({page + 5, page + 5, page_.words()});
        beginnings_.push_back({page, false, true});
    } else if (section_ != nowhere) {
        const std::size_t behind = beginnings_[section_].index + 6;
        changes_.push_back({behind, behind, page_.words()});
        beginnings_[section_].described = true;
    }
}

// A described section keeps its description when the document in it begins with "\sectd": the word
// goes to the front of the description.
void SectionReader::letDescriptionsWin() {
    std::sort(beginnings_.begin(), beginnings_.end(),
              [](const Beginning& left, const Beginning& right) { return left.index < right.index; });
    Beginning described{0, false, false};
    for (const Beginning& beginning : beginnings_) {
        if (beginning.described || !beginning.resets) {
            described = beginning;
        } else if (described.described) {
            changes_.push_back({beginning.index, beginning.index + 6, {}});
            const std::size_t behindPage = described.index + 5;
            if (!described.resets) changes_.push_back({behindPage, behindPage, u"\\sectd"});
            described.resets = true;
        }
    }
}

// Where several groups describe one "\sectd", the later ones stand in front.
TextEdits SectionReader::edits() {
    std::reverse(changes_.begin(), changes_.end());
    std::stable_sort(changes_.begin(), changes_.end(), [](const Change& left, const Change& right) {
        return std::pair(left.begin, left.end) < std::pair(right.begin, right.end);
    });
    TextEdits edits;
    for (Change& change : changes_) {
        if (change.text.empty()) {
            edits.cut(change.begin, change.end);
        } else {
            edits.replaceVal(change.begin, change.end, std::move(change.text));
        }
    }
    return edits;
}

}  // namespace

void Module1::ApplySectionMarkers(std::u16string& psText, const CleanOptions& options) {
    SectionReader reader(psText, options.tolerant);
    reader.read();
    reader.edits().apply(psText);
}

}  // namespace velmor
