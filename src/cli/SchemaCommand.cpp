#include "check/TemplateCheck.h"
#include "cli/Commands.h"
#include "cli/PropertyJson.h"
#include "cli/Streams.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

// Null when the template gives no default, an empty one, or one that holds a tag.
Json defaultOf(platform::Services& services, const PropertyUse& use) {
    if (!use.standard || !isLiteral(use.standard->ValueStr())) return nullptr;
    Json json = jsonOfValue(services, *use.standard);
    return json == "" ? Json(nullptr) : json;
}

const char* typeOf(const Json& value) {
    if (value.is_number()) return "number";
    return value.is_boolean() ? "boolean" : "string";
}

Json schemaOf(platform::Services& services, const std::vector<PropertyUse>& uses, const std::string& title) {
    Json properties = Json::object();
    Json required = Json::array();
    for (const PropertyUse& use : uses) {
        const std::string name = toUtf8(use.name);
        const Json standard = defaultOf(services, use);
        properties[name] =
            standard.is_null() ? Json::object() : Json({{"type", typeOf(standard)}, {"default", standard}});
        if (!use.standard && !use.isSet) required.push_back(name);
    }
    Json schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                   {"title", title},
                   {"type", "object"},
                   {"properties", std::move(properties)}};
    if (!required.empty()) schema["required"] = std::move(required);
    return schema;
}

// A property without a default has its name for a value.
Json sampleOf(platform::Services& services, const std::vector<PropertyUse>& uses) {
    Json sample = Json::object();
    for (const PropertyUse& use : uses) {
        if (use.isSet) continue;
        const Json standard = defaultOf(services, use);
        sample[toUtf8(use.name)] = standard.is_null() ? Json(toUtf8(use.name)) : standard;
    }
    return sample;
}

}  // namespace

ExitCode runSchema(platform::Services& services, const SchemaOptions& options) {
    TemplateInput input(services, options);
    const auto given = std::make_shared<privProperties>(input.services());
    input.addProperties(*given);
    const std::string title = options.input.empty() ? "-" : options.input;
    TemplateCheck check(input.services(), given);
    const CheckResult result = check.run(fromUtf8(title), std::move(input.document().text));
    bool isComplete = true;
    for (const Diagnostic& each : result.diagnostics) {
        if (each.code != DiagnosticCode::missingInclude) continue;
        report(toUtf8(each.message));
        isComplete = false;
    }
    const Json json = options.sample ? sampleOf(input.services(), check.properties())
                                     : schemaOf(input.services(), check.properties(), title);
    print(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
    finishPrinting();
    return isComplete ? exitDone : exitReported;
}

}  // namespace velmor::cli
