#include <string>
#include <utility>

#include "cli/Failure.h"
#include "cli/JsonFile.h"
#include "cli/TraceFile.h"

namespace velmor::cli {
namespace {

// An object or an array of a trace file, whose members it checks. A key is a name or an index.
class Part {
public:
    Part(const JsonFile& file, const Json& json, std::string path) : file_(file), json_(json), path_(std::move(path)) {}

    // A whole number of at most `most`; null is 0 if it is allowed.
    template <class Key>
    std::size_t number(Key key, bool mayBeNull = false, std::size_t most = mostUnits) const {
        const Json& value = member(key);
        if (mayBeNull && value.is_null()) return 0;
        if (value.is_number_unsigned() && value.template get<std::uint64_t>() <= most) {
            return value.template get<std::size_t>();
        }
        refuse(key, "is not a number that fits");
    }
    template <class Key>
    bool truth(Key key) const {
        if (!member(key).is_boolean()) refuse(key, "is not true or false");
        return member(key).template get<bool>();
    }
    template <class Key>
    std::string text(Key key) const {
        if (!member(key).is_string()) refuse(key, "is not a text");
        return member(key).template get<std::string>();
    }
    template <class Key>
    Part part(Key key) const {
        return {file_, member(key), path_ + shownKey(key) + "/"};
    }
    const Json& json() const noexcept { return json_; }

    template <class Key>
    [[noreturn]] void refuse(Key key, const std::string& reason) const {
        throw Failure(exitFile, file_.name + ": " + path_ + shownKey(key) + " " + reason);
    }

private:
    static constexpr std::size_t mostUnits = (std::size_t{1} << 30) - 1;

    static std::string shownKey(const char* name) { return name; }
    static std::string shownKey(std::size_t index) { return std::to_string(index); }
    static std::string shownKey(TraceColumn column) { return shownKey(static_cast<std::size_t>(column)); }

    const Json& member(const char* name) const {
        const auto found = json_.find(name);  // the end, too, if this is no object
        if (found == json_.end()) refuse(name, "is missing");
        return *found;
    }
    const Json& member(std::size_t index) const {
        if (!json_.is_array() || index >= json_.size()) refuse(index, "is missing");
        return json_[index];
    }
    const Json& member(TraceColumn column) const { return member(static_cast<std::size_t>(column)); }

    const JsonFile& file_;
    const Json& json_;
    const std::string path_;
};

// The tag with this number.
Trace::Tag readTag(const Part& part, std::size_t number) {
    using Column = TraceColumn;
    Trace::Tag tag;
    tag.parent = part.number(Column::parent, false, number - 1);
    tag.origin = part.text(Column::origin);
    tag.name = part.text(Column::name);
    tag.position = part.number(Column::position);
    tag.line = part.number(Column::line, true);
    tag.column = part.number(Column::column, true);
    tag.length = part.number(Column::length);
    tag.place = part.number(Column::place, true);
    tag.hasMoved = part.truth(Column::moved);
    return tag;
}

}  // namespace

Trace Trace::read(const platform::Files& files, const std::string& name, std::string_view output) {
    const JsonFile file = JsonFile::read(files, name);
    const Part whole(file, file.json, "/");
    if (whole.number("version") != 1) whole.refuse("version", "is not 1: another velmor wrote this trace");
    Trace trace;
    trace.templateName = whole.text("template");
    const Part written = whole.part("output");
    if (written.text("checksum") != checksumOf(output)) whole.refuse("output", "is another file");
    trace.encoding = written.text("encoding") == "ansi" ? EncodingChoice::ansi : EncodingChoice::utf8;
    trace.hasMoved = whole.truth("moved");
    trace.omitted = whole.number("omitted");
    const Part tags = whole.part("tags");
    if (!tags.json().is_array()) whole.refuse("tags", "is not an array");
    for (std::size_t index = 0; index < tags.json().size(); ++index) {
        trace.tags.push_back(readTag(tags.part(index), index + 1));
    }
    return trace;
}

}  // namespace velmor::cli
