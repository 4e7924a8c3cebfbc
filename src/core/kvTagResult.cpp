// kvTag: evaluation.

#include <limits>

#include "core/Dispatch.h"
#include "core/ErrorLog.h"
#include "core/Evaluation.h"
#include "core/EvaluationRules.h"
#include "core/TagList.h"
#include "core/TagListener.h"
#include "core/TimingLog.h"
#include "core/kvTag.h"
#include "core/kvTags.h"
#include "properties/privProperties.h"
#include "rtf/edit/EmptyParagraphs.h"
#include "text/privStrCat.h"

namespace velmor {

std::u16string kvTag::Result() {
    const std::shared_ptr<Object> alive = keep();
    if (isRunning()) {
        std::u16string text = evaluation_->soFar();
        if (EvaluationRun::current().emptyTags > 0) removeEmptyTags(text);
        return text;
    }
    ensureResult();
    forgetEmptyTags();
    return result_ ? *result_ : std::u16string(resultBuilder_->contiguous());
}

void kvTag::appendResult(privStrCat& target) {
    const std::shared_ptr<Object> alive = keep();
    if (isRunning()) return target.add(evaluation_->soFar());
    ensureResult(true);
    target.add(result_ ? std::u16string_view(*result_) : resultBuilder_->contiguous());
    forgetEmptyTags();
}

std::shared_ptr<const privStrCat> kvTag::resultBuilder() {
    const std::shared_ptr<Object> alive = keep();
    if (!isRunning()) {
        ensureResult();
        forgetEmptyTags();
    }
    if (!isRunning() && resultBuilder_) return resultBuilder_;
    const auto builder = std::make_shared<privStrCat>();
    builder->AppendVal(Result());
    if (!isRunning()) resultBuilder_ = builder;
    return builder;
}

void kvTag::ensureResult(bool isHeard) {
    if (resultGenerated_ || answering_) return;
    TagListener* const listener = TagListener::current();
    if (isHeard || listener == nullptr || EvaluationRun::current().level() == 0) return evaluate();
    // A handler evaluates the tag by itself.
    const std::u16string name = name_;
    listener->tagBegins({name, context_->origin});
    evaluate();
    listener->tagEnds(0, result_ ? std::u16string_view(*result_) : resultBuilder_->contiguous());
}

void kvTag::takeResult(TextRef result) {
    result_ = std::move(result);
    resultBuilder_.reset();
}

// The marks are for the text around this tag. The text that its tags refer to keeps them.
void kvTag::forgetEmptyTags() {
    if (EvaluationRun::current().emptyTags == 0 || !resultBuilder_) return;
    std::u16string text(resultBuilder_->contiguous());
    removeEmptyTags(text);
    takeResult(std::make_shared<const std::u16string>(std::move(text)));
}

void kvTag::evaluate() {
    Temporarily<bool> answering(answering_, true);
    const TimedStage stage(services_, LogType::result, !isChild_);
    const EvaluationLevel level;
    try {
        const RulesInForce rules(context_->properties);
        if (const auto limit = level.refused()) {
            reportLimit(services_, *sharedContext(), *limit, handlerName(name_), name_);
            takeResult(std::make_shared<const std::u16string>());
            resultGenerated_ = true;
            return;
        }
        if (!tagsBuilt_) answerItself();
        const std::uint32_t changes = changes_;
        evaluateValue();
        finishResult();
        // A handler that set this tag's value meanwhile has armed it again.
        resultGenerated_ = changes == changes_;
        stage.finish({});
    } catch (const RuleError&) {
        enterFailure();
        takeResult(std::make_shared<const std::u16string>());
        hasFailed_ = resultGenerated_ = true;
    } catch (const std::exception&) {
        enterFailure();
        resultGenerated_ = true;
    }
}

// What the rules of an outermost text ask for at its end.
void kvTag::finishResult() {
    const EvaluationRun& run = EvaluationRun::current();
    if (run.level() != 1) return;
    hasFailed_ = run.hasFailed;
    if (hasFailed_) return takeResult(std::make_shared<const std::u16string>());
    if (run.emptyTags > 0 && resultBuilder_) {
        std::u16string text(resultBuilder_->contiguous());
        PlaceShifts shifts;
        TagListener* const listener = TagListener::current();
        dropEmptyParagraphs(text, value_->starts_with(rtfStart), listener != nullptr ? &shifts : nullptr);
        takeResult(std::make_shared<const std::u16string>(std::move(text)));
        if (listener != nullptr) listener->resultMoves(std::move(shifts));
    }
    if (run.hidesMarkers && resultBuilder_) resultBuilder_->exchangeUnits(hidden, u'<');
    if (run.hidesMarkers && result_) {
        std::u16string result = *result_;
        showMarkers(result);
        takeResult(std::make_shared<const std::u16string>(std::move(result)));
    }
}

void kvTag::evaluateValue() {
    // Handlers may replace both.
    const TextRef value = value_;
    const std::shared_ptr<kvTags> tags = tags_;
    if (value->starts_with(rtfStart)) ProtectRTF(true);
    EvaluationRun& run = EvaluationRun::current();
    if (!isChild_ && run.level() == 1) run.countCharacters(value->size());
    if (run.level() == 1) run.beginText(value->size());
    if (!tags || tags->Count() == 0) return takeResult(value);
    const HeldText held(run.level() > 1 ? value->size() : 0);
    if (!held.fits()) {
        reportLimit(services_, *sharedContext(), EvaluationLimit::held, handlerName(name_), name_);
        return takeResult(std::make_shared<const std::u16string>());
    }
    const auto result = std::make_shared<privStrCat>();
    result->GrowthRate(std::numeric_limits<std::int32_t>::max());  // the highest there is
    result->reserve(value->size());
    {
        Evaluation evaluation(tags->list(), result);
        Temporarily<const Evaluation*> running(evaluation_, &evaluation);
        evaluation.run();
    }
    result_.reset();
    resultBuilder_ = result;
}

void kvTag::answerItself() {
    // A handler may change both.
    const std::u16string name = name_;
    const ContextRef context = sharedContext();
    TagAnswer answer = dispatch({services_, context, name, std::static_pointer_cast<kvTag>(shared_from_this()), false});
    if (!answer.hasValue) return;
    if (answer.isRtf) ProtectRTF(true);
    if (context_->origin != answer.origin) ownContext().origin = answer.origin;
    auto value = std::make_shared<const std::u16string>(answer.view.empty() ? std::move(answer.text)
                                                                            : std::u16string(answer.view));
    if (answer.isSearched) {
        tags_ = listTags(value, answer.tags);
        tagsBuilt_ = true;
    }
    value_ = std::move(value);
}

void kvTag::adoptOutcome(TextRef value, std::shared_ptr<kvTags> tags, TextRef result) {
    value_ = std::move(value);
    tags_ = std::move(tags);
    takeResult(std::move(result));
    if (value_->starts_with(rtfStart)) ProtectRTF(true);
    tagsBuilt_ = true;
    resultGenerated_ = true;
    answering_ = false;
}

}  // namespace velmor
