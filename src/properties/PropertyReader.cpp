// privProperties::read: the text form becomes entries.

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "common/ByteText.h"
#include "common/Compression.h"
#include "common/Limits.h"
#include "platform/Services.h"
#include "properties/EntryName.h"
#include "properties/EntryScanner.h"
#include "properties/KeyedItems.h"
#include "properties/PictureText.h"
#include "properties/Substitution.h"
#include "properties/TypedText.h"
#include "properties/privProperties.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor {

using automation::ObjectRef;
using automation::Variant;

namespace {

constexpr std::size_t markerSize = 4;
constexpr std::size_t bestCompression = 1032;  // of deflate, bytes for a byte

// Encoded bytes hold no quote. Looking for one first costs no more than the distance to the next
// marker, so unclosed markers in a row are not each decoded up to the end of the text.
bool holdsQuote(std::u16string_view content) {
    return content.find(u'"') != content.npos;
}

std::optional<std::string> bytesOfBase64(std::u16string_view content) {
    return holdsQuote(content) ? std::nullopt : fromBase64(content);
}

std::optional<std::u16string> textOfBytes(const std::optional<std::string>& bytes) {
    return bytes ? textOfUtf8(*bytes) : std::nullopt;
}

std::optional<std::u16string> textOfBase64(std::u16string_view content) {
    return textOfBytes(bytesOfBase64(content));
}

std::optional<std::u16string> textOfHexadecimal(std::u16string_view content) {
    return holdsQuote(content) ? std::nullopt : textOfBytes(fromHexadecimal(content));
}

// All compressed values of a text share one allowance, since many small bombs are as bad as a big
// one. A value that fails is charged with the most that its bytes could have given.
std::optional<std::u16string> textOfCompressed(std::u16string_view content, std::size_t& allowance) {
    const auto compressed = bytesOfBase64(content);
    if (!compressed) return std::nullopt;
    const auto bytes = decompressBytes(*compressed, allowance);
    const std::size_t worst = std::min(compressed->size(), allowance / bestCompression + 1) * bestCompression;
    allowance -= std::min(allowance, bytes ? bytes->size() : worst);
    return textOfBytes(bytes);
}

// The text without white space after its last delimiter; all of it when the last entry has no delimiter.
std::u16string_view withoutBlankEnd(std::u16string_view text, std::size_t from, std::u16string_view delimiter) {
    if (text.ends_with(delimiter)) return text;
    const std::size_t end = text.find_last_not_of(u" \t\r\n") + 1;  // 0: only white space
    const std::u16string_view kept = text.substr(0, std::max(end, from));
    return kept.size() == from || kept.ends_with(delimiter) ? kept : text;
}

// The text of a child entry; its first character gives the encoding.
std::optional<std::u16string> textOfChild(std::u16string_view content) {
    if (content.starts_with(u'-')) return std::u16string(content.substr(1));
    if (content.starts_with(u'+')) return textOfBase64(content.substr(1));
    return isSubstituted(content) ? std::optional(withoutSubstitute(content)) : std::nullopt;
}

}  // namespace

// Reads the text form into a collection: entries "name=value:" and names alone. A malformed value
// becomes plain text up to the next delimiter, marker included; a value that cannot be decoded stays
// raw. Decoding takes 256 MB at most. Only lack of memory raises an error.
class PropertyReader {
public:
    // decompressed: bytes that compressed values may still give, here and in the collections in values.
    PropertyReader(KeyedItems& items, platform::Services& services, std::size_t& decompressed)
        : items_(items), services_(services), decompressed_(decompressed), now_(services.clock.now()) {}

    using Form = privProperties::ReadForm;

    void read(std::u16string_view text, Form form, std::u16string_view delimiter) {
        form_ = form;
        std::size_t from = 0;
        if (const std::size_t end = form == Form::tag ? text.find(u'>') : text.npos; end != text.npos) {
            items_.addRead(upperCase(text.substr(0, end)), std::int32_t{0}, now_);
            from = end + 1;
        }
        text = withoutBlankEnd(text, from, delimiter);
        if (text.size() == from) return;
        std::u16string complete;
        complete.reserve(text.size() + delimiter.size());
        complete += text;
        if (!text.ends_with(delimiter)) complete += delimiter;
        readEntries(items_.keep({std::move(complete), now_, delimiter == u":"}), delimiter, from);
    }

private:
    using Scanner = EntryScanner;
    using Spelling = KeyedItems::Spelling;
    using Child = privProperty::Child;
    using Name = std::u16string_view;  // as the text spells it

    void readEntries(const KeyedItems::Source& source, std::u16string_view delimiter, std::size_t from) {
        source_ = &source;
        Scanner scanner(source.text, delimiter);
        for (std::size_t end; (end = scanner.nameEnd(from)) != Scanner::npos; from = end + delimiter.size()) {
            const Name name = scanner.text().substr(from, end - from);
            if (scanner.text()[end] == u'=') {
                end = readValue(scanner, name, end + 1);
            } else {
                addSpan(name, u"0", Spelling::unquoted);
            }
        }
    }

    // Each reads the value at `from`, right after the "=", and returns its end, the position of the
    // delimiter. npos means that the text is not of that form and that nothing was added.
    std::size_t readValue(Scanner& scanner, Name name, std::size_t from) {
        const char16_t first = from < scanner.text().size() ? scanner.text()[from] : u'\0';
        std::size_t end = Scanner::npos;
        if (first == u'"') end = readQuoted(scanner, name, from);
        if (first == u'~') end = readMarked(scanner, name, from);
        if (first == u'#') end = readDate(scanner, name, from);
        return end != Scanner::npos ? end : readPlain(scanner, name, from);
    }

