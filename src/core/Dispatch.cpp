#include "core/Dispatch.h"

#include <algorithm>

#include "core/BuiltInCommands.h"
#include "core/ErrorLog.h"
#include "core/EvaluationRules.h"
#include "core/Rows.h"
#include "core/TagList.h"
#include "core/TimingLog.h"
#include "core/kvTag.h"
#include "handlers/ITag4.h"
#include "rtf/edit/ProtectRTF.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {

namespace {

// One tag on its way to its answer.
class Dispatch {
public:
    Dispatch(const TagRequest& request, TagAnswer& answer)
        : request_(request), handler_(request.name.substr(0, request.name.find(handlerSeparator))), answer_(answer) {}

    void run() {
        const TimedStage stage(request_.services, LogType::dispatch);
        answer_.hasValue = answer_.isSearched = true;  // the empty text
        if (handler_.size() == request_.name.size()) {
            stage.finish({});
            return;
        }
        if (!request_.tag || equalIgnoringCase(handler_, builtInHandler)) {
            address_.name = builtInHandler;
        } else {
            address_ = HandlerAddress::parse(handler_);
        }
        if (EvaluationRun::current().hasFailed) return;
        if (const auto limit = EvaluationRun::current().countDispatch()) {
            report(*limit);
            return;
        }
        answer_.hasValue = answer_.isSearched = false;
        answer_.origin = request_.context->origin;
        EvaluationRun::current().keepsTag = false;
        try {
            if (address_.name == builtInHandler) {
                answerBuiltIn();
            } else {
                answerByHandler();
            }
            stage.finish(address_.name);
        } catch (const std::exception&) {
            logFailure(request_.services, *request_.context->errorLog, address_.name, request_.name);
        }
    }

private:
    void answerBuiltIn() {
        const std::shared_ptr<privProperties> elements = request_.tag ? request_.tag->changedElements() : nullptr;
        if (!elements) {
            std::u16string buffer;
            const auto value = propertyText(request_.name, *request_.context, buffer);
            if (value && value->text.data() != buffer.data()) return takeView(*value);
            if (value) {
                answer_.text = std::move(buffer);
                return takeData(Origin::property);
            }
        }
        const std::u16string name = storedName(request_.name);
        takeCommand(answerCommand(request_.services, request_.context, name, elements.get()));
    }

    void answerByHandler() {
        const std::u16string className = address_.className(request_.services.registry);
        if (className.empty() && address_.name == rowsHandler && address_.group.empty()) {
            return takeCommand(repeatRows(*request_.tag));
        }
        if (className.empty()) {
            answerWithoutHandler(u"kvTag.No Handler Message", u"system handler not found",
                                 u"Tag Handler not found. The handler's class name is not registered");
            return;
        }
        const ITag4 handler(request_.services.objects.create(className));
        if (!ITag4::answersTags(handler.Interface())) {
            answerWithoutHandler(u"kvTag.Old Handler Message", u"system handler too old",
                                 u"Tag Handler is for an old version of Quillmark. Handler Class: " + className);
            return;
        }
        answer_.text = handler.GetTagValue(request_.tag);
        takeData(Origin::handler);
        handler.Dispose();
    }

    void answerWithoutHandler(std::u16string_view messageProperty, std::u16string_view defaultMessage,
                              std::u16string_view error) {
        const Collection& properties = request_.context->properties;
        if (properties.truth(u"kvTag.No Handler Show Message", false)) {
            answer_.text = properties.getText(messageProperty, automation::Variant(defaultMessage));
            answer_.text.append(u": ").append(address_.name);
            answer_.hasValue = true;
        }
        addErrorLogEntry(request_.services, *request_.context->errorLog, {address_.name, error, 0, {}, {}});
        if (rules_.missing != EvaluationRules::Missing::empty) answerAbsent(address_.name);
    }

    void takeCommand(CommandAnswer answer) {
        answer_.text = std::move(answer.text);
        if (!answer.absent.empty() && rules_.missing != EvaluationRules::Missing::empty) {
            addErrorLogEntry(request_.services, *request_.context->errorLog,
                             {address_.name, u"There is no value", 0, request_.name, answer.absent});
            return answerAbsent(answer.absent);
        }
        takeData(answer.origin);
    }

    // The value is answer_.text.
    void takeValue() {
        answer_.isRtf = answer_.text.starts_with(rtfStart);
        fitAndCount(isProtected());
        answer_.tags = searchTags(request_.services, address_.name, answer_.text);
        answer_.hasValue = answer_.isSearched = true;
    }

    // The value comes from there; what a tag of data yields is data.
    void takeData(Origin origin) {
        if (!EvaluationRun::current().tracksOrigins()) return takeValue();
        if (isAuthors(answer_.origin) && origin != Origin::author) answer_.origin = origin;
        takeValue();
        if (rules_.dataTags == EvaluationRules::DataTags::allow) return;
        const ContextRef context = contextWith(&TagContext::origin, answer_.origin, request_.context);
        const bool hasTags = !answer_.tags.tags.empty();
        if (hasTags && admitsTags(request_.services, *context, address_.name, request_.name)) return;
        if (isAuthors(answer_.origin) || rules_.dataTags != EvaluationRules::DataTags::refuse) return;
        // Pieces of markers, too: they could form one with the text around them.
        hideMarkers(answer_.text);
        answer_.tags = {};
    }

