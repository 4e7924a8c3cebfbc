#include "com/TagsFace.h"

#include "com/Enumerator.h"
#include "com/Receive.h"
#include "core/kvTag.h"

namespace velmor::com {

HRESULT TagsFace::get_Item(VARIANT vntIndexKey, _kvTag** pResult) noexcept {
    return guard(pResult, [&] { return core_->Item(valueOf(vntIndexKey)); });
}

HRESULT TagsFace::get_Count(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->Count(); });
}

HRESULT TagsFace::get_NewEnum(IUnknown** pResult) noexcept {
    return guard(pResult, [&] { return Enumerator::of(core_->NewEnum()); });
}

}  // namespace velmor::com
