#include <gtest/gtest.h>

#include <ctime>

#include "automation/Convert.h"
#include "automation/Portable.h"
#include "text/Encoding.h"

namespace velmor::automation {
namespace {

std::string shown(std::optional<Date> date) {
    return date ? toUtf8(portable::dateText(*date).value()) : "-";
}

// clang-format off
TEST(Dates, AreRead) {
    const struct {
        const char* date;
        std::vector<const char16_t*> texts;
    } cases[] = {
        {"3/5/2004", {u"3/5/2004", u" 03/05/2004 ", u"3-5-2004", u"3 5 2004", u"2004/3/5", u"2004-03-05", u"5 Mar 2004",
            u"5 march 2004", u"5-MAR-2004", u"5Mar2004", u"Mar 5, 2004", u"Mar. 5, 2004", u"Friday, March 5, 2004",
            u"2004 Mar 5", u"5 Mar 2004\r\n"}},
        {"5/13/2004", {u"13/5/2004"}},  // 13 is not a month: the day precedes it
        {"3/1/2004", {u"March 2004", u"3/2004"}}, {"3/5/2000", {u"3/5/00"}}, {"3/5/2029", {u"3/5/29"}},
        {"3/5/1930", {u"3/5/30"}}, {"1/1/100", {u"1/1/100"}}, {"2/29/2000", {u"2/29/2000"}},
        {"12/31/9999 11:59:59 PM", {u"12/31/9999 23:59:59"}}, {"12/29/1899 6:00:00 AM", {u"12/29/1899 6:00"}},
        {"2:07:09 PM", {u"14:07:09", u"2:07:09 PM", u"2:07:09pm", u"14:07:09 PM", u"14.07.09"}}, {"2:00:00 PM", {u"2 PM"}},
        {"12:00:00 AM", {u"12 AM"}}, {"12:30:00 PM", {u"12:30 PM"}},
        {"3/5/2004 2:07:09 PM", {u"3/5/2004 2:07:09 PM", u"5 Mar 2004, 14:07:09", u"14:07:09 3/5/2004"}},
        {"-", {
            u"", u" ", u"abc", u"12", u"38051.5.1.1", u"-1", u"1e5", u"20040305", u"13/13/2004", u"2/29/2003",
            u"4/31/2004", u"0/1/2004", u"31 Apr 2004", u"5 Mar Apr 2004", u"Mar", u"Monday", u"AM", u"24:00", u"23:60",
            u"1:2:60", u"1:2:3:4", u"1:", u":30", u"13:00 AM", u"3/5/", u"/3/5", u"3//5", u"3/-5/2004", u"3/5/2004/6",
            u"3/5/10000", u"3/5/50000", u"3/5/099", u"5 Mar 2004 x", u"#3/5/2004#", u"2004-03-05T14:07:09",
            u"1st May 2004", u"99999999999999999999/1/1", u"14:07 15:07", u"2 AM PM", u"3.5.2004"}},
    };
    // clang-format on
    for (const auto& row : cases) {
        for (const auto* text : row.texts) EXPECT_EQ(shown(parseDate(text)), row.date) << toUtf8(text);
    }
    EXPECT_FALSE(parseDate(std::u16string(1000000, u'1')));
    EXPECT_FALSE(parseDate(std::u16string(u"3/5/2004\0", 9)));
    EXPECT_EQ(parseDate(u"3/5/2004 12:00", 0, 1), Date{0.5});  // the flags for the time alone, the day alone
    EXPECT_EQ(parseDate(u"3/5/2004 12:00", 0, 2), Date{38051});
}

TEST(Dates, WithoutAYearAreInThisYear) {
    const std::time_t now = std::time(nullptr);
    const std::string year = std::to_string(std::localtime(&now)->tm_year + 1900);
    EXPECT_EQ(shown(parseDate(u"3/5")), "3/5/" + year);
    EXPECT_EQ(shown(parseDate(u"13/5")), "5/13/" + year);
    EXPECT_EQ(shown(parseDate(u"5 March")), "3/5/" + year);
}

TEST(Dates, AreWritten) {
    const std::pair<double, const char*> cases[] = {
        {38051, "3/5/2004"},        {38051 + (14 * 3600 + 7 * 60 + 9) / 86400.0, "3/5/2004 2:07:09 PM"},
        {0, "12:00:00 AM"},         {-0.25, "6:00:00 AM"},  // the fraction is the time of day
        {-1, "12/29/1899"},         {-1.25, "12/29/1899 6:00:00 AM"},
        {38050.999999, "3/5/2004"},  // rounds to midnight
        {-1.999999, "12:00:00 AM"}, {2958465, "12/31/9999"},
        {-657434, "1/1/100"},
    };
    for (const auto& [days, text] : cases) EXPECT_EQ(shown(Date{days}), text) << days;
    for (const double days : {2958466.0, 2958465.9999999, -657435.0, 1e300}) {
        EXPECT_FALSE(portable::dateText(Date{days})) << days;
    }
}

TEST(Dates, FieldsAndTextsSurviveARoundTrip) {
    for (int day = -657434; day <= 2958465; day += 997) {
        const double time = (day & 0xFFFF) % 86400 / 86400.0;
        const Date date{day < 0 ? day - time : day + time};
        ASSERT_EQ(dateFromFields(dateFields(date)), date);
        ASSERT_EQ(portable::parseDate(portable::dateText(date).value()), date) << shown(date);
    }
}

TEST(Dates, InvalidFieldsAreRefused) {
    for (const DateFields& fields :
         {DateFields{99, 1, 1}, DateFields{10000, 1, 1}, DateFields{2003, 2, 29}, DateFields{2004, 13, 1},
          DateFields{2004, 0, 1}, DateFields{2004, 1, 0}, DateFields{2004, 1, 1, 24}, DateFields{2004, 1, 1, -1},
          DateFields{2004, -2147483647, 1}, DateFields{2004, 1, 257}}) {
        EXPECT_FALSE(dateFromFields(fields));
    }
}

}  // namespace
}  // namespace velmor::automation
