#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "handler_abi.h"

// Handlers in C++20, outside of Velmor's tree. One source makes a shared library for Linux and a COM class for Windows:
//
//     #include <velmor/handler.h>
//
//     using velmor::handler::Tag;
//
//     std::u16string greet(const Tag& tag) { return u"Hello " + tag.parameter(u"NAME", u"you"); }
//
//     constexpr velmor::handler::Command commands[] = {{u"GREET", u"HELLO>GREET:[NAME=name:]", u"A greeting"}};
//     constexpr velmor::handler::Class hello{.name = u"Sample.Hello",
//                                            .identifier = u"{01234567-89AB-CDEF-0123-456789ABCDEF}",
//                                            .description = u"Greets people",
//                                            .handler = u"HELLO",
//                                            .commands = commands,
//                                            .answer = &greet};
//     VELMOR_HANDLERS(hello)
//
// In CMake: find_package(Velmor 3 REQUIRED COMPONENTS handler), velmor_handler(hello Hello.cpp).

namespace velmor::handler {

// An error of automation. One that a handler raises is an entry of the error log, and the tag gives the empty text; any
// other std::exception counts as error 440 with its what().
class Failure : public std::exception {
public:
    Failure(std::int32_t number, std::u16string description) : number_(number), description_(std::move(description)) {}

    std::int32_t number() const noexcept { return number_; }
    const std::u16string& description() const noexcept { return description_; }
    const char* what() const noexcept override { return "velmor::handler::Failure"; }

private:
    std::int32_t number_;
    std::u16string description_;
};

// Days since 30 December 1899; the fraction is the time of the day, also of negative dates.
struct Date {
    double days = 0;
};

class Value;

// An automation object of the program. It lasts for the call of the handler. Members raise Failure.
class Object {
public:
    template <class... Arguments>
    Value get(std::u16string_view member, Arguments&&... arguments) const;
    template <class... Arguments>
    Value call(std::u16string_view member, Arguments&&... arguments) const;
    void let(std::u16string_view member, Value value) const;

    // A value in another type, by the rules of automation: an absent value is "", 0 and False. Raises Failure 13 if it
    // has none.
    std::u16string text(const Value& value) const;
    double number(const Value& value) const;
    Date date(const Value& value) const;

    // For this header alone.
    explicit Object(VelmorObject& lent) : object_(&lent, [](VelmorObject*) {}) {}
    explicit Object(std::shared_ptr<VelmorObject> owned) : object_(std::move(owned)) {}
    VelmorObject* raw() const noexcept { return object_.get(); }

private:
    Value invoke(std::int32_t kind, std::u16string_view member, std::span<const Value> arguments) const;
    Value convert(const Value& value, std::int32_t type) const;

    std::shared_ptr<VelmorObject> object_;
};

// What properties, arguments and results are: nothing, a text, a number, a date, a truth value or an object.
class Value {
public:
    Value() = default;
    Value(std::u16string text) : held_(std::move(text)) {}
    Value(std::u16string_view text) : held_(std::u16string(text)) {}
    Value(const char16_t* text) : held_(std::u16string(text)) {}
    Value(double number) : held_(number) {}
    Value(std::int32_t number) : held_(static_cast<double>(number)) {}
    Value(Date date) : held_(date) {}
    Value(bool truth) : held_(truth) {}
    Value(Object object) : held_(std::move(object)) {}
    template <class T>
    Value(T*) = delete;  // no pointer becomes a truth value

    bool isNothing() const noexcept { return held_.index() == 0; }
    // The value if it has that type (std::u16string, double, Date, bool, Object), else null.
    template <class T>
    const T* get() const noexcept {
        return std::get_if<T>(&held_);
    }

private:
    std::variant<std::monostate, std::u16string, double, Date, bool, Object> held_;
};

// The tag that a handler answers. Parameters and texts come with their tags evaluated. Members raise Failure.
class Tag {
public:
    explicit Tag(Object object) : object_(std::move(object)) {}

