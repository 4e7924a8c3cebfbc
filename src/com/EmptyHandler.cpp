#include "com/EmptyHandler.h"

#include <string>

namespace velmor::com {

HRESULT EmptyHandler::giveNothing(BSTR* pResult) noexcept {
    return guard(pResult, [] { return std::u16string(); });
}

HRESULT EmptyHandler::get_Interface(long* pResult) noexcept {
    return guard(pResult, [] { return 0; });
}

HRESULT EmptyHandler::GetTagValue(_kvTag*, BSTR* pResult) noexcept {
    return giveNothing(pResult);
}

HRESULT EmptyHandler::get_CommandList(BSTR, IDispatch**, BSTR* pResult) noexcept {
    return giveNothing(pResult);
}

HRESULT EmptyHandler::get_ParameterList(BSTR, BSTR, IDispatch**, BSTR* pResult) noexcept {
    return giveNothing(pResult);
}

HRESULT EmptyHandler::get_SyntaxString(BSTR, BSTR, IDispatch**, BSTR* pResult) noexcept {
    return giveNothing(pResult);
}

HRESULT EmptyHandler::get_CommandDescription(BSTR, BSTR, IDispatch**, BSTR* pResult) noexcept {
    return giveNothing(pResult);
}

HRESULT EmptyHandler::get_ParameterValueList(BSTR, BSTR, BSTR, IDispatch**, BSTR* pResult) noexcept {
    return giveNothing(pResult);
}

}  // namespace velmor::com
