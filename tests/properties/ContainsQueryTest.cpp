#include <gtest/gtest.h>

#include "properties/Describe.h"

namespace velmor {
namespace {

class ContainsQuery : public PropertyTest {
protected:
    const PropertiesRef& terms = collection;
};

TEST_F(ContainsQuery, ReadsSearchConditions) {
    // clang-format off
    const struct {
        const char16_t* typed;
        const char* terms;
        const char* condition;
    } cases[] = {
        {u"", "", ""}, {u"  ", "", ""}, {u"cat dog", "cat=Long 0 | dog=String OR", "cat OR dog"},
        {u"\"big cat\" and not dog", "\"big cat\"=Long 0 | dog=String AND NOT", "\"big cat\" AND NOT dog"},
        {u"not cat", "cat=Long 0", "cat"}, {u"a near b", "a=Long 0 | b=String NEAR", "a NEAR b"},
        {u"A Or B", "A=Long 0 | B=String OR", "A OR B"}, {u"a AND OR b", "a=Long 0 | b=String AND", "a AND b"},
        {u"a not b", "a=Long 0 | b=String AND NOT", "a AND NOT b"},
        {u"a or not not b", "a=Long 0 | b=String OR NOT", "a OR NOT b"},
        {u"a near not b", "a=Long 0 | b=String NEAR", "a NEAR b"},
        {u"a not or b", "a=Long 0 | b=String AND NOT", "a AND NOT b"},
        {u"a and b c", "a=Long 0 | b=String AND | c=String OR", "a AND b OR c"}, {u"a and", "a=Long 0", "a"},
        {u"and or", "", ""}, {u"a a", "a=Long 0 | a=String OR", "a OR a"},
        {u"\"and\" \"or\"", "\"and\"=Long 0 | \"or\"=String OR", "\"and\" OR \"or\""},
        {u"a \"\" b", "a=Long 0 | b=String OR", "a OR b"}, {u"a \" \"", "a=Long 0 | \" \"=String OR", "a OR \" \""},
        {u"a \"open end", "a=Long 0 | \"open end\"=String OR", "a OR \"open end\""}, {u"a \"", "a=Long 0", "a"},
        {u"cat\"nip x\"y", "\"catnip x\"=Long 0 | y=String OR", "\"catnip x\" OR y"},
        {u"a\tand b", "a\tand=Long 0 | b=String OR", "a\tand OR b"},
    };
    // clang-format on
    for (const auto& row : cases) {
        terms->RemoveAll();
        terms->BuildByContainsQuery(row.typed);
        EXPECT_EQ(describe(*terms), row.terms) << toUtf8(row.typed);
        EXPECT_EQ(toUtf8(terms->ContainsQuery()), row.condition) << toUtf8(row.typed);
    }
}

TEST_F(ContainsQuery, AppendsTerms) {
    terms->BuildByContainsQuery(u"a");
    terms->BuildByContainsQuery(u"near a");
    terms->AddLng(u"ten", 10);
    EXPECT_EQ(terms->ContainsQuery(), u"a NEAR a 10 ten");
    EXPECT_TRUE(terms->Item(1)->Multiple());
}

}  // namespace
}  // namespace velmor
