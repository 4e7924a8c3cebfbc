#include <chrono>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "api/OptionProperties.h"
#include "api/ProgramHandlers.h"
#include "api/PropertiesParts.h"
#include "automation/Convert.h"
#include "check/TemplateCheck.h"
#include "check/TemplatePlaces.h"
#include "check/TemplateSchema.h"
#include "common/TextFile.h"
#include "core/CompiledTemplate.h"
#include "core/ErrorLog.h"
#include "core/Options.h"
#include "core/TagTree.h"
#include "core/TraceCollector.h"
#include "core/kvTag.h"
#include "platform/SystemServices.h"
#include "platform/TemplateFolders.h"
#include "rtf/clean/CleanRTF.h"
#include "rtf/clean/JoinDocuments.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {

namespace {

class Entries final : public ErrorListener {
public:
    explicit Entries(std::vector<LogEntry>& entries) : entries_(entries) {}

    void heard(const ErrorLogEntry& entry, const OutermostTag& tag) override {
        LogEntry& added = entries_.emplace_back();
        added.handler = entry.handler;
        added.message = entry.message;
        added.number = entry.number;
        added.tag = entry.tagData;
        added.data = entry.errorData;
        added.tagIndex = static_cast<std::size_t>(tag.index);
        added.position = static_cast<std::size_t>(tag.position);
    }

private:
    std::vector<LogEntry>& entries_;
};

// Evaluation counts in a text that may have table markers in addition.
void placeEntries(std::vector<LogEntry>& entries, const TemplatePlaces& places) {
    for (LogEntry& entry : entries) {
        if (entry.tagIndex == 0) continue;
        const TemplatePlaces::Place place = places.of(entry.tagIndex, entry.position);
        entry.position = place.position;
        entry.line = place.line;
        entry.column = place.column;
    }
}

TagPlace placeOf(const TagNode& node) {
    TagPlace place{node.position, node.length, node.handler, node.command, {}, {}};
    for (const auto& [name, value] : node.parameters) {
        place.parameters.emplace_back(name, automation::toText(value).value_or(u""));
    }
    for (const TagNode& inner : node.tags) place.tags.push_back(placeOf(inner));
    return place;
}

// What was collected during an evaluation; the places are those of its template.
std::vector<TracedTag> tracedTags(const TraceCollector& trace, const TemplatePlaces& places) {
    const std::vector<TraceCollector::Place> results = trace.places();
    std::vector<TracedTag> tags;
    tags.reserve(results.size());
    for (std::size_t index = 0; index < results.size(); ++index) {
        const TraceCollector::Tag& from = trace.tags()[index];
        const bool isOutermost = from.parent == TraceCollector::noTag;
        const bool hasPlace = isOutermost && from.index > 0;
        TracedTag& tag = tags.emplace_back();
        tag.parent = isOutermost ? 0 : std::size_t{from.parent} + 1;
        tag.origin = fromUtf8(originText(from.origin));
        tag.name = trace.nameOf(from);
        std::tie(tag.handler, tag.command) = handlerAndCommand(tag.name);
        tag.position = hasPlace ? places.of(from.index, from.position).position : from.position;
        tag.length = results[index].length;
        if (results[index].start != TraceCollector::npos) tag.place = results[index].start + 1;
        tag.seconds = std::chrono::duration<double>(from.time).count();
    }
    return tags;
}

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

std::u16string cleaned(platform::Services& services, std::u16string text, bool exact, bool merge) {
    cleanAsTag(services, text, {.mergeMode = merge, .tolerant = !exact});
    return text;
}

}  // namespace

