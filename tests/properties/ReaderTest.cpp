#include <gtest/gtest.h>

#include <string>

#include "Random.h"
#include "common/ByteText.h"
#include "common/Compression.h"
#include "properties/Describe.h"
#include "properties/TextFormOfPieces.h"

namespace velmor {
namespace {

struct ReadCase {
    std::u16string text;
    std::string expected;
    bool asTag = false;
    std::u16string delimiter = u":";
};

class PropertyReading : public PropertyTest {
protected:
    void check(std::initializer_list<ReadCase> cases) {
        for (const ReadCase& each : cases) {
            collection->Build(each.text, false, each.asTag, each.delimiter);
            EXPECT_EQ(describe(*collection), each.expected) << toUtf8(each.text);
        }
    }
};

// Tables, several cases a line.
// clang-format off
TEST_F(PropertyReading, TypesUnquotedValues) {
    check({
        {u"a=5:", "a=Long 5"}, {u"a=007:", "a=Long 7"}, {u"a=-2147483648:", "a=Long -2147483648"},
        {u"a=2147483646:", "a=Long 2147483646"}, {u"a=2147483647:", "a=String 2147483647"},
        {u"a=-2147483649:", "a=String -2147483649"}, {u"a=5.5:", "a=Double 5.5"}, {u"a=1.50:", "a=Double 1.5"},
        {u"a=value:", "a=String value"}, {u"a=:", "a=String "}, {u"a= 5 :", "a=Long 5"}, {u"a=&H1F:", "a=Long 31"},
        {u"a=&HFFFFFFFF:", "a=Long -1"}, {u"a=&H:", "a=String &H"},
        {u"a=True:b=False:c=true:", "a=Boolean True | b=Boolean False | c=String true"},
        {u"a=NUL:b=NULL:", "a=Null | b=String NULL"},
    });
}

TEST_F(PropertyReading, TypesBySuffix) {
    check({
        {u"a=5&:", "a=Long 5"}, {u"a=2147483647&:", "a=Long 2147483647"}, {u"a=2147483648&:", "a=String 2147483648&"},
        {u"a=5.5&:", "a=Double 5.5"}, {u"a=x&:", "a=String x&"}, {u"a=&:", "a=String &"}, {u"a=&H1F&:", "a=Long 31"},
        {u"a=5%:", "a=Integer 5"}, {u"a=40000%:", "a=String 40000%"}, {u"a=5.5%:", "a=Double 5.5"},
        {u"a=1.5!:", "a=Single 1.5"}, {u"a=!12.5!:", "a=Decimal 12.5"}, {u"a=!!:", "a=String !!"},
        {u"a=!:", "a=String !"}, {u"a=2.25#:", "a=Double 2.25"}, {u"a=9.99$:", "a=Currency 9.99"},
        {u"a=1E30$:", "a=String 1E30$"},
    });
}

// With any settings of the machine: one "." or one "," is the decimal sign, without a type only ".".
TEST_F(PropertyReading, AcceptsBothDecimalSigns) {
    check({
        {u"a=1234,5#:", "a=Double 1234.5"}, {u"a=6458,88$:", "a=Currency 6458.88"}, {u"a=-,5!:", "a=Single -0.5"},
        {u"a=!12,5!:", "a=Decimal 12.5"}, {u"a=5,5&:b=5,5%:", "a=Double 5.5 | b=Double 5.5"},
        {u"a=1,5E+20#:", "a=Double 1.5E+20"}, {u"a=1,234.5#:b=1,234,567&:", "a=Double 1234.5 | b=Long 1234567"},
        {u"a=1.234,5#:", "a=String 1.234,5#"}, {u"a=7,25:b=1,234:", "a=String 7,25 | b=String 1,234"},
        {u"a=1,234.5:", "a=Double 1234.5"},
    });
}

TEST_F(PropertyReading, KeepsNumbersBeyondTheirRangeAsTexts) {
    const std::u16string digits(400, u'9');
    check({
        {u"a=" + digits + u"#:", "a=String " + toUtf8(digits) + "#"}, {u"a=-1E400#:", "a=String -1E400#"},
        {u"a=1.79769313486233E+308#:", "a=String 1.79769313486233E+308#"}, {u"a=3.5E+38!:", "a=String 3.5E+38!"},
        {u"a=922337203685477.5808$:", "a=String 922337203685477.5808$"},
        {u"a=!79228162514264337593543950336!:", "a=String !79228162514264337593543950336!"},
        {u"a=-32769%:", "a=String -32769%"}, {u"a=" + digits + u".5:", "a=String " + toUtf8(digits) + ".5"},
    });
}

TEST_F(PropertyReading, ReadsDates) {
    const double afternoon = (14 * 3600 + 7 * 60 + 9) / 86400.0;
    for (const auto& [text, days] : {
             std::pair(u"a=#5 Mar 2004 2:07:09 PM#:", 38051 + afternoon), {u"a=#5 mar 2004 12:00:00 am#:", 38051}, {u"a=##:", 0}}) {
        collection->Build(text);
        EXPECT_EQ(collection->Item(1)->ValueType(), 7);
        EXPECT_NEAR(collection->Item(1)->ValueDate().days, days, 1e-7);
    }
    check({
        {u"a=#x#:", "a=String #x#"},
        {u"a=#5 Mar 2004 13:07:09 PM:b=1:", "a=String #5 Mar 2004 13 | 07=Long 0 | 09 PM=Long 0 | b=Long 1"},
        {u"a=#1:b=2#:", "a=String #1 | b=Double 2"},
    });
}

TEST_F(PropertyReading, ReadsQuotedAndEncodedValues) {
    check({
        {u"a=\"x:y=\":", "a=String x:y="}, {u"a=\"He said \"hi\"\":", "a=String He said \"hi\""},
        {u"a=\"5\":", "a=String 5"}, {u"a=\":\":", "a=String :"}, {u"a=\"x\"", "a=String x"},
        {u"a=~64\"eDp5\":", "a=String x:y e1"}, {u"a=~HX\"783A79\":", "a=String x:y e2"},
        {u"a=~GZ\"" + base64(compressBytes("x:y")) + u"\":", "a=String x:y e4"},
        {u"a=~CE\"\u00B5say \u00B5:\u00B5\":", "a=String say \":\" e8"}, {u"a=~CE\"\u00B5\":", "a=String  e8"},
        {u"a=~RO~Other\"x:y\":b=1:", "a=String ~RO~Other\"x:y\" | b=Long 1"},
        {u"a=~RO~kvProperties\"" + base64(toUtf8(u"x=1&:")) + u"\":", "a=[x=1&:]"},
    });
}

TEST_F(PropertyReading, ReadsNamesAloneAndCleansNames) {
    check({
        {u"a:b:", "a=Long 0 | b=Long 0"}, {u"\r\n\t a=1:", "a=Long 1"},
        {u"!s!a=1:!lg!b=2:!c=3:", "a=Long 1 | b=Long 2 | !c=Long 3"}, {u"a!@b=1:", "a:b=Long 1"}, {u"!s!=1:", "=Long 1"},
        {u"a=1::b=2:", "a=Long 1 | =Long 0 | b=Long 2"}, {u"", ""}, {u"a=1:\r\n\t ", "a=Long 1"}, {u" \r\n", ""},
        {u"a=1: b= ", "a=Long 1 | b=String  "}, {u"a=1: :b=2:", "a=Long 1 | =Long 0 | b=Long 2"},
    });
}

TEST_F(PropertyReading, ReadsTagStrings) {
    check({
        {u"tag>setproperty:name=value:", "TAG=Long 0 | SETPROPERTY=Long 0 | NAME=String value", true},
        {u"TAG>INCLUDE=C:\\x\\y.txt:k=D:/z:", "TAG=Long 0 | INCLUDE=String C:\\x\\y.txt | K=String D:/z", true},
        {u"TAG>INCLUDE=CD:\\x:", "TAG=Long 0 | INCLUDE=String CD | \\X=Long 0", true},
        {u"TAG>INCLUDE=C:x:", "TAG=Long 0 | INCLUDE=String C | X=Long 0", true},
        {u"TAG>P:n=<KV:A>X:</KV>:m=1:", "TAG=Long 0 | P=Long 0 | N=String <KV:A>X:</KV> | M=Long 1", true},
        {u"TAG>P:n=a<kv:A>X:<KV:B>Y:</KV></kv>:c:",
         "TAG=Long 0 | P=Long 0 | N=String a<kv:A>X:<KV:B>Y:</KV></kv> | C=Long 0", true},
        {u"TAG>P:n=<KV:A>X:m=1:", "TAG=Long 0 | P=Long 0 | N=String <KV | A>X=Long 0 | M=Long 1", true},
        {u"TAG>P:n=<KV:<KV:A>X:</KV>:",
         "TAG=Long 0 | P=Long 0 | N=String <KV | <KV=Long 0 | A>X=Long 0 | </KV>=Long 0", true},
        {u"TAG>P:n=\"<KV:A>b=\"c\":</KV>\":", "TAG=Long 0 | P=Long 0 | N=String <KV:A>b=\"c | </KV>\"=Long 0", true},
        {u"CMD>", "CMD=Long 0", true}, {u"CMD>\r\n", "CMD=Long 0", true}, {u"TAG:", "TAG=Long 0", true}, {u" tag >x:", " TAG =Long 0 | X=Long 0", true},
        {u"INCLUDE=C:\\x:", "INCLUDE=String C | \\x=Long 0"},
        {u"n=<KV:A>X:</KV>:", "n=String <KV | A>X=Long 0 | </KV>=Long 0"},
        {u"TAG>n=<KV:B>x</KV>", "TAG=Long 0 | N=String <KV:B | X</KV=Long 0", true, u">"},
    });
}

TEST_F(PropertyReading, ReadsPathsAndTagsInListFiles) {
    collection->BuildList(u"T=<KV:TAG>PROPERTY:who=nobody:</KV>:\r\nP=C:\\x\\y.txt:\r\nx>y=1:\r\n");
    EXPECT_EQ(describe(*collection), "T=String <KV:TAG>PROPERTY:who=nobody:</KV> | P=String C:\\x\\y.txt | x>y=Long 1");
}

TEST_F(PropertyReading, TakesMalformedEntriesAsTextUpToTheDelimiter) {
    check({
        {u"a=\"", "a=String \""}, {u"a=\"x:b=1:", "a=String \"x | b=Long 1"}, {u"a=~CE\":", "a=String ~CE\""},
        {u"a=~CE\":b=\"x\":", "a=String ~CE\" | b=String x"}, {u"a=~CE\"xyz\":", "a=String ~CE\"xyz\""},
        {u"a=~RO~x", "a=String ~RO~x"}, {u"a=~RO~x:b=\"y\":", "a=String ~RO~x | b=String y"},
        {u"a=~RO~Picture\"QUJD\":b=1:", "a=String ~RO~Picture\"QUJD\" | b=Long 1"},
        {u"a=~64\"%%%\":", "a=String ~64\"%%%\""},
        {u"a=~64\"gIA=\":", "a=String ~64\"gIA=\""},  // bytes that are not text
        {u"a=~HX\"7\":", "a=String ~HX\"7\""}, {u"a=~GZ\"AAAA\":", "a=String ~GZ\"AAAA\""},
        {u"a=~KV\"secret\":", "a=String ~KV\"secret\""}, {u"a=~AT\":", "a=String ~AT\""},
        {u"a=~AT\"?x\":", "a=String ~AT\"?x\""}, {u"a=~:b=~6:c=", "a=String ~ | b=String ~6 | c=String "},
        {u"=:", "=String "}, {u"==:", "=String ="},
    });
}

TEST_F(PropertyReading, UsesAnyDelimiter) {
    check({
        {u"a=\"x:\"y\";b=NUL;c=#5 Mar 2004 2:07:09 PM#;",
         "a=String x:\"y | b=Null | c=Date 3/5/2004 2:07:09 PM", false, u";"},
        {u"a=1||b=\"x|\"||c", "a=Long 1 | b=String x| | c=Long 0", false, u"||"},
        {u"a=1:b=2", "a=Long 1 | b=Long 2", false, u""}, {u"a=1=b=2=", "a=Long 1 | b=Long 2", false, u"="},
        {u"a=", "a=String ", false, u"="}, {u"a\"b\"", "a=Long 0 | b=Long 0", false, u"\""},
    });
}

TEST_F(PropertyReading, GivesChildrenToTheirProperty) {
    check({
        {u"a=1:a=~AT\"-x=1:\":a=~PR\"-y=2:\":", "a=Long 1 @{x=1&:} {y=2&:}"},
        {u"a=1:A=~AT\"\u00B5x=\u00B5v\u00B5:\":", "a=Long 1 @{x=\"v\":}"},
        {u"a=1:a=~PR\"+eD0xOg==\":", "a=Long 1 {x=1&:}"}, {u"a=1:b=2:a=~AT\"-x=1:\":", "a=Long 1 @{x=1&:} | b=Long 2"},
        {u"a=1:a=2:a=~AT\"-x=1:\":", "a=Long 1 | a=Long 2 @{x=1&:}"}, {u"c=~AT\"-x=1:\":", "c=Long 0 @{x=1&:}"},
    });
}
// clang-format on

TEST_F(PropertyReading, AppendsOrReplaces) {
    collection->Build(u"a=1:b=2:");
    collection->Build(u"A=3:", true);
    EXPECT_EQ(describe(*collection), "a=Long 1 | b=Long 2 | A=Long 3");
    EXPECT_TRUE(collection->Item(u"a")->Multiple());
    collection->Build(collection->Stored());
    EXPECT_EQ(describe(*collection), "a=Long 1 | b=Long 2 | A=Long 3");
    collection->Build(u"");
    EXPECT_EQ(collection->Count(), 0);
}

// A few hundred kilobytes that decompress to more than a value may hold exhaust the limit of the whole
// text, so that many such values cost no more than one.
TEST_F(PropertyReading, KeepsOversizedValuesEncoded) {
    const std::u16string small = base64(compressBytes("text"));
    const std::u16string bomb = base64(compressBytes(std::string(decodingLimit + 1, '\0')));
    collection->Build(u"a=~GZ\"" + small + u"\":b=~GZ\"" + bomb + u"\":c=~GZ\"" + small + u"\":");
    ASSERT_EQ(collection->Count(), 3);
    EXPECT_EQ(collection->Item(u"a")->ValueStr(), u"text");
    EXPECT_EQ(collection->Item(u"b")->ValueStr(), u"~GZ\"" + bomb + u"\"");
    EXPECT_EQ(collection->Item(u"c")->ValueStr(), u"~GZ\"" + small + u"\"");
}

TEST_F(PropertyReading, WritesAnyTextSoThatItIsReadTheSame) {
    Random random;
    for (int round = 0; round < 30000; ++round) {
        auto bytes = random.bytes(32);
        bytes.resize(std::max<std::size_t>(bytes.size(), 2));
        ASSERT_EQ(test::faultOfTextForm(bytes.data(), bytes.size()), "");
    }
}

// Each of these once took quadratic time.
TEST_F(PropertyReading, ReadsManyUnclosedMarkers) {
    for (const std::u16string_view piece :
         {u"a=\"", u"a=\":", u"a=~64\"", u"a=~GZ\"A", u"a=~CE\":", u"a=~RO~x:", u"a=#x:", u"a=~RO~Picture\"",
          u"a=~AT\"+", u"a=<KV:", u"<KV:A>n=</KV>", u"=", u"\":"}) {
        std::u16string text = u"TAG>";
        for (int i = 0; i < 100000; ++i) text += piece;
        for (const std::u16string_view end : {u"#:", u"\":"}) {
            collection->Build(text + std::u16string(end), false, true);
            EXPECT_GT(collection->Count(), 0);
        }
    }
}

}  // namespace
}  // namespace velmor
