#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "properties/EntryScanner.h"
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

    void read(std::u16string_view text, bool asTag, std::u16string_view delimiter);

private:
    using Scanner = EntryScanner;

    void readEntries(std::u16string_view text, std::u16string_view delimiter, std::size_t from);
    // Each reads the value at `from`, right behind the "=", and gives its end, where the delimiter
    // stands; npos: the text is not of that form and nothing was added.
    std::size_t readValue(Scanner& scanner, std::u16string_view name, std::size_t from);
    std::size_t readQuoted(Scanner& scanner, std::u16string_view name, std::size_t from);
    std::size_t readMarked(Scanner& scanner, std::u16string_view name, std::size_t from);
    std::size_t readObject(Scanner& scanner, std::u16string_view name, std::size_t from);
    std::size_t readDate(Scanner& scanner, std::u16string_view name, std::size_t from);
    std::size_t readPlain(Scanner& scanner, std::u16string_view name, std::size_t from);

    bool addDecoded(std::u16string_view name, std::u16string_view marker, std::u16string_view content);
    automation::ObjectRef pictureOf(std::u16string_view content) const;
    automation::ObjectRef collectionOf(std::u16string_view content) const;
    bool keepChild(std::u16string_view name, bool attributes, std::u16string_view content);
    privProperty& ownerOfChild(std::u16string_view name);
    void add(std::u16string_view name, automation::Variant&& value, std::int32_t encoding = 0);

    privProperties& target_;
    const Limits limits_;
    const automation::Date now_;
    SlabPool pool_;
    bool asTag_ = false;
    privProperty* last_ = nullptr;  // the one read just before
};

}  // namespace velmor
