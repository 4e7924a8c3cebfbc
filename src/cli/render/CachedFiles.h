#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/Services.h"

namespace velmor::cli {

// Files that are read once while it lives, however many evaluations include them: all letters of a run see the same
// ones, also when they change meanwhile. Remembers what is absent, too. What is written here is read anew. Keeps 64 MB
// at most; beyond that, files are read each time. For any number of threads.
class CachedFiles final : public platform::Files {
public:
    explicit CachedFiles(platform::Files& real) : real_(real) {}

    bool exists(std::u16string_view path) const override {
        return known(path, &Known::exists, [&] { return real_.exists(path); });
    }
    std::optional<std::string> read(std::u16string_view path) const override {
        return known(path, &Known::bytes, [&] { return real_.read(path); });
    }
    std::optional<std::u16string> realPath(std::u16string_view path) const override {
        return known(path, &Known::realPath, [&] { return real_.realPath(path); });
    }
    bool write(std::u16string_view path, std::string_view bytes) override {
        return changed(path, real_.write(path, bytes));
    }
    bool create(std::u16string_view path) override { return changed(path, real_.create(path)); }
    bool append(std::u16string_view path, std::string_view bytes) override {
        return changed(path, real_.append(path, bytes));
    }
    bool remove(std::u16string_view path) override { return changed(path, real_.remove(path)); }
    bool makeFolder(std::u16string_view path) override { return real_.makeFolder(path); }

private:
    struct Known {
        std::optional<bool> exists;
        std::optional<std::optional<std::string>> bytes;
        std::optional<std::optional<std::u16string>> realPath;
        std::size_t size = 0;
    };

    static constexpr std::size_t mostKept = std::size_t{1} << 26;
    static constexpr std::size_t entryOverhead = 256;  // bytes that an answer takes besides its text

    static std::size_t sizeOf(bool) { return entryOverhead; }
    template <class Text>
    static std::size_t sizeOf(const std::optional<Text>& text) {
        return entryOverhead + (text ? text->size() * sizeof(typename Text::value_type) : 0);
    }

    template <class Value, class Ask>
    Value known(std::u16string_view path, std::optional<Value> Known::*member, const Ask& ask) const {
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

    // What was known of the file is forgotten. Gives back whether the change was made.
    bool changed(std::u16string_view path, bool isDone) {
        const std::scoped_lock lock(mutex_);
        const auto found = known_.find(std::u16string(path));
        if (found == known_.end()) return isDone;
        kept_ -= found->second.size;
        known_.erase(found);
        return isDone;
    }

    platform::Files& real_;
    mutable std::shared_mutex mutex_;
    mutable std::unordered_map<std::u16string, Known> known_;
    mutable std::size_t kept_ = 0;  // bytes
};

}  // namespace velmor::cli
