#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "properties/privProperty.h"

namespace velmor {

class KeyedItems;
class PropertyEnumerator;

// Hears of each name that somebody looks up in a collection, by any member that reads. Adding is no look-up.
class LookupListener {
public:
    virtual ~LookupListener() = default;
    virtual void lookedUp(std::u16string_view psName, bool isFound) noexcept = 0;
};

// An ordered, keyed collection of properties. It keeps the order of insertion, and a name may occur more than
// once. Keys ignore case. Only the first property of a name carries the key; the others are reached by index or
// enumeration, and Multiple of the first is set. The key is removed with its property.
//
// Members suppress errors: a missing name or index yields nothing, the default, or no action. Lack of memory
// raises 7. Looking a name up, adding and indexing take constant time; Remove, Insert and Move may shift
// references. After Build, entries become properties on request. A collection keeps its children alive and, if
// it is stored in itself, itself: the host must then remove it again.
class privProperties final : public automation::Object {
public:
    // Collections nested deeper, or in themselves, count as empty when they are written, sized
    // and counted.
    static constexpr int maximumNesting = 100;
    // Characters of a collection's text that may be encoded within the text of another one.
    static constexpr std::size_t maximumNestedLength = std::size_t{1} << 25;

    // The services must outlive the collection and everything that it hands out.
    explicit privProperties(platform::Services& services);
    ~privProperties() override;
    privProperties(const privProperties&) = delete;
    privProperties& operator=(const privProperties&) = delete;

    // With pbReplaceOriginal, a property of that name takes the value; otherwise a new property is
    // added at the end. Either way its Changed is False afterwards. Names are stored as given.
    PropertyRef Add(std::u16string_view psName, automation::Variant pvValue, bool pbReplaceOriginal = false);
    PropertyRef AddStr(std::u16string_view psName, std::u16string psValue, bool pbReplaceOriginal = false) {
        return Add(psName, std::move(psValue), pbReplaceOriginal);
    }
    PropertyRef AddLng(std::u16string_view psName, std::int32_t plValue, bool pbReplaceOriginal = false) {
        return Add(psName, plValue, pbReplaceOriginal);
    }
    PropertyRef AddDbl(std::u16string_view psName, double pdValue, bool pbReplaceOriginal = false) {
        return Add(psName, pdValue, pbReplaceOriginal);
    }
    PropertyRef AddSng(std::u16string_view psName, float pnValue, bool pbReplaceOriginal = false) {
        return Add(psName, pnValue, pbReplaceOriginal);
    }
    PropertyRef AddDate(std::u16string_view psName, automation::Date pdValue, bool pbReplaceOriginal = false) {
        return Add(psName, pdValue, pbReplaceOriginal);
    }
    PropertyRef AddBoolean(std::u16string_view psName, bool pbValue, bool pbReplaceOriginal = false) {
        return Add(psName, pbValue, pbReplaceOriginal);
    }
    PropertyRef AddInt(std::u16string_view psName, std::int16_t piValue, bool pbReplaceOriginal = false) {
        return Add(psName, piValue, pbReplaceOriginal);
    }
    PropertyRef AddObject(std::u16string_view psName, automation::ObjectRef poValue, bool pbReplaceOriginal = false) {
        return Add(psName, std::move(poValue), pbReplaceOriginal);
    }

    // The same as AddStr with pbReplaceOriginal, for data of which most is never asked for as a property.
    void SetText(std::u16string_view psName, std::u16string_view psValue);

    // By text: the keyed property of that name, also for a text such as "1". By any other value:
    // the 1-based index. Null for an absent entry.
    template <std::same_as<automation::Variant> Index>
    PropertyRef Item(const Index& pvIndexKey) const {
        return itemAt(pvIndexKey);
    }
    PropertyRef Item(std::u16string_view psName) const;
    PropertyRef Item(std::int32_t plIndex) const;
    // What ValueStr of that property would give, without a copy if it is a text: valid until the property changes. Else
    // `buffer` receives it. Nothing if there is no such property.
    std::optional<std::u16string_view> textOf(std::u16string_view psName, std::u16string& buffer) const;
    // Must last as long as the collection, or until it is replaced; null for none.
    void listener(LookupListener* listener) noexcept { listener_ = listener; }
    std::int32_t Count() const noexcept;
    void Remove(const automation::Variant& pvIndexKey);

    // Enumerates the properties in order, also while entries are added and removed. The enumerator keeps the
    // entries that it was made for: RemoveAll, Sort and Build do not disturb it.
    std::shared_ptr<PropertyEnumerator> NewEnum() const;

