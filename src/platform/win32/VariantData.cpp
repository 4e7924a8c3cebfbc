#include "platform/win32/VariantData.h"

#include <cstring>
#include <limits>
#include <memory>

#include "automation/Errors.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor::platform::detail {

using automation::Variant;
using automation::VariantType;

namespace {

template <class T>
T load(const void* data) noexcept {
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

template <class T>
bool store(void* data, const T& value) noexcept {
    std::memcpy(data, &value, sizeof value);
    return true;
}

automation::Decimal decimalOf(const DECIMAL& source) noexcept {
    return {source.Hi32, source.Lo64, source.scale, (source.sign & DECIMAL_NEG) != 0};
}

// To Long if it fits, else to Decimal, without loss.
Variant widened(std::uint64_t magnitude, bool negative) {
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int32_t>::max();
    if (magnitude <= kLargest + (negative ? 1 : 0)) {
        const auto value = static_cast<std::int64_t>(magnitude);
        return Variant(static_cast<std::int32_t>(negative ? -value : value));
    }
    return Variant(automation::Decimal{0, magnitude, 0, negative});
}

Variant widened(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    return widened(value < 0 ? 0 - bits : bits, value < 0);
}

Variant objectFor(IUnknown* unknown) {
    ComPtr<IUnknown> held(unknown);
    const auto dispatch = held.as<IDispatch>(IID_IDispatch);
    if (dispatch || !held) return Variant(objectOf(dispatch.get()));
    const auto release = [](IUnknown* object) { object->Release(); };
    return Variant(automation::DataObject{std::shared_ptr<IUnknown>(held.detach(), release)});
}

bool storeDecimal(void* data, const automation::Decimal& value) noexcept {
    DECIMAL target{};
    target.Hi32 = value.high;
    target.Lo64 = value.low;
    target.scale = value.scale;
    target.sign = value.negative ? DECIMAL_NEG : 0;
    // A VARIANT keeps its type where a DECIMAL has this reserved word.
    target.wReserved = load<USHORT>(data);
    return store(data, target);
}

bool storeDataObject(void* data, const automation::DataObject& value) noexcept {
    auto* const unknown = static_cast<IUnknown*>(value.reference.get());
    if (unknown != nullptr) unknown->AddRef();
    return store(data, unknown);
}

bool isType(const Variant& value, VARTYPE type) noexcept {
    return variantTypeOf(value.type()) == type;
}

}  // namespace

Variant readData(VARTYPE type, const void* data, int depth) {
    switch (type) {
        case VT_EMPTY:
            return Variant();
        case VT_NULL:
            return Variant(automation::Null{});
        case VT_I2:
            return Variant(load<std::int16_t>(data));
        case VT_I4:
        case VT_INT:
            return Variant(load<std::int32_t>(data));
        case VT_R4:
            return Variant(load<float>(data));
        case VT_R8:
            return Variant(load<double>(data));
        case VT_CY:
            return Variant(automation::Currency{load<std::int64_t>(data)});
        case VT_DATE:
            return Variant(automation::Date{load<double>(data)});
        case VT_BSTR:
            return Variant(viewOf(load<BSTR>(data)));
        case VT_DISPATCH:
            return Variant(objectOf(load<IDispatch*>(data)));
        case VT_ERROR:
            return Variant(automation::ErrorCode{load<std::int32_t>(data)});
        case VT_BOOL:
            return Variant(load<VARIANT_BOOL>(data) != VARIANT_FALSE);
        case VT_VARIANT:
            return copyVariant(*static_cast<const VARIANT*>(data), depth + 1);
        case VT_UNKNOWN:
            return objectFor(load<IUnknown*>(data));
        case VT_DECIMAL:
            return Variant(decimalOf(load<DECIMAL>(data)));
        case VT_UI1:
            return Variant(load<std::uint8_t>(data));
        case VT_I1:
            return Variant(std::int16_t{load<std::int8_t>(data)});
        case VT_UI2:
            return Variant(std::int32_t{load<std::uint16_t>(data)});
        case VT_UI4:
        case VT_UINT:
            return widened(load<std::uint32_t>(data), false);
        case VT_I8:
            return widened(load<std::int64_t>(data));
        case VT_UI8:
            return widened(load<std::uint64_t>(data), false);
        default:
            automation::raiseTypeMismatch();
    }
}

bool writeData(VARTYPE type, void* data, const Variant& value, int depth) {
    if (type == VT_VARIANT) {
        fillVariant(value, *static_cast<VARIANT*>(data), depth + 1);
        return true;
    }
    if (type == VT_UNKNOWN && value.isObject()) type = VT_DISPATCH;
    if (!isType(value, type)) return false;
    switch (type) {
        case VT_EMPTY:
        case VT_NULL:
            return true;
        case VT_I2:
            return store(data, *value.get<std::int16_t>());
        case VT_I4:
            return store(data, *value.get<std::int32_t>());
        case VT_R4:
            return store(data, *value.get<float>());
        case VT_R8:
            return store(data, *value.get<double>());
        case VT_CY:
            return store(data, value.get<automation::Currency>()->scaled);
        case VT_DATE:
            return store(data, value.get<automation::Date>()->days);
        case VT_BSTR:
            return store(data, makeBstr(*value.get<std::u16string>()));
        case VT_DISPATCH:
            return store(data, faceOf(value.object()));
        case VT_ERROR:
            return store(data, value.get<automation::ErrorCode>()->code);
        case VT_BOOL:
            return store<VARIANT_BOOL>(data, *value.get<bool>() ? VARIANT_TRUE : VARIANT_FALSE);
        case VT_UNKNOWN:
            return storeDataObject(data, *value.get<automation::DataObject>());
        case VT_DECIMAL:
            return storeDecimal(data, *value.get<automation::Decimal>());
        case VT_UI1:
            return store(data, *value.get<std::uint8_t>());
        default:
            return false;
    }
}

void fillVariant(const Variant& value, VARIANT& result, int depth) {
    VariantInit(&result);
    if (depth > kNestingLimit) automation::raiseTypeMismatch();
    if (const auto* array = value.get<std::shared_ptr<const automation::Array>>()) {
        const VARTYPE element = *array ? variantTypeOf((*array)->elementType) : VARTYPE{VT_VARIANT};
        V_ARRAY(&result) = *array ? makeArray(**array, depth) : nullptr;
        V_VT(&result) = static_cast<VARTYPE>(VT_ARRAY | element);
        return;
    }
    if (const auto* record = value.get<automation::UserDefined>()) {
        auto* const kept = static_cast<VARIANT*>(record->record.get());
        if (kept != nullptr && FAILED(VariantCopy(&result, kept))) throw Error(7, kErrorSource, u"Out of memory");
        return;
    }
    const VARTYPE type = variantTypeOf(value.type());
    if (writeData(type, dataOf(result, type), value, depth)) V_VT(&result) = type;
}

Variant copyVariant(const VARIANT& value, int depth) {
    const VARIANT* source = &value;
    while (V_VT(source) == (VT_BYREF | VT_VARIANT)) {
        source = V_VARIANTREF(source);
        if (source == nullptr || ++depth > kNestingLimit) automation::raiseTypeMismatch();
    }
    if (depth > kNestingLimit) automation::raiseTypeMismatch();
    const VARTYPE type = V_VT(source);
    const auto baseType = static_cast<VARTYPE>(type & VT_TYPEMASK);
    const bool reference = (type & VT_BYREF) != 0;
    if (baseType == VT_RECORD) return Variant(keepRecord(*source));
    if (reference && V_BYREF(source) == nullptr) automation::raiseTypeMismatch();
    if ((type & VT_ARRAY) != 0) {
        return readArray(reference ? *V_ARRAYREF(source) : V_ARRAY(source), baseType, depth);
    }
    return readData(baseType, reference ? V_BYREF(source) : dataOf(*source), depth);
}

automation::UserDefined keepRecord(const VARIANT& value) {
    auto* const copy = new VARIANT;
    VariantInit(copy);
    std::shared_ptr<VARIANT> kept(copy, [](VARIANT* held) {
        VariantClear(held);
        delete held;
    });
    if (FAILED(VariantCopyInd(copy, const_cast<VARIANT*>(&value)))) automation::raiseTypeMismatch();
    return {std::move(kept)};
}

}  // namespace velmor::platform::detail
