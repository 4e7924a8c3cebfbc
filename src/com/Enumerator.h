#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "automation/Object.h"
#include "com/Module.h"
#include "platform/win32/ReferenceCount.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// What an enumerator steps through.
class Sequence {
public:
    virtual ~Sequence() = default;
    virtual automation::ObjectRef next() = 0;       // null at the end
    virtual bool skip(std::uint32_t count) = 0;     // false when fewer were left
    virtual void reset() = 0;                       // back to the first
    virtual std::unique_ptr<Sequence> clone() = 0;  // at the same place
};

// The engine's own enumerators have the same members.
template <class Items>
class SequenceOf final : public Sequence {
public:
    explicit SequenceOf(std::shared_ptr<Items> items) : items_(std::move(items)) {}

    automation::ObjectRef next() override { return items_->next(); }
    bool skip(std::uint32_t count) override { return items_->skip(count); }
    void reset() override { items_->reset(); }
    std::unique_ptr<Sequence> clone() override { return std::make_unique<SequenceOf>(items_->clone()); }

private:
    std::shared_ptr<Items> items_;
};

// A host's "For Each".
class Enumerator final : public IEnumVARIANT {
public:
    // With one reference, for the caller.
    template <class Items>
    static IUnknown* of(std::shared_ptr<Items> items) {
        return new Enumerator(std::make_unique<SequenceOf<Items>>(std::move(items)));
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;
    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override;
    HRESULT STDMETHODCALLTYPE Reset() noexcept override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override;

private:
    explicit Enumerator(std::unique_ptr<Sequence> sequence) : sequence_(std::move(sequence)) {}
    virtual ~Enumerator() = default;

    std::unique_ptr<Sequence> sequence_;
    platform::ReferenceCount references_;
    KeepsModule keepsModule_;
};

}  // namespace velmor::com
