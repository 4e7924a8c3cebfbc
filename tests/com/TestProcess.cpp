// The component in the process of a host: handlers and host objects that misbehave, objects that are passed as bare
// interface pointers, classes that are registered anew, and threads.

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <thread>

#include "Host.h"
#include "handlers/HostObject.h"
#include "platform/win32/Faces.h"

using namespace host;
using testhandlers::HostObject;
using velmor::automation::DataObject;
using velmor::automation::Variant;

namespace {

// The object of a host, wrapped for COM.
ComPtr<IDispatch> faceOf(const velmor::automation::ObjectRef& object) {
    return ComPtr<IDispatch>::attach(velmor::platform::faceOf(object));
}

// A host with one reference to its template, whose handler and database call back.
struct Stage {
    using Act = std::function<void(Stage& on, const ComPtr<IDispatch>& child)>;

    explicit Stage(Act act) {
        const auto perform = [this, act](HostObject::Arguments arguments) {
            if (acted++ == 0) act(*this, arguments.empty() ? nullptr : faceOf(arguments[0].object()));
            return Variant();
        };
        const auto object = std::make_shared<HostObject>(u"kvDatabase");
        object->with(u"Act", perform);
        object->with(u"GetObjectItem", [perform](HostObject::Arguments) { return perform({}); });
        callback = faceOf(object);
        EXPECT_EQ(tag->putref_Database(callback.get()), S_OK);
        get(get(tag.get(), L"Variables").object().get(), L"Add", values(L"act", callback.get()));
        for (const wchar_t* list : {L"Variables", L"Properties"}) {
            get(get(tag.get(), list).object().get(), L"Add", values(L"p", L"a<KV:ACTING>X:</KV>b"));
        }
        EXPECT_EQ(tag->put_Name(Text(L"ACTING>X=<KV:ACTING>Y:</KV>:")), S_OK);
        EXPECT_EQ(tag->put_Value(Text(L"a<KV:ACTING>X:</KV>b")), S_OK);
    }

    ComPtr<_kvTag> tag = newTag();
    ComPtr<IDispatch> callback;
    int acted = 0;
};

const struct {
    const wchar_t* name;
    Stage::Act act;
} acts[] = {
    {L"nothing", [](Stage&, const ComPtr<IDispatch>&) {}},
    {L"release", [](Stage& on, const ComPtr<IDispatch>&) { on.tag = nullptr; }},
    {L"dispose",
     [](Stage& on, const ComPtr<IDispatch>& child) {
         if (child) get(child.get(), L"Dispose");
         EXPECT_EQ(on.tag->Dispose(VARIANT_TRUE), S_OK);
     }},
    {L"release all",
     [](Stage& on, const ComPtr<IDispatch>&) {
         get(get(on.tag.get(), L"Variables").object().get(), L"RemoveAll");
         on.tag->Dispose(VARIANT_TRUE);
         on.tag = nullptr;
         on.callback = nullptr;
     }},
};

// The calls of a host that let handlers act.
const struct {
    const wchar_t* member;
    std::vector<Value> (*arguments)();
    const wchar_t* result;
} calls[] = {
    {L"Result", [] { return values(); }, L"a[acted]b"},
    {L"ProcessValue", [] { return values(L"a<KV:ACTING>X:</KV>b"); }, L"a[acted]b"},
    {L"ProcessName", [] { return values(L"ACTING>X:"); }, L"[acted]"},
    {L"GetProcessedPropertiesValue", [] { return values(L"p"); }, L"a[acted]b"},
    {L"GetProcessedVariablesValue", [] { return values(L"p"); }, L"a[acted]b"},
    {L"CommandValueProcessed", [] { return values(); }, L"[acted]"},
    {L"GetProcessedElementsValue", [] { return values(L"X"); }, L"[acted]"},
};

TEST(Process, ObjectsOutliveTheCallsThatRunOnThem) {
    for (const auto& [act, perform] : acts) {
        for (const auto& [member, arguments, result] : calls) {
            Stage on(perform);
            const Outcome outcome = get(on.tag.get(), member, arguments());
            EXPECT_GT(on.acted, 0) << act << member;
            EXPECT_EQ(outcome.code, S_OK) << act << member;
            EXPECT_EQ(outcome.text(), result) << act << member;
        }
    }
}

TEST(Process, DatabasesMayReleaseTheirCaller) {
    for (const auto& [act, perform] : acts) {
        Stage on(perform);
        const auto direct = get(on.tag.get(), L"Direct").object();
        EXPECT_EQ(get(direct.get(), L"GetObjectItem", values(7, 1)).code, S_OK) << act;
        EXPECT_GT(on.acted, 0) << act;
    }
}

TEST(Process, AnUnknownThatIsADispatchIsAnObject) {
    const auto item = create(L"VelmorTest.Item");
    const auto database = std::make_shared<HostObject>();
    database->with(u"GetObjectItem", [&](HostObject::Arguments) {
        return Variant(DataObject{std::shared_ptr<IUnknown>(item.get(), [](IUnknown*) {})});
    });
    const auto tag = newTag();
    EXPECT_EQ(tag->putref_Database(faceOf(database).get()), S_OK);
    const auto direct = get(tag.get(), L"Direct").object();
    const auto given = get(direct.get(), L"GetObjectItem", values(7, 1)).object();
    EXPECT_TRUE(same(given.get(), item.get()));
    EXPECT_EQ(get(given.get(), L"ItemAccount").text(), L"17");

    Value unknown(item.get());
    unknown->vt = VT_UNKNOWN;
    const auto kept = get(propertiesOf(tag).get(), L"Add", values(L"x", std::move(unknown))).object();
    EXPECT_EQ(get(kept.get(), L"ValueType").text(), L"9");
    EXPECT_TRUE(same(get(kept.get(), L"Value").object().get(), item.get()));
}

constexpr wchar_t handlers[] = L"SOFTWARE\\Korvane\\Quillmark\\Handlers";
constexpr int classes = 2000;
constexpr int threadCount = 8;
constexpr int tags = 2 * classes / threadCount;  // so that each class is used by two threads

void setText(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
    EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text.c_str(),
                              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
}

// Gives a class of the test server another name.
void nameClass(const std::wstring& name, const wchar_t* served) {
    CLSID id;
    wchar_t text[39];
    EXPECT_HRESULT_SUCCEEDED(CLSIDFromProgID(served, &id));
    StringFromGUID2(id, text, 39);
    setText(L"SOFTWARE\\Classes\\" + name + L"\\CLSID", nullptr, text);
}

void removeClass(const std::wstring& name) {
    for (const std::wstring& key : {name + L"\\CLSID", name}) {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, (L"SOFTWARE\\Classes\\" + key).c_str());
    }
}

