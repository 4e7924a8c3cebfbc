#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "cli/render/Letter.h"
#include "platform/Services.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor::cli {

// Where letters go. A letter that cannot be taken gets a failure; Failure ends the run.
class Destination {
public:
    virtual ~Destination() = default;
    // One call at a time, in the order of the data, for letters that were made or are there.
    virtual void admit(Letter& letter) = 0;
    // After that, for those that were made: in any order, from several threads at once.
    virtual void write(Letter&) {}
    // All letters were given, one at least. Until then nothing is to be seen of a joined file.
    virtual void finish() {}
};

// Each letter is a file; its folders are made. Of two letters with one name, names without regard to case, the second
// fails. Remembers a hash of each name.
class LetterFiles final : public Destination {
public:
    explicit LetterFiles(platform::Files& files) : files_(files) {}

    void admit(Letter& letter) override;
    void write(Letter& letter) override;

private:
    platform::Files& files_;
    std::unordered_set<std::uint64_t> names_;
};

// All letters are one file, or standard output if the name is empty or "-". The byte order mark that each has begins
// the file alone.
std::unique_ptr<Destination> joinedText(platform::Services& services, const std::string& name, std::string mark);
// RTF letters, joined and cleaned in merge mode as `velmor clean` does with its files, at the end on two threads or
// one. Memory does not depend on their number.
std::unique_ptr<Destination> joinedRtf(platform::Services& services, const std::string& name,
                                       const CleanOptions& options, bool twoThreads);

}  // namespace velmor::cli
