// The members of kvTag and kvTags, early-bound through the generated header.

#include <gtest/gtest.h>

#include "Host.h"

using namespace host;

namespace {

class TagTest : public testing::Test {
protected:
    using Getter = HRESULT (STDMETHODCALLTYPE _kvTag::*)(BSTR*);

    std::wstring text(Getter getter) {
        Text value;
        EXPECT_HRESULT_SUCCEEDED((tag.get()->*getter)(value.put()));
        return value.str();
    }

    ComPtr<_kvTag> tag = newTag();
};

TEST_F(TagTest, NameAndItsElements) {
    EXPECT_HRESULT_SUCCEEDED(tag->put_Name(Text(L"tag>setproperty=V:a=1:b=<KV:TAG>PROPERTY:q=7:</KV>")));
    EXPECT_EQ(text(&_kvTag::get_Name), L"tag>setproperty=V:a=1:b=<KV:TAG>PROPERTY:q=7:</KV>:");
    EXPECT_EQ(text(&_kvTag::get_HandlerName), L"TAG");
    EXPECT_EQ(text(&_kvTag::get_CommandName), L"SETPROPERTY");
    EXPECT_EQ(text(&_kvTag::get_CommandValueProcessed), L"V");
    ScopedVariant value;
    EXPECT_HRESULT_SUCCEEDED(tag->get_CommandValue(value.put()));
    ASSERT_EQ(value->vt, VT_BSTR);
    EXPECT_STREQ(value->bstrVal, L"V");

    ComPtr<_privProperties> elements;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Elements(elements.put()));
    long count = 0;
    EXPECT_HRESULT_SUCCEEDED(elements->get_Count(&count));
    EXPECT_EQ(count, 4);
    Text processed;
    EXPECT_HRESULT_SUCCEEDED(tag->GetProcessedElementsValue(Text(L"b"), *Value(L"none"), processed.put()));
    EXPECT_EQ(processed.str(), L"7");
    EXPECT_HRESULT_SUCCEEDED(tag->GetProcessedElementsValue(Text(L"absent"), *Value(5), processed.put()));
    EXPECT_EQ(processed.str(), L"5");
}

TEST_F(TagTest, ValueTagsAndResult) {
    ComPtr<_kvTags> tags;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Tags(tags.put()));
    EXPECT_FALSE(tags);  // Nothing before the first build
    EXPECT_EQ(resultOf(tag, L"a<KV:TAG>@VERSION:</KV>b<KV:TAG>PROPERTY:x=zz:</KV>"), L"a1bzz");
    EXPECT_EQ(text(&_kvTag::get_Value), L"a<KV:TAG>@VERSION:</KV>b<KV:TAG>PROPERTY:x=zz:</KV>");
    EXPECT_HRESULT_SUCCEEDED(tag->BuildTagCollection());
    EXPECT_HRESULT_SUCCEEDED(tag->get_Tags(tags.put()));
    long count = 0;
    EXPECT_HRESULT_SUCCEEDED(tags->get_Count(&count));
    EXPECT_EQ(count, 2);
    ComPtr<_kvTag> second;
    EXPECT_HRESULT_SUCCEEDED(tags->get_Item(*Value(2), second.put()));
    Text name;
    EXPECT_HRESULT_SUCCEEDED(second->get_Name(name.put()));
    EXPECT_EQ(name.str(), L"TAG>PROPERTY:x=zz:");
    for (const Value& bad : values(0, 3, -1, L"x", Value::missing())) {
        EXPECT_HRESULT_SUCCEEDED(tags->get_Item(*bad, second.put()));
        EXPECT_FALSE(second);
    }
}

TEST_F(TagTest, PropertiesAndVariablesAreProcessed) {
    ComPtr<_privProperty> added;
    EXPECT_HRESULT_SUCCEEDED(
        propertiesOf(tag)->AddStr(Text(L"p"), Text(L"<KV:TAG>@VERSION:</KV>."), VARIANT_FALSE, added.put()));
    Text value;
    EXPECT_HRESULT_SUCCEEDED(tag->GetProcessedPropertiesValue(Text(L"P"), Text(L"no"), value.put()));
    EXPECT_EQ(value.str(), L"1.");
    ComPtr<IDispatch> variables;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Variables(variables.put()));
    EXPECT_HRESULT_SUCCEEDED(run(variables.get(), L"Add", values(L"v", 12)).code);
    EXPECT_HRESULT_SUCCEEDED(tag->GetProcessedVariablesValue(Text(L"v"), Text(), value.put()));
    EXPECT_EQ(value.str(), L"12");
    EXPECT_HRESULT_SUCCEEDED(tag->GetProcessedVariablesValue(Text(L"w"), Text(L"default"), value.put()));
    EXPECT_EQ(value.str(), L"default");

    const ComPtr<_kvTag> other = newTag();
    EXPECT_HRESULT_SUCCEEDED(other->putref_Properties(propertiesOf(tag).get()));
    EXPECT_HRESULT_SUCCEEDED(other->putref_Variables(variables.get()));
    EXPECT_EQ(resultOf(other, L"<KV:TAG>PROPERTY:p=:</KV>"), L"1.");
    EXPECT_HRESULT_SUCCEEDED(other->GetProcessedVariablesValue(Text(L"v"), Text(), value.put()));
    EXPECT_EQ(value.str(), L"12");
}

