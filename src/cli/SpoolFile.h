#pragma once

#include <cstdio>
#include <memory>

#include "common/TemporaryFile.h"
#include "platform/Services.h"
#include "rtf/clean/SpooledTexts.h"

namespace velmor::cli {

// A spool in a temporary file, which goes with it. Throws Failure (exitFile).
class SpoolFile final : public Spool {
public:
    explicit SpoolFile(platform::Services& services);

    void append(std::string_view bytes) override;
    void rewind() override;
    void read(char* bytes, std::size_t size) override;

private:
    TemporaryFile file_;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream_;
};

}  // namespace velmor::cli
