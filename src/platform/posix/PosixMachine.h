#pragma once

#include <string>

#include "platform/Services.h"

namespace velmor::platform {

class PosixClock : public Clock {
public:
    automation::Date now() const override;
    double timer() const override;
};

// commonData is $VELMOR_DATA, else /var/lib/velmor; temporary is $TMPDIR, else /tmp.
class PosixFolders : public Folders {
public:
    explicit PosixFolders(std::u16string componentFolder);  // empty: determined by itself

    std::u16string commonData() const override;
    std::u16string temporary() const override;
    std::u16string component() const override { return component_; }
    std::u16string machineName() const override;
    char16_t separator() const override { return u'/'; }

private:
    std::u16string component_;
};

// Random GUIDs (version 4).
class PosixGuids : public Guids {
public:
    std::u16string next() override;
};

// The environment variable as text; empty when it is not set.
std::u16string environmentVariable(const char* name);

}  // namespace velmor::platform
