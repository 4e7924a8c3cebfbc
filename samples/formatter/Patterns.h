#pragma once

#include <string>
#include <string_view>

namespace sample {

// A date, in days since 30 December 1899, by a pattern. d dd day, ddd dddd its name, m mm month, mmm mmmm its name,
// yy yyyy year, h hh hour, n nn minute, s ss second, AM/PM (which makes the hours run from 1 to 12). Text in single
// quotes and every other character are written as they are. Names are English.
std::u16string formatDate(double days, std::u16string_view pattern);

// A number by a pattern: the run of "#", "0", "," and "." in it is the number, the text around it
// stays. "0" is a digit that is always written, "#" one that is written unless it is an outer zero,
// a "," before the point separates thousands, a "%" anywhere multiplies by 100. The 15 significant
// digits of the number are rounded half away from zero.
std::u16string formatNumber(double number, std::u16string_view pattern);

}  // namespace sample
