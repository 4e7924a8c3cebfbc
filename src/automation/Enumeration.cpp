#include "automation/Enumeration.h"

#include <algorithm>

#include "automation/DispatchTable.h"

namespace velmor::automation {

Variant Enumeration::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    using Self = Enumeration;
    static const DispatchTable members({
        {u"Next", MemberKind::method, 0, 0, [](Self& self, Arguments&) -> Variant { return self.nextObject(); }},
        {u"Skip", MemberKind::method, 1, 1,
         [](Self& self, Arguments& args) -> Variant {
             return self.skip(static_cast<std::uint32_t>(std::max(args.longInteger(0), 0)));
         }},
        {u"Reset", MemberKind::method, 0, 0, [](Self& self, Arguments&) { return self.reset(), Variant(); }},
        {u"Clone", MemberKind::method, 0, 0, [](Self& self, Arguments&) -> Variant { return self.clone(); }},
    });
    return members.invoke(*this, name, kind, arguments);
}

}  // namespace velmor::automation
