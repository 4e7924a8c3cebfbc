#include "handlers/ITag4.h"

#include <vector>

#include "automation/Convert.h"
#include "automation/Variant.h"
#include "handlers/BuiltInCatalogue.h"
#include "text/Compare.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor {

using automation::InvokeKind;
using automation::Variant;

namespace {

constexpr std::int32_t kLowestWithCatalogue = 2;
constexpr std::int32_t kLowestWithDatabase = 4;

std::u16string textOf(const Variant& answer) {
    std::optional<std::u16string> text = automation::toText(answer);
    if (!text) throw Error(13, kErrorSource, u"Type mismatch");
    return *std::move(text);
}

}  // namespace

HandlerAddress HandlerAddress::parse(std::u16string_view psHandler) {
    HandlerAddress address;
    address.name = upperCase(psHandler);
    if (const std::size_t dash = address.name.find(u'-'); dash != std::u16string::npos) {
        address.group = address.name.substr(0, dash) + u'\\';
        address.name.erase(0, dash + 1);
    }
    return address;
}

std::u16string HandlerAddress::registryKey() const {
    return group.empty() ? std::u16string(kHandlersKey) : std::u16string(kSubHandlersKey) + u'\\' + group;
}

std::u16string HandlerAddress::className(const platform::Registry& registry) const {
    // The key's default value is not a handler, and a tag with the built-in handler's name means the built-in one.
    if (name.empty() || name == BuiltInCatalogue::handler) return {};
    return registry.value(registryKey(), name).value_or(std::u16string());
}

ITag4 ITag4::create(platform::Objects& objects, std::u16string_view className) {
    return ITag4(objects.create(className));
}

std::int32_t ITag4::Interface() const {
    const std::optional<std::int32_t> level = automation::toLong(handler_->invoke(u"Interface", InvokeKind::get, {}));
    if (!level) throw Error(13, kErrorSource, u"Type mismatch");
    return *level;
}

std::u16string ITag4::GetTagValue(const automation::ObjectRef& tag) const {
    Variant arguments[] = {Variant(tag)};
    return textOf(handler_->invoke(u"GetTagValue", InvokeKind::method, arguments));
}

void ITag4::Dispose() const {
    if (isDisposed(Interface())) handler_->invoke(u"Dispose", InvokeKind::method, {});
}

std::u16string ITag4::catalogue(std::u16string_view member, std::initializer_list<std::u16string_view> texts,
                                const automation::ObjectRef& database, std::int32_t lowestLevel) const {
    const std::int32_t level = Interface();
    if (level < lowestLevel) return {};
    std::vector<Variant> arguments(texts.begin(), texts.end());
    if (level >= kLowestWithDatabase) arguments.emplace_back(database);
    return textOf(handler_->invoke(member, InvokeKind::get, arguments));
}

std::u16string ITag4::CommandList(std::u16string_view psHandler, const automation::ObjectRef& database) const {
    return catalogue(u"CommandList", {psHandler}, database, kLowestWithCatalogue);
}

std::u16string ITag4::ParameterList(std::u16string_view psCommand, std::u16string_view psHandler,
                                    const automation::ObjectRef& database) const {
    return catalogue(u"ParameterList", {psCommand, psHandler}, database, kLowestWithCatalogue);
}

std::u16string ITag4::SyntaxString(std::u16string_view psCommand, std::u16string_view psHandler,
                                   const automation::ObjectRef& database) const {
    return catalogue(u"SyntaxString", {psCommand, psHandler}, database, kLowestWithCatalogue);
}

std::u16string ITag4::CommandDescription(std::u16string_view psCommand, std::u16string_view psHandler,
                                         const automation::ObjectRef& database) const {
    return catalogue(u"CommandDescription", {psCommand, psHandler}, database, kLowestWithCatalogue);
}

std::u16string ITag4::ParameterValueList(std::u16string_view psCommand, std::u16string_view psParameter,
                                         std::u16string_view psHandler, const automation::ObjectRef& database) const {
    return catalogue(u"ParameterValueList", {psCommand, psParameter, psHandler}, database, kLowestWithDatabase);
}

}  // namespace velmor
