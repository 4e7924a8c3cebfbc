#include "HostObject.h"

#include <mutex>

#include "automation/Errors.h"
#include "text/Compare.h"

namespace testhandlers {

namespace {

std::mutex mutex;  // of the journal
std::u16string journal;

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
    const std::scoped_lock lock(mutex);
    journal.append(what).append(u";");
}

ObjectRef makeJournal() {
    const auto made = std::make_shared<HostObject>();
    made->with(u"Text", [](HostObject::Arguments) {
        const std::scoped_lock lock(mutex);
        return Variant(journal);
    });
    made->with(u"Clear", [](HostObject::Arguments) {
        const std::scoped_lock lock(mutex);
        return journal.clear(), Variant();
    });
    return made;
}

}  // namespace testhandlers
