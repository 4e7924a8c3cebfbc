#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace velmor {

// The source of every error that is raised here, as hosts read it.
inline constexpr char16_t errorSource[] = u"kvVelmor3";

// "Automation error": for failures of foreign code that give no number.
inline constexpr std::int32_t automationError = 440;

// The text that scripts know for an automation error's number.
std::u16string errorText(std::int32_t number);

// The form of errors inside the engine. Classic automation numbers: 5 invalid procedure call, 6 overflow, 7 out
// of memory, 13 type mismatch, 429 cannot create the object, 438 no such member. Translated once, in com/ and
// cli/.
class Error : public std::exception {
public:
    Error(std::int32_t number, std::u16string source, std::u16string description);
    Error(std::int32_t number, std::u16string description) : Error(number, errorSource, std::move(description)) {}
    explicit Error(std::int32_t number) : Error(number, errorText(number)) {}

    std::int32_t number() const noexcept { return number_; }
    const std::u16string& source() const noexcept { return source_; }
    const std::u16string& description() const noexcept { return description_; }

    // The description in UTF-8.
    const char* what() const noexcept override { return what_.c_str(); }

private:
    std::int32_t number_;
    std::u16string source_;
    std::u16string description_;
    std::string what_;
};

}  // namespace velmor
