#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/Services.h"

namespace velmor::cli {

// A file that is written piece by piece and is there whole or not at all; or standard output, if the name is empty or
// "-", which gets what there is at once. Throws Failure (exitFile).
class Output {
public:
    Output(platform::Files& files, std::string name);

    void write(std::string_view bytes);
    // All is written.
    void finish();

private:
    void flush();
    [[noreturn]] void refuse() const;

    const std::string name_;
    std::unique_ptr<platform::FileWriter> writer_;  // null: standard output
    std::string gathered_;                          // of a file
};

}  // namespace velmor::cli
