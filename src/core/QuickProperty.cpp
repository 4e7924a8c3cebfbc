// Answers the most frequent tag without building its elements, if the result is the same.

#include "core/BuiltInCommands.h"

#include <algorithm>

#include "core/EvaluationRules.h"
#include "core/Markup.h"
#include "text/Characters.h"
#include "text/Compare.h"

namespace velmor {

namespace {

constexpr std::u16string_view propertyTag = u"TAG>PROPERTY:";

// Names that the reader does not change (except their case).
bool isPlainName(std::u16string_view name) noexcept {
    return !name.empty() && name.front() > u' ' && name.find(u'!') == std::u16string_view::npos;
}

// A long with the same text.
bool isPlainNumber(std::u16string_view value) noexcept {
    if (value.empty() || value.size() > 9 || (value.front() == u'0' && value.size() > 1)) return false;
    return std::all_of(value.begin(), value.end(), isDigit);
}

// A text that neither begins like a number, marker or quoted value, nor ends like a typed number.
bool isPlainText(std::u16string_view value) noexcept {
    if (value.empty()) return true;
    if (!isLetter(value.front()) || equalIgnoringCase(value.substr(0, 3), u"NUL")) return false;
    const char16_t last = value.back();
    return isLetter(last) || isDigit(last);
}

// The default at `start` in the text after the command; nothing if it needs the reader.
std::optional<std::u16string_view> plainDefault(std::u16string_view rest, std::size_t start) {
    const std::u16string_view value = rest.substr(start, rest.find(elementSeparator, start) - start);
    if (const std::size_t end = endOfTag(rest, start); end != rest.npos) {
        if (end < rest.size() && rest[end] != elementSeparator) return std::nullopt;
        return rest.substr(start, end - start);
    }
    const std::size_t end = start + value.size();
    const char16_t next = end + 1 < rest.size() ? rest[end + 1] : u' ';
    // "X:\\" and "X:/" are the beginning of a path.
    if (value.size() == 1 && end < rest.size() && (next == u'\\' || next == u'/')) return std::nullopt;
    if (value.find(u'<') != value.npos || (!isPlainNumber(value) && !isPlainText(value))) return std::nullopt;
    return value;
}

}  // namespace

std::optional<PlainProperty> plainProperty(std::u16string_view psName) {
    if (!equalIgnoringCase(psName.substr(0, propertyTag.size()), propertyTag)) return std::nullopt;
    const std::u16string_view rest = psName.substr(propertyTag.size());
    const auto endsName = [](char16_t unit) { return unit == u'=' || unit == u':' || unit == u'<'; };
    const auto equals = static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), endsName) - rest.begin());
    const std::u16string_view name = rest.substr(0, equals);
    const bool bare = equals == rest.size() || rest[equals] != u'=';
    if (!isPlainName(name) || (bare && equals < rest.size() && rest[equals] == u'<')) return std::nullopt;
    const std::optional<std::u16string_view> value = bare ? u"0" : plainDefault(rest, equals + 1);
    if (!value) return std::nullopt;
    return PlainProperty{name, *value, !bare && !value->empty()};
}

std::optional<PropertyText> propertyText(std::u16string_view psName, const TagContext& context,
                                         std::u16string& buffer) {
    const std::optional<PlainProperty> property = context.properties.own() ? plainProperty(psName) : std::nullopt;
    if (!property) return std::nullopt;
    if (const auto text = context.properties.textOf(property->name, buffer))
        return PropertyText{*text, Origin::property};
    // Without a default the tag may be one for EvaluationRules::missing.
    if (!property->hasDefault && EvaluationRun::current().rules().looksAtValues()) return std::nullopt;
    return PropertyText{property->value, Origin::author};
}

}  // namespace velmor