    // The value stays where it is if it can.
    void takeView(const PropertyText& value) {
        if (!isFitAsItIs(value)) {
            answer_.text = value.text;
            return value.origin == Origin::author ? takeValue() : takeData(value.origin);
        }
        answer_.hasValue = answer_.isSearched = true;
        EvaluationRun& run = EvaluationRun::current();
        answer_.isPart = value.origin == Origin::author;
        const auto limit = answer_.isPart ? run.countCharacters(value.text.size()) : run.countValue(value.text.size());
        if (limit) return report(*limit);
        answer_.view = value.text;
        if (!answer_.isPart) {
            answer_.tags = searchTags(request_.services, address_.name, value.text);
        } else if (value.text.starts_with(u'<')) {
            // It is one whole tag or holds no marker, so tags deep within each other are not sought anew at each level.
            answer_.tags.tags.push_back({0, static_cast<std::uint32_t>(value.text.size() - closingMarker.size())});
        }
    }

    bool isFitAsItIs(const PropertyText& value) const {
        const bool isOwn = value.origin == Origin::author;
        if (value.text.empty() || value.text.starts_with(rtfStart) || TimingLog::isOn(LogType::tagCollection))
            return false;
        if (!isOwn && EvaluationRun::current().tracksOrigins()) return false;
        return (isOwn && request_.isFit) || !isProtected() || protectedRTFLength(value.text) == value.text.size();
    }

    // Fits the value into RTF where `protect` asks for it, and counts its characters. Beyond a limit it is
    // empty, and no memory was taken for its escapes.
    void fitAndCount(bool protect) {
        std::u16string& value = answer_.text;
        EvaluationRun& run = EvaluationRun::current();
        const std::size_t longest = run.longestValue();
        std::size_t length = value.size();
        // Looked at again only where the escapes could be what goes beyond the limit.
        if (protect && length > longest / 3) length = protectedRTFLength(value);
        if (length <= longest) {
            fitIntoRtf(request_.services, protect, value);
            length = value.size();
        }
        const auto limit = run.countValue(length);
        if (!limit) return;
        std::u16string().swap(value);
        report(*limit);
    }

    void answerAbsent(std::u16string_view name) {
        answer_.text.clear();
        answer_.hasValue = answer_.isSearched = true;
        switch (rules_.missing) {
            case EvaluationRules::Missing::keep:
                answer_.text.append(openingMarker).append(request_.name).append(closingMarker);
                hideMarkers(answer_.text);
                EvaluationRun::current().keepsTag = true;
                return;
            case EvaluationRules::Missing::fail:
                EvaluationRun::current().hasFailed = true;
                return;
            default:
                answer_.text.append(u"[").append(name).append(u"?]");
                hideMarkers(answer_.text);
                takeValue();
        }
    }

    bool isProtected() const { return request_.tag ? request_.tag->ProtectRTF() : request_.context->protectRtf; }
    void report(EvaluationLimit limit) {
        reportLimit(request_.services, *request_.context, limit, address_.name, request_.name);
    }

    const TagRequest& request_;
    const EvaluationRules& rules_ = EvaluationRun::current().rules();
    const std::u16string_view handler_;  // as it is written
    HandlerAddress address_;
    TagAnswer& answer_;
};

}  // namespace

bool needsObject(std::u16string_view name) noexcept {
    const std::size_t separator = name.find(handlerSeparator);
    return separator != name.npos && !equalIgnoringCase(name.substr(0, separator), builtInHandler);
}

TagAnswer dispatch(const TagRequest& request) {
    TagAnswer answer;
    Dispatch(request, answer).run();
    return answer;
}

std::u16string handlerName(std::u16string_view name) {
    const std::size_t separator = name.find(handlerSeparator);
    if (separator == name.npos) return {};
    return HandlerAddress::parse(name.substr(0, separator)).name;
}

TopLevelTags searchTags(platform::Services& services, std::u16string_view handler, std::u16string_view text) {
    const TimedStage search(services, LogType::tagCollection);
    TopLevelTags found;
    if (text.size() <= static_cast<std::size_t>(maximumCharacters)) found = findTopLevelTags(text);
    if (search) search.finish(searchDetail(handler, text, found));
    return found;
}

bool admitsTags(platform::Services& services, const TagContext& context, std::u16string_view handler,
                std::u16string_view tagName) {
    using DataTags = EvaluationRules::DataTags;
    const DataTags rule = EvaluationRun::current().rules().dataTags;
    if (isAuthors(context.origin) || rule == DataTags::allow) return true;
    addErrorLogEntry(
        services, *context.errorLog,
        {handler, rule == DataTags::refuse ? u"Tags in a value were left as text" : u"Tags in a value were evaluated",
         0, tagName, context.origin == Origin::property ? u"from a property" : u"from a handler"});
    return rule == DataTags::report;
}

bool fitIntoRtf(platform::Services& services, bool protect, std::u16string& value) {
    const bool isRtf = value.starts_with(rtfStart);
    if (protect || isRtf) {
        ProtectRTFCode(value);
        addTableMarkers(value, services.guids);
    }
    return isRtf;
}

void reportLimit(platform::Services& services, const TagContext& context, EvaluationLimit limit,
                 std::u16string_view handler, std::u16string_view tagName) {
    if (!EvaluationRun::current().isFirst(limit)) return;
    addErrorLogEntry(services, *context.errorLog, {handler, limitMessage(limit), 0, tagName, {}});
}

}  // namespace velmor
