#pragma once

#include <cstddef>
#include <string_view>

namespace velmor {

// Bytes kept outside of memory, such as a temporary file: written one after the other, then read from the begin. Each
// call raises an Error when it fails.
class Spool {
public:
    virtual ~Spool() = default;

    virtual void append(std::string_view bytes) = 0;
    // Reading begins anew.
    virtual void rewind() = 0;
    // The next `size` bytes; as many were written.
    virtual void read(char* bytes, std::size_t size) = 0;
};

}  // namespace velmor
