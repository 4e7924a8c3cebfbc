#include "cli/RecordValues.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <type_traits>

#include "automation/Variant.h"
#include "common/ByteText.h"
#include "text/Encoding.h"
#include "text/OneLine.h"

namespace velmor::cli {
namespace {

using automation::Variant;

constexpr std::array<const char*, 4> kinds = {"method", "get", "let", "set"};

// Whether UTF-8 can hold it.
bool isPaired(std::u16string_view text) {
    return withoutLoneSurrogates(std::u16string(text)) == text;
}

std::string base64Text(std::string_view bytes) {
    return toUtf8(base64(bytes));
}

std::string bytesOfBase64(const Json& form) {
    const std::u16string encoded = fromUtf8(form.get_ref<const std::string&>());
    if (encoded.empty()) return {};
    std::optional<std::string> bytes = fromBase64(encoded);
    if (!bytes) throw std::invalid_argument("base64");
    return *std::move(bytes);
}

// The name of a type and the form of its value.
struct ValueForm {
    Json operator()(automation::Empty) const { return {"empty"}; }
    Json operator()(automation::Null) const { return {"null"}; }
    Json operator()(std::int16_t value) const { return {"integer", value}; }
    Json operator()(std::int32_t value) const { return {"long", value}; }
    Json operator()(float value) const { return {"single", numberForm(static_cast<double>(value))}; }
    Json operator()(double value) const { return {"double", numberForm(value)}; }
    Json operator()(automation::Currency value) const { return {"currency", value.scaled}; }
    Json operator()(automation::Date value) const { return {"date", numberForm(value.days)}; }
    Json operator()(const std::u16string& value) const { return {"text", textForm(value)}; }
    Json operator()(automation::ErrorCode value) const { return {"error", value.code}; }
    Json operator()(bool value) const { return {"boolean", value}; }
    Json operator()(std::uint8_t value) const { return {"byte", value}; }
    Json operator()(const automation::Decimal& value) const {
        return {"decimal", value.high, value.low, value.scale, value.negative};
    }
    template <class Opaque>
    Json operator()(const Opaque&) const {
        throw std::invalid_argument("an array or another value that only the host understands");
    }
};

template <class Number>
Variant numberAs(const Json& form) {
    return Variant(static_cast<Number>(numberOf(form.at(1))));
}
template <class Whole>
Variant wholeAs(const Json& form) {
    return Variant(form.at(1).get<Whole>());
}

struct Reader {
    const char* type;
    Variant (*read)(const Json& form);
};
constexpr Reader readers[] = {
    {"empty", [](const Json&) { return Variant(); }},
    {"null", [](const Json&) { return Variant(automation::Null{}); }},
    {"integer", wholeAs<std::int16_t>},
    {"long", wholeAs<std::int32_t>},
    {"single", numberAs<float>},
    {"double", numberAs<double>},
    {"currency", [](const Json& form) { return Variant(automation::Currency{form.at(1).get<std::int64_t>()}); }},
    {"date", [](const Json& form) { return Variant(automation::Date{numberOf(form.at(1))}); }},
    {"text", [](const Json& form) { return Variant(textOf(form.at(1))); }},
    {"error", [](const Json& form) { return Variant(automation::ErrorCode{form.at(1).get<std::int32_t>()}); }},
    {"boolean", wholeAs<bool>},
    {"byte", wholeAs<std::uint8_t>},
    {"decimal",
     [](const Json& form) {
         return Variant(automation::Decimal{form.at(1).get<std::uint32_t>(), form.at(2).get<std::uint64_t>(),
                                            form.at(3).get<std::uint8_t>(), form.at(4).get<bool>()});
     }},
};

}  // namespace

Json textForm(std::u16string_view text) {
    if (isPaired(text)) return toUtf8(text);
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return {{"utf16", base64Text(bytes)}};
}

std::u16string textOf(const Json& form) {
    if (form.is_string()) return fromUtf8(form.get_ref<const std::string&>());
    return fromUtf16(bytesOfBase64(form.at("utf16")), false);
}

Json bytesForm(std::string_view bytes) {
    const std::optional<std::u16string> text = textOfUtf8(bytes);
    if (text && isPaired(*text)) return std::string(bytes);
    return {{"base64", base64Text(bytes)}};
}

std::string bytesOf(const Json& form) {
    return form.is_string() ? form.get<std::string>() : bytesOfBase64(form.at("base64"));
}

Json numberForm(double number) {
    if (std::isfinite(number)) return number;
    return std::to_string(std::bit_cast<std::uint64_t>(number));
}

double numberOf(const Json& form) {
    if (!form.is_string()) return form.get<double>();
    return std::bit_cast<double>(std::uint64_t{std::stoull(form.get_ref<const std::string&>())});
}

Json kindForm(automation::InvokeKind kind) {
    return kinds[static_cast<std::size_t>(kind)];
}

automation::InvokeKind kindOf(const Json& form) {
    const auto found = std::find(kinds.begin(), kinds.end(), form.get_ref<const std::string&>());
    if (found == kinds.end()) throw std::invalid_argument("kind");
    return static_cast<automation::InvokeKind>(found - kinds.begin());
}

Json valueForm(const Variant& value) {
    return value.visit(ValueForm());
}

Variant valueOf(const Json& form) {
    const std::string& type = form.at(0).get_ref<const std::string&>();
    for (const Reader& reader : readers) {
        if (type == reader.type) return reader.read(form);
    }
    throw std::invalid_argument(type);
}

}  // namespace velmor::cli
