#pragma once

#include <cstddef>
#include <string>

#include "check/TemplateFile.h"

namespace velmor {

struct RepairedTemplate {
    std::u16string source;
    std::size_t repaired = 0;  // tags that were made whole
    std::size_t left = 0;      // faulty tags that could not be repaired surely, and are as they were
};

// Makes the tags of a file whole: RTF words and groups within a tag move before it, line breaks of the source go, curly
// quotes become straight, escaped letters are written as themselves. What a page shows besides the tags stays. A tag
// stays as it is when a paragraph or the document ends in it, when something other than text lies in it, or when one of
// its characters cannot be written without an escape. Linear in the file.
RepairedTemplate repairTags(const TemplateFile& file);

}  // namespace velmor
