#include <gtest/gtest.h>

#include <ctime>
#include <optional>

#include "automation/Convert.h"
#include "automation/Portable.h"
#include "text/Encoding.h"

namespace velmor::automation {

void PrintTo(const DateFields& fields, std::ostream* stream) {
    *stream << fields.year << '-' << fields.month << '-' << fields.day << ' ' << fields.hour << ':' << fields.minute
            << ':' << fields.second;
}

namespace {

constexpr DateFields kMarch5{2004, 3, 5};
constexpr DateFields kAfternoon{2004, 3, 5, 14, 7, 9};
constexpr DateFields kTime{1899, 12, 30, 14, 7, 9};

struct ParseCase {
    const char16_t* text;
    DateFields fields;
};

TEST(Dates, AreRead) {
    // clang-format off
    const ParseCase cases[] = {
        {u"3/5/2004", kMarch5}, {u" 03/05/2004 ", kMarch5}, {u"3-5-2004", kMarch5}, {u"3 5 2004", kMarch5},
        {u"13/5/2004", {2004, 5, 13}},  // no thirteenth month: the day comes first
        {u"2004/3/5", kMarch5}, {u"2004-03-05", kMarch5}, {u"5 Mar 2004", kMarch5}, {u"5 march 2004", kMarch5},
        {u"5-MAR-2004", kMarch5}, {u"5Mar2004", kMarch5}, {u"Mar 5, 2004", kMarch5}, {u"Mar. 5, 2004", kMarch5},
        {u"Friday, March 5, 2004", kMarch5}, {u"2004 Mar 5", kMarch5}, {u"March 2004", {2004, 3, 1}},
        {u"3/2004", {2004, 3, 1}}, {u"3/5/00", {2000, 3, 5}}, {u"3/5/29", {2029, 3, 5}}, {u"3/5/30", {1930, 3, 5}},
        {u"3/5/99", {1999, 3, 5}}, {u"1/1/100", {100, 1, 1}}, {u"12/31/9999 23:59:59", {9999, 12, 31, 23, 59, 59}},
        {u"2/29/2000", {2000, 2, 29}}, {u"12/29/1899 6:00", {1899, 12, 29, 6}}, {u"14:07:09", kTime},
        {u"2:07:09 PM", kTime}, {u"2:07:09pm", kTime}, {u"14:07:09 PM", kTime}, {u"14.07.09", kTime},
        {u"2 PM", {1899, 12, 30, 14}}, {u"12 AM", {1899, 12, 30, 0}}, {u"12:30 PM", {1899, 12, 30, 12, 30}},
        {u"3/5/2004 2:07:09 PM", kAfternoon}, {u"5 Mar 2004 2:07:09 PM", kAfternoon},
        {u"5 Mar 2004, 14:07:09", kAfternoon}, {u"14:07:09 3/5/2004", kAfternoon}, {u"5 Mar 2004\r\n", kMarch5},
    };
    // clang-format on
    for (const auto& each : cases) {
        const auto date = parseDate(each.text);
        ASSERT_TRUE(date) << toUtf8(each.text);
        EXPECT_EQ(dateFields(*date), each.fields) << toUtf8(each.text);
    }
}

TEST(Dates, AreRefused) {
    // clang-format off
    const char16_t* const texts[] = {
        u"", u" ", u"abc", u"12", u"38051.5.1.1", u"-1", u"1e5", u"20040305", u"13/13/2004", u"2/29/2003",
        u"4/31/2004", u"0/1/2004", u"31 Apr 2004", u"5 Mar Apr 2004", u"Mar", u"Monday", u"AM", u"24:00", u"23:60",
        u"1:2:60", u"1:2:3:4", u"1:", u":30", u"13:00 AM", u"3/5/", u"/3/5", u"3//5", u"3/-5/2004", u"3/5/2004/6",
        u"3/5/10000", u"3/5/50000", u"3/5/099", u"5 Mar 2004 x", u"#3/5/2004#", u"2004-03-05T14:07:09",
        u"1st May 2004", u"99999999999999999999/1/1", u"14:07 15:07", u"2 AM PM", u"3.5.2004",
    };
    // clang-format on
    for (const auto* text : texts) {
        EXPECT_FALSE(parseDate(text)) << toUtf8(text);
    }
    EXPECT_FALSE(parseDate(std::u16string(1000000, u'1')));
    EXPECT_FALSE(parseDate(std::u16string(u"3/5/2004\0", 9)));
}

TEST(Dates, WithoutAYearAreOfThisYear) {
    const std::time_t now = std::time(nullptr);
    const int year = std::localtime(&now)->tm_year + 1900;
    EXPECT_EQ(dateFields(parseDate(u"3/5").value()), (DateFields{year, 3, 5}));
    EXPECT_EQ(dateFields(parseDate(u"13/5").value()), (DateFields{year, 5, 13}));
    EXPECT_EQ(dateFields(parseDate(u"5 March").value()), (DateFields{year, 3, 5}));
}

TEST(Dates, FlagsKeepTheDayOrTheTime) {
    EXPECT_EQ(parseDate(u"3/5/2004 12:00", 0, 1), Date{0.5});
    EXPECT_EQ(parseDate(u"3/5/2004 12:00", 0, 2), Date{38051});
}

struct TextCase {
    double days;
    const char16_t* text;
};

TEST(Dates, AreWritten) {
    // clang-format off
    const TextCase cases[] = {
        {38051, u"3/5/2004"}, {38051 + (14 * 3600 + 7 * 60 + 9) / 86400.0, u"3/5/2004 2:07:09 PM"},
        {0, u"12:00:00 AM"}, {0.5, u"12:00:00 PM"},
        {-0.25, u"6:00:00 AM"},  // the fraction is the time of day
        {-1, u"12/29/1899"}, {-1.25, u"12/29/1899 6:00:00 AM"},
        {1, u"12/31/1899"},          {38050.999999, u"3/5/2004"},  // rounds to midnight
        {-1.999999, u"12:00:00 AM"}, {2958465, u"12/31/9999"}, {-657434, u"1/1/100"},
    };
    // clang-format on
    for (const auto& each : cases) {
        EXPECT_EQ(portable::dateText(Date{each.days}), each.text) << each.days;
    }
    for (const double days : {2958466.0, 2958465.9999999, -657435.0, 1e300}) {
        EXPECT_FALSE(portable::dateText(Date{days})) << days;
    }
}

TEST(Dates, FieldsAndTextsComeBack) {
    for (int day = -657434; day <= 2958465; day += 997) {
        const int second = (day & 0xFFFF) % 86400;
        const double time = second / 86400.0;
        const Date date{day < 0 ? day - time : day + time};
        ASSERT_EQ(dateFromFields(dateFields(date)), date);
        const auto text = portable::dateText(date).value();
        ASSERT_EQ(portable::parseDate(text), date) << toUtf8(text);
    }
}

TEST(Dates, FieldsThatAreNoDate) {
    for (const DateFields& fields :
         {DateFields{99, 1, 1}, DateFields{10000, 1, 1}, DateFields{2003, 2, 29}, DateFields{2004, 13, 1},
          DateFields{2004, 0, 1}, DateFields{2004, 1, 0}, DateFields{2004, 1, 1, 24}, DateFields{2004, 1, 1, -1},
          DateFields{2004, -2147483647, 1}, DateFields{2004, 1, 257}}) {
        EXPECT_FALSE(dateFromFields(fields));
    }
}

}  // namespace
}  // namespace velmor::automation
