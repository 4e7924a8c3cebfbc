#include "com/Guard.h"

#include <exception>
#include <new>

#include "com/Failure.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/ErrorSource.h"
#include "text/privStrCat.h"

namespace velmor::com {

namespace {

using platform::ComPtr;

LPOLESTR wide(const char16_t* text) noexcept {
    static_assert(sizeof(OLECHAR) == sizeof(char16_t));
    return const_cast<LPOLESTR>(reinterpret_cast<const OLECHAR*>(text));
}

void record(REFIID interfaceId, const std::u16string& description) noexcept {
    ComPtr<ICreateErrorInfo> created;
    if (FAILED(CreateErrorInfo(created.put()))) return;
    created->SetGUID(interfaceId);
    created->SetSource(wide(kErrorSource));
    created->SetDescription(wide(description.c_str()));
    if (const auto error = created.as<IErrorInfo>(IID_IErrorInfo)) SetErrorInfo(0, error.get());
}

// Empty if there is no memory for it.
std::u16string descriptionOf(const std::exception& error) noexcept {
    try {
        return fromUtf8(error.what());
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace

void give(BSTR& place, const std::u16string& value) {
    place = platform::makeBstr(value);
}

void give(BSTR& place, const std::shared_ptr<const privStrCat>& value) {
    place = platform::makeBstr(value->contiguous());
}

void give(VARIANT& place, const automation::Variant& value) {
    platform::toVariant(value, place);
}

void give(IDispatch*& place, const automation::ObjectRef& value) {
    place = platform::faceOf(value);
}

void replaceText(BSTR& place, const std::u16string& value) {
    const BSTR text = platform::makeBstr(value);
    SysFreeString(place);
    place = text;
}

HRESULT translateException(REFIID interfaceId) noexcept {
    SetErrorInfo(0, nullptr);  // an earlier failure's record
    try {
        throw;
    } catch (const Error& error) {
        record(interfaceId, error.description());
        return platform::hresultOf(error);
    } catch (const Failure& failure) {
        return failure.code;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
        record(interfaceId, descriptionOf(error));
        return E_FAIL;
    } catch (...) {
        return E_FAIL;
    }
}

}  // namespace velmor::com
