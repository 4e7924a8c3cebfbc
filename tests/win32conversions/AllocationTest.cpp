// Failing allocations: the process continues, and the object works afterwards.

#include <gtest/gtest.h>

#include <string>

#include "Allocations.h"
#include "automation/Variant.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/WideText.h"
#include "text/Error.h"

namespace velmor::platform {
namespace {

// Answers with the name of the member, by value or as an error.
class Named : public automation::Object {
public:
    automation::Variant invoke(std::u16string_view name, automation::InvokeKind,
                               std::span<automation::Variant>) override {
        if (name.starts_with(u"Raise")) throw Error(5, u"VelmorTest", std::u16string(name));
        return automation::Variant(name);
    }
    std::u16string typeName() const override { return u"Named"; }
};

std::u16string ask(const ComPtr<IDispatch>& face, std::wstring name) {
    wchar_t* names[] = {name.data()};
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(face->GetIDsOfNames(IID_NULL, names, 1, 0, &id))) return u"";
    DISPPARAMS none{};
    ScopedVariant result;
    EXCEPINFO exception{};
    const HRESULT code = face->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &none, result.get(), &exception, nullptr);
    if (code == DISP_E_EXCEPTION) return errorOf(code, &exception).description();
    return result->vt == VT_BSTR ? std::u16string(viewOf(V_BSTR(result.get()))) : u"";
}

TEST(Allocation, FailuresLeaveAnAdapterUsable) {
    const wchar_t* const members[] = {L"AnswersWithItsName", L"RaisesItsNameAsAnError"};
    for (int allowed = 0; allowed == 0 || test::allocationFailed; ++allowed) {
        ASSERT_LT(allowed, 1000);
        const auto object = std::make_shared<Named>();
        ComPtr<IDispatch> kept;
        try {
            const test::LimitedAllocations limited(allowed);
            kept = ComPtr<IDispatch>::attach(adapterOf(object));
            for (const wchar_t* member : members) ask(kept, member);
        } catch (const std::bad_alloc&) {
        }
        const auto face = ComPtr<IDispatch>::attach(adapterOf(object));
        EXPECT_TRUE(!kept || kept.get() == face.get());
        for (const wchar_t* member : {members[1], members[0], L"Other"}) EXPECT_EQ(ask(face, member), fromWide(member));
    }
}

}  // namespace
}  // namespace velmor::platform
