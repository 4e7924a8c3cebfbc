#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/Collection.h"
#include "core/EvaluationRun.h"
#include "core/TagContext.h"
#include "platform/Services.h"
#include "text/Error.h"

namespace velmor {

class privProperties;

// Error 5: the value of one of the properties below is not one that it can have.
class RuleError : public Error {
public:
    RuleError(std::u16string_view name, std::u16string_view value);
};

// What a host asks of an evaluation by properties whose names begin with "kvTag.". They are read when the evaluation
// of an outermost text begins; nothing that is evaluated changes them for it. The defaults ask nothing.
struct EvaluationRules {
    // "kvTag.Missing": what becomes of a tag whose property, file, list entry or handler is absent. A property counts
    // as absent when the tag gives no default, or an empty one.
    enum class Missing : std::uint8_t {
        empty,  // the value that it has without this rule
        keep,   // the tag as it is written
        mark,   // "[name?]"
        fail,   // the whole result is empty
    };
    // "kvTag.Data Tags": tags in texts that are not the author's (see Origin).
    enum class DataTags : std::uint8_t {
        allow,   // are evaluated
        report,  // are evaluated, with an entry in the error log
        refuse,  // are text, with an entry in the error log
    };

    Missing missing = Missing::empty;
    DataTags dataTags = DataTags::allow;
    bool dropsEmptyParagraphs = false;               // "kvTag.Drop Empty Paragraphs": see rtf/edit/EmptyParagraphs.h
    std::u16string includeRoot;                      // "kvTag.Include Root": no other folder's files are included
    std::int64_t maximumLevels = deepestLevel;       // "kvTag.Max Depth"
    std::int64_t maximumTags = maximumDispatches;    // "kvTag.Max Tags"
    std::int64_t maximumOutput = maximumCharacters;  // "kvTag.Max Output", characters of the result

    // Throws RuleError.
    static EvaluationRules of(const Collection& properties);
    // Whether a property of this name is a rule. Tags do not set one.
    static bool isRule(std::u16string_view psName) noexcept;
    static bool areIn(const privProperties& properties);

    // Whether it matters where a value comes from.
    bool looksAtValues() const noexcept { return missing != Missing::empty || dataTags != DataTags::allow; }
    // Whether INCLUDE may look for a file of this path. Touches no file.
    bool admitsPath(std::u16string_view path) const noexcept;
    // Whether the file, which exists, may be included: links are followed. Costs two looks at the disk if there is an
    // include root.
    bool admitsFile(const platform::Services& services, std::u16string_view path) const;
};

// Held by each evaluation. The outermost one on a thread reads its rules, which hold for all within it, and forgets
// them at its end. Throws RuleError.
class RulesInForce {
public:
    explicit RulesInForce(const Collection& properties);
    ~RulesInForce();
    RulesInForce(const RulesInForce&) = delete;
    RulesInForce& operator=(const RulesInForce&) = delete;

private:
    EvaluationRules rules_;
    const bool isOutermost_;
};

// Text that is not to be taken for tags any more has hidden for each "<" until the outermost evaluation ends.
// U+FDD0 is not a character of any text: it is reserved for such use.
inline constexpr char16_t hidden = u'\uFDD0';
void hideMarkers(std::u16string& text) noexcept;
// Undoes it, if this evaluation hid anything.
void showMarkers(std::u16string& text) noexcept;

}  // namespace velmor
