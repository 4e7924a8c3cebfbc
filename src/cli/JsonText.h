#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "cli/Streams.h"

namespace velmor::cli {

using Json = nlohmann::ordered_json;

// In one line. JSON has no lone surrogates: one becomes U+FFFD.
inline std::string jsonText(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Prints {"name": [ ... ]} with an element on each line.
class JsonList {
public:
    explicit JsonList(std::string_view name) { text_.append("{\"").append(name).append("\": ["); }

    void add(const Json& element) {
        text_ += (isFirst_ ? "\n" : ",\n") + jsonText(element);
        isFirst_ = false;
    }
    // What was added so far, for a list that is too long to be kept. Otherwise a failure leaves no output.
    void flush() { print(std::exchange(text_, {})); }
    // `members`: further members of the object, each with its comma before it.
    void end(const std::string& members = {}) {
        text_ += "]" + members + "}\n";
        flush();
        finishPrinting();
    }

private:
    std::string text_;
    bool isFirst_ = true;
};

}  // namespace velmor::cli
