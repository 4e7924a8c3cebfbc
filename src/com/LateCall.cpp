#include "com/LateCall.h"

#include <cstring>
#include <new>
#include <vector>

#include "com/Argument.h"
#include "platform/win32/ByReference.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/ScopedVariant.h"

namespace velmor::com {

namespace {

using platform::ComPtr;
using platform::ScopedVariant;

bool isPut(WORD flags) noexcept {
    return (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
}

bool isObject(VARIANTARG& argument) noexcept {
    return platform::isInterface(static_cast<VARTYPE>(platform::variableOf(argument).vt & ~VT_BYREF));
}

bool givesObject(const Member& member) noexcept {
    return platform::isInterface(member.result.type);
}

// Interfaces of the type library are dual, so what comes as one of them is an IDispatch.
VARTYPE answerTypeOf(const Parameter& result) noexcept {
    if (result.type == VT_UNKNOWN && !IsEqualIID(result.interfaceId, IID_IUnknown)) return VT_DISPATCH;
    return result.type;
}

// The arguments in the form that DispCallFunc wants, the place for the result last.
struct CallFrame {
    explicit CallFrame(const Member& member) : arguments(member.parameters.size()) {}

    void add(Argument& argument, VARTYPE type) {
        types.push_back(type);
        values.push_back(argument.passed());
    }

    std::vector<Argument> arguments;
    std::vector<VARTYPE> types;
    std::vector<VARIANTARG*> values;
};

}  // namespace

HRESULT LateCall::invoke(DISPID id, WORD flags, VARIANT* result, EXCEPINFO* exception, UINT* faultyArgument) noexcept {
    exception_ = exception;
    faultyArgument_ = faultyArgument;
    if (arguments_.cNamedArgs > arguments_.cArgs) return E_INVALIDARG;
    if (isPut(flags)) return put(id, flags);
    const Member* member = members_.find(id, INVOKE_PROPERTYGET);
    if (!member) member = members_.find(id, INVOKE_FUNC);
    if (!member) return DISP_E_MEMBERNOTFOUND;
    if (arguments_.cArgs <= member->parameters.size()) return call(*member, result);
    if (!member->parameters.empty() || !givesObject(*member)) return DISP_E_BADPARAMCOUNT;
    return callThroughDefault(*member, 0, flags, result);
}

HRESULT LateCall::put(DISPID id, WORD flags) noexcept {
    if (arguments_.cArgs == 0) return DISP_E_BADPARAMCOUNT;
    const bool reference =
        (flags & DISPATCH_PROPERTYPUTREF) && (!(flags & DISPATCH_PROPERTYPUT) || isObject(arguments_.rgvarg[0]));
    const INVOKEKIND first = reference ? INVOKE_PROPERTYPUTREF : INVOKE_PROPERTYPUT;
    const INVOKEKIND second = reference ? INVOKE_PROPERTYPUT : INVOKE_PROPERTYPUTREF;
    for (const INVOKEKIND kind : {first, second}) {
        const Member* member = members_.find(id, kind);
        if (member && member->parameters.size() == arguments_.cArgs) return call(*member, nullptr);
    }
    const Member* getter = members_.find(id, INVOKE_PROPERTYGET);
    if (!getter) return DISP_E_MEMBERNOTFOUND;
    const UINT own = static_cast<UINT>(getter->parameters.size());
    if (!givesObject(*getter) || positional() < own) return DISP_E_MEMBERNOTFOUND;
    return callThroughDefault(*getter, own, flags, nullptr);
}

UINT LateCall::positional() const noexcept {
    return arguments_.cArgs - arguments_.cNamedArgs;
}

HRESULT LateCall::callThroughDefault(const Member& getter, UINT own, WORD flags, VARIANT* result) noexcept {
    // Arguments stand in reverse: the getter's own are the last ones.
    DISPPARAMS ownArguments{arguments_.rgvarg + (arguments_.cArgs - own), nullptr, own, 0};
    DISPPARAMS rest{arguments_.rgvarg, arguments_.rgdispidNamedArgs, arguments_.cArgs - own, arguments_.cNamedArgs};
    ScopedVariant given;
    LateCall get(members_, object_, locale_, ownArguments);
    const HRESULT code = get.invoke(getter.id, DISPATCH_PROPERTYGET, given.get(), exception_, faultyArgument_);
    if (FAILED(code)) return code;
    if (given->vt != VT_DISPATCH || !given->pdispVal) return DISP_E_MEMBERNOTFOUND;
    return given->pdispVal->Invoke(DISPID_VALUE, IID_NULL, locale_, flags, &rest, result, exception_, faultyArgument_);
}

VARIANTARG* LateCall::source(const Member& member, UINT index) noexcept {
    for (UINT named = 0; named < arguments_.cNamedArgs; ++named) {
        const DISPID name = arguments_.rgdispidNamedArgs[named];
        const bool isValue = name == DISPID_PROPERTYPUT && index + 1 == member.parameters.size();
        if (isValue || name == static_cast<DISPID>(index)) return &arguments_.rgvarg[named];
    }
    return index < positional() ? &arguments_.rgvarg[arguments_.cArgs - 1 - index] : nullptr;
}

bool LateCall::knowsNames(const Member& member) const noexcept {
    for (UINT named = 0; named < arguments_.cNamedArgs; ++named) {
        const DISPID name = arguments_.rgdispidNamedArgs[named];
        if (name != DISPID_PROPERTYPUT && static_cast<std::size_t>(name) >= member.parameters.size()) return false;
    }
    return true;
}

HRESULT LateCall::call(const Member& member, VARIANT* result) noexcept try {
    if (!knowsNames(member)) return DISP_E_PARAMNOTFOUND;
    CallFrame frame(member);
    for (UINT index = 0; index < member.parameters.size(); ++index) {
        const Parameter& parameter = member.parameters[index];
        VARIANTARG* given = source(member, index);
        const HRESULT code = frame.arguments[index].take(parameter, given, locale_);
        if (FAILED(code)) {
            if (faultyArgument_ && given) *faultyArgument_ = static_cast<UINT>(given - arguments_.rgvarg);
            return code;
        }
        frame.add(frame.arguments[index],
                  parameter.byReference ? static_cast<VARTYPE>(VT_BYREF | parameter.type) : parameter.type);
    }
    ScopedVariant answer;
    VARIANTARG answerPlace{};
    const VARTYPE answerType = member.result.type;
    if (answerType != VT_EMPTY) {
        answerPlace.vt = VT_BYREF | answerType;
        answerPlace.byref = answerType == VT_VARIANT ? static_cast<void*>(answer.get()) : &answer->llVal;
        frame.types.push_back(answerPlace.vt);
        frame.values.push_back(&answerPlace);
    }
    SetErrorInfo(0, nullptr);
    ScopedVariant outcome;
    const HRESULT called =
        DispCallFunc(&object_, member.offset, CC_STDCALL, VT_ERROR, static_cast<UINT>(frame.types.size()),
                     frame.types.data(), frame.values.data(), outcome.get());
    if (FAILED(called)) return called;
    if (FAILED(outcome->scode)) return fail(outcome->scode);
    if (answerType != VT_VARIANT) answer->vt = answerTypeOf(member.result);
    for (Argument& argument : frame.arguments) {
        if (const HRESULT code = argument.writeBack(locale_); FAILED(code)) return code;
    }
    if (result) *result = answer.detach();
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT LateCall::fail(HRESULT code) noexcept {
    if (!exception_) return DISP_E_EXCEPTION;
    *exception_ = EXCEPINFO{};
    exception_->scode = code;
    ComPtr<IErrorInfo> error;
    if (GetErrorInfo(0, error.put()) == S_OK) {
        error->GetSource(&exception_->bstrSource);
        error->GetDescription(&exception_->bstrDescription);
        error->GetHelpFile(&exception_->bstrHelpFile);
        error->GetHelpContext(&exception_->dwHelpContext);
    }
    return DISP_E_EXCEPTION;
}

}  // namespace velmor::com
