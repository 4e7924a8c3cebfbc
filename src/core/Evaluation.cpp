#include "core/Evaluation.h"

#include <algorithm>
#include <utility>

#include "core/ErrorLog.h"
#include "core/EvaluationRules.h"
#include "core/Markup.h"
#include "core/kvTag.h"
#include "handlers/ITag4.h"
#include "rtf/edit/EmptyParagraphs.h"
#include "rtf/tables/TableMarkers.h"
#include "text/privStrCat.h"

namespace velmor {

namespace {

constexpr std::size_t npos = std::u16string_view::npos;

std::size_t sizeOf(const privStrCat& builder) noexcept {
    return static_cast<std::size_t>(builder.Length());
}

}  // namespace

std::u16string evaluateText(platform::Services& services, const ContextRef& context, std::u16string_view handler,
                            std::u16string text, bool isAnswer) {
    EvaluationLevel level;
    std::optional<EvaluationLimit> limit = level.refused();
    EvaluationRun& run = EvaluationRun::current();
    if (run.level() == 1) run.beginText(text.size());
    const TextApart apart;
    if (!limit) limit = run.countValue(text.size());
    if (limit) {
        reportLimit(services, *context, *limit, handler, {});
        return {};
    }
    const RulesInForce rules(context->properties);
    const bool isRtf = text.starts_with(rtfStart);
    addTableMarkers(text, services.guids);
    const TopLevelTags found = searchTags(services, {}, text);
    if (found.tags.empty() || !admitsTags(services, *context, handler)) return text;
    const ContextRef own = isRtf ? protectedContext(context) : context;
    TagList tags(services, text, found, own);
    const auto result = std::make_shared<privStrCat>();
    Evaluation(tags, result, true).run();
    std::u16string evaluated(run.hasFailed ? std::u16string_view() : result->contiguous());
    if (!isAnswer) showMarkers(evaluated);
    if (run.emptyTags > 0) removeEmptyTags(evaluated);
    return evaluated;
}

Evaluation::Evaluation(TagList& tags, const BuilderRef& target, bool isApart)
    : tags_(tags), target_(target), base_(sizeOf(*target_)), finished_(base_), scanFrom_(base_) {
    tags_.beginEvaluation();
    if (listener_ != nullptr) listener_->textBegins(base_, isApart);
}

Evaluation::~Evaluation() {
    if (listener_ != nullptr) listener_->textEnds(sizeOf(*target_) - base_);
    tags_.endEvaluation();
}

std::u16string Evaluation::soFar() const {
    if (literal_ != nullptr) return literal_->text();
    std::u16string text(target_->contiguous().substr(base_, finished_ - base_));
    return text.append(tags_.text().substr(position_));
}

void Evaluation::run(bool isFit) {
    isFit_ = isFit;
    tags_.beginResults(target_);
    for (std::size_t index = 0; index < tags_.size(); ++index) {
        const TagSpan span = tags_.span(index);
        finishTo(span.open);
        if (!ownPlaceIsFirst(index)) return runLiterally(index);
        position_ = span.end();
        answer(index, target_);
        finished_ = sizeOf(*target_);
    }
    target_->add(tags_.text().substr(position_));
}

// --- where a tag is found ---

void Evaluation::finishTo(std::size_t position) {
    const std::size_t gap = sizeOf(*target_);
    target_->add(tags_.text().substr(position_, position - position_));
    position_ = position;
    finished_ = sizeOf(*target_);
    finishedHasMarker_ = finishedHasMarker_ || gapHasMarker(gap);
    constexpr std::size_t reach = openingMarker.size() - 1;
    scanFrom_ = std::max(base_, finished_ - std::min(reach, finished_));
}

// Opening markers come into the finished part with strays of the source, with results, and where a
// result and its neighbours form one. True also when a stray alone is as far away as the tag.
bool Evaluation::gapHasMarker(std::size_t gap) const {
    if (tags_.firstStray() < position_) return true;
    const std::u16string_view finished = target_->contiguous();
    const std::size_t end = std::min(gap + openingMarker.size() - 1, finished.size());
    return findOpeningMarker(finished.substr(0, end), scanFrom_) != npos;
}

bool Evaluation::ownPlaceIsFirst(std::size_t index) {
    if (finishedHasMarker_) return false;
    if (tags_.rawName(index).ends_with(elementSeparator)) return true;
    if (!lastSeparated_) {
        lastSeparated_ = 0;
        const std::u16string_view text = tags_.text();
        for (MarkerPlace at = findMarker(text, 0); at.position < text.size(); at = findMarker(text, at.position + 1)) {
            if (at.position > 0 && text[at.position - 1] == elementSeparator) lastSeparated_ = at.position;
        }
    }
    return *lastSeparated_ < tags_.span(index).end();
}

void Evaluation::runLiterally(std::size_t from) {
    const auto results = std::make_shared<privStrCat>();
    results->add(target_->contiguous().substr(base_));
    tags_.moveResults(results, base_);
    MarkedText text(soFar());
    if (listener_ != nullptr) listener_->textMoves();
    literal_ = &text;
    for (std::size_t index = from; index < tags_.size(); ++index) {
        const std::u16string name = storedName(tags_.rawName(index));
        std::optional<MarkedText::Place> place = text.find(name);
        if (!place) place = text.find(std::u16string_view(name).substr(0, name.size() - 1));
        if (!place) continue;
        const std::size_t start = sizeOf(*results);
        answer(index, results);
        text.replace(*place, results->contiguous().substr(start));
    }
    literal_ = nullptr;
    target_->truncate(base_);
    target_->add(text.text());
}

// --- what a tag becomes ---

void Evaluation::answer(std::size_t index, const BuilderRef& results) {
    const std::size_t start = sizeOf(*results);
    const std::size_t emptyTags = EvaluationRun::current().emptyTags;
    if (listener_ != nullptr) {
        listener_->tagBegins({tags_.rawName(index), tags_.context()->origin, index + 1, tags_.span(index).open + 1});
    }
    answerSafely(index, results);
    if (listener_ != nullptr) listener_->tagEnds(start, results->contiguous().substr(start));
    if (!rules_.dropsEmptyParagraphs) return;
    if (sizeOf(*results) == start || EvaluationRun::current().emptyTags > emptyTags) markEmptyTag(start, *results);
}

// A result that shows nothing but empty tags is empty, too.
void Evaluation::markEmptyTag(std::size_t start, privStrCat& results) const {
    const std::u16string_view result = results.contiguous().substr(start);
    if (!showsNothing(result, tags_.context()->protectRtf || result.starts_with(rtfStart))) return;
    results.add({&emptyTag, 1});
    ++EvaluationRun::current().emptyTags;
}

void Evaluation::answerSafely(std::size_t index, const BuilderRef& results) {
    const std::size_t start = sizeOf(*results);
    EvaluationRun& run = EvaluationRun::current();
    const auto outermost = [&] {
        const TagSpan& span = tags_.span(index);
        return OutermostTag{static_cast<std::int32_t>(index + 1), static_cast<std::int32_t>(span.open + 1),
                            span.whole(tags_.text())};
    };
    const Temporarily<OutermostTag> answering(run.outermostTag, run.level() == 1 ? outermost() : run.outermostTag);
    try {
        if (tags_.object(index) || needsObject(tags_.rawName(index))) {
            answerByObject(index, *results);
        } else {
            answerHere(index, results);
        }
        if (sizeOf(*results) > static_cast<std::size_t>(rules_.maximumOutput)) {
            results->truncate(start);
            tags_.settle(index, start, 0, nullptr);
            report(EvaluationLimit::output, index);
        }
    } catch (const std::exception&) {
        // Only memory fails here: the tag yields nothing.
        results->truncate(start);
        tags_.settle(index, start, 0, nullptr);
        logFailure(tags_.services(), *tags_.context()->errorLog, handlerName(tags_.rawName(index)),
                   tags_.rawName(index));
    }
}

void Evaluation::answerByObject(std::size_t index, privStrCat& results) {
    const bool isMadeHere = !tags_.object(index);
    const std::size_t start = sizeOf(results);
    tags_.item(index)->appendResult(results);
    if (EvaluationRun::current().keepsTag) keepTag(index, start, results);
    if (isMadeHere) tags_.settleObject(index, start, sizeOf(results) - start);
}

void Evaluation::answerHere(std::size_t index, const BuilderRef& results) {
    const std::size_t start = sizeOf(*results);
    tags_.beginTag(index);
    const EvaluationLevel level;
    TagAnswer answer = dispatch({tags_.services(), tags_.context(), tags_.rawName(index), nullptr, isFit_});
    KeptListRef nested;
    if (EvaluationRun::current().keepsTag) {
        keepTag(index, start, *results);
    } else if (answer.tags.tags.empty()) {
        results->add(answer.value());
    } else {
        nested = evaluateTagsOf(answer, index, results);
    }
    tags_.settle(index, start, sizeOf(*results) - start, std::move(nested));
}

// The result is the tag as it is written.
void Evaluation::keepTag(std::size_t index, std::size_t start, privStrCat& results) {
    EvaluationRun::current().keepsTag = false;
    results.truncate(start);
    std::u16string written(tags_.span(index).whole(tags_.text()));
    hideMarkers(written);
    results.add(written);
}

KeptListRef Evaluation::evaluateTagsOf(TagAnswer& answer, std::size_t index, const BuilderRef& results) {
    const HeldText held(answer.isPart ? 0 : answer.value().size());
    if (!held.fits()) {
        report(EvaluationLimit::held, index);
        return nullptr;
    }
    const bool isFit = !answer.view.empty();
    const ContextRef context = contextWith(&TagContext::origin, answer.origin,
                                           answer.isRtf ? protectedContext(tags_.context()) : tags_.context());
    if (KeptListRef kept = tags_.keepNested(answer.value(), answer.isPart, answer.tags, context)) {
        std::u16string().swap(answer.text);
        Evaluation(*kept, results).run(isFit);
        return kept;
    }
    if (tags_.isKept()) report(EvaluationLimit::kept, index);
    if (isFit && !answer.isPart) answer.text = std::exchange(answer.view, {});
    TagList list(tags_.services(), answer.value(), answer.tags, context);
    Evaluation(list, results).run(isFit);
    return nullptr;
}

void Evaluation::report(EvaluationLimit limit, std::size_t index) {
    reportLimit(tags_.services(), *tags_.context(), limit, builtInHandler, tags_.rawName(index));
}

}  // namespace velmor
