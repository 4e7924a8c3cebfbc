// The handler "Sample.Formatter": dates and numbers by a pattern.
//
//     <KV:FORMAT>DATE:PROPERTY=name:PATTERN="d mmmm yyyy":</KV>
//     <KV:FORMAT>NUMBER:VALUE=1234.5:PATTERN="#,##0.00":</KV>
//
// PROPERTY names a property of the tag and keeps its type, whatever the language of the machine; VALUE is a text, tags
// in it evaluated. An absent or empty value gives the empty text; one that is no date or number raises error 13. See
// Patterns.h for PATTERN.

#include <velmor/handler.h>

#include "Patterns.h"

namespace {

using velmor::handler::Command;
using velmor::handler::Failure;
using velmor::handler::Parameter;
using velmor::handler::Tag;
using velmor::handler::Value;

constexpr Parameter parameters[] = {{u"PROPERTY"}, {u"VALUE"}, {u"PATTERN"}};
constexpr Command commands[] = {
    {u"DATE", u"FORMAT>DATE:PROPERTY=name:[VALUE=date:][PATTERN=(d mmmm yyyy):]",
     u"A date by a pattern of d, m, y, h, n, s and AM/PM", parameters},
    {u"NUMBER", u"FORMAT>NUMBER:PROPERTY=name:[VALUE=number:][PATTERN=(#,##0.00):]",
     u"A number by a pattern of #, 0, comma, point and %", parameters},
};

Value subject(const Tag& tag) {
    const std::u16string property = tag.parameter(u"PROPERTY");
    return property.empty() ? Value(tag.parameter(u"VALUE")) : tag.property(property);
}

std::u16string formatted(const Tag& tag, const std::u16string& command, const Value& value) {
    if (command == u"DATE") {
        return sample::formatDate(tag.object().date(value).days, tag.parameter(u"PATTERN", u"d mmmm yyyy"));
    }
    return sample::formatNumber(tag.object().number(value), tag.parameter(u"PATTERN", u"#,##0.00"));
}

std::u16string answer(const Tag& tag) {
    const std::u16string command = tag.command();
    const bool isDate = command == u"DATE";
    if (!isDate && command != u"NUMBER") throw Failure(5, u"There is no command \"" + command + u"\"");
    const Value value = subject(tag);
    const std::u16string text = tag.object().text(value);
    if (text.empty()) return {};
    try {
        return formatted(tag, command, value);
    } catch (const Failure&) {
        throw Failure(13, u"\"" + text + u"\" is not a " + (isDate ? u"date" : u"number"));
    }
}

constexpr velmor::handler::Class formatter{.name = u"Sample.Formatter",
                                           .identifier = u"{6DBF53C1-EFC5-418C-A03D-3D012F608D00}",
                                           .description = u"Formats dates and numbers in document templates",
                                           .handler = u"FORMAT",
                                           .commands = commands,
                                           .answer = &answer};

}  // namespace

VELMOR_HANDLERS(formatter)
