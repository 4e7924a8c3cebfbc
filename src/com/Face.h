#pragma once

#include <memory>
#include <utility>

#include "automation/DispatchTable.h"
#include "automation/Errors.h"
#include "com/Guard.h"
#include "com/TypeLibrary.h"
#include "platform/win32/Face.h"

namespace velmor::com {

// The face of a core object: keeps it alive, and is the only one that it has. Its members are those of the class's
// table, late-bound, and of the dual interface. Derived classes translate members, and have no rule of their own.
template <class Interface, class Core, const automation::DispatchTable& (*memberTable)(), const CLSID& classId>
class Face : public platform::Face<Interface> {
public:
    using CoreClass = Core;

    explicit Face(std::shared_ptr<Core> core) : core_(std::move(core)) {}

    automation::ObjectRef core() const final { return core_; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override {
        return index == 0 ? giveTypeInfo(__uuidof(Interface), info) : Base::GetTypeInfo(index, locale, info);
    }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept override { return giveTypeInfo(classId, info); }

    // Hosts want the platform's enumerators.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception, UINT* faulty) noexcept override {
        if constexpr (requires { &Interface::get_NewEnum; }) {
            if (id == DISPID_NEWENUM && result) {
                VariantInit(result);
                const HRESULT code = this->get_NewEnum(&result->punkVal);
                if (SUCCEEDED(code)) result->vt = VT_UNKNOWN;
                return code;
            }
        }
        return Base::Invoke(id, reserved, locale, flags, arguments, result, exception, faulty);
    }

protected:
    // com::guard for the members of the interface. The object lives to the member's end, whatever
    // handlers and the host's objects release meanwhile.
    template <class... Arguments>
    HRESULT guard(Arguments&&... arguments) noexcept {
        const platform::ComPtr<Interface> alive(this);
        return com::guard(__uuidof(Interface), std::forward<Arguments>(arguments)...);
    }

    const std::shared_ptr<Core> core_;

private:
    using Base = platform::Face<Interface>;

    DISPID identifierOf(std::u16string_view name) final {
        const auto* const row = memberTable().find(name);
        return row ? row->id : DISPID_UNKNOWN;
    }
    DISPID parameterOf(DISPID member, std::u16string_view name) const final {
        return memberTable().parameter(member, name);
    }
    bool hasParameter(DISPID member, DISPID position) const final {
        const auto* const row = memberTable().findId(member);
        return row && position >= 0 && position < row->maximum;
    }
    std::u16string_view nameOf(DISPID member) const final {
        const auto* const row = memberTable().findId(member);
        if (!row) automation::raiseNoSuchMember({});
        return row->name;
    }
};

// The face of a core object with a reference for the caller; null for null.
template <class FaceClass, class Core>
FaceClass* faceFor(const std::shared_ptr<Core>& core) {
    if (!core) return nullptr;
    const auto make = [&] { return std::make_unique<FaceClass>(core); };
    return static_cast<FaceClass*>(platform::liveFaceOf(*core, make));
}

}  // namespace velmor::com
