#include "rtf/merge/ListTables.h"

#include <algorithm>
#include <vector>

#include "rtf/merge/MergeReport.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

// The end of "{\*\listtable" or a similar opening.
std::size_t endOfOpening(std::u16string_view table) {
    const std::size_t star = standsAt(table, 1, u"\\*") ? 3 : 1;
    return readWord(table, star).end;
}

// The first word of an entry, after "\*".
std::u16string_view firstWord(std::u16string_view entry) {
    const std::size_t star = standsAt(entry, 1, u"\\*") ? 3 : 1;
    return standsAt(entry, star, u"\\") ? readWord(entry, star).letters : std::u16string_view();
}

std::u16string_view numberOfWord(std::u16string_view entry, std::u16string_view letters, bool tolerant) {
    for (EntryItems items(entry, tolerant); items.next();) {
        if (items.kind() == EntryItems::Kind::word && items.word().letters == letters) return items.word().number;
    }
    return {};
}

// Blanks between the groups of an entry are text to some readers, which show it before the host's text.
std::u16string withoutBlanks(std::u16string_view entry) {
    std::u16string result;
    std::vector<bool> drops{false};
    for (std::size_t at = 0; at < entry.size();) {
        const std::size_t begin = at++;
        if (entry[begin] == u'\\') {
            const ControlWord word = readWord(entry, begin);
            at = std::min(word.letters.empty() ? begin + 2 : endWithBlank(entry, word), entry.size());
        } else if (entry[begin] == u'{') {
            drops.push_back(wordIs(WordTrait::listPart, firstWord(entry.substr(begin))));
        } else if (entry[begin] == u'}') {
            if (drops.size() > 1) drops.pop_back();
        } else if (drops.back() && isWhiteSpace(entry[begin])) {
            continue;
        }
        result.append(entry.substr(begin, at - begin));
    }
    return result;
}

template <typename Take>
void forEach(std::u16string_view table, bool tolerant, Take take) {
    for (TableEntries entries(table, endOfOpening(table), tolerant); entries.next();) {
        if (entries.isGroup()) take(entries.text());
    }
}

}  // namespace

void ListTables::leaveOut(std::int32_t number) noexcept {
    ids_.beginAfter(number);
    overrideNumbers_.beginAfter(number);
}

void ListTables::beginDocument(bool host) {
    host_ = host;
    hasTables_ = false;
    settledLists_.clear();
    settledOverrides_.clear();
    idsOfDocument_.clear();
    overridesOfDocument_.clear();
    firstPicture_ = pictureCount_;
}

std::u16string ListTables::settle(FreshNumbers& numbers, std::u16string_view number) const {
    if (host_ && numbers.take(number)) return std::u16string(number);
    return decimal(numbers.next());
}

void ListTables::readLists(std::u16string_view table) {
    hasTables_ = true;
    forEach(table, tolerant_, [&](std::u16string_view entry) {
        if (firstWord(entry) != u"list") return;
        const std::u16string_view id = numberOfWord(entry, u"listid", tolerant_);
        const std::u16string_view templateId = numberOfWord(entry, u"listtemplateid", tolerant_);
        settledLists_.push_back({settle(ids_, id), settle(templateIds_, templateId)});
        idsOfDocument_.emplace(id, settledLists_.back().id);
        if (report_ != nullptr) report_->add(&MergeReport::Document::lists, {}, id, settledLists_.back().id, true);
    });
}

void ListTables::readOverrides(std::u16string_view table) {
    hasTables_ = true;
    forEach(table, tolerant_, [&](std::u16string_view entry) {
        if (firstWord(entry) != u"listoverride") return;
        const std::u16string_view number = numberOfWord(entry, u"ls", tolerant_);
        std::u16string settled = settle(overrideNumbers_, number);
        if (settled[0] != u'-') overridesOfDocument_.set(number, wholeNumber(settled).value_or(0));
        if (report_ != nullptr) report_->add(&MergeReport::Document::listOverrides, {}, number, settled, true);
        settledOverrides_.push_back(std::move(settled));
    });
}

// A list that is absent from the document's table must not mean another document's list.
std::u16string_view ListTables::idOf(std::u16string_view id) {
    const auto [known, isNew] = idsOfDocument_.emplace(id, std::u16string());
    if (isNew) known->second = settle(ids_, id);
    return known->second;
}

