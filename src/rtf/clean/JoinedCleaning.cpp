#include "rtf/clean/JoinedCleaning.h"

#include <utility>

#include "rtf/clean/CleanRTF.h"
#include "rtf/clean/JoinedParts.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/pages/MergePageBreaks.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {
namespace {

constexpr std::u16string_view marker = Module1::mergePageBreakMarker;

}  // namespace

JoinedCleaning::JoinedCleaning(const CleanOptions& options, const platform::Services& services, Spool& letters,
                               Spool& cleaned, const JoinLimits& limits)
    : options_(options), services_(services), letters_(letters), cleaned_(cleaned), limits_(limits) {
    options_.mergeMode = true;
}

std::size_t JoinedCleaning::add(JoinableDocument document) {
    const bool isFirst = count_ == 0;
    JoinedFacts facts = facts_;
    facts.add(isFirst ? document.factsOfFirst(options_.tolerant) : document.facts);
    std::u16string obstacle = obstacle_;
    if (obstacle.empty() && !facts.obstacle.empty()) obstacle = fromUtf8(document.name + " ").append(facts.obstacle);
    const std::size_t size = size_ + (isFirst ? document.text.size() : marker.size() + document.document().size());
    if (facts.isCleanable()) checkSize(obstacle, size);
    if (isFirst) {
        firstEnd_ = document.range.end - 1;
        first_ = std::move(document.text);
    } else {
        letters_.add(document.document());
    }
    facts_ = std::move(facts);
    obstacle_ = std::move(obstacle);
    size_ = size;
    ++count_;
    return isFirst ? 0 : document.countOutside;
}

void JoinedCleaning::checkSize(const std::u16string& obstacle, std::size_t size) const {
    if (obstacle.empty() || size <= limits_.atOnce) return;
    throw Error(7, u"the joined document is too large to be cleaned at once, as it must be: " + obstacle);
}

void JoinedCleaning::finish(const Write& write) {
    if (count_ == 0) return;
    if (!facts_.isCleanable() || !facts_.unusedMark()) {
        writeJoined(write);
    } else if (count_ == 1 || !obstacle_.empty() || !cleanInParts(write)) {
        cleanAtOnce(write);
    }
}

void JoinedCleaning::writeJoined(const Write& write) {
    write(std::u16string_view(first_).substr(0, firstEnd_));
    letters_.rewind();
    for (std::u16string letter; letters_.next(letter);) {
        write(marker);
        write(letter);
    }
    write(std::u16string_view(first_).substr(firstEnd_));
}

bool JoinedCleaning::cleanInParts(const Write& write) {
    CleanOptions options = options_;
    options.overrunProtection = Module1::isOverrunProtectionOn(services_.registry);
    std::u16string host = first_;
    host.insert(firstEnd_, marker);
    JoinedParts parts(options, services_.guids, facts_, *facts_.unusedMark(), std::move(host), cleaned_, limits_,
                      size_);
    letters_.rewind();
    for (std::u16string letter; letters_.next(letter);) {
        if (!parts.add(std::move(letter))) return false;
    }
    return parts.finish(write);
}

void JoinedCleaning::cleanAtOnce(const Write& write) {
    checkSize(obstacle_.empty() ? u"some text depends on all documents" : obstacle_, size_);
    if (options_.report != nullptr) options_.report->documents.clear();
    std::u16string joined;
    joined.reserve(size_);
    writeJoined([&](std::u16string_view text) { joined.append(text); });
    first_ = {};
    Module1::CleanRTFText(joined, options_, services_);
    write(joined);
}

}  // namespace velmor
