#pragma once

#include <cstddef>
#include <string_view>

#include "check/TemplateFile.h"
#include "cli/JsonText.h"

namespace velmor::cli {

// Parts of the JSON data of a report's page. Positions in them count UTF-16 code units from 0, as its script does.

// Characters of a template that the page shows; what follows is left out.
inline constexpr std::size_t mostOfTemplate = 4'000'000;

// A text with its positions: a lone surrogate becomes one U+FFFD. `most` units at most.
Json reportText(std::u16string_view text, std::size_t most = std::u16string_view::npos);

// The text of the template as its author sees it: for each story its "name", "text" and "paragraphs", [end, number] or
// [end, table, row, cell] each.
Json reportStories(const TemplateFile& file);

// Whether that leaves out some of the text.
bool isReportCut(const TemplateFile& file);

// [story, unit] of a 0-based index of the source.
Json reportPlace(const TemplateFile& file, std::size_t index);

}  // namespace velmor::cli
