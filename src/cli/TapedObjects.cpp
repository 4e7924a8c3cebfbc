#include "cli/TapedObjects.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "cli/RecordValues.h"
#include "text/Error.h"

namespace velmor::cli {

using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;

namespace {

Json raisedForm(const Error& error) {
    return {{"raised", {error.number(), textForm(error.source()), textForm(error.description())}}};
}

// The error that every other exception becomes in an evaluation.
const Error& outOfMemory() {
    static const Error error(7, u"Out of memory");
    return error;
}

[[noreturn]] void raise(const Json& form) {
    throw Error(form.at(0).get<std::int32_t>(), textOf(form.at(1)), textOf(form.at(2)));
}

// A member and the forms of its arguments come after the object's number.
Json callForm(std::uint64_t number, std::u16string_view name, InvokeKind kind) {
    return Json::array({number, kindForm(kind), textForm(name)});
}
constexpr std::size_t firstArgument = 3;

}  // namespace

// While replaying there is no real object.
struct TapedObjects::Outsider final : automation::Object {
    Outsider(std::shared_ptr<TapedObjects> by, std::uint64_t given, std::u16string name, ObjectRef object)
        : tape(std::move(by)), number(given), type(std::move(name)), real(std::move(object)) {}
    ~Outsider() override { tape->forget(*this); }

    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override {
        return tape->callOutside(*this, name, kind, arguments);
    }
    std::u16string typeName() const override { return type; }
    Json form() const { return {"outside", number, textForm(type)}; }

    const std::shared_ptr<TapedObjects> tape;
    const std::uint64_t number;
    const std::u16string type;
    const ObjectRef real;
};

struct TapedObjects::Insider final : automation::Object {
    Insider(std::shared_ptr<TapedObjects> by, std::uint64_t given, ObjectRef real)
        : tape(std::move(by)), number(given), object(std::move(real)) {}
    ~Insider() override { tape->release(number); }

    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override {
        return tape->callInside(*this, name, kind, arguments);
    }
    std::u16string typeName() const override { return object->typeName(); }

    const std::shared_ptr<TapedObjects> tape;
    const std::uint64_t number;
    const ObjectRef object;
};

void TapedObjects::close() {
    isClosed_ = true;
    insideNumbers_.clear();
    std::exchange(inside_, {}).clear();
}

// Another object may have the same address or number by now.
void TapedObjects::forget(const Outsider& outsider) noexcept {
    const auto eraseExpired = [](auto& map, auto key) {
        const auto known = map.find(key);
        if (known != map.end() && known->second.expired()) map.erase(known);
    };
    eraseExpired(outsiders_, outsider.real.get());
    eraseExpired(outsidersByNumber_, outsider.number);
}

// --- forms ---

Json TapedObjects::outsideForm(const Variant& value, Held& held) {
    if (!value.isObject()) return valueForm(value);
    const ObjectRef real = value.object();
    if (!real) return {"nothing"};
    if (const auto insider = std::dynamic_pointer_cast<Insider>(real)) return {"inside", insider->number};
    std::shared_ptr<Outsider> outsider = outsiders_[real.get()].lock();
    if (!outsider) {
        outsider = std::make_shared<Outsider>(shared_from_this(), ++lastOutside_, real->typeName(), real);
        outsiders_[real.get()] = outsider;
        outsidersByNumber_[lastOutside_] = outsider;
    }
    held.push_back(outsider);
    return outsider->form();
}

Json TapedObjects::insideForm(const Variant& value, Held& held) {
    if (!value.isObject()) return valueForm(value);
    const ObjectRef object = value.object();
    if (!object) return {"nothing"};
    if (const auto outsider = std::dynamic_pointer_cast<Outsider>(object)) return outsider->form();
    return {"inside", numberOf(object, held)};
}

std::uint64_t TapedObjects::numberOf(const ObjectRef& object, Held& held) {
    const auto [place, isNew] = insideNumbers_.try_emplace(object.get(), lastInside_ + 1);
    if (isNew) {
        Known& known = inside_[++lastInside_];
        known.key = object.get();
        if (tape_.isReplaying()) {
            known.object = object;
        } else {
            const auto insider = std::make_shared<Insider>(shared_from_this(), lastInside_, object);
            known.seen = insider;
            held.push_back(insider);
        }
    } else if (const auto insider = inside_[place->second].seen.lock()) {
        held.push_back(insider);
    }
    return place->second;
}

ObjectRef TapedObjects::objectOf(const Json& form) {
    const std::string& side = form.at(0).get_ref<const std::string&>();
    if (side == "nothing") return nullptr;
    const auto number = form.at(1).get<std::uint64_t>();
    if (side == "inside") {
        const auto known = inside_.find(number);
        if (known == inside_.end()) throw std::out_of_range("object");
        if (known->second.object) return known->second.object;
        const std::shared_ptr<Insider> insider = known->second.seen.lock();
        return insider ? insider->object : nullptr;
    }
    std::weak_ptr<Outsider>& known = outsidersByNumber_[number];
    std::shared_ptr<Outsider> outsider = known.lock();
    if (!outsider) {
        outsider = std::make_shared<Outsider>(shared_from_this(), number, textOf(form.at(2)), nullptr);
        known = outsider;
    }
    return outsider;
}

Variant TapedObjects::valueOfForm(const Json& form) {
    const std::string& type = form.at(0).get_ref<const std::string&>();
    const bool isObject = type == "nothing" || type == "inside" || type == "outside";
    return isObject ? Variant(objectOf(form)) : valueOf(form);
}

Variant TapedObjects::handedOut(const Variant& value, Held& held) {
    const ObjectRef object = value.object();
    if (!object) return value;
    if (const auto outsider = std::dynamic_pointer_cast<Outsider>(object)) return outsider->real;
    return inside_[numberOf(object, held)].seen.lock();
}

// --- calls of the outside ---

Variant TapedObjects::callOutside(Outsider& target, std::u16string_view name, InvokeKind kind,
                                  std::span<Variant> arguments) {
    if (isClosed_) return target.real ? target.real->invoke(name, kind, arguments) : Variant();
    tape_.settle();
    Held held;
    Json question = callForm(target.number, name, kind);
    try {
        for (const Variant& argument : arguments) question.push_back(insideForm(argument, held));
    } catch (const std::invalid_argument& reason) {
        tape_.fail(std::string("the evaluation cannot be recorded: a handler gets ") + reason.what());
    }
    const Json answer = tape_.ask(std::move(question), [&] { return realCall(target, name, kind, arguments, held); });
    Variant result;
    Json raised;
    const bool isRead = tape_.read(answer, [&](const Json& given) {
        if (given.contains("raised")) return static_cast<void>(raised = given["raised"]);
        result = valueOfForm(given.at("gave"));
        if (!given.contains("arguments")) return;
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            arguments[index] = valueOfForm(given["arguments"].at(index));
        }
    });
    if (!isRead) throw Error(5, u"There is no answer in the record");
    if (!raised.is_null()) raise(raised);
    return result;
}

