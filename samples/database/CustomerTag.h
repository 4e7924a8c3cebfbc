#pragma once

#include <span>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace sample {

// The handler "Sample.CustomerTag". It uses the tag's object cache, so all tags of a document that name
// the same customer read the row once.
//
//     <KV:CUSTOMER>NAME:ID=2:</KV>    <KV:CUSTOMER>CITY:ID=2:</KV>
//
// Without ID it is the customer of the previous tag. An absent customer raises error 5.
class CustomerTag final : public velmor::automation::Object {
public:
    velmor::automation::Variant invoke(std::u16string_view name, velmor::automation::InvokeKind kind,
                                       std::span<velmor::automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"CustomerTag"; }
};

}  // namespace sample
