#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/merge/DirectFormatting.h"
#include "rtf/merge/FreshNumbers.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/merge/TableEntries.h"
#include "rtf/read/WordTable.h"
#include "text/Compare.h"

namespace velmor {

// The formatting of text whose style has another definition in the merged document.
struct DirectLook {
    std::u16string words;     // are written after the style's number
    std::u16string replaced;  // the words of this look go where they follow the number
};

// The styles of all documents of a run. The host's keep their names and numbers. A style of another
// document that equals one already here is that one; any other gets a number of its own, and, when
// its name is taken, a new name: "heading 1 (2)". On request it is left out instead, and its text gets the style that
// has the name (CleanOptions::styles). docs/cleaning.md has the rules.
class StyleSheet {
public:
    static constexpr std::u16string_view opening = u"{\\stylesheet";

    explicit StyleSheet(const CleanOptions& options)
        : tolerant_(options.tolerant), conflict_(options.styles), report_(options.report) {
        fresh_.take(decimal(noStyle));
    }

    // The host comes first.
    void beginDocument(bool host) {
        host_ = host;
        hasSheet_ = false;
        defaultStyle_ = NumberMap::none;
        styles_.clear();
        for (NumberMap& places : places_) places.clear();
    }

    // Reads the document's sheet, "{\stylesheet" to its brace, whose references to fonts, colours and lists are
    // those of the merged document already.
    void readSheet(std::u16string sheet) {
        hasSheet_ = true;
        sheet_ = std::move(sheet);
        if (!host_) addNormalOfHost();
        for (TableEntries entries(sheet_, opening.size(), tolerant_); entries.next();) {
            if (!entries.isGroup()) continue;
            const Style& style = styles_.emplace_back(read(entries.text()));
            places_[static_cast<std::size_t>(style.kind)].set(style.number(),
                                                              static_cast<std::int32_t>(styles_.size() - 1));
        }
    }

    // Adds the styles that were read. `font`: what those mean that name none; NumberMap::none leaves them so.
    void addStyles(std::int32_t font) {
        if (font != NumberMap::none) nameFont(font);
        for (std::size_t i = 0; i < styles_.size(); ++i) settleFromBase(i);
        for (const Style& style : styles_) {
            if (style.isNew) append(style);
            if (report_ != nullptr) report(style);
        }
    }

    // The number of the document's style; NumberMap::none when the reference stays as it is.
    std::int32_t numberOf(StyleKind kind, std::u16string_view number) {
        if (const Style* style = styleOf(number, kind)) {
            // Text of a character style that is one of paragraphs looks as if it named none.
            const bool isParagraphs = kind == StyleKind::character && style->kind == StyleKind::paragraph;
            return isParagraphs && tolerant_ && !host_ ? noStyle : style->newNumber;
        }
        if (number == u"0") return kind == StyleKind::paragraph ? defaultStyle_ : NumberMap::none;
        // The reference must not refer to another document's style.
        const bool staysFree = (host_ || !hasSheet_) && fresh_.reserve(number);
        return staysFree ? NumberMap::none : noStyle;
    }

    // What a reference to the document's style must write besides the number; null when nothing.
    const DirectLook* directLook(StyleKind kind, std::u16string_view number) const {
        if (definitions_.empty()) return nullptr;
        const Style* const style = styleOf(number, kind);
        const bool hasLook =
            style != nullptr && style->kind == kind && !(style->direct.words.empty() && style->direct.replaced.empty());
        return hasLook ? &style->direct : nullptr;
    }

    // What paragraphs of the document that name no style have to name now; none when nothing. `whole`: the
    // document defines its own look, so that they must not get the host's style 0.
    std::int32_t defaultStyle(bool whole) {
        if (host_) return NumberMap::none;
        if (const Style* const style = ownNormal()) return style->newNumber == 0 ? NumberMap::none : style->newNumber;
        if (whole && changesPlain_ && conflict_ != StyleConflict::host) defaultStyle_ = plainStyle();
        return defaultStyle_;
    }

