#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "check/Diagnostic.h"
#include "check/TagParts.h"
#include "check/TemplateFile.h"

namespace velmor {

// The diagnostics of all files of a template, in the order of finding. It keeps the first most and counts the others.
class DiagnosticList {
public:
    static constexpr std::size_t most = 1000;

    // Of a range of a story's text, which must not be empty.
    void add(DiagnosticCode code, const TemplateFile& file, const Story& story, TextRange range, std::u16string message,
             std::u16string hint = {});
    // Of a tag's opening marker.
    void add(DiagnosticCode code, const TemplateFile& file, const TemplateTag& tag, std::u16string message,
             std::u16string hint = {});
    void add(DiagnosticCode code, const TagParts& tag, std::u16string message, std::u16string hint = {}) {
        add(code, tag.file(), tag.tag(), std::move(message), std::move(hint));
    }
    // Of a range of a file's source that no page shows.
    void addInSource(DiagnosticCode code, const TemplateFile& file, TextRange range, std::u16string message);

    const std::vector<Diagnostic>& diagnostics() const noexcept { return diagnostics_; }
    std::vector<Diagnostic> take() && { return std::move(diagnostics_); }
    // Those that were found and not kept.
    std::size_t more() const noexcept { return more_; }

private:
    bool isFull();

    std::vector<Diagnostic> diagnostics_;
    std::size_t more_ = 0;
};

}  // namespace velmor
