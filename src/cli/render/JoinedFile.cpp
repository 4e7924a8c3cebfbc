#include <utility>

#include "cli/Output.h"
#include "cli/SpoolFile.h"
#include "cli/render/Destination.h"
#include "rtf/clean/JoinedCleaning.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

class JoinedText final : public Destination {
public:
    JoinedText(platform::Services& services, const std::string& name, std::string mark)
        : output_(services.files, name), mark_(std::move(mark)) {}

    void admit(Letter& letter) override {
        std::string_view bytes = letter.bytes;
        if (isStarted_ && bytes.starts_with(mark_)) bytes.remove_prefix(mark_.size());
        isStarted_ = true;
        output_.write(bytes);
        letter.bytes.clear();
    }
    void finish() override { output_.finish(); }

private:
    Output output_;
    const std::string mark_;
    bool isStarted_ = false;
};

// Joins letters that were cleaned by themselves, and cleans them in merge mode, as `velmor clean` does with its files.
// Memory does not depend on their number.
class JoinedRtf final : public Destination {
public:
    JoinedRtf(platform::Services& services, const std::string& name, const CleanOptions& options, bool twoThreads)
        : output_(services.files, name),
          letters_(services),
          cleaned_(services),
          joining_(options, services, letters_, cleaned_, {.twoThreads = twoThreads}) {}

    void admit(Letter& letter) override {
        try {
            const std::size_t lost = joining_.add(*std::exchange(letter.document, std::nullopt));
            if (lost > 0) {
                letter.remarks.push_back(std::to_string(lost) + (lost == 1 ? " character" : " characters") +
                                         " outside the document left out");
            }
        } catch (const Error& error) {
            letter.failure = error.what();
        }
    }
    void finish() override {
        // Letters are made of what the ANSI code page has.
        joining_.finish([this](std::u16string_view text) { output_.write(toAnsi(text)); });
        output_.finish();
    }

private:
    Output output_;
    SpoolFile letters_, cleaned_;
    JoinedCleaning joining_;
};

}  // namespace

std::unique_ptr<Destination> joinedText(platform::Services& services, const std::string& name, std::string mark) {
    return std::make_unique<JoinedText>(services, name, std::move(mark));
}

std::unique_ptr<Destination> joinedRtf(platform::Services& services, const std::string& name,
                                       const CleanOptions& options, bool twoThreads) {
    return std::make_unique<JoinedRtf>(services, name, options, twoThreads);
}

}  // namespace velmor::cli
