#pragma once

#include <string>
#include <vector>

#include "check/Diagnostic.h"
#include "check/TemplateFile.h"

namespace velmor {

// A copy of an RTF template with a comment for each diagnostic, to be read in a word processor. A comment lies before
// the outermost tag around its place. Where no comment can be (a header, a footnote, a group that a page does not
// show), it lies at the next character of the page text. A diagnostic of an included file has its comment at the tag of
// the template that includes it. The template must be an RTF document. Linear but for a logarithm.
std::u16string annotated(const TemplateFile& file, const std::vector<Diagnostic>& diagnostics);

}  // namespace velmor
