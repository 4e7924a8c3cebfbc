#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace testhandlers {

using velmor::automation::ObjectRef;

// A handler that reports a level, notes every call, and answers with what it was made with.
class Handler final : public velmor::automation::Object {
public:
    using Answer = std::u16string (*)(const ObjectRef& tag);

    Handler(std::int32_t level, Answer answer) : level_(level), answer_(answer) {}

    velmor::automation::Variant invoke(std::u16string_view name, velmor::automation::InvokeKind kind,
                                       std::span<velmor::automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"Handler"; }

    std::int32_t level() const;
    std::u16string GetTagValue(const ObjectRef& tag) const;
    void Dispose() const;

private:
    std::int32_t level_;
    Answer answer_;
};

template <std::int32_t level>
ObjectRef makeLevel();  // "L3[COMMAND]"

ObjectRef makeFailing();         // raises 1234 from GetTagValue
ObjectRef makeFailingDispose();  // answers, then raises from Dispose
ObjectRef makeReentrant();       // does to its own tag what a handler should not
ObjectRef makeProbe();           // uses the tag as handlers do
ObjectRef makeNesting();         // answers with a tag
ObjectRef makeRtf();             // answers with an RTF fragment
ObjectRef makeEcho();            // answers with its own tag
ObjectRef makeDigging();         // evaluates its own tag once more, "+" before what that gives

}  // namespace testhandlers
