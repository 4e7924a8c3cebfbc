#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "check/DiagnosticList.h"
#include "check/HandlerCheck.h"
#include "check/PropertyCheck.h"
#include "check/TagParts.h"
#include "core/EvaluationRules.h"
#include "platform/Services.h"

namespace velmor {

struct CheckResult {
    std::vector<Diagnostic> diagnostics;  // file by file, each in the order of its text
    std::size_t more = 0;                 // that were found and are not among them
};

// Finds the mistakes of a template, of the files that it includes and of the given values that it reads, without
// evaluating anything. Handlers are asked for their catalogue alone. Included files are found as evaluation finds them,
// as far as their names are known.
class TemplateCheck {
public:
    // `given`: the properties that the host will set; null when they are not known.
    TemplateCheck(platform::Services& services, std::shared_ptr<privProperties> given, EvaluationRules rules)
        : services_(services),
          rules_(std::move(rules)),
          handlers_(services, found_),
          properties_(services, std::move(given), found_) {}
    // With the rules among the properties. Throws RuleError.
    TemplateCheck(platform::Services& services, const std::shared_ptr<privProperties>& given)
        : TemplateCheck(services, given, EvaluationRules::of(Collection(given))) {}

    // `name` of the template, for messages. Called once.
    CheckResult run(std::u16string name, std::u16string text);
    // The template itself, after `run`.
    const TemplateFile& file() const noexcept { return files_.front(); }
    // The properties that the template reads, after `run`.
    std::vector<PropertyUse> properties() const { return properties_.uses(); }

private:
    // What evaluation takes at least.
    struct Extent {
        std::int64_t tags = 0;
        std::int64_t characters = 0;  // of the result; those of RTF are not counted
    };

    void checkFile(std::u16string name, std::u16string text, std::vector<SourcePlace> includedFrom);
    void checkTags(const TemplateFile& file, const std::vector<bool>& isSound);
    void checkTag(const TagParts& tag);
    void checkAnswer(const TagParts& tag, const std::u16string& name, std::u16string text);
    template <typename Step>
    void count(bool isCertain, Step step);
    void add(const TemplateFile& file, const TemplateTag& tag, Extent more);
    void checkGivenValue(const TagParts& tag);
    void checkPreprocess(const TagParts& tag);
    void checkRows(const TagParts& tag);
    void checkInclude(const TagParts& tag, std::u16string name);
    void checkIncludedFile(const TagParts& tag, const std::u16string& path);
    void checkListFile(const TagParts& tag, const std::u16string& path, std::u16string_view text);
    void setPath(const TagParts& tag);
    std::optional<std::u16string> fullPath(std::u16string_view file) const;
    std::optional<std::u16string> knownText(std::u16string text) const;

    platform::Services& services_;
    const EvaluationRules rules_;
    DiagnosticList found_;
    HandlerCheck handlers_;
    PropertyCheck properties_;
    std::deque<TemplateFile> files_;
    std::vector<std::u16string> answering_;     // the names of the texts around the tag, outermost first
    std::map<std::u16string, Extent> checked_;  // by name: the path of a file, or "property NAME"
    Extent extent_;                             // of what is read so far
    bool isCertain_ = true;                     // that evaluation comes to the text
    bool hasTooManyTags_ = false;               // it was reported
    bool isTooLong_ = false;
    std::optional<std::u16string> path_;  // the folder of included files, where a template has set it
    bool isPathKnown_ = true;
};

}  // namespace velmor
