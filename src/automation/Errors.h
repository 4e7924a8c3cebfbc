#pragma once

#include <string_view>

#include "text/Error.h"

namespace velmor::automation {

// The errors that automation itself raises, with the texts that scripts know.
[[noreturn]] void raiseTypeMismatch();                          // 13
[[noreturn]] void raiseNoSuchMember(std::u16string_view name);  // 438, the name after the text
[[noreturn]] void raiseWrongArguments();                        // 450

}  // namespace velmor::automation
