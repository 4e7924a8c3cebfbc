#include "properties/PropertyReader.h"

#include <algorithm>
#include <utility>

#include "common/Base64.h"
#include "common/Compression.h"
#include "common/Hexadecimal.h"
#include "platform/Services.h"
#include "properties/DateText.h"
#include "properties/PictureText.h"
#include "properties/Substitution.h"
#include "properties/TypedText.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor {

using automation::ObjectRef;
using automation::Variant;

namespace {

constexpr std::size_t kMarkerSize = 4;
constexpr std::size_t kSample = 64;  // entries by whose length the number of all is guessed
constexpr std::size_t kMostReserved = std::size_t{1} << 17;
constexpr std::size_t kBestCompression = 1032;  // of deflate, bytes for a byte

// Encoded bytes hold no quote. Looking for one first costs no more than the way to the next marker,
// so a run of markers without an end is not decoded again and again up to the end of the text.
bool holdsQuote(std::u16string_view content) {
    return content.find(u'"') != content.npos;
}

std::optional<std::string> bytesOfBase64(std::u16string_view content) {
    return holdsQuote(content) ? std::nullopt : fromBase64(content);
}

// Text from its bytes; nothing when they are not those of a text, which would not come back.
std::optional<std::u16string> textOfBytes(const std::optional<std::string>& bytes) {
    if (!bytes) return std::nullopt;
    std::u16string text = fromUtf8(*bytes);
    return toUtf8(text) == *bytes ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<std::u16string> textOfBase64(std::u16string_view content) {
    return textOfBytes(bytesOfBase64(content));
}

std::optional<std::u16string> textOfHexadecimal(std::u16string_view content) {
    return holdsQuote(content) ? std::nullopt : textOfBytes(fromHexadecimal(content));
}

// One allowance serves all compressed values of a text: many small bombs are one big one. What
// fails is charged with the most that its bytes could have given.
std::optional<std::u16string> textOfCompressed(std::u16string_view content, std::size_t& allowance) {
    const auto compressed = bytesOfBase64(content);
    if (!compressed) return std::nullopt;
    const auto bytes = decompressBytes(*compressed, allowance);
    const std::size_t worst = std::min(compressed->size(), allowance / kBestCompression + 1) * kBestCompression;
    allowance -= std::min(allowance, bytes ? bytes->size() : worst);
    return textOfBytes(bytes);
}

std::optional<std::u16string> textOfSubstituted(std::u16string_view content) {
    if (content.empty() || !isSubstitute(content[0])) return std::nullopt;
    return withoutSubstitute(content.substr(1), content[0]);
}

// The text without white space after its last delimiter; all of it when the last entry has no delimiter.
std::u16string_view withoutBlankEnd(std::u16string_view text, std::size_t from, std::u16string_view delimiter) {
    if (text.ends_with(delimiter)) return text;
    const std::size_t end = text.find_last_not_of(u" \t\r\n") + 1;  // 0: white space alone
    const std::u16string_view kept = text.substr(0, std::max(end, from));
    return kept.size() == from || kept.ends_with(delimiter) ? kept : text;
}

// The text of a child entry; its first character tells how it is written.
std::optional<std::u16string> textOfChild(std::u16string_view content) {
    if (content.starts_with(u'-')) return std::u16string(content.substr(1));
    if (content.starts_with(u'+')) return textOfBase64(content.substr(1));
    return textOfSubstituted(content);
}

}  // namespace

PropertyReader::PropertyReader(privProperties& target, Limits limits)
    : target_(target), limits_(limits), now_(target.services_.clock.now()) {}

void PropertyReader::read(std::u16string_view text, Form form, std::u16string_view delimiter) {
    form_ = form;
    std::size_t from = 0;
    if (const std::size_t end = form == Form::tag ? text.find(u'>') : text.npos; end != text.npos) {
        target_.AddLng(upperCase(text.substr(0, end)), 0);
        from = end + 1;
    }
    text = withoutBlankEnd(text, from, delimiter);
    if (text.size() == from) return;
    if (text.ends_with(delimiter)) {
        readEntries(text, delimiter, from);
    } else {
        std::u16string complete;
        complete.reserve(text.size() + delimiter.size());
        complete.append(text).append(delimiter);
        readEntries(complete, delimiter, from);
    }
}

void PropertyReader::readEntries(std::u16string_view text, std::u16string_view delimiter, std::size_t from) {
    Scanner scanner(text, delimiter);
    std::size_t entries = 0;
    for (Scanner::Name found; (found = scanner.name(from)).end != Scanner::npos;) {
        if (++entries == kSample) target_.items_->reserve(std::min(entries * (text.size() / from), kMostReserved));
        const std::u16string_view spelled = text.substr(from, found.end - from);
        const Name name{spelled, found.plain, found.plain ? target_.items_->announce(spelled) : std::nullopt};
        std::size_t end = found.end;
        if (text[end] == u'=') {
            end = readValue(scanner, name, end + 1);
        } else {
            add(name, std::int32_t{0});
        }
        from = end + delimiter.size();
    }
}

std::size_t PropertyReader::readValue(Scanner& scanner, Name name, std::size_t from) {
    std::size_t end = Scanner::npos;
    switch (from < scanner.text().size() ? scanner.text()[from] : u'\0') {
        case u'"':
            end = readQuoted(scanner, name, from);
            break;
        case u'~':
            end = readMarked(scanner, name, from);
            break;
        case u'#':
            end = readDate(scanner, name, from);
            break;
        default:
            break;
    }
    return end != Scanner::npos ? end : readPlain(scanner, name, from);
}

std::size_t PropertyReader::readQuoted(Scanner& scanner, Name name, std::size_t from) {
    const std::size_t quote = scanner.closingQuote(from + 1);
    if (quote == Scanner::npos) return Scanner::npos;
    addText(name, scanner.text().substr(from + 1, quote - from - 1));
    return quote + 1;
}

std::size_t PropertyReader::readMarked(Scanner& scanner, Name name, std::size_t from) {
    const std::u16string_view marker = scanner.text().substr(from, kMarkerSize);
    if (marker == u"~RO~") return readObject(scanner, name, from);
    if (marker.size() < kMarkerSize || marker.back() != u'"') return Scanner::npos;
    const bool attributes = marker == u"~AT\"";
    const bool child = attributes || marker == u"~PR\"";
    const std::size_t begin = from + kMarkerSize;
    const std::size_t quote = scanner.closingQuote(begin);
    if (quote == Scanner::npos) return Scanner::npos;
    const std::u16string_view content = scanner.text().substr(begin, quote - begin);
    if (child ? keepChild(name, attributes, content) : addDecoded(name, marker, content)) return quote + 1;
    return Scanner::npos;
}

bool PropertyReader::addDecoded(Name name, std::u16string_view marker, std::u16string_view content) {
    std::optional<std::u16string> text;
    std::int32_t encoding = 0;
    if (marker == u"~64\"") {
        encoding = 1;
        text = textOfBase64(content);
    } else if (marker == u"~HX\"") {
        encoding = 2;
        text = textOfHexadecimal(content);
    } else if (marker == u"~GZ\"") {
        encoding = 4;
        text = textOfCompressed(content, limits_.decompressed);
    } else if (marker == u"~CE\"") {
        encoding = 8;
        text = textOfSubstituted(content);
    }
    if (text) addText(name, *text, encoding);
    return text.has_value();
}

std::size_t PropertyReader::readObject(Scanner& scanner, Name name, std::size_t from) {
    const std::u16string_view text = scanner.text();
    const std::size_t type = from + kMarkerSize;
    const std::size_t delimiter = scanner.delimiter(type);
    const std::size_t quote = text.substr(0, delimiter).find(u'"', type);
    if (quote == Scanner::npos) return Scanner::npos;
    const std::size_t end = scanner.closingQuote(quote + 1);
    if (end == Scanner::npos) return Scanner::npos;
    const std::u16string_view typeName = text.substr(type, quote - type);
    const std::u16string_view content = text.substr(quote + 1, end - quote - 1);
    if (typeName == u"Picture" || typeName == u"kvProperties") {
        ObjectRef object = typeName == u"Picture" ? pictureOf(content) : collectionOf(content);
        if (object == nullptr) return Scanner::npos;
        add(name, Variant(std::move(object)));
    } else {
        addText(name, text.substr(from, end + 1 - from));
    }
    return end + 1;
}

ObjectRef PropertyReader::pictureOf(std::u16string_view content) const {
    const auto bytes = bytesOfBase64(content);
    return bytes ? LoadPictureFromText(target_.services_, *bytes) : nullptr;
}

ObjectRef PropertyReader::collectionOf(std::u16string_view content) const {
    if (limits_.level >= privProperties::maximumNesting) return nullptr;
    const auto text = textOfBase64(content);
    if (!text) return nullptr;
    const auto collection = std::make_shared<privProperties>(target_.services_);
    PropertyReader(*collection, {limits_.level + 1, limits_.decompressed}).read(*text, Form::stored, u":");
    return collection;
}

std::size_t PropertyReader::readDate(Scanner& scanner, Name name, std::size_t from) {
    const std::size_t hash = scanner.closingHash(from + 1);
    if (hash == Scanner::npos) return Scanner::npos;
    const std::u16string_view content = scanner.text().substr(from + 1, hash - from - 1);
    const auto date = content.empty() ? automation::Date{} : dateFromText(content);
    if (!date) return Scanner::npos;
    add(name, Variant(*date));
    return hash + 1;
}

std::size_t PropertyReader::readPlain(Scanner& scanner, Name name, std::size_t from) {
    const std::size_t end =
        std::min(form_ == Form::stored ? scanner.delimiter(from) : scanner.tagValueEnd(from), scanner.text().size());
    const std::u16string_view value = scanner.text().substr(from, end - from);
    add(name, value == u"NUL" ? Variant(automation::Null{}) : typedValue(value));
    return end;
}

// The text stays a text until somebody asks for the collection.
bool PropertyReader::keepChild(Name name, bool attributes, std::u16string_view content) {
    auto text = textOfChild(content);
    if (!text) return false;
    privProperty& owner = ownerOfChild(name);
    if (attributes) {
        owner.SetAttributesStored(*std::move(text));
    } else {
        owner.SetPropertiesStored(*std::move(text));
    }
    return true;
}

privProperty& PropertyReader::ownerOfChild(Name name) {
    const std::u16string clean = privProperties::CleanName(name.text);
    if (last_ != nullptr && equalIgnoringCase(last_->nameView(), clean)) return *last_;
    if (privProperty* const keyed = target_.items_->find(clean)) return *keyed;
    add(name, std::int32_t{0});
    return *last_;
}

privProperty& PropertyReader::make(Name name, bool upperCaseName) {
    const PropertyRef property = std::allocate_shared<privProperty>(
        pool_.next<privProperty>(), privProperties::propertyKey(), target_.services_, now_);
    if (upperCaseName || !name.plain) {
        std::u16string clean = privProperties::CleanName(name.text);
        property->SetName(upperCaseName ? upperCase(clean) : std::move(clean));
    } else if (const char16_t* const kept = pool_.keep(name.text)) {
        property->lendName({kept, name.text.size()});
    } else {
        property->SetName(std::u16string(name.text));
    }
    if (privProperty* const first = target_.items_->append(property, name.hash)) first->SetMultiple(true);
    last_ = property.get();
    return *property;
}

void PropertyReader::add(Name name, Variant&& value) {
    privProperty& property = make(name, form_ == Form::tag && !value.isObject());
    property.SetValueQuiet(std::move(value));
}

void PropertyReader::addText(Name name, std::u16string_view text, std::int32_t encoding) {
    privProperty& property = make(name, form_ == Form::tag);
    property.Encoding(encoding);
    if (const char16_t* const kept = pool_.keep(text)) {
        property.lendText({kept, text.size()});
    } else {
        property.SetValueQuiet(Variant(text));
    }
}

}  // namespace velmor