    // Adds a property with the default value if the name is absent. A missing default is empty.
    PropertyRef GetProperty(std::u16string_view psName, const automation::Variant& pvDefaultValue = {});
    automation::Variant GetValue(std::u16string_view psName, const automation::Variant& pvDefaultValue = {}) const {
        return valueOr(psName, pvDefaultValue.isMissing() ? automation::Variant() : pvDefaultValue,
                       &privProperty::Value);
    }
    std::u16string GetValueStr(std::u16string_view psName, std::u16string_view psDefaultValue = {}) const {
        return valueOr(psName, std::u16string(psDefaultValue), &privProperty::ValueStr);
    }
    // Moves the text out of the property's string builder. A property without a builder gets an empty one
    // first, and so gives "".
    std::u16string GetValueStrCatDump(std::u16string_view psName, std::u16string_view psDefaultValue = {});
    std::int32_t GetValueLng(std::u16string_view psName, std::int32_t plDefaultValue = 0) const {
        return valueOr(psName, plDefaultValue, &privProperty::ValueLng);
    }
    std::int16_t GetValueInt(std::u16string_view psName, std::int16_t piDefaultValue = 0) const {
        return valueOr(psName, piDefaultValue, &privProperty::ValueInt);
    }
    double GetValueDbl(std::u16string_view psName, double pnDefaultValue = 0) const {
        return valueOr(psName, pnDefaultValue, &privProperty::ValueDbl);
    }
    float GetValueSng(std::u16string_view psName, float pnDefaultValue = 0) const {
        return valueOr(psName, pnDefaultValue, &privProperty::ValueSng);
    }
    automation::Date GetValueDate(std::u16string_view psName, automation::Date pdDefaultValue = {}) const;
    // Null if the property exists but holds no object.
    automation::ObjectRef GetValueObject(std::u16string_view psName, automation::ObjectRef poDefault = {}) const;
    bool GetValueBoolean(std::u16string_view psName, bool pbDefaultValue = false) const {
        return valueOr(psName, pbDefaultValue, &privProperty::ValueBoolean);
    }

    // The text form. Stored writes every entry as name, "=", value, ":"; Delimited is the same
    // without substitution characters in plain values; TagCommand gives the first entry as its
    // name and ">" and a long 0 as its name alone, Command is its delimited partner.
    // Cost: linear in the text. Text beyond 2^30 - 1 characters raises 7; so does a collection within
    // another one whose own text is longer than maximumNestedLength and has to be encoded.
    std::u16string Stored() const { return text(TextForm::stored, 0); }
    std::u16string Delimited() const { return text(TextForm::delimited, 0); }
    std::u16string TagCommand() const { return text(TextForm::tagCommand, 0); }
    std::u16string Command() const { return text(TextForm::command, 0); }

    // Read the text form; never raise, whatever the text. White space at its end is ignored. Lack of memory
    // raises 7 and loses no entry that was there. Without pbAppendValues the entries are replaced. With
    // pbTagString the text begins with "NAME>", names become upper-case, and drives and nested tags do not end
    // a value. An empty delimiter is ":". Cost: linear in the text. The four do the same; they differ in how
    // hosts pass the text.
    void Build(std::u16string_view psString, bool pbAppendValues = false, bool pbTagString = false,
               std::u16string_view psDelimiter = u":") {
        BuildInternal(psString, pbAppendValues, pbTagString, psDelimiter);
    }
    void BuildByVal(std::u16string_view psString, bool pbAppendValues = false, bool pbTagString = false,
                    std::u16string_view psDelimiter = u":") {
        BuildInternal(psString, pbAppendValues, pbTagString, psDelimiter);
    }
    void BuildByDelimited(std::u16string_view psString, bool pbAppendValues = false, bool pbTagString = false,
                          std::u16string_view psDelimiter = u":") {
        BuildInternal(psString, pbAppendValues, pbTagString, psDelimiter);
    }

    void BuildInternal(std::u16string_view psString, bool pbAppendValues, bool pbTagString,
                       std::u16string_view psDelimiter) {
        read(psString, pbTagString ? ReadForm::tag : ReadForm::stored, pbAppendValues, psDelimiter);
    }
    // Of a list file: unquoted paths and nested tags are one value, as in a tag.
    void BuildList(std::u16string_view psString) { read(psString, ReadForm::list, false, u":"); }

