#include "rtf/clean/JoinedCleaning.h"

#include <utility>

#include "rtf/clean/CleanRTF.h"
#include "rtf/clean/JoinedParts.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/pages/MergePageBreaks.h"
#include "text/Error.h"

namespace velmor {

JoinedCleaning::JoinedCleaning(const CleanOptions& options, const platform::Services& services, Spool& letters,
                               Spool& cleaned, const JoinLimits& limits)
    : options_(options), services_(services), letters_(letters), cleaned_(cleaned), limits_(limits) {
    options_.mergeMode = true;
}

std::size_t JoinedCleaning::add(JoinableDocument document) {
    const bool isFirst = facts_.documents == 0;
    JoinedFacts facts = facts_;
    facts.add(isFirst ? document.factsOfFirst(options_.tolerant) : document.facts);
    if (facts.isCleanable()) checkSize(facts);
    if (isFirst) {
        firstEnd_ = document.range.end - 1;
        first_ = std::move(document.text);
    } else {
        letters_.add(document.document());
    }
    facts_ = std::move(facts);
    return isFirst ? 0 : document.countOutside;
}

void JoinedCleaning::checkSize(const JoinedFacts& facts) const {
    if (facts.obstacle.empty() || facts.size <= limits_.atOnce) return;
    throw Error(7, u"the joined document is too large to be cleaned at once, as it must be: " + facts.obstacle);
}

void JoinedCleaning::finish(const Write& write) {
    if (facts_.documents == 0) return;
    if (facts_.documents == 1 || !facts_.isCleanable() || !facts_.unusedMark()) {
        writeJoined(write);
    } else if (!facts_.obstacle.empty() || !cleanInParts(write)) {
        cleanAtOnce(write);
    }
}

void JoinedCleaning::writeJoined(const Write& write) {
    write(std::u16string_view(first_).substr(0, firstEnd_));
    letters_.forEach([&](std::u16string_view letter) {
        write(Module1::mergePageBreakMarker);
        write(letter);
        return true;
    });
    write(std::u16string_view(first_).substr(firstEnd_));
}

bool JoinedCleaning::cleanInParts(const Write& write) {
    CleanOptions options = options_;
    options.overrunProtection = Module1::isOverrunProtectionOn(services_.registry);
    std::u16string host = first_;
    host.insert(firstEnd_, Module1::mergePageBreakMarker);
    JoinedParts parts(options, services_.guids, facts_, *facts_.unusedMark(), std::move(host), cleaned_, limits_);
    return letters_.forEach([&](std::u16string letter) { return parts.add(std::move(letter)); }) && parts.finish(write);
}

void JoinedCleaning::cleanAtOnce(const Write& write) {
    if (facts_.obstacle.empty()) facts_.obstacle = u"some text depends on all documents";
    checkSize(facts_);
    if (options_.report != nullptr) options_.report->documents.clear();
    std::u16string joined;
    joined.reserve(facts_.size);
    writeJoined([&](std::u16string_view text) { joined.append(text); });
    first_ = {};
    Module1::CleanRTFText(joined, options_, services_);
    write(joined);
}

}  // namespace velmor
