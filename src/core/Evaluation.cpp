#include "core/Evaluation.h"

#include <algorithm>

#include "core/BuiltInCommands.h"
#include "core/ErrorLog.h"
#include "core/Markup.h"
#include "core/kvTag.h"
#include "rtf/edit/ProtectRTF.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {

namespace {

constexpr std::size_t npos = std::u16string_view::npos;

// The place of the tag's literal text.
std::size_t findTagText(std::u16string_view text, std::u16string_view name) noexcept {
    for (std::size_t at = findOpeningMarker(text, 0); at != npos; at = findOpeningMarker(text, at + 1)) {
        const std::u16string_view rest = text.substr(at + kOpeningMarker.size());
        if (equalIgnoringCase(rest.substr(0, name.size()), name) &&
            equalIgnoringCase(rest.substr(std::min(name.size(), rest.size()), kClosingMarker.size()), kClosingMarker)) {
            return at;
        }
    }
    return npos;
}

// Says which tag of the outermost text is being answered, for as long as it is.
class AnsweringOutermost {
public:
    AnsweringOutermost(const TagList& tags, std::size_t index) noexcept : isOutermost_(run_.level() == 1) {
        if (!isOutermost_) return;
        const TagSpan& span = tags.span(index);
        run_.outermostTag({static_cast<std::int32_t>(index + 1), static_cast<std::int32_t>(span.open + 1),
                           tags.source().substr(span.open, span.end() - span.open)});
    }
    ~AnsweringOutermost() {
        if (isOutermost_) run_.outermostTag({});
    }
    AnsweringOutermost(const AnsweringOutermost&) = delete;
    AnsweringOutermost& operator=(const AnsweringOutermost&) = delete;

private:
    EvaluationRun& run_ = EvaluationRun::current();
    const bool isOutermost_;
};

// A value in the tag's own text, as BuiltInCommands::property gives it, is one whole tag or holds no
// marker, so that tags deep within each other are not sought once more at each level.
void findTagsOf(std::u16string_view value, bool isOwn, TopLevelTags& found) {
    if (isOwn) {
        findTopLevelTags(value, found);
        return;
    }
    found.tags.clear();
    found.firstStray = TopLevelTags::kNone;
    if (!value.starts_with(u'<')) return;
    found.tags.push_back({0, static_cast<std::uint32_t>(value.size() - kClosingMarker.size())});
}

// A ":" after such a name makes an opening marker: its literal text is no pair of markers, and ends
// with an empty one.
bool becomesMarker(std::u16string_view rawName) noexcept {
    const std::u16string_view piece = kOpeningMarker.substr(0, kOpeningMarker.size() - 1);
    return rawName.size() >= piece.size() && equalIgnoringCase(rawName.substr(rawName.size() - piece.size()), piece);
}

}  // namespace

bool fitIntoRtf(platform::Services& services, bool protect, std::u16string& value) {
    const bool isRtf = value.starts_with(kRtfStart);
    if (protect || isRtf) {
        ProtectRTFCode(value);
        addTableMarkers(value, services.guids);
    }
    return isRtf;
}

namespace {

// True for a value that fitIntoRtf leaves as it is.
bool isFit(bool protect, std::u16string_view value) {
    return protect ? protectedRTFLength(value) == value.size() && !value.starts_with(kRtfStart)
                   : !value.starts_with(kRtfStart);
}

}  // namespace

std::optional<EvaluationLimit> fitAndCount(platform::Services& services, bool protect, std::u16string& value) {
    EvaluationRun& run = EvaluationRun::current();
    const std::size_t left = run.isApart() ? std::min(run.charactersLeft(), run.holdable()) : run.charactersLeft();
    std::size_t length = value.size();
    // Looked at again only where the escapes could be what goes beyond the limit.
    if (protect && length > left / 3) length = protectedRTFLength(value);
    if (length <= left) {
        fitIntoRtf(services, protect, value);
        length = value.size();
    }
    std::optional<EvaluationLimit> limit = run.countCharacters(length);
    if (!limit && run.isApart() && !run.hold(length)) limit = EvaluationLimit::held;
    if (limit) std::u16string().swap(value);
    return limit;
}

