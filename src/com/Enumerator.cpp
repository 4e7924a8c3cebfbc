#include "automation/Enumeration.h"
#include "com/Guard.h"
#include "extension/ComObject.h"
#include "platform/win32/VariantBridge.h"

namespace velmor::com {

namespace {

// A host's "For Each".
class Enumerator final : public ComObject<IEnumVARIANT> {
public:
    explicit Enumerator(std::shared_ptr<automation::Enumeration> items) : items_(std::move(items)) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept override {
        if (fetched) *fetched = 0;
        if (!values || (!fetched && count != 1)) return E_POINTER;
        ULONG given = 0;
        const HRESULT code = guard(IID_IEnumVARIANT, [&] {
            while (given < count) {
                const automation::ObjectRef object = items_->nextObject();
                if (!object) return;
                platform::toVariant(object, values[given]);
                ++given;
            }
        });
        if (FAILED(code)) {
            while (given > 0) VariantClear(&values[--given]);
            return code;
        }
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
        bool all = false;
        const HRESULT code = guard(IID_IEnumVARIANT, [&] { all = items_->skip(count); });
        return FAILED(code) ? code : (all ? S_OK : S_FALSE);
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override {
        return guard(IID_IEnumVARIANT, [&] { items_->reset(); });
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override {
        return guard(IID_IEnumVARIANT, copy, [&]() -> IEnumVARIANT* { return new Enumerator(items_->clone()); });
    }

private:
    std::shared_ptr<automation::Enumeration> items_;
};

}  // namespace

void give(IUnknown*& place, std::shared_ptr<automation::Enumeration> items) {
    place = new Enumerator(std::move(items));
}

}  // namespace velmor::com
