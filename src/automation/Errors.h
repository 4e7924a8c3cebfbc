#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/Error.h"

namespace velmor::automation {

// A call of a member with an argument that it does not take: raised before the member runs. 13 for one of another type,
// 6 for a number out of range, 450 for one that must not be left out.
class ArgumentError : public Error {
public:
    ArgumentError(std::int32_t number, std::size_t argument);

    std::size_t argument() const noexcept { return argument_; }  // its position, from 0

private:
    std::size_t argument_;
};

// The text that scripts know for an automation error's number.
std::u16string errorText(std::int32_t number);

// The errors that automation itself raises, with these texts.
[[noreturn]] void raiseTypeMismatch();                          // 13
[[noreturn]] void raiseNoSuchMember(std::u16string_view name);  // 438, the name after the text
[[noreturn]] void raiseWrongArguments();                        // 450

// For calls of foreign objects: an error counts as no answer.
template <class Call>
auto quietly(Call&& call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace velmor::automation