    // The font that the document's style 0 names; NumberMap::none when it does not.
    std::int32_t fontOfNormal() const {
        const Style* const style = ownNormal();
        const auto font = style == nullptr ? std::nullopt : findWord(style->look, u"f");
        const bool isNumber = font && !font->number.empty() && font->number.size() < 7 && font->number[0] != u'-';
        return isNumber ? velmor::numberOf(font->number) : NumberMap::none;
    }

    // The merged sheet; nothing without styles.
    std::u16string text() const { return entries_.empty() ? u"" : std::u16string(opening) + entries_ + u"}"; }

private:
    static constexpr std::u16string_view normal = u"{\\s0 Normal;}";

    static std::u16string_view trimmed(std::u16string_view text) {
        text.remove_prefix(skipWhiteSpace(text, 0));
        while (!text.empty() && isWhiteSpace(text.back())) text.remove_suffix(1);
        return text;
    }

    // Of a style's name and kind. A name belongs to each kind by itself.
    static std::u16string nameKey(std::u16string name, StyleKind kind) {
        return std::move(name) + u'\0' + static_cast<char16_t>(kind);
    }

    static constexpr std::size_t kinds = 4;

    struct Style {
        std::u16string_view entry;
        StyleKind kind = StyleKind::paragraph;
        ControlWord own, base, next, link;  // the words with the numbers of this style and of others
        std::size_t nameBegin = 0;
        std::size_t nameEnd = 0;
        std::u16string name;  // without its further names, letter case folded
        std::u16string look;  // the words and groups, without the above
        std::int32_t newNumber = NumberMap::none;
        bool isNew = false;
        std::u16string suffix;
        std::u16string font;     // the word that names the document's default font, where the style needs it
        bool isPlain = false;    // made here for text without a style
        bool isLeftOut = false;  // its text has the other style of its name
        DirectLook direct;

        std::u16string_view number() const noexcept { return own.number.empty() ? u"0" : own.number; }
    };

    // The style that has a name.
    struct Definition {
        std::int32_t number;
        std::u16string look;
    };

    static std::u16string_view nameIn(const Style& style) {
        return style.entry.substr(style.nameBegin, style.nameEnd - style.nameBegin);
    }

    static void noteWord(Style& style, const ControlWord& word) {
        const bool numbered = !word.number.empty();
        const auto kind = styleKindOf(meaningOf(word.letters).word);
        if (numbered && kind && style.own.number.empty()) {
            style.kind = *kind;
            style.own = word;
        } else if (numbered && word.letters == u"sbasedon") {
            style.base = word;
        } else if (numbered && word.letters == u"snext") {
            style.next = word;
        } else if (numbered && word.letters == u"slink") {
            style.link = word;
        } else if (word.letters != u"styrsid") {
            style.look.append(u"\\").append(word.letters).append(word.number);
        }
    }

    Style read(std::u16string_view entry) const {
        Style style;
        style.entry = entry;
        style.nameBegin = style.nameEnd = 1;
        for (EntryItems items(entry, tolerant_); items.next();) {
            if (items.endsName()) break;
            const bool isWord = items.kind() == EntryItems::Kind::word;
            const bool isName = items.kind() == EntryItems::Kind::text || (isWord && items.word().letters == u"u");
            if (isWord && !isName) noteWord(style, items.word());
            if (items.kind() == EntryItems::Kind::group) {
                style.look += items.text();
                if (!trimmed(nameIn(style)).empty()) continue;
            }
            if (!isName) style.nameBegin = items.end();
            style.nameEnd = items.end();
        }
        std::u16string_view name = nameIn(style);
        name = name.substr(0, name.find(u','));
        style.nameEnd = style.nameBegin + name.size();
        style.name = trimmed(name);
        std::transform(style.name.begin(), style.name.end(), style.name.begin(), foldUnit);
        return style;
    }

