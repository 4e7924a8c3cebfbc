#include "properties/PropertyWriter.h"

#include <array>
#include <charconv>

#include "automation/Convert.h"
#include "automation/Portable.h"
#include "common/Base64.h"
#include "common/Compression.h"
#include "common/Hexadecimal.h"
#include "properties/EntryName.h"
#include "properties/PictureText.h"
#include "properties/Substitution.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::Date;
using automation::ObjectRef;
using automation::Variant;
using automation::VariantType;

namespace {

constexpr std::u16string_view kTerminator = u"\":";
constexpr std::size_t kLongestNested = privProperties::maximumNestedLength;
constexpr std::size_t kSample = 64;  // entries whose length gives the capacity to reserve

void appendInteger(std::u16string& target, std::int32_t value) {
    std::array<char, 12> digits{};
    target.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

bool isZero(const Variant& value) {
    const auto* number = value.get<std::int32_t>();
    return number != nullptr && *number == 0;
}

}  // namespace

PropertyWriter::PropertyWriter(platform::Services& services, Form form, int level)
    : services_(services),
      asTag_(form == Form::tagCommand || form == Form::command),
      delimited_(form == Form::delimited || form == Form::command),
      level_(level) {}

std::u16string PropertyWriter::write(const KeyedItems& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i == kSample) out_.reserve(out_.size() / kSample * (items.size() + items.size() / 8));
        if (asTag_ && i == 0) {
            out_.append(items.entry(i).name).append(1, u'>');
        } else {
            writeEntry(items.entry(i));
        }
        if (out_.size() > privStrCat::maximumLength) throw Error(7);
    }
    return std::move(out_);
}

void PropertyWriter::writeEntry(const KeyedItems::Entry& entry) {
    appendName(out_, entry.name);
    if (entry.property != nullptr) {
        writeProperty(*entry.property);
    } else if (entry.spelling == KeyedItems::Spelling::quoted) {
        out_ += u'=';
        writeText(entry.value, 0);
    } else {
        writeValue(entry.unreadValue(), entry.unreadEncoding());
    }
}

void PropertyWriter::writeProperty(const privProperty& property) {
    if (property.builder() != nullptr) {
        writeValue(property.Value(), property.Encoding());
    } else {
        writeValue(property.rawValue(), property.Encoding());
    }
    if (property.extras_ != nullptr) writeChildren(property);
}

void PropertyWriter::writeChildren(const privProperty& property) {
    const auto write = [&](const privProperty::Child& child, Child which) {
        if (child.built == nullptr) {
            writeChild(property.Name(), child.text, which);
        } else {
            writeChild(property.Name(), child.stored(level_ + 1), which);
        }
    };
    write(property.extras_->attributes, Child::attributes);
    write(property.extras_->properties, Child::properties);
}

void PropertyWriter::writeValue(const Variant& value, std::int32_t encoding) {
    if (asTag_ && isZero(value)) {
        out_ += u':';  // a name alone is read as the long 0
        return;
    }
    out_ += u'=';
    if (const auto* text = value.get<std::u16string>()) {
        writeText(*text, encoding);
    } else if (!writeTyped(value)) {
        writeText(automation::toText(value).value_or(std::u16string()), encoding);
    }
}

// False for a type that is written as text.
bool PropertyWriter::writeTyped(const Variant& value) {
    switch (value.type()) {
        case VariantType::null:
            out_ += u"NUL:";
            return true;
        case VariantType::integer:
            return writeNumber(value, u"%:");
        case VariantType::longInteger:
            return writeNumber(value, u"&:");
        case VariantType::single:
            return writeNumber(value, u"!:");
        case VariantType::doubleFloat:
            return writeNumber(value, u"#:");
        case VariantType::currency:
            return writeNumber(value, u"$:");
        case VariantType::decimal:
            out_ += u'!';
            return writeNumber(value, u"!:");
        case VariantType::date:
            return writeDate(*value.get<Date>());
        case VariantType::boolean:
            out_ += *value.get<bool>() ? u"True:" : u"False:";
            return true;
        case VariantType::object:
            writeObject(value);
            return true;
        default:
            return false;
    }
}

