#pragma once

#include <cstddef>
#include <vector>

#include "check/Diagnostic.h"
#include "cli/Commands.h"
#include "cli/JsonText.h"

namespace velmor::cli {

Json jsonOf(const Diagnostic& diagnostic);

// Prints diagnostics: a line each for an editor's error list, JSON, SARIF 2.1.0, or workflow commands of GitHub.
// `more` were found and are not among them.
void printDiagnostics(const std::vector<Diagnostic>& diagnostics, std::size_t more, CheckFormat format);

}  // namespace velmor::cli
