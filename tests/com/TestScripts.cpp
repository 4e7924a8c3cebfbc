// The script tests that cscript runs, replayed by a compiled host: late-bound and through the vtable.

#include <gtest/gtest.h>

#include "Replay.h"

using namespace host;

namespace {

std::set<std::wstring> declaredMembers() {
    std::set<std::wstring> members;
    ComPtr<ITypeLib> library;
    EXPECT_HRESULT_SUCCEEDED(LoadTypeLib(L"Velmor3.dll", library.put()));
    for (UINT index = 0; index < library->GetTypeInfoCount(); ++index) {
        ComPtr<ITypeInfo> info;
        EXPECT_HRESULT_SUCCEEDED(library->GetTypeInfo(index, info.put()));
        info = vtableForm(*info.get());
        FUNCDESC* function = nullptr;
        for (UINT member = 0; info && SUCCEEDED(info->GetFuncDesc(member, &function)); ++member) {
            members.insert(keyOf(*info.get(), nameOf(*info.get(), function->memid), function->invkind));
            info->ReleaseFuncDesc(function);
        }
    }
    return members;
}

TEST(Scripts, CallEachMemberOfEachClassInEachWay) {
    const std::set<std::wstring> declared = declaredMembers();
    EXPECT_GT(declared.size(), 150U);
    for (const Call way : {&call, &vtableCall}) {
        std::set<std::wstring> called;
        for (const char* script : {"tag", "properties", "handlers", "direct", "library", "damage"}) {
            called.merge(replay(std::string(VELMOR_TEST_SCRIPTS "/") + script + ".vbs", way));
        }
        for (const std::wstring& member : declared) EXPECT_TRUE(called.contains(member)) << member;
    }
}

}  // namespace
