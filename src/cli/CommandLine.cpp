#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>

#include "cli/Commands.h"
#include "cli/Completion.h"
#include "cli/Help.h"
#include "cli/Locale.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

// What follows the options in the help of a command: its section of help.txt.
std::string footerOf(const std::string& command) {
    const std::string heading = "\n# " + command + "\n";
    const std::size_t begin = helpText.find(heading) + heading.size() - 1;
    return std::string(helpText.substr(begin, helpText.find("\n# ", begin) - begin));
}

// Makes the command of that name; CLI11 fills in its options, and then it is the one to run.
template <typename Options>
std::pair<CLI::App*, Options&> addCommand(CLI::App& app, CommandLine& line, const char* name, const char* description,
                                          ExitCode (*run)(platform::Services&, const Options&)) {
    CLI::App* const command = app.add_subcommand(name, description);
    const auto options = std::make_shared<Options>();
    command->footer(footerOf(name));
    command->final_callback([&line, options, run] {
        line.run = [options, run](platform::Services& services) { return run(services, *options); };
    });
    return {command, *options};
}

// An option with what the help calls its value; an argument without it.
template <typename Value>
CLI::Option* addOption(CLI::App& command, const char* name, const char* type, Value& value,
                       const std::string& description) {
    return command.add_option(name, value, description)->type_name(type);
}

// One that may be repeated, each time with one value.
CLI::Option* addList(CLI::App& command, const char* name, const char* type, std::vector<std::string>& values,
                     const char* description) {
    return addOption(command, name, type, values, description)->allow_extra_args(false)->take_all();
}

std::string checkAssignment(const std::string& text) {
    const auto equals = text.find('=');
    return equals == text.npos || equals == 0 ? "'" + text + "' does not have the form name=value" : std::string();
}

void addTemplate(CLI::App& command, std::string& name) {
    addOption(command, "TEMPLATE", "", name, "The template; - or nothing: standard input");
}

void addOutput(CLI::App& command, std::string& name, const std::string& what) {
    addOption(command, "-o,--output", "OUT", name, "Write the " + what + " to this file, whole or not at all");
}

// A file besides the result, which standard output is for.
CLI::Option* addFile(CLI::App& command, const char* option, const char* type, std::string& name,
                     const char* description) {
    const auto refuse = [](const std::string& given) { return given == "-" ? "this is written to a file" : ""; };
    return addOption(command, option, type, name, description)->check(CLI::Validator(refuse, ""));
}

CLI::Option* addPasswordFile(CLI::App& command, std::string& name) {
    return addOption(command, "--password-file", "FILE", name,
                     "Decipher the property file with this file's first line");
}

// An option whose value a function takes.
template <typename Value = std::string, typename Take>
CLI::Option* addTaken(CLI::App& command, const char* name, const char* type, const Take& take,
                      const std::string& description) {
    return command.add_option_function<Value>(name, take, description)->type_name(type);
}

// An option that takes one of the names.
template <typename Choice>
void addChoice(CLI::App& command, const char* option, const char* description, Choice& choice,
               const std::vector<std::pair<std::string, Choice>>& choices) {
    std::string names;
    for (const auto& [name, value] : choices) names += (names.empty() ? "" : "|") + name;
    const auto take = [option, names, &choice, choices](const std::string& given) {
        const auto found =
            std::find_if(choices.begin(), choices.end(), [&](const auto& each) { return each.first == given; });
        if (found == choices.end()) throw CLI::ValidationError(option, "'" + given + "' is not " + names);
        choice = found->second;
    };
    addTaken(command, option, names.c_str(), take, description);
}

void addEncoding(CLI::App& command, EncodingChoice& encoding) {
    addChoice<EncodingChoice>(
        command, "--encoding", "How plain text and property files are encoded (default: auto)", encoding,
        {{"auto", EncodingChoice::automatic}, {"ansi", EncodingChoice::ansi}, {"utf-8", EncodingChoice::utf8}});
}

