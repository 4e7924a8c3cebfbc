#include "com/Guard.h"

#include <exception>
#include <new>

#include "com/Failure.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::com {

namespace {

using platform::ComPtr;

LPOLESTR wide(const std::u16string& text) noexcept {
    static_assert(sizeof(OLECHAR) == sizeof(char16_t));
    return const_cast<LPOLESTR>(reinterpret_cast<const OLECHAR*>(text.c_str()));
}

void record(const std::u16string& source, const std::u16string& description) noexcept {
    ComPtr<ICreateErrorInfo> created;
    if (FAILED(CreateErrorInfo(created.put()))) return;
    created->SetSource(wide(source.empty() ? std::u16string(u"kvVelmor3") : source));
    created->SetDescription(wide(description));
    if (const auto error = created.as<IErrorInfo>(IID_IErrorInfo)) SetErrorInfo(0, error.get());
}

}  // namespace

void give(BSTR& place, const std::u16string& value) {
    place = platform::makeBstr(value);
}

void give(BSTR& place, const std::shared_ptr<const std::u16string>& value) {
    give(place, *value);
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

HRESULT translateException() noexcept {
    SetErrorInfo(0, nullptr);  // an earlier failure's record
    try {
        throw;
    } catch (const Error& error) {
        record(error.source(), error.description());
        return platform::hresultOf(error);
    } catch (const Failure& failure) {
        return failure.code;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
        record({}, fromUtf8(error.what()));
        return E_FAIL;
    } catch (...) {
        return E_FAIL;
    }
}

}  // namespace velmor::com
