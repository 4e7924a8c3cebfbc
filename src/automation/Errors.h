#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "text/Error.h"

namespace velmor::automation {

// A call of a member with an argument that it does not take: raised before the member runs. 13 for one of another type,
// 6 for a number out of range, 450 for one that must not be left out.
class ArgumentError : public Error {
public:
    ArgumentError(std::int32_t number, std::size_t argument) : Error(number), argument_(argument) {}

    std::size_t argument() const noexcept { return argument_; }  // its position, from 0

private:
    std::size_t argument_;
};

// Raises 438, with the name after the text.
[[noreturn]] inline void raiseNoSuchMember(std::u16string_view name) {
    std::u16string description = errorText(438);
    if (!name.empty()) description.append(u": '").append(name).append(u"'");
    throw Error(438, std::move(description));
}

// For calls of foreign objects: an error counts as no answer, if there is to be one.
template <class Call>
auto quietly(Call&& call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception&) {
        return decltype(call())();
    }
}

}  // namespace velmor::automation