void addRegistry(CLI::App& command, platform::SystemOptions& system) {
    const auto take = [&system](const std::string& name) { system.registryFile = fromUtf8(name); };
    addTaken(command, "--registry", "FILE", take, "The registry file (.reg)");
}

void addSystem(CLI::App& command, platform::SystemOptions& system) {
    addRegistry(command, system);
#ifndef _WIN32
    const auto take = [&system](const std::vector<std::string>& folders) {
        for (const auto& folder : folders) system.handlerFolders.push_back(fromUtf8(folder));
    };
    addTaken<std::vector<std::string>>(command, "--handlers", "DIR", take,
                                       "A folder with handler libraries; may be repeated")
        ->allow_extra_args(false)
        ->take_all();
#endif
}

// The properties that a template is evaluated with, and how its files are found and read.
void addTemplateOptions(CLI::App& command, TemplateOptions& options) {
    addList(command, "--property", "name=value", options.properties, "Set a property to a text; may be repeated")
        ->check(CLI::Validator(checkAssignment, ""));
    addOption(command, "--properties", "FILE", options.propertyFile, "Read properties from this property file");
    addPasswordFile(command, options.passwordFile)->needs("--properties");
    addOption(command, "--data", "FILE", options.dataFile, "Read properties from this JSON file");
    addOption(command, "--include-path", "DIR", options.includePath,
              "The folder of included files (the property \"Path\")");
    addEncoding(command, options.encoding);
}

// An option that sets a property of core/EvaluationRules.h.
CLI::Option* addRule(CLI::App& command, TemplateOptions& options, const char* option, const char* property,
                     const char* description, const char* type) {
    const auto take = [&options, property](const std::string& value) { options.rules[property] = value; };
    return addTaken(command, option, type, take, description);
}

// Where a template's properties, files and handlers come from, and the rules for them, which concern a check as well.
void addSources(CLI::App& command, TemplateOptions& options, CommandLine& line) {
    addTemplateOptions(command, options);
    addRule(command, options, "--data-tags", "kvTag.Data Tags",
            "What becomes of tags in values and in handlers' answers (default: allow)", "allow|report|refuse")
        ->check(CLI::IsMember({"allow", "report", "refuse"}));
    addRule(command, options, "--include-root", "kvTag.Include Root", "Include files of this folder only", "DIR");
    addRule(command, options, "--max-depth", "kvTag.Max Depth", "Most levels of tags within tags (at most 100)", "N")
        ->check(CLI::PositiveNumber);
    addRule(command, options, "--max-tags", "kvTag.Max Tags", "Most tags that are evaluated", "N")
        ->check(CLI::PositiveNumber);
    addRule(command, options, "--max-output", "kvTag.Max Output", "Most characters of the result", "N")
        ->check(CLI::PositiveNumber);
    command.add_flag_callback(
        "--sandbox", [&options, &line] { options.sandbox = line.system.registryOnlyIfNamed = true; },
        "For a template that nobody has read: --data-tags refuse, --include-root its folder, and no handlers but those "
        "of --registry");
    addSystem(command, line.system);
}

// The template, and how it is evaluated.
void addEvaluation(CLI::App& command, TemplateOptions& options, CommandLine& line) {
    addTemplate(command, options.input);
    addSources(command, options, line);
    addRule(command, options, "--missing", "kvTag.Missing",
            "What becomes of a tag whose property, file or handler is absent (default: empty)", "empty|keep|mark|fail")
        ->check(CLI::IsMember({"empty", "keep", "mark", "fail"}));
    command.add_flag_callback(
        "--drop-empty-paragraphs", [&options] { options.rules["kvTag.Drop Empty Paragraphs"] = "True"; },
        "Leave out paragraphs that held nothing but tags, all of them empty");
    command.add_flag("--exact", options.exact, "Include RTF exactly as the component does, without its tolerance");
}

