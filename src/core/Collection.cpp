#include "core/Collection.h"

#include "automation/Convert.h"
#include "automation/Errors.h"
#include "properties/privProperties.h"

namespace velmor {

using automation::InvokeKind;
using automation::Variant;

namespace {

// Calls a member of the host's collection, which may release every reference to the collection. An error counts
// as no result, and so does an absent collection.
template <class Call>
auto quietly(automation::ObjectRef collection, Call&& call) -> decltype(call(*collection)) {
    if (!collection) return {};
    return automation::quietly([&] { return call(*collection); });
}

}  // namespace

Collection::Collection(std::shared_ptr<privProperties> collection) : own_(std::move(collection)) {}

Collection::Collection(const automation::ObjectRef& object) : own_(std::dynamic_pointer_cast<privProperties>(object)) {
    if (!own_) foreign_ = object;
}

automation::ObjectRef Collection::object() const {
    return own_ ? own_ : foreign_;
}

std::int32_t Collection::Count() const {
    if (own_) return own_->Count();
    return quietly(
               foreign_,
               [](automation::Object& host) { return automation::toLong(host.invoke(u"Count", InvokeKind::get, {})); })
        .value_or(0);
}

std::optional<Variant> Collection::find(std::u16string_view psName) const {
    if (own_) {
        const PropertyRef property = own_->Item(psName);
        return property ? std::optional<Variant>(property->Value()) : std::nullopt;
    }
    return quietly(foreign_, [&](automation::Object& host) -> std::optional<Variant> {
        Variant arguments[] = {Variant(psName)};
        const automation::ObjectRef item = host.invoke(u"Item", InvokeKind::get, arguments).object();
        if (!item) return std::nullopt;
        return item->invoke(u"Value", InvokeKind::get, {});
    });
}

Variant Collection::get(std::u16string_view psName, const Variant& pvDefault) const {
    if (own_) return own_->GetValue(psName, pvDefault);
    const std::optional<Variant> value = quietly(foreign_, [&](automation::Object& host) -> std::optional<Variant> {
        Variant arguments[] = {Variant(psName), pvDefault};
        return host.invoke(u"GetValue", InvokeKind::method, arguments);
    });
    return value ? *value : pvDefault;
}

std::u16string Collection::getText(std::u16string_view psName, const Variant& pvDefault) const {
    return automation::toText(get(psName, pvDefault)).value_or(std::u16string());
}

std::optional<std::u16string_view> Collection::textOf(std::u16string_view psName, std::u16string& buffer) const {
    return own_ ? own_->textOf(psName, buffer) : std::nullopt;
}

std::size_t Collection::textLength(std::u16string_view psName) const {
    const PropertyRef property = own_ ? own_->Item(psName) : nullptr;
    const auto* const text = property && !property->builder() ? property->rawValue().get<std::u16string>() : nullptr;
    return text != nullptr ? text->size() : 0;
}

bool Collection::truth(std::u16string_view psName, bool pbDefault) const {
    return automation::truth(get(psName, Variant(pbDefault)));
}

bool Collection::put(std::u16string_view psName, Variant value) const {
    if (own_) return own_->Add(psName, std::move(value), true) != nullptr;
    return quietly(foreign_, [&](automation::Object& host) {
        Variant arguments[] = {Variant(psName), std::move(value), Variant(true)};
        host.invoke(u"Add", InvokeKind::method, arguments);
        return true;
    });
}

void Collection::Dispose() const {
    if (own_) return own_->Dispose();
    quietly(foreign_, [](automation::Object& host) { return host.invoke(u"Dispose", InvokeKind::method, {}); });
}

}  // namespace velmor
