#include "core/EvaluationRules.h"

#include <algorithm>
#include <iterator>

#include "automation/Convert.h"
#include "properties/privProperties.h"
#include "text/Compare.h"

namespace velmor {

using automation::Variant;

namespace {

constexpr std::u16string_view missingName = u"kvTag.Missing";
constexpr std::u16string_view dataTagsName = u"kvTag.Data Tags";
constexpr std::u16string_view dropEmptyParagraphsName = u"kvTag.Drop Empty Paragraphs";
constexpr std::u16string_view includeRootName = u"kvTag.Include Root";
constexpr std::u16string_view maxDepthName = u"kvTag.Max Depth";
constexpr std::u16string_view maxTagsName = u"kvTag.Max Tags";
constexpr std::u16string_view maxOutputName = u"kvTag.Max Output";
constexpr std::u16string_view ruleNames[] = {
    missingName, dataTagsName, dropEmptyParagraphsName, includeRootName, maxDepthName, maxTagsName, maxOutputName};

// The choice whose name the property gives, in the order of the names; the first one if it is absent.
template <class Choice, std::size_t count>
Choice choice(const Collection& properties, std::u16string_view name, const std::u16string_view (&names)[count]) {
    const std::optional<Variant> given = properties.find(name);
    if (!given) return static_cast<Choice>(0);
    const std::u16string value = automation::toText(*given).value_or(u"");
    const auto found = std::find_if(std::begin(names), std::end(names),
                                    [&](std::u16string_view each) { return equalIgnoringCase(each, value); });
    if (found == std::end(names)) throw RuleError(name, value);
    return static_cast<Choice>(found - std::begin(names));
}

// A number from 1 on, at most the built-in limit; that one if the property is absent.
std::int64_t limit(const Collection& properties, std::u16string_view name, std::int64_t highest) {
    const std::optional<Variant> value = properties.find(name);
    if (!value) return highest;
    const std::optional<std::int32_t> number = automation::toLong(*value);
    if (!number || *number < 1) throw RuleError(name, automation::toText(*value).value_or(u""));
    return std::min<std::int64_t>(*number, highest);
}

}  // namespace

RuleError::RuleError(std::u16string_view name, std::u16string_view value)
    : Error(5, std::u16string(u"\"").append(value).append(u"\" is not a value of ").append(name)) {}

EvaluationRules EvaluationRules::of(const Collection& properties) {
    EvaluationRules rules;
    if (!properties || (properties.own() && !areIn(*properties.own()))) return rules;
    rules.missing = choice<Missing>(properties, missingName, {u"empty", u"keep", u"mark", u"fail"});
    rules.dataTags = choice<DataTags>(properties, dataTagsName, {u"allow", u"report", u"refuse"});
    rules.dropsEmptyParagraphs = choice<bool>(properties, dropEmptyParagraphsName, {u"False", u"True"});
    if (const auto root = properties.find(includeRootName)) rules.includeRoot = automation::toText(*root).value_or(u"");
    rules.maximumLevels = limit(properties, maxDepthName, deepestLevel);
    rules.maximumTags = limit(properties, maxTagsName, maximumDispatches);
    rules.maximumOutput = limit(properties, maxOutputName, maximumCharacters);
    return rules;
}

bool EvaluationRules::isRule(std::u16string_view psName) noexcept {
    return std::any_of(std::begin(ruleNames), std::end(ruleNames),
                       [&](std::u16string_view name) { return equalIgnoringCase(name, psName); });
}

bool EvaluationRules::areIn(const privProperties& properties) {
    return std::any_of(std::begin(ruleNames), std::end(ruleNames),
                       [&](std::u16string_view name) { return properties.Item(name) != nullptr; });
}

// The mere look for a file of another machine tells that machine who looks.
bool EvaluationRules::admitsPath(std::u16string_view path) const noexcept {
    return includeRoot.empty() || !(path.starts_with(u"\\\\") || path.starts_with(u"//"));
}

bool EvaluationRules::admitsFile(const platform::Services& services, std::u16string_view path) const {
    if (includeRoot.empty()) return true;
    const std::optional<std::u16string> root = services.files.realPath(includeRoot);
    const std::optional<std::u16string> file = services.files.realPath(path);
    const char16_t separator = services.folders.separator();
    if (!root || !file || !file->starts_with(*root)) return false;
    return root->ends_with(separator) || (file->size() > root->size() && (*file)[root->size()] == separator);
}

RulesInForce::RulesInForce(const Collection& properties) : isOutermost_(EvaluationRun::current().level() == 1) {
    if (!isOutermost_) return;
    rules_ = EvaluationRules::of(properties);
    EvaluationRun::current().rules(&rules_);
}

RulesInForce::~RulesInForce() {
    if (isOutermost_) EvaluationRun::current().rules(nullptr);
}

void hideMarkers(std::u16string& text) noexcept {
    std::replace(text.begin(), text.end(), u'<', hidden);
    EvaluationRun::current().hidesMarkers = true;
}

void showMarkers(std::u16string& text) noexcept {
    if (EvaluationRun::current().hidesMarkers) std::replace(text.begin(), text.end(), hidden, u'<');
}

}  // namespace velmor
