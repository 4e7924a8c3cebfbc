#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/JsonText.h"

namespace velmor::cli {

class TapedObjects;

// The questions that an evaluation asks of what lies outside, in their order, each with its answer; between a question
// and its answer the questions that the outside asks back (docs/run-records.md). While recording, answers come from
// outside; while replaying, from the record.
class Tape {
public:
    using Real = std::function<Json()>;

    struct Trouble {
        std::string message;
        std::int32_t tag = 0;  // OutermostTag
        std::int32_t position = 0;
        std::u16string tagText;
    };

    Tape() = default;
    virtual ~Tape() = default;
    Tape(const Tape&) = delete;
    Tape& operator=(const Tape&) = delete;

    // The record that was made; null while replaying.
    virtual const std::string* record() const noexcept { return nullptr; }
    bool isReplaying() const noexcept { return record() == nullptr; }
    // While replaying, what the outside asked is asked again of these objects.
    virtual void inside(TapedObjects&) noexcept {}
    // The answer, an object with "gave" or "raised". `real` gives it while recording. Null after any trouble, which
    // ends the evaluation.
    virtual Json ask(Json question, const Real& real) = 0;
    // What the outside asks back. While recording only.
    virtual void askBack(Json, const Real&) {}
    // The outside has released an object. While recording only.
    virtual void release(std::uint64_t) {}
    // Releases the objects that the outside released at this place of the record.
    virtual void settle() {}
    // Call it when the evaluation is over: nothing more is recorded or taken from the record. `checksum`: the output's.
    virtual void finish(const std::string& checksum) = 0;

    // The first trouble counts. The evaluation ends.
    void fail(const std::string& message);
    const std::optional<Trouble>& trouble() const noexcept { return trouble_; }
    // Reads an answer. One that `read` does not understand is trouble; then this is false, as for a null answer.
    bool read(const Json& answer, const std::function<void(const Json& answer)>& read);

private:
    // There is trouble with the answer that came last.
    virtual void refuse(const std::string& message) { fail(message); }

    std::optional<Trouble> trouble_;
};

// Writes a record, which begins with these lines.
std::unique_ptr<Tape> recordingTape(const std::vector<Json>& head);

// Answers from the lines of a record, the first `next` of which were read. They must last.
std::unique_ptr<Tape> replayingTape(std::string name, std::vector<std::string_view> lines, std::size_t next);

// A line of a record; null if it is not a JSON object. What nests deeper than any answer is left out.
Json recordLine(std::string_view line);

}  // namespace velmor::cli
