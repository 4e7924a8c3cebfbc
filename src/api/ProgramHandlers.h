#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Services.h"
#include "velmor/velmor.h"

namespace velmor::api {

// The handlers of a program, by the registry's path of their entries in upper case.
class ProgramHandlers {
public:
    void set(std::u16string_view name, Answer answer);
    // Null if there is none.
    const Answer* find(std::u16string_view path) const;

private:
    std::map<std::u16string, Answer, std::less<>> answers_;
};

// The machine's registry, in which the program's handlers precede those of the same name.
class HandlerRegistry final : public platform::Registry {
public:
    HandlerRegistry(const platform::Registry& machine, const ProgramHandlers& handlers)
        : machine_(machine), handlers_(handlers) {}

    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override;
    std::vector<std::u16string> valueNames(std::u16string_view key) const override { return machine_.valueNames(key); }
    std::vector<std::u16string> subkeys(std::u16string_view key) const override { return machine_.subkeys(key); }

private:
    const platform::Registry& machine_;
    const ProgramHandlers& handlers_;
};

// Creates the program's handlers for the class names that HandlerRegistry gives, and the machine's objects.
class HandlerObjects final : public platform::Objects {
public:
    HandlerObjects(platform::Objects& machine, const ProgramHandlers& handlers)
        : machine_(machine), handlers_(handlers) {}

    automation::ObjectRef create(std::u16string_view className) override;

private:
    platform::Objects& machine_;
    const ProgramHandlers& handlers_;
};

}  // namespace velmor::api
