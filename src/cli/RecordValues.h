#pragma once

#include <string>
#include <string_view>

#include "automation/Object.h"
#include "cli/JsonText.h"

namespace velmor::cli {

// The forms of values in the record of an evaluation (docs/run-records.md). Every text and every bytes come back as
// they were. What reads a form throws Json::exception or std::invalid_argument for one that it does not know.

// A JSON string, or {"utf16": base64} for a text with half a surrogate pair.
Json textForm(std::u16string_view text);
std::u16string textOf(const Json& form);

// A JSON string for UTF-8, else {"base64": ...}.
Json bytesForm(std::string_view bytes);
std::string bytesOf(const Json& form);

// A JSON number, or a string with the bits of one that JSON does not have.
Json numberForm(double number);
double numberOf(const Json& form);

Json kindForm(automation::InvokeKind kind);
automation::InvokeKind kindOf(const Json& form);

// ["long", 5], ["text", "abc"], ... of a value that is no object. Throws std::invalid_argument for arrays and for what
// only the host understands.
Json valueForm(const automation::Variant& value);
automation::Variant valueOf(const Json& form);

}  // namespace velmor::cli
