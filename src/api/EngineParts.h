#pragma once

#include "api/ProgramHandlers.h"
#include "platform/SystemServices.h"
#include "velmor/velmor.h"

namespace velmor {
inline namespace v1 {

struct Engine::Parts {
    explicit Parts(const platform::SystemOptions& options) : machine(options) {}

    platform::Services& services() { return machine.services(); }
    // With the program's handlers, and these folders in place of the machine's.
    platform::Services services(platform::Folders& folders) {
        const platform::Services& own = machine.services();
        return {registry, own.files, own.clock, folders, objects, own.pictures, own.guids};
    }

    platform::SystemServices machine;
    api::ProgramHandlers handlers;
    api::HandlerRegistry registry{machine.services().registry, handlers};
    api::HandlerObjects objects{machine.services().objects, handlers};
};

}  // namespace v1
}  // namespace velmor