void addEval(CLI::App& app, CommandLine& line) {
    const auto [command, options] = addCommand(app, line, "eval", "Evaluate a template", runEval);
    addOutput(*command, options.output, "result");
    addEvaluation(*command, options, line);
    addFile(*command, "--trace", "FILE", options.trace,
            "Write what each tag gave, where and how fast, to this JSON file");
    CLI::Option* const record = addFile(*command, "--record", "FILE", options.record,
                                        "Write what handlers, files and the machine gave to this file");
    const auto take = [&options = options, &line](const std::string& name) {
        options.replay = name;
        line.replays = true;
    };
    addTaken(*command, "--replay", "FILE", take, "Evaluate what this record holds, with what it holds and nothing else")
        ->excludes(record);
}

void addStyles(CLI::App& command, StyleConflict& styles) {
    const auto take = [&styles](const std::string& name) { styles = styleConflictOf(fromUtf8(name)); };
    addTaken(command, "--styles", "rename|host|keep", take,
             "What becomes of an embedded style whose name has another definition: it gets a new name, its text looks "
             "as the host says, or keeps its look as direct formatting (default: rename)")
        ->check(CLI::IsMember({"rename", "host", "keep"}));
}

// "i/n"
void takePart(RenderOptions& options, const std::string& text) {
    const std::size_t slash = text.find('/');
    const bool isPart = slash != text.npos && CLI::detail::lexical_cast(text.substr(0, slash), options.part) &&
                        CLI::detail::lexical_cast(text.substr(slash + 1), options.parts);
    if (!isPart || options.part < 1 || options.part > options.parts) {
        throw CLI::ValidationError("--part", "'" + text + "' is not a part such as 2/8");
    }
}

void takeSeparator(RenderOptions& options, const std::string& text) {
    const std::string separator = text == "tab" || text == "\\t" ? "\t" : text;
    if (separator.size() != 1 || separator.find_first_of("\"\r\n") != separator.npos ||
        static_cast<unsigned char>(separator.front()) >= 0x80) {
        throw CLI::ValidationError("--separator", "'" + text + "' is not one ASCII character, or tab");
    }
    options.data.separator = separator.front();
}

// The records, and which of them are rendered.
void addRecords(CLI::App& command, RenderOptions& options) {
    command.get_option("--data")->required()->description(
        "The records: a CSV, JSON, JSON lines or SQLite file; - is standard input");
    addChoice<DataFormat>(command, "--data-format", "What the data are (default: as their file's name says)",
                          options.data.format,
                          {{"csv", DataFormat::csv},
                           {"json", DataFormat::json},
                           {"jsonl", DataFormat::jsonLines},
                           {"sqlite", DataFormat::sqlite}});
    addChoice<DataEncoding>(
        command, "--data-encoding", "How CSV data are encoded (default: auto)", options.data.encoding,
        {{"auto", DataEncoding::automatic}, {"ansi", DataEncoding::ansi}, {"utf-8", DataEncoding::utf8}});
    const auto separator = [&options](const std::string& text) { takeSeparator(options, text); };
    addTaken(command, "--separator", "C", separator,
             "What separates the values of CSV data (default: what the first line has)");
    addOption(command, "--sql", "QUERY", options.data.sql, "The query that gives the records of an SQLite file");
    addList(command, "--where", "NAME=VALUE", options.where,
            "Only records with this value; may be repeated: all must hold")
        ->check(CLI::Validator(checkAssignment, ""));
    addOption(command, "--limit", "N", options.limit, "At most so many records")->check(CLI::PositiveNumber);
    const auto part = [&options](const std::string& text) { takePart(options, text); };
    addTaken(command, "--part", "I/N", part, "Only this part of the data: the parts in their order are the whole");
}

void addRender(CLI::App& app, CommandLine& line) {
    const auto [command, options] =
        addCommand(app, line, "render", "Evaluate a template for each record of data", runRender);
    addEvaluation(*command, options, line);
    addRecords(*command, options);
    CLI::Option* const each = addFile(*command, "--each", "PATTERN", options.each,
                                      "Write each letter to a file of its own, as 'out/{Id}-{Name}.rtf'");
    addOption(*command, "--join", "OUT", options.join, "Join all letters into this file (default: standard output)")
        ->excludes(each);
    command->add_flag("--continue", options.continues, "Make only the letters whose files are not there")->needs(each);
    command->add_flag("--clean", options.cleans, "Clean each RTF letter; joined ones always are")->needs(each);
    addStyles(*command, options.styles);
    addOption(*command, "--jobs", "N", options.jobs, "Threads (default: as many as the machine has)")
        ->check(CLI::Range(1, 256));
    addFile(*command, "--report", "FILE", options.report, "Write counts, times and failures to this JSON file");
    command->add_flag("--progress", options.showsProgress, "Show progress also where there is no terminal");
    command->add_flag("-q,--quiet", options.isQuiet, "Show no progress");
}