    // Upper case.
    std::u16string command() const { return object_.text(object_.get(u"CommandName")); }
    std::u16string commandValue() const { return object_.text(object_.get(u"CommandValueProcessed")); }
    std::u16string parameter(std::u16string_view name, std::u16string_view otherwise = u"") const {
        return object_.text(object_.call(u"GetProcessedElementsValue", name, otherwise));
    }
    // A property of the template in its own type; nothing if it is absent.
    Value property(std::u16string_view name) const;
    // Adds it or replaces its value.
    void setProperty(std::u16string_view name, Value value) const;
    std::u16string evaluate(std::u16string_view text) const {
        return object_.text(object_.call(u"ProcessValue", text));
    }
    // Whether the answer goes into an RTF document. Plain text is escaped for it by the engine.
    bool isForRtf() const { return object_.number(object_.get(u"ProtectRTF")) != 0; }
    void logError(std::u16string_view message) const {
        object_.call(u"LogError", object_.get(u"HandlerName"), message);
    }

    // Everything else that a tag offers; conversions of values.
    const Object& object() const noexcept { return object_; }

private:
    Object object_;
};

// What editors of templates show of a handler.
struct Parameter {
    std::u16string_view name;
    std::u16string_view values = {};  // the only ones; each ends with ":". None: any
};
struct Command {
    std::u16string_view name;  // upper case
    std::u16string_view syntax = {};
    std::u16string_view description = {};
    std::span<const Parameter> parameters = {};
};
struct Class {
    std::u16string_view name;         // "Maker.Class", as the registry has it
    std::u16string_view identifier;   // of the COM class, in braces; a new one for each class
    std::u16string_view description;  // of the COM class
    std::u16string_view handler;      // its name in tags, for which the COM class registers itself; may be empty
    std::span<const Command> commands;
    // The text for a tag: plain, or a document that begins with "{\rtf1". Tags in it are evaluated.
    std::u16string (*answer)(const Tag&);
};

namespace detail {

// The members that programs call. The level says that there is a catalogue, with the host's database, and no Dispose.
inline constexpr std::u16string_view members[] = {u"Interface",         u"GetTagValue",  u"CommandList",
                                                  u"ParameterList",     u"SyntaxString", u"CommandDescription",
                                                  u"ParameterValueList"};
inline constexpr std::int32_t level = 4;

inline std::u16string_view viewOf(VelmorText text) {
    return text.length == 0 ? std::u16string_view() : std::u16string_view(text.units, text.length);
}
constexpr VelmorText lent(std::u16string_view text) {
    return {text.data(), text.size()};
}

inline bool equal(std::u16string_view left, std::u16string_view right) {
    const auto upper = [](char16_t unit) { return unit >= u'a' && unit <= u'z' ? unit - u'a' + u'A' : int{unit}; };
    if (left.size() != right.size()) return false;
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (upper(left[i]) != upper(right[i])) return false;
    }
    return true;
}

// The value for a call; it refers to what `value` holds.
inline VelmorValue lentValue(const Value& value) {
    if (const auto* const text = value.get<std::u16string>()) return {VELMOR_TEXT, 0, lent(*text), nullptr};
    if (const auto* const object = value.get<Object>()) return {VELMOR_OBJECT, 0, {}, object->raw()};
    if (const auto* const date = value.get<Date>()) return {VELMOR_DATE, date->days, {}, nullptr};
    if (const auto* const truth = value.get<bool>()) return {VELMOR_TRUTH, *truth ? 1.0 : 0.0, {}, nullptr};
    if (const auto* const number = value.get<double>()) return {VELMOR_NUMBER, *number, {}, nullptr};
    return {};
}

// What a function of the other side gave, which that side releases.
class Result {
public:
    explicit Result(void (*release)(VelmorValue*)) : release_(release) {}
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;
    ~Result() { release_(&value_); }

