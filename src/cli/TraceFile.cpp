#include "cli/TraceFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>

#include "cli/JsonText.h"
#include "core/TraceCollector.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

void append(std::string& json, std::size_t number) {
    std::array<char, 24> digits{};
    json.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void append(std::string& json, std::u16string_view text) {
    const auto isPlain = [](char16_t unit) { return unit >= u' ' && unit < 0x7F && unit != u'"' && unit != u'\\'; };
    if (!std::all_of(text.begin(), text.end(), isPlain)) {
        json += jsonText(Json(toUtf8(text)));
        return;
    }
    const std::size_t start = json.size() + 1;
    json.append(text.size() + 2, '"');
    std::transform(text.begin(), text.end(), json.begin() + static_cast<std::ptrdiff_t>(start),
                   [](char16_t unit) { return static_cast<char>(unit); });
}

// Writes the lines of the tags.
class TagLines {
public:
    TagLines(const TraceCollector& trace, const TraceSubject& subject)
        : trace_(trace), shifts_(subject.shifts), templatePlaces_(subject.templatePlaces), places_(trace.places()) {}

    void writeTo(std::string& json);

private:
    using Tag = TraceCollector::Tag;
    static constexpr std::size_t npos = TraceCollector::npos;

    std::size_t outputPlace(std::size_t place) const;
    const std::string& command(std::u16string_view name);
    void write(std::string& json, std::size_t index);
    void writePosition(std::string& json, const Tag& tag) const;
    void writeResult(std::string& json, const Tag& tag, std::size_t place) const;

    const TraceCollector& trace_;
    const std::vector<PlaceShift>& shifts_;
    const TemplatePlaces& templatePlaces_;
    const std::vector<std::size_t> places_;  // of the results, 0-based; npos: unknown
    std::unordered_map<std::u16string_view, std::string> commands_;
};

void TagLines::writeTo(std::string& json) {
    json.reserve(json.size() + 128 * places_.size());
    for (std::size_t index = 0; index < places_.size(); ++index) {
        json += index == 0 ? "\n" : ",\n";
        write(json, index);
    }
}

std::size_t TagLines::outputPlace(std::size_t place) const {
    const auto next = std::upper_bound(shifts_.begin(), shifts_.end(), place,
                                       [](std::size_t at, const PlaceShift& shift) { return at < shift.from; });
    return next == shifts_.begin() ? place : place + (next - 1)->by;
}

// Handler and command.
const std::string& TagLines::command(std::u16string_view name) {
    const auto [found, isNew] = commands_.try_emplace(commandPart(name));
    if (isNew) {
        const auto [handler, command] = handlerAndCommand(name);
        append(found->second, handler);
        found->second += ',';
        append(found->second, command);
    }
    return found->second;
}

void TagLines::write(std::string& json, std::size_t index) {
    const Tag& tag = trace_.tags()[index];
    json += '[';
    append(json, tag.parent == TraceCollector::noTag ? 0 : std::size_t{tag.parent} + 1);
    json.append(",\"").append(originText(tag.origin)).append("\",");
    json.append(command(trace_.nameOf(tag))).append(",");
    append(json, trace_.nameOf(tag));
    writePosition(json, tag);
    writeResult(json, tag, places_[index]);
    json += trace_.hasMoved(tag) ? ",true," : ",false,";
    const auto tenths = static_cast<std::size_t>(tag.time.count()) / 100;
    append(json, tenths / 10);
    json += '.';
    json += static_cast<char>('0' + tenths % 10);
    json += ']';
}

void TagLines::writePosition(std::string& json, const Tag& tag) const {
    json += ',';
    if (tag.parent != TraceCollector::noTag) {
        append(json, std::size_t{tag.position});
        json += ",null,null";
        return;
    }
    const TemplatePlaces::Place place = templatePlaces_.of(tag.index, tag.position);
    append(json, place.position);
    json += ',';
    append(json, place.line);
    json += ',';
    append(json, place.column);
}

void TagLines::writeResult(std::string& json, const Tag& tag, std::size_t place) const {
    const bool isKnown = place != npos;
    const std::size_t begin = isKnown ? outputPlace(place) : 0;
    json += ',';
    append(json, isKnown ? outputPlace(place + tag.length) - begin : tag.length);
    json += ',';
    if (!isKnown) {
        json += "null";
    } else {
        append(json, begin + 1);
    }
}

}  // namespace

std::string checksumOf(std::string_view bytes) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const char byte : bytes) sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    std::string digits(16, '0');
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, sum /= 16)
        *digit = "0123456789abcdef"[sum % 16];
    return digits;
}

std::string traceFile(const TraceCollector& trace, const TraceSubject& subject) {
    const bool isAnsi = subject.encoding == TextEncoding::ansi;
    const bool hasMoved = !trace.texts().empty() && trace.texts().front().hasMoved;
    std::string json = "{\"version\":1,\"template\":" + jsonText(Json(subject.templateName)) +
                       ",\"output\":{\"encoding\":\"" + (isAnsi ? "ansi" : "utf-8") + "\",\"checksum\":\"" +
                       checksumOf(subject.output) + "\"},\"moved\":" + (hasMoved ? "true" : "false") +
                       ",\"omitted\":" + std::to_string(trace.omitted()) +
                       ",\n\"columns\":" + jsonText(Json(traceColumns)) + ",\n\"tags\":[";
    TagLines(trace, subject).writeTo(json);
    return json.append("\n]}\n");
}

}  // namespace velmor::cli
