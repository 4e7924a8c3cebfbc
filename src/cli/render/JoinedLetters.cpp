#include "cli/render/JoinedLetters.h"

#include <utility>

namespace velmor::cli {

JoinedLetters::JoinedLetters(platform::Services& services, const Cleaning& how, bool twoThreads,
                             JoinedCleaning::Lost lost)
    : letters_(services),
      cleaned_(services),
      joining_(cleanOptions(how), services, letters_, cleaned_, std::move(lost), {.twoThreads = twoThreads}) {}

// The first letter is not cleaned once more if it remains the only one.
void JoinedLetters::add(JoinableDocument document, const std::string& name) {
    std::u16string kept = count_ == 0 ? document.text() : std::u16string();
    joining_.add(std::move(document), name);
    only_ = std::move(kept);
    ++count_;
}

void JoinedLetters::finish(const std::function<void(std::u16string_view)>& write) {
    if (count_ == 1) return write(only_);
    joining_.finish(write);
}

}  // namespace velmor::cli
