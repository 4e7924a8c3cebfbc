#include "Patterns.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>

namespace sample {
namespace {

constexpr std::array<std::u16string_view, 7> dayNames = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                         u"Thursday", u"Friday", u"Saturday"};
constexpr std::array<std::u16string_view, 12> monthNames = {u"January",   u"February", u"March",    u"April",
                                                            u"May",       u"June",     u"July",     u"August",
                                                            u"September", u"October",  u"November", u"December"};

struct DateFields {
    int year, month, day, weekday, hour, minute, second;  // weekday: 0 is Sunday
};

// Rounded to whole seconds. The fraction is the time of the day, also of negative dates.
DateFields fieldsOf(double days) {
    using namespace std::chrono;
    double whole = std::trunc(days);
    long seconds = std::lround(std::fabs(days - whole) * 86400);
    if (seconds == 86400) {
        whole += 1;
        seconds = 0;
    }
    const sys_days day = sys_days(1899y / December / 30) + std::chrono::days(static_cast<int>(whole));
    const year_month_day date(day);
    const int second = static_cast<int>(seconds);
    return {int(date.year()),
            static_cast<int>(unsigned(date.month())),
            static_cast<int>(unsigned(date.day())),
            static_cast<int>(weekday(day).c_encoding()),
            second / 3600,
            second / 60 % 60,
            second % 60};
}

std::u16string digits(int number, std::size_t least) {
    std::array<char, 12> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    std::u16string text(buffer.data(), end);
    if (text.size() < least) text.insert(0, least - text.size(), u'0');
    return text;
}

std::u16string namePart(std::u16string_view name, std::size_t run) {
    return std::u16string(run == 3 ? name.substr(0, 3) : name);
}

// A date part written `run` times, as "mmm"; empty for any other character.
std::u16string datePart(char16_t part, std::size_t run, const DateFields& fields, bool halfDays) {
    switch (part) {
        case u'd':
            return run >= 3 ? namePart(dayNames[static_cast<std::size_t>(fields.weekday)], run)
                            : digits(fields.day, run);
        case u'm':
            return run >= 3 ? namePart(monthNames[static_cast<std::size_t>(fields.month - 1)], run)
                            : digits(fields.month, run);
        case u'y':
            return run >= 3 ? digits(fields.year, 4) : digits(fields.year % 100, 2);
        case u'h':
            return digits(halfDays ? (fields.hour + 11) % 12 + 1 : fields.hour, run);
        case u'n':
            return digits(fields.minute, run);
        case u's':
            return digits(fields.second, run);
        default:
            return {};
    }
}

// The 15 significant decimal digits of a number above 0, and the place of its point among them.
struct Decimals {
    std::u16string digits;
    int point = 0;
};

Decimals decimalsOf(double number) {
    if (number == 0) return {u"0", 1};
    std::array<char, 40> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::scientific, 14).ptr;
    const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const auto mark = text.find('e');
    int exponent = 0;
    const auto* sign = text.data() + mark + 1;
    std::from_chars(*sign == '+' ? sign + 1 : sign, end, exponent);
    Decimals result{{}, exponent + 1};
    for (const char digit : text.substr(0, mark)) {
        if (digit != '.') result.digits += static_cast<char16_t>(digit);
    }
    return result;
}

// Cuts after `places` decimal places, half away from zero.
void roundTo(Decimals& value, int places) {
    const int kept = value.point + places;
    if (kept >= static_cast<int>(value.digits.size())) return;
    const bool up = kept >= 0 && value.digits[static_cast<std::size_t>(kept)] >= u'5';
    value.digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
    if (!up) return;
    std::size_t index = value.digits.size();
    while (index > 0 && value.digits[index - 1] == u'9') value.digits[--index] = u'0';
    if (index > 0) {
        ++value.digits[index - 1];
    } else {
        value.digits.insert(0, 1, u'1');
        ++value.point;
    }
}

char16_t digitAt(const Decimals& value, int index) {
    const bool known = index >= 0 && index < static_cast<int>(value.digits.size());
    return known ? value.digits[static_cast<std::size_t>(index)] : u'0';
}

struct NumberShape {
    std::size_t begin = 0, end = 0;  // of the digits' places within the pattern
    int whole = 0;                   // digits before the point that are always written
    int always = 0, most = 0;        // digits after it
    bool thousands = false;
};

NumberShape shapeOf(std::u16string_view pattern) {
    NumberShape shape;
    constexpr std::u16string_view places = u"#0,.";
    shape.begin = std::min(pattern.find_first_of(u"#0"), pattern.size());
    shape.end = std::min(pattern.find_first_not_of(places, shape.begin), pattern.size());
    bool afterPoint = false;
    for (const char16_t unit : pattern.substr(shape.begin, shape.end - shape.begin)) {
        if (unit == u'.') afterPoint = true;
        if (unit == u',' && !afterPoint) shape.thousands = true;
        if (unit == u'0') ++(afterPoint ? shape.always : shape.whole);
        if (afterPoint && (unit == u'0' || unit == u'#')) ++shape.most;
    }
    return shape;
}

std::u16string wholePart(const Decimals& value, const NumberShape& shape) {
    const int count = std::max(value.point, shape.whole);
    std::u16string text;
    for (int left = count; left > 0; --left) {
        text += digitAt(value, value.point - left);
        if (shape.thousands && left > 1 && left % 3 == 1) text += u',';
    }
    return text;
}

std::u16string fraction(const Decimals& value, const NumberShape& shape) {
    std::u16string text;
    for (int place = 0; place < shape.most; ++place) text += digitAt(value, value.point + place);
    while (static_cast<int>(text.size()) > shape.always && text.back() == u'0') text.pop_back();
    return text.empty() ? text : u'.' + text;
}

}  // namespace

std::u16string formatDate(double days, std::u16string_view pattern) {
    const DateFields fields = fieldsOf(days);
    const bool halfDays = pattern.find(u"AM/PM") != pattern.npos;
    std::u16string text;
    for (std::size_t at = 0; at < pattern.size();) {
        if (pattern.substr(at, 5) == u"AM/PM") {
            text += fields.hour < 12 ? u"AM" : u"PM";
            at += 5;
        } else if (const auto close = pattern.find(u'\'', at + 1); pattern[at] == u'\'' && close != pattern.npos) {
            text += pattern.substr(at + 1, close - at - 1);
            at = close + 1;
        } else {
            const std::size_t end = std::min(pattern.find_first_not_of(pattern[at], at), pattern.size());
            const std::u16string part = datePart(pattern[at], end - at, fields, halfDays);
            text += part.empty() ? std::u16string(pattern.substr(at, end - at)) : part;
            at = end;
        }
    }
    return text;
}

std::u16string formatNumber(double number, std::u16string_view pattern) {
    if (!std::isfinite(number)) return {};
    const NumberShape shape = shapeOf(pattern);
    const bool percent = pattern.find(u'%') != pattern.npos;
    Decimals value = decimalsOf(std::fabs(number));
    if (percent && number != 0) value.point += 2;
    roundTo(value, shape.most);
    const bool zero = value.digits.find_first_not_of(u'0') == value.digits.npos;
    if (zero) value = {u"", 0};
    std::u16string text(pattern.substr(0, shape.begin));
    if (number < 0 && !zero) text += u'-';
    text += wholePart(value, shape) + fraction(value, shape);
    text += pattern.substr(shape.end);
    return text;
}

}  // namespace sample
