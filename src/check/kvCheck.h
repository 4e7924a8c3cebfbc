#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "check/TemplateCheck.h"
#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor {

// Finds the mistakes of templates and of finished documents for a host. Included files and handlers are found as
// evaluation finds them.
//
// pvProperties are the properties that the host will set: a privProperties, or a collection's text form. A missing,
// Empty, Null or Nothing argument means that they are not known: properties that nothing sets are then not reported.
// Any other argument raises 13.
//
// Each diagnostic is an entry of the returned collection. Its name is the code ("KV201"), its value the line that
// `velmor check` prints. Its child properties are Code, Severity ("error", "warning"), File (empty for the template
// itself), Line, Column, Offset, Length, Place, Text, Hint, Context and IncludedFrom (places, the nearest first,
// separated by ", "). Positions count from 1, in UTF-16 code units.
class kvCheck final : public automation::Object {
public:
    explicit kvCheck(platform::Services& services) : services_(services) {}

    PropertiesRef Check(std::u16string_view psTemplate, const automation::Variant& pvProperties);
    // The template with a comment at each place that Check finds. Raises 5 unless the template is an RTF document.
    std::u16string Annotate(std::u16string_view psTemplate, const automation::Variant& pvProperties);
    // The template with its tags made whole (repairTags).
    std::u16string Fix(std::u16string_view psTemplate);
    // A JSON Schema of the properties that the template reads, or an object of sample data.
    std::u16string Schema(std::u16string_view psTemplate, const automation::Variant& pvProperties, bool pbSample);
    // What is wrong with a finished document.
    PropertiesRef Verify(std::u16string_view psDocument);

    // Of the last Check, Annotate or Verify: what was found beyond the diagnostics that were kept.
    std::int32_t More() const noexcept { return more_; }
    // Of the last Fix: the tags that were made whole, and the faulty tags that stayed as they were.
    std::int32_t Repaired() const noexcept { return repaired_; }
    std::int32_t NotRepaired() const noexcept { return notRepaired_; }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvCheck"; }

private:
    PropertiesRef given(const automation::Variant& pvProperties) const;
    CheckResult checked(std::u16string_view psTemplate, const automation::Variant& pvProperties);
    PropertiesRef listOf(const CheckResult& result);

    platform::Services& services_;
    std::int32_t more_ = 0;
    std::int32_t repaired_ = 0;
    std::int32_t notRepaired_ = 0;
};

}  // namespace velmor
