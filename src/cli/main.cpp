#include <string>
#include <vector>

#include "cli/Program.h"
#include "text/Encoding.h"

#ifdef _WIN32

#include "platform/win32/Apartment.h"
#include "platform/win32/Conversions.h"

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
