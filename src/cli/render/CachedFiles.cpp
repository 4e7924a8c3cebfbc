#include "cli/render/CachedFiles.h"

#include <utility>

namespace velmor::cli {
namespace {

constexpr std::size_t mostKept = std::size_t{1} << 26;
constexpr std::size_t entryOverhead = 256;  // bytes that an answer takes besides its text

std::size_t sizeOf(bool) {
    return entryOverhead;
}
template <class Text>
std::size_t sizeOf(const std::optional<Text>& text) {
    return entryOverhead + (text ? text->size() * sizeof(typename Text::value_type) : 0);
}

}  // namespace

template <class Value, class Ask>
Value CachedFiles::known(std::u16string_view path, std::optional<Value> Known::*member, const Ask& ask) const {
    const std::u16string key(path);
    {
        const std::shared_lock lock(mutex_);
        const auto found = known_.find(key);
        if (found != known_.end() && found->second.*member) return *(found->second.*member);
    }
    Value value = ask();
    const std::scoped_lock lock(mutex_);
    if (kept_ + sizeOf(value) > mostKept) return value;
    Known& entry = known_[key];
    if (!(entry.*member)) {
        entry.size += sizeOf(value);
        kept_ += sizeOf(value);
        entry.*member = value;
    }
    return value;
}

void CachedFiles::forget(std::u16string_view path) {
    const std::scoped_lock lock(mutex_);
    const auto found = known_.find(std::u16string(path));
    if (found == known_.end()) return;
    kept_ -= found->second.size;
    known_.erase(found);
}

bool CachedFiles::exists(std::u16string_view path) const {
    return known(path, &Known::exists, [&] { return real_.exists(path); });
}

std::optional<std::string> CachedFiles::read(std::u16string_view path) const {
    return known(path, &Known::bytes, [&] { return real_.read(path); });
}

std::optional<std::u16string> CachedFiles::realPath(std::u16string_view path) const {
    return known(path, &Known::realPath, [&] { return real_.realPath(path); });
}

bool CachedFiles::write(std::u16string_view path, std::string_view bytes) {
    const bool done = real_.write(path, bytes);
    forget(path);
    return done;
}

bool CachedFiles::create(std::u16string_view path) {
    const bool done = real_.create(path);
    forget(path);
    return done;
}

bool CachedFiles::append(std::u16string_view path, std::string_view bytes) {
    const bool done = real_.append(path, bytes);
    forget(path);
    return done;
}

bool CachedFiles::remove(std::u16string_view path) {
    const bool done = real_.remove(path);
    forget(path);
    return done;
}

bool CachedFiles::makeFolder(std::u16string_view path) {
    return real_.makeFolder(path);
}

}  // namespace velmor::cli
