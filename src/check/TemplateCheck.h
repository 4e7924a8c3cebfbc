#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "check/DiagnosticList.h"
#include "check/HandlerCheck.h"
#include "check/PropertyCheck.h"
#include "check/TagParts.h"
#include "platform/Services.h"

namespace velmor {

struct CheckResult {
    std::vector<Diagnostic> diagnostics;  // file by file, each in the order of its text
    std::size_t more = 0;                 // that were found and are not among them
};

// Finds the mistakes of a template and of the files that it includes, without evaluating anything. Handlers are asked
// for their catalogue alone. Included files are found as evaluation finds them, as far as their names are known.
class TemplateCheck {
public:
    // `given`: the properties that the host will set; null when they are not known.
    TemplateCheck(platform::Services& services, std::shared_ptr<privProperties> given)
        : services_(services), given_(given), handlers_(services, found_), properties_(services, given, found_) {}

    // `name` of the template, for messages. Called once.
    CheckResult run(std::u16string name, std::u16string text);
    // The properties that the template reads, after `run`.
    std::vector<PropertyUse> properties() const { return properties_.uses(); }

private:
    void checkFile(std::u16string name, std::u16string text, std::vector<SourcePlace> includedFrom);
    void checkTag(const TagParts& tag);
    void checkPreprocess(const TagParts& tag);
    void checkInclude(const TagParts& tag);
    void checkIncludedFile(const TagParts& tag, const std::u16string& path);
    void checkListFile(const TagParts& tag, const std::u16string& path, std::u16string_view text);
    void setPath(const TagParts& tag);
    std::optional<std::u16string> fullPath(std::u16string_view file) const;
    std::optional<std::u16string> knownText(std::u16string text) const;

    platform::Services& services_;
    std::shared_ptr<privProperties> given_;
    DiagnosticList found_;
    HandlerCheck handlers_;
    PropertyCheck properties_;
    std::deque<TemplateFile> files_;
    std::vector<std::u16string> including_;  // the paths of the files that are being read, outermost first
    std::set<std::u16string> checked_;       // paths
    std::optional<std::u16string> path_;     // the folder of included files, where a template has set it
    bool isPathKnown_ = true;
};

}  // namespace velmor
