#include "platform/RegistryFile.h"

#include <algorithm>
#include <utility>

#include "text/Compare.h"

namespace velmor::platform {
namespace {

constexpr std::u16string_view kNarrowParts[] = {u"SOFTWARE\\WOW6432Node", u"SOFTWARE\\Classes\\WOW6432Node"};
constexpr std::size_t kNarrowPartLength = std::u16string_view(u"\\WOW6432Node").size();

struct Place {
    std::u16string key;
    bool narrow = false;
};

// The key without its WOW6432Node.
Place placeOf(std::u16string_view key) {
    for (const std::u16string_view part : kNarrowParts) {
        const bool below = key.size() == part.size() || (key.size() > part.size() && key[part.size()] == u'\\');
        if (!below || !equalIgnoringCase(key.substr(0, part.size()), part)) continue;
        std::u16string plain(key.substr(0, part.size() - kNarrowPartLength));
        plain += key.substr(part.size());
        return {std::move(plain), true};
    }
    return {std::u16string(key), false};
}

// The names of both, each once; those of the first keep their order and come first.
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
    warnings_ = RegistryScript::run(bytes, *this);
}

std::optional<std::u16string> RegistryFile::value(std::u16string_view key, std::u16string_view name) const {
    const std::u16string plain = placeOf(key).key;
    const std::u16string* found = narrow_.value(plain, name);
    if (!found) found = wide_.value(plain, name);
    return found ? std::optional(*found) : std::nullopt;
}

std::vector<std::u16string> RegistryFile::valueNames(std::u16string_view key) const {
    const std::u16string plain = placeOf(key).key;
    return merged(narrow_.valueNames(plain), wide_.valueNames(plain));
}

std::vector<std::u16string> RegistryFile::subkeys(std::u16string_view key) const {
    const std::u16string plain = placeOf(key).key;
    return merged(narrow_.subkeys(plain), wide_.subkeys(plain));
}

void RegistryFile::addKey(std::u16string_view key) {
    const Place place = placeOf(key);
    (place.narrow ? narrow_ : wide_).addKey(place.key);
}

void RegistryFile::removeKey(std::u16string_view key) {
    const Place place = placeOf(key);
    (place.narrow ? narrow_ : wide_).removeKey(place.key);
}

void RegistryFile::set(std::u16string_view key, std::u16string_view name, std::u16string_view value) {
    const Place place = placeOf(key);
    (place.narrow ? narrow_ : wide_).set(place.key, name, value);
}

void RegistryFile::removeValue(std::u16string_view key, std::u16string_view name) {
    const Place place = placeOf(key);
    (place.narrow ? narrow_ : wide_).removeValue(place.key, name);
}

}  // namespace velmor::platform
