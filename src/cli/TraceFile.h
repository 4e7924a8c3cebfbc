#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "check/TemplatePlaces.h"
#include "cli/Documents.h"
#include "cli/Output.h"
#include "common/DocumentText.h"
#include "core/TraceCollector.h"
#include "platform/Services.h"

namespace velmor::cli {

// The template and the output of an evaluation.
struct TraceSubject {
    const std::string& templateName;
    const TemplatePlaces& templatePlaces;
    std::string_view output;  // its bytes
    TextEncoding encoding;
    const PlaceShifts& shifts;  // from the result's places to those of the output
};

// The members of a tag's array in a trace file, in their order (docs/command-line.md).
enum class TraceColumn { parent, origin, handler, command, name, position, line, column, length, place, moved, time };
inline constexpr std::array<const char*, 12> traceColumns = {"parent", "origin",   "handler", "command",
                                                             "name",   "position", "line",    "column",
                                                             "length", "place",    "moved",   "microseconds"};

// FNV-1a of 64 bits, in hexadecimal digits.
std::string checksumOf(std::string_view bytes);

// The whole file; `trace` is that of the evaluation that gave the output.
void writeTrace(Output& file, const TraceCollector& trace, const TraceSubject& subject);

// A trace file that was read. Numbers of tags and places count from 1.
struct Trace {
    struct Tag {
        std::size_t parent = 0;  // 0: none
        std::string origin;
        std::string name;
        std::size_t position = 0;  // 0: unknown; of an outermost tag, with its line and column
        std::size_t line = 0;
        std::size_t column = 0;
        std::size_t length = 0;
        std::size_t place = 0;  // 0: unknown, or none
        bool hasMoved = false;  // where the tags in its result are is unknown
    };

    std::string templateName;
    EncodingChoice encoding = EncodingChoice::ansi;
    bool hasMoved = false;
    std::size_t omitted = 0;
    std::vector<Tag> tags;

    // The trace of the output with these bytes. Throws Failure (exitFile) for a file that is damaged, of another
    // version, or of another output.
    static Trace read(const platform::Files& files, const std::string& name, std::string_view output);
};

}  // namespace velmor::cli
