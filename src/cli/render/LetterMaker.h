#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "check/TemplatePlaces.h"
#include "cli/ErrorReport.h"
#include "cli/TemplateInput.h"
#include "cli/render/FileNames.h"
#include "cli/render/Letter.h"
#include "cli/render/RecordReader.h"
#include "core/CompiledTemplate.h"
#include "platform/Services.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor::cli {

// What all threads share: the template, its places, and what to do with each letter.
struct LetterPlan {
    LetterPlan(TemplateInput& used, std::string templateName)
        : input(used), name(std::move(templateName)), places(used.document().text) {}

    TemplateInput& input;
    const std::string name;  // of the template, for messages
    const TemplatePlaces places;
    const FileNames* names = nullptr;      // if each letter is a file
    bool leavesThere = false;              // files that are there stay
    std::optional<CleanOptions> cleaning;  // of each letter by itself; letters are RTF then
    bool joinsRtf = false;                 // letters are cleaned documents, not bytes
};

// Evaluates the template for one record after another, on one thread: it has that thread's apartment and handlers.
class LetterMaker {
public:
    // All must last. The files are those that the template includes.
    LetterMaker(const LetterPlan& plan, const RecordReader& reader, platform::Files& files);
    ~LetterMaker();
    LetterMaker(const LetterMaker&) = delete;
    LetterMaker& operator=(const LetterMaker&) = delete;

    // Whatever fails becomes the letter's failure.
    Letter make(const Record& record);

private:
    struct Thread;

    void evaluate(const Record& record, Letter& letter);
    void finish(std::u16string_view result, Letter& letter);

    const LetterPlan& plan_;
    const RecordReader& reader_;
    const std::unique_ptr<Thread> thread_;
    const PreparedTemplate template_;  // threads that shared one would wait for the counts of its references
};

}  // namespace velmor::cli
