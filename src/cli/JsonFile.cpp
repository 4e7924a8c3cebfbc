#include "cli/JsonFile.h"

#include <algorithm>

#include "check/LineIndex.h"
#include "cli/Documents.h"
#include "cli/Failure.h"
#include "text/Encoding.h"

namespace velmor::cli {

JsonFile JsonFile::read(const platform::Files& files, const std::string& name) {
    return parse(readAll(files, name), name);
}

JsonFile JsonFile::parse(std::string_view bytes, const std::string& name) {
    JsonFile file{inputName(name), {}, {}};
    file.text = toUtf8(decodeText(bytes, EncodingChoice::utf8, file.name));
    try {
        file.json = Json::parse(file.text);
    } catch (const Json::parse_error& error) {
        const std::size_t last = error.byte > 0 ? error.byte - 1 : 0;  // it counts from 1
        file.refuse(std::min(last, file.text.size()), "this is not JSON");
    }
    return file;
}

void JsonFile::refuse(std::size_t index, const std::string& reason) const {
    const std::u16string before = fromUtf8(text.substr(0, index));
    const auto [line, column] = LineIndex(before).at(before.size());
    throw Failure(exitFile, name + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + reason);
}

}  // namespace velmor::cli
