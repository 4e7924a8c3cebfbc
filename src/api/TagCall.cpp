#include "core/kvTag.h"
#include "velmor/velmor.h"

namespace velmor {
inline namespace v1 {

std::u16string TagCall::command() const {
    return tag_.CommandName();
}

std::u16string TagCall::commandValue() const {
    return tag_.CommandValueProcessed();
}

std::u16string TagCall::parameter(const TextIn& name, const TextIn& otherwise) const {
    return tag_.GetProcessedElementsValue(name.view(), automation::Variant(otherwise.view()));
}

std::optional<std::u16string> TagCall::property(const TextIn& name) const {
    std::u16string buffer;
    const auto text = tag_.Properties().textOf(name.view(), buffer);
    return text ? std::optional<std::u16string>(*text) : std::nullopt;
}

void TagCall::setProperty(const TextIn& name, const TextIn& value) const {
    tag_.Properties().put(name.view(), automation::Variant(value.view()));
}

std::u16string TagCall::evaluate(const TextIn& text) const {
    return tag_.ProcessValue(text.view());
}

bool TagCall::isForRtf() const {
    return tag_.ProtectRTF();
}

void TagCall::logError(const TextIn& message) const {
    tag_.LogError(tag_.HandlerName(), message.view());
}

}  // namespace v1
}  // namespace velmor
