#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Portable.h"
#include "automation/Variant.h"

namespace velmor::automation {

// Conversions of values. Each returns nothing where the platform's would raise; the caller chooses
// what failure means. Natively en-US (Portable.h); on Windows, once installed, the platform's own in
// the user's locale (PlatformConversions.h). An object converts through its default value where it
// has one. Cost: linear in a text, constant for the rest.

// The value itself, or an object's default value, which is then kept in `kept`. Null when the object
// has none: default members can give objects in turn, and a longer chain leads nowhere.
inline constexpr int defaultValueLimit = 8;
const Variant* plainValue(const Variant& value, Variant& kept);

template <auto portableForm>
auto converted(const Variant& value) -> decltype(portableForm(value));

// Integers: rounded half to even, out of range fails, texts must be numeric. "&H" and "&O" texts
// wrap at 32 bits, for an Integer at 16.
inline constexpr auto toLong = converted<portable::toLong>;
inline constexpr auto toInteger = converted<portable::toInteger>;
inline constexpr auto toDouble = converted<portable::toDouble>;
inline constexpr auto toSingle = converted<portable::toSingle>;
inline constexpr auto toBoolean = converted<portable::toBoolean>;
inline constexpr auto toCurrency = converted<portable::toCurrency>;
inline constexpr auto toDecimal = converted<portable::toDecimal>;
inline constexpr auto toDate = converted<portable::toDate>;  // numbers are days, texts are parsed

// Text: Empty gives "", true gives "True", a date "3/5/2004 2:07:09 PM" (the day or the time alone
// where the other is 0), a number its shortest text of 15 (single: 7) significant digits, ties away
// from zero, without a minus zero, in exponent form ("1E+15", "1.5E-05") from 1E+15 (1E+07) on and
// below 0.0001. Null, errors, objects without a default value and arrays fail.
inline constexpr auto toText = converted<portable::toText>;

std::u16string textOrError(const Variant& value);  // raises 13 instead

// The date that the platform takes the text for, with the caller's locale (0: the user's) and flags, as
// VarDateFromStr. Natively: m/d/yyyy (d/m/yyyy where only that is a date), yyyy-mm-dd, day, month name and year in any
// usual order, with "/", "-", "," or blanks between them; h:nn, h:nn:ss, "." for ":", with or without AM or PM; or
// both. Without a year it is the current one; years of two digits are 1930 to 2029. These en-US rules hold for every
// locale, and of the flags 1 keeps only the time and 2 only the day.
std::optional<Date> parseDate(std::u16string_view text, std::uint32_t localeId = 0, std::uint32_t flags = 0);

// The platform's equality of two values (as "=" in a script). Nothing where it would raise. Texts
// are compared unit by unit; a text equals no number, not even the one that it spells; Null equals
// nothing. Numbers are compared with the precision of the lesser type.
std::optional<bool> equalValues(const Variant& left, const Variant& right);

// True for true, yes, y, t, on (any case, outer blanks aside) and for every number and numeric text
// that is not 0; false for the rest.
bool truth(const Variant& value);

// Calendar fields of a date, rounded to whole seconds. Outside the years 100 to 9999: those of day 0.
struct DateFields {
    int year = 1899, month = 12, day = 30, hour = 0, minute = 0, second = 0;
    bool operator==(const DateFields&) const = default;
};
DateFields dateFields(Date date);
std::optional<Date> dateFromFields(const DateFields& fields);  // years 100 to 9999

}  // namespace velmor::automation
