#include "cli/render/LetterMaker.h"

#include <new>
#include <utility>

#include "cli/Documents.h"
#include "cli/Failure.h"
#include "core/kvTag.h"
#include "rtf/clean/JoinDocuments.h"
#include "text/Encoding.h"
#include "text/privStrCat.h"

#ifdef _WIN32
#include "platform/win32/Apartment.h"
#else
#include "process/ProcessObjects.h"
#endif

namespace velmor::cli {
namespace {

std::string describe(const ErrorReport& errors, const ErrorReport::Line& line) {
    const std::string text = errors.textOf(line.place) + ": " + line.text;
    return line.count == 1 ? text : text + " (" + std::to_string(line.count) + " times)";
}

std::vector<std::string> linesOf(const ErrorReport& errors) {
    std::vector<std::string> lines;
    for (const ErrorReport::Line& line : errors.lines()) lines.push_back(describe(errors, line));
    return lines;
}

std::string failureOf(const ErrorReport& errors) {
    return errors.lines().empty() ? "the evaluation failed" : describe(errors, errors.lines().front());
}

// A tag and its collections may hold each other.
struct Disposal {
    explicit Disposal(kvTag& used) : tag(used) {}
    ~Disposal() { tag.Dispose(); }
    Disposal(const Disposal&) = delete;
    Disposal& operator=(const Disposal&) = delete;

    kvTag& tag;
};

}  // namespace

// A handler that is a program answers one thread: each thread starts its own.
struct LetterMaker::Thread {
#ifdef _WIN32
    Thread(const platform::Services& shared, platform::Files& files)
        : services{shared.registry, files,           shared.clock, shared.folders,
                   shared.objects,  shared.pictures, shared.guids} {}

    const platform::Apartment apartment;
#else
    Thread(const platform::Services& shared, platform::Files& files)
        : objects(shared.objects), services{shared.registry, files,           shared.clock, shared.folders,
                                            objects,         shared.pictures, shared.guids} {}

    process::ProcessObjects objects;
#endif
    platform::Services services;
};

LetterMaker::LetterMaker(const LetterPlan& plan, const RecordReader& reader, platform::Files& files)
    : plan_(plan),
      reader_(reader),
      thread_(std::make_unique<Thread>(plan.input.services(), files)),
      template_(thread_->services, plan.input.document().text) {}

LetterMaker::~LetterMaker() = default;

Letter LetterMaker::make(const Record& record) {
    Letter letter;
    letter.number = record.number;
    letter.line = record.line;
    letter.failure = record.failure;
    if (!letter.failure.empty()) return letter;
    try {
        evaluate(record, letter);
    } catch (const std::bad_alloc&) {
        letter.failure = "out of memory";
    } catch (const std::exception& error) {
        letter.failure = error.what();
    }
    return letter;
}

void LetterMaker::evaluate(const Record& record, Letter& letter) {
    platform::Services& services = thread_->services;
    const auto properties =
        plan_.input.makeProperties(services, [&](privProperties& added) { reader_.addTo(added, record); });
    if (plan_.names != nullptr) {
        letter.path = plan_.names->of(*properties, record.number);
        letter.isThere = plan_.leavesThere && plan_.input.services().files.exists(letter.path);
        if (letter.isThere) return;
    }
    if (const auto result = template_.plain.result(services, *properties)) return finish(*result, letter);
    const auto tag = std::make_shared<kvTag>(services);
    const Disposal disposal(*tag);
    tag->Properties(Collection(properties));
    const ErrorReport errors(plan_.name, plan_.places);
    tag->Value(template_.compiled);
    const auto result = tag->resultBuilder();
    if (tag->hasFailed()) throw RecordFailure(failureOf(errors));
    letter.remarks = linesOf(errors);
    finish(result->contiguous(), letter);
}

void LetterMaker::finish(std::u16string_view result, Letter& letter) {
    letter.bytes = encodeResult(result, plan_.input.document().encoding);
    if (!plan_.cleaning) return;
    // As `velmor clean` reads it from its file.
    std::u16string document = fromAnsi(letter.bytes);
    requireDocument(document, plan_.joinsRtf || !plan_.cleaning->exact, letterName);
    if (positionOfTag(document) > 0) {
        if (plan_.joinsRtf) throw RecordFailure("the letter still contains a tag, and cannot be joined");
        letter.remarks.emplace_back("the letter still contains a tag; it is not cleaned");
        return;
    }
    clean(thread_->services, document, *plan_.cleaning);
    letter.bytes = plan_.joinsRtf ? std::string() : toAnsi(document);
    if (plan_.joinsRtf) letter.document.emplace(std::move(document), !plan_.cleaning->exact, letterName);
}

}  // namespace velmor::cli
