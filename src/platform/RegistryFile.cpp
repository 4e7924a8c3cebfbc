#include "platform/RegistryFile.h"

#include <set>
#include <utility>

#include "text/Compare.h"

namespace velmor::platform {
namespace {

constexpr std::u16string_view narrowParts[] = {u"SOFTWARE\\WOW6432Node", u"SOFTWARE\\Classes\\WOW6432Node"};
constexpr std::size_t narrowPartLength = std::u16string_view(u"\\WOW6432Node").size();

// Removes the WOW6432Node part of the key; false if it has none.
bool takeNarrowPart(std::u16string& key) {
    for (const std::u16string_view part : narrowParts) {
        const bool below = key.size() == part.size() || (key.size() > part.size() && key[part.size()] == u'\\');
        if (!below || !equalIgnoringCase(std::u16string_view(key).substr(0, part.size()), part)) continue;
        key.erase(part.size() - narrowPartLength, narrowPartLength);
        return true;
    }
    return false;
}

std::u16string plainKey(std::u16string_view key) {
    std::u16string plain(key);
    takeNarrowPart(plain);
    return plain;
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

// Each name once, those of the 32-bit part first.
std::vector<std::u16string> RegistryFile::names(std::u16string_view key, List list) const {
    std::vector<std::u16string> found;
    std::set<std::u16string> known;
    for (const RegistryTree* tree : {&narrow_, &wide_}) {
        for (std::u16string& name : (tree->*list)(plainKey(key))) {
            if (known.insert(lowerCase(name)).second) found.push_back(std::move(name));
        }
    }
    return found;
}

}  // namespace velmor::platform
