#include <limits>

#include "automation/Errors.h"
#include "platform/win32/VariantData.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor::platform::detail {

using automation::Array;
using automation::Variant;
using automation::VariantType;

namespace {

// Keeps an array's data in place while it is read or written.
class ArrayAccess {
public:
    explicit ArrayAccess(SAFEARRAY* array) : array_(array) {
        if (FAILED(SafeArrayAccessData(array_, &data_))) automation::raiseTypeMismatch();
    }
    ~ArrayAccess() { SafeArrayUnaccessData(array_); }
    ArrayAccess(const ArrayAccess&) = delete;
    ArrayAccess& operator=(const ArrayAccess&) = delete;

    void* element(std::size_t index) const noexcept {
        return static_cast<char*>(data_) + index * SafeArrayGetElemsize(array_);
    }

private:
    SAFEARRAY* array_;
    void* data_ = nullptr;
};

struct DestroyArray {
    void operator()(SAFEARRAY* array) const noexcept { SafeArrayDestroy(array); }
};

// Types that are widened one by one come as variants.
VariantType elementTypeOf(VARTYPE type) noexcept {
    switch (type) {
        case VT_I1:
            return VariantType::integer;
        case VT_INT:
        case VT_UI2:
            return VariantType::longInteger;
        case VT_UI4:
        case VT_UINT:
        case VT_I8:
        case VT_UI8:
            return VariantType::variant;
        default:
            return static_cast<VariantType>(type);
    }
}

std::vector<Array::Bound> boundsOf(SAFEARRAY* array) {
    std::vector<Array::Bound> bounds(SafeArrayGetDim(array));
    for (UINT dimension = 1; dimension <= bounds.size(); ++dimension) {
        LONG lower = 0;
        LONG upper = 0;
        if (FAILED(SafeArrayGetLBound(array, dimension, &lower)) ||
            FAILED(SafeArrayGetUBound(array, dimension, &upper))) {
            automation::raiseTypeMismatch();
        }
        bounds[dimension - 1] = {lower, upper - lower + 1};
    }
    return bounds;
}

// The product of the dimensions; error 13 when it cannot be that of an array in memory.
std::size_t elementCount(const std::vector<Array::Bound>& bounds) {
    std::uint64_t count = bounds.empty() ? 0 : 1;
    for (const Array::Bound& bound : bounds) {
        if (bound.count < 0) automation::raiseTypeMismatch();
        count *= static_cast<std::uint32_t>(bound.count);
        if (count > std::numeric_limits<std::int32_t>::max()) automation::raiseTypeMismatch();
    }
    return static_cast<std::size_t>(count);
}

}  // namespace

Variant readArray(SAFEARRAY* array, VARTYPE declaredType, int depth) {
    auto result = std::make_shared<Array>();
    result->elementType = elementTypeOf(declaredType);
    if (array != nullptr) {
        result->bounds = boundsOf(array);
        const std::size_t count = elementCount(result->bounds);
        const ArrayAccess access(array);
        result->elements.reserve(count);
        for (std::size_t index = 0; index < count; ++index) {
            result->elements.push_back(readData(declaredType, access.element(index), depth));
        }
    }
    return Variant(std::shared_ptr<const Array>(std::move(result)));
}

SAFEARRAY* makeArray(const Array& array, int depth) {
    if (array.bounds.empty()) return nullptr;
    const std::size_t count = elementCount(array.bounds);
    if (count != array.elements.size()) automation::raiseTypeMismatch();
    std::vector<SAFEARRAYBOUND> bounds;
    for (const Array::Bound& bound : array.bounds) bounds.push_back({static_cast<ULONG>(bound.count), bound.lower});
    const VARTYPE type = variantTypeOf(array.elementType);
    std::unique_ptr<SAFEARRAY, DestroyArray> result(
        SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data()));
    if (!result) throw Error(7, kErrorSource, u"Out of memory");
    const ArrayAccess access(result.get());
    for (std::size_t index = 0; index < count; ++index) {
        if (!writeData(type, access.element(index), array.elements[index], depth)) automation::raiseTypeMismatch();
    }
    return result.release();
}

}  // namespace velmor::platform::detail
