#include "cli/Program.h"

#include <new>

#include "cli/CommandLine.h"
#include "cli/Failure.h"
#include "cli/Streams.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

ExitCode runCommand(platform::Services& services, const CommandLine& line) {
    if (const auto* eval = std::get_if<EvalOptions>(&line.command)) return runEval(services, *eval);
    if (const auto* clean = std::get_if<CleanCommandOptions>(&line.command)) return runClean(services, *clean);
    if (const auto* props = std::get_if<PropsOptions>(&line.command)) return runProps(services, *props);
    if (const auto* handlers = std::get_if<HandlersOptions>(&line.command)) return runHandlers(services, *handlers);
    if (const auto* log = std::get_if<LogOptions>(&line.command)) return runLog(services, *log);
    return runTags(services, std::get<TagsOptions>(line.command));
}

ExitCode runOnMachine(const CommandLine& line) {
    makeStreamsBinary();
    for (const auto& folder : line.system.handlerFolders) requireFolder(toUtf8(folder));
    platform::SystemServices machine(line.system);
    for (const auto& warning : machine.warnings()) report(toUtf8(warning));
    const ExitCode code = runCommand(machine.services(), line);
    return code == exitDone && !machine.warnings().empty() ? exitReported : code;
}

}  // namespace

int runProgram(const std::vector<std::string>& arguments) {
    try {
        const auto line = parseCommandLine(arguments);
        return line ? runOnMachine(*line) : exitDone;
    } catch (const Failure& failure) {
        report(failure.what());
        return failure.code();
    } catch (const std::bad_alloc&) {
        report("out of memory");
        return exitFile;
    } catch (const std::exception& error) {
        report(error.what());
        return exitFile;
    }
}

}  // namespace velmor::cli