TEST_F(TagTest, ProcessesSingleTextsAndNewTagsShare) {
    Text value;
    EXPECT_HRESULT_SUCCEEDED(tag->ProcessName(Text(L"TAG>SETPROPERTY:s=set:"), value.put()));
    EXPECT_HRESULT_SUCCEEDED(tag->ProcessValue(Text(L"[<KV:TAG>PROPERTY:s=:</KV>]"), value.put()));
    EXPECT_EQ(value.str(), L"[set]");
    ComPtr<_kvTag> child;
    EXPECT_HRESULT_SUCCEEDED(tag->NewTag(child.put()));
    EXPECT_EQ(resultOf(child, L"<KV:TAG>PROPERTY:s=:</KV>"), L"set");
    EXPECT_TRUE(same(propertiesOf(child).get(), propertiesOf(tag).get()));
}

TEST_F(TagTest, RtfIsProtectedInPlace) {
    VARIANT_BOOL protects = VARIANT_TRUE;
    EXPECT_HRESULT_SUCCEEDED(tag->get_ProtectRTF(&protects));
    EXPECT_EQ(protects, VARIANT_FALSE);
    Text code(L"a{b}c\\d\r\n");
    EXPECT_HRESULT_SUCCEEDED(tag->ProtectRTFCode(code.inOut()));
    EXPECT_EQ(code.str(), L"a\\{b\\}c\\\\d\\par ");
    EXPECT_HRESULT_SUCCEEDED(tag->put_ProtectRTF(VARIANT_TRUE));
    EXPECT_HRESULT_SUCCEEDED(tag->get_ProtectRTF(&protects));
    EXPECT_EQ(protects, VARIANT_TRUE);
}

TEST_F(TagTest, TablesAreBracketedAndTheirRowsTidied) {
    const wchar_t table[] = L"{\\rtf1 \\trowd\\irow0\\lastrow\\cellx1\\intbl A\\cell XX\\row }";
    EXPECT_HRESULT_SUCCEEDED(tag->put_Value(Text(table)));
    EXPECT_NE(text(&_kvTag::get_Value).find(L"{\\*\\korvane\\starttable{"), std::wstring::npos);
    EXPECT_HRESULT_SUCCEEDED(tag->AddTableStartEndControlWords());  // marked already
    EXPECT_HRESULT_SUCCEEDED(newTag()->AddTableStartEndControlWords());

    const ComPtr<_kvTag> plain = newTag();
    EXPECT_HRESULT_SUCCEEDED(plain->put_Value(Text(L"x\\cell 12345\\row rest")));
    long start = 1, end = 21;
    EXPECT_HRESULT_SUCCEEDED(plain->RemoveExtraTrowd(&start, &end));
    EXPECT_EQ(end, 15);
    Text left;
    EXPECT_HRESULT_SUCCEEDED(plain->get_Value(left.put()));
    EXPECT_EQ(left.str(), L"x\\cell\\row rest      ");
}

TEST_F(TagTest, ErrorsAreLogged) {
    long number = 7;
    EXPECT_HRESULT_SUCCEEDED(tag->LogError(Text(L"H"), Text(L"wrong"), &number, Text(L"tag"), Text(L"err")));
    EXPECT_HRESULT_SUCCEEDED(tag->LogError(Text(L"H"), Text(L"again"), nullptr, nullptr, nullptr));
    ComPtr<_privProperties> log;
    EXPECT_HRESULT_SUCCEEDED(tag->get_ErrorLog(log.put()));
    EXPECT_EQ(get(log.get(), L"Count").text(), L"2");
    const auto entry = get(log.get(), L"Item", values(1)).object();
    EXPECT_EQ(get(entry.get(), L"Value").text(), L"wrong");
    const auto details = get(entry.get(), L"Properties").object();
    EXPECT_EQ(get(details.get(), L"GetValue", values(L"Err", 0)).text(), L"7");
    EXPECT_EQ(get(details.get(), L"GetValue", values(L"TagData", L"")).text(), L"tag");
}

TEST_F(TagTest, DisposeLetsGoOfWhatTheHostGave) {
    const auto database = create(L"VelmorTest.Database");
    EXPECT_HRESULT_SUCCEEDED(tag->putref_Database(database.get()));
    ComPtr<IDispatch> given;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Database(given.put()));
    EXPECT_TRUE(same(given.get(), database.get()));
    given = nullptr;
    EXPECT_GT(references(database.get()), 1U);
    EXPECT_EQ(resultOf(tag, L"<KV:A>X:</KV>"), L"");
    EXPECT_HRESULT_SUCCEEDED(tag->Dispose(VARIANT_TRUE));
    EXPECT_EQ(references(database.get()), 1U);
}

}  // namespace
