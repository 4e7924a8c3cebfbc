#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Services.h"
#include "process/ChildProcess.h"

namespace velmor::process {

// Handlers that are programs: the registry has "process:COMMAND" in place of a class name. docs/handlers.md describes
// what is said on the streams. The program is started for the first tag and answers all further ones; while it
// answers one, tags in what it has evaluated are answered by another instance. A program that fails is not asked again.
class ProcessObjects final : public platform::Objects {
public:
    // Both must outlive the objects that are made.
    explicit ProcessObjects(platform::Objects& machine) : machine_(machine) {}
    // Ends the programs.
    ~ProcessObjects() override;

    automation::ObjectRef create(std::u16string_view className) override;

private:
    friend class Conversation;

    platform::Objects& machine_;
    std::map<std::string, std::vector<std::unique_ptr<ChildProcess>>> idle_;  // by command
};

}  // namespace velmor::process
