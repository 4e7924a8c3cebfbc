#pragma once

#include <memory>
#include <utility>

#include "automation/Enumeration.h"
#include "com/Module.h"
#include "platform/win32/ReferenceCount.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// A host's "For Each".
class Enumerator final : public IEnumVARIANT {
public:
    // With one reference, for the caller.
    static IUnknown* of(std::shared_ptr<automation::Enumeration> items) { return new Enumerator(std::move(items)); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;
    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override;
    HRESULT STDMETHODCALLTYPE Reset() noexcept override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override;

private:
    explicit Enumerator(std::shared_ptr<automation::Enumeration> items) : items_(std::move(items)) {}
    virtual ~Enumerator() = default;

    std::shared_ptr<automation::Enumeration> items_;
    platform::ReferenceCount references_;
    KeepsModule keepsModule_;
};

}  // namespace velmor::com
