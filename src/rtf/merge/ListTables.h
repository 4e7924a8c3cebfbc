#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/merge/FreshNumbers.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/merge/TableEntries.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// The lists and list overrides of all documents of a run. Documents share no list, so each document counts for
// itself. The host's lists keep their numbers; those of other documents get new list ids, template ids and
// override numbers. docs/cleaning.md has the rules.
//
// A document's tables are read first, to determine the numbers, and added when their references to styles have
// the numbers of the merged document.
class ListTables {
public:
    static constexpr std::u16string_view listOpening = u"{\\*\\listtable";
    static constexpr std::u16string_view overrideOpening = u"{\\*\\listoverridetable";

    explicit ListTables(const CleanOptions& options) noexcept : tolerant_(options.tolerant), report_(options.report) {}

    // Readers number the lists that paragraphs describe themselves ({\*\pn...}) from 1, as if they were in the tables.
    // Before the host: no list of another document gets a number up to the given one.
    void leaveOut(std::int32_t number) noexcept {
        ids_.beginAfter(number);
        overrideNumbers_.beginAfter(number);
    }

    // The host is first.
    void beginDocument(bool host) {
        host_ = host;
        hasTables_ = false;
        settledLists_.clear();
        settledOverrides_.clear();
        idsOfDocument_.clear();
        overridesOfDocument_.clear();
        firstPicture_ = pictureCount_;
    }

    // "{\*\listtable" or "{\listtable" to its brace; then the same of "listoverridetable".
    void readLists(std::u16string_view table) {
        hasTables_ = true;
        forEach(table, [&](std::u16string_view entry) {
            if (firstWord(entry) != u"list") return;
            const std::u16string_view id = numberOfWord(entry, u"listid");
            const std::u16string_view templateId = numberOfWord(entry, u"listtemplateid");
            settledLists_.push_back({settle(ids_, id), settle(templateIds_, templateId)});
            idsOfDocument_.emplace(id, settledLists_.back().id);
            if (report_ != nullptr) report_->add(&MergeReport::Document::lists, {}, id, settledLists_.back().id, true);
        });
    }

    void readOverrides(std::u16string_view table) {
        hasTables_ = true;
        forEach(table, [&](std::u16string_view entry) {
            if (firstWord(entry) != u"listoverride") return;
            const std::u16string_view number = numberOfWord(entry, u"ls");
            std::u16string settled = settle(overrideNumbers_, number);
            if (settled[0] != u'-') overridesOfDocument_.set(number, wholeNumber(settled).value_or(0));
            if (report_ != nullptr) report_->add(&MergeReport::Document::listOverrides, {}, number, settled, true);
            settledOverrides_.push_back(std::move(settled));
        });
    }

    void addLists(std::u16string_view table) {
        std::size_t index = 0;
        forEach(table, [&](std::u16string_view entry) {
            const std::u16string_view word = firstWord(entry);
            if (word == u"list") {
                addList(entry, settledLists_.at(index++));
            } else if (word == u"listpicture") {
                addPictures(entry);
            } else {
                lists_.append(u"\r\n").append(entry);
            }
        });
    }

    void addOverrides(std::u16string_view table) {
        std::size_t index = 0;
        forEach(table, [&](std::u16string_view entry) {
            if (firstWord(entry) == u"listoverride") {
                addOverride(entry, settledOverrides_.at(index++));
            } else {
                overrides_.append(u"\r\n").append(entry);
            }
        });
    }

    // The number of the document's list override; NumberMap::none when the reference stays.
    std::int32_t numberOf(std::u16string_view override) {
        const std::int32_t number = overridesOfDocument_.find(override);
        if (number != NumberMap::none || override == u"0") return number;
        // It must not mean another document's list.
        const bool staysFree = (host_ || !hasTables_) && overrideNumbers_.reserve(override);
        return staysFree ? NumberMap::none : 0;
    }

    // The merged tables; nothing without entries.
    std::u16string listTable() const {
        if (lists_.empty()) return {};
        std::u16string table(listOpening);
        if (!pictures_.empty()) table.append(u"\r\n{\\*\\listpicture").append(pictures_).append(u"}");
        return table.append(lists_).append(u"}");
    }
    std::u16string overrideTable() const {
        return overrides_.empty() ? u"" : std::u16string(overrideOpening) + overrides_ + u"}";
    }

private:
    // The first word of an entry, after "\*".
    static std::u16string_view firstWord(std::u16string_view entry) {
        const std::size_t star = standsAt(entry, 1, u"\\*") ? 3 : 1;
        return standsAt(entry, star, u"\\") ? readWord(entry, star).letters : std::u16string_view();
    }