    void report(const Style& style) {
        using Outcome = MergedEntry::Outcome;
        MergedEntry& entry = report_->add(&MergeReport::Document::styles, trimmed(nameIn(style)), style.own.number,
                                          decimal(style.newNumber), style.isNew);
        entry.newName += style.suffix;
        if (!style.suffix.empty()) entry.outcome = Outcome::renamed;
        if (style.isLeftOut) entry.outcome = conflict_ == StyleConflict::host ? Outcome::replaced : Outcome::direct;
    }

    // The default font, where a style neither names a font nor is based on one that may.
    void nameFont(std::int32_t font) {
        for (Style& style : styles_) {
            const bool inherits = style.base.number != u"0" && baseOf(style) != nullptr;
            if (style.kind != StyleKind::paragraph || inherits || findWord(style.look, u"f")) continue;
            style.font = u"\\f" + decimal(font);
            style.look += style.font;
        }
    }

    // Readers give paragraphs without a style the style "Normal", number 0. Where the host has none, it
    // must not become another document's. Tolerant merging does not write it: readers give the host's text
    // what the style says, and one that says nothing is not the same to them as none.
    void addNormalOfHost() {
        if (hasNormal_) return;
        hasNormal_ = true;
        fresh_.take(u"0");
        Style style = read(normal);
        style.newNumber = 0;
        if (!lastOfName_.emplace(style.name, 1).second) return;
        numbersByKey_.emplace(keyOf(style), 0);
        define(style, 0);
        if (!tolerant_) entries_.append(u"\r\n").append(normal);
    }

    const Style* styleOf(std::u16string_view number, StyleKind preferred) const {
        if (number.empty()) return nullptr;
        const auto find = [&](std::size_t kind) { return places_[kind].find(number); };
        std::int32_t place = find(static_cast<std::size_t>(preferred));
        for (std::size_t kind = 0; kind < kinds && place == NumberMap::none; ++kind) place = find(kind);
        return place == NumberMap::none ? nullptr : &styles_[static_cast<std::size_t>(place)];
    }

    const Style* baseOf(const Style& style) const { return styleOf(style.base.number, style.kind); }
    const Style* nextOf(const Style& style) const { return styleOf(style.next.number, StyleKind::paragraph); }
    // Of another kind, if there is one.
    const Style* linkOf(const Style& style) const {
        const bool isParagraphs = style.kind == StyleKind::paragraph;
        return styleOf(style.link.number, isParagraphs ? StyleKind::character : StyleKind::paragraph);
    }

    // The style that another one is based on is settled first. A ring of them is cut where it was entered.
    void settleFromBase(std::size_t index) {
        constexpr std::int32_t entered = -2;
        std::vector<std::size_t> chain;
        while (styles_[index].newNumber == NumberMap::none) {
            styles_[index].newNumber = entered;
            chain.push_back(index);
            const Style* base = baseOf(styles_[index]);
            if (base == nullptr) break;
            index = static_cast<std::size_t>(base - styles_.data());
        }
        for (auto at = chain.rbegin(); at != chain.rend(); ++at) settle(styles_[*at]);
    }

    // Equal keys, equal styles. The style that follows and the linked one count by name: they do not
    // change the look.
    std::u16string keyOf(const Style& style) const {
        std::u16string key = style.name;
        key.append(1, u'\0').append(1, static_cast<char16_t>(u'0' + static_cast<int>(style.kind))).append(style.look);
        key += u'\0';
        if (const Style* base = baseOf(style)) key += base->newNumber < 0 ? base->name : decimal(base->newNumber);
        const Style* const next = nextOf(style);
        key.append(1, u'\0').append(next == nullptr || next->name.empty() ? style.name : next->name);
        key += u'\0';
        if (const Style* link = linkOf(style)) key += link->name;
        return key;
    }

    void define(const Style& style, std::int32_t number) {
        if (conflict_ == StyleConflict::rename || style.name.empty()) return;
        definitions_.try_emplace(nameKey(style.name, style.kind), Definition{number, style.look});
    }

