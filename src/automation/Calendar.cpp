#include <chrono>
#include <cmath>

#include "automation/Convert.h"
#include "automation/Portable.h"

namespace velmor::automation {

namespace {

constexpr int daySeconds = 86400;
constexpr std::chrono::sys_days dayZero = std::chrono::year{1899} / 12 / 30;

struct DayAndSecond {
    int day = 0;
    int second = 0;
};

// Rounded to whole seconds; the fraction is the time of day, also of negative dates. Nothing
// outside the years 100 to 9999.
std::optional<DayAndSecond> split(Date date) {
    if (!(date.days > -657435 && date.days < 2958466)) return std::nullopt;
    const double whole = std::trunc(date.days);
    DayAndSecond parts{static_cast<int>(whole),
                       static_cast<int>(std::lround(std::fabs(date.days - whole) * daySeconds))};
    if (parts.second == daySeconds) parts = {parts.day + 1, 0};
    if (parts.day > 2958465) return std::nullopt;
    return parts;
}

DateFields fieldsOf(DayAndSecond parts) {
    const std::chrono::year_month_day day{dayZero + std::chrono::days{parts.day}};
    return {int{day.year()},
            static_cast<int>(unsigned{day.month()}),
            static_cast<int>(unsigned{day.day()}),
            parts.second / 3600,
            parts.second / 60 % 60,
            parts.second % 60};
}

bool isWithin(int value, int least, int most) {
    return least <= value && value <= most;
}

void appendNumber(std::u16string& text, int value, std::size_t digits = 1) {
    const std::string number = std::to_string(value);
    text.append(digits > number.size() ? digits - number.size() : 0, u'0').append(number.begin(), number.end());
}

// "2:07:09 PM"
void appendTime(std::u16string& text, const DateFields& fields) {
    appendNumber(text, (fields.hour + 11) % 12 + 1);
    appendNumber(text += u':', fields.minute, 2);
    appendNumber(text += u':', fields.second, 2);
    text += fields.hour < 12 ? u" AM" : u" PM";
}

}  // namespace

DateFields dateFields(Date date) {
    const auto parts = split(date);
    return parts ? fieldsOf(*parts) : DateFields{};
}

std::optional<Date> dateFromFields(const DateFields& fields) {
    if (!isWithin(fields.hour, 0, 23) || !isWithin(fields.minute, 0, 59) || !isWithin(fields.second, 0, 59) ||
        !isWithin(fields.year, 100, 9999) || !isWithin(fields.month, 1, 12) || !isWithin(fields.day, 1, 31)) {
        return std::nullopt;
    }
    const std::chrono::year_month_day day{std::chrono::year{fields.year},
                                          std::chrono::month{static_cast<unsigned>(fields.month)},
                                          std::chrono::day{static_cast<unsigned>(fields.day)}};
    if (!day.ok()) return std::nullopt;
    const double days = static_cast<double>((std::chrono::sys_days{day} - dayZero).count());
    const double time = (fields.hour * 3600 + fields.minute * 60 + fields.second) / double{daySeconds};
    return Date{days < 0 ? days - time : days + time};
}

namespace portable {

std::optional<std::u16string> dateText(Date date) {
    const auto parts = split(date);
    if (!parts) return std::nullopt;
    const DateFields fields = fieldsOf(*parts);
    std::u16string text;
    if (parts->day != 0) {
        appendNumber(text, fields.month);
        appendNumber(text += u'/', fields.day);
        appendNumber(text += u'/', fields.year);
        if (parts->second == 0) return text;
        text += u' ';
    }
    appendTime(text, fields);
    return text;
}

std::optional<std::u16string> storedDateText(Date date) {
    const auto parts = split(date);
    if (!parts) return std::nullopt;
    const DateFields fields = fieldsOf(*parts);
    std::u16string text;
    appendNumber(text, fields.day);
    text.append(1, u' ').append(monthNames[static_cast<std::size_t>(fields.month) - 1].substr(0, 3));
    appendNumber(text += u' ', fields.year, 4);
    appendTime(text += u' ', fields);
    return text;
}

}  // namespace portable

}  // namespace velmor::automation