void ListTables::addLists(std::u16string_view table) {
    std::size_t index = 0;
    forEach(table, tolerant_, [&](std::u16string_view entry) {
        const std::u16string_view word = firstWord(entry);
        if (word == u"list") {
            addList(host_ ? std::u16string(entry) : withoutBlanks(entry), settledLists_.at(index++));
        } else if (word == u"listpicture") {
            addPictures(entry);
        } else {
            lists_.append(u"\r\n").append(entry);
        }
    });
}

// Pictures of bullets are counted through all documents.
void ListTables::renumberPictures(std::u16string_view entry, const EntryItems& level, TextEdits& edits) const {
    if (firstPicture_ == 0) return;
    for (RtfReader words(entry, level.begin(), level.end()); words.nextWord();) {
        if (!wordStandsAt(entry, words.position(), u"\\levelpicture")) continue;
        const ControlWord word = readWord(entry, words.position());
        if (word.number.empty() || word.number.size() > 5 || word.number[0] == u'-') continue;
        const int picture = velmor::numberOf(word.number);
        edits.replaceVal(word.numberBegin(), word.end, decimal(static_cast<std::int32_t>(firstPicture_) + picture));
    }
}

// The entry with its numbers replaced: `replace` gets each word of it, and the edits.
template <typename Replace>
std::u16string ListTables::renumbered(std::u16string_view entry, Replace replace) {
    std::u16string text(entry);
    TextEdits edits;
    for (EntryItems items(entry, tolerant_); items.next();) {
        if (items.kind() == EntryItems::Kind::group) renumberPictures(entry, items, edits);
        if (items.kind() == EntryItems::Kind::word) replace(items.word(), edits);
    }
    edits.apply(text);
    return text;
}

void ListTables::addList(std::u16string_view entry, const List& list) {
    bool hasId = false;
    std::u16string text = renumbered(entry, [&](const ControlWord& word, TextEdits& edits) {
        const auto set = [&](std::u16string_view number) { edits.replace(word.numberBegin(), word.end, number); };
        hasId = hasId || word.letters == u"listid";
        if (word.letters == u"listid") set(list.id);
        if (word.letters == u"listtemplateid") set(list.templateId);
        if (word.letters == u"liststyleid") set(idOf(word.number));
    });
    if (!hasId) text.insert(text.size() - 1, u"\\listid" + list.id);
    lists_.append(u"\r\n").append(text);
}

void ListTables::addPictures(std::u16string_view entry) {
    for (TableEntries pictures(entry, endOfOpening(entry), tolerant_); pictures.next();) {
        if (!pictures.isGroup()) continue;
        pictures_ += pictures.text();
        pictureCount_ += firstWord(pictures.text()) != u"nonshppict";
    }
}

void ListTables::addOverrides(std::u16string_view table) {
    std::size_t index = 0;
    forEach(table, tolerant_, [&](std::u16string_view entry) {
        if (firstWord(entry) == u"listoverride") {
            addOverride(host_ ? std::u16string(entry) : withoutBlanks(entry), settledOverrides_.at(index++));
        } else {
            overrides_.append(u"\r\n").append(entry);
        }
    });
}

void ListTables::addOverride(std::u16string_view entry, std::u16string_view number) {
    std::int32_t levels = 0;
    for (EntryItems items(entry, tolerant_); items.next();) {
        levels += items.kind() == EntryItems::Kind::group && firstWord(items.text()) == u"lfolevel";
    }
    const std::u16string text = renumbered(entry, [&](const ControlWord& word, TextEdits& edits) {
        const auto set = [&](std::u16string_view with) { edits.replace(word.numberBegin(), word.end, with); };
        if (word.letters == u"listid") set(idOf(word.number));
        if (word.letters == u"listoverridecount") edits.replaceVal(word.numberBegin(), word.end, decimal(levels));
        if (word.letters == u"ls") set(number);
    });
    overrides_.append(u"\r\n").append(text);
}

std::u16string ListTables::listTable() const {
    std::u16string table = u"{\\*\\listtable";
    if (!pictures_.empty()) table.append(u"\r\n{\\*\\listpicture").append(pictures_).append(u"}");
    return table.append(lists_).append(u"}");
}

std::int32_t ListTables::numberOf(std::u16string_view override) {
    const std::int32_t number = overridesOfDocument_.find(override);
    if (number != NumberMap::none || override == u"0") return number;
    // It must not mean another document's list.
    const bool staysFree = (host_ || !hasTables_) && overrideNumbers_.reserve(override);
    return staysFree ? NumberMap::none : 0;
}

}  // namespace velmor
