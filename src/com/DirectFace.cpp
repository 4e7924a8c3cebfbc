#include "com/DirectFace.h"

#include "com/Receive.h"

namespace velmor::com {

HRESULT DirectFace::GetObject(BSTR psClassName, long plID, BSTR psIDName, IDispatch** pResult) noexcept {
    return guard(pResult, [&] { return core_->GetObject(viewOf(psClassName), plID, viewOf(psIDName)); });
}

HRESULT DirectFace::GetObjectName(BSTR psName, BSTR psClassName, long plID, BSTR psIDName,
                                  IDispatch** pResult) noexcept {
    return guard(pResult,
                 [&] { return core_->GetObjectName(viewOf(psName), viewOf(psClassName), plID, viewOf(psIDName)); });
}

HRESULT DirectFace::GetObjectItem(long plObjectType, long plID, BSTR psIDName, IDispatch** pResult) noexcept {
    return guard(pResult, [&] { return core_->GetObjectItem(plObjectType, plID, viewOf(psIDName)); });
}

HRESULT DirectFace::GetObjectItemName(BSTR psName, long plObjectType, long plID, BSTR psIDName,
                                      IDispatch** pResult) noexcept {
    return guard(pResult,
                 [&] { return core_->GetObjectItemName(viewOf(psName), plObjectType, plID, viewOf(psIDName)); });
}

HRESULT DirectFace::SetObjectName(BSTR psName, IDispatch* poObject) noexcept {
    return guard([&] { core_->SetObjectName(viewOf(psName), objectOf(poObject)); });
}

HRESULT DirectFace::SetObject(IDispatch* poObject) noexcept {
    return guard([&] { core_->SetObject(objectOf(poObject)); });
}

HRESULT DirectFace::RecordErrorLog(long plMode) noexcept {
    return guard([&] { core_->RecordErrorLog(plMode); });
}

HRESULT DirectFace::RemoveObjectItem(long plObjectType, BSTR psName) noexcept {
    return guard([&] { core_->RemoveObjectItem(plObjectType, viewOf(psName)); });
}

HRESULT DirectFace::RemoveObject(BSTR psClassName, BSTR psName) noexcept {
    return guard([&] { core_->RemoveObject(viewOf(psClassName), viewOf(psName)); });
}

}  // namespace velmor::com
