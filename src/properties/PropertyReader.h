#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "properties/EntryScanner.h"
#include "properties/KeyedItems.h"
#include "properties/SlabPool.h"
#include "properties/privProperties.h"

namespace velmor {

// Reads the text form into a collection: entries "name=value:" and names alone. What is malformed
// becomes plain text up to the next delimiter, marker kept; what cannot be decoded stays raw.
// Decoding takes 256 MB at most. Nothing is raised but the lack of memory.
class PropertyReader {
public:
    // What one reading may take, values within values included.
    struct Limits {
        int level;                  // of collections written within values; beyond it they stay text
        std::size_t& decompressed;  // bytes that compressed values may still give
    };
    PropertyReader(privProperties& target, Limits limits);

    using Form = privProperties::ReadForm;
    void read(std::u16string_view text, Form form, std::u16string_view delimiter);

private:
    using Scanner = EntryScanner;
    // As the text spells it.
    struct Name {
        std::u16string_view text;
        bool plain;  // nothing to clean
        KeyedItems::Hash hash;
    };

    void readEntries(std::u16string_view text, std::u16string_view delimiter, std::size_t from);
    // Each reads the value at `from`, right after the "=", and returns its end, the place of the
    // delimiter; npos: the text is not of that form and nothing was added.
    std::size_t readValue(Scanner& scanner, Name name, std::size_t from);
    std::size_t readQuoted(Scanner& scanner, Name name, std::size_t from);
    std::size_t readMarked(Scanner& scanner, Name name, std::size_t from);
    std::size_t readObject(Scanner& scanner, Name name, std::size_t from);
    std::size_t readDate(Scanner& scanner, Name name, std::size_t from);
    std::size_t readPlain(Scanner& scanner, Name name, std::size_t from);

    bool addDecoded(Name name, std::u16string_view marker, std::u16string_view content);
    automation::ObjectRef pictureOf(std::u16string_view content) const;
    automation::ObjectRef collectionOf(std::u16string_view content) const;
    bool keepChild(Name name, bool attributes, std::u16string_view content);
    privProperty& ownerOfChild(Name name);
    privProperty& make(Name name, bool upperCaseName);
    void add(Name name, automation::Variant&& value);
    void addText(Name name, std::u16string_view text, std::int32_t encoding = 0);

    privProperties& target_;
    const Limits limits_;
    const automation::Date now_;
    SlabPool pool_;
    Form form_ = Form::stored;
    privProperty* last_ = nullptr;  // the one read just before
};

}  // namespace velmor
