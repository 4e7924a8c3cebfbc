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
namespace {}  // namespace

// A handler that is a program answers one thread: each thread starts its own.
struct LetterMaker::Thread {
    Thread(const platform::Services& shared, platform::Files& files)
        : objects(shared.objects), services{shared.registry, files,           shared.clock, shared.folders,
                                            objects,         shared.pictures, shared.guids} {}

#ifdef _WIN32
    const platform::Apartment apartment;
    platform::Objects& objects;
#else
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
    // A tag and its collections may hold each other.
    const std::unique_ptr<kvTag, void (*)(kvTag*)> disposal(tag.get(), [](kvTag* used) { used->Dispose(); });
    tag->Properties(Collection(properties));
    const ErrorReport errors(plan_.name, plan_.places);
    tag->Value(template_.compiled);
    const auto result = tag->resultBuilder();
    letter.remarks = errors.messages();
    if (tag->hasFailed()) throw RecordFailure(letter.remarks.empty() ? "the evaluation failed" : letter.remarks[0]);
    finish(result->contiguous(), letter);
}

void LetterMaker::finish(std::u16string_view result, Letter& letter) {
    letter.bytes = encodeResult(result, plan_.input.document().encoding);
    if (!plan_.cleaning) return;
    // As `velmor clean` reads it from its file.
    std::u16string document = fromAnsi(letter.bytes);
    requireDocument(document, plan_.joinsRtf || plan_.cleaning->tolerant, letterName);
    if (findOpeningMarker(document, 0) != document.npos) {
        if (plan_.joinsRtf) throw RecordFailure("the letter still contains a tag, and cannot be joined");
        letter.remarks.emplace_back("the letter still contains a tag; it is not cleaned");
        return;
    }
    cleanAsTag(thread_->services, document, *plan_.cleaning);
    letter.bytes = plan_.joinsRtf ? std::string() : toAnsi(document);
    if (plan_.joinsRtf) letter.document.emplace(std::move(document), plan_.cleaning->tolerant, letterName);
}

}  // namespace velmor::cli
