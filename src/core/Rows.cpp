#include "core/Rows.h"

#include <map>

#include "core/Collection.h"
#include "core/ErrorLog.h"
#include "core/Evaluation.h"
#include "core/kvTag.h"
#include "properties/privProperties.h"
#include "rtf/edit/RepeatedText.h"
#include "text/Compare.h"
#include "text/Error.h"
#include "text/RtfStart.h"

namespace velmor {

using automation::Variant;

namespace {

// The properties of one entry after the other in the place of a collection's own. Its end restores the values of those.
class RowScope {
public:
    explicit RowScope(privProperties& properties) : properties_(properties) {}
    ~RowScope() {
        for (const auto& [key, hidden] : hidden_) restore(hidden);
    }
    RowScope(const RowScope&) = delete;
    RowScope& operator=(const RowScope&) = delete;

    // `index` from 1. The values of the previous entry go. Linear in the entry's properties.
    void enter(privProperty& entry, std::int32_t index, std::int32_t count) {
        row_ = index;
        set(u"Index", Variant(index));
        set(u"Count", Variant(count));
        set(u"First", Variant(index == 1));
        set(u"Last", Variant(index == count));
        const auto collection = std::dynamic_pointer_cast<privProperties>(entry.Value().object());
        const PropertiesRef properties = collection ? collection : entry.Properties();
        if (properties->Count() == 0) set(u"Value", entry.Value());
        for (std::int32_t at = 1; at <= properties->Count(); ++at) {
            const PropertyRef property = properties->Item(at);
            set(property->Name(), valueOf(*property));
        }
        std::erase_if(hidden_, [&](const auto& each) {
            if (each.second.row == row_) return false;
            restore(each.second);
            return true;
        });
    }

private:
    struct Hidden {
        std::u16string name;
        std::optional<Variant> value;  // nothing if there is no such property
        std::int32_t row;              // the last that set it
    };

    // A list within the entry is a collection.
    static Variant valueOf(privProperty& property) {
        Variant value = property.Value();
        const auto* const text = value.get<std::u16string>();
        if (text == nullptr || !text->empty() || !property.HasProperties()) return value;
        return Variant(automation::ObjectRef(property.Properties()));
    }

    void set(std::u16string_view name, Variant value) {
        const auto [place, isNew] = hidden_.try_emplace(upperCase(name));
        Hidden& hidden = place->second;
        if (isNew) {
            hidden.name = name;
            if (const PropertyRef present = properties_.Item(name)) hidden.value = present->Value();
        }
        hidden.row = row_;
        properties_.Add(name, std::move(value), true);
    }

    void restore(const Hidden& hidden) {
        if (!hidden.value) return properties_.Remove(Variant(hidden.name));
        if (const PropertyRef present = properties_.Item(hidden.name)) present->SetValueQuiet(Variant(*hidden.value));
    }

    privProperties& properties_;
    std::int32_t row_ = 0;
    std::map<std::u16string, Hidden> hidden_;  // by name in upper case
};

// What is repeated.
struct RowTemplate : RepeatedText {
    std::u16string between;
    ContextRef context;
};

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

// Nothing, with an entry in the error log, if there is no template.
std::optional<RowTemplate> templateOf(kvTag& tag, const ContextRef& context) {
    const auto file = written(tag, u"ROW") ? std::optional(tag.GetProcessedElementsValue(u"ROW")) : std::nullopt;
    std::optional<std::u16string> text = written(tag, u"TEXT");
    if (file) text = includedText(tag.services(), context, tag.Name(), *file);
    if (!text) {
        addErrorLogEntry(tag.services(), *context->errorLog,
                         {rowsHandler, file ? u"There is no template" : u"The tag names neither ROW nor TEXT", 0,
                          tag.Name(), file.value_or(u"")});
        return std::nullopt;
    }
    RowTemplate row;
    row.between = written(tag, u"BETWEEN").value_or(std::u16string());
    const bool isDocument = text->starts_with(rtfStart);
    row.context = isDocument || tag.ProtectRTF() ? protectedContext(context) : context;
    if (isDocument) {
        auto document = repeatedTextOf(*text);
        if (!document) throw Error(5, u"The document has no closing brace: " + file.value_or(u"TEXT"));
        static_cast<RepeatedText&>(row) = *std::move(document);
    } else {
        row.row = *std::move(text);
        if (tag.ProtectRTF()) row.before = std::u16string(rtfStart) + u' ', row.after = u"}";
    }
    return row;
}

std::u16string repeated(kvTag& tag, privProperties& properties, privProperties& list, const RowTemplate& row) {
    RowScope scope(properties);
    std::u16string text = row.before;
    const std::int32_t count = list.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        const PropertyRef entry = list.Item(index);
        if (!entry) break;  // what was evaluated has removed some
        scope.enter(*entry, index, count);
        if (index > 1) text += row.between;
        text += evaluateText(tag.services(), row.context, rowsHandler, row.row, true);
    }
    return text += row.after;
}

}  // namespace

CommandAnswer repeatRows(kvTag& tag) {
    const ContextRef context = tag.sharedContext();
    if (tag.CommandName() != u"LIST") throw Error(5, u"There is no command " + tag.CommandName());
    const std::u16string name = tag.CommandValueProcessed();
    const std::shared_ptr<privProperties> properties = context->properties.own();
    if (!properties) throw Error(5, u"The properties are not a collection that can be repeated");
    const PropertyRef property = properties->Item(name);
    if (!property) return CommandAnswer::missing(name);
    const PropertiesRef list = listOf(*property);
    const std::optional<RowTemplate> row = templateOf(tag, context);
    if (!row) return CommandAnswer::missing(tag.GetProcessedElementsValue(u"ROW"));
    if (list->Count() == 0) return {};
    return repeated(tag, *properties, *list, *row);
}

}  // namespace velmor
