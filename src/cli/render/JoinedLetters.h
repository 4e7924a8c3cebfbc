#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "cli/Cleaning.h"
#include "cli/SpoolFile.h"
#include "platform/Services.h"
#include "rtf/clean/JoinedCleaning.h"

namespace velmor::cli {

// Joins RTF documents that were cleaned by themselves, and cleans them in merge mode, as `velmor clean` does with its
// files. Memory does not depend on their number.
class JoinedLetters {
public:
    JoinedLetters(platform::Services& services, const Cleaning& how, bool twoThreads);

    // As JoinedCleaning::add. Throws Error for a document that cannot be joined.
    std::size_t add(JoinableDocument document);
    // Gives the document, piece by piece.
    void finish(const std::function<void(std::u16string_view)>& write);

private:
    SpoolFile letters_;
    SpoolFile cleaned_;
    JoinedCleaning joining_;
    std::size_t count_ = 0;
    std::u16string only_;  // as long as there is one
};

}  // namespace velmor::cli