    std::size_t readQuoted(Scanner& scanner, Name name, std::size_t from) {
        const std::size_t quote = scanner.closingQuote(from + 1);
        if (quote == Scanner::npos) return Scanner::npos;
        addSpan(name, scanner.text().substr(from + 1, quote - from - 1), Spelling::quoted);
        return quote + 1;
    }

    std::size_t readMarked(Scanner& scanner, Name name, std::size_t from) {
        const std::u16string_view marker = scanner.text().substr(from, markerSize);
        if (marker == u"~RO~") return readObject(scanner, name, from);
        if (marker.size() < markerSize || marker.back() != u'"') return Scanner::npos;
        const std::size_t begin = from + markerSize;
        const std::size_t quote = scanner.closingQuote(begin);
        if (quote == Scanner::npos) return Scanner::npos;
        const std::u16string_view content = scanner.text().substr(begin, quote - begin);
        bool read = false;
        if (marker == u"~AT\"") {
            read = keepChild(name, Child::attributes, content);
        } else if (marker == u"~PR\"") {
            read = keepChild(name, Child::properties, content);
        } else {
            read = addDecoded(name, marker, content);
        }
        return read ? quote + 1 : Scanner::npos;
    }

    bool addDecoded(Name name, std::u16string_view marker, std::u16string_view content) {
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
            text = textOfCompressed(content, decompressed_);
        } else if (marker == u"~CE\"" && isSubstituted(content)) {
            addSpan(name, content, Spelling::substituted);
            return true;
        }
        if (!text) return false;
        add(name, *std::move(text)).Encoding(encoding);
        return true;
    }

    std::size_t readObject(Scanner& scanner, Name name, std::size_t from) {
        const std::u16string_view text = scanner.text();
        const std::size_t type = from + markerSize;
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
            addSpan(name, text.substr(from, end + 1 - from), Spelling::plain);
        }
        return end + 1;
    }

    ObjectRef pictureOf(std::u16string_view content) const {
        const auto bytes = bytesOfBase64(content);
        return bytes ? LoadPictureFromText(services_, *bytes) : nullptr;
    }

    // Base64 makes each level a third longer, so no text that fits in memory nests deep.
    ObjectRef collectionOf(std::u16string_view content) const {
        const auto text = textOfBase64(content);
        if (!text) return nullptr;
        const auto collection = std::make_shared<privProperties>(services_);
        PropertyReader(collection->items(), services_, decompressed_).read(*text, Form::stored, u":");
        return collection;
    }

    std::size_t readDate(Scanner& scanner, Name name, std::size_t from) {
        const std::size_t hash = scanner.closingHash(from + 1);
        if (hash == Scanner::npos) return Scanner::npos;
        const std::u16string_view content = scanner.text().substr(from + 1, hash - from - 1);
        const auto date = content.empty() ? automation::Date{} : dateOfText(content);
        if (!date) return Scanner::npos;
        add(name, Variant(*date));
        return hash + 1;
    }

    std::size_t readPlain(Scanner& scanner, Name name, std::size_t from) {
        const std::size_t end = std::min(form_ == Form::stored ? scanner.delimiter(from) : scanner.tagValueEnd(from),
                                         scanner.text().size());
        addSpan(name, scanner.text().substr(from, end - from), Spelling::unquoted);
        return end;
    }

    // The text becomes a collection on request.
    bool keepChild(Name name, Child which, std::u16string_view content) {
        auto text = textOfChild(content);
        if (!text) return false;
        ownerOfChild(name).keepChild(which, *std::move(text));
        return true;
    }

    privProperty& ownerOfChild(Name name) {
        const std::u16string clean = cleanName(name);
        if (any_ && equalIgnoringCase(items_.entry(items_.size() - 1).name, clean)) return items_.last();
        if (const PropertyRef keyed = items_.find(clean)) return *keyed;
        return add(name, std::int32_t{0});
    }

    // Most entries stay spans of the text. Those of tags are requested at once, and a changed name is not a span.
    void addSpan(Name name, std::u16string_view value, Spelling spelling) {
        const KeyedItems::Entry entry{nullptr, source_, withoutLeadingBlanks(name), value, spelling};
        if (form_ == Form::tag || entry.name.find(u'!') != name.npos) {
            add(name, entry.unreadValue()).Encoding(entry.unreadEncoding());
        } else {
            items_.addUnread(entry);
            any_ = true;
        }
    }

    // An object's name keeps its spelling, even in a tag.
    privProperty& add(Name name, Variant value) {
        std::u16string clean = cleanName(name);
        if (form_ == Form::tag && !value.isObject()) clean = upperCase(clean);
        any_ = true;
        return items_.addRead(std::move(clean), std::move(value), now_);
    }

    KeyedItems& items_;
    platform::Services& services_;
    std::size_t& decompressed_;
    const automation::Date now_;
    const KeyedItems::Source* source_ = nullptr;
    Form form_ = Form::stored;
    bool any_ = false;  // an entry was read
};

void privProperties::read(std::u16string_view text, ReadForm form, bool append, std::u16string_view delimiter) {
    const auto old = items_;  // the text may be a value of its own
    if (!append) RemoveAll();
    try {
        std::size_t ownAllowance = decodingLimit;
        std::size_t& decompressed = decodingAllowance != nullptr ? *decodingAllowance : ownAllowance;
        PropertyReader(items(), services_, decompressed).read(text, form, delimiter.empty() ? u":" : delimiter);
    } catch (...) {
        items_ = old;
        throw;
    }
}

}  // namespace velmor
