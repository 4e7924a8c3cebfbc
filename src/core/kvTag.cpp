#include "core/kvTag.h"

#include <utility>

#include "automation/Convert.h"
#include "common/kvLibrary.h"
#include "core/CompiledTemplate.h"
#include "core/Dispatch.h"
#include "core/ErrorLog.h"
#include "core/Evaluation.h"
#include "core/EvaluationRules.h"
#include "core/TagList.h"
#include "core/TimingLog.h"
#include "core/kvTags.h"
#include "direct/kvDirectTag.h"
#include "properties/privProperties.h"
#include "rtf/edit/ProtectRTF.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::Variant;

namespace {

// Owns nothing, so threads do not count its references.
TextRef emptyText() {
    static const std::u16string text;
    return {TextRef(), &text};
}

}  // namespace

kvTag::kvTag(platform::Services& services)
    : services_(services), value_(emptyText()), context_(std::make_shared<TagContext>()), result_(emptyText()) {
    TimingLog::readSettings(services);
}

kvTag::~kvTag() {
    releaseDirect();
}

// --- what tags share ---

TagContext& kvTag::ownContext() {
    if (context_.use_count() > 1) context_ = std::make_shared<TagContext>(*context_);
    return *context_;
}

const std::shared_ptr<privProperties>& kvTag::ensure(std::shared_ptr<privProperties> TagContext::*member) {
    if (!((*context_).*member)) ownContext().*member = std::make_shared<privProperties>(services_);
    return (*context_).*member;
}

const Collection& kvTag::ensure(Collection TagContext::*member) {
    if (!((*context_).*member)) ownContext().*member = Collection(std::make_shared<privProperties>(services_));
    return (*context_).*member;
}

std::shared_ptr<const TagContext> kvTag::sharedContext() {
    ensure(&TagContext::properties);
    ensure(&TagContext::variables);
    ensure(&TagContext::privateVariables);
    ensure(&TagContext::errorLog);
    return context_;
}

void kvTag::becomeChild(std::shared_ptr<const TagContext> context) {
    // Shared until one side changes its own: see ownContext.
    context_ = std::const_pointer_cast<TagContext>(std::move(context));
    isChild_ = true;
}

void kvTag::releaseShared() {
    if (const std::shared_ptr<kvTags> tags = std::exchange(tags_, nullptr)) tags->cleanUp();
    releaseDirect();
    elements_.reset();
    const bool protect = context_->protectRtf;
    context_ = std::make_shared<TagContext>();
    context_->protectRtf = protect;
}

void kvTag::ProtectRTF(bool pbProtect) {
    if (context_->protectRtf != pbProtect) ownContext().protectRtf = pbProtect;
}

std::shared_ptr<kvDirectTag> kvTag::Direct() {
    if (!direct_) {
        // The tag's own lifetime, seen as that of what Direct needs of it.
        const std::shared_ptr<DirectOwner> self(shared_from_this(), this);
        direct_ = std::make_shared<kvDirectTag>(self);
    }
    return direct_;
}

void kvTag::releaseDirect() noexcept {
    if (direct_) direct_->cleanUp();
    direct_.reset();
}

std::u16string kvTag::directElement(std::u16string_view psName) {
    return GetProcessedElementsValue(psName, Variant(std::int32_t{0}));
}

automation::ObjectRef kvTag::Library() const {
    return std::make_shared<kvLibrary>(services_);
}

void kvTag::LogError(std::u16string_view psTagHandler, std::u16string_view psError, std::int32_t& plErrorNumber,
                     std::u16string_view psTagData, std::u16string_view psErrorData) {
    try {
        addErrorLogEntry(services_, *ErrorLog(), {psTagHandler, psError, plErrorNumber, psTagData, psErrorData});
    } catch (const std::exception&) {
        // No memory for the log: the entry is left out.
    }
}

void kvTag::LogError(std::u16string_view psTagHandler, std::u16string_view psError) {
    std::int32_t none = 0;
    LogError(psTagHandler, psError, none);
}

void kvTag::Dispose(bool pbDisposeProperties) {
    const std::shared_ptr<Object> alive = keep();
    if (pbDisposeProperties) {
        // What is disposed may change what the tag refers to.
        const std::shared_ptr<const TagContext> before = context_;
        const std::shared_ptr<privProperties> elements = elements_;
        before->properties.Dispose();
        before->variables.Dispose();
        if (elements) elements->Dispose();
        if (before->errorLog) before->errorLog->Dispose();
    }
    TagContext& context = ownContext();
    context.properties = {};
    context.variables = {};
    context.errorLog.reset();
    context.database.reset();
    releaseDirect();
    elements_.reset();
    if (const std::shared_ptr<kvTags> tags = std::exchange(tags_, nullptr)) tags->cleanUp();
}

// --- name and value ---

template <class Call>
void kvTag::guarded(Call&& call) noexcept {
    try {
        call();
    } catch (const std::exception&) {
        enterFailure();
    }
}

void kvTag::enterFailure() noexcept {
    try {
        logFailure(services_, *ErrorLog(), handlerName(name_), name_);
    } catch (const std::bad_alloc&) {
        // No memory for the log: the entry is left out.
    }
}

