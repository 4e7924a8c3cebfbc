#include "platform/win32/VariantBridge.h"

#include <algorithm>
#include <cstring>

#include "automation/Convert.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"

namespace velmor::platform {

using automation::Variant;

namespace {

constexpr int nestingLimit = 64;  // of references to variants

// The place of the data in a VARIANT of that type that is not a reference.
void* dataOf(VARIANT& value, VARTYPE type) noexcept {
    return type == VT_DECIMAL ? static_cast<void*>(&value) : &V_I8(&value);
}

template <class T>
T load(const void* data) noexcept {
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

Variant objectFor(IUnknown* unknown) {
    ComPtr<IUnknown> held(unknown);
    const auto dispatch = held.as<IDispatch>(IID_IDispatch);
    if (dispatch || !held) return Variant(objectOf(dispatch.get()));
    const auto release = [](IUnknown* object) { object->Release(); };
    return Variant(automation::DataObject{std::shared_ptr<IUnknown>(held.detach(), release)});
}

// A number of a type that has no counterpart, without loss.
Variant widened(VARTYPE type, const void* data) {
    ScopedVariant value;
    // Not every system tells an unsigned 32-bit number that is no Long from a negative one.
    V_VT(value.get()) = type == VT_UI4 || type == VT_UINT ? VARTYPE{VT_UI8} : type;
    V_UI8(value.get()) = 0;
    std::memcpy(dataOf(*value, type), data, widthOf(type));
    for (const VARTYPE wider : {VARTYPE{type == VT_I1 ? VT_I2 : VT_I4}, VARTYPE{VT_DECIMAL}}) {
        if (SUCCEEDED(VariantChangeType(value.get(), value.get(), 0, wider))) return fromVariant(*value);
    }
    throw Error(13);
}

Variant read(VARTYPE type, const void* data) {
    if (type == VT_EMPTY) return Variant();
    if (type == VT_NULL) return automation::Null{};
    if (type == VT_I2) return load<std::int16_t>(data);
    if (type == VT_I4) return load<std::int32_t>(data);
    if (type == VT_R4) return load<float>(data);
    if (type == VT_R8) return load<double>(data);
    if (type == VT_CY) return automation::Currency{load<std::int64_t>(data)};
    if (type == VT_DATE) return automation::Date{load<double>(data)};
    if (type == VT_BSTR) return viewOf(load<BSTR>(data));
    if (type == VT_DISPATCH) return objectOf(load<IDispatch*>(data));
    if (type == VT_ERROR) return automation::ErrorCode{load<std::int32_t>(data)};
    if (type == VT_BOOL) return load<VARIANT_BOOL>(data) != VARIANT_FALSE;
    if (type == VT_UNKNOWN) return objectFor(load<IUnknown*>(data));
    if (type == VT_DECIMAL) {
        const auto source = load<DECIMAL>(data);
        return automation::Decimal{source.Hi32, source.Lo64, source.scale, (source.sign & DECIMAL_NEG) != 0};
    }
    if (type == VT_UI1) return load<std::uint8_t>(data);
    return widened(type, data);
}

// Writes the data of a VARIANT whose type is set later.
struct Writer {
    VARIANT& target;

    void operator()(const std::u16string& text) const { V_BSTR(&target) = makeBstr(text); }
    void operator()(const automation::ObjectRef& object) const { V_DISPATCH(&target) = faceOf(object); }
    void operator()(bool value) const { V_BOOL(&target) = value ? VARIANT_TRUE : VARIANT_FALSE; }
    void operator()(const automation::DataObject& object) const {
        V_UNKNOWN(&target) = ComPtr<IUnknown>(static_cast<IUnknown*>(object.reference.get())).detach();
    }
    void operator()(const automation::Decimal& value) const {
        V_DECIMAL(&target).Hi32 = value.high;
        V_DECIMAL(&target).Lo64 = value.low;
        V_DECIMAL(&target).scale = value.scale;
        V_DECIMAL(&target).sign = value.negative ? DECIMAL_NEG : 0;
    }
    // A number: the platform keeps it in the same form.
    template <class Number>
    void operator()(const Number& value) const {
        static_assert(sizeof value <= sizeof V_I8(&target));
        if constexpr (!std::is_empty_v<Number>) std::memcpy(&V_I8(&target), &value, sizeof value);
    }
    void operator()(const automation::Array& array) const { copy(array.held); }
    void operator()(const automation::UserDefined& record) const { copy(record.held); }

    void copy(const std::shared_ptr<void>& held) const {
        auto* const kept = static_cast<ScopedVariant*>(held.get());
        if (kept && FAILED(VariantCopy(&target, kept->get()))) throw Error(7);
    }
};

}  // namespace

BSTR makeBstr(std::u16string_view text) {
    const auto* const units = reinterpret_cast<const OLECHAR*>(text.data());
    const BSTR copy = SysAllocStringLen(units, static_cast<UINT>(text.size()));
    if (copy == nullptr) throw Error(7);
    return copy;
}

std::u16string_view viewOf(BSTR text) noexcept {
    return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

void toVariant(const Variant& value, VARIANT& result) {
    VariantInit(&result);
    value.visit(Writer{result});
    const bool isRecord = value.type() == automation::VariantType::userDefined;
    if (!isRecord) V_VT(&result) = static_cast<VARTYPE>(value.typeCode());  // the numbers are the same
}

ScopedVariant toVariant(const Variant& value) {
    ScopedVariant result;
    toVariant(value, *result);
    return result;
}

Variant fromVariant(const VARIANT& value) {
    const VARIANT* source = &value;
    for (int depth = 0; V_VT(source) == variantReference; ++depth) {
        source = V_VARIANTREF(source);
        if (source == nullptr || depth == nestingLimit) throw Error(13);
    }
    const auto type = static_cast<VARTYPE>(V_VT(source) & VT_TYPEMASK);
    const bool isArray = (V_VT(source) & VT_ARRAY) != 0;
    if (V_ISBYREF(source) && V_BYREF(source) == nullptr) throw Error(13);
    if (isArray || type == VT_RECORD) {
        auto kept = std::make_shared<ScopedVariant>();
        if (FAILED(VariantCopyInd(kept->get(), const_cast<VARIANT*>(source)))) throw Error(13);
        if (!isArray) return automation::UserDefined{std::move(kept)};
        return automation::Array{static_cast<automation::VariantType>(type), std::move(kept)};
    }
    return read(type, V_ISBYREF(source) ? V_BYREF(source) : dataOf(const_cast<VARIANT&>(*source), type));
}

VARIANT& variableOf(VARIANT& argument) noexcept {
    return V_VT(&argument) == variantReference && V_VARIANTREF(&argument) ? *V_VARIANTREF(&argument) : argument;
}

HRESULT assignReference(VARIANT& argument, const Variant& value) {
    VARIANT& variable = variableOf(argument);
    const bool isNull = V_ISBYREF(&variable) && V_BYREF(&variable) == nullptr;
    if (isNull || !V_ISBYREF(&argument)) return DISP_E_TYPEMISMATCH;
    if (!V_ISBYREF(&variable) || V_VT(&variable) == variantReference) {
        const ScopedVariant former(std::exchange(variable, toVariant(value).detach()));
        return S_OK;
    }
    const auto type = static_cast<VARTYPE>(V_VT(&variable) & ~VT_BYREF);
    ScopedVariant converted;
    if (const HRESULT code = convertVariant(value, type, converted); FAILED(code)) return code;
    V_VT(converted.get()) = 0;  // where a DECIMAL has its reserved word
    auto* const fresh = static_cast<char*>(dataOf(*converted, type));
    std::swap_ranges(fresh, fresh + widthOf(type), static_cast<char*>(V_BYREF(&variable)));
    V_VT(converted.get()) = type;  // now the former value, which it releases
    return S_OK;
}

HRESULT convertVariant(const Variant& value, VARTYPE type, ScopedVariant& result) {
    if (widthOf(type) == 0) return DISP_E_TYPEMISMATCH;
    Variant kept;
    const Variant* const plain = isInterface(type) ? &value : automation::plainValue(value, kept);
    if (!plain) return DISP_E_TYPEMISMATCH;
    result = toVariant(*plain);
    if (V_VT(result.get()) == type) return S_OK;
    return VariantChangeTypeEx(result.get(), result.get(), LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, type);
}

bool isInterface(VARTYPE type) noexcept {
    return type == VT_DISPATCH || type == VT_UNKNOWN;
}

std::size_t widthOf(VARTYPE type) noexcept {
    constexpr std::size_t pointer = sizeof(void*), decimal = sizeof(DECIMAL);
    // VT_EMPTY to VT_UINT
    constexpr std::size_t widths[] = {0, 0,       2,       4, 4, 8, 8, 8, pointer, pointer, 4, 2,
                                      0, pointer, decimal, 0, 1, 1, 2, 4, 8,       8,       4, 4};
    return type < std::size(widths) ? widths[type] : 0;
}

}  // namespace velmor::platform
