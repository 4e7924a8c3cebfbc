#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/Tape.h"
#include "cli/TemplateInput.h"
#include "common/DocumentText.h"

namespace velmor::cli {

// What the command line gave for an evaluation, as its record begins with it (docs/run-records.md).
struct RunInput {
    TemplateOptions options;
    TemplateFiles files;
    TextEncoding encoding = TextEncoding::ansi;  // of the output
    int year = 0;                                // of dates that have none
};

// The first lines of a record.
std::vector<Json> recordHead(const RunInput& input);

// A record that was read. All throw Failure (exitFile) with the line that is damaged; the conversions of this machine
// must be those of the machine that recorded.
class RunRecord {
public:
    RunRecord(std::string name, std::string text);

    const RunInput& input() const noexcept { return input_; }
    // The rest of the lines, which must not outlast this.
    std::unique_ptr<Tape> tape() const;
    // Options that are given must be those of the record; the files that they name need not exist, but must hold the
    // same if they do.
    void requireSame(const platform::Files& files, const TemplateOptions& given) const;

private:
    [[noreturn]] void refuse(std::size_t line, const std::string& reason) const;
    void readInput(const Json& line);

    const std::string name_;
    const std::string text_;
    std::vector<std::string_view> lines_;
    RunInput input_;
};

}  // namespace velmor::cli
