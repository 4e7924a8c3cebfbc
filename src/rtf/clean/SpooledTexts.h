#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/Encoding.h"

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

// Texts in a spool, in the order of adding, each as its size and its UTF-8.
class SpooledTexts {
public:
    explicit SpooledTexts(Spool& spool) noexcept : spool_(spool) {}

    void add(std::u16string_view text) {
        const std::string bytes = toUtf8(text);
        const std::size_t size = bytes.size();
        spool_.append({reinterpret_cast<const char*>(&size), sizeof size});
        spool_.append(bytes);
        ++count_;
    }

    // `take` gets each text, until it returns false; then forEach does, too.
    template <typename Take>
    bool forEach(Take take) {
        spool_.rewind();
        for (std::size_t left = count_; left > 0; --left) {
            std::size_t size = 0;
            spool_.read(reinterpret_cast<char*>(&size), sizeof size);
            std::string bytes(size, '\0');
            spool_.read(bytes.data(), size);
            if (!take(fromUtf8(bytes))) return false;
        }
        return true;
    }

private:
    Spool& spool_;
    std::size_t count_ = 0;
};

}  // namespace velmor
