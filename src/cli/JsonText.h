#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace velmor::cli {

using Json = nlohmann::ordered_json;

// In one line. JSON has no lone surrogates: one becomes U+FFFD.
inline std::string jsonText(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// The text of {"name": [ ... ]} with an element on each line.
class JsonList {
public:
    explicit JsonList(std::string_view name) { text_.append("{\"").append(name).append("\": ["); }

    void add(const Json& element) {
        text_ += isFirst_ ? "\n" : ",\n";
        text_ += jsonText(element);
        isFirst_ = false;
    }
    // `members`: further members of the object, each with its comma before it.
    std::string text(std::string_view members = {}) && {
        return std::move(text_.append("]").append(members).append("}\n"));
    }

private:
    std::string text_;
    bool isFirst_ = true;
};

}  // namespace velmor::cli
