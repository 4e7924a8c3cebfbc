#include <cstdint>
#include <memory>
#include <vector>

#include "Classes.h"
#include "automation/Convert.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace testhandlers {

using namespace velmor::automation;
using Arguments = HostObject::Arguments;

namespace {

std::u16string textOf(const Variant& value) {
    return toText(value).value_or(u"?");
}

std::shared_ptr<HostObject> named(const std::u16string& name, const Variant& first) {
    const auto value = std::make_shared<Variant>(first);
    const auto made = std::make_shared<HostObject>(u"HostItem");
    for (const auto* member : {u"", u"Value"}) {
        made->with(member, [value](Arguments) { return *value; });
        made->taking(member, [value](Arguments args) { return *value = args.back(), Variant(); });
    }
    made->with(u"Name", Variant(name));
    return made;
}

// What every member of the bad objects answers.
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
    using Items = std::vector<std::pair<std::u16string, std::shared_ptr<HostObject>>>;
    const auto items = std::make_shared<Items>();
    const auto find = [items](const Variant& name) -> ObjectRef {
        for (const auto& [known, item] : *items) {
            if (velmor::equalIgnoringCase(known, textOf(name))) return item;
        }
        return nullptr;
    };
    const auto made = std::make_shared<HostObject>(u"HostCollection");
    made->with(u"Add", [items, find](Arguments args) -> Variant {
        const std::u16string name = textOf(args[0]);
        note(u"Add " + name);
        const ObjectRef known = args.size() > 2 && toBoolean(args[2]).value_or(false) ? find(args[0]) : nullptr;
        if (!known) return items->emplace_back(name, named(name, args[1])).second;
        known->invoke(u"Value", InvokeKind::let, args.subspan(1, 1));
        return known;
    });
    for (const auto* member : {u"", u"Item"}) {
        made->with(member, [find](Arguments args) { return Variant(find(args[0])); });
    }
    made->with(u"Count", [items](Arguments) { return Variant(static_cast<std::int32_t>(items->size())); });
    made->with(u"GetValue", [find](Arguments args) {
        const ObjectRef item = find(args[0]);
        return item ? item->invoke(u"Value", InvokeKind::get, {}) : args[1];
    });
    made->with(u"Dispose", [](Arguments) { return note(u"Dispose collection"), Variant(); });
    return made;
}

ObjectRef makeDatabase() {
    const auto made = std::make_shared<HostObject>(u"kvDatabase");
    made->with(u"Name", Variant(u"host database"));
    made->with(u"GetObjectItem", [](Arguments args) -> Variant {
        note(u"item " + textOf(args[0]) + u" " + textOf(args[1]));
        return named(textOf(args[0]), args[1]);
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