    // The one that the style's text is to have; null when the style is added. The looks of sections and tables cannot
    // be written into their text.
    const Definition* otherDefinition(const Style& style) const {
        if (host_ || style.isPlain) return nullptr;
        const bool isOfText = style.kind == StyleKind::paragraph || style.kind == StyleKind::character;
        if (conflict_ == StyleConflict::keep && !isOfText) return nullptr;
        const auto found = definitions_.find(nameKey(style.name, style.kind));
        return found == definitions_.end() ? nullptr : &found->second;
    }

    void leaveOut(Style& style, const Definition& other) {
        style.newNumber = other.number;
        style.isLeftOut = true;
        if (style.kind == StyleKind::section || style.kind == StyleKind::table || style.look == other.look) return;
        if (conflict_ == StyleConflict::host) {
            style.direct = {directWords(other.look), style.look};
        } else {
            style.direct = {undoingWords(other.look, style.look) + directWords(style.look), {}};
        }
    }

    void settle(Style& style) {
        std::u16string key = keyOf(style);
        const Definition* const other = numbersByKey_.count(key) == 0 ? otherDefinition(style) : nullptr;
        if (other != nullptr) return leaveOut(style, *other);
        const auto [known, isNew] = numbersByKey_.emplace(std::move(key), NumberMap::none);
        if (isNew || host_) {
            style.isNew = true;
            const std::u16string_view number = style.number();
            const bool keeps = host_ && number[0] != u'-' && fresh_.take(number);
            known->second = keeps ? wholeNumber(number).value() : fresh_.next();
            if (known->second == 0) {
                hasNormal_ = true;
                normalLook_ = style.look.substr(0, longestLook);
                if (!style.base.number.empty()) normalLook_ += u"\\sbasedon";
            }
            const bool isNormal = known->second == 0 || (host_ && style.name == u"normal");
            changesPlain_ = changesPlain_ || (isNormal && !(style.look.empty() && style.base.number.empty()));
            if (!style.name.empty()) claimName(style);
            define(style, known->second);
        }
        style.newNumber = known->second;
    }

    void claimName(Style& style) {
        const auto [known, isFree] = lastOfName_.emplace(style.name, 1);
        if (isFree || host_) return;
        std::int32_t& last = known->second;  // outlives the iterator
        do {
            style.suffix = u" (" + decimal(++last) + u")";
        } while (!lastOfName_.emplace(style.name + style.suffix, 1).second);
    }

    // The words that keep a style from inheriting spacing. In LibreOffice a style inherits the spacing of its base
    // unless the base is style 0; a document's style 0, which has another number now, inherits that of the host's style
    // 0.
    std::u16string ownSpacing(const Style& style) const {
        if (!tolerant_ || host_ || style.kind != StyleKind::paragraph) return {};
        const Style* const base = baseOf(style);
        const bool isNormal = base == nullptr && style.number() == u"0";
        const bool wasNormal = base != nullptr && style.base.number == u"0" && base->newNumber != 0;
        if (!isNormal && !wasNormal) return {};
        const std::u16string& inherited = isNormal ? normalLook_ : base->look;
        std::u16string words;
        for (const std::u16string_view letters : {u"sb", u"sa", u"sl"}) {
            const bool lacks = findWord(inherited, letters) && !findWord(style.look, letters);
            if (lacks) words.append(u"\\").append(letters).append(u"0");
        }
        return words;
    }

    // Whether LibreOffice would show words of the base instead of the style's own. It removes from every style with a
    // base the words that the host's style 0 has with the same number, and the base's then apply.
    bool losesWords(const Style& style) const {
        if (!tolerant_ || host_ || style.kind != StyleKind::paragraph || style.base.number.empty()) return false;
        const Style* const base = baseOf(style);
        if (base != nullptr && base->newNumber == 0) return false;
        const auto says = [](std::u16string_view look, const ControlWord& word) {
            const auto found = findWord(look, word.letters);
            return found && found->number == word.number;
        };
        for (std::size_t at = 0; (at = normalLook_.find(u'\\', at)) != normalLook_.npos; ++at) {
            const ControlWord word = readWord(normalLook_, at);
            const bool isLost = !word.letters.empty() && says(style.look, word);
            if (isLost && (base == nullptr || base == &style || !says(base->look, word))) return true;
        }
        return false;
    }

