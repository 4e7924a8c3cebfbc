#include "com/Guard.h"

#include "platform/win32/ComPtr.h"
#include "text/Error.h"

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
    created->SetSource(wide(errorSource));
    created->SetDescription(wide(description.c_str()));
    if (const auto error = created.as<IErrorInfo>(IID_IErrorInfo)) SetErrorInfo(0, error.get());
}

}  // namespace

HRESULT translateException(REFIID interfaceId) noexcept {
    const platform::Raised raised = platform::raisedNow();
    SetErrorInfo(0, nullptr);  // an earlier failure's record
    if (!raised.description.empty()) record(interfaceId, raised.description);
    return raised.code;
}

}  // namespace velmor::com
