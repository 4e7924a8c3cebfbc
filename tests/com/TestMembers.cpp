// Each member of each class, late-bound and through the vtable: the same calls give the same. And a script calls it.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include "Host.h"

using namespace host;

namespace {

// Of a dual interface, as the type library declares it for compilers.
ComPtr<ITypeInfo> vtableForm(ITypeInfo& info) {
    constexpr UINT otherHalf = static_cast<UINT>(-1);
    ComPtr<ITypeInfo> vtable;
    HREFTYPE reference = 0;
    if (SUCCEEDED(info.GetRefTypeOfImplType(otherHalf, &reference))) info.GetRefTypeInfo(reference, vtable.put());
    return vtable;
}

std::wstring nameOf(ITypeInfo& info, MEMBERID member) {
    Text name;
    EXPECT_HRESULT_SUCCEEDED(info.GetDocumentation(member, name.put(), nullptr, nullptr, nullptr));
    return name.str();
}

// A member's arguments, each of its declared type and unlike the others.
class Arguments {
public:
    Arguments(ITypeInfo& info, const FUNCDESC& function) {
        for (SHORT i = 0; i < function.cParams; ++i) {
            const ELEMDESC& parameter = function.lprgelemdescParam[i];
            const USHORT flags = parameter.paramdesc.wParamFlags;
            if ((flags & PARAMFLAG_FRETVAL) != 0) continue;
            const bool refers = (flags & PARAMFLAG_FOUT) != 0;
            add(refers ? *parameter.tdesc.lptdesc : parameter.tdesc, refers, i + 1);
        }
        name_ = nameOf(info, function.memid);
    }

    const std::wstring& name() const { return name_; }
    std::vector<Value> values() {
        std::vector<Value> all;
        for (std::size_t i = 0; i < variables_.size(); ++i) {
            Value& value = all.emplace_back(Value::copyOf(*variables_[i]));
            if (refers_[i]) {
                value = Value::reference(*variables_[i]);
                value->vt = static_cast<VARTYPE>(VT_BYREF | variables_[i]->vt);
                value->byref = &variables_[i]->llVal;
            }
        }
        return all;
    }
    std::wstring after() const {
        std::wstring text;
        for (const Value& variable : variables_) text += L" " + describe(*variable);
        return text;
    }

private:
    void add(const TYPEDESC& type, bool refers, int number) {
        if (type.vt == VT_PTR) {
            variables_.emplace_back(newTag().get());
        } else if (type.vt == VT_DISPATCH) {
            variables_.emplace_back(create(L"VelmorTest.Collection").get());
        } else if (type.vt == VT_BSTR || type.vt == VT_VARIANT) {
            variables_.emplace_back((L"p" + std::to_wstring(number)).c_str());
        } else {
            variables_.emplace_back(Value(number).to(type.vt));
        }
        refers_.push_back(refers);
    }

    std::wstring name_;
    std::vector<Value> variables_;
    std::vector<bool> refers_;
};

std::vector<ComPtr<IDispatch>> objectsOfEachClass() {
    const auto tag = newTag();
    const auto list = propertiesOf(tag);
    const auto property = get(list.get(), L"Add", values(L"p1", L"<KV:TAG>@VERSION:</KV>")).object();
    EXPECT_EQ(tag->put_Value(Text(L"<KV:LEVEL5>p:</KV><KV:TAG>PROPERTY:p1=:</KV>")), S_OK);
    return {get(tag.get(), L"Tags").object(),    property,
            ComPtr<IDispatch>(list.get()),       get(tag.get(), L"Direct").object(),
            get(tag.get(), L"Library").object(), create(L"kvVelmor3.kvTagInfo"),
            create(L"kvVelmor3.ITag4"),          create(L"kvVelmor3.kvCheck"),
            ComPtr<IDispatch>(tag.get())};
}

enum class Way { late, vtable };

// What a call gave; of what is new each time, the type.
std::wstring outcomeOf(IDispatch* object, ITypeInfo& info, const FUNCDESC& function, Way way) {
    Arguments arguments(info, function);
    const auto find = [&](LPOLESTR*, MEMBERID* id) { return *id = function.memid, S_OK; };
    const auto kind = static_cast<WORD>(function.invkind);
    const Outcome outcome = callWith(
        arguments.name().c_str(), kind, arguments.values(), find,
        [&](DISPID id, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception) {
            UINT faulty = 0;
            return way == Way::late ? object->Invoke(id, IID_NULL, 0, kind, parameters, result, exception, &faulty)
                                    : info.Invoke(object, id, kind, parameters, result, exception, &faulty);
        });
    const std::wstring called = arguments.name() + L" " + std::to_wstring(outcome.code) + L" ";
    if (FAILED(outcome.code)) return called + std::to_wstring(outcome.raised);
    const bool isNew = outcome.value->vt == VT_DATE ||
                       std::regex_match(arguments.name(), std::wregex(L"New.*|Temp.*|Encipher|ReadTextFile"));
    return called + (isNew ? std::to_wstring(outcome.value->vt) : describe(*outcome.value)) + arguments.after();
}

std::vector<std::wstring> outcomesOf(Way way) {
    std::filesystem::remove_all("members");
    std::filesystem::create_directory("members");
    std::filesystem::current_path("members");  // for the files that members write
    std::vector<std::wstring> outcomes;
    for (const ComPtr<IDispatch>& object : objectsOfEachClass()) {
        ComPtr<ITypeInfo> info;
        EXPECT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
        info = vtableForm(*info.get());
        FUNCDESC* function = nullptr;
        for (UINT member = 0; SUCCEEDED(info->GetFuncDesc(member, &function)); ++member) {
            outcomes.push_back(outcomeOf(object.get(), *info.get(), *function, way));
            info->ReleaseFuncDesc(function);
        }
    }
    std::filesystem::current_path("..");
    return outcomes;
}

std::wstring scripts() {
    std::wstring all;
    for (const auto& each : std::filesystem::directory_iterator(VELMOR_TEST_SCRIPTS)) {
        std::ifstream file(each.path(), std::ios::binary);
        all.append(std::istreambuf_iterator<char>(file), {});
    }
    return all;
}

TEST(Members, DoTheSameLateBoundAndThroughTheVtable) {
    const auto late = outcomesOf(Way::late), vtable = outcomesOf(Way::vtable);
    EXPECT_GT(late.size(), 150U);
    ASSERT_EQ(late.size(), vtable.size());
    const std::wstring called = scripts();
    for (std::size_t i = 0; i < late.size(); ++i) {
        EXPECT_EQ(late[i], vtable[i]);
        const std::wstring name = late[i].substr(0, late[i].find(L' '));
        EXPECT_TRUE(std::regex_search(called, std::wregex(L"\\." + name + L"\\b"))) << name << " in no script";
    }
}

}  // namespace
