#pragma once

#include "com/Face.h"
#include "core/kvTags.h"
#include "kvVelmor3.h"

namespace velmor::com {

// The public class kvTags.
class TagsFace final : public Face<_kvTags, kvTags, IID__kvTags, CLSID_kvTags> {
public:
    using Face::Face;

    HRESULT STDMETHODCALLTYPE get_Item(VARIANT vntIndexKey, _kvTag** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Count(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** pResult) noexcept override;
};

}  // namespace velmor::com
