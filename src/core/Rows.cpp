#include "core/Rows.h"

#include "core/Collection.h"
#include "core/ErrorLog.h"
#include "core/Evaluation.h"
#include "core/RowScope.h"
#include "core/kvTag.h"
#include "rtf/edit/RepeatedText.h"
#include "text/Compare.h"
#include "text/Error.h"
#include "text/RtfStart.h"

namespace velmor {

namespace {

// As it is written: its tags are for each entry.
std::optional<std::u16string> written(kvTag& tag, std::u16string_view parameter) {
    const PropertyRef element = tag.Elements()->Item(parameter);
    return element ? std::optional(element->ValueStr()) : std::nullopt;
}

// Raises 5 for a property that is no list.
PropertiesRef listOf(privProperty& property) {
    if (auto collection = std::dynamic_pointer_cast<privProperties>(property.Value().object())) return collection;
    if (property.HasProperties() || property.ValueStr().empty()) return property.Properties();
    throw Error(5, u"The property is no list: " + property.Name());
}

}  // namespace

struct Rows::Parts : RepeatedText {
    std::u16string between;
    ContextRef context;
};

Rows::Rows(platform::Services& services, kvTag& tag) : services_(services), tag_(tag), context_(tag.sharedContext()) {}

CommandAnswer Rows::run() const {
    if (tag_.CommandName() != u"LIST") throw Error(5, u"There is no command " + tag_.CommandName());
    const std::u16string name = tag_.CommandValueProcessed();
    const std::shared_ptr<privProperties> properties = context_->properties.own();
    if (!properties) throw Error(5, u"The properties are not a collection that can be repeated");
    const PropertyRef property = properties->Item(name);
    if (!property) return CommandAnswer::missing(name);
    const PropertiesRef list = listOf(*property);
    const std::optional<Parts> row = parts();
    if (!row) return CommandAnswer::missing(tag_.GetProcessedElementsValue(u"ROW"));
    if (list->Count() == 0) return {};
    return repeated(*list, *row);
}

// Nothing, with an entry in the error log, if there is no template.
std::optional<Rows::Parts> Rows::parts() const {
    const auto file = written(tag_, u"ROW") ? std::optional(tag_.GetProcessedElementsValue(u"ROW")) : std::nullopt;
    std::optional<std::u16string> text = written(tag_, u"TEXT");
    if (file) text = BuiltInCommands(services_, context_, tag_.Name()).fileText(*file);
    if (!text) {
        logError(file ? u"There is no template" : u"The tag names neither ROW nor TEXT", file.value_or(u""));
        return std::nullopt;
    }
    Parts parts;
    parts.between = written(tag_, u"BETWEEN").value_or(std::u16string());
    const bool isDocument = text->starts_with(rtfStart);
    parts.context = isDocument || tag_.ProtectRTF() ? protectedContext(context_) : context_;
    if (isDocument) {
        auto document = repeatedTextOf(*text);
        if (!document) throw Error(5, u"The document has no closing brace: " + file.value_or(u"TEXT"));
        static_cast<RepeatedText&>(parts) = *std::move(document);
    } else {
        parts.row = *std::move(text);
        if (tag_.ProtectRTF()) parts.before = std::u16string(rtfStart) + u' ', parts.after = u"}";
    }
    return parts;
}

std::u16string Rows::repeated(privProperties& list, const Parts& parts) const {
    RowScope scope(*context_->properties.own());
    std::u16string text = parts.before;
    const std::int32_t count = list.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        const PropertyRef entry = list.Item(index);
        if (!entry) break;  // what was evaluated has removed some
        scope.enter(*entry, index, count);
        if (index > 1) text += parts.between;
        text += evaluateText(services_, parts.context, handler, parts.row, true);
    }
    return text += parts.after;
}

void Rows::logError(std::u16string_view message, std::u16string_view data) const {
    addErrorLogEntry(services_, *context_->errorLog, {handler, message, 0, tag_.Name(), data});
}

}  // namespace velmor
