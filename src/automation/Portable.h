#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Variant.h"

// The conversions of Convert.h in en-US, without the platform and without any C or C++ locale.
// Built everywhere, so that a test can hold them against the platform's. Values are plain: an
// object or an array does not convert (Convert.h asks objects for their default value first).
namespace velmor::automation::portable {

std::optional<std::int32_t> toLong(const Variant& value);
std::optional<std::int16_t> toInteger(const Variant& value);
std::optional<double> toDouble(const Variant& value);
std::optional<float> toSingle(const Variant& value);
std::optional<bool> toBoolean(const Variant& value);
std::optional<Currency> toCurrency(const Variant& value);
std::optional<Decimal> toDecimal(const Variant& value);
std::optional<Date> toDate(const Variant& value);
std::optional<std::u16string> toText(const Variant& value);

std::optional<double> parseNumber(std::u16string_view text);

// flags: 1 keeps only the time of day, 2 only the day (VAR_TIMEVALUEONLY, VAR_DATEVALUEONLY).
std::optional<Date> parseDate(std::u16string_view text, std::uint32_t flags = 0);
// The year of dates that have none, and another one for this thread (0: the current one).
int currentYear();
void assumeYear(int year) noexcept;
// "3/5/2004 2:07:09 PM"; the day alone when the time is 0, the time alone on day 0. Nothing
// outside the years 100 to 9999.
std::optional<std::u16string> dateText(Date date);
// "5 Mar 2004 2:07:09 PM", to whole seconds, with a year of four digits. Nothing outside the years 100
// to 9999.
std::optional<std::u16string> storedDateText(Date date);

inline constexpr std::array<std::u16string_view, 12> monthNames{u"January",   u"February", u"March",    u"April",
                                                                u"May",       u"June",     u"July",     u"August",
                                                                u"September", u"October",  u"November", u"December"};

std::optional<bool> equalValues(const Variant& left, const Variant& right);

}  // namespace velmor::automation::portable
