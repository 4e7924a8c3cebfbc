// privProperties::text: the writer of the text form.

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>

#include "automation/Convert.h"
#include "automation/Portable.h"
#include "common/ByteText.h"
#include "common/Compression.h"
#include "properties/EntryName.h"
#include "properties/KeyedItems.h"
#include "properties/PictureText.h"
#include "properties/Substitution.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::Date;
using automation::ObjectRef;
using automation::Variant;
using automation::VariantType;

namespace {

constexpr std::u16string_view terminator = u"\":";
constexpr std::size_t longestNested = privProperties::maximumNestedLength;
constexpr std::size_t sample = 64;  // entries whose length gives the capacity to reserve

void appendInteger(std::u16string& target, std::int32_t value) {
    std::array<char, 12> digits{};
    target.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

struct NumberForm {
    VariantType type;
    std::u16string_view suffix;
};
constexpr NumberForm numbers[] = {
    {VariantType::integer, u"%:"},     {VariantType::longInteger, u"&:"}, {VariantType::single, u"!:"},
    {VariantType::doubleFloat, u"#:"}, {VariantType::currency, u"$:"},    {VariantType::decimal, u"!:"},
};

bool isZero(const Variant& value) {
    const auto* number = value.get<std::int32_t>();
    return number != nullptr && *number == 0;
}

}  // namespace

// Writes a collection as text: an entry of name, "=", value and ":" for each property, followed by an
// entry of the same name for its attributes and one for its children, if it has any.
class PropertyWriter {
public:
    using Form = privProperties::TextForm;

    // level: how many collections the written one is nested in.
    PropertyWriter(platform::Services& services, Form form, int level)
        : services_(services),
          asTag_(form == Form::tagCommand || form == Form::command),
          delimited_(form == Form::delimited || form == Form::command),
          level_(level) {}

    std::u16string write(const KeyedItems& items) {
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (i == sample) out_.reserve(out_.size() / sample * (items.size() + items.size() / 4));
            if (asTag_ && i == 0) {
                out_.append(items.entry(i).name).append(1, u'>');
            } else {
                writeEntry(items.entry(i));
            }
            if (out_.size() > privStrCat::maximumLength) throw Error(7);
        }
        return std::move(out_);
    }

private:
    using Child = privProperty::Child;

    void writeEntry(const KeyedItems::Entry& entry) {
        const std::u16string_view verbatim = asTag_ ? std::u16string_view() : entry.verbatim();
        if (!verbatim.empty()) {
            out_ += verbatim;
            return;
        }
        appendName(out_, entry.name);
        if (entry.property != nullptr) {
            writeProperty(*entry.property);
        } else {
            writeValue(entry.unreadValue(), entry.unreadEncoding());
        }
    }

    void writeProperty(const privProperty& property) {
        if (property.builder() != nullptr) {
            writeValue(property.Value(), property.Encoding());
        } else {
            writeValue(property.rawValue(), property.Encoding());
        }
        if (property.extras_ != nullptr) writeChildren(property);
    }

    void writeChildren(const privProperty& property) {
        for (const Child which : {Child::attributes, Child::properties}) {
            const auto& children = property.extras_->of(which);
            const std::u16string written = children.built ? children.built->text(Form::stored, level_ + 1) : u"";
            writeChild(property.Name(), children.built ? written : children.text, which);
        }
    }

    void writeValue(const Variant& value, std::int32_t encoding) {
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
    bool writeTyped(const Variant& value) {
        const auto* const number = std::ranges::find(numbers, value.type(), &NumberForm::type);
        if (number != std::end(numbers)) {
            if (number->type == VariantType::decimal) out_ += u'!';
            writeNumber(value, number->suffix);
        } else if (const auto* date = value.get<Date>()) {
            writeDate(*date);
        } else if (value.isObject()) {
            writeObject(value);
        } else if (const auto* flag = value.get<bool>()) {
            out_ += *flag ? u"True:" : u"False:";
        } else if (value.type() == VariantType::null) {
            out_ += u"NUL:";
        } else {
            return false;
        }
        return true;
    }

    void writeNumber(const Variant& value, std::u16string_view suffix) {
        if (const auto* number = value.get<std::int32_t>()) {
            appendInteger(out_, *number);
        } else {
            out_ += automation::toText(value).value_or(std::u16string());
        }
        out_ += suffix;
    }

    // A date outside the calendar is kept as its number of days.
    void writeDate(Date date) {
        const auto text = automation::portable::storedDateText(date);
        if (!text) return writeNumber(Variant(date.days), u"#:");
        out_.append(1, u'#').append(*text).append(u"#:");
    }

    // Only a collection and, in a tag, a picture have a text form. For any other object the name is written.
    void writeObject(const Variant& value) {
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
        out_ += terminator;
    }

    void writeText(std::u16string_view text, std::int32_t encoding) {
        if (encoding == 2) return writeEncoded(u"~HX\"", hexadecimal(toUtf8(text)));
        if (encoding == 4) return writeEncoded(u"~GZ\"", base64(compressBytes(toUtf8(text))));
        const bool isPlain = encoding == 0 && text.find(terminator) == text.npos;
        if (isPlain) return writeEncoded(u"\"", text);
        const bool isSubstituted = encoding == 8 || (encoding == 0 && !delimited_);
        if (const auto substitute = isSubstituted ? substituteFor(text) : std::nullopt) {
            out_ += u"~CE\"";
            appendSubstituted(out_, text, *substitute);
            out_ += terminator;
        } else {
            writeEncoded(u"~64\"", base64(toUtf8(text)));
        }
    }

    void writeEncoded(std::u16string_view marker, std::u16string_view encoded) {
        out_.append(marker).append(encoded).append(terminator);
    }

    // Every level of nesting encodes the text again and adds a third; a few dozen would fill the memory.
    void appendNested(std::u16string_view text) {
        if (text.size() > longestNested) {
            throw Error(7, u"A collection within a collection is too long to be written as text");
        }
        out_ += base64(toUtf8(text));
    }

    // Child properties are written plainly only if they hold no quote, attributes if they hold no
    // terminator; readers accept both.
    void writeChild(std::u16string_view name, std::u16string_view text, Child which) {
        if (text.empty()) return;
        const bool attributes = which == Child::attributes;
        appendName(out_, name);
        out_ += attributes ? u"=~AT\"" : u"=~PR\"";
        const bool plain = attributes ? text.find(terminator) == text.npos : text.find(u'"') == text.npos;
        if (plain) {
            out_.append(1, u'-').append(text);
        } else if (const auto substitute = substituteFor(text)) {
            appendSubstituted(out_, text, *substitute);
        } else {
            out_ += u'+';
            appendNested(text);
        }
        out_ += terminator;
    }

    platform::Services& services_;
    const bool asTag_;
    const bool delimited_;
    const int level_;
    std::u16string out_;
};

std::u16string privProperties::text(TextForm form, int level) const {
    const auto visit = enter(level);
    return visit ? PropertyWriter(services_, form, level).write(items()) : std::u16string();
}

}  // namespace velmor