    // Whether LibreOffice would give the character style RTF's size: it gives every style with a base the defaults of
    // the words that style 0 has and the style has not. The document's own style 0 has no size.
    bool gainsSize(const Style& style) const {
        if (!tolerant_ || host_ || style.kind != StyleKind::character || style.base.number.empty()) return false;
        const Style* const base = baseOf(style);
        const Style* const own = ownNormal();
        const auto hasSize = [](std::u16string_view look) { return findWord(look, u"fs").has_value(); };
        const bool isOnlyBase = base == nullptr || base->look.empty() || base->look == u"\\additive";
        return isOnlyBase && hasSize(normalLook_) && !hasSize(style.look) && (own == nullptr || !hasSize(own->look));
    }

    void append(const Style& style) {
        std::u16string entry(style.entry);
        TextEdits edits;
        // A reference to a style that the document lacks must not refer to another document's.
        const auto point = [&](const ControlWord& reference, const Style* to, std::int32_t otherwise) {
            if (reference.number.empty() || (to == nullptr && host_)) return;
            const std::int32_t number = to == nullptr ? otherwise : to->newNumber;
            edits.replaceVal(reference.numberBegin(), reference.end, decimal(number));
        };
        const Style* const base = baseOf(style);
        std::u16string number = decimal(style.newNumber) + style.font + ownSpacing(style);
        if (base != nullptr && conflict_ == StyleConflict::keep) number += base->direct.words;
        if (!style.own.number.empty()) {
            edits.replaceVal(style.own.numberBegin(), style.own.end, number);
        } else if (style.newNumber != 0) {
            edits.replaceVal(1, 1, u"\\s" + number);
        }
        if (losesWords(style) || gainsSize(style)) {
            edits.cut(style.base.begin, endWithBlank(style.entry, style.base));
        } else {
            point(style.base, base, noStyle);
        }
        point(style.next, nextOf(style), style.newNumber);
        point(style.link, linkOf(style), noStyle);
        if (!style.suffix.empty()) edits.insert(style.nameEnd, style.suffix);
        edits.apply(entry);
        entries_.append(u"\r\n").append(entry);
    }

    const Style* ownNormal() const {
        const std::int32_t place = places_[static_cast<std::size_t>(StyleKind::paragraph)].find(u"0");
        return place == NumberMap::none ? nullptr : &styles_[static_cast<std::size_t>(place)];
    }

    // One for all documents that need it.
    std::int32_t plainStyle() {
        Style style = read(normal);
        style.isPlain = true;
        settle(style);
        if (style.isNew) append(style);
        return style.newNumber;
    }

    bool tolerant_;
    StyleConflict conflict_;
    MergeReport* report_;
    bool host_ = true;
    bool hasSheet_ = false;
    bool hasNormal_ = false;     // style 0 is there
    std::u16string normalLook_;  // the host's style 0; empty when it changes nothing
    bool changesPlain_ = false;  // the host's style 0, or the one named "Normal", changes something

    std::unordered_map<std::u16string, std::int32_t> numbersByKey_;
    NameIndex lastOfName_;                                        // the highest suffix given to a name; 1 without one
    std::unordered_map<std::u16string, Definition> definitions_;  // by name and kind, unless styles are renamed
    FreshNumbers fresh_;
    std::u16string entries_;

    // Of the current document.
    std::int32_t defaultStyle_ = NumberMap::none;  // which it does not define itself
    std::u16string sheet_;
    std::vector<Style> styles_;            // parts of the sheet
    std::array<NumberMap, kinds> places_;  // in styles_
};

}  // namespace velmor
