#include "properties/DateText.h"

#include <array>
#include <charconv>

#include "automation/Convert.h"
#include "text/Compare.h"

namespace velmor {

using automation::Date;
using automation::DateFields;

namespace {

constexpr std::array<std::u16string_view, 12> kMonths = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                                         u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
constexpr std::size_t kLongestDate = 64;
constexpr double kFirstDay = -657434, kDayAfterLast = 2958466;  // 1 January 100, 1 January 10000

void appendNumber(std::u16string& text, int number, int width) {
    std::array<char, 12> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text.append(static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, width - (end - digits.data()))), u'0');
    text.append(digits.data(), end);
}

// Reads the parts of a date from left to right. After a failure, complete() is false.
class DateCursor {
public:
    explicit DateCursor(std::u16string_view text) : text_(text) {}

    int number(std::size_t fewest, std::size_t most) {
        int value = 0;
        std::size_t count = 0;
        while (count < most && count < text_.size() && text_[count] >= u'0' && text_[count] <= u'9') {
            value = value * 10 + (text_[count++] - u'0');
        }
        take(count, count >= fewest);
        return value;
    }

    bool literal(std::u16string_view expected) {
        const bool found = equalIgnoringCase(text_.substr(0, expected.size()), expected);
        if (found) text_.remove_prefix(expected.size());
        return found;
    }

    void require(std::u16string_view expected) { valid_ = literal(expected) && valid_; }

    int month() {
        for (std::size_t i = 0; i < kMonths.size(); ++i) {
            if (literal(kMonths[i])) return static_cast<int>(i) + 1;
        }
        valid_ = false;
        return 0;
    }

    bool complete() const { return valid_ && text_.empty(); }

private:
    void take(std::size_t count, bool valid) {
        text_.remove_prefix(count);
        valid_ = valid_ && valid;
    }

    std::u16string_view text_;
    bool valid_ = true;
};

std::optional<Date> storedDate(std::u16string_view text) {
    DateCursor cursor(text);
    DateFields fields;
    fields.day = cursor.number(1, 2);
    cursor.require(u" ");
    fields.month = cursor.month();
    cursor.require(u" ");
    fields.year = cursor.number(3, 4);
    cursor.require(u" ");
    const int hour = cursor.number(1, 2);
    cursor.require(u":");
    fields.minute = cursor.number(2, 2);
    cursor.require(u":");
    fields.second = cursor.number(2, 2);
    const bool afternoon = cursor.literal(u" PM");
    if (!afternoon) cursor.require(u" AM");
    if (!cursor.complete() || hour < 1 || hour > 12) return std::nullopt;
    fields.hour = hour % 12 + (afternoon ? 12 : 0);
    return automation::dateFromFields(fields);
}

}  // namespace

std::optional<std::u16string> dateText(Date date) {
    if (!(date.days > kFirstDay - 1 && date.days < kDayAfterLast)) return std::nullopt;
    const DateFields fields = automation::dateFields(date);
    if (fields.year < 100 || fields.year > 9999) return std::nullopt;
    std::u16string text;
    text.reserve(24);
    appendNumber(text, fields.day, 1);
    text.append(1, u' ').append(kMonths[static_cast<std::size_t>(fields.month) - 1]).append(1, u' ');
    appendNumber(text, fields.year, 4);
    text += u' ';
    appendNumber(text, fields.hour % 12 == 0 ? 12 : fields.hour % 12, 1);
    text += u':';
    appendNumber(text, fields.minute, 2);
    text += u':';
    appendNumber(text, fields.second, 2);
    text += fields.hour < 12 ? u" AM" : u" PM";
    return text;
}

std::optional<Date> dateFromText(std::u16string_view text) {
    if (text.size() > kLongestDate) return std::nullopt;
    if (const auto date = storedDate(text)) return date;
    return automation::isDateText(text) ? automation::parseDate(text) : std::nullopt;
}

}  // namespace velmor