    VelmorValue* raw() noexcept { return &value_; }
    void check(std::int32_t outcome) const {
        if (outcome != 0) throw Failure(outcome, std::u16string(viewOf(value_.text)));
    }
    Value take() {
        switch (value_.type) {
            case VELMOR_TEXT:
                return viewOf(value_.text);
            case VELMOR_NUMBER:
                return value_.number;
            case VELMOR_DATE:
                return Date{value_.number};
            case VELMOR_TRUTH:
                return value_.number != 0;
            case VELMOR_OBJECT:
                return takeObject();
            default:
                return {};
        }
    }

private:
    Value takeObject() {
        const VelmorValue taken = std::exchange(value_, {});
        return Object(std::shared_ptr<VelmorObject>(taken.object, [taken](VelmorObject*) {
            VelmorValue released = taken;
            taken.object->functions->release(&released);
        }));
    }

    void (*const release_)(VelmorValue*);
    VelmorValue value_{};
};

// A text of this library's, for the program; releaseResult takes it back.
inline void giveText(std::u16string_view text, VelmorValue& result) {
    auto units = std::make_unique<char16_t[]>(text.size());
    text.copy(units.get(), text.size());
    result = {VELMOR_TEXT, 0, {units.release(), text.size()}, nullptr};
}
inline void releaseResult(VelmorValue* result) noexcept {
    if (result->type == VELMOR_TEXT) delete[] result->text.units;
    *result = {};
}

inline const Command* findCommand(const Class& described, std::u16string_view name) {
    for (const Command& command : described.commands) {
        if (equal(command.name, name)) return &command;
    }
    return nullptr;
}

template <class Described>
std::u16string namesOf(std::span<const Described> all) {
    std::u16string names;
    for (const Described& each : all) names.append(each.name).append(u":");
    return names;
}

inline std::u16string_view valuesOf(const Command& command, std::u16string_view name) {
    for (const Parameter& parameter : command.parameters) {
        if (equal(parameter.name, name)) return parameter.values;
    }
    return {};
}

using Arguments = std::span<const VelmorValue>;

inline std::u16string_view textAt(Arguments arguments, std::size_t index) {
    const bool isText = index < arguments.size() && arguments[index].type == VELMOR_TEXT;
    return isText ? viewOf(arguments[index].text) : std::u16string_view();
}

inline std::u16string describe(const Class& described, std::u16string_view member, Arguments arguments) {
    if (equal(member, u"CommandList")) return namesOf(described.commands);
    const Command* const command = findCommand(described, textAt(arguments, 0));
    if (command == nullptr) return {};
    if (equal(member, u"ParameterList")) return namesOf(command->parameters);
    if (equal(member, u"SyntaxString")) return std::u16string(command->syntax);
    if (equal(member, u"CommandDescription")) return std::u16string(command->description);
    return std::u16string(valuesOf(*command, textAt(arguments, 1)));
}

inline std::u16string answer(const Class& described, Arguments arguments) {
    if (arguments.empty() || arguments[0].type != VELMOR_OBJECT) throw Failure(13, u"There is no tag");
    return described.answer(Tag(Object(*arguments[0].object)));
}

inline void invokeMember(const Class& described, std::u16string_view member, Arguments arguments, VelmorValue& result) {
    bool isKnown = false;
    for (const std::u16string_view known : members) isKnown = isKnown || equal(known, member);
    if (!isKnown) throw Failure(438, u"Object doesn't support this property or method");
    if (equal(member, u"Interface")) {
        result = {VELMOR_NUMBER, level, {}, nullptr};
    } else {
        const bool answers = equal(member, u"GetTagValue");
        giveText(answers ? answer(described, arguments) : describe(described, member, arguments), result);
    }
}

// The number of the exception that is being handled, its description in `result` if there is memory for it.
inline std::int32_t failed(VelmorValue& result) noexcept {
    std::int32_t number = 440;
    try {
        try {
            throw;
        } catch (const Failure& failure) {
            if (failure.number() != 0) number = failure.number();
            giveText(failure.description(), result);
        } catch (const std::bad_alloc&) {
            number = 7;
        } catch (const std::exception& error) {
            const std::string_view what = error.what();
            giveText(std::u16string(what.begin(), what.end()), result);
        }
    } catch (...) {
    }
    return number;
}

template <const Class& described>
std::int32_t invoke(VelmorText member, const VelmorValue* arguments, std::size_t count, VelmorValue* result) noexcept {
    *result = {};
    try {
        invokeMember(described, viewOf(member), {arguments, count}, *result);
        return 0;
    } catch (...) {
        return failed(*result);
    }
}

template <const Class&... described>
const VelmorHandlerLibrary* library(std::int32_t version) noexcept {
    static constexpr VelmorHandlerClass classes[] = {{lent(described.name), lent(described.identifier),
                                                      lent(described.description), lent(described.handler),
                                                      &invoke<described>}...};
    static constexpr VelmorHandlerLibrary all{VELMOR_HANDLER_ABI, classes, sizeof...(described), &releaseResult};
    return version == VELMOR_HANDLER_ABI ? &all : nullptr;
}

}  // namespace detail

