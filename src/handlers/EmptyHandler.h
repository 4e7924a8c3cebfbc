#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "automation/Object.h"

namespace velmor {

// The public class ITag4: publishes the handler interface, and answers it with 0 and empty texts.
// As level 0 it is refused wherever it is registered as a handler.
class EmptyHandler final : public automation::Object {
public:
    std::int32_t Interface() const noexcept { return 0; }
    std::u16string GetTagValue(const automation::ObjectRef&) const { return {}; }
    std::u16string CommandList(const auto&...) const { return {}; }
    std::u16string ParameterList(const auto&...) const { return {}; }
    std::u16string SyntaxString(const auto&...) const { return {}; }
    std::u16string CommandDescription(const auto&...) const { return {}; }
    std::u16string ParameterValueList(const auto&...) const { return {}; }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"ITag4"; }
};

}  // namespace velmor
