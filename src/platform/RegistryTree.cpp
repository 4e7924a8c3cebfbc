#include "platform/RegistryTree.h"

#include <algorithm>

#include "text/Compare.h"

namespace velmor::platform {
namespace {

std::u16string_view withoutSeparators(std::u16string_view key) {
    while (!key.empty() && key.back() == u'\\') key.remove_suffix(1);
    return key;
}

std::u16string sortKey(std::u16string_view key) {
    std::u16string result = lowerCase(withoutSeparators(key));
    std::replace(result.begin(), result.end(), u'\\', u'\0');
    return result;
}

}  // namespace

RegistryTree::Key& RegistryTree::keyAt(std::u16string_view key) {
    const auto [place, isNew] = keys_.try_emplace(sortKey(key));
    if (isNew) place->second.path = withoutSeparators(key);
    return place->second;
}

const RegistryTree::Key* RegistryTree::find(std::u16string_view key) const {
    const auto place = keys_.find(sortKey(key));
    return place == keys_.end() ? nullptr : &place->second;
}

void RegistryTree::set(std::u16string_view key, std::u16string_view name, std::u16string_view value) {
    const Value added{++valuesSet_, std::u16string(name), {}};
    keyAt(key).values.try_emplace(lowerCase(name), added).first->second.text = value;
}

void RegistryTree::removeValue(std::u16string_view key, std::u16string_view name) {
    const auto target = keys_.find(sortKey(key));
    if (target != keys_.end()) target->second.values.erase(lowerCase(name));
}

void RegistryTree::removeKey(std::u16string_view key) {
    std::u16string begin = sortKey(key);
    keys_.erase(begin);
    begin.push_back(u'\0');
    std::u16string end = begin;
    end.back() = u'\1';
    keys_.erase(keys_.lower_bound(begin), keys_.lower_bound(end));
}

std::optional<std::u16string> RegistryTree::value(std::u16string_view key, std::u16string_view name) const {
    const Key* found = find(key);
    if (!found) return std::nullopt;
    const auto place = found->values.find(lowerCase(name));
    return place == found->values.end() ? std::nullopt : std::optional(place->second.text);
}

std::vector<std::u16string> RegistryTree::valueNames(std::u16string_view key) const {
    const Key* found = find(key);
    if (!found) return {};
    std::map<std::size_t, std::u16string_view> inOrder;
    for (const auto& [lowerName, value] : found->values) inOrder[value.order] = value.name;
    std::vector<std::u16string> names;
    for (const auto& [order, name] : inOrder) names.emplace_back(name);
    return names;
}

std::vector<std::u16string> RegistryTree::subkeys(std::u16string_view key) const {
    std::vector<std::u16string> names;
    std::u16string prefix = sortKey(key);
    if (!prefix.empty()) prefix.push_back(u'\0');
    auto place = keys_.lower_bound(prefix);
    while (place != keys_.end() && place->first.starts_with(prefix)) {
        const std::size_t end = std::min(place->first.find(u'\0', prefix.size()), place->first.size());
        if (end > prefix.size()) names.push_back(place->second.path.substr(prefix.size(), end - prefix.size()));
        // U+0001 sorts right after the separator: go on with the next key that is not below this one.
        place = keys_.lower_bound(place->first.substr(0, end) + u'\1');
    }
    return names;
}

}  // namespace velmor::platform
