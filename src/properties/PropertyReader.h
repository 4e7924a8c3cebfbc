#pragma once

#include <cstddef>
#include <string_view>

#include "properties/EntryScanner.h"
#include "properties/KeyedItems.h"
#include "properties/privProperties.h"

namespace velmor {

// Reads the text form into a collection: entries "name=value:" and names alone. A malformed value
// becomes plain text up to the next delimiter, marker included; a value that cannot be decoded stays
// raw. Decoding takes 256 MB at most. Only lack of memory raises an error.
class PropertyReader {
public:
    // decompressed: bytes that compressed values may still give, here and in the collections in values.
    PropertyReader(KeyedItems& items, platform::Services& services, std::size_t& decompressed);

    using Form = privProperties::ReadForm;
    void read(std::u16string_view text, Form form, std::u16string_view delimiter);

private:
    using Scanner = EntryScanner;
    using Spelling = KeyedItems::Spelling;
    using Child = privProperty::Child;
    using Name = std::u16string_view;  // as the text spells it

    void readEntries(const KeyedItems::Source& source, std::u16string_view delimiter, std::size_t from);
    // Each reads the value at `from`, right after the "=", and returns its end, the position of the
    // delimiter. npos means that the text is not of that form and that nothing was added.
    std::size_t readValue(Scanner& scanner, Name name, std::size_t from);
    std::size_t readQuoted(Scanner& scanner, Name name, std::size_t from);
    std::size_t readMarked(Scanner& scanner, Name name, std::size_t from);
    std::size_t readObject(Scanner& scanner, Name name, std::size_t from);
    std::size_t readDate(Scanner& scanner, Name name, std::size_t from);
    std::size_t readPlain(Scanner& scanner, Name name, std::size_t from);

    bool addDecoded(Name name, std::u16string_view marker, std::u16string_view content);
    automation::ObjectRef pictureOf(std::u16string_view content) const;
    automation::ObjectRef collectionOf(std::u16string_view content) const;
    bool keepChild(Name name, Child which, std::u16string_view content);
    privProperty& ownerOfChild(Name name);
    void addSpan(Name name, std::u16string_view value, Spelling spelling);
    privProperty& add(Name name, automation::Variant value);

    KeyedItems& items_;
    platform::Services& services_;
    std::size_t& decompressed_;
    const automation::Date now_;
    const KeyedItems::Source* source_ = nullptr;
    Form form_ = Form::stored;
    bool any_ = false;  // an entry was read
};

}  // namespace velmor
