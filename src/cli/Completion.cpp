#include "cli/Completion.h"

#include <CLI/CLI.hpp>

#include "cli/Failure.h"

namespace velmor::cli {
namespace {

// In single quotes of a shell.
std::string quoted(std::string text) {
    for (std::size_t at = 0; (at = text.find('\'', at)) != text.npos; at += 4) text.replace(at, 1, "'\\''");
    return "'" + text + "'";
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

// Calls take(name with its dashes, option) for each name of an option.
template <typename Take>
void forEachName(const CLI::App& command, Take take) {
    for (const CLI::Option* const option : command.get_options()) {
        if (option->get_positional() || option->get_group().empty()) continue;
        for (const std::string& name : option->get_lnames()) take("--" + name, *option);
        for (const std::string& name : option->get_snames()) take("-" + name, *option);
    }
}

std::string namesOf(const CLI::App& command) {
    std::string names;
    forEachName(command, [&](const std::string& name, const CLI::Option&) { names += " " + name; });
    return names;
}

template <typename Take>
void forEachCommand(const CLI::App& app, Take take) {
    for (const CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; })) take(*command);
}

std::string bashScript(const CLI::App& app) {
    std::string commands = namesOf(app) + " help", cases;
    forEachCommand(app, [&](const CLI::App& command) {
        commands += " " + command.get_name();
        cases += "        " + command.get_name() + ") words='" + namesOf(command).substr(1) + "' ;;\n";
    });
    return "# Completes velmor in bash.\n"
           "_velmor() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} words=\n"
           "    case ${COMP_WORDS[1]} in\n" +
           cases +
           "    esac\n"
           "    [ \"$COMP_CWORD\" -gt 1 ] || words='" +
           commands.substr(1) +
           "'\n"
           "    if [ \"$COMP_CWORD\" -gt 1 ] && [ \"${current#-}\" = \"$current\" ]; then\n"
           "        mapfile -t COMPREPLY < <(compgen -f -- \"$current\")\n"
           "    else\n"
           "        mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
           "    fi\n"
           "}\n"
           "complete -o filenames -F _velmor velmor\n";
}

std::string zshScript(const CLI::App& app) {
    std::string commands, cases;
    forEachCommand(app, [&](const CLI::App& command) {
        commands += "        " + quoted(command.get_name() + ":" + firstLine(command.get_description())) + "\n";
        cases += "        " + command.get_name() + ") compadd --" + namesOf(command) + " ;;\n";
    });
    return "#compdef velmor\n"
           "# Completes velmor in zsh.\n"
           "local -a commands=(\n" +
           commands +
           "        'help:Say more about a command'\n"
           ")\n"
           "if (( CURRENT == 2 )); then\n"
           "    _describe command commands\n"
           "    compadd --" +
           namesOf(app) +
           "\n"
           "elif [[ $words[CURRENT] == -* ]]; then\n"
           "    case $words[2] in\n" +
           cases +
           "    esac\n"
           "else\n"
           "    _files\n"
           "fi\n";
}

std::string fishScript(const CLI::App& app) {
    std::string lines = "# Completes velmor in fish.\n";
    const auto addOptions = [&](const CLI::App& command, const std::string& condition) {
        forEachName(command, [&](const std::string& name, const CLI::Option& option) {
            const bool isLong = name.starts_with("--");
            lines += "complete -c velmor -n " + quoted(condition) + (isLong ? " -l " : " -s ") +
                     name.substr(isLong ? 2 : 1) + (option.get_expected_min() > 0 ? " -r" : "") + " -d " +
                     quoted(firstLine(option.get_description())) + "\n";
        });
    };
    addOptions(app, "__fish_use_subcommand");
    forEachCommand(app, [&](const CLI::App& command) {
        lines += "complete -c velmor -n __fish_use_subcommand -f -a " + command.get_name() + " -d " +
                 quoted(firstLine(command.get_description())) + "\n";
        addOptions(command, "__fish_seen_subcommand_from " + command.get_name());
    });
    return lines;
}

}  // namespace

std::string completionScript(const CLI::App& app, std::string_view shell) {
    if (shell == "bash") return bashScript(app);
    if (shell == "zsh") return zshScript(app);
    if (shell == "fish") return fishScript(app);
    throw Failure(exitUsage, "completions are for bash, zsh and fish");
}

}  // namespace velmor::cli
