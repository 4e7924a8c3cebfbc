#include "check/TemplateSchema.h"

#include <optional>

#include "automation/Portable.h"
#include "text/OneLine.h"

namespace velmor {

namespace {

using automation::Variant;

// One unit of a JSON text.
void appendUnit(std::u16string& json, char16_t unit) {
    if (unit == u'"' || unit == u'\\') json += u'\\';
    if (unit >= u' ') {
        json += unit;
        return;
    }
    constexpr char16_t digits[] = u"0123456789abcdef";
    json.append(u"\\u00").append({digits[unit >> 4], digits[unit & 15]});
}

std::u16string quoted(std::u16string_view text) {
    std::u16string json = u"\"";
    for (const char16_t unit : withoutLoneSurrogates(std::u16string(text))) appendUnit(json, unit);
    return json + u'"';
}

// The elements of an object or an array, each on a line.
class Lines {
public:
    explicit Lines(std::u16string indent) : indent_(std::move(indent)) {}

    void add(std::u16string_view element) {
        text_.append(text_.empty() ? u"\n" : u",\n").append(indent_).append(u"  ").append(element);
    }
    void add(std::u16string_view name, std::u16string_view value) { add(quoted(name) + u": " + std::u16string(value)); }
    bool isEmpty() const noexcept { return text_.empty(); }
    std::u16string within(std::u16string_view brackets) const {
        const std::u16string end = text_.empty() ? u"" : u"\n" + indent_;
        return std::u16string(brackets.substr(0, 1)) + text_ + end + std::u16string(brackets.substr(1));
    }

private:
    std::u16string indent_;
    std::u16string text_;
};

struct Default {
    std::u16string_view type;
    std::u16string json;
};

std::optional<Default> defaultOf(const PropertyUse& use) {
    if (!use.standard) return std::nullopt;
    const Variant& value = use.standard->rawValue();
    const std::u16string text = automation::portable::toText(value).value_or(u"");
    if (text.empty() || !isLiteral(text)) return std::nullopt;
    if (const bool* const flag = value.get<bool>()) return Default{u"boolean", *flag ? u"true" : u"false"};
    const bool isNumber = value.visit([]<class Held>(const Held&) {
        return std::is_arithmetic_v<Held> || std::is_same_v<Held, automation::Currency> ||
               std::is_same_v<Held, automation::Decimal>;
    });
    return isNumber ? Default{u"number", text} : Default{u"string", quoted(text)};
}

}  // namespace

std::u16string schemaText(const std::vector<PropertyUse>& uses, std::u16string_view title) {
    Lines schema(u""), properties(u"  "), required(u"  ");
    for (const PropertyUse& use : uses) {
        const std::optional<Default> standard = defaultOf(use);
        properties.add(
            use.name,
            standard ? u"{\"type\": " + quoted(standard->type) + u", \"default\": " + standard->json + u"}" : u"{}");
        if (!use.standard && !use.isSet) required.add(quoted(use.name));
    }
    schema.add(u"$schema", u"\"https://json-schema.org/draft/2020-12/schema\"");
    if (!title.empty()) schema.add(u"title", quoted(title));
    schema.add(u"type", u"\"object\"");
    schema.add(u"properties", properties.within(u"{}"));
    if (!required.isEmpty()) schema.add(u"required", required.within(u"[]"));
    return schema.within(u"{}") + u"\n";
}

std::u16string sampleText(const std::vector<PropertyUse>& uses) {
    Lines sample(u"");
    for (const PropertyUse& use : uses) {
        if (use.isSet) continue;
        const std::optional<Default> standard = defaultOf(use);
        sample.add(use.name, standard ? standard->json : quoted(use.name));
    }
    return sample.within(u"{}") + u"\n";
}

}  // namespace velmor
