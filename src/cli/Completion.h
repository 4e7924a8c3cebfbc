#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace velmor::cli {

// A script that completes the program's commands and options in a shell: "bash", "zsh" or "fish". Throws Failure
// (exitUsage) for any other.
std::string completionScript(const CLI::App& app, std::string_view shell);

}  // namespace velmor::cli
