// The internal adds of the reader and the RTF engine: names are cleaned on the way in.

#include <utility>

#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor {

using automation::ObjectRef;
using automation::Variant;

// Leading blanks go, then a type prefix ("!x!" or "!xx!"); "!@" becomes ":".
std::u16string privProperties::CleanName(std::u16string_view psName) {
    psName.remove_prefix(std::min(psName.find_first_not_of(u"\r\n \t"), psName.size()));
    if (psName.starts_with(u'!')) {
        if (psName.size() > 2 && psName[2] == u'!') {
            psName.remove_prefix(3);
        } else if (psName.size() > 3 && psName[3] == u'!') {
            psName.remove_prefix(4);
        }
    }
    std::u16string name;
    name.reserve(psName.size());
    for (std::size_t from = 0;;) {
        const std::size_t escape = psName.find(u"!@", from);
        name += psName.substr(from, escape - from);
        if (escape == psName.npos) return name;
        name += u':';
        from = escape + 2;
    }
}

template <class Init>
PropertyRef privProperties::addInternal(std::u16string_view psName, Init&& init) {
    PropertyRef property = newProperty(services_.clock.now());
    init(*property, CleanName(psName));
    append(property);
    return property;
}

PropertyRef privProperties::AddInternal(std::u16string_view psName, Variant pvValue, std::int32_t plEncoding,
                                        bool pbUpperCaseName) {
    return addInternal(psName, [&](privProperty& property, std::u16string name) {
        property.InitValue(std::move(name), std::move(pvValue), plEncoding, false, pbUpperCaseName);
    });
}

PropertyRef privProperties::AddInternalString(std::u16string_view psName, std::u16string psValue,
                                              std::int32_t plEncoding, bool pbUpperCaseName) {
    return addInternal(psName, [&](privProperty& property, std::u16string name) {
        property.InitString(std::move(name), std::move(psValue), plEncoding, false, pbUpperCaseName);
    });
}

PropertyRef privProperties::AddInternalObject(std::u16string_view psName, ObjectRef poValue, std::int32_t plEncoding,
                                              bool pbUpperCaseName) {
    return addInternal(psName, [&](privProperty& property, std::u16string name) {
        property.InitObject(std::move(name), std::move(poValue), plEncoding, false, pbUpperCaseName);
    });
}

}  // namespace velmor
