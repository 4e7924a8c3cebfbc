#include "platform/win32/LateBinding.h"

#include <algorithm>
#include <vector>

#include "automation/Errors.h"
#include "platform/win32/Failure.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/WideText.h"

namespace velmor::platform {

namespace {

using automation::InvokeKind;
using automation::Variant;

std::u16string_view viewOfName(LPCOLESTR name) noexcept {
    return reinterpret_cast<const char16_t*>(name);
}

// A put of an object whose caller does not care is a set.
InvokeKind kindOf(const LateCall& call) noexcept {
    const bool isPut = (call.flags & DISPATCH_PROPERTYPUT) != 0;
    if ((call.flags & DISPATCH_PROPERTYPUTREF) != 0) {
        const bool mayBeLet = isPut && call.parameters->cArgs > 0;
        const auto isObject = [](VARIANT& value) { return isInterface(V_VT(&variableOf(value)) & ~VT_BYREF); };
        return mayBeLet && !isObject(call.parameters->rgvarg[0]) ? InvokeKind::let : InvokeKind::set;
    }
    if (isPut) return InvokeKind::let;
    return (call.flags & DISPATCH_METHOD) != 0 ? InvokeKind::method : InvokeKind::get;
}

// The arguments of a call by position, as the engine wants them, and back.
class DispatchedArguments {
public:
    DispatchedArguments(const MemberNames& members, const LateCall& call) : call_(call) {
        const DISPPARAMS& given = *call.parameters;
        if (given.cNamedArgs > given.cArgs) throw Failure{E_INVALIDARG};
        for (UINT i = given.cArgs; i-- > given.cNamedArgs;) places_.push_back(&given.rgvarg[i]);
        VARIANTARG* newValue = nullptr;
        for (UINT i = 0; i < given.cNamedArgs; ++i) {
            const DISPID position = given.rgdispidNamedArgs[i];
            (position == DISPID_PROPERTYPUT ? newValue : placeAt(members, position)) = &given.rgvarg[i];
        }
        if (newValue) places_.push_back(newValue);
    }

    std::span<Variant> take() {
        for (VARIANTARG* const place : places_) {
            values_.push_back(place ? valueAt(*place) : Variant::missing());
            before_.push_back(place && V_ISBYREF(place) ? values_.back() : Variant());
        }
        return values_;
    }

    void writeBack() {
        for (std::size_t i = 0; i < places_.size(); ++i) {
            if (!places_[i] || !V_ISBYREF(places_[i]) || values_[i].identical(before_[i])) continue;
            check(assignReference(*places_[i], values_[i]));
        }
    }

    // The index of an argument among the host's.
    UINT hostIndex(std::size_t position) const noexcept {
        const bool given = position < places_.size() && places_[position];
        return given ? static_cast<UINT>(places_[position] - call_.parameters->rgvarg) : 0;
    }

private:
    VARIANTARG*& placeAt(const MemberNames& members, DISPID position) {
        if (!members.hasParameter(call_.id, position)) throw Failure{DISP_E_PARAMNOTFOUND};
        const auto index = static_cast<std::size_t>(position);
        if (index >= places_.size()) places_.resize(index + 1);
        return places_[index];
    }

    Variant valueAt(const VARIANTARG& place) const {
        try {
            return fromVariant(place);
        } catch (const Error& error) {
            if (error.number() != 13) throw;
            throw automation::ArgumentError(13, values_.size());
        }
    }

    const LateCall& call_;
    std::vector<VARIANTARG*> places_;  // null for an argument that was left out
    std::vector<Variant> values_;
    std::vector<Variant> before_;  // copies of what came by reference
};

HRESULT codeOf(const automation::ArgumentError& error) noexcept {
    if (error.number() == 6) return DISP_E_OVERFLOW;
    return error.number() == 13 ? DISP_E_TYPEMISMATCH : DISP_E_PARAMNOTOPTIONAL;
}

// Without memory the text is null.
BSTR copyOf(const std::u16string& text) noexcept {
    return SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
}

HRESULT report(const Raised& raised, EXCEPINFO* exception) noexcept {
    if (!exception) return raised.code;
    *exception = {};
    exception->scode = raised.code;
    exception->bstrSource = copyOf(raised.source);
    exception->bstrDescription = copyOf(raised.description);
    return DISP_E_EXCEPTION;
}

HRESULT run(automation::Object& object, std::u16string_view name, DispatchedArguments& arguments,
            const LateCall& call) try {
    const Variant value = object.invoke(name, kindOf(call), arguments.take());
    arguments.writeBack();
    if (call.result) toVariant(value, *call.result);
    return S_OK;
} catch (const automation::ArgumentError& error) {
    if (call.faultyArgument) *call.faultyArgument = arguments.hostIndex(error.argument());
    return codeOf(error);
}

}  // namespace

HRESULT findNames(MemberNames& members, LPOLESTR* names, UINT count, DISPID* ids) noexcept try {
    if (!names || !ids || count == 0) return E_INVALIDARG;
    ids[0] = members.identifierOf(viewOfName(names[0]));
    for (UINT i = 1; i < count; ++i) ids[i] = members.parameterOf(ids[0], viewOfName(names[i]));
    return std::find(ids, ids + count, DISPID_UNKNOWN) == ids + count ? S_OK : DISP_E_UNKNOWNNAME;
} catch (...) {
    return E_OUTOFMEMORY;
}

HRESULT invokeLate(automation::Object& object, const MemberNames& members, const LateCall& call) noexcept try {
    if (!call.parameters) return E_INVALIDARG;
    if (call.result) VariantInit(call.result);
    const std::u16string_view name = members.nameOf(call.id);
    DispatchedArguments arguments(members, call);
    return run(object, name, arguments, call);
} catch (const Failure& failure) {
    return failure.code;
} catch (const Error& error) {
    if (error.number() == 438) return DISP_E_MEMBERNOTFOUND;
    if (error.number() == 450) return DISP_E_BADPARAMCOUNT;
    return report(raisedNow(), call.exception);
} catch (...) {
    return report(raisedNow(), call.exception);
}

}  // namespace velmor::platform
