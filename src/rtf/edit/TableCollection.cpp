#include "rtf/edit/TableCollection.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "text/Compare.h"
#include "text/privStrCat.h"

namespace velmor {

std::u16string TableCollection::placeholderOf(std::size_t number) const {
    return mark_ + decimal(static_cast<std::int64_t>(number)) + mark_;
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

// A text that is being written, and the place reached.
struct Reading {
    std::u16string_view text;
    std::size_t number;
};

// Removes the number of the placeholder at the begin of `text`, and returns it.
std::size_t takePlaceholder(std::u16string_view& text, char16_t mark) {
    std::size_t number = 0;
    std::size_t at = 1;
    for (; at < text.size() && text[at] != mark; ++at) number = number * 10 + (text[at] - u'0');
    text.remove_prefix(std::min(at + 1, text.size()));
    return number;
}

}  // namespace

// Each entry has one placeholder only: then the sum of the lengths is the length of the result.
bool TableCollection::usesEachOnce(std::u16string_view text) const {
    std::vector<bool> used(tableCount + documents_.size());
    const auto look = [&](std::u16string_view part) {
        for (std::size_t at; (at = findText(part, {&mark_, 1}, 0, Comparison::binary)) != part.npos;) {
            part.remove_prefix(at);
            const std::size_t number = takePlaceholder(part, mark_);
            if (number >= used.size()) continue;
            if (used[number]) return false;
            used[number] = true;
        }
        return true;
    };
    if (!look(text)) return false;
    for (const std::u16string& table : tables_) {
        if (!look(table)) return false;
    }
    return std::all_of(documents_.begin(), documents_.end(), [&](const Document& one) { return look(one.text); });
}

TableCollection::Placeholder TableCollection::placeholderAt(std::u16string_view text,
                                                            std::size_t index) const noexcept {
    std::u16string_view rest = text.substr(index);
    const std::size_t number = takePlaceholder(rest, mark_);
    const std::size_t end = text.size() - rest.size();
    if (number < tableCount || number - tableCount >= documents_.size()) return {end, std::nullopt};
    return {end, number - tableCount};
}

// Writes the host at `from` and everything in it. A blank separates words around the placeholder of an empty
// entry.
template <typename Write, typename Written>
void TableCollection::writeExpanded(std::u16string_view from, Write write, Written written) {
    constexpr std::size_t host = static_cast<std::size_t>(-1);
    std::vector<bool> open(tableCount + documents_.size());
    std::vector<Reading> readings{{from, host}};
    bool apart = false;
    while (!readings.empty()) {
        Reading& reading = readings.back();
        const std::size_t found = findText(reading.text, {&mark_, 1}, 0, Comparison::binary);
        const std::size_t end = std::min(found, reading.text.size());
        if (end != 0) {
            if (std::exchange(apart, false) && wordTakesIn(written(), reading.text[0])) write(u" ");
            write(reading.text.substr(0, end));
            reading.text.remove_prefix(end);
        }
        if (reading.text.empty()) {
            if (reading.number != host) open[reading.number] = false;
            readings.pop_back();
            continue;
        }
        const std::size_t number = takePlaceholder(reading.text, mark_);
        const std::u16string* const text = entry(number);
        if (text == nullptr || open[number]) continue;
        apart = apart || text->empty();
        open[number] = true;
        readings.push_back({*text, number});
    }
}

void TableCollection::expand(std::u16string& psText) {
    const std::size_t length = psText.size();
    std::size_t added = 0;
    for (const std::u16string& table : tables_) added += table.size();
    for (const Document& document : documents_) added += document.text.size();
    if (added <= psText.capacity() - length && usesEachOnce(psText)) {
        expandInPlace(psText, added);
    } else {
        std::u16string result;
        result.reserve(std::min(length + added, privStrCat::maximumLength));
        const auto write = [&](std::u16string_view part) {
            if (part.size() > privStrCat::maximumLength - result.size()) throw std::length_error("TableCollection");
            result.append(part);
        };
        writeExpanded(psText, write, [&] { return std::u16string_view(result); });
        psText = std::move(result);
    }
    documents_.clear();
    for (std::u16string& table : tables_) table = {};
}

// Uses the memory that the text had before documents were lifted: fresh memory costs more than moving the host
// again.
void TableCollection::expandInPlace(std::u16string& psText, std::size_t added) {
    using Traits = std::char_traits<char16_t>;
    const std::size_t length = psText.size();
    psText.resize(length + added);
    Traits::move(psText.data() + added, psText.data(), length);
    char16_t* target = psText.data();
    const auto write = [&](std::u16string_view part) {
        target = Traits::move(target, part.data(), part.size()) + part.size();
    };
    writeExpanded({psText.data() + added, length}, write,
                  [&] { return std::u16string_view(psText.data(), static_cast<std::size_t>(target - psText.data())); });
    psText.resize(static_cast<std::size_t>(target - psText.data()));
}

}  // namespace velmor
