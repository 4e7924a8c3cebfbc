#include <algorithm>
#include <charconv>
#include <numeric>

#include "check/LineIndex.h"
#include "cli/Commands.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "cli/TraceFile.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

// "FILE:OFFSET" or "FILE:LINE:COLUMN".
struct Place {
    std::string file;
    std::size_t line = 0;  // 0: an offset is given
    std::size_t column = 0;
};

// Takes ":NUMBER" from the end of a text; 0 if there is none.
std::size_t takeNumber(std::string& text) {
    const std::size_t colon = text.rfind(':');
    std::size_t number = 0;
    if (colon == text.npos) return 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + colon + 1, end, number);
    if (rest != end || error != std::errc() || number == 0) return 0;
    text.resize(colon);
    return number;
}

Place placeOf(const std::string& text) {
    Place place{text};
    place.column = takeNumber(place.file);
    if (place.column > 0) place.line = takeNumber(place.file);
    if (place.column == 0 || place.file.empty()) {
        throw Failure(exitUsage, "'" + text + "' does not have the form OUT:OFFSET or OUT:LINE:COLUMN");
    }
    return place;
}

// The 0-based index in the text.
std::size_t indexOf(const Place& place, std::u16string_view text, const LineIndex& lines) {
    const auto offset = place.column <= text.size() ? std::optional(place.column - 1) : std::nullopt;
    const auto index = place.line > 0 ? lines.indexOf(place.line, place.column) : offset;
    if (!index) throw Failure(exitFile, inputName(place.file) + " has no such character");
    return *index;
}

// The innermost tag that wrote the character at this place, from 1; null if none did.
const Trace::Tag* writerOf(const Trace& trace, std::size_t place) {
    const auto found = std::find_if(trace.tags.rbegin(), trace.tags.rend(), [&](const Trace::Tag& tag) {
        return tag.place > 0 && tag.place <= place && place < tag.place + tag.length;
    });
    return found == trace.tags.rend() ? nullptr : &*found;
}

std::string lineOf(const Trace& trace, const Trace::Tag& tag) {
    std::string line = "  ";
    if (tag.line > 0) {
        line += inputName(trace.templateName) + ":" + std::to_string(tag.line) + ":" + std::to_string(tag.column);
    } else if (tag.position > 0) {
        line += "position " + std::to_string(tag.position) + " of its text";
    } else {
        line += "evaluated by the handler";
    }
    return line + " (" + tag.origin + "): " + shown(fromUtf8(tag.name)) + "\n";
}

// A line for each tag of the chain, the outermost first.
std::string chainTo(const Trace& trace, const Trace::Tag* tag) {
    std::vector<std::string> lines;
    for (;; tag = &trace.tags[tag->parent - 1]) {
        lines.push_back(lineOf(trace, *tag));
        if (tag->parent == 0) break;
    }
    return std::accumulate(lines.rbegin(), lines.rend(), std::string());
}

std::string explanation(const Trace& trace, std::size_t place) {
    const Trace::Tag* const writer = writerOf(trace, place);
    const bool isUnknown = trace.omitted > 0 || (writer == nullptr ? trace.hasMoved : writer->hasMoved);
    if (writer == nullptr) {
        return isUnknown ? "the template's text, or a tag whose place is not known\n"
                         : "the template's text; no tag wrote it\n";
    }
    std::string text = "character " + std::to_string(place - writer->place + 1) + " of the " +
                       std::to_string(writer->length) + " that " + shown(fromUtf8(writer->name)) + " wrote";
    if (isUnknown) text += ", or a tag within its result whose place is not known";
    return text + "\n" + chainTo(trace, writer);
}

}  // namespace

ExitCode runExplain(platform::Services& services, const ExplainOptions& options) {
    const Place place = placeOf(options.place);
    const std::string bytes = readAll(services.files, place.file);
    const Trace trace = Trace::read(services.files, options.trace, bytes);
    const std::u16string text = decodeTemplate(bytes, trace.encoding, inputName(place.file)).text;
    const LineIndex lines(text);
    const std::size_t index = indexOf(place, text, lines);
    const auto [line, column] = lines.at(index);
    print(inputName(place.file) + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " +
          explanation(trace, index + 1));
    finishPrinting();
    return exitDone;
}

}  // namespace velmor::cli
