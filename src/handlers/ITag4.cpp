#include "handlers/ITag4.h"

#include <vector>

#include "automation/Convert.h"
#include "automation/Variant.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace velmor {

using automation::InvokeKind;
using automation::Variant;

namespace {

constexpr std::int32_t lowestWithCatalogue = 2;
constexpr std::int32_t lowestWithDatabase = 4;
constexpr std::int32_t lowestDisposed = 5;

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

std::u16string HandlerAddress::className(const platform::Registry& registry) const {
    // The key's default value is not a handler, and a tag with the built-in handler's name means the built-in one.
    if (name.empty() || name == builtInHandler) return {};
    const std::u16string key(group.empty() ? handlersKey : subHandlersKey);
    return registry.value(key + u'\\' + group, name).value_or(std::u16string());
}

std::int32_t ITag4::Interface() const {
    const std::optional<std::int32_t> level = automation::toLong(handler_->invoke(u"Interface", InvokeKind::get, {}));
    if (!level) throw Error(13);
    return *level;
}

std::u16string ITag4::GetTagValue(const automation::ObjectRef& tag) const {
    return automation::textOrError(automation::call(*handler_, u"GetTagValue", tag));
}

void ITag4::Dispose() const {
    if (Interface() >= lowestDisposed) handler_->invoke(u"Dispose", InvokeKind::method, {});
}

std::u16string ITag4::catalogue(std::u16string_view member, std::initializer_list<std::u16string_view> texts,
                                std::u16string_view psHandler, const automation::ObjectRef& database) const {
    const std::int32_t level = Interface();
    if (level < (member == u"ParameterValueList" ? lowestWithDatabase : lowestWithCatalogue)) return {};
    std::vector<Variant> arguments(texts.begin(), texts.end());
    arguments.emplace_back(psHandler);
    if (level >= lowestWithDatabase) arguments.emplace_back(database);
    return automation::textOrError(handler_->invoke(member, InvokeKind::get, arguments));
}

}  // namespace velmor
