#include "api/ProgramHandlers.h"

#include <memory>
#include <new>
#include <utility>

#include "automation/DispatchTable.h"
#include "core/kvTag.h"
#include "handlers/ITag4.h"
#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::api {
namespace {

using automation::Arguments;
using automation::MemberKind;
using automation::Variant;

// Precedes the path in the name of a program handler's class. No registered class name begins so.
constexpr std::u16string_view classPrefix = u"\\program\\";

constexpr std::int32_t levelThatAnswers = 3;  // see ITag4

class ProgramHandler final : public automation::Object {
public:
    explicit ProgramHandler(const Answer& answer) : answer_(answer) {}

    Variant invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) override {
        static const automation::DispatchTable members({
            {u"Interface", MemberKind::get, 0, 0,
             [](ProgramHandler&, Arguments&) { return Variant(levelThatAnswers); }},
            {u"GetTagValue", MemberKind::method, 1, 1,
             [](ProgramHandler& self, Arguments& given) { return Variant(self.answer(given.object(0))); }},
        });
        return members.invoke(*this, name, kind, arguments);
    }
    std::u16string typeName() const override { return u"ProgramHandler"; }

private:
    std::u16string answer(const automation::ObjectRef& object) const {
        const auto tag = std::dynamic_pointer_cast<kvTag>(object);
        if (!tag) throw Error(13);
        try {
            return answer_(TagCall(*tag));
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            throw Error(automationError, fromUtf8(error.what()));
        }
    }

    const Answer& answer_;
};

}  // namespace

void ProgramHandlers::set(std::u16string_view name, Answer answer) {
    const HandlerAddress address = HandlerAddress::parse(name);
    const std::u16string key(address.group.empty() ? handlersKey : subHandlersKey);
    answers_[upperCase(key + u'\\' + address.group + address.name)] = std::move(answer);
}

std::optional<std::u16string> ProgramHandlers::value(std::u16string_view key, std::u16string_view name) const {
    std::u16string path(key);
    if (!path.ends_with(u'\\')) path += u'\\';
    path += name;
    if (answers_.contains(upperCase(path))) return std::u16string(classPrefix).append(path);
    return registry_.value(key, name);
}

automation::ObjectRef ProgramHandlers::create(std::u16string_view className) {
    if (!className.starts_with(classPrefix)) return objects_.create(className);
    const auto found = answers_.find(upperCase(className.substr(classPrefix.size())));
    if (found == answers_.end()) throw Error(429);
    return std::make_shared<ProgramHandler>(found->second);
}

}  // namespace velmor::api
