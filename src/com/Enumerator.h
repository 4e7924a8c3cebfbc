#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "automation/Object.h"
#include "com/Module.h"
#include "platform/win32/Windows.h"

namespace velmor {
class kvTag;
class PropertyEnumerator;
}  // namespace velmor

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

// Properties come and go behind its back; none is met twice or left out.
class PropertySequence final : public Sequence {
public:
    explicit PropertySequence(std::shared_ptr<PropertyEnumerator> properties);
    automation::ObjectRef next() override;
    bool skip(std::uint32_t count) override;
    void reset() override;
    std::unique_ptr<Sequence> clone() override;

private:
    std::shared_ptr<PropertyEnumerator> properties_;
};

// The tags as they were when the enumerator was made.
class TagSequence final : public Sequence {
public:
    explicit TagSequence(std::vector<std::shared_ptr<kvTag>> tags);
    automation::ObjectRef next() override;
    bool skip(std::uint32_t count) override;
    void reset() override;
    std::unique_ptr<Sequence> clone() override;

private:
    std::shared_ptr<const std::vector<std::shared_ptr<kvTag>>> tags_;
    std::size_t position_ = 0;
};

// A host's "For Each".
class Enumerator final : public IEnumVARIANT {
public:
    // With one reference, for the caller.
    static IUnknown* make(std::unique_ptr<Sequence> sequence);

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
    std::atomic<ULONG> references_{1};
    KeepsModule keepsModule_;
};

}  // namespace velmor::com