inline Value Object::invoke(std::int32_t kind, std::u16string_view member, std::span<const Value> arguments) const {
    std::array<VelmorValue, 8> values{};
    if (arguments.size() > values.size()) throw Failure(450, u"Wrong number of arguments");
    for (std::size_t i = 0; i < arguments.size(); ++i) values[i] = detail::lentValue(arguments[i]);
    detail::Result result(object_->functions->release);
    result.check(object_->functions->invoke(object_.get(), kind, detail::lent(member), values.data(), arguments.size(),
                                            result.raw()));
    return result.take();
}

inline Value Object::convert(const Value& value, std::int32_t type) const {
    const VelmorValue given = detail::lentValue(value);
    detail::Result result(object_->functions->release);
    result.check(object_->functions->convert(object_.get(), &given, type, result.raw()));
    return result.take();
}

template <class... Arguments>
Value Object::get(std::u16string_view member, Arguments&&... arguments) const {
    const std::array<Value, sizeof...(Arguments)> values{Value(std::forward<Arguments>(arguments))...};
    return invoke(VELMOR_GET, member, values);
}

template <class... Arguments>
Value Object::call(std::u16string_view member, Arguments&&... arguments) const {
    const std::array<Value, sizeof...(Arguments)> values{Value(std::forward<Arguments>(arguments))...};
    return invoke(VELMOR_METHOD, member, values);
}

inline void Object::let(std::u16string_view member, Value value) const {
    invoke(VELMOR_LET, member, {&value, 1});
}

inline std::u16string Object::text(const Value& value) const {
    const Value converted = convert(value, VELMOR_TEXT);
    const auto* const text = converted.get<std::u16string>();
    return text ? *text : std::u16string();
}

inline double Object::number(const Value& value) const {
    const Value converted = convert(value, VELMOR_NUMBER);
    const auto* const number = converted.get<double>();
    return number ? *number : 0;
}

inline Date Object::date(const Value& value) const {
    const Value converted = convert(value, VELMOR_DATE);
    const auto* const date = converted.get<Date>();
    return date ? *date : Date();
}

inline Value Tag::property(std::u16string_view name) const {
    const Value properties = object_.get(u"Properties");
    const auto* const collection = properties.get<Object>();
    if (collection == nullptr) return {};
    const Value item = collection->get(u"Item", name);
    const auto* const property = item.get<Object>();
    return property ? property->get(u"Value") : Value();
}

inline void Tag::setProperty(std::u16string_view name, Value value) const {
    const Value properties = object_.get(u"Properties");
    const auto* const collection = properties.get<Object>();
    if (collection != nullptr) collection->call(u"Add", name, std::move(value), true);
}

}  // namespace velmor::handler

#if defined(_WIN32)
#define VELMOR_HANDLER_EXPORT
#else
#define VELMOR_HANDLER_EXPORT __attribute__((visibility("default")))
#endif

// Once in a library: the velmor::handler::Class constants that it has.
#define VELMOR_HANDLERS(...)                                                                                  \
    extern "C" VELMOR_HANDLER_EXPORT const VelmorHandlerLibrary* velmorHandlerLibrary(std::int32_t version) { \
        return velmor::handler::detail::library<__VA_ARGS__>(version);                                        \
    }
