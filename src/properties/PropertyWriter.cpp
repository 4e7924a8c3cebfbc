#include "properties/PropertyWriter.h"

#include <array>
#include <charconv>

#include "automation/Convert.h"
#include "common/Base64.h"
#include "common/Compression.h"
#include "common/Hexadecimal.h"
#include "properties/DateText.h"
#include "properties/PictureText.h"
#include "properties/Substitution.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/ErrorSource.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::Date;
using automation::ObjectRef;
using automation::Variant;
using automation::VariantType;

namespace {

constexpr std::u16string_view kTerminator = u"\":";
constexpr std::size_t kLongestNested = privProperties::maximumNestedLength;
constexpr std::size_t kSample = 64;  // entries by whose length the room for all is guessed

void appendInteger(std::u16string& target, std::int32_t value) {
    std::array<char, 12> digits{};
    target.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

bool isZero(const privProperty& property) {
    return property.ValueType() == 3 && property.ValueLng() == 0;
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
            out_.append(items.at(i)->nameView()).append(1, u'>');
        } else {
            writeEntry(*items.at(i));
        }
        if (out_.size() > privStrCat::maximumLength) throw Error(7, kErrorSource, u"Out of memory");
    }
    return std::move(out_);
}

void PropertyWriter::writeEntry(const privProperty& property) {
    writeName(property.nameView());
    if (asTag_ && isZero(property)) {
        out_ += u':';  // a name alone is read as the long 0
    } else {
        out_ += u'=';
        writeValue(property);
    }
    if (property.extras_ != nullptr) writeChildren(property);
}

// Readers take "!@" for ":". A type prefix, which they drop, keeps them from dropping anything else.
void PropertyWriter::writeName(std::u16string_view name) {
    if (name.find(u':') == name.npos) {
        out_ += name;
        return;
    }
    std::u16string escaped;
    for (const char16_t unit : name) {
        if (unit == u':') {
            escaped += u"!@";
        } else {
            escaped += unit;
        }
    }
    if (privProperties::CleanName(escaped) != name) out_ += u"!s!";
    out_ += escaped;
}

void PropertyWriter::writeChildren(const privProperty& property) {
    const auto write = [&](const privProperty::Child& child, Child which) {
        if (child.built == nullptr) {
            writeChild(property.nameView(), child.text, which);
        } else {
            writeChild(property.nameView(), child.stored(level_ + 1), which);
        }
    };
    write(property.extras_->attributes, Child::attributes);
    write(property.extras_->properties, Child::properties);
}

void PropertyWriter::writeValue(const privProperty& property) {
    if (const auto& builder = property.builder()) {
        return writeText(builder->ReturnVal(), property.Encoding());
    }
    const Variant& value = property.rawValue();
    switch (value.type()) {
        case VariantType::string:
            return writeText(*value.get<std::u16string>(), property.Encoding());
        case VariantType::null:
            out_ += u"NUL:";
            return;
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
            return;
        case VariantType::object:
            return writeObject(value);
        default:
            return writeText(property.ValueStr(), property.Encoding());
    }
}

void PropertyWriter::writeNumber(const Variant& value, std::u16string_view suffix) {
    if (const auto* number = value.get<std::int32_t>()) {
        appendInteger(out_, *number);
    } else if (const auto* small = value.get<std::int16_t>()) {
        appendInteger(out_, *small);
    } else {
        out_ += automation::toText(value).value_or(std::u16string());
    }
    out_ += suffix;
}

// A date beyond the calendar is kept as its number of days.
void PropertyWriter::writeDate(Date date) {
    if (const auto text = dateText(date)) {
        out_.append(1, u'#').append(*text).append(u"#:");
    } else {
        writeNumber(Variant(date.days), u"#:");
    }
}

// Only a collection, and in a tag a picture, has a text; of any other object the name remains.
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
    out_.append(u"~CE\"").append(1, *substitute);
    appendSubstituted(out_, text, *substitute);
    out_ += kTerminator;
}

void PropertyWriter::writeBase64(std::u16string_view text) {
    out_ += u"~64\"";
    appendBase64(out_, toUtf8(text));
    out_ += kTerminator;
}

// Base64 of base64: every level adds a third, so without a limit a few dozen fill the memory.
void PropertyWriter::appendNested(std::u16string_view text) {
    if (text.size() > kLongestNested) {
        throw Error(7, kErrorSource, u"A collection within a collection is too long to be written as text");
    }
    appendBase64(out_, toUtf8(text));
}

// Children are written plainly only without any quote, attributes already without a terminator;
// readers accept both.
void PropertyWriter::writeChild(std::u16string_view name, std::u16string_view text, Child which) {
    if (text.empty()) return;
    const bool attributes = which == Child::attributes;
    writeName(name);
    out_ += attributes ? u"=~AT\"" : u"=~PR\"";
    const bool plain = attributes ? text.find(kTerminator) == text.npos : text.find(u'"') == text.npos;
    if (plain) {
        out_.append(1, u'-').append(text);
    } else if (const auto substitute = substituteFor(text)) {
        out_ += *substitute;
        appendSubstituted(out_, text, *substitute);
    } else {
        out_ += u'+';
        appendNested(text);
    }
    out_ += kTerminator;
}

}  // namespace velmor
