#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/Documents.h"
#include "cli/Failure.h"
#include "cli/PropertyFile.h"
#include "cli/TemplateInput.h"
#include "cli/render/RecordReader.h"
#include "platform/Services.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor::cli {

// The commands, each with its options. All texts are UTF-8; an input that is empty or "-" is standard
// input, an output standard output. A command throws Failure when it cannot do its work.

struct EvalOptions : TemplateOptions {
    std::string output;
    std::string trace;   // where the trace goes; empty: nowhere
    std::string record;  // where the record goes; empty: nowhere
    std::string replay;  // the record that takes the place of everything outside; empty: none
};
// Evaluates a template and writes the result. Reports the entries of the error log.
ExitCode runEval(platform::Services& services, const EvalOptions& options);

struct RenderOptions : TemplateOptions {  // dataFile: the records
    DataForm data;
    std::vector<std::string> where;  // "name=value"
    std::uint64_t limit = 0;         // most letters; 0: no limit
    std::uint64_t part = 0;          // of `parts`
    std::uint64_t parts = 0;         // 0: the whole data
    std::string each;                // the pattern of the letters' files; empty: they are joined
    std::string join;                // the joined file
    bool continues = false;          // files that are there stay
    bool cleans = false;             // each letter
    StyleConflict styles = StyleConflict::rename;
    unsigned jobs = 0;           // threads; 0: as many as the machine has
    std::string report;          // where the report goes; empty: nowhere
    bool showsProgress = false;  // also where standard error is no terminal
    bool isQuiet = false;
};
// Evaluates a template for each record, and writes the letters, each to its file or all joined. Reports records that
// fail, and the entries of the error log.
ExitCode runRender(platform::Services& services, const RenderOptions& options);

struct ReportOptions : TemplateOptions {
    std::string output;
};
// Evaluates a template and writes a page that shows its tags, what they gave, and its mistakes. Reports the entries of
// the error log.
ExitCode runReport(platform::Services& services, const ReportOptions& options);

struct ExplainOptions {
    std::string place;  // "FILE:OFFSET" or "FILE:LINE:COLUMN"
    std::string trace;
};
// Prints which tag wrote a character of an output.
ExitCode runExplain(platform::Services& services, const ExplainOptions& options);

enum class CheckFormat { text, json, sarif, github };
struct CheckOptions : TemplateOptions {
    std::vector<std::string> inputs;  // take the place of `input`
    CheckFormat format = CheckFormat::text;
    std::string fixed;      // where the repaired template goes; empty: nowhere
    std::string annotated;  // where the copy with comments goes; empty: nowhere
};
// Prints the mistakes of templates without evaluating them; with `fixed`, those of the one template after its tags
// were repaired, which `annotated` then has as comments.
ExitCode runCheck(platform::Services& services, const CheckOptions& options);

struct SchemaOptions : TemplateOptions {
    bool sample = false;
};
// Prints a JSON Schema of the properties that a template reads, or sample data. Reports included files that are
// missing.
ExitCode runSchema(platform::Services& services, const SchemaOptions& options);

struct VerifyOptions {
    std::vector<std::string> inputs;  // at least one
    CheckFormat format = CheckFormat::text;
};
// Prints what is wrong with finished documents.
ExitCode runVerify(platform::Services& services, const VerifyOptions& options);

struct CleanCommandOptions {
    std::vector<std::string> inputs;
    std::string inputsFrom;  // a file that names more, one on each line; empty: none
    std::string output;
    bool merge = false;  // merge mode for one input too; several inputs always use it
    bool exact = false;  // not tolerant
    StyleConflict styles = StyleConflict::rename;
    std::string report;  // where the report of what merging did goes; empty: nowhere
};
// Joins several inputs, cleans the document and writes it. Reports documents that are not changed and
// text that joining leaves out.
ExitCode runClean(platform::Services& services, const CleanCommandOptions& options);

struct TagsOptions {
    std::string input;
    EncodingChoice encoding = EncodingChoice::automatic;
    bool json = false;
};
// Lists the tags of a template on standard output without evaluating them, and reports opening markers
// that are never closed.
ExitCode runTags(platform::Services& services, const TagsOptions& options);

struct PropsOptions {
    PropertyFile file;
    bool json = false;
};
// Lists a property file on standard output.
ExitCode runProps(platform::Services& services, const PropsOptions& options);

struct HandlersOptions {
    std::string name;  // only this handler; empty: every one
    bool all = false;  // hidden ones as well
    bool json = false;
    std::vector<std::string> test;  // a handler and what to ask it, "COMMAND:parameters"; instead of the list
};
// Lists the registered handlers, those of groups included, and their commands. A handler that cannot be
// created is listed and reported. Throws when no handler has the given name. Or prints what one answers to a tag.
ExitCode runHandlers(platform::Services& services, const HandlersOptions& options);

struct LogOptions {
    std::string input;
    bool json = false;
};
// Sums up a day's timing log, a line for each stage and handler. Lines that are not log lines, and an
// incomplete last line, are counted and reported.
ExitCode runLog(platform::Services& services, const LogOptions& options);

}  // namespace velmor::cli