ContextRef protectedContext(const ContextRef& context) {
    if (context->protectRtf) return context;
    auto changed = std::make_shared<TagContext>(*context);
    changed->protectRtf = true;
    return changed;
}

void reportLimit(platform::Services& services, const TagContext& context, EvaluationLimit limit,
                 std::u16string_view handler, std::u16string_view tagName) {
    if (!EvaluationRun::current().isFirst(limit)) return;
    addErrorLogEntry(services, *context.errorLog, {handler, limitMessage(limit), 0, tagName, {}});
}

std::u16string evaluateText(platform::Services& services, const ContextRef& context, std::u16string_view handler,
                            std::u16string text) {
    EvaluationLevel level;
    std::optional<EvaluationLimit> limit = level.refused();
    EvaluationRun& run = EvaluationRun::current();
    if (run.level() == 1) run.beginText(text.size());
    const TextApart apart;
    if (!limit) limit = run.countCharacters(text.size());
    if (!limit && run.isApart() && !run.hold(text.size())) limit = EvaluationLimit::held;
    if (limit) {
        reportLimit(services, *context, *limit, handler, {});
        return {};
    }
    const bool isRtf = text.starts_with(kRtfStart);
    addTableMarkers(text, services.guids);
    const TimedStage search(services, LogType::tagCollection);
    TopLevelTags found = findTopLevelTags(text);
    if (search) search.finish(searchDetail({}, text, found));
    if (found.tags.empty()) return text;
    TagList tags(services);
    tags.start(text, found, isRtf ? protectedContext(context) : context, nullptr);
    std::u16string result;
    Evaluation(tags, result).run();
    return result;
}

class Evaluation::Scratch {
public:
    struct Level {
        explicit Level(platform::Services& services) : tags(services) {}
        std::u16string value;
        TagList tags;
    };
    TopLevelTags found;  // of the text that is looked at now

    Level& level(platform::Services& services, std::size_t depth) {
        while (levels_.size() <= depth) levels_.push_back(std::make_unique<Level>(services));
        return *levels_[depth];
    }

private:
    std::vector<std::unique_ptr<Level>> levels_;
};

Evaluation::Evaluation(TagList& tags, std::u16string& target)
    : tags_(tags), target_(target), base_(target.size()), finished_(target.size()), scanFrom_(target.size()) {
    tags_.beginEvaluation();
}

Evaluation::Evaluation(TagList& tags, std::u16string& target, Scratch& scratch, std::size_t depth)
    : Evaluation(tags, target) {
    scratch_ = &scratch;
    depth_ = depth;
}

Evaluation::~Evaluation() {
    tags_.endEvaluation();
}

Evaluation::Scratch& Evaluation::scratch() {
    if (scratch_ == nullptr) {
        ownScratch_ = std::make_unique<Scratch>();
        scratch_ = ownScratch_.get();
    }
    return *scratch_;
}

std::u16string Evaluation::soFar() const {
    if (literalText_ != nullptr) return *literalText_;
    if (pairedText_ != nullptr) return pairedText_->assemble();
    return target_.substr(base_, finished_ - base_) + std::u16string(tags_.source().substr(position_));
}

void Evaluation::run() {
    tags_.beginResults(target_, base_);
    for (std::size_t index = 0; index < tags_.size(); ++index) {
        const TagSpan span = tags_.span(index);
        finishTo(span.open);
        if (!ownPlaceIsFirst(index)) {
            runLiterally(index);
            return;
        }
        position_ = span.end();
        appendResult(index, target_, base_);
        finished_ = target_.size();
    }
    target_.append(tags_.source().substr(position_));
}

void Evaluation::finishTo(std::size_t position) {
    const std::size_t gap = target_.size();
    target_.append(tags_.source().substr(position_, position - position_));
    position_ = position;
    finished_ = target_.size();
    lookForMarkers(gap);
}

