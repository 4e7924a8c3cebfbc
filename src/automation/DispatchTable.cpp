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
    return indexOf(std::ranges::find_if(rows_, [&](const Row& row) { return equalIgnoringCase(row.name, name); }));
}

std::size_t DispatchTable::findId(std::int32_t id) const noexcept {
    return indexOf(std::ranges::find(rows_, id, &Row::id));
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

std::size_t DispatchTable::find(std::u16string_view name, InvokeKind kind) const noexcept {
    using enum InvokeKind;
    constexpr InvokeKind partners[] = {get, method, set, let};
    for (const InvokeKind each : {kind, partners[static_cast<std::size_t>(kind)]}) {
        const auto isSought = [&](const Row& row) { return row.kind == each && equalIgnoringCase(row.name, name); };
        const std::size_t row = indexOf(std::ranges::find_if(rows_, isSought));
        if (row != npos) return row;
    }
    return npos;
}

}  // namespace velmor::automation
