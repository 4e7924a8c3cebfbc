#include <gtest/gtest.h>

#include "text/privStrCat.h"

using velmor::privStrCat;

TEST(Smoke, EditsAndFinds) {
    privStrCat b;
    b.Append(u"ab");
    EXPECT_EQ(b.Find(u"b "), 2);
    EXPECT_EQ(b.Find(u" "), 0);
    b.Insert(u"xyz", 2);
    EXPECT_EQ(b.ReturnVal(), u"axyzb");
    EXPECT_EQ(b.Find(u"ZB ", 1, false), 4);
}
