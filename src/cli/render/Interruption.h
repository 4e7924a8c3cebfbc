#pragma once

namespace velmor::cli {

// While it lives, the signals that end a program (Ctrl-C above all) ask for its orderly end instead; the second one
// ends it. A file that becomes too large is an error of the file system, not a signal. One at a time.
class Interruption {
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    static bool requested() noexcept;
};

}  // namespace velmor::cli
