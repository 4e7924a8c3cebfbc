#include "core/KeptTags.h"

#include <algorithm>
#include <functional>
#include <new>

namespace velmor {

namespace {

bool isPart(std::u16string_view text, std::u16string_view whole) noexcept {
    const std::less_equal<const char16_t*> notAfter;
    return notAfter(whole.data(), text.data()) && notAfter(text.data() + text.size(), whole.data() + whole.size());
}

template <class T>
std::vector<T> slice(const std::deque<T>& all, std::size_t first, std::size_t count) {
    const auto begin = all.begin() + static_cast<std::ptrdiff_t>(first);
    return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace

const char16_t* KeptTags::store(std::u16string_view text) {
    if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < text.size()) {
        blocks_.emplace_back().reserve(std::max(text.size(), kBlock));
    }
    std::u16string& block = blocks_.back();
    block += text;
    return block.data() + block.size() - text.size();
}

bool KeptTags::add(std::u16string_view value, std::u16string_view parent, const std::vector<ResultPlace>& places,
                   const std::vector<Nested>& nested, Index& record) noexcept {
    const bool inParent = isPart(value, parent);
    const std::size_t fixed = sizeof(Entry) + places.size() * sizeof(ResultPlace) + nested.size() * sizeof(Nested);
    const std::size_t size = (inParent ? 0 : value.size()) + fixed / sizeof(char16_t);
    if (size_ > kMost || size > kMost - size_) return false;
    try {
        Entry entry{nullptr,
                    0,
                    static_cast<std::uint32_t>(value.size()),
                    places_.size(),
                    nested_.size(),
                    static_cast<std::uint32_t>(places.size()),
                    static_cast<std::uint32_t>(nested.size())};
        if (inParent) {
            entry.offset = static_cast<std::uint32_t>(value.data() - parent.data());
        } else {
            entry.text = store(value);
        }
        places_.insert(places_.end(), places.begin(), places.end());
        nested_.insert(nested_.end(), nested.begin(), nested.end());
        entries_.push_back(entry);
    } catch (const std::bad_alloc&) {
        return false;
    }
    size_ += size;
    record = static_cast<Index>(entries_.size() - 1);
    return true;
}

KeptTags::Record KeptTags::read(Index record, std::u16string_view parent) const {
    const Entry& entry = entries_[record];
    const std::u16string_view value = entry.text != nullptr ? std::u16string_view(entry.text, entry.length)
                                                            : parent.substr(entry.offset, entry.length);
    return {value, slice(places_, entry.firstPlace, entry.places), slice(nested_, entry.firstNested, entry.nested)};
}

}  // namespace velmor
