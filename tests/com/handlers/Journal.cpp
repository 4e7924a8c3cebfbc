#include "Journal.h"

#include <memory>

#include "automation/DispatchTable.h"

namespace testhandlers {

using namespace velmor::automation;

namespace {

std::u16string& text() {
    static std::u16string noted;
    return noted;
}

class Journal final : public Object {
public:
    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override;
    std::u16string typeName() const override { return u"Journal"; }
};

const DispatchTable<Journal> members({
    {u"Text", MemberKind::get, 0, 0, [](Journal&, Arguments&) { return Variant(text()); }},
    {u"Clear", MemberKind::method, 0, 0,
     [](Journal&, Arguments&) {
         text().clear();
         return Variant();
     }},
});

Variant Journal::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    return members.invoke(*this, name, kind, arguments);
}

}  // namespace

void note(std::u16string_view what) {
    text().append(what).append(u";");
}

ObjectRef makeJournal() {
    return std::make_shared<Journal>();
}

}  // namespace testhandlers
