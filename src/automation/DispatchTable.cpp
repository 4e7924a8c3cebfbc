#include "automation/DispatchTable.h"

#include <algorithm>

#include "automation/Errors.h"
#include "text/Compare.h"

namespace velmor::automation {

namespace {

void refuseMissing(std::span<const Variant> required) {
    for (std::size_t index = 0; index < required.size(); ++index) {
        if (required[index].isMissing()) throw ArgumentError(450, index);
    }
}

}  // namespace

// Arguments that the member does not take itself go to the default member of the object that it gives.
Variant DispatchTable::invoke(Object& self, std::u16string_view name, InvokeKind kind,
                              std::span<Variant> arguments) const {
    const auto [row, own] = resolve(name, kind, arguments);
    Arguments typed(arguments.first(own));
    Variant given = row.call(self, typed);
    if (own == arguments.size()) return given;
    const ObjectRef object = given.object();
    if (!object) raiseNoSuchMember({});
    return object->invoke(u"", kind, arguments.subspan(own));
}

DispatchTable::Found DispatchTable::resolve(std::u16string_view name, InvokeKind kind,
                                            std::span<const Variant> arguments) const {
    const std::u16string_view asked = name.empty() ? default_ : name;
    const bool assigns = kind == InvokeKind::let || kind == InvokeKind::set;
    if (assigns && arguments.empty()) throw Error(450);
    const std::size_t count = arguments.size() - (assigns ? 1 : 0);
    const Row* const row = find(asked, kind);
    if (row && count <= row->maximum) {
        if (count < row->required) throw ArgumentError(450, count);
        refuseMissing(arguments.first(row->required));
        return {*row, arguments.size()};
    }
    const Row* const getter = find(asked, InvokeKind::get);
    if (getter && getter->givesObject) {
        const std::size_t own = getter->maximum;
        if (assigns ? count >= own : own == 0) return {*getter, own};
    }
    if (!row) raiseNoSuchMember(asked);
    throw Error(450);
}

template <class IsSought>
const DispatchTable::Row* DispatchTable::rowWhere(IsSought isSought) const noexcept {
    const auto row = std::ranges::find_if(rows_, isSought);
    return row == rows_.end() ? nullptr : &*row;
}

const DispatchTable::Row* DispatchTable::find(std::u16string_view name) const noexcept {
    return rowWhere([&](const Row& row) { return equalIgnoringCase(row.name, name); });
}

const DispatchTable::Row* DispatchTable::findId(std::int32_t id) const noexcept {
    return rowWhere([&](const Row& row) { return row.id == id; });
}

std::int32_t DispatchTable::parameter(std::int32_t id, std::u16string_view name) const noexcept {
    for (const Row& member : rows_) {
        if (member.id != id) continue;
        std::u16string_view left = member.parameters;
        for (std::int32_t position = 0; !left.empty(); ++position) {
            const std::size_t end = left.find(u' ');
            if (equalIgnoringCase(left.substr(0, end), name)) return position;
            left.remove_prefix(end + 1);
        }
    }
    return -1;
}

const DispatchTable::Row* DispatchTable::find(std::u16string_view name, InvokeKind kind) const noexcept {
    using enum InvokeKind;
    constexpr InvokeKind partners[] = {get, method, set, let};
    for (const InvokeKind each : {kind, partners[static_cast<std::size_t>(kind)]}) {
        const auto isSought = [&](const Row& row) { return row.kind == each && equalIgnoringCase(row.name, name); };
        if (const Row* const row = rowWhere(isSought)) return row;
    }
    return nullptr;
}

}  // namespace velmor::automation