void kvTag::Name(std::u16string_view psName) {
    name_ = storedName(psName);
    elements_.reset();
    tagsBuilt_ = false;
    resultGenerated_ = false;
    ++changes_;
}

void kvTag::Value(std::u16string psValue) {
    guarded([&] { Value(CompiledTemplate(services_, std::move(psValue), handlerName(name_))); });
}

void kvTag::Value(const CompiledTemplate& compiled) {
    guarded([&] {
        if (compiled.isRtf()) ProtectRTF(true);
        tags_ = listTags(compiled.text(), compiled.tags());
        value_ = compiled.text();
        tagsBuilt_ = true;
        resultGenerated_ = false;
        ++changes_;
    });
}

void kvTag::BuildTagCollection() {
    guarded([&] { tags_ = listTags(value_, searchTags(services_, handlerName(name_), *value_)); });
}

std::shared_ptr<kvTags> kvTag::listTags(const TextRef& value, const TopLevelTags& found) {
    if (found.tags.empty()) return std::make_shared<kvTags>();
    const auto lists = std::make_shared<KeptLists>(value);
    return std::make_shared<kvTags>(lists, TagList::keep(services_, *value, found, sharedContext(), *lists));
}

void kvTag::AddTableStartEndControlWords() {
    std::u16string value = *value_;
    if (addTableMarkers(value, services_.guids)) value_ = std::make_shared<const std::u16string>(std::move(value));
}

void kvTag::RemoveExtraTrowd(std::int32_t& plTableStart, std::int32_t& plTableEnd) {
    std::u16string value = *value_;
    velmor::RemoveExtraTrowd(value, plTableStart, plTableEnd);
    value_ = std::make_shared<const std::u16string>(std::move(value));
}

void kvTag::ProtectRTFCode(std::u16string& psValue) const {
    velmor::ProtectRTFCode(psValue);
}

// --- elements ---

std::shared_ptr<privProperties> kvTag::Elements() {
    if (!elements_) {
        const CountedDecoding counted;
        elements_ = std::make_shared<privProperties>(services_);
        elements_->BuildByVal(name_, false, true, u":");
    }
    return elements_;
}

std::u16string kvTag::HandlerName() {
    const PropertyRef handler = Elements()->Item(handlerElement);
    return handler ? upperCase(handler->Name()) : std::u16string();
}

std::u16string kvTag::CommandName() {
    const PropertyRef command = Elements()->Item(commandElement);
    return command ? upperCase(command->Name()) : std::u16string();
}

Variant kvTag::CommandValue() {
    const PropertyRef command = Elements()->Item(commandElement);
    return command ? command->Value() : Variant(u"");
}

std::u16string kvTag::CommandValueProcessed() {
    const std::shared_ptr<Object> alive = keep();
    const PropertyRef command = Elements()->Item(commandElement);
    return command ? processed(command->ValueStr()) : std::u16string();
}

// --- evaluation of single texts ---

std::u16string kvTag::processed(std::u16string text) {
    return text.find(openingMarker) == std::u16string::npos ? text : ProcessValue(text);
}

std::u16string kvTag::GetProcessedPropertiesValue(std::u16string_view psName, std::u16string_view psDefault) {
    const std::shared_ptr<Object> alive = keep();
    const std::optional<Variant> value = Properties().find(psName);
    return processed(value ? automation::toText(*value).value_or(std::u16string()) : std::u16string(psDefault));
}

std::u16string kvTag::GetProcessedVariablesValue(std::u16string_view psName, std::u16string_view psDefault) {
    const std::shared_ptr<Object> alive = keep();
    const std::optional<Variant> value = Variables().find(psName);
    return processed(value ? automation::toText(*value).value_or(std::u16string()) : std::u16string(psDefault));
}

std::u16string kvTag::GetProcessedElementsValue(std::u16string_view psName, const Variant& pvDefault) {
    const std::shared_ptr<Object> alive = keep();
    const PropertyRef element = Elements()->Item(psName);
    return processed(element ? element->ValueStr() : automation::toText(pvDefault).value_or(std::u16string()));
}

// A handler may have any text evaluated. What is part of its own tag is as trustworthy as that tag.
ContextRef kvTag::contextFor(std::u16string_view text) {
    const ContextRef context = sharedContext();
    const bool isOwn = name_.find(text) != std::u16string::npos || !isAuthors(context->origin);
    return !isChild_ || isOwn ? context : contextWith(&TagContext::origin, Origin::handler, context);
}

std::u16string kvTag::ProcessValue(std::u16string_view psValue) {
    const std::shared_ptr<Object> alive = keep();
    std::u16string result;
    guarded(
        [&] { result = evaluateText(services_, contextFor(psValue), handlerName(name_), std::u16string(psValue)); });
    return result;
}

std::shared_ptr<kvTag> kvTag::NewTag() {
    auto tag = std::make_shared<kvTag>(services_);
    tag->becomeChild(sharedContext());
    return tag;
}

std::u16string kvTag::ProcessName(std::u16string_view psName) {
    const std::shared_ptr<Object> alive = keep();
    std::u16string result;
    guarded([&] {
        const std::shared_ptr<kvTag> tag = NewTag();
        tag->Name(psName);
        result = tag->Result();
        tag->releaseShared();
    });
    return result;
}

}  // namespace velmor
