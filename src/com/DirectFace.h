#pragma once

#include "com/Face.h"
#include "direct/kvDirectTag.h"
#include "kvVelmor3.h"

namespace velmor::com {

// The public class kvDirectTag.
class DirectFace final : public Face<_kvDirectTag, kvDirectTag, IID__kvDirectTag, CLSID_kvDirectTag> {
public:
    using Face::Face;

    HRESULT STDMETHODCALLTYPE GetObject(BSTR psClassName, long plID, BSTR psIDName,
                                        IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetObjectName(BSTR psName, BSTR psClassName, long plID, BSTR psIDName,
                                            IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetObjectItem(long plObjectType, long plID, BSTR psIDName,
                                            IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetObjectItemName(BSTR psName, long plObjectType, long plID, BSTR psIDName,
                                                IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE SetObjectName(BSTR psName, IDispatch* poObject) noexcept override;
    HRESULT STDMETHODCALLTYPE SetObject(IDispatch* poObject) noexcept override;
    HRESULT STDMETHODCALLTYPE RecordErrorLog(long plMode) noexcept override;
    HRESULT STDMETHODCALLTYPE RemoveObjectItem(long plObjectType, BSTR psName) noexcept override;
    HRESULT STDMETHODCALLTYPE RemoveObject(BSTR psClassName, BSTR psName) noexcept override;
};

}  // namespace velmor::com
