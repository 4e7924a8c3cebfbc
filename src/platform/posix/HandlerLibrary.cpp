#include "platform/posix/HandlerLibrary.h"

#include <new>
#include <span>
#include <utility>
#include <vector>

#include "automation/Convert.h"
#include "automation/Variant.h"
#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "velmor/handler.h"

namespace velmor::platform {
namespace {

using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;
using handler::detail::giveText;
using handler::detail::lent;
using handler::detail::viewOf;

constexpr std::int32_t outOfMemory = 7;

extern const VelmorObjectFunctions objectFunctions;

// An object as the library sees it.
struct LentObject : VelmorObject {
    explicit LentObject(ObjectRef lentObject) : VelmorObject{&objectFunctions}, object(std::move(lentObject)) {}
    ObjectRef object;
};

Variant variantOf(const VelmorValue& value) {
    switch (value.type) {
        case VELMOR_TEXT:
            return viewOf(value.text);
        case VELMOR_NUMBER:
            return value.number;
        case VELMOR_DATE:
            return automation::Date{value.number};
        case VELMOR_TRUTH:
            return value.number != 0;
        case VELMOR_OBJECT:
            if (value.object == nullptr || value.object->functions != &objectFunctions) throw Error(13);
            return static_cast<const LentObject*>(value.object)->object;
        default:
            return {};
    }
}

// Texts are lent: the variant must outlive the value. Objects become ours.
VelmorValue lentValue(const Variant& value) {
    if (const auto* const text = value.get<std::u16string>()) return {VELMOR_TEXT, 0, lent(*text), nullptr};
    if (const auto* const truth = value.get<bool>()) return {VELMOR_TRUTH, *truth ? 1.0 : 0.0, {}, nullptr};
    if (const auto* const date = value.get<automation::Date>()) return {VELMOR_DATE, date->days, {}, nullptr};
    if (ObjectRef object = value.object()) return {VELMOR_OBJECT, 0, {}, new LentObject(std::move(object))};
    const bool isNothing = value.isEmpty() || value.isObject();
    const auto number = isNothing ? std::nullopt : automation::portable::toDouble(value);
    return number ? VelmorValue{VELMOR_NUMBER, *number, {}, nullptr} : VelmorValue{};
}

void give(const Variant& value, VelmorValue& result) {
    result = lentValue(value);
    if (result.type == VELMOR_TEXT) giveText(viewOf(result.text), result);
}

// The number of the error that `step` raises, with its description as the result; else 0.
template <class Step>
std::int32_t guarded(VelmorValue& result, Step&& step) noexcept {
    result = {};
    try {
        try {
            step();
            return 0;
        } catch (const Error& error) {
            giveText(error.description(), result);
            return error.number() == 0 ? automationError : error.number();
        } catch (const std::bad_alloc&) {
            return outOfMemory;
        } catch (const std::exception& error) {
            giveText(fromUtf8(error.what()), result);
            return automationError;
        }
    } catch (const std::bad_alloc&) {
        return outOfMemory;
    }
}

std::int32_t invokeLent(VelmorObject* object, std::int32_t kind, VelmorText member, const VelmorValue* arguments,
                        std::size_t count, VelmorValue* result) noexcept {
    return guarded(*result, [&] {
        if (kind < VELMOR_METHOD || kind > VELMOR_SET) throw Error(5);
        std::vector<Variant> values;
        for (const VelmorValue& argument : std::span(arguments, count)) values.push_back(variantOf(argument));
        ObjectRef called = static_cast<LentObject*>(object)->object;  // the call may release the object
        give(called->invoke(viewOf(member), static_cast<InvokeKind>(kind), values), *result);
    });
}

template <class Value>
Variant required(std::optional<Value> converted) {
    if (!converted) throw Error(13);
    return Variant(*std::move(converted));
}

std::int32_t convertLent(VelmorObject*, const VelmorValue* value, std::int32_t type, VelmorValue* result) noexcept {
    return guarded(*result, [&] {
        const Variant given = variantOf(*value);
        switch (type) {
            case VELMOR_TEXT:
                return give(required(automation::toText(given)), *result);
            case VELMOR_NUMBER:
                return give(required(automation::toDouble(given)), *result);
            case VELMOR_DATE:
                return give(required(automation::toDate(given)), *result);
            case VELMOR_TRUTH:
                return give(required(automation::toBoolean(given)), *result);
            default:
                throw Error(5);
        }
    });
}

void releaseLent(VelmorValue* result) noexcept {
    if (result->type == VELMOR_TEXT) delete[] result->text.units;
    if (result->type == VELMOR_OBJECT) delete static_cast<LentObject*>(result->object);
    *result = {};
}

const VelmorObjectFunctions objectFunctions{&invokeLent, &convertLent, &releaseLent};

// The arguments of one call of the library.
class LentArguments {
public:
    explicit LentArguments(std::span<const Variant> arguments) {
        values_.reserve(arguments.size());
        for (const Variant& argument : arguments) values_.push_back(lentValue(argument));
    }
    LentArguments(const LentArguments&) = delete;
    LentArguments& operator=(const LentArguments&) = delete;
    ~LentArguments() {
        for (VelmorValue& value : values_) {
            if (value.type == VELMOR_OBJECT) releaseLent(&value);
        }
    }

    const VelmorValue* data() const noexcept { return values_.data(); }
    std::size_t size() const noexcept { return values_.size(); }

private:
    std::vector<VelmorValue> values_;
};

class LibraryHandler final : public automation::Object {
public:
    LibraryHandler(const VelmorHandlerLibrary& library, const VelmorHandlerClass& described)
        : library_(library), class_(described) {}

    Variant invoke(std::u16string_view name, InvokeKind, std::span<Variant> arguments) override {
        const LentArguments lentArguments(arguments);
        handler::detail::Result result(library_.release);
        const std::int32_t number = class_.invoke(lent(name), lentArguments.data(), lentArguments.size(), result.raw());
        if (number == 0) return variantOf(*result.raw());
        std::u16string description(viewOf(result.raw()->text));
        if (description.empty()) description = errorText(number);
        throw Error(number, std::u16string(viewOf(class_.name)), std::move(description));
    }
    std::u16string typeName() const override {
        const std::u16string_view name = viewOf(class_.name);
        return std::u16string(name.substr(name.rfind(u'.') + 1));
    }

private:
    const VelmorHandlerLibrary& library_;
    const VelmorHandlerClass& class_;
};

}  // namespace

automation::ObjectRef handlerOf(const VelmorHandlerLibrary& library, std::u16string_view className) {
    for (const VelmorHandlerClass& described : std::span(library.classes, library.classCount)) {
        if (equalIgnoringCase(viewOf(described.name), className)) {
            return std::make_shared<LibraryHandler>(library, described);
        }
    }
    return nullptr;
}

}  // namespace velmor::platform
