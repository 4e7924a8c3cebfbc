#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "automation/Object.h"
#include "cli/JsonText.h"

namespace velmor::cli {

// The questions that an evaluation asks of what lies outside, in their order, each with its answer; between a question
// and its answer the questions that the outside asks back (docs/run-records.md). While recording, answers come from
// outside; while replaying, from the record.
class Tape {
public:
    using Real = std::function<Json()>;

    // Performs what the outside asked while it was recorded.
    class Inside {
    public:
        virtual ~Inside() = default;
        // The object that the inside gives; null for none. Does not raise for what the inside raises.
        virtual automation::ObjectRef perform(const Json& question) = 0;
        // Gives the object the number that it has in the record.
        virtual void number(std::uint64_t number, const automation::ObjectRef& object) = 0;
        virtual void release(std::uint64_t number) = 0;
    };
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

    virtual bool isReplaying() const noexcept = 0;
    // The record that was made; null while replaying.
    virtual const std::string* record() const noexcept { return nullptr; }
    // What the outside asked is asked again of this. While replaying.
    virtual void inside(Inside*) noexcept {}
    // The answer, an object with "gave" or "raised". `real` gives it while recording. Null after any trouble, which
    // ends the evaluation.
    virtual Json ask(Json question, const Real& real) = 0;
    // What the outside asks back. While recording only.
    virtual void askBack(Json question, const Real& real) = 0;
    virtual void release(std::uint64_t number) = 0;
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

// Writes a record.
class Recorder final : public Tape {
public:
    // The record begins with these lines.
    explicit Recorder(const std::vector<Json>& head);

    bool isReplaying() const noexcept override { return false; }
    const std::string* record() const noexcept override { return &text_; }
    Json ask(Json question, const Real& real) override;
    void askBack(Json question, const Real& real) override;
    void release(std::uint64_t number) override;
    void finish(const std::string& checksum) override;

private:
    struct Answer {
        std::size_t line, start, length;
    };

    Json exchange(const char* kind, Json&& question, const Real& real);
    void end(const Json& answer);
    void write(const Json& line) { writeLine(jsonText(line)); }
    void writeLine(std::string_view line);
    std::string withAnswer(const std::string& beginning, const std::string& answer);

    std::string text_;
    std::size_t lines_ = 0;
    Json begun_;  // a question that is not written yet
    bool isOver_ = false;
    std::unordered_map<std::size_t, Answer> longAnswers_;  // by hash
};

// A line of a record; null if it is not a JSON object. What nests deeper than any answer is left out.
Json recordLine(std::string_view line);

// Reads a record.
class Replayer final : public Tape {
public:
    // The lines of a record, the first `next` of which were read.
    Replayer(std::string name, std::vector<std::string_view> lines, std::size_t next)
        : name_(std::move(name)), lines_(std::move(lines)), next_(next) {}

    bool isReplaying() const noexcept override { return true; }
    void inside(Inside* inside) noexcept override { inside_ = inside; }
    Json ask(Json question, const Real& real) override;
    void askBack(Json, const Real&) override {}
    void release(std::uint64_t) override {}
    void settle() override;
    void finish(const std::string& checksum) override;

private:
    static constexpr int mostNested = 200;  // questions within questions

    Json take();
    Json parsed(std::size_t line);
    Json answerAfter(Json line);
    bool performBack(const Json& line);
    void refuse(const std::string& message) override;

    const std::string name_;
    const std::vector<std::string_view> lines_;
    std::size_t next_;  // line, 0-based
    Json ahead_;        // that line, if it was looked at
    Inside* inside_ = nullptr;
    int nested_ = 0;
    bool isOver_ = false;
};

}  // namespace velmor::cli
