#include <utility>

#include "api/ProgramHandlers.h"
#include "api/PropertiesParts.h"
#include "automation/Convert.h"
#include "common/TextFile.h"
#include "core/CompiledTemplate.h"
#include "core/ErrorLog.h"
#include "core/TagTree.h"
#include "core/kvTag.h"
#include "platform/SystemServices.h"
#include "platform/TemplateFolders.h"
#include "rtf/clean/CleanRTF.h"
#include "rtf/clean/JoinDocuments.h"
#include "text/Error.h"

namespace velmor {
namespace {

using automation::Variant;

constexpr std::u16string_view kTolerant = u"kvTag.RTF Tolerant";
constexpr std::u16string_view kPath = u"Path";

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

// Properties that hold for one evaluation. Afterwards the collection has its own again.
class OptionProperties {
public:
    OptionProperties(privProperties& properties, const EvaluateOptions& options) : properties_(properties) {
        static constexpr std::u16string_view missing[] = {u"empty", u"keep", u"mark", u"fail"};
        static constexpr std::u16string_view dataTags[] = {u"allow", u"report", u"refuse"};
        if (options.exact || !properties.Item(kTolerant)) put(kTolerant, Variant(!options.exact));
        if (options.missing != Missing::empty) put(u"kvTag.Missing", missing[static_cast<int>(options.missing)]);
        if (options.dataTags != DataTags::allow) put(u"kvTag.Data Tags", dataTags[static_cast<int>(options.dataTags)]);
        if (options.includeRoot) put(u"kvTag.Include Root", *options.includeRoot);
        if (!options.includePath.empty()) put(kPath, options.includePath);
    }
    ~OptionProperties() {
        for (auto& [name, before] : before_) {
            if (before) {
                properties_.Add(name, std::move(*before), true);
            } else {
                properties_.Remove(Variant(name));
            }
        }
    }
    OptionProperties(const OptionProperties&) = delete;
    OptionProperties& operator=(const OptionProperties&) = delete;

private:
    void put(std::u16string_view name, Variant value) {
        const PropertyRef present = properties_.Item(name);
        before_.emplace_back(name, present ? std::optional(present->Value()) : std::nullopt);
        properties_.Add(name, std::move(value), true);
    }

    privProperties& properties_;
    std::vector<std::pair<std::u16string, std::optional<Variant>>> before_;
};

TagPlace placeOf(const TagNode& node) {
    TagPlace place{node.position, node.length, node.handler, node.command, {}, {}};
    for (const auto& [name, value] : node.parameters) {
        place.parameters.emplace_back(name, automation::toText(value).value_or(u""));
    }
    for (const TagNode& inner : node.tags) place.tags.push_back(placeOf(inner));
    return place;
}

}  // namespace

inline namespace v1 {

struct Engine::Parts {
    explicit Parts(const platform::SystemOptions& options) : machine(options) {}

    platform::Services& services() { return machine.services(); }

    platform::SystemServices machine;
    api::ProgramHandlers handlers;
    api::HandlerRegistry registry{machine.services().registry, handlers};
    api::HandlerObjects objects{machine.services().objects, handlers};
};

namespace {

std::u16string cleaned(platform::Services& services, std::u16string text, bool exact, bool merge) {
    const auto tag = std::make_shared<kvTag>(services);
    tag->Properties().own()->AddBoolean(kTolerant, !exact, true);
    tag->CleanRTFMergeMode(merge);
    tag->CleanRTF(text);
    tag->Dispose();
    return text;
}

}  // namespace

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
    return Template(std::make_shared<const CompiledTemplate>(parts_->services(), std::u16string(text.view())));
}

Evaluated Engine::evaluate(const TextIn& text, Properties& properties, const EvaluateOptions& options) const {
    return evaluate(compile(text), properties, options);
}

Evaluated Engine::evaluate(const Template& compiled, Properties& properties, const EvaluateOptions& options) const {
    const platform::Services& machine = parts_->services();
    platform::TemplateFolders folders(machine.folders, u".");
    platform::Services services{parts_->registry, machine.files,    machine.clock, folders,
                                parts_->objects,  machine.pictures, machine.guids};
    const OptionProperties optionProperties(*properties.parts_->items, options);
    Evaluated evaluated;
    const Entries entries(evaluated.errors);
    const auto tag = std::make_shared<kvTag>(services);
    tag->Properties(Collection(properties.parts_->items));
    tag->Value(*compiled.compiled_);
    evaluated.text = tag->Result();
    evaluated.failed = tag->hasFailed();
    tag->Dispose(false);
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
        std::u16string joined = joinDocuments(std::move(texts), names, [](const std::string&, std::size_t) {});
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

std::string_view version() noexcept {
    return VELMOR_VERSION;
}

}  // namespace v1
}  // namespace velmor
