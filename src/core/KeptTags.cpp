#include "core/KeptTags.h"

#include <algorithm>
#include <cstring>

namespace velmor {

namespace {

constexpr std::size_t kNumber = sizeof(std::uint32_t) / sizeof(char16_t);
constexpr std::size_t kHead = 3 * kNumber;
constexpr std::size_t kPlace = 2 * kNumber;
constexpr std::size_t kNested = 3 * kNumber;

void put(std::u16string& block, std::uint32_t number) {
    block += static_cast<char16_t>(number);
    block += static_cast<char16_t>(number >> 16);
}

std::uint32_t take(const char16_t*& at) {
    const std::uint32_t low = *at++;
    const std::uint32_t high = *at++;
    return low | high << 16;
}

}  // namespace

KeptTags::Address KeptTags::add(std::u16string_view value, const std::vector<ResultPlace>& places,
                                const std::vector<Nested>& nested) {
    const std::size_t size = kHead + value.size() + places.size() * kPlace + nested.size() * kNested;
    // A block never grows, so what lies in it stays where it is.
    if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < size) {
        blocks_.emplace_back().reserve(std::max(size, kBlock));
    }
    std::u16string& block = blocks_.back();
    const Address address = static_cast<Address>(blocks_.size() - 1) << 32 | block.size();
    put(block, static_cast<std::uint32_t>(value.size()));
    put(block, static_cast<std::uint32_t>(places.size()));
    put(block, static_cast<std::uint32_t>(nested.size()));
    block += value;
    for (const ResultPlace& place : places) {
        put(block, place.start);
        put(block, place.length);
    }
    for (const Nested& entry : nested) {
        put(block, entry.index);
        put(block, static_cast<std::uint32_t>(entry.address));
        put(block, static_cast<std::uint32_t>(entry.address >> 32));
    }
    size_ += size;
    return address;
}

KeptTags::Record KeptTags::read(Address address) const {
    const char16_t* at = blocks_[address >> 32].data() + static_cast<std::uint32_t>(address);
    const std::uint32_t length = take(at);
    Record record;
    record.places.resize(take(at));
    record.nested.resize(take(at));
    record.value = {at, length};
    at += length;
    for (ResultPlace& place : record.places) {
        place.start = take(at);
        place.length = take(at);
    }
    for (Nested& entry : record.nested) {
        entry.index = take(at);
        entry.address = take(at);
        entry.address |= static_cast<Address>(take(at)) << 32;
    }
    return record;
}

}  // namespace velmor
