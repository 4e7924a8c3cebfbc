#include "cli/render/JoinedLetters.h"

#include <utility>

#include "cli/Streams.h"
#include "rtf/clean/JoinDocuments.h"

namespace velmor::cli {
namespace {

void tellLost(const std::string& name, std::size_t count) {
    report(name + ": " + std::to_string(count) + (count == 1 ? " character" : " characters") +
           " outside the document left out");
}

}  // namespace

void JoinedLetters::add(std::u16string document, const std::string& name) {
    joinDocuments({document}, {name}, {});  // its closing brace is there
    documents_.push_back(std::move(document));
    names_.push_back(name);
}

void JoinedLetters::finish(const std::function<void(std::u16string_view)>& write) {
    std::u16string joined = joinDocuments(std::exchange(documents_, {}), names_, &tellLost);
    if (names_.size() > 1) clean(services_, joined, how_);
    write(joined);
}

}  // namespace velmor::cli
