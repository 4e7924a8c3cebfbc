#include "cli/DataFile.h"

#include <algorithm>
#include <limits>

#include "check/LineIndex.h"
#include "cli/Documents.h"
#include "cli/Failure.h"
#include "cli/JsonText.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using automation::Variant;

constexpr std::string_view kBlanks = " \t\r\n";

// `index`: of a byte of the text.
[[noreturn]] void refuse(const std::string& name, std::string_view text, std::size_t index, const std::string& reason) {
    const std::u16string before = fromUtf8(text.substr(0, index));
    const auto [line, column] = LineIndex(before).at(before.size());
    throw Failure(exitFile, name + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + reason);
}

Json parse(const std::string& name, const std::string& text) {
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        const std::size_t last = error.byte > 0 ? error.byte - 1 : 0;  // it counts from 1
        refuse(name, text, std::min(last, text.size()), "this is not JSON");
    }
}

Variant valueOf(const Json& json) {
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
        const PropertyRef property = into.Add(fromUtf8(name), valueOf(value), true);
        if (value.is_structured() && !addMembers(*property->Properties(), value, level + 1)) return false;
    }
    return true;
}

}  // namespace

void readDataFile(privProperties& into, const platform::Files& files, const std::string& name) {
    const std::string shownName = inputName(name);
    const std::string text = toUtf8(decodeText(readAll(files, name), EncodingChoice::utf8, shownName));
    const Json json = parse(shownName, text);
    std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    if (json.is_array()) begin = std::min(text.find_first_not_of(kBlanks, begin + 1), text.size());
    if (json.is_array() && json.empty()) refuse(shownName, text, begin, "the array is empty");
    const Json& record = json.is_array() ? json.front() : json;
    if (!record.is_object()) refuse(shownName, text, begin, "this is not a JSON object");
    if (!addMembers(into, record, 0)) refuse(shownName, text, begin, "the data nests deeper than 100 levels");
}

}  // namespace velmor::cli
