#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace testhandlers {

using velmor::automation::InvokeKind;
using velmor::automation::ObjectRef;
using velmor::automation::Variant;

// An object of a host or a handler, with the added members only.
class HostObject final : public velmor::automation::Object {
public:
    using Arguments = std::span<Variant>;
    using Member = std::function<Variant(Arguments)>;

    explicit HostObject(std::u16string typeName = u"Object") : typeName_(std::move(typeName)) {}

    // Gets and methods; the empty name is the default member's.
    HostObject& with(std::u16string_view name, Member member);
    // A get that returns this.
    HostObject& with(std::u16string_view name, Variant value);
    // Lets and sets; the new value is the last argument.
    HostObject& taking(std::u16string_view name, Member member);

    Variant invoke(std::u16string_view name, InvokeKind kind, Arguments arguments) override;
    std::u16string typeName() const override { return typeName_; }

private:
    std::u16string typeName_;
    std::map<std::u16string, Member> members_;  // by lower-case name; lets and sets with "=" after it
};

// Records calls for the tests, once for the process. The class "VelmorTest.Journal" has the members Text, the
// record, and Clear.
void note(std::u16string_view what);
ObjectRef makeJournal();

}  // namespace testhandlers
