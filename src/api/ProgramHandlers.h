#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Services.h"
#include "velmor/velmor.h"

namespace velmor::api {

// The handlers of a program: in the machine's registry they precede those of the same name, and its objects are created
// for the class names that the registry then gives.
class ProgramHandlers final : public platform::Registry, public platform::Objects {
public:
    explicit ProgramHandlers(const platform::Services& machine)
        : registry_(machine.registry), objects_(machine.objects) {}

    void set(std::u16string_view name, Answer answer);

    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override;
    std::vector<std::u16string> valueNames(std::u16string_view key) const override { return registry_.valueNames(key); }
    std::vector<std::u16string> subkeys(std::u16string_view key) const override { return registry_.subkeys(key); }
    automation::ObjectRef create(std::u16string_view className) override;

private:
    const platform::Registry& registry_;
    platform::Objects& objects_;
    std::map<std::u16string, Answer> answers_;  // by the registry's path of their entries in upper case
};

}  // namespace velmor::api