    std::u16string_view numberOfWord(std::u16string_view entry, std::u16string_view letters) const {
        for (EntryItems items(entry, tolerant_); items.next();) {
            if (items.kind() == EntryItems::Kind::word && items.word().letters == letters) return items.word().number;
        }
        return {};
    }

    // Blanks between the groups of an entry are text to some readers, which show it before the host's text.
    static std::u16string withoutBlanks(std::u16string_view entry) {
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

    // Each group of "{\*\listtable..." or a similar table.
    template <typename Take>
    void forEach(std::u16string_view table, Take take) const {
        const std::size_t word = standsAt(table, 1, u"\\*") ? 3 : 1;
        for (TableEntries entries(table, readWord(table, word).end, tolerant_); entries.next();) {
            if (entries.isGroup()) take(entries.text());
        }
    }

    struct List {
        std::u16string id, templateId;
    };

    std::u16string settle(FreshNumbers& numbers, std::u16string_view number) const {
        if (host_ && numbers.take(number)) return std::u16string(number);
        return decimal(numbers.next());
    }

    // A list that is absent from the document's table must not mean another document's list.
    const std::u16string& idOf(std::u16string_view id) {
        const auto [known, isNew] = idsOfDocument_.emplace(id, std::u16string());
        if (isNew) known->second = settle(ids_, id);
        return known->second;
    }

    // Pictures of bullets are counted through all documents.
    void renumberPictures(std::u16string_view entry, const EntryItems& level, TextEdits& edits) const {
        if (firstPicture_ == 0) return;
        for (RtfReader words(entry, level.begin(), level.end()); words.nextWord();) {
            const ControlWord word = words.word();
            if (word.letters != u"levelpicture") continue;
            if (word.number.empty() || word.number.size() > 5 || word.number[0] == u'-') continue;
            const int picture = velmor::numberOf(word.number);
            edits.replaceVal(word.numberBegin(), word.end, decimal(static_cast<std::int32_t>(firstPicture_) + picture));
        }
    }

    // The entry with its numbers replaced: `newNumber` gets each word of it, and gives the new number.
    template <typename NewNumber>
    std::u16string renumbered(std::u16string_view entry, NewNumber newNumber) {
        std::u16string text = host_ ? std::u16string(entry) : withoutBlanks(entry);
        TextEdits edits;
        for (EntryItems items(text, tolerant_); items.next();) {
            if (items.kind() == EntryItems::Kind::group) renumberPictures(text, items, edits);
            if (items.kind() != EntryItems::Kind::word) continue;
            const ControlWord& word = items.word();
            if (const auto number = newNumber(word)) edits.replaceVal(word.numberBegin(), word.end, *number);
        }
        edits.apply(text);
        return text;
    }

    void addList(std::u16string_view entry, const List& list) {
        bool hasId = false;
        std::u16string text = renumbered(entry, [&](const ControlWord& word) -> std::optional<std::u16string> {
            if (word.letters == u"listtemplateid") return list.templateId;
            if (word.letters == u"liststyleid") return idOf(word.number);
            if (word.letters != u"listid") return std::nullopt;
            hasId = true;
            return list.id;
        });
        if (!hasId) text.insert(text.size() - 1, u"\\listid" + list.id);
        lists_.append(u"\r\n").append(text);
    }

    void addPictures(std::u16string_view entry) {
        forEach(entry, [&](std::u16string_view picture) {
            pictures_ += picture;
            pictureCount_ += firstWord(picture) != u"nonshppict";
        });
    }

    void addOverride(std::u16string_view entry, const std::u16string& number) {
        std::int32_t levels = 0;
        for (EntryItems items(entry, tolerant_); items.next();) {
            levels += items.kind() == EntryItems::Kind::group && firstWord(items.text()) == u"lfolevel";
        }
        const std::u16string text = renumbered(entry, [&](const ControlWord& word) -> std::optional<std::u16string> {
            if (word.letters == u"listid") return idOf(word.number);
            if (word.letters == u"listoverridecount") return decimal(levels);
            return word.letters == u"ls" ? std::optional(number) : std::nullopt;
        });
        overrides_.append(u"\r\n").append(text);
    }

    bool tolerant_;
    MergeReport* report_;
    bool host_ = true;
    bool hasTables_ = false;

    FreshNumbers ids_, templateIds_, overrideNumbers_;
    std::u16string lists_, overrides_, pictures_;
    std::size_t pictureCount_ = 0;

    // Of the current document.
    std::vector<List> settledLists_;
    std::vector<std::u16string> settledOverrides_;
    std::unordered_map<std::u16string, std::u16string> idsOfDocument_;
    NumberMap overridesOfDocument_;
    std::size_t firstPicture_ = 0;
};

}  // namespace velmor
