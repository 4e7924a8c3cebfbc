#include "cli/DataFile.h"

#include <algorithm>
#include <limits>

#include "cli/JsonFile.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using automation::Variant;

constexpr std::string_view kBlanks = " \t\r\n";

Variant scalarOf(const Json& json) {
    if (json.is_string()) return Variant(fromUtf8(json.get<std::string>()));
    if (json.is_boolean()) return Variant(json.get<bool>());
    if (json.is_number_float()) return Variant(json.get<double>());
    if (json.is_number()) {
        const double number = json.get<double>();
        using Long = std::numeric_limits<std::int32_t>;
        if (number < Long::min() || number > Long::max()) return Variant(number);
        return Variant(json.get<std::int32_t>());
    }
    return json.is_null() ? Variant(automation::Null{}) : Variant(std::u16string());
}

// False when it nests too deep.
bool addMembers(privProperties& into, const Json& json, int level) {
    if (level > privProperties::maximumNesting) return false;
    std::int32_t index = 0;
    for (const auto& [key, value] : json.items()) {
        ++index;
        const std::string name = json.is_array() ? std::to_string(index) : key;
        const PropertyRef property = into.Add(fromUtf8(name), scalarOf(value), true);
        if (value.is_structured() && !addMembers(*property->Properties(), value, level + 1)) return false;
    }
    return true;
}

}  // namespace

void addData(privProperties& into, std::string_view bytes, const std::string& name) {
    const JsonFile file = JsonFile::parse(bytes, name);
    const std::string& text = file.text;
    std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    if (file.json.is_array()) begin = std::min(text.find_first_not_of(kBlanks, begin + 1), text.size());
    if (file.json.is_array() && file.json.empty()) file.refuse(begin, "the array is empty");
    const Json& record = file.json.is_array() ? file.json.front() : file.json;
    if (!record.is_object()) file.refuse(begin, "this is not a JSON object");
    if (!addMembers(into, record, 0)) file.refuse(begin, "the data nests deeper than 100 levels");
}

}  // namespace velmor::cli
