#include "cli/Tape.h"

#include <unordered_map>
#include <utility>

#include "cli/LineText.h"
#include "cli/TapedObjects.h"
#include "common/Limits.h"
#include "core/EvaluationRun.h"
#include "platform/Services.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr std::size_t longAnswer = 100;  // bytes; equal ones are written once

std::string shownJson(const Json& json) {
    return shown(fromUtf8(jsonText(json)));
}

bool hasAnswer(const Json& line) {
    return line.contains("gave") || line.contains("raised");
}

// Writes a record.
class Recorder final : public Tape {
public:
    explicit Recorder(const std::vector<Json>& head) {
        for (const Json& line : head) write(line);
    }

    const std::string* record() const noexcept override { return &text_; }
    Json ask(Json question, const Real& real) override { return exchange("ask", std::move(question), real); }
    void askBack(Json question, const Real& real) override { exchange("back", std::move(question), real); }

    void release(std::uint64_t number) override {
        if (isOver_ || trouble()) return;
        if (!begun_.is_null()) write(std::exchange(begun_, Json()));
        write({{"released", number}});
    }

    void finish(const std::string& checksum) override {
        write({{"end", checksum}});
        isOver_ = true;
    }

private:
    struct Answer {
        std::size_t line, start, length;
    };

    Json exchange(const char* kind, Json&& question, const Real& real) {
        if (isOver_ || trouble()) return real();
        if (!begun_.is_null()) write(std::exchange(begun_, Json()));
        begun_ = Json::object({{kind, std::move(question)}});
        try {
            Json answer = real();
            end(answer);
            return answer;
        } catch (const std::bad_alloc&) {
            fail("there was no memory for the record");
            throw;
        }
    }

    // The answer is on the line of its question unless something came in between.
    void end(const Json& answer) {
        const Json begun = std::exchange(begun_, Json());
        writeLine(withAnswer(begun.is_null() ? "{" : jsonText(begun), jsonText(answer)));
    }

    // `beginning`: "{" or an object, `answer` an object. A long answer that was written before becomes the number of
    // its line.
    std::string withAnswer(const std::string& beginning, const std::string& answer) {
        std::string line = beginning;
        if (line.size() > 1) line.back() = ',';
        if (answer.size() < longAnswer || line.size() == 1) return line.append(answer, 1);
        const auto [known, isNew] = longAnswers_.try_emplace(std::hash<std::string_view>()(answer));
        if (!isNew && std::string_view(text_).substr(known->second.start, known->second.length) == answer.substr(1)) {
            return line.append("\"same\":").append(std::to_string(known->second.line)).append("}");
        }
        known->second = {lines_ + 1, text_.size() + line.size(), answer.size() - 1};
        return line.append(answer, 1);
    }

    void write(const Json& line) { writeLine(jsonText(line)); }
    void writeLine(std::string_view line) {
        if (isOver_ || trouble()) return;
        if (line.size() > decodingLimit || text_.size() + line.size() >= platform::Files::largestFile) {
            return fail("the record would be too large");
        }
        text_.append(line) += '\n';
        ++lines_;
    }

    std::string text_;
    std::size_t lines_ = 0;
    Json begun_;  // a question that is not written yet
    bool isOver_ = false;
    std::unordered_map<std::size_t, Answer> longAnswers_;  // by hash
};

// Reads a record.
class Replayer final : public Tape {
public:
    Replayer(std::string name, std::vector<std::string_view> lines, std::size_t next)
        : name_(std::move(name)), lines_(std::move(lines)), next_(next) {}

    void inside(TapedObjects& inside) noexcept override { inside_ = &inside; }

    Json ask(Json question, const Real&) override {
        if (isOver_ || trouble()) return {};
        Json line = take();
        if (trouble()) return {};
        if (!line.contains("ask") || line["ask"] != question) {
            refuse("the record does not hold the answer to " + shownJson(question) + ", which is asked here");
            return {};
        }
        return answerAfter(std::move(line));
    }

    void settle() override {
        while (!trouble() && next_ < lines_.size()) {
            if (ahead_.is_null()) ahead_ = parsed(next_);
            if (!ahead_.contains("released")) return;
            const Json line = std::exchange(ahead_, Json());
            ++next_;
            read(line, [&](const Json& last) { inside_->release(last["released"].get<std::uint64_t>()); });
        }
    }