inline namespace v1 {

struct Engine::Parts {
    explicit Parts(const platform::SystemOptions& options) : machine(options) {}

    platform::Services& services() { return machine.services(); }
    // With the program's handlers, and these folders in place of the machine's.
    platform::Services services(platform::Folders& folders) {
        const platform::Services& own = machine.services();
        return {handlers, own.files, own.clock, folders, handlers, own.pictures, own.guids};
    }

    platform::SystemServices machine;
    api::ProgramHandlers handlers{machine.services()};
};

Engine::Engine(std::unique_ptr<Parts> parts) noexcept : parts_(std::move(parts)) {}
Engine::~Engine() = default;
Engine::Engine(Engine&&) noexcept = default;
Engine& Engine::operator=(Engine&&) noexcept = default;

Outcome<Engine> Engine::make(const EngineOptions& options) {
    try {
        useTextFileDecoder(&decodeTextFileOrUtf8);
        platform::SystemOptions machine;
        machine.registryFile = options.registryFile.value_or(u"");
        machine.handlerFolders = options.handlerFolders;
        machine.registryOnlyIfNamed = !options.useMachineRegistry;
        return Engine(std::make_unique<Parts>(machine));
    } catch (const Error& error) {
        return Failure{error.number(), error.description()};
    }
}

void Engine::setHandler(const TextIn& name, Answer answer) {
    parts_->handlers.set(name.view(), std::move(answer));
}

Template Engine::compile(const TextIn& text) const {
    auto prepared = std::make_shared<const PreparedTemplate>(parts_->services(), std::u16string(text.view()));
    TextRef source = prepared->compiled.text();
    if (*source != text.view()) source = std::make_shared<const std::u16string>(text.view());
    return Template(std::move(prepared), std::move(source));
}

Evaluated Engine::evaluate(const TextIn& text, Properties& properties, const EvaluateOptions& options) const {
    return evaluate(compile(text), properties, options);
}

Evaluated Engine::evaluate(const Template& compiled, Properties& properties, const EvaluateOptions& options) const {
    platform::TemplateFolders folders(parts_->services().folders, u".");
    platform::Services services = parts_->services(folders);
    const api::OptionProperties optionProperties(*properties.parts_->items, options);
    std::optional<TraceCollector> trace;
    if (options.trace) trace.emplace();
    Evaluated evaluated;
    if (auto text = compiled.prepared_->plain.result(services, *properties.parts_->items)) {
        evaluated.text = *std::move(text);
        return evaluated;
    }
    const Entries entries(evaluated.errors);
    const auto tag = std::make_shared<kvTag>(services);
    tag->Properties(Collection(properties.parts_->items));
    tag->Value(compiled.prepared_->compiled);
    evaluated.text = tag->Result();
    evaluated.failed = tag->hasFailed();
    tag->Dispose(false);
    if (trace || !evaluated.errors.empty()) {
        const TemplatePlaces places(compiled.text());
        placeEntries(evaluated.errors, places);
        if (trace) evaluated.trace = tracedTags(*trace, places);
    }
    return evaluated;
}

std::u16string Engine::clean(const TextIn& rtf, bool exact) const {
    return cleaned(parts_->services(), std::u16string(rtf.view()), exact, false);
}

Outcome<std::u16string> Engine::join(const std::vector<std::u16string>& documents, bool exact) const {
    try {
        std::vector<std::u16string> texts = documents;
        std::vector<std::string> names;
        for (std::u16string& text : texts) {
            names.push_back("document " + std::to_string(names.size() + 1));
            requireDocument(text, true, names.back());
            text = cleaned(parts_->services(), std::move(text), exact, false);
        }
        if (texts.empty()) return Failure{5, u"there is no document"};
        std::u16string joined = joinDocuments(std::move(texts), names);
        return cleaned(parts_->services(), std::move(joined), exact, true);
    } catch (const Error& error) {
        return Failure{error.number(), error.description()};
    }
}

std::vector<TagPlace> Engine::tags(const TextIn& text) const {
    std::vector<TagPlace> places;
    visitTags(parts_->services(), text.view(), [&](const TagNode& node) { places.push_back(placeOf(node)); });
    return places;
}

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

std::string_view version() noexcept {
    return VELMOR_VERSION;
}

}  // namespace v1
}  // namespace velmor
