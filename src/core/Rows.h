#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/BuiltInCommands.h"
#include "core/TagContext.h"
#include "handlers/ITag4.h"
#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor {

class kvTag;

// The handler "ROWS", which needs no registration; a registered handler of that name takes its place. It repeats a
// template for each entry of a list: a property's child properties.
//
//     <KV:ROWS>LIST=Lines:ROW=line.rtf:</KV>
//     <KV:ROWS>LIST=Names:TEXT=<KV:TAG>PROPERTY:Value:</KV>:BETWEEN=, :</KV>
//
// Meanwhile the properties of an entry take the place of the template's of the same names. An entry without
// properties is the property "Value". "Index" (from 1), "Count", "First" and "Last" are set for each, unless the entry
// has them. Afterwards the template's properties are as before.
//
// A document as ROW is repeated within itself: its tables once, its text for each entry. One of nothing but a table
// gives one table. In a document TEXT is RTF.
class Rows {
public:
    static constexpr std::u16string_view handler = rowsHandler;

    Rows(platform::Services& services, kvTag& tag);

    // Raises 5 for an unknown command, a property that is no list, or a host's own collection. Linear in template,
    // entries and result.
    CommandAnswer run() const;

private:
    struct Parts;  // of the template
    std::optional<Parts> parts() const;
    std::u16string repeated(privProperties& list, const Parts& parts) const;
    void logError(std::u16string_view message, std::u16string_view data) const;

    platform::Services& services_;
    kvTag& tag_;
    const ContextRef context_;
};

}  // namespace velmor
