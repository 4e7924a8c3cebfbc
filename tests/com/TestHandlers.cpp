// Handlers and host objects that are registered classes of another DLL.

#include <gtest/gtest.h>

#include "Host.h"

using namespace host;

namespace {

class HandlerTest : public testing::Test {
protected:
    HandlerTest() { run(journal.get(), L"Clear"); }

    std::wstring asked() const { return get(journal.get(), L"Text").text(); }
    std::wstring logged() const {
        std::wstring all;
        ComPtr<_privProperties> log;
        EXPECT_HRESULT_SUCCEEDED(tag->get_ErrorLog(log.put()));
        long count = 0;
        EXPECT_HRESULT_SUCCEEDED(log->get_Count(&count));
        for (long index = 1; index <= count; ++index) {
            const auto entry = get(log.get(), L"Item", values(static_cast<int>(index))).object();
            const auto details = get(entry.get(), L"Properties").object();
            all += get(entry.get(), L"Name").text() + L": " + get(entry.get(), L"Value").text() + L" (" +
                   get(details.get(), L"GetValue", values(L"Err", 0)).text() + L");";
        }
        return all;
    }
    void showMessages() { run(propertiesOf(tag).get(), L"Add", values(L"kvTag.No Handler Show Message", true)); }

    ComPtr<IDispatch> journal = create(L"VelmorTest.Journal");
    ComPtr<_kvTag> tag = newTag();
};

struct LevelCase {
    const wchar_t* handler;
    const wchar_t* result;
    const wchar_t* asked;
};

TEST_F(HandlerTest, TheLevelDecidesWhatIsCalled) {
    showMessages();
    const LevelCase cases[] = {
        {L"LEVEL0", L"system handler too old: LEVEL0", L"Interface;"},
        {L"LEVEL1", L"system handler too old: LEVEL1", L"Interface;"},
        {L"LEVEL2", L"system handler too old: LEVEL2", L"Interface;"},
        {L"LEVEL3", L"L3[CMD]", L"Interface;GetTagValue;Interface;"},
        {L"LEVEL4", L"L4[CMD]", L"Interface;GetTagValue;Interface;"},
        {L"LEVEL5", L"L5[CMD]", L"Interface;GetTagValue;Interface;Dispose;"},
        {L"EMPTY", L"system handler too old: EMPTY", L""},
        {L"NOWHERE", L"system handler not found: NOWHERE", L""},
        {L"grp-level3", L"L3[CMD]", L"Interface;GetTagValue;Interface;"},
    };
    for (const LevelCase& row : cases) {
        run(journal.get(), L"Clear");
        EXPECT_EQ(resultOf(tag, (std::wstring(L"<KV:") + row.handler + L">cmd:</KV>").c_str()), row.result);
        EXPECT_EQ(asked(), row.asked) << row.result;
    }
}

TEST_F(HandlerTest, FailuresLoseNothing) {
    EXPECT_EQ(resultOf(tag, L"a<KV:FAILING>X:</KV>b<KV:UNCREATABLE>X:</KV>c<KV:FAILINGDISPOSE>X:</KV>d"), L"abckeptd");
    const std::wstring log = logged();
    EXPECT_NE(log.find(L"FAILING: GetTagValue fails on purpose (1234);"), std::wstring::npos) << log;
    EXPECT_NE(log.find(L"UNCREATABLE: "), std::wstring::npos) << log;
    EXPECT_NE(log.find(L"(429);"), std::wstring::npos) << log;
    EXPECT_NE(log.find(L"FAILINGDISPOSE: Dispose fails on purpose (77);"), std::wstring::npos) << log;
}

TEST_F(HandlerTest, AMissingHandlerIsLogged) {
    EXPECT_EQ(resultOf(tag, L"[<KV:NOWHERE>X:</KV>]"), L"[]");
    EXPECT_EQ(logged(), L"NOWHERE: Tag Handler not found. The handler's class name is not registered (0);");
}

TEST_F(HandlerTest, ReEnteringIsHarmless) {
    const std::wstring result = resultOf(tag, L"[<KV:REENTRANT>X:</KV>]");
    EXPECT_EQ(result.substr(0, 11), L"[reentrant(");
    EXPECT_EQ(result.back(), L']');
}

// This program has a stack of 1 MB, like most hosts.
TEST_F(HandlerTest, AHandlerAtEachLevelFitsTheStack) {
    const std::wstring tooDeep = L": Tags are nested beyond 100 levels (0);";
    // The template is the first level.
    const std::wstring echoes = std::wstring(99, L'<') + std::wstring(99, L'>');
    EXPECT_EQ(resultOf(tag, L"[<KV:ECHO>X:</KV>]<KV:TAG>@VERSION:</KV>"), L"[" + echoes + L"]1");
    EXPECT_EQ(logged(), L"ECHO" + tooDeep);
    const ComPtr<_kvTag> other = newTag();
    EXPECT_EQ(resultOf(other, L"[<KV:DIGGING>X:</KV>]<KV:TAG>@VERSION:</KV>"), L"[" + std::wstring(99, L'+') + L"]1");
    EXPECT_EQ(resultOf(other, L"{\\rtf1 <KV:DIGGING>X:</KV><KV:ECHO>X:</KV>}"),
              L"{\\rtf1 " + std::wstring(99, L'+') + echoes + L"}");
}

TEST_F(HandlerTest, TheTagServesItsHandler) {
    run(propertiesOf(tag).get(), L"Add", values(L"p", L"P!"));
    EXPECT_HRESULT_SUCCEEDED(tag->putref_Database(create(L"VelmorTest.Database").get()));
    EXPECT_EQ(resultOf(tag, L"<KV:PROBE>CMD=<KV:TAG>PROPERTY:p=:</KV>:x=<KV:TAG>@VERSION:</KV>:</KV>"),
              L"kvTag|PROBE|CMD|P!|P!|3|1|a\\{b|host database|P!");
    EXPECT_EQ(logged(), L"PROBE: noted (0);");
}

TEST_F(HandlerTest, ResultsAreEvaluatedAndEscaped) {
    run(propertiesOf(tag).get(), L"Add", values(L"p", L"{p}"));
    EXPECT_EQ(resultOf(tag, L"<KV:NESTING>X:</KV>"), L"<{p}>");
    EXPECT_EQ(resultOf(tag, L"<KV:RTF>X:</KV>"), L"{\\rtf1 bold}");
    EXPECT_EQ(resultOf(newTag(), L"{\\rtf1 <KV:RTF>X:</KV><KV:LEVEL3>a{:</KV>}"), L"{\\rtf1 {\\rtf1 bold}L3[A\\{]}");
}

TEST_F(HandlerTest, AHostsCollectionIsCalledByName) {
    const auto collection = create(L"VelmorTest.Collection");
    run(collection.get(), L"Add", values(L"title", L"<KV:TAG>@VERSION:</KV>"));
    EXPECT_HRESULT_SUCCEEDED(tag->putref_Properties(collection.get()));
    EXPECT_EQ(resultOf(tag,
                       L"<KV:TAG>PROPERTY:Title=:</KV><KV:TAG>SETPROPERTY:n=2:</KV><KV:TAG>PROPERTY:n=:</KV>"
                       L"<KV:TAG>PROPERTY:none=default:</KV>"),
              L"12default");
    EXPECT_NE(asked().find(L"Add N;"), std::wstring::npos) << asked();
    Text value;
    EXPECT_HRESULT_SUCCEEDED(tag->GetProcessedPropertiesValue(Text(L"TITLE"), nullptr, value.put()));
    EXPECT_EQ(value.str(), L"1");
    EXPECT_HRESULT_SUCCEEDED(tag->Dispose(VARIANT_TRUE));
    EXPECT_NE(asked().find(L"Dispose collection;"), std::wstring::npos) << asked();
}

}  // namespace
