#include "com/InterfaceTable.h"

#include <utility>

#include "com/Failure.h"
#include "platform/win32/ComPtr.h"

namespace velmor::com {

namespace {

using platform::ComPtr;

// The vtable form of a dual interface: late binding sees the other one, which has no offsets.
ComPtr<ITypeInfo> vtableForm(ITypeInfo& dispatch) {
    constexpr UINT otherHalf = static_cast<UINT>(-1);
    HREFTYPE reference = 0;
    check(dispatch.GetRefTypeOfImplType(otherHalf, &reference));
    ComPtr<ITypeInfo> info;
    check(dispatch.GetRefTypeInfo(reference, info.put()));
    return info;
}

// Gives back what a type info lends.
template <class Description, void (STDMETHODCALLTYPE ITypeInfo::*release)(Description*)>
class Lent {
public:
    explicit Lent(ITypeInfo& info) : info_(info) {}
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    ~Lent() {
        if (lent_) (info_.*release)(lent_);
    }
    Description** put() { return &lent_; }
    Description* operator->() const { return lent_; }

private:
    ITypeInfo& info_;
    Description* lent_ = nullptr;
};
using LentType = Lent<TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using LentFunction = Lent<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;

IID interfaceOf(ITypeInfo& info, HREFTYPE reference) {
    ComPtr<ITypeInfo> other;
    check(info.GetRefTypeInfo(reference, other.put()));
    LentType type(*other.get());
    check(other->GetTypeAttr(type.put()));
    return type->guid;
}

Parameter describe(ITypeInfo& info, const ELEMDESC& element) {
    const USHORT flags = element.paramdesc.wParamFlags;
    Parameter parameter;
    parameter.byReference = (flags & PARAMFLAG_FOUT) != 0;
    parameter.optional = (flags & PARAMFLAG_FOPT) != 0;
    if ((flags & PARAMFLAG_FHASDEFAULT) && element.paramdesc.pparamdescex) {
        check(VariantCopy(parameter.initial.put(), &element.paramdesc.pparamdescex->varDefaultValue));
    }
    const TYPEDESC* type = &element.tdesc;
    if (parameter.byReference) type = type->lptdesc;
    if (type->vt == VT_PTR && type->lptdesc->vt == VT_USERDEFINED) {
        parameter.type = VT_UNKNOWN;
        parameter.interfaceId = interfaceOf(info, type->lptdesc->hreftype);
    } else {
        parameter.type = type->vt;
        if (type->vt == VT_UNKNOWN) parameter.interfaceId = IID_IUnknown;
    }
    return parameter;
}

Member describe(ITypeInfo& info, const FUNCDESC& function) {
    Member member;
    member.id = function.memid;
    member.kind = function.invkind;
    member.offset = static_cast<ULONG_PTR>(function.oVft);
    for (SHORT index = 0; index < function.cParams; ++index) {
        const ELEMDESC& element = function.lprgelemdescParam[index];
        if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
            member.result = describe(info, element);
        } else {
            member.parameters.push_back(describe(info, element));
        }
    }
    return member;
}

}  // namespace

InterfaceTable::InterfaceTable(ITypeInfo& dispatch) {
    const ComPtr<ITypeInfo> info = vtableForm(dispatch);
    LentType type(*info.get());
    check(info->GetTypeAttr(type.put()));
    for (UINT index = 0; index < type->cFuncs; ++index) {
        LentFunction function(*info.get());
        check(info->GetFuncDesc(index, function.put()));
        members_.push_back(describe(*info.get(), *function.operator->()));
    }
}

const Member* InterfaceTable::find(DISPID id, INVOKEKIND kind) const noexcept {
    for (const Member& member : members_) {
        if (member.id == id && member.kind == kind) return &member;
    }
    return nullptr;
}

}  // namespace velmor::com
