#include "cli/TraceFile.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "cli/JsonText.h"
#include "core/Markup.h"
#include "core/TraceCollector.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

// A line of the file. It has room for a name and its handler and command, as long as they are kept, with an escape of
// six bytes for each unit, and for the numbers.
class TraceLine {
public:
    void clear() { end_ = text_.data(); }
    void put(char unit) { *end_++ = unit; }
    void put(std::string_view text) { end_ = std::copy(text.begin(), text.end(), end_); }
    void put(std::size_t number) { end_ = std::to_chars(end_, text_.data() + text_.size(), number).ptr; }

    // In quotes.
    void putText(std::u16string_view text) {
        std::uint16_t special = 0;  // no branch for each unit: several are looked at together
        for (const char16_t unit : text) {
            const bool isPlain = (unit >= u' ') & (unit < 0x7F) & (unit != u'"') & (unit != u'\\');
            special |= isPlain ? 0 : 1;
        }
        if (special != 0) return put(jsonText(Json(toUtf8(text))));
        put('"');
        end_ = std::transform(text.begin(), text.end(), end_, [](char16_t unit) { return static_cast<char>(unit); });
        put('"');
    }
    std::string_view text() const { return {text_.data(), static_cast<std::size_t>(end_ - text_.data())}; }

private:
    std::array<char, 1024> text_{};
    char* end_ = text_.data();
};
static_assert(TraceCollector::Limits().ofName == 60);

// Writes the lines of the tags.
class TagLines {
public:
    TagLines(const TraceCollector& trace, const TraceSubject& subject)
        : trace_(trace), shifts_(subject.shifts), templatePlaces_(subject.templatePlaces), places_(trace.places()) {}

    void writeTo(Output& file) {
        for (std::size_t index = 0; index < places_.size(); ++index) {
            line_.clear();
            line_.put(index == 0 ? "\n" : ",\n");
            write(index);
            file.write(line_.text());
        }
    }

private:
    using Tag = TraceCollector::Tag;

    void write(std::size_t index) {
        const Tag& tag = trace_.tags()[index];
        line_.put('[');
        line_.put(tag.parent == TraceCollector::noTag ? 0 : std::size_t{tag.parent} + 1);
        line_.put(",\"");
        line_.put(originText(tag.origin));
        line_.put("\",");
        writeCommand(trace_.nameOf(tag));
        line_.put(',');
        line_.putText(trace_.nameOf(tag));
        writePosition(tag);
        writeResult(places_[index]);
        line_.put(trace_.hasMoved(tag) ? ",true," : ",false,");
        const auto tenths = static_cast<std::size_t>(tag.time.count()) / 100;
        line_.put(tenths / 10);
        line_.put('.');
        line_.put(static_cast<char>('0' + tenths % 10));
        line_.put(']');
    }

    // Most tags have their handler and command in common with the previous one.
    void writeCommand(std::u16string_view name) {
        if (!hasCommand(name)) {
            const auto [handler, command] = handlerAndCommand(name);
            TraceLine line;
            line.putText(handler);
            line.put(',');
            line.putText(command);
            commandText_ = line.text();
            command_ = handler.empty() ? u"" : commandPart(name);
        }
        line_.put(commandText_);
    }

    bool hasCommand(std::u16string_view name) const {
        const std::size_t end = command_.size();
        if (end == 0 || end >= name.size() || !name.starts_with(command_)) return false;
        return name[end] == elementSeparator || name[end] == u'=';
    }

    void writePosition(const Tag& tag) {
        line_.put(',');
        if (tag.parent != TraceCollector::noTag) {
            line_.put(std::size_t{tag.position});
            return line_.put(",null,null");
        }
        const TemplatePlaces::Place place = templatePlaces_.of(tag.index, tag.position, lineNumber_);
        lineNumber_ = place.line;
        line_.put(place.position);
        line_.put(',');
        line_.put(place.line);
        line_.put(',');
        line_.put(place.column);
    }

    void writeResult(const TraceCollector::Place& place) {
        const bool isKnown = place.start != TraceCollector::npos;
        const std::size_t begin = isKnown ? shiftedPlace(shifts_, place.start) : 0;
        line_.put(',');
        line_.put(isKnown ? shiftedPlace(shifts_, place.start + place.length) - begin : place.length);
        line_.put(',');
        if (!isKnown) return line_.put("null");
        line_.put(begin + 1);
    }

    const TraceCollector& trace_;
    const PlaceShifts& shifts_;
    const TemplatePlaces& templatePlaces_;
    const std::vector<TraceCollector::Place> places_;
    TraceLine line_;
    std::size_t lineNumber_ = 1;  // of the last outermost tag
    std::u16string command_;      // of the last tag, with its handler; empty if that is
    std::string commandText_;     // as it is written
};

}  // namespace

std::string checksumOf(std::string_view bytes) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const char byte : bytes) sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    std::string digits(16, '0');
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, sum /= 16)
        *digit = "0123456789abcdef"[sum % 16];
    return digits;
}

void writeTrace(Output& file, const TraceCollector& trace, const TraceSubject& subject) {
    const bool isAnsi = subject.encoding == TextEncoding::ansi;
    const bool hasMoved = !trace.texts().empty() && trace.texts().front().hasMoved;
    file.write("{\"version\":1,\"template\":" + jsonText(Json(subject.templateName)) + ",\"output\":{\"encoding\":\"" +
               (isAnsi ? "ansi" : "utf-8") + "\",\"checksum\":\"" + checksumOf(subject.output) +
               "\"},\"moved\":" + (hasMoved ? "true" : "false") + ",\"omitted\":" + std::to_string(trace.omitted()) +
               ",\n\"columns\":" + jsonText(Json(traceColumns)) + ",\n\"tags\":[");
    TagLines(trace, subject).writeTo(file);
    file.write("\n]}\n");
}

}  // namespace velmor::cli
