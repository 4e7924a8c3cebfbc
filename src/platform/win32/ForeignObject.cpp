#include <algorithm>
#include <unordered_map>
#include <vector>

#include "automation/Errors.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/WideText.h"

// Needs Windows.h before it.
#include <ocidl.h>

namespace velmor::platform {
namespace {

using automation::InvokeKind;
using automation::Variant;

// A DECIMAL has none: it lies across the type of its VARIANT.
bool hasReferenceOfItsOwn(VARTYPE type) {
    return widthOf(type) != 0 && type != VT_DECIMAL;
}

// How an argument for a parameter of that type goes.
VARTYPE passingType(const TYPEDESC& type) {
    if (type.vt != VT_PTR) {
        const auto base = static_cast<VARTYPE>(type.vt & ~VT_BYREF);
        if (base == type.vt) return VT_VARIANT;
        return hasReferenceOfItsOwn(base) ? type.vt : variantReference;
    }
    const VARTYPE inner = type.lptdesc->vt;
    if (inner == VT_USERDEFINED) return VT_VARIANT;      // an interface pointer by value
    if (inner == VT_PTR) return VT_BYREF | VT_DISPATCH;  // a reference to one
    return hasReferenceOfItsOwn(inner) ? static_cast<VARTYPE>(VT_BYREF | inner) : variantReference;
}

// The arguments of one call in the platform's form: last first, each by value or by reference to a
// value that lives here.
class CallArguments {
public:
    CallArguments(std::span<Variant> arguments, const std::vector<VARTYPE>* types, bool lastByValue)
        : arguments_(arguments), values_(arguments.size()), passed_(arguments.size()) {
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const bool byValue = lastByValue && i + 1 == arguments.size();
            const VARTYPE declared = types && i < types->size() ? (*types)[i] : VARTYPE{VT_EMPTY};
            pass(i, byValue ? VARTYPE{VT_VARIANT} : declared);
        }
    }

    DISPPARAMS parameters(DISPID* named) {
        return {passed_.data(), named, static_cast<UINT>(passed_.size()), named ? 1U : 0U};
    }

    // What the member left in the references.
    void takeBack() {
        for (std::size_t i = 0; i < arguments_.size(); ++i) {
            if (V_ISBYREF(&passedAt(i))) arguments_[i] = fromVariant(*values_[i]);
        }
    }

private:
    VARIANT& passedAt(std::size_t index) { return passed_[passed_.size() - 1 - index]; }

    void pass(std::size_t index, VARTYPE declared) {
        const Variant& given = arguments_[index];
        ScopedVariant& value = values_[index];
        VARIANT& passed = passedAt(index);
        if (declared == VT_EMPTY && !given.isMissing() && !given.isObject()) declared = variantReference;
        if ((declared & VT_BYREF) == 0 || (given.isMissing() && declared != variantReference)) {
            toVariant(given, *value);
            passed = *value;  // still owned by `value`
        } else if (declared == variantReference) {
            toVariant(given, *value);
            V_VT(&passed) = variantReference;
            V_VARIANTREF(&passed) = value.get();
        } else {
            const auto type = static_cast<VARTYPE>(declared & ~VT_BYREF);
            if (FAILED(convertVariant(given, type, value))) throw Error(13);
            V_VT(&passed) = declared;
            V_BYREF(&passed) = &V_BYREF(value.get());  // every simple value begins at the same place
        }
    }

    std::span<Variant> arguments_;
    std::vector<ScopedVariant> values_;
    std::vector<VARIANT> passed_;
};

WORD flagsOf(InvokeKind kind) {
    if (kind == InvokeKind::let) return DISPATCH_PROPERTYPUT;
    return kind == InvokeKind::set ? DISPATCH_PROPERTYPUTREF : DISPATCH_METHOD | DISPATCH_PROPERTYGET;
}

std::u16string nameOf(ITypeInfo& types) {
    BSTR name = nullptr;
    if (FAILED(types.GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr))) return {};
    std::u16string result(viewOf(name));
    SysFreeString(name);
    if (result.size() > 1 && result.front() == u'_') result.erase(0, 1);
    return result;
}

// Some objects describe themselves by their class: its first interface has the members.
ComPtr<ITypeInfo> withMembers(ComPtr<ITypeInfo> types) {
    TYPEATTR* attributes = nullptr;
    if (!types || FAILED(types->GetTypeAttr(&attributes))) return nullptr;
    const bool isClass = attributes->typekind == TKIND_COCLASS;
    types->ReleaseTypeAttr(attributes);
    if (!isClass) return types;
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> members;
    if (FAILED(types->GetRefTypeOfImplType(0, &reference)) || FAILED(types->GetRefTypeInfo(reference, members.put()))) {
        return nullptr;
    }
    return members;
}

