#include "process/ProcessObjects.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "automation/Convert.h"
#include "automation/DispatchTable.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::process {

using automation::Arguments;
using automation::MemberKind;
using automation::Variant;
using Json = nlohmann::json;

namespace {

constexpr std::u16string_view prefix = u"process:";
constexpr std::int32_t level = 4;           // see ITag4
constexpr std::int32_t firstParameter = 3;  // among the elements of a tag
constexpr int mostQuestions = 100'000;      // of one tag

std::u16string member(const Json& object, const char* name) {
    const auto found = object.find(name);
    return found != object.end() && found->is_string() ? fromUtf8(found->get<std::string>()) : std::u16string();
}

}  // namespace

// A program while it answers: it goes back to the idle ones unless something fails.
class Conversation {
public:
    Conversation(ProcessObjects& objects, const std::string& command) : objects_(objects), command_(command) {
        auto& idle = objects_.idle_[command];
        if (idle.empty()) {
            program_ = std::make_unique<ChildProcess>(command);
        } else {
            program_ = std::move(idle.back());
            idle.pop_back();
        }
    }

    Json ask(const Json& question) {
        program_->send(question.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
        const std::string line = program_->receive();
        Json answer = Json::parse(line, nullptr, false);
        if (answer.is_object()) return answer;
        throw Error(automationError, u"The handler's answer is not a JSON object: " + fromUtf8(line.substr(0, 100)));
    }
    void end() { objects_.idle_[command_].push_back(std::move(program_)); }

private:
    ProcessObjects& objects_;
    const std::string& command_;
    std::unique_ptr<ChildProcess> program_;
};

namespace {

class ProcessHandler final : public automation::Object {
public:
    ProcessHandler(ProcessObjects& objects, std::string command) : objects_(objects), command_(std::move(command)) {}

    Variant invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) override;
    std::u16string typeName() const override { return u"ProcessHandler"; }

private:
    std::u16string answer(const automation::ObjectRef& object);
    std::u16string list(const Json& items) const;
    Json described(std::u16string_view command);

    ProcessObjects& objects_;
    const std::string command_;
};

Variant ProcessHandler::invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) {
    using Self = ProcessHandler;
    static const automation::DispatchTable members({
        {u"Interface", MemberKind::get, 0, 0, [](Self&, Arguments&) { return Variant(level); }},
        {u"GetTagValue", MemberKind::method, 1, 1,
         [](Self& self, Arguments& given) { return Variant(self.answer(given.object(0))); }},
        {u"CommandList", MemberKind::get, 0, 2,
         [](Self& self, Arguments&) { return Variant(self.list(self.described({}))); }},
        {u"ParameterList", MemberKind::get, 1, 3,
         [](Self& self, Arguments& given) {
             return Variant(self.list(self.described(given.text(0)).value("parameters", Json::object())));
         }},
        {u"SyntaxString", MemberKind::get, 1, 3,
         [](Self& self, Arguments& given) { return Variant(member(self.described(given.text(0)), "syntax")); }},
        {u"CommandDescription", MemberKind::get, 1, 3,
         [](Self& self, Arguments& given) { return Variant(member(self.described(given.text(0)), "description")); }},
        {u"ParameterValueList", MemberKind::get, 2, 4,
         [](Self& self, Arguments& given) {
             const Json parameters = self.described(given.text(0)).value("parameters", Json::object());
             return Variant(self.list(parameters.value(toUtf8(given.text(1)), Json::array())));
         }},
    });
    try {
        return members.invoke(*this, name, kind, arguments);
    } catch (const Json::exception&) {
        throw Error(automationError, u"The handler's answer has the wrong form");
    }
}

// The names of an object or the texts of an array, each with ":" after it.
std::u16string ProcessHandler::list(const Json& items) const {
    std::u16string text;
    for (const auto& [name, value] : items.items()) {
        text += (value.is_string() && items.is_array() ? fromUtf8(value.get<std::string>()) : fromUtf8(name)) + u':';
    }
    return text;
}

// All commands, or one of them.
Json ProcessHandler::described(std::u16string_view command) {
    Conversation conversation(objects_, command_);
    const Json commands = conversation.ask({{"describe", true}}).value("commands", Json::object());
    conversation.end();
    return command.empty() ? commands : commands.value(toUtf8(command), Json::object());
}

Variant get(automation::Object& object, std::u16string_view property, std::span<Variant> arguments = {}) {
    return object.invoke(property, automation::InvokeKind::get, arguments);
}

Variant item(automation::Object& collection, Variant key) {
    return get(collection, u"Item", {&key, 1});
}

std::string textOf(const Variant& value) {
    return toUtf8(automation::toText(value).value_or(u""));
}

automation::ObjectRef required(automation::ObjectRef object) {
    if (!object) throw Error(13);
    return object;
}

Json questionOf(automation::Object& tag) {
    Json parameters = Json::object();
    const automation::ObjectRef elements = required(get(tag, u"Elements").object());
    const std::int32_t count = automation::toLong(get(*elements, u"Count")).value_or(0);
    for (std::int32_t index = firstParameter; index <= count; ++index) {
        const automation::ObjectRef element = required(item(*elements, index).object());
        const Variant name = get(*element, u"Name");
        parameters.emplace(textOf(name), textOf(automation::call(tag, u"GetProcessedElementsValue", name)));
    }
    return {{"tag",
             {{"handler", textOf(get(tag, u"HandlerName"))},
              {"command", textOf(get(tag, u"CommandName"))},
              {"value", textOf(get(tag, u"CommandValueProcessed"))},
              {"parameters", std::move(parameters)},
              {"rtf", automation::truth(get(tag, u"ProtectRTF"))}}}};
}

// What the program asks for before it answers.
Json answerTo(automation::Object& tag, const Json& question) {
    if (question.contains("evaluate")) {
        return {{"value", textOf(automation::call(tag, u"ProcessValue", member(question, "evaluate")))}};
    }
    const automation::ObjectRef properties = required(get(tag, u"Properties").object());
    if (question.contains("set")) {
        automation::call(*properties, u"Add", member(question, "set"), member(question, "value"), true);
        return {{"value", nullptr}};
    }
    if (!question.contains("property")) throw Error(automationError, u"The handler's answer has no known member");
    const automation::ObjectRef property = item(*properties, member(question, "property")).object();
    return {{"value", property ? Json(textOf(get(*property, u"ValueStr"))) : Json(nullptr)}};
}

std::u16string ProcessHandler::answer(const automation::ObjectRef& object) {
    const automation::ObjectRef tag = required(object);
    Json question = questionOf(*tag);  // it may start the same handler
    Conversation conversation(objects_, command_);
    for (int questions = 0; questions < mostQuestions; ++questions) {
        const Json reply = conversation.ask(question);
        if (!reply.contains("result") && !reply.contains("error")) {
            question = answerTo(*tag, reply);
            continue;
        }
        conversation.end();
        if (reply.contains("error")) throw Error(automationError, member(reply, "error"));
        return member(reply, "result");
    }
    throw Error(automationError, u"The handler asks without end");
}

}  // namespace

ProcessObjects::~ProcessObjects() {
    for (auto& [command, programs] : idle_) {
        for (const auto& program : programs) {
            try {
                program->send("{\"end\":true}\n");
            } catch (const std::exception&) {
                // It has ended by itself.
            }
        }
    }
}

automation::ObjectRef ProcessObjects::create(std::u16string_view className) {
    if (!className.starts_with(prefix)) return machine_.create(className);
    return std::make_shared<ProcessHandler>(*this, toUtf8(className.substr(prefix.size())));
}

}  // namespace velmor::process
