#include "platform/RegistryFile.h"

#include <algorithm>
#include <utility>

#include "text/Compare.h"

namespace velmor::platform {
namespace {

constexpr std::u16string_view kNarrowParts[] = {u"SOFTWARE\\WOW6432Node", u"SOFTWARE\\Classes\\WOW6432Node"};
constexpr std::size_t kNarrowPartLength = std::u16string_view(u"\\WOW6432Node").size();

// Removes the WOW6432Node part of the key; false if it has none.
bool takeNarrowPart(std::u16string& key) {
    for (const std::u16string_view part : kNarrowParts) {
        const bool below = key.size() == part.size() || (key.size() > part.size() && key[part.size()] == u'\\');
        if (!below || !equalIgnoringCase(std::u16string_view(key).substr(0, part.size()), part)) continue;
        key.erase(part.size() - kNarrowPartLength, kNarrowPartLength);
        return true;
    }
    return false;
}

std::u16string plainKey(std::u16string_view key) {
    std::u16string plain(key);
    takeNarrowPart(plain);
    return plain;
}

// The names of both lists, each once, those of the first list first.
std::vector<std::u16string> merged(std::vector<std::u16string> first, std::vector<std::u16string> second) {
    if (first.empty()) return second;
    std::vector<std::u16string> known;
    for (const auto& name : first) known.push_back(lowerCase(name));
    std::sort(known.begin(), known.end());
    for (auto& name : second) {
        if (!std::binary_search(known.begin(), known.end(), lowerCase(name))) first.push_back(std::move(name));
    }
    return first;
}

}  // namespace

RegistryFile::RegistryFile(std::string_view bytes) {
    warnings_ = runRegistryScript(
        bytes, [this](std::u16string& key) -> RegistryTree& { return takeNarrowPart(key) ? narrow_ : wide_; });
}

std::optional<std::u16string> RegistryFile::value(std::u16string_view key, std::u16string_view name) const {
    const std::u16string plain = plainKey(key);
    auto found = narrow_.value(plain, name);
    return found ? found : wide_.value(plain, name);
}

std::vector<std::u16string> RegistryFile::valueNames(std::u16string_view key) const {
    const std::u16string plain = plainKey(key);
    return merged(narrow_.valueNames(plain), wide_.valueNames(plain));
}

std::vector<std::u16string> RegistryFile::subkeys(std::u16string_view key) const {
    const std::u16string plain = plainKey(key);
    return merged(narrow_.subkeys(plain), wide_.subkeys(plain));
}

}  // namespace velmor::platform
