#include "check/kvCheck.h"

#include <utility>

#include "check/Annotation.h"
#include "check/OutputCheck.h"
#include "check/TagRepair.h"
#include "check/TemplateSchema.h"
#include "rtf/read/RtfReader.h"
#include "text/Error.h"

namespace velmor {

using automation::Variant;

namespace {

void addDiagnostic(privProperties& list, const Diagnostic& diagnostic) {
    const std::u16string code = codeText(diagnostic.code);
    privProperties& details = *list.AddStr(code, lineOf(diagnostic))->Properties();
    const auto addNumber = [&](std::u16string_view name, std::size_t value) {
        details.AddLng(name, static_cast<std::int32_t>(value));
    };
    std::u16string includedFrom;
    for (const SourcePlace& place : diagnostic.includedFrom) {
        includedFrom.append(includedFrom.empty() ? u"" : u", ").append(placeText(place));
    }
    details.AddStr(u"Code", code);
    details.AddStr(u"Severity", std::u16string(severityText(diagnostic.code)));
    details.AddStr(u"File", diagnostic.place.file);
    addNumber(u"Line", diagnostic.place.line);
    addNumber(u"Column", diagnostic.place.column);
    addNumber(u"Offset", diagnostic.place.offset);
    addNumber(u"Length", diagnostic.length);
    details.AddStr(u"Place", diagnostic.seenAt);
    details.AddStr(u"Text", diagnostic.message);
    details.AddStr(u"Hint", diagnostic.hint);
    details.AddStr(u"Context", diagnostic.context);
    details.AddStr(u"IncludedFrom", std::move(includedFrom));
}

}  // namespace

PropertiesRef kvCheck::given(const Variant& pvProperties) const {
    const bool isNothing = pvProperties.isObject() && !pvProperties.object();
    if (pvProperties.isMissing() || pvProperties.isEmpty() || pvProperties.get<automation::Null>() || isNothing) {
        return nullptr;
    }
    if (auto properties = std::dynamic_pointer_cast<privProperties>(pvProperties.object())) return properties;
    const auto* const text = pvProperties.get<std::u16string>();
    if (!text) throw Error(13, u"The properties are neither a property collection nor its text form");
    auto properties = std::make_shared<privProperties>(services_);
    properties->Build(*text);
    return properties;
}

CheckResult kvCheck::checked(std::u16string_view psTemplate, const Variant& pvProperties) {
    return TemplateCheck(services_, given(pvProperties)).run({}, std::u16string(psTemplate));
}

PropertiesRef kvCheck::listOf(const CheckResult& result) {
    more_ = static_cast<std::int32_t>(result.more);
    auto list = std::make_shared<privProperties>(services_);
    for (const Diagnostic& diagnostic : result.diagnostics) addDiagnostic(*list, diagnostic);
    return list;
}

PropertiesRef kvCheck::Check(std::u16string_view psTemplate, const Variant& pvProperties) {
    return listOf(checked(psTemplate, pvProperties));
}

std::u16string kvCheck::Annotate(std::u16string_view psTemplate, const Variant& pvProperties) {
    if (!documentStandsAt(psTemplate, 0)) throw Error(5, u"Only an RTF document can hold comments");
    const CheckResult result = checked(psTemplate, pvProperties);
    more_ = static_cast<std::int32_t>(result.more);
    return annotated(TemplateFile({}, std::u16string(psTemplate), {}), result.diagnostics);
}

std::u16string kvCheck::Fix(std::u16string_view psTemplate) {
    RepairedTemplate fixed = repairTags(TemplateFile({}, std::u16string(psTemplate), {}));
    repaired_ = static_cast<std::int32_t>(fixed.repaired);
    notRepaired_ = static_cast<std::int32_t>(fixed.left);
    return std::move(fixed.source);
}

std::u16string kvCheck::Schema(std::u16string_view psTemplate, const Variant& pvProperties, bool pbSample) {
    TemplateCheck check(services_, given(pvProperties));
    check.run({}, std::u16string(psTemplate));
    return pbSample ? sampleText(check.properties()) : schemaText(check.properties(), {});
}

PropertiesRef kvCheck::Verify(std::u16string_view psDocument) {
    return listOf(checkOutput({}, std::u16string(psDocument)));
}

}  // namespace velmor
