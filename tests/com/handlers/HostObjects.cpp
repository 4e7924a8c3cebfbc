#include <cstdint>
#include <memory>

#include "Classes.h"
#include "automation/Convert.h"
#include "platform/SystemServices.h"
#include "properties/privProperties.h"

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

}  // namespace testhandlers