// Markers come into the finished part with strays of the source, with results, and where a result
// and its neighbours form one.
void Evaluation::lookForMarkers(std::size_t gap) {
    constexpr std::size_t reach = kOpeningMarker.size() - 1;
    const std::u16string_view finished(target_);
    if (!markers_) {
        std::size_t opening = std::max(base_, std::min(scanFrom_, gap));
        if (tags_.firstStray() >= position_) {
            const std::size_t end = std::min(gap + reach, finished.size());
            opening = findOpeningMarker(finished.substr(0, end), scanFrom_);
        }
        if (opening != npos) markers_ = std::make_unique<FinishedMarkers>(opening);
    }
    if (markers_) markers_->scan(finished);
    scanFrom_ = std::max(base_, finished.size() - std::min(reach, finished.size()));
}

bool Evaluation::ownPlaceIsFirst(std::size_t index) {
    const std::u16string_view name = tags_.rawName(index);
    const bool hasSeparator = name.ends_with(kElementSeparator);
    if (hasSeparator && !markers_) return true;
    if (!markers_ && !hasOpeningMarkerAfter(index)) return true;
    if (!hasSeparator && !pairs_) pairs_ = std::make_unique<PairIndex>(tags_.source());
    if (!markers_ && pairs_->isEmpty()) return true;
    const std::uint64_t hash = RollingHash::of(name);
    if (markers_ && markers_->holds(hash)) return false;
    if (hasSeparator) return true;
    const std::uint64_t longer = RollingHash::add(hash, kElementSeparator);
    return !pairs_->standsBehind(longer, position_) && !(markers_ && markers_->holds(longer));
}

bool Evaluation::hasOpeningMarkerAfter(std::size_t index) const {
    return index + 1 < tags_.size() || findOpeningMarker(tags_.source(), tags_.span(index).end()) != npos;
}

void Evaluation::appendResult(std::size_t index, std::u16string& results, std::size_t base) {
    const std::size_t start = results.size();
    const AnsweringOutermost answering(tags_, index);
    try {
        if (const std::shared_ptr<kvTag> tag = tags_.made(index)) {
            results += *tag->resultText();
        } else if (isTimed_ || !answerBuiltIn(index, results, base)) {
            results += *tags_.item(index)->resultText();
            tags_.settleObject(index, start - base, results.size() - start);
        }
    } catch (const std::exception&) {
        // Only memory fails here: the tag yields nothing.
        results.resize(start);
        tags_.settle(index, start - base, 0);
        addErrorLogEntry(tags_.services(), *tags_.context()->errorLog,
                         {BuiltInCommands::handler, u"Out of memory", 7, tags_.rawName(index), {}});
    }
}

bool Evaluation::answerBuiltIn(std::size_t index, std::u16string& results, std::size_t base) {
    const std::u16string_view name = tags_.rawName(index);
    const std::size_t separator = name.find(kHandlerSeparator);
    if (separator == npos) {
        tags_.settle(index, results.size() - base, 0);
        return true;
    }
    if (!equalIgnoringCase(name.substr(0, separator), BuiltInCommands::handler)) return false;
    tags_.beginTag(index);
    EvaluationLevel level;
    std::optional<EvaluationLimit> limit = level.refused();
    if (!limit) limit = EvaluationRun::current().countDispatch();
    if (limit) {
        report(*limit, index);
        tags_.settle(index, results.size() - base, 0);
        return true;
    }
    const std::size_t start = results.size();
    appendBuiltIn(index, results);
    tags_.settle(index, start - base, results.size() - start);
    return true;
}

// The value lies in the tag's own text where it can, else in `text`.
std::u16string_view Evaluation::makeValue(std::size_t index, std::u16string& text) {
    const std::u16string_view name = tags_.rawName(index);
    const std::optional<std::u16string_view> quick = BuiltInCommands::property(name, *tags_.context(), text);
    if (quick && quick->data() != text.data()) {
        if (isFit_ || isFit(tags_.context()->protectRtf, *quick)) return counted(index, *quick);
        text = *quick;
    } else if (!quick) {
        text = BuiltInCommands(tags_.services(), tags_.context(), tags_.storedName(index)).run();
    }
    if (const auto limit = fitAndCount(tags_.services(), tags_.context()->protectRtf, text)) report(*limit, index);
    return text;
}

