#include "automation/DispatchTable.h"

#include <algorithm>

#include "automation/Errors.h"
#include "text/Compare.h"

namespace velmor::automation {

MemberIndex::MemberIndex(std::vector<Entry> entries) : entries_(std::move(entries)) {
    byHash_.reserve(entries_.size());
    for (std::size_t row = 0; row < entries_.size(); ++row) {
        byHash_.emplace_back(hashIgnoringCase(entries_[row].name), row);
    }
    std::sort(byHash_.begin(), byHash_.end());
}

std::size_t MemberIndex::resolve(std::u16string_view name, InvokeKind kind, std::span<const Variant> arguments) const {
    const std::u16string_view asked = name.empty() ? default_ : name;
    const std::size_t row = find(asked, kind, arguments);
    if (row == npos) raiseNoSuchMember(asked);
    const bool assigns = kind == InvokeKind::let || kind == InvokeKind::set;
    if (assigns && arguments.empty()) raiseWrongArguments();
    const std::size_t count = arguments.size() - (assigns ? 1 : 0);
    if (count > entries_[row].maximum || count < entries_[row].required) raiseWrongArguments();
    const auto required = arguments.first(entries_[row].required);
    if (std::any_of(required.begin(), required.end(), [](const Variant& each) { return each.isMissing(); })) {
        raiseWrongArguments();
    }
    return row;
}

std::size_t MemberIndex::find(std::u16string_view name) const noexcept {
    for (const auto kind : {MemberKind::get, MemberKind::method, MemberKind::let, MemberKind::set}) {
        if (const std::size_t row = find(name, kind); row != npos) return row;
    }
    return npos;
}

std::size_t MemberIndex::find(std::u16string_view name, MemberKind kind) const noexcept {
    const std::size_t hash = hashIgnoringCase(name);
    auto entry = std::lower_bound(byHash_.begin(), byHash_.end(), std::pair(hash, std::size_t{0}));
    for (; entry != byHash_.end() && entry->first == hash; ++entry) {
        const Entry& member = entries_[entry->second];
        if (member.kind == kind && equalIgnoringCase(member.name, name)) return entry->second;
    }
    return npos;
}

std::size_t MemberIndex::find(std::u16string_view name, InvokeKind kind,
                              std::span<const Variant> arguments) const noexcept {
    const auto either = [&](MemberKind first, MemberKind second) {
        const std::size_t row = find(name, first);
        return row != npos ? row : find(name, second);
    };
    switch (kind) {
        case InvokeKind::method:
            return either(MemberKind::method, MemberKind::get);
        case InvokeKind::get:
            return either(MemberKind::get, MemberKind::method);
        case InvokeKind::set:
            return either(MemberKind::set, MemberKind::let);
        case InvokeKind::let:
            break;
    }
    const bool object = !arguments.empty() && arguments.back().isObject();
    return object ? either(MemberKind::let, MemberKind::set) : find(name, MemberKind::let);
}

}  // namespace velmor::automation