    // Property files: Stored, or Delimited, as single-byte characters in the ANSI code page. A text
    // that the code page cannot hold, or that would begin like a byte order mark, is written as
    // UTF-8 after its mark instead, so no character is lost. With a password the file holds the
    // enciphered text (common/Cipher.h). The file is replaced whole or not at all; False when not.
    bool SaveFile(std::u16string_view psFileName, std::u16string_view psPassword = {}) const {
        return save(TextForm::stored, psFileName, psPassword);
    }
    bool SaveToFile(std::u16string_view psFileName, std::u16string_view psPassword = {}) const {
        return save(TextForm::delimited, psFileName, psPassword);
    }
    // False when there is no such file or it cannot be read: the collection stays as it is. Else True, and the
    // file's entries replace its own. With a wrong password, or for a changed or not enciphered file, these are
    // none.
    bool LoadFromFile(std::u16string_view psFileName, std::u16string_view psPassword = {});

    // A search condition: each term is a property, named by the word or the quoted phrase; its value is the
    // operator that joins it to the terms before ("AND", "OR", "NEAR", "AND NOT", "OR NOT"), the long 0 for the
    // first one. Terms are appended. Linear.
    void BuildByContainsQuery(std::u16string_view psSearchString);
    // The condition as text: a value whose text is longer than one character is an operator.
    std::u16string ContainsQuery() const;

    void RemoveAll();
    void Dispose();        // calls Dispose on every property
    bool Changed() const;  // True when one property is

    // Ascending by name (by character code); among equal names a later property goes before the
    // first one of its own type with a greater value, else to the end. Types above 15 go before
    // the first of their type. This is no strict order, so the outcome depends on the present one.
    // Of several of one name, the first in the present order gets the key. O(n log n). Lack of
    // memory raises 7 and leaves the order.
    void Sort();

    // As Add, but a new entry is placed before position plIndex, and a replaced one moves there.
    // Below 1 or beyond Count: appended.
    PropertyRef Insert(std::int32_t plIndex, std::u16string_view psName, automation::Variant pvValue,
                       bool pbReplaceOriginal = false);
    // To position plToIndex, lowered to Count and raised to 1.
    void Move(const automation::Variant& pvIndexKey, std::int32_t plToIndex);
    std::int32_t GetPropertyIndex(std::u16string_view psName) const;  // 0 when absent; linear
    std::int32_t CountTotal() const { return countTotal(0); }         // children included; raises 6 on overflow

    // Sums of the properties' own figures, each counted once for having attributes and once more
    // for having child properties, so not at all without (on purpose). Raise 6 on overflow.
    std::int32_t Size() const;
    std::int32_t SizeStored() const { return sizeStored(0); }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"privProperties"; }

private:
    friend class privProperty;
    friend class PropertyReader;
    friend class PropertyWriter;

    enum class TextForm { stored, delimited, tagCommand, command };
    // list: as stored, except that unquoted values end as in a tag (EntryScanner::tagValueEnd).
    enum class ReadForm { stored, list, tag };

    template <class Value>
    Value valueOr(std::u16string_view psName, Value otherwise, Value (privProperty::*get)() const) const {
        const PropertyRef found = Item(psName);
        return found == nullptr ? otherwise : (*found.*get)();
    }
    PropertyRef itemAt(const automation::Variant& pvIndexKey) const;
    std::size_t positionOf(const automation::Variant& pvIndexKey) const;
    template <class Take>
    void forEachMade(Take take) const;
    template <class SizeOf>
    std::int32_t sumOfSizes(SizeOf sizeOf) const;
    std::u16string text(TextForm form, int level) const;
    void read(std::u16string_view text, ReadForm form, bool append, std::u16string_view delimiter);
    bool save(TextForm form, std::u16string_view psFileName, std::u16string_view psPassword) const;
    std::int32_t sizeStored(int level) const;
    std::int32_t countTotal(int level) const;

    platform::Services& services_;
    KeyedItems& items() const;

    mutable std::shared_ptr<KeyedItems> items_;  // null until it is needed
    // True while this collection is being written, sized or counted. Reached again, it counts as empty.
    mutable bool visiting_ = false;
    LookupListener* listener_ = nullptr;

    // Enters the collection for writing, sizing or counting, until the result is destroyed. Null if it is already
    // entered or too deep; then it counts as empty.
    struct Leave {
        void operator()(bool* visiting) const noexcept { *visiting = false; }
    };
    std::unique_ptr<bool, Leave> enter(int level) const {
        if (visiting_ || level > maximumNesting) return nullptr;
        visiting_ = true;
        return std::unique_ptr<bool, Leave>(&visiting_);
    }
};

using PropertiesRef = std::shared_ptr<privProperties>;

}  // namespace velmor