void addReport(CLI::App& app, CommandLine& line) {
    const auto [command, options] = addCommand(app, line, "report", "Write a page that shows an evaluation", runReport);
    addOutput(*command, options.output, "page");
    addEvaluation(*command, options, line);
}

void addExplain(CLI::App& app, CommandLine& line) {
    const auto [command, options] =
        addCommand(app, line, "explain", "Say which tag wrote a character of an output", runExplain);
    addOption(*command, "PLACE", "", options.place, "The character: OUT:OFFSET or OUT:LINE:COLUMN")->required();
    addOption(*command, "--trace", "FILE", options.trace, "The trace of the evaluation that wrote the output")
        ->required();
}

void addFormat(CLI::App& command, CheckFormat& format) {
    addChoice<CheckFormat>(command, "--format", "How to print what was found (default: text)", format,
                           {{"text", CheckFormat::text},
                            {"json", CheckFormat::json},
                            {"sarif", CheckFormat::sarif},
                            {"github", CheckFormat::github}});
}

void addCheck(CLI::App& app, CommandLine& line) {
    const auto [command, options] =
        addCommand(app, line, "check", "Find the mistakes of templates without evaluating them", runCheck);
    addOption(*command, "TEMPLATE", "", options.inputs, "The templates; - or nothing: standard input");
    addFormat(*command, options.format);
    addOption(*command, "--fix", "OUT", options.fixed, "Write the template with repaired tags to this file");
    addOption(*command, "--annotate", "OUT", options.annotated,
              "Write a copy of the RTF template with comments to this file");
    addSources(*command, options, line);
}

void addSchema(CLI::App& app, CommandLine& line) {
    const auto [command, options] =
        addCommand(app, line, "schema", "Print a JSON Schema of a template's properties", runSchema);
    addTemplate(*command, options.input);
    command->add_flag("--sample", options.sample, "Print sample data for eval --data instead");
    addSources(*command, options, line);
}

void addVerify(CLI::App& app, CommandLine& line) {
    const auto [command, options] =
        addCommand(app, line, "verify", "Find what is wrong with finished documents", runVerify);
    addOption(*command, "FILE", "", options.inputs, "The documents; -: standard input")->required();
    addFormat(*command, options.format);
}

void addClean(CLI::App& app, CommandLine& line) {
    const auto [command, options] =
        addCommand(app, line, "clean", "Make one clean RTF document of RTF documents", runClean);
    addOption(*command, "FILE", "", options.inputs, "RTF files; -: standard input. Several are joined in this order");
    addOption(*command, "--inputs-from", "LIST", options.inputsFrom,
              "Take more files from this list, a name on each line");
    addOutput(*command, options.output, "document");
    command->add_flag("--merge", options.merge,
                      "Merge mode also for one file, which holds documents that were joined before");
    command->add_flag("--exact", options.exact, "Clean exactly as the component does, without its tolerance");
    addStyles(*command, options.styles);
    addFile(*command, "--report", "FILE", options.report,
            "Write what merging did with fonts, colours, styles and lists to this JSON file");
    addRegistry(*command, line.system);
}

void addTags(CLI::App& app, CommandLine& line) {
    const auto [command, options] = addCommand(app, line, "tags", "List the tags of a template", runTags);
    addTemplate(*command, options.input);
    command->add_flag("--json", options.json, "As JSON");
    addEncoding(*command, options.encoding);
}

