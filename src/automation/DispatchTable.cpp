#include "automation/DispatchTable.h"

#include <algorithm>

#include "automation/Errors.h"
#include "text/Compare.h"

namespace velmor::automation {

namespace {

bool isAssignment(InvokeKind kind) noexcept {
    return kind == InvokeKind::let || kind == InvokeKind::set;
}

void refuseMissing(std::span<const Variant> required) {
    for (std::size_t index = 0; index < required.size(); ++index) {
        if (required[index].isMissing()) throw ArgumentError(450, index);
    }
}

}  // namespace

DispatchTable::DispatchTable(std::u16string_view defaultMember, std::vector<Row> rows)
    : default_(defaultMember), rows_(std::move(rows)) {
    byHash_.reserve(rows_.size());
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        byHash_.emplace_back(hashIgnoringCase(rows_[row].name), row);
    }
    std::sort(byHash_.begin(), byHash_.end());
}

// Arguments that the member does not take itself go to the default member of the object that it gives.
Variant DispatchTable::invoke(Object& self, std::u16string_view name, InvokeKind kind,
                              std::span<Variant> arguments) const {
    const auto [row, own] = resolve(name, kind, arguments);
    Arguments typed(arguments.first(own));
    Variant given = rows_[row].call(self, typed);
    if (own == arguments.size()) return given;
    const ObjectRef object = given.object();
    if (!object) raiseNoSuchMember({});
    return object->invoke(u"", kind, arguments.subspan(own));
}

DispatchTable::Found DispatchTable::resolve(std::u16string_view name, InvokeKind kind,
                                            std::span<const Variant> arguments) const {
    const std::u16string_view asked = name.empty() ? default_ : name;
    const bool assigns = isAssignment(kind);
    if (assigns && arguments.empty()) throw Error(450);
    const std::size_t count = arguments.size() - (assigns ? 1 : 0);
    const std::size_t row = find(asked, kind);
    if (row != npos && count <= rows_[row].maximum) {
        if (count < rows_[row].required) throw ArgumentError(450, count);
        refuseMissing(arguments.first(rows_[row].required));
        return {row, arguments.size()};
    }
    const std::size_t getter = find(asked, InvokeKind::get);
    if (getter != npos && rows_[getter].givesObject) {
        const std::size_t own = rows_[getter].maximum;
        if (assigns ? count >= own : own == 0) return {getter, own};
    }
    if (row == npos) raiseNoSuchMember(asked);
    throw Error(450);
}

std::size_t DispatchTable::find(std::u16string_view name) const noexcept {
    for (const auto kind : {MemberKind::get, MemberKind::method, MemberKind::let, MemberKind::set}) {
        if (const std::size_t row = find(name, kind); row != npos) return row;
    }
    return npos;
}

std::size_t DispatchTable::findId(std::int32_t id) const noexcept {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row& each) { return each.id == id; });
    return found == rows_.end() ? npos : static_cast<std::size_t>(found - rows_.begin());
}

std::size_t DispatchTable::parameter(std::int32_t id, std::u16string_view name) const noexcept {
    for (const Row& member : rows_) {
        if (member.id != id) continue;
        std::u16string_view left = member.parameters;
        for (std::size_t index = 0; !left.empty(); ++index) {
            const std::size_t end = left.find(u' ');
            if (equalIgnoringCase(left.substr(0, end), name)) return index;
            left.remove_prefix(end + 1);
        }
    }
    return npos;
}

std::size_t DispatchTable::find(std::u16string_view name, MemberKind kind) const noexcept {
    const std::size_t hash = hashIgnoringCase(name);
    auto entry = std::lower_bound(byHash_.begin(), byHash_.end(), std::pair(hash, std::size_t{0}));
    for (; entry != byHash_.end() && entry->first == hash; ++entry) {
        const Row& member = rows_[entry->second];
        if (member.kind == kind && equalIgnoringCase(member.name, name)) return entry->second;
    }
    return npos;
}

std::size_t DispatchTable::find(std::u16string_view name, InvokeKind kind) const noexcept {
    constexpr MemberKind both[][2] = {{MemberKind::method, MemberKind::get},
                                      {MemberKind::get, MemberKind::method},
                                      {MemberKind::let, MemberKind::set},
                                      {MemberKind::set, MemberKind::let}};
    const auto& [first, second] = both[static_cast<std::size_t>(kind)];
    const std::size_t row = find(name, first);
    return row != npos ? row : find(name, second);
}

}  // namespace velmor::automation
