#include "cli/render/JoinedLetters.h"

#include <utility>

namespace velmor::cli {

JoinedLetters::JoinedLetters(platform::Services& services, const Cleaning& how, bool twoThreads)
    : letters_(services),
      cleaned_(services),
      joining_(cleanOptions(how), services, letters_, cleaned_, {.twoThreads = twoThreads}) {}

// The first letter is not cleaned once more if it remains the only one.
std::size_t JoinedLetters::add(JoinableDocument document) {
    std::u16string kept = count_ == 0 ? document.text : std::u16string();
    const std::size_t lost = joining_.add(std::move(document));
    only_ = std::move(kept);
    ++count_;
    return lost;
}

void JoinedLetters::finish(const std::function<void(std::u16string_view)>& write) {
    if (count_ == 1) return write(only_);
    joining_.finish(write);
}

}  // namespace velmor::cli
