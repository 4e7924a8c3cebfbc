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

    bool exists(std::u16string_view path) const override;
    std::optional<std::string> read(std::u16string_view path) const override;
    bool write(std::u16string_view path, std::string_view bytes) override;
    bool create(std::u16string_view path) override;
    bool append(std::u16string_view path, std::string_view bytes) override;
    bool remove(std::u16string_view path) override;
    std::optional<std::u16string> realPath(std::u16string_view path) const override;
    bool makeFolder(std::u16string_view path) override;

private:
    struct Known {
        std::optional<bool> exists;
        std::optional<std::optional<std::string>> bytes;
        std::optional<std::optional<std::u16string>> realPath;
        std::size_t size = 0;
    };

    template <class Value, class Ask>
    Value known(std::u16string_view path, std::optional<Value> Known::*member, const Ask& ask) const;
    void forget(std::u16string_view path);

    platform::Files& real_;
    mutable std::shared_mutex mutex_;
    mutable std::unordered_map<std::u16string, Known> known_;
    mutable std::size_t kept_ = 0;  // bytes
};

}  // namespace velmor::cli
