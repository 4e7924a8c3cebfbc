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

// An object of a host or a handler: the members that it was given, and no others.
class HostObject final : public velmor::automation::Object {
public:
    using Arguments = std::span<Variant>;
    using Member = std::function<Variant(Arguments)>;

    explicit HostObject(std::u16string typeName = u"Object") : typeName_(std::move(typeName)) {}

    // Gets and methods; the empty name is the default member's.
    HostObject& with(std::u16string_view name, Member member);
    // A get that answers with this.
    HostObject& with(std::u16string_view name, Variant value);
    // Lets and sets; the new value is the last argument.
    HostObject& taking(std::u16string_view name, Member member);

    Variant invoke(std::u16string_view name, InvokeKind kind, Arguments arguments) override;
    std::u16string typeName() const override { return typeName_; }

private:
    std::u16string typeName_;
    std::map<std::u16string, Member> members_;  // by lower-case name, with "=" behind it where it takes a value
};

// Notes what was asked, for the tests: the class "VelmorTest.Journal" gives it as Text, and has Clear. One for the
// process.
void note(std::u16string_view what);
ObjectRef makeJournal();

}  // namespace testhandlers