// A foreign automation object, called late-bound.
//
// Arguments are passed by the object's type information: a parameter by reference gets a reference of its own
// type, and its new value is returned. Without type information objects are passed by value and everything else
// as a reference to a variant, as scripts pass their variables. A `missing` argument is passed as the
// platform's "parameter not found".
class ForeignObject : public automation::Object {
public:
    explicit ForeignObject(IDispatch* dispatch) : dispatch_(dispatch) {}

    const ComPtr<IDispatch>& dispatch() const noexcept { return dispatch_; }

    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override {
        const auto alive = shared_from_this();  // the call may make its holder let it go
        const DISPID id = identifierOf(name);
        const bool puts = kind == InvokeKind::let || kind == InvokeKind::set;
        const bool needsTypes = !puts && !std::all_of(arguments.begin(), arguments.end(),
                                                      [](const Variant& value) { return value.isObject(); });
        CallArguments given(arguments, needsTypes ? parametersOf(id) : nullptr, puts);
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS parameters = given.parameters(puts ? &put : nullptr);
        ScopedVariant result;
        EXCEPINFO exception{};
        VARIANT* const wanted = puts ? nullptr : result.get();
        const auto call = [&](WORD flags) {
            return dispatch_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, wanted, &exception,
                                     nullptr);
        };
        HRESULT outcome = call(flagsOf(kind));
        if (outcome == DISP_E_MEMBERNOTFOUND && kind == InvokeKind::set) outcome = call(DISPATCH_PROPERTYPUT);
        if (FAILED(outcome)) throw errorOf(outcome, outcome == DISP_E_EXCEPTION ? &exception : nullptr);
        given.takeBack();
        return fromVariant(*result);
    }

    // From the type information of class or interface, without the underscore that hides a default interface;
    // "Picture" for the system's pictures; "Object" without type information.
    std::u16string typeName() const override {
        if (dispatch_.as<IUnknown>(IID_IPicture)) return u"Picture";
        ComPtr<ITypeInfo> types;
        std::u16string name;
        const ComPtr<IProvideClassInfo> provider = dispatch_.as<IProvideClassInfo>(IID_IProvideClassInfo);
        if (provider && SUCCEEDED(provider->GetClassInfo(types.put())) && types) name = nameOf(*types.get());
        if (name.empty() && SUCCEEDED(dispatch_->GetTypeInfo(0, LOCALE_USER_DEFAULT, types.put())) && types) {
            name = nameOf(*types.get());
        }
        return name.empty() ? u"Object" : name;
    }

private:
    // The variant types of a member's parameters; VT_BYREF marks those by reference.
    using Parameters = std::vector<VARTYPE>;

    DISPID identifierOf(std::u16string_view name) {
        if (name.empty()) return DISPID_VALUE;
        std::u16string key(name);
        if (const auto known = identifiers_.find(key); known != identifiers_.end()) return known->second;
        std::wstring text = wide(name);
        wchar_t* names[] = {text.data()};
        DISPID id = DISPID_UNKNOWN;
        if (holdsZero(name) || FAILED(dispatch_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
            automation::raiseNoSuchMember(name);
        }
        identifiers_.emplace(std::move(key), id);
        return id;
    }

    const Parameters* parametersOf(DISPID id) {
        if (const auto known = parameters_.find(id); known != parameters_.end()) return &known->second;
        if (!types_) {
            ComPtr<ITypeInfo> types;
            dispatch_->GetTypeInfo(0, LOCALE_USER_DEFAULT, types.put());
            types_ = withMembers(std::move(types));
        }
        ITypeInfo* const types = types_->get();
        if (types == nullptr) return nullptr;
        const auto release = [types](FUNCDESC* description) { types->ReleaseFuncDesc(description); };
        for (UINT i = 0;; ++i) {
            FUNCDESC* found = nullptr;
            if (FAILED(types->GetFuncDesc(i, &found))) return nullptr;
            const std::unique_ptr<FUNCDESC, decltype(release)> description(found, release);
            const bool reads = description->invkind == INVOKE_FUNC || description->invkind == INVOKE_PROPERTYGET;
            if (description->memid != id || !reads) continue;
            Parameters& parameters = parameters_[id];
            for (SHORT p = 0; p < description->cParams; ++p) {
                parameters.push_back(passingType(description->lprgelemdescParam[p].tdesc));
            }
            return &parameters;
        }
    }

    ComPtr<IDispatch> dispatch_;
    std::unordered_map<std::u16string, DISPID> identifiers_;  // by requested name
    std::unordered_map<DISPID, Parameters> parameters_;
    std::optional<ComPtr<ITypeInfo>> types_;  // once asked for
};

}  // namespace

automation::ObjectRef wrapForeign(IDispatch* dispatch) {
    return std::make_shared<ForeignObject>(dispatch);
}

IDispatch* foreignOf(const automation::ObjectRef& object) {
    const auto* wrapper = dynamic_cast<const ForeignObject*>(object.get());
    return wrapper ? ComPtr<IDispatch>(wrapper->dispatch()).detach() : nullptr;
}

}  // namespace velmor::platform
