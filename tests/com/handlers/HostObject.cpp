#include "HostObject.h"

#include "automation/Errors.h"
#include "text/Compare.h"

namespace testhandlers {

namespace {

std::u16string& journal() {
    static std::u16string noted;
    return noted;
}

}  // namespace

HostObject& HostObject::with(std::u16string_view name, Member member) {
    members_[velmor::lowerCase(name)] = std::move(member);
    return *this;
}

HostObject& HostObject::with(std::u16string_view name, Variant value) {
    return with(name, [value](Arguments) { return value; });
}

HostObject& HostObject::taking(std::u16string_view name, Member member) {
    return with(std::u16string(name) + u"=", std::move(member));
}

Variant HostObject::invoke(std::u16string_view name, InvokeKind kind, Arguments arguments) {
    const bool takes = kind == InvokeKind::let || kind == InvokeKind::set;
    const auto member = members_.find(velmor::lowerCase(name) + (takes ? u"=" : u""));
    if (member == members_.end()) velmor::automation::raiseNoSuchMember(name);
    return member->second(arguments);
}

void note(std::u16string_view what) {
    journal().append(what).append(u";");
}

ObjectRef makeJournal() {
    const auto made = std::make_shared<HostObject>();
    made->with(u"Text", [](HostObject::Arguments) { return Variant(journal()); });
    made->with(u"Clear", [](HostObject::Arguments) { return journal().clear(), Variant(); });
    return made;
}

}  // namespace testhandlers
