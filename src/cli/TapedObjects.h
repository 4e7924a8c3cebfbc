#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "automation/Variant.h"
#include "cli/Tape.h"

namespace velmor::cli {

// The objects that pass between an evaluation and what lies outside: handlers, pictures, objects of handlers; tags,
// collections and other objects of the evaluation that a handler gets. Each side sees the other's objects through one
// of this class's, so every call is a question on the tape. While replaying nothing is outside, and what a handler
// asked of the evaluation's objects is asked of them again.
class TapedObjects final : public std::enable_shared_from_this<TapedObjects> {
public:
    explicit TapedObjects(Tape& tape) : tape_(tape) {}

    using Held = std::vector<automation::ObjectRef>;  // keeps objects until an exchange is over

    // The form of a value of the outside, of one of the evaluation, and the object of a form as the evaluation sees it.
    Json outsideForm(const automation::Variant& value, Held& held);
    Json insideForm(const automation::Variant& value, Held& held);
    automation::ObjectRef objectOf(const Json& form);

    // A value of the evaluation as the outside sees it. While recording.
    automation::Variant handedOut(const automation::Variant& value, Held& held);

    // Releases all objects. Later calls are not put on the tape.
    void close();

    // What the outside asked while it was recorded, and the object that this gives; null for none. Does not raise for
    // what the object asked raises.
    automation::ObjectRef perform(const Json& question);
    // Gives the object the number that it has in the record.
    void number(std::uint64_t number, const automation::ObjectRef& object);
    void release(std::uint64_t number);

private:
    struct Outsider;  // an object of the outside
    struct Insider;   // an object of the evaluation, for the outside
    struct Known {
        const automation::Object* key;
        automation::ObjectRef object;  // while replaying
        std::weak_ptr<Insider> seen;   // while recording
    };

    void forget(const Outsider& outsider) noexcept;
    automation::Variant callOutside(Outsider& target, std::u16string_view name, automation::InvokeKind kind,
                                    std::span<automation::Variant> arguments);
    Json realCall(Outsider& target, std::u16string_view name, automation::InvokeKind kind,
                  std::span<automation::Variant> arguments, Held& held);
    automation::Variant callInside(Insider& target, std::u16string_view name, automation::InvokeKind kind,
                                   std::span<automation::Variant> arguments);
    std::uint64_t numberOf(const automation::ObjectRef& object, Held& held);
    automation::Variant valueOfForm(const Json& form);

    Tape& tape_;
    bool isClosed_ = false;
    std::uint64_t lastOutside_ = 0;
    std::uint64_t lastInside_ = 0;
    std::unordered_map<const automation::Object*, std::weak_ptr<Outsider>> outsiders_;  // by the real object
    std::unordered_map<std::uint64_t, std::weak_ptr<Outsider>> outsidersByNumber_;
    std::unordered_map<const automation::Object*, std::uint64_t> insideNumbers_;
    std::unordered_map<std::uint64_t, Known> inside_;
};

}  // namespace velmor::cli
