#include "rtf/TableCollection.h"

#include <stdexcept>
#include <utility>
#include <vector>

#include "text/Compare.h"
#include "text/privStrCat.h"

namespace velmor {

std::u16string TableCollection::placeholderOf(std::size_t number) const {
    const std::string digits = std::to_string(number);
    std::u16string text(1, mark_);
    text.append(digits.begin(), digits.end());
    return text += mark_;
}

std::u16string TableCollection::placeholder(SharedTable table) const {
    return placeholderOf(static_cast<std::size_t>(table));
}

std::u16string TableCollection::placeholder(std::size_t index) const {
    return placeholderOf(tableCount + index);
}

std::u16string* TableCollection::entry(std::size_t number) noexcept {
    if (number < tableCount) return &tables_[number];
    number -= tableCount;
    return number < documents_.size() ? &documents_[number].text : nullptr;
}

namespace {

// A text that is being written, and how far.
struct Reading {
    std::u16string_view text;
    std::size_t number;
};

// The number of the placeholder in front of `text`, which loses it.
std::size_t takePlaceholder(std::u16string_view& text, char16_t mark) {
    std::size_t number = 0;
    std::size_t at = 1;
    for (; at < text.size() && text[at] != mark; ++at) number = number * 10 + (text[at] - u'0');
    text.remove_prefix(std::min(at + 1, text.size()));
    return number;
}

}  // namespace

void TableCollection::expand(std::u16string& psText) {
    std::size_t length = psText.size();
    for (const std::u16string& table : tables_) length += table.size();
    for (const Document& document : documents_) length += document.text.size();
    std::u16string result;
    result.reserve(length);

    constexpr std::size_t host = static_cast<std::size_t>(-1);
    std::vector<bool> open(tableCount + documents_.size());
    std::vector<Reading> readings{{psText, host}};
    while (!readings.empty()) {
        Reading& reading = readings.back();
        const std::size_t end = std::min(reading.text.find(mark_), reading.text.size());
        if (result.size() + end > privStrCat::maximumLength) throw std::length_error("TableCollection");
        result.append(reading.text, 0, end);
        reading.text.remove_prefix(end);
        if (reading.text.empty()) {
            if (reading.number != host) open[reading.number] = false;
            readings.pop_back();
            continue;
        }
        const std::size_t number = takePlaceholder(reading.text, mark_);
        const std::u16string* const text = entry(number);
        if (text == nullptr || open[number]) continue;
        open[number] = true;
        readings.push_back({*text, number});
    }
    psText = std::move(result);
    documents_.clear();
    for (std::u16string& table : tables_) table = {};
}

}  // namespace velmor
