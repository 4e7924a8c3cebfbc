#pragma once

#include <string>
#include <utility>

#include "platform/Services.h"

namespace velmor::platform {

// The machine's folders, except that the template's folder replaces the component's: files without a
// path are searched there.
class TemplateFolders final : public Folders {
public:
    TemplateFolders(const Folders& machine, std::u16string folder) : machine_(machine), folder_(std::move(folder)) {}

    std::u16string commonData() const override { return machine_.commonData(); }
    std::u16string temporary() const override { return machine_.temporary(); }
    std::u16string component() const override { return folder_; }
    std::u16string machineName() const override { return machine_.machineName(); }
    char16_t separator() const override { return machine_.separator(); }

private:
    const Folders& machine_;
    std::u16string folder_;
};

}  // namespace velmor::platform
