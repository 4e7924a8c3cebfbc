#include "rtf/clean/JoinedCleaning.h"

#include <utility>

#include "rtf/clean/CleanRTF.h"
#include "rtf/clean/JoinDocuments.h"
#include "rtf/clean/JoinedParts.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/pages/MergePageBreaks.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {
namespace {

constexpr std::u16string_view marker = Module1::mergePageBreakMarker;

class OwnHost final : public CleanHost {
public:
    explicit OwnHost(platform::Services& services) noexcept : services_(services) {}
    platform::Services& services() noexcept override { return services_; }

private:
    platform::Services& services_;
};

}  // namespace

JoinedCleaning::JoinedCleaning(const CleanOptions& options, platform::Services& services, Spool& letters,
                               Spool& cleaned, Lost lost, const JoinLimits& limits)
    : options_(options),
      services_(services),
      letters_(letters),
      cleaned_(cleaned),
      lost_(std::move(lost)),
      limits_(limits) {
    options_.mergeMode = true;
}

void JoinedCleaning::add(JoinableDocument document, const std::string& name) {
    const bool isFirst = count_ == 0;
    JoinedFacts facts = facts_;
    facts.add(isFirst ? JoinedFacts::ofHost(document.text(), document.range(), options_.tolerant) : document.facts());
    std::u16string obstacle = obstacle_;
    if (obstacle.empty() && !facts.obstacle().empty()) obstacle = fromUtf8(name + " ").append(facts.obstacle());
    const std::size_t size = size_ + (isFirst ? document.text().size() : marker.size() + document.document().size());
    if (facts.isCleanable()) checkSize(obstacle, size);
    if (isFirst) {
        firstEnd_ = document.range().end - 1;
        first_ = document.takeText();
    } else {
        letters_.add(document.document());
        if (document.countOutside() > 0) lost_(name, document.countOutside());
    }
    facts_ = std::move(facts);
    obstacle_ = std::move(obstacle);
    size_ = size;
    ++count_;
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
    OwnHost host(services_);
    Module1::CleanRTFText(joined, options_, host);
    write(joined);
}

}  // namespace velmor
