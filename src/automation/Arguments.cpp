#include "automation/Arguments.h"

#include <optional>

#include "automation/Convert.h"
#include "automation/Errors.h"

namespace velmor::automation {

namespace {

template <class T>
T orMismatch(std::optional<T> converted) {
    if (!converted) raiseTypeMismatch();
    return *std::move(converted);
}

}  // namespace

bool Arguments::has(std::size_t index) const noexcept {
    return index < values_.size() && !values_[index].isMissing();
}

const Variant& Arguments::variant(std::size_t index) const noexcept {
    static const Variant kMissing = Variant::missing();
    return index < values_.size() ? values_[index] : kMissing;
}

Variant Arguments::variantOr(std::size_t index, Variant otherwise) const {
    return has(index) ? values_[index] : std::move(otherwise);
}

std::u16string Arguments::text(std::size_t index) const {
    return orMismatch(toText(variant(index)));
}

std::u16string Arguments::textOr(std::size_t index, std::u16string_view otherwise) const {
    return has(index) ? text(index) : std::u16string(otherwise);
}

std::int32_t Arguments::longInteger(std::size_t index) const {
    return orMismatch(toLong(variant(index)));
}

std::int32_t Arguments::longOr(std::size_t index, std::int32_t otherwise) const {
    return has(index) ? longInteger(index) : otherwise;
}

std::int16_t Arguments::integer(std::size_t index) const {
    return orMismatch(toInteger(variant(index)));
}

std::int16_t Arguments::integerOr(std::size_t index, std::int16_t otherwise) const {
    return has(index) ? integer(index) : otherwise;
}

double Arguments::doubleFloat(std::size_t index) const {
    return orMismatch(toDouble(variant(index)));
}

double Arguments::doubleOr(std::size_t index, double otherwise) const {
    return has(index) ? doubleFloat(index) : otherwise;
}

float Arguments::single(std::size_t index) const {
    return orMismatch(toSingle(variant(index)));
}

Date Arguments::date(std::size_t index) const {
    return orMismatch(toDate(variant(index)));
}

bool Arguments::boolean(std::size_t index) const {
    return orMismatch(toBoolean(variant(index)));
}

bool Arguments::boolean(std::size_t index, bool otherwise) const {
    return has(index) ? boolean(index) : otherwise;
}

ObjectRef Arguments::object(std::size_t index) const {
    if (!has(index)) return nullptr;
    if (!values_[index].isObject()) raiseTypeMismatch();
    return values_[index].object();
}

void Arguments::set(std::size_t index, Variant value) {
    if (index < values_.size()) values_[index] = std::move(value);
}

}  // namespace velmor::automation
