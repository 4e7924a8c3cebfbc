#include <optional>
#include <utility>

#include "cli/Failure.h"
#include "cli/Streams.h"
#include "cli/render/Destination.h"
#include "cli/render/JoinedLetters.h"
#include "platform/SystemServices.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

// A file that is there whole or not at all, or standard output, which gets what there is at once.
class Output {
public:
    Output(platform::Files& files, std::string name) : name_(std::move(name)) {
        if (name_.empty() || name_ == "-") return;
        writer_ = files.writer(fromUtf8(name_));
        if (!writer_) refuse();
    }

    void write(std::string_view bytes) {
        constexpr std::size_t block = std::size_t{1} << 16;
        if (!writer_) return print(bytes);
        gathered_ += bytes;
        if (gathered_.size() >= block) flush();
    }
    void finish() {
        if (!writer_) return finishPrinting();
        flush();
        if (!writer_->finish()) refuse();
    }

private:
    void flush() {
        if (!writer_->write(gathered_)) refuse();
        gathered_.clear();
    }
    [[noreturn]] void refuse() const {
        throw Failure(exitFile, "cannot write '" + name_ + "': " + platform::lastSystemError());
    }

    const std::string name_;
    std::unique_ptr<platform::FileWriter> writer_;  // null: standard output
    std::string gathered_;                          // of a file
};

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

class JoinedRtf final : public Destination {
public:
    JoinedRtf(platform::Services& services, const std::string& name, const Cleaning& how)
        : output_(services.files, name), letters_(services, how) {}

    void admit(Letter& letter) override {
        try {
            letters_.add(std::exchange(letter.document, {}), "the letter");
        } catch (const Error& error) {
            letter.failure = error.what();
        }
    }
    void finish() override {
        if (letters_.isEmpty()) return;
        // Letters are made of what the ANSI code page has.
        letters_.finish([this](std::u16string_view text) { output_.write(toAnsi(text)); });
        output_.finish();
    }

private:
    Output output_;
    JoinedLetters letters_;
};

}  // namespace

std::unique_ptr<Destination> joinedText(platform::Services& services, const std::string& name, std::string mark) {
    return std::make_unique<JoinedText>(services, name, std::move(mark));
}

std::unique_ptr<Destination> joinedRtf(platform::Services& services, const std::string& name, const Cleaning& how) {
    return std::make_unique<JoinedRtf>(services, name, how);
}

}  // namespace velmor::cli