// While recording.
Json TapedObjects::realCall(Outsider& target, std::u16string_view name, InvokeKind kind, std::span<Variant> arguments,
                            Held& held) {
    try {
        std::vector<Variant> given;
        for (const Variant& argument : arguments) given.push_back(handedOut(argument, held));
        const std::vector<Variant> before = given;
        const Variant result = target.real->invoke(name, kind, given);
        Json answer = Json::object({{"gave", outsideForm(result, held)}});
        bool isChanged = false;
        for (std::size_t index = 0; index < given.size(); ++index) {
            isChanged = isChanged || !given[index].identical(before[index]);
        }
        if (!isChanged) return answer;
        Json& changed = answer["arguments"] = Json::array();
        for (const Variant& argument : given) changed.push_back(outsideForm(argument, held));
        return answer;
    } catch (const Error& error) {
        return raisedForm(error);
    } catch (const std::invalid_argument& reason) {
        tape_.fail(std::string("the evaluation cannot be recorded: a handler gives ") + reason.what());
    } catch (const std::exception&) {
    }
    return raisedForm(outOfMemory());
}

// --- calls of the evaluation's objects ---

Variant TapedObjects::callInside(Insider& target, std::u16string_view name, InvokeKind kind,
                                 std::span<Variant> arguments) {
    if (isClosed_) return target.object->invoke(name, kind, arguments);
    Held held;
    std::vector<Variant> given;
    Json question = callForm(target.number, name, kind);
    try {
        for (const Variant& argument : arguments) {
            question.push_back(outsideForm(argument, held));
            given.push_back(valueOfForm(question.back()));
        }
    } catch (const std::invalid_argument& reason) {
        tape_.fail(std::string("the evaluation cannot be recorded: a handler passes ") + reason.what());
        throw Error(13);
    }
    const std::vector<Variant> before = given;
    Variant result;
    std::optional<Error> raised;
    tape_.askBack(std::move(question), [&] {
        try {
            const Variant value = target.object->invoke(name, kind, given);
            result = handedOut(value, held);
            return Json::object({{"gave", value.isObject() ? insideForm(value, held) : Json()}});
        } catch (const Error& error) {
            raised = error;
        } catch (const std::exception&) {
            raised = outOfMemory();
        }
        return raisedForm(*raised);
    });
    if (raised) throw Error(*raised);
    for (std::size_t index = 0; index < given.size(); ++index) {
        if (!given[index].identical(before[index])) arguments[index] = handedOut(given[index], held);
    }
    return result;
}

// While replaying.
ObjectRef TapedObjects::perform(const Json& question) {
    const ObjectRef target = objectOf({"inside", question.at(0)});
    const InvokeKind kind = kindOf(question.at(1));
    const std::u16string name = textOf(question.at(2));
    std::vector<Variant> arguments;
    for (std::size_t index = firstArgument; index < question.size(); ++index) {
        arguments.push_back(valueOfForm(question[index]));
    }
    try {
        const ObjectRef given = target->invoke(name, kind, arguments).object();
        return std::dynamic_pointer_cast<Outsider>(given) ? nullptr : given;
    } catch (const std::exception&) {
        return nullptr;  // what the handler made of it is in the record
    }
}

void TapedObjects::number(std::uint64_t number, const ObjectRef& object) {
    const auto [place, isNew] = insideNumbers_.try_emplace(object.get(), number);
    if (place->second != number) throw std::invalid_argument("number");
    if (!isNew) return;
    inside_[number] = {object.get(), object, {}};
    lastInside_ = std::max(lastInside_, number);
}

void TapedObjects::release(std::uint64_t number) {
    if (isClosed_) return;
    const auto known = inside_.find(number);
    if (known == inside_.end()) return;
    insideNumbers_.erase(known->second.key);
    const Known last = std::move(known->second);
    inside_.erase(known);
    if (!tape_.isReplaying()) tape_.release(number);
}

}  // namespace velmor::cli
