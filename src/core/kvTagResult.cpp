// kvTag: evaluation, and dispatch of the tag itself.

#include "core/BuiltInCommands.h"
#include "core/ErrorLog.h"
#include "core/Evaluation.h"
#include "core/TagList.h"
#include "core/TimingLog.h"
#include "core/kvTag.h"
#include "core/kvTags.h"
#include "handlers/ITag4.h"
#include "properties/privProperties.h"
#include "text/Error.h"
#include "text/privStrCat.h"

namespace velmor {

namespace {

// Sets a value for as long as it lives.
template <class T>
class Temporarily {
public:
    Temporarily(T& target, T value) : target_(target), before_(target) { target = value; }
    ~Temporarily() { target_ = before_; }
    Temporarily(const Temporarily&) = delete;
    Temporarily& operator=(const Temporarily&) = delete;

private:
    T& target_;
    T before_;
};

}  // namespace

std::u16string kvTag::Result() {
    return *resultText();
}

TextRef kvTag::resultText() {
    const std::shared_ptr<Object> alive = keep();
    if (answering_ && evaluation_ != nullptr) return std::make_shared<const std::u16string>(evaluation_->soFar());
    if (!answering_ && !resultGenerated_) evaluate();
    return result_;
}

const privStrCat& kvTag::resultBuilder() {
    const std::shared_ptr<Object> alive = keep();
    if (!resultGenerated_ && !answering_) evaluate();
    if (!resultBuilder_) resultBuilder_ = std::make_unique<privStrCat>();
    resultBuilder_->Reset();
    resultBuilder_->Append(*resultText());
    return *resultBuilder_;
}

void kvTag::evaluate() {
    Temporarily<bool> answering(answering_, true);
    const TimedStage stage(services_, LogType::result, !isChild_);
    EvaluationLevel level;
    if (const auto limit = level.refused()) {
        reportLimit(services_, *sharedContext(), *limit, ownHandler(), name_);
        result_ = std::make_shared<const std::u16string>();
        resultGenerated_ = true;
        return;
    }
    try {
        if (!tagsBuilt_) dispatch();
        const std::uint32_t changes = changes_;
        evaluateValue();
        // A handler that set this tag's value meanwhile has armed it again.
        resultGenerated_ = changes == changes_;
        stage.finish({});
    } catch (const std::exception&) {
        logFailure();
        resultGenerated_ = true;
    }
}

void kvTag::evaluateValue() {
    // Handlers may replace both.
    const TextRef value = value_;
    const std::shared_ptr<kvTags> tags = tags_;
    if (value->starts_with(kRtfStart)) ProtectRTF(true);
    EvaluationRun& run = EvaluationRun::current();
    if (!isChild_ && run.level() == 1) run.countCharacters(value->size());
    if (run.level() == 1) run.beginText(value->size());
    if (!tags || tags->Count() == 0) {
        result_ = value;
        return;
    }
    const HeldText held(run.level() > 1 ? value->size() : 0);
    if (!held.fits()) {
        reportLimit(services_, *sharedContext(), EvaluationLimit::held, ownHandler(), name_);
        result_ = std::make_shared<const std::u16string>();
        return;
    }
    auto result = std::make_shared<std::u16string>();
    result->reserve(value->size());
    {
        Evaluation evaluation(tags->list(), *result);
        Temporarily<const Evaluation*> running(evaluation_, &evaluation);
        evaluation.run();
    }
    tags->list().finishResults(result);
    result_ = std::move(result);
}

void kvTag::dispatch() {
    const TimedStage stage(services_, LogType::dispatch);
    const std::size_t separator = name_.find(kHandlerSeparator);
    if (separator == std::u16string::npos) {
        becomeEmpty();
        stage.finish({});
        return;
    }
    const HandlerAddress address = HandlerAddress::parse(std::u16string_view(name_).substr(0, separator));
    if (const auto limit = EvaluationRun::current().countDispatch()) {
        reportLimit(services_, *sharedContext(), *limit, address.name, name_);
        becomeEmpty();
        return;
    }
    try {
        if (address.name == BuiltInCommands::handler) {
            const ContextRef context = sharedContext();
            const std::shared_ptr<privProperties> elements = elements_;  // as somebody may have changed them
            const std::u16string name = name_;
            const BuiltInCommands commands(services_, context, name);
            takeAnswer(elements ? commands.run(*elements) : commands.run());
        } else {
            answerByHandler(address);
        }
        stage.finish(address.name);
    } catch (const std::exception&) {
        logFailure(address.name);
    }
}

void kvTag::becomeEmpty() {
    value_ = std::make_shared<const std::u16string>();
    tags_ = std::make_shared<kvTags>();
    tagsBuilt_ = true;
}

void kvTag::answerByHandler(const HandlerAddress& address) {
    const std::u16string className = address.className(services_.registry);
    if (className.empty()) {
        answerWithoutHandler(address, u"kvTag.No Handler Message", u"system handler not found",
                             u"Tag Handler not found. The handler's class name is not registered");
        return;
    }
    const ITag4 handler = ITag4::create(services_.objects, className);
    if (!ITag4::answersTags(handler.Interface())) {
        answerWithoutHandler(address, u"kvTag.Old Handler Message", u"system handler too old",
                             u"Tag Handler is for an old version of Quillmark. Handler Class: " + className);
        return;
    }
    takeAnswer(handler.GetTagValue(shared_from_this()));
    handler.Dispose();
}

void kvTag::answerWithoutHandler(const HandlerAddress& address, std::u16string_view messageProperty,
                                 std::u16string_view defaultMessage, std::u16string_view error) {
    const Collection properties = Properties();
    if (properties.truth(u"kvTag.No Handler Show Message", false)) {
        const std::u16string message = properties.getText(messageProperty, automation::Variant(defaultMessage));
        value_ = std::make_shared<const std::u16string>(message + u": " + address.name);
    }
    LogError(address.name, error);
}

void kvTag::takeAnswer(std::u16string value) {
    if (value.starts_with(kRtfStart)) ProtectRTF(true);
    if (const auto limit = fitAndCount(services_, ProtectRTF(), value)) {
        reportLimit(services_, *sharedContext(), *limit, ownHandler(), name_);
    }
    auto answer = std::make_shared<const std::u16string>(std::move(value));
    tags_ = findTags(answer);
    value_ = std::move(answer);
    tagsBuilt_ = true;
}

void kvTag::logFailure(std::u16string_view handler) noexcept {
    try {
        const std::u16string name = handler.empty() ? ownHandler() : std::u16string(handler);
        std::int32_t number = 7;
        try {
            throw;
        } catch (const Error& error) {
            number = error.number();
            LogError(name, error.description(), number, name_);
        } catch (const std::exception&) {
            LogError(name, u"Out of memory", number, name_);
        }
    } catch (const std::exception&) {
        // No memory for the log: the entry is left out.
    }
}

void kvTag::adoptOutcome(TextRef value, std::shared_ptr<kvTags> tags, TextRef result) {
    value_ = std::move(value);
    tags_ = std::move(tags);
    result_ = std::move(result);
    if (value_->starts_with(kRtfStart)) ProtectRTF(true);
    tagsBuilt_ = true;
    resultGenerated_ = true;
    answering_ = false;
}

}  // namespace velmor
