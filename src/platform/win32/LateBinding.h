#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "automation/DispatchTable.h"
#include "platform/win32/Windows.h"

// IDispatch for an object of ours, by Object::invoke. Arguments come in any of the platform's forms: by value, by typed
// reference, by reference to a Variant, by name, left out. A reference takes what the member left in it, converted to
// its type, when the member changed it.
namespace velmor::platform {

// What a host calls members and their parameters by.
class MemberNames {
public:
    virtual ~MemberNames() = default;
    // DISPID_UNKNOWN for a name that is none.
    virtual DISPID identifierOf(std::u16string_view name) = 0;
    // The position of a parameter; DISPID_UNKNOWN for a name that is none.
    virtual DISPID parameterOf(DISPID member, std::u16string_view name) const = 0;
    virtual bool hasParameter(DISPID member, DISPID position) const = 0;
    // Raises 438 for an identifier that is none.
    virtual std::u16string_view nameOf(DISPID member) const = 0;
};

// Those of a member table.
class TableNames final : public MemberNames {
public:
    explicit TableNames(const automation::MemberIndex& members) noexcept : members_(members) {}
    DISPID identifierOf(std::u16string_view name) override;
    DISPID parameterOf(DISPID member, std::u16string_view name) const override;
    bool hasParameter(DISPID member, DISPID position) const override;
    std::u16string_view nameOf(DISPID member) const override;

private:
    const automation::MemberIndex& members_;
};

// Identifiers that are given out on demand, 1, 2, ...: the object answers for its members only when it is called. 0 is
// the default member's. The names of parameters are not known.
class NamesOnDemand final : public MemberNames {
public:
    DISPID identifierOf(std::u16string_view name) override;
    DISPID parameterOf(DISPID, std::u16string_view) const override { return DISPID_UNKNOWN; }
    bool hasParameter(DISPID, DISPID) const override { return false; }
    std::u16string_view nameOf(DISPID member) const override;

private:
    std::unordered_map<std::u16string, DISPID> identifiers_;  // by lower-case name
    std::vector<std::u16string> names_;                       // by identifier, less 1
};

HRESULT findNames(MemberNames& members, LPOLESTR* names, UINT count, DISPID* ids) noexcept;

struct LateCall {
    DISPID id;
    WORD flags;
    DISPPARAMS* parameters;
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* faultyArgument;
};
// Both must outlive the call.
HRESULT invokeLate(automation::Object& object, const MemberNames& members, const LateCall& call) noexcept;

}  // namespace velmor::platform