    void finish(const std::string& checksum) override {
        settle();
        isOver_ = true;
        if (trouble()) return;
        const Json line = take();
        if (trouble()) return;
        if (!line.contains("end")) return refuse("the evaluation has ended, but the record has not");
        if (line["end"] != checksum) refuse("the output is not the recorded one; another version of velmor wrote it");
    }

private:
    static constexpr int mostNested = 200;  // questions within questions

    // The next line; null if there is none, or one that is damaged.
    Json take() {
        settle();
        if (trouble()) return {};
        Json line = ahead_.is_null() ? parsed(next_) : std::exchange(ahead_, Json());
        ++next_;
        if (!line.contains("same")) return line;
        read(line, [&](const Json& same) {
            const auto number = same["same"].get<std::size_t>();
            if (number == 0 || number >= next_) throw std::out_of_range("same");
            const Json first = parsed(number - 1);
            for (const auto& [key, value] : first.items()) {
                if (key == "gave" || key == "raised" || key == "arguments") line[key] = value;
            }
        });
        return line;
    }

    Json parsed(std::size_t line) {
        Json json = line < lines_.size() ? recordLine(lines_[line]) : Json();
        if (json.is_null()) fail(name_ + ":" + std::to_string(line + 1) + ": this is not a line of a record");
        return json;
    }

    // What the outside asked before it answered is asked again.
    Json answerAfter(Json line) {
        while (!trouble() && !hasAnswer(line)) {
            line = take();
            if (line.contains("back") && !performBack(line)) refuse("the record is damaged here");
            if (line.contains("back")) line = Json::object();
            if (line.contains("ask")) refuse("the record asks " + shownJson(line["ask"]) + ", which is not asked");
        }
        return trouble() ? Json() : line;
    }

    bool performBack(const Json& line) {
        if (nested_ >= mostNested) return false;
        ++nested_;
        automation::ObjectRef given;
        const bool isDone = read(line["back"], [&](const Json& question) { given = inside_->perform(question); });
        --nested_;
        if (!isDone || trouble()) return false;
        const Json answer = hasAnswer(line) ? line : take();
        if (!hasAnswer(answer) || answer.contains("ask") || (!hasAnswer(line) && answer.contains("back"))) return false;
        if (!given) return true;
        return answer.contains("gave") &&
               read(answer["gave"], [&](const Json& gave) { inside_->number(gave.at(1).get<std::uint64_t>(), given); });
    }

    void refuse(const std::string& message) override { fail(name_ + ":" + std::to_string(next_) + ": " + message); }

    const std::string name_;
    const std::vector<std::string_view> lines_;
    std::size_t next_;  // line, 0-based
    Json ahead_;        // that line, if it was looked at
    TapedObjects* inside_ = nullptr;
    int nested_ = 0;
    bool isOver_ = false;
};

}  // namespace

void Tape::fail(const std::string& message) {
    if (trouble_) return;
    EvaluationRun& run = EvaluationRun::current();
    const OutermostTag& tag = run.outermostTag;
    trouble_ = {message, tag.index, tag.position, std::u16string(tag.text)};
    run.hasFailed = true;
}

bool Tape::read(const Json& answer, const std::function<void(const Json& answer)>& read) {
    if (answer.is_null()) return false;
    try {
        read(answer);
        return true;
    } catch (const Json::exception&) {
    } catch (const std::logic_error&) {
    }
    refuse("the record is damaged: " + shownJson(answer) + " is not an answer to what was asked");
    return false;
}

std::unique_ptr<Tape> recordingTape(const std::vector<Json>& head) {
    return std::make_unique<Recorder>(head);
}

std::unique_ptr<Tape> replayingTape(std::string name, std::vector<std::string_view> lines, std::size_t next) {
    return std::make_unique<Replayer>(std::move(name), std::move(lines), next);
}

Json recordLine(std::string_view line) {
    constexpr int deepest = 8;
    const auto isKept = [](int depth, Json::parse_event_t, const Json&) { return depth <= deepest; };
    Json json = Json::parse(line, isKept, false);
    return json.is_object() ? std::move(json) : Json();
}

}  // namespace velmor::cli
