#include "api/EngineParts.h"
#include "api/OptionProperties.h"
#include "api/PropertiesParts.h"
#include "check/TemplateCheck.h"
#include "check/TemplateSchema.h"
#include "platform/TemplateFolders.h"

namespace velmor {
namespace {

Mistake::Place placeOf(const SourcePlace& place) {
    return {place.file, place.offset, place.line, place.column};
}

Mistake mistakeOf(const Diagnostic& diagnostic) {
    Mistake mistake;
    mistake.code = codeText(diagnostic.code);
    mistake.isError = severityOf(diagnostic.code) == Severity::error;
    mistake.message = diagnostic.message;
    mistake.hint = diagnostic.hint;
    mistake.place = placeOf(diagnostic.place);
    mistake.length = diagnostic.length;
    mistake.seenAt = diagnostic.seenAt;
    mistake.context = diagnostic.context;
    for (const SourcePlace& place : diagnostic.includedFrom) mistake.includedFrom.push_back(placeOf(place));
    return mistake;
}

}  // namespace

inline namespace v1 {

Outcome<Checked> Engine::check(const TextIn& text, Properties* properties, const EvaluateOptions& options) const {
    const std::u16string folder = options.includePath.empty() ? u"." : options.includePath;
    platform::TemplateFolders folders(parts_->services().folders, folder);
    platform::Services services = parts_->services(folders);
    const PropertiesRef given = properties ? properties->parts_->items : nullptr;
    std::optional<api::OptionProperties> optionProperties;
    if (given) optionProperties.emplace(*given, options);
    try {
        const CheckResult result = TemplateCheck(services, given).run({}, std::u16string(text.view()));
        Checked checked;
        for (const Diagnostic& diagnostic : result.diagnostics) checked.mistakes.push_back(mistakeOf(diagnostic));
        checked.more = result.more;
        return checked;
    } catch (const Error& error) {
        return Failure{error.number(), error.description()};
    }
}

std::u16string Engine::schema(const TextIn& text, const EvaluateOptions& options) const {
    platform::TemplateFolders folders(parts_->services().folders, u".");
    platform::Services services = parts_->services(folders);
    const auto given = std::make_shared<privProperties>(services);
    const api::OptionProperties optionProperties(*given, options);
    TemplateCheck check(services, given);
    check.run({}, std::u16string(text.view()));
    return schemaText(check.properties(), {});
}

}  // namespace v1
}  // namespace velmor