std::u16string_view Evaluation::counted(std::size_t index, std::u16string_view value) {
    const auto limit = EvaluationRun::current().countCharacters(value.size());
    if (!limit) return value;
    report(*limit, index);
    return {};
}

void Evaluation::report(EvaluationLimit limit, std::size_t index) {
    reportLimit(tags_.services(), *tags_.context(), limit, BuiltInCommands::handler, tags_.rawName(index));
}

void Evaluation::appendBuiltIn(std::size_t index, std::u16string& results) {
    Scratch::Level& level = scratch().level(tags_.services(), depth_);
    const std::u16string_view value = makeValue(index, level.value);
    TopLevelTags& found = scratch().found;
    const bool isOwn = value.data() == level.value.data();
    findTagsOf(value, isOwn, found);
    if (found.tags.empty()) {
        if (isOwn && results.empty() && results.capacity() < value.size()) {
            results.swap(level.value);
        } else {
            results += value;
        }
        return;
    }
    const HeldText held(isOwn ? value.size() : 0);
    if (!held.fits()) {
        report(EvaluationLimit::held, index);
        return;
    }
    const bool isRtf = value.starts_with(kRtfStart);
    level.tags.start(value, found, isRtf ? protectedContext(tags_.context()) : tags_.context(), tags_.kept());
    Evaluation nested(level.tags, results, scratch(), depth_ + 1);
    nested.isFit_ = !isOwn;
    nested.run();
    tags_.keepNested(index, level.tags);
}

void Evaluation::runLiterally(std::size_t from) {
    std::u16string results = target_.substr(base_);
    std::u16string text = results + std::u16string(tags_.source().substr(position_));
    tags_.beginResults(results, 0);
    while (from < tags_.size()) {
        from = runPaired(from, text, results);
        from = runPlainly(from, text, results);
    }
    target_.resize(base_);
    target_ += text;
    tags_.keepResults(std::make_shared<const std::u16string>(std::move(results)));
}

// Goes as far as the pairs of markers tell every place; gives the first tag that is left.
std::size_t Evaluation::runPaired(std::size_t from, std::u16string& text, std::u16string& results) {
    PairedText pairs(std::move(text));
    pairedText_ = &pairs;
    std::size_t index = from;
    for (; index < tags_.size(); ++index) {
        const std::u16string name = tags_.storedName(index);
        const bool isPair = !becomesMarker(tags_.rawName(index));
        if (!pairs.isProven() || (!isPair && pairs.mayHoldEmptyPair())) break;
        std::optional<PairedText::Place> place;
        if (isPair) place = pairs.find(name);
        if (!place) place = pairs.find(std::u16string_view(name).substr(0, name.size() - 1));
        if (!place) continue;
        const std::size_t start = results.size();
        appendResult(index, results, 0);
        pairs.replace(*place, results.substr(start));
    }
    pairedText_ = nullptr;
    text = pairs.assemble();
    return index;
}

// Goes a few tags further without an index, as many as repay a new one.
std::size_t Evaluation::runPlainly(std::size_t from, std::u16string& text, std::u16string& results) {
    constexpr std::size_t kTurns = 64;
    const std::size_t end = std::min(from + kTurns, tags_.size());
    literalText_ = &text;
    for (std::size_t index = from; index < end; ++index) {
        const std::u16string name = tags_.storedName(index);
        if (!replaceLiterally(index, name, text, results)) {
            replaceLiterally(index, std::u16string_view(name).substr(0, name.size() - 1), text, results);
        }
    }
    literalText_ = nullptr;
    return end;
}

bool Evaluation::replaceLiterally(std::size_t index, std::u16string_view name, std::u16string& text,
                                  std::u16string& results) {
    const std::size_t place = findTagText(text, name);
    if (place == npos) return false;
    text.erase(place, kOpeningMarker.size() + name.size() + kClosingMarker.size());
    const std::size_t start = results.size();
    appendResult(index, results, 0);
    text.insert(place, results, start);
    return true;
}

}  // namespace velmor
