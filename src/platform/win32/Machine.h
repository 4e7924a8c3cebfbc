#pragma once

#include <string>

#include "platform/Services.h"

namespace velmor::platform {

class MachineClock : public Clock {
public:
    automation::Date now() const override;
    double timer() const override;
};

class MachineFolders : public Folders {
public:
    explicit MachineFolders(std::u16string componentFolder);  // empty: determined by itself

    std::u16string commonData() const override;
    std::u16string temporary() const override;
    std::u16string component() const override { return component_; }
    std::u16string machineName() const override;
    char16_t separator() const override { return u'\\'; }

private:
    std::u16string component_;
};

class MachineGuids : public Guids {
public:
    std::u16string next() override;
};

}  // namespace velmor::platform