TEST(Process, AClassThatIsRegisteredAnewIsFound) {
    setText(handlers, L"MOVING", L"VelmorTest.Moving");
    const auto tag = newTag();
    for (const wchar_t* served : {L"VelmorTest.Level3", L"VelmorTest.Level5"}) {
        nameClass(L"VelmorTest.Moving", served);
        EXPECT_EQ(resultOf(tag, L"<KV:MOVING>X:</KV>"), std::wstring(L"L") + served[16] + L"[X]");
    }
    removeClass(L"VelmorTest.Moving");
    EXPECT_EQ(resultOf(tag, L"<KV:MOVING>X:</KV>"), L"");
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, handlers, L"MOVING");
}

// A template with tags of some of the classes, from one of them, and its result.
struct ManyTags {
    std::wstring text, result;

    explicit ManyTags(int first) {
        for (int i = 0; i < tags; ++i) {
            const std::wstring number = std::to_wstring((first + i) % classes);
            text += L"<KV:MANY-" + number + L">C" + number + L":</KV>";
            result += L"L5[C" + number + L"]";
        }
    }
};

TEST(Process, ThreadsWorkInApartmentsOfTheirOwn) {
    const std::wstring group = L"SOFTWARE\\Korvane\\Quillmark\\SubHandlers\\MANY";
    for (int i = 0; i < classes; ++i) {
        const std::wstring number = std::to_wstring(i);
        setText(group, number.c_str(), L"VelmorTest.Many" + number);
        nameClass(L"VelmorTest.Many" + number, L"VelmorTest.Level5");
    }
    std::array<std::wstring, threadCount> results;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            EXPECT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
            results[i] = resultOf(newTag(), ManyTags(i * classes / threadCount).text.c_str());
            CoUninitialize();
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (int i = 0; i < threadCount; ++i) EXPECT_TRUE(results[i] == ManyTags(i * classes / threadCount).result) << i;
    for (int i = 0; i < classes; ++i) removeClass(L"VelmorTest.Many" + std::to_wstring(i));
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, group.c_str());
}

}  // namespace
