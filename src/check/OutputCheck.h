#pragma once

#include <string>

#include "check/TemplateCheck.h"

namespace velmor {

// Finds what is wrong with a finished document: the faults that RtfCheck finds; references to fonts, colours, styles
// and lists that its tables do not have, each number once; tags, markers of cleaning and documents that are left in it;
// binary data outside of \bin. A text that is not RTF is looked through for tags and binary data. Linear.
CheckResult checkOutput(std::u16string name, std::u16string text);

}  // namespace velmor
