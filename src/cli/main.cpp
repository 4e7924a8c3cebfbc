#include <new>
#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "cli/Failure.h"
#include "cli/Streams.h"
#include "text/Encoding.h"

#ifdef _WIN32
#include "platform/win32/Apartment.h"
#include "platform/win32/Conversions.h"
#else
#include "process/ProcessObjects.h"
#endif

namespace velmor::cli {
namespace {

ExitCode runOnMachine(const CommandLine& line) {
    makeStreamsBinary();
    for (const auto& folder : line.system.handlerFolders) requireFolder(toUtf8(folder));
    platform::SystemServices machine(line.system);
    for (const auto& warning : machine.warnings()) report(toUtf8(warning));
#ifdef _WIN32
    const ExitCode code = line.run(machine.services());
#else
    const platform::Services& own = machine.services();
    process::ProcessObjects objects(own.objects);
    platform::Services services{own.registry, own.files, own.clock, own.folders, objects, own.pictures, own.guids};
    const ExitCode code = line.run(services);
#endif
    return code == exitDone && !machine.warnings().empty() ? exitReported : code;
}

// The program without its main. The arguments come without the program's name, in the encoding of parseCommandLine.
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

}  // namespace
}  // namespace velmor::cli

#ifdef _WIN32

// The C library does not expand "*" in arguments: a property's value may contain one.
extern "C" {
int _dowildcard = 0;
int wmain(int count, wchar_t** values);
}

int wmain(int count, wchar_t** values) {
    std::vector<std::string> arguments;
    for (int index = 1; index < count; ++index) {
        arguments.push_back(velmor::toUtf8(reinterpret_cast<const char16_t*>(values[index])));
    }
    const velmor::platform::Apartment apartment;
    velmor::platform::installConversions();
    return velmor::cli::runProgram(arguments);
}

#else

int main(int count, char** values) {
    return velmor::cli::runProgram(std::vector<std::string>(values + (count > 0 ? 1 : 0), values + count));
}

#endif