bool PropertyWriter::writeNumber(const Variant& value, std::u16string_view suffix) {
    if (const auto* number = value.get<std::int32_t>()) {
        appendInteger(out_, *number);
    } else {
        out_ += automation::toText(value).value_or(std::u16string());
    }
    out_ += suffix;
    return true;
}

// A date outside the calendar is kept as its number of days.
bool PropertyWriter::writeDate(Date date) {
    const auto text = automation::portable::storedDateText(date);
    if (!text) return writeNumber(Variant(date.days), u"#:");
    out_.append(1, u'#').append(*text).append(u"#:");
    return true;
}

// Only a collection and, in a tag, a picture have a text form. For any other object the name is written.
void PropertyWriter::writeObject(const Variant& value) {
    const ObjectRef object = value.object();
    if (asTag_) out_ += PictureToText(services_, value);
    if (object == nullptr || object->typeName() != u"privProperties") return;
    std::u16string text;
    if (const auto* own = dynamic_cast<const privProperties*>(object.get())) {
        text = own->text(Form::delimited, level_ + 1);
    } else {
        try {
            text = automation::toText(object->invoke(u"Delimited", automation::InvokeKind::get, {})).value_or(text);
        } catch (const Error&) {
            return;
        }
    }
    out_ += u"~RO~kvProperties\"";
    appendNested(text);
    out_ += kTerminator;
}

void PropertyWriter::writeText(std::u16string_view text, std::int32_t encoding) {
    switch (encoding) {
        case 1:
            return writeBase64(text);
        case 2:
            out_ += u"~HX\"";
            appendHexadecimal(out_, toUtf8(text));
            out_ += kTerminator;
            return;
        case 4:
            out_.append(u"~GZ\"").append(compressedText(text)).append(kTerminator);
            return;
        case 8:
            return writeSubstituted(text);
        default:
            break;
    }
    if (text.find(kTerminator) == text.npos) {
        out_.append(1, u'"').append(text).append(kTerminator);
    } else if (delimited_) {
        writeBase64(text);
    } else {
        writeSubstituted(text);
    }
}

void PropertyWriter::writeSubstituted(std::u16string_view text) {
    const auto substitute = substituteFor(text);
    if (!substitute) return writeBase64(text);
    out_ += u"~CE\"";
    appendSubstituted(out_, text, *substitute);
    out_ += kTerminator;
}

void PropertyWriter::writeBase64(std::u16string_view text) {
    out_ += u"~64\"";
    appendBase64(out_, toUtf8(text));
    out_ += kTerminator;
}

// Every level of nesting encodes the text again and adds a third; a few dozen would fill the memory.
void PropertyWriter::appendNested(std::u16string_view text) {
    if (text.size() > kLongestNested) {
        throw Error(7, u"A collection within a collection is too long to be written as text");
    }
    appendBase64(out_, toUtf8(text));
}

// Child properties are written plainly only if they hold no quote, attributes if they hold no
// terminator; readers accept both.
void PropertyWriter::writeChild(std::u16string_view name, std::u16string_view text, Child which) {
    if (text.empty()) return;
    const bool attributes = which == Child::attributes;
    appendName(out_, name);
    out_ += attributes ? u"=~AT\"" : u"=~PR\"";
    const bool plain = attributes ? text.find(kTerminator) == text.npos : text.find(u'"') == text.npos;
    if (plain) {
        out_.append(1, u'-').append(text);
    } else if (const auto substitute = substituteFor(text)) {
        appendSubstituted(out_, text, *substitute);
    } else {
        out_ += u'+';
        appendNested(text);
    }
    out_ += kTerminator;
}

}  // namespace velmor
