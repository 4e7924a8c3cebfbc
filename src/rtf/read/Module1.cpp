#include "rtf/read/Module1.h"

#include <algorithm>
#include <utility>

#include "rtf/read/RtfReader.h"
#include "text/privStrCat.h"

namespace velmor::Module1 {
namespace {

Comparison comparisonOf(std::int32_t plCompare) {
    return plCompare == binaryCompare ? Comparison::binary : Comparison::text;
}

std::int32_t positionOf(std::size_t index) {
    return index == nowhere ? 0 : static_cast<std::int32_t>(index) + 1;
}

// Calls a function that may raise; a failure is "not found".
template <typename Search>
auto guarded(Search search) noexcept -> decltype(search()) {
    try {
        return search();
    } catch (...) {
        return decltype(search())();
    }
}

// U+0000 outside of the text.
char16_t unitAt(std::u16string_view text, std::size_t index) {
    return index < text.size() ? text[index] : u'\0';
}

bool delimited(std::u16string_view text, std::size_t index, std::size_t length, bool required) {
    return !required || isDelimiter(unitAt(text, index + length));
}

std::int32_t findInBuilder(const privStrCat& builder, std::u16string_view sought, std::int32_t start,
                           Comparison comparison, bool requireDelimiter, EscapeScan& escapes) {
    for (;; ++start) {
        start = builder.Find(sought, start, comparison == Comparison::binary);
        if (start == 0) return 0;
        const std::u16string_view text = builder.contiguous();
        const auto index = static_cast<std::size_t>(start) - 1;
        // After any other character the delimiter is not tested: callers rely on it.
        if (index > 0 && text[index - 1] != u'\\') return start;
        if (!escapes.isEscaped(text, index) && delimited(text, index, sought.size(), requireDelimiter)) return start;
    }
}

std::size_t findInText(std::u16string_view text, std::u16string_view sought, std::size_t start, Comparison comparison,
                       bool requireDelimiter, EscapeScan& escapes) {
    for (;; ++start) {
        start = findText(text, sought, start, comparison);
        if (start == nowhere) return nowhere;
        if (unitAt(text, start) != u'\\') continue;
        if (!escapes.isEscaped(text, start) && delimited(text, start, sought.size(), requireDelimiter)) return start;
    }
}

std::int32_t numberAfter(std::u16string_view text, std::size_t word, std::size_t length) {
    const std::size_t end = text.find_first_of(u"\r\\{} ", word + 1);
    const std::size_t begin = word + length;
    return end == nowhere || end < begin ? 0 : wholeNumber(text.substr(begin, end - begin)).value_or(0);
}

void overwrite(privStrCat& text, std::int32_t position, std::size_t length, std::u16string_view replacement) {
    // The builder refuses to overwrite its last character.
    if (length == replacement.size() && position < text.Length()) {
        text.ModifyMidStr(position, replacement);
    } else {
        text.Remove(position, static_cast<std::int32_t>(length));
        text.Insert(replacement, position);
    }
}

}  // namespace

bool isDelimiter(char16_t unit) noexcept {
    return unit == u'\r' || unit == u' ' || unit == u'\\' || unit == u'{' || unit == u'}';
}

std::int32_t FindRTFWord(std::int32_t plStart, const privStrCat& poText, std::u16string_view psFind,
                         std::int32_t plCompare, bool pbDelimited) noexcept {
    return guarded([&] {
        EscapeScan escapes;
        return findInBuilder(poText, psFind, plStart, comparisonOf(plCompare), pbDelimited, escapes);
    });
}

std::int32_t FindRTFWordReverse(const privStrCat& poText, std::u16string_view psFind, std::int32_t plStart,
                                std::int32_t plCompare, bool pbDelimited) noexcept {
    return FindRTFWordInTextReverse(poText.contiguous(), psFind, plStart, plCompare, pbDelimited);
}

std::int32_t FindRTFWordInText(std::int32_t plStart, std::u16string_view psText, std::u16string_view psFind,
                               std::int32_t plCompare, bool pbDelimited) noexcept {
    if (plStart < 1) return 0;
    EscapeScan escapes;
    return positionOf(findInText(psText, psFind, static_cast<std::size_t>(plStart) - 1, comparisonOf(plCompare),
                                 pbDelimited, escapes));
}

std::int32_t FindRTFWordInTextReverse(std::u16string_view psText, std::u16string_view psFind, std::int32_t plStart,
                                      std::int32_t plCompare, bool pbDelimited) noexcept {
    if (plStart < -1) return 0;
    std::size_t end = plStart == -1 ? psText.size() : std::min(psText.size(), static_cast<std::size_t>(plStart));
    while (end > 0) {
        // Nothing is found there, as in a builder.
        const std::size_t index =
            psFind.empty() ? end - 1 : findTextReverse(psText.substr(0, end), psFind, comparisonOf(plCompare));
        if (index == nowhere) return 0;
        const bool beginsWord = unitAt(psText, index) == u'\\' && !isEscaped(psText, index);
        if (beginsWord && delimited(psText, index, psFind.size(), pbDelimited)) return positionOf(index);
        end = index;
    }
    return 0;
}

void ReplaceRTFWord(privStrCat& poText, std::u16string_view psFind, std::u16string_view psReplace, std::int32_t plStart,
                    std::int32_t plCount, std::int32_t plCompare) noexcept {
    guarded([&] {
        EscapeScan escapes;
        std::int32_t remaining = plCount == -1 ? poText.Length() : plCount;
        for (std::int32_t start = plStart; remaining >= 1 && !psFind.empty(); --remaining) {
            start = findInBuilder(poText, psFind, start, comparisonOf(plCompare), false, escapes);
            // A match that continues into the spare tail is not replaced, nor anything after it.
            if (start == 0 || static_cast<std::size_t>(poText.Length() - start) + 1 < psFind.size()) break;
            overwrite(poText, start, psFind.size(), psReplace);
            start += static_cast<std::int32_t>(psReplace.size());
        }
    });
}

std::int32_t CountRTFWord(std::int32_t plStart, std::u16string_view psText, std::u16string_view psFind,
                          std::int32_t plEnd, std::int32_t plCompare, bool pbUnescapedOnly) noexcept {
    if (plStart < 1) return 0;
    const Comparison comparison = comparisonOf(plCompare);
    EscapeScan escapes;
    const auto find = [&](std::size_t start) {
        return pbUnescapedOnly ? findInText(psText, psFind, start, comparison, false, escapes)
                               : findText(psText, psFind, start, comparison);
    };
    const std::int64_t end = plEnd == 0 ? static_cast<std::int64_t>(psText.size()) : plEnd;
    std::int32_t count = 0;
    auto at = static_cast<std::size_t>(plStart) - 1;
    while ((at = find(at)) != nowhere && static_cast<std::int64_t>(at) < end) {
        ++count;
        ++at;
    }
    return count;
}

std::int32_t FindFirstOfAny(std::int32_t plStart, std::u16string_view psText, std::u16string_view psSet,
                            std::int32_t plCompare) noexcept {
    if (plStart < 1) return 0;
    const auto start = static_cast<std::size_t>(plStart) - 1;
    if (plCompare == binaryCompare) return positionOf(psText.find_first_of(psSet, start));
    return guarded([&] { return positionOf(lowerCase(psText).find_first_of(lowerCase(psSet), start)); });
}

GroupExtent FindGroupEnd(std::int32_t plStart, std::u16string_view psText, std::u16string_view psOpening,
                         std::int32_t plLimit) noexcept {
    if (plStart < 1) return {};
    const std::size_t start = findText(psText, psOpening, static_cast<std::size_t>(plStart) - 1, Comparison::text);
    if (start == nowhere) return {};
    const auto asked = static_cast<std::size_t>(std::max(plLimit, 0));
    const std::size_t limit = plLimit == 0 ? psText.size() : std::min(psText.size(), asked);
    std::int32_t depth = 1;
    for (std::size_t i = start + 1; i < limit; ++i) {
        if ((psText[i] != u'{' && psText[i] != u'}') || psText[i - 1] == u'\\') continue;
        depth += psText[i] == u'{' ? 1 : -1;
        if (depth == 0) return {positionOf(start), positionOf(i)};
    }
    return {positionOf(start), 0};
}

std::int32_t GetRTFWordValue(std::u16string_view psTextA, std::u16string_view psWordA, std::u16string_view psTextB,
                             std::u16string_view psWordB) noexcept {
    for (const auto& [text, word] : {std::pair{psTextA, psWordA}, std::pair{psTextB, psWordB}}) {
        const std::int32_t found = FindRTFWordInText(1, text, word, binaryCompare, false);
        if (found != 0) return numberAfter(text, static_cast<std::size_t>(found) - 1, word.size());
    }
    return 0;
}

void TrimTrailingSpace(privStrCat& poText) noexcept {
    guarded([&] { poText.ModifyTrimRightStr(u" "); });
}

void SwapValues(std::int32_t& plFirst, std::int32_t& plSecond) noexcept {
    std::swap(plFirst, plSecond);
}

}  // namespace velmor::Module1
