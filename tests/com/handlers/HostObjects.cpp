#include <cstdint>
#include <memory>

#include "Classes.h"
#include "automation/Convert.h"
#include "platform/SystemServices.h"
#include "properties/privProperties.h"
#include "text/Error.h"

namespace testhandlers {

using namespace velmor::automation;
using Arguments = HostObject::Arguments;

namespace {

std::u16string textOf(const Variant& value) {
    return toText(value).value_or(u"?");
}

// With the name and a value.
ObjectRef makeNamed(const std::u16string& name, const Variant& value) {
    return std::make_shared<velmor::privProperties>(velmor::platform::systemServices())->Add(name, value);
}

// The result of every member of the bad objects.
std::u16string badAnswer;

Variant answerBadly(Arguments) {
    if (badAnswer == u"raise") throw velmor::Error(5, u"VelmorTest", u"refused");
    if (badAnswer == u"null") return Null();
    if (badAnswer == u"array") return std::make_shared<const Array>();
    if (badAnswer == u"error") return ErrorCode{5};
    if (badAnswer == u"nothing") return ObjectRef();
    return badAnswer == u"empty" ? Variant() : Variant(badAnswer);
}

}  // namespace

ObjectRef makeCollection() {
    const auto kept = std::make_shared<velmor::privProperties>(velmor::platform::systemServices());
    const auto made = std::make_shared<HostObject>(u"HostCollection");
    for (const std::u16string name : {u"", u"Item", u"Count", u"Add", u"GetValue", u"Dispose"}) {
        made->with(name, [name, kept](Arguments args) {
            if (name == u"Add" || name == u"Dispose") note(name);
            return kept->invoke(name, InvokeKind::method, args);
        });
    }
    return made;
}

ObjectRef makeDatabase() {
    const auto made = std::make_shared<HostObject>(u"kvDatabase");
    made->with(u"Name", Variant(u"host database"));
    made->with(u"GetObjectItem", [](Arguments args) -> Variant {
        note(u"item " + textOf(args[0]) + u" " + textOf(args[1]));
        return makeNamed(textOf(args[0]), args[1]);
    });
    made->with(u"LogEvent", [](Arguments args) {
        for (const Variant& arg : args) note(textOf(arg));
        return Variant();
    });
    const auto system = std::make_shared<HostObject>();
    system->with(u"GetObjectTypeDef", [](Arguments args) -> Variant {
        const auto definition = std::make_shared<HostObject>();
        definition->with(u"IsDefined", Variant(textOf(args[0]) == u"Account"));
        definition->with(u"ClassName", Variant(u"VelmorTest.Account"));
        return definition;
    });
    made->with(u"System", Variant(system));
    return made;
}

ObjectRef makeAccount() {
    const auto made = std::make_shared<HostObject>(u"Account");
    const auto database = std::make_shared<Variant>();
    made->taking(u"Database", [database](Arguments args) { return *database = args[0], Variant(); });
    made->with(u"Database", [database](Arguments) { return *database; });
    made->with(u"OpenItem", [](Arguments args) {
        const std::int32_t identifier = toLong(args[0]).value_or(0);
        note(u"open " + textOf(args[0]));
        if (identifier == 8) args[0] = std::int32_t{7};
        return Variant(identifier != 13);
    });
    return made;
}

ObjectRef makeItem() {
    const auto made = std::make_shared<HostObject>(u"kvObjectItem");
    made->with(u"ItemAccount", Variant(u"17"));
    return made;
}

ObjectRef makeBadDatabase() {
    const auto made = std::make_shared<HostObject>();
    made->taking(u"Answer", [](Arguments args) { return badAnswer = textOf(args[0]), Variant(); });
    for (const auto* member : {u"System", u"GetObjectItem", u"LogEvent"})
        made->with(member, HostObject::Member(answerBadly));
    return made;
}

ObjectRef makeBadAccount() {
    const auto made = std::make_shared<HostObject>();
    made->taking(u"Database", [](Arguments) { return Variant(); });
    made->with(u"OpenItem", HostObject::Member(answerBadly));
    return made;
}

ObjectRef makeBare() {
    return std::make_shared<HostObject>();
}

}  // namespace testhandlers