void addProps(CLI::App& app, CommandLine& line) {
    const auto [command, options] = addCommand(app, line, "props", "List a property file", runProps);
    addOption(*command, "FILE", "", options.file.name, "The property file; -: standard input")->required();
    addPasswordFile(*command, options.file.passwordFile);
    command->add_flag("--json", options.json, "As JSON");
    addEncoding(*command, options.file.encoding);
}

void addHandlers(CLI::App& app, CommandLine& line) {
    const auto [command, options] =
        addCommand(app, line, "handlers", "List the registered handlers and their commands", runHandlers);
    addOption(*command, "NAME", "", options.name, "Only this handler");
    command->add_flag("--all", options.all, "Hidden handlers as well");
    addOption(*command, "--test", "NAME TAG", options.test,
              "Print what this handler answers to a tag, such as DATE:VALUE=1:")
        ->expected(2);
    command->add_flag("--json", options.json, "As JSON");
    addSystem(*command, line.system);
}

void addLog(CLI::App& app, CommandLine& line) {
    const auto [command, options] = addCommand(app, line, "log", "Sum up a day's timing log", runLog);
    addOption(*command, "FILE", "", options.input, "The log; -: standard input")->required();
    command->add_flag("--json", options.json, "As JSON");
}

// In the order of CLI11, last argument first.
std::vector<std::string> decodedBackwards(const std::vector<std::string>& arguments) {
    std::vector<std::string> result;
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
        auto text = argumentText(*argument);
        if (!text) throw Failure(exitUsage, "an argument is not in the locale's encoding: " + *argument);
        result.push_back(*std::move(text));
    }
    return result;
}

// "help COMMAND" means "COMMAND --help". An unknown COMMAND is left to the parser to refuse.
std::vector<std::string> withoutHelpCommand(const CLI::App& app, std::vector<std::string> backwards) {
    if (backwards.empty() || backwards.back() != "help") return backwards;
    backwards.pop_back();
    const auto isNamed = [&](const CLI::App* command) { return command->get_name() == backwards.back(); };
    if (backwards.empty() || !app.get_subcommands(isNamed).empty()) backwards.insert(backwards.begin(), "--help");
    return backwards;
}

std::string commandNames(const CLI::App& app) {
    std::string names;
    for (const CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    return names;
}

// One without a registry.
platform::SystemOptions emptyMachine() {
    platform::SystemOptions system;
    system.registryOnlyIfNamed = true;
    return system;
}

// Prints the help or the version that was asked for. Every other outcome is a wrong command line.
void answer(const CLI::App& app, const CLI::ParseError& outcome) {
    std::ostringstream out;
    std::ostringstream message;
    if (app.exit(outcome, out, message) == 0) {
        std::cout << out.str() << std::flush;
        return;
    }
    std::string what = outcome.what();
    if (app.get_subcommands().empty()) {
        const auto unknown = app.remaining();
        what = unknown.empty() ? "no command; there are " + commandNames(app)
                               : "there is no command '" + unknown.front() + "'";
    }
    throw Failure(exitUsage, what + " (velmor --help says more)");
}

}  // namespace

std::optional<CommandLine> parseCommandLine(const std::vector<std::string>& arguments) {
    CLI::App app("Evaluates document templates.", "velmor");
    app.set_version_flag("--version", "velmor " VELMOR_VERSION);
    app.allow_windows_style_options(false);
    app.require_subcommand(1);
    app.footer(footerOf("velmor"));
    CommandLine line;
    for (const auto add : {addEval, addRender, addReport, addExplain, addClean, addCheck, addSchema, addVerify, addTags,
                           addProps, addHandlers, addLog})
        add(app, line);
    if (arguments.size() == 2 && arguments.front() == "--completion") {
        std::cout << completionScript(app, arguments.back()) << std::flush;
        return std::nullopt;
    }
    try {
        app.parse(withoutHelpCommand(app, decodedBackwards(arguments)));
        if (line.replays) line.system = emptyMachine();
    } catch (const CLI::ParseError& outcome) {
        answer(app, outcome);
        return std::nullopt;
    }
    return line;
}

}  // namespace velmor::cli
