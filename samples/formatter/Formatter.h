#pragma once

#include <span>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace sample {

// The handler "Sample.Formatter": dates and numbers by a pattern.
//
//     <KV:FORMAT>DATE:PROPERTY=name:PATTERN="d mmmm yyyy":</KV>
//     <KV:FORMAT>NUMBER:VALUE=1234.5:PATTERN="#,##0.00":</KV>
//
// PROPERTY names a property of the tag and keeps its type, whatever the language of the machine;
// VALUE is a text, tags in it evaluated. An absent or empty value gives the empty text; one that
// is not a date or number raises error 13. See Patterns.h for PATTERN.
class Formatter final : public velmor::automation::Object {
public:
    velmor::automation::Variant invoke(std::u16string_view name, velmor::automation::InvokeKind kind,
                                       std::span<velmor::automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"Formatter"; }

    // The text for a tag; keeps the tag until Dispose.
    std::u16string GetTagValue(const velmor::automation::ObjectRef& poTag);
    void Dispose() { tag_.reset(); }

private:
    velmor::automation::Variant subject() const;

    velmor::automation::ObjectRef tag_;
};

}  // namespace sample
