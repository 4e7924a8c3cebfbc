#include "cli/ReportCollector.h"

#include <algorithm>
#include <new>
#include <utility>

#include "core/EvaluationRules.h"
#include "core/Options.h"
#include "text/Compare.h"

namespace velmor::cli {
namespace {

// Why a tag looks a property up.
enum class LookedUpBy {
    reader,    // a handler, or TAG>PROPERTY: the template asks for it
    setter,    // it sets the property
    included,  // another built-in command reads "Path", which may be absent
};

LookedUpBy askerOf(std::u16string_view name) {
    name = commandPart(name);
    const auto is = [&](std::u16string_view command) { return equalIgnoringCase(name, command); };
    if (!equalIgnoringCase(name.substr(0, 4), u"TAG>") || is(u"TAG>PROPERTY")) return LookedUpBy::reader;
    return is(u"TAG>SETPROPERTY") || is(u"TAG>SETPATH") ? LookedUpBy::setter : LookedUpBy::included;
}

}  // namespace

ReportCollector::ReportCollector(std::shared_ptr<privProperties> properties)
    : TraceCollector({mostTags, mostOfName}), properties_(std::move(properties)) {
    properties_->listener(this);
}

void ReportCollector::tagEnds(std::size_t start, std::u16string_view result) noexcept {
    const std::uint32_t tag = answering();
    TraceCollector::tagEnds(start, result);
    if (tag == noTag) return;
    try {
        keepValue(tag, result.substr(0, std::min(mostOfValue, mostOfValues - values_.size())));
    } catch (const std::bad_alloc&) {  // the page shows the tag without its value
    }
}

void ReportCollector::keepValue(std::size_t tag, std::u16string_view result) {
    if (kept_.size() <= tag) kept_.resize(tags().size());
    const std::size_t start = values_.size();
    values_ += result;
    std::replace(values_.begin() + static_cast<std::ptrdiff_t>(start), values_.end(), hidden, u'<');
    kept_[tag] = {start, result.size()};
}

std::u16string_view ReportCollector::valueOf(std::size_t tag) const noexcept {
    if (tag >= kept_.size()) return {};
    return std::u16string_view(values_).substr(kept_[tag].start, kept_[tag].length);
}

void ReportCollector::lookedUp(std::u16string_view psName, bool isFound) noexcept {
    if (isOption(psName)) return;
    const std::uint32_t tag = answering();
    const LookedUpBy asker = tag == noTag ? LookedUpBy::included : askerOf(nameOf(tags()[tag]));
    if (asker == LookedUpBy::setter || (asker == LookedUpBy::included && !isFound)) return;
    try {
        Property* const property = propertyOf(psName);
        if (property == nullptr) return;
        property->isReadElsewhere |= tag == noTag;
        if (tag == noTag || (!property->tags.empty() && property->tags.back() == tag)) return;
        property->tags.push_back(tag);
        ++(isFound ? property->found : property->missed);
    } catch (const std::bad_alloc&) {  // the page does not count it
    }
}

// Null beyond the limits.
ReportCollector::Property* ReportCollector::propertyOf(std::u16string_view name) {
    std::u16string key = upperCase(name);
    if (const auto known = known_.find(key); known != known_.end()) return &asked_[known->second];
    if (asked_.size() == mostProperties || name.size() > mostOfName) return nullptr;
    asked_.push_back({std::u16string(name), {}, 0, 0, false});
    known_.emplace(std::move(key), asked_.size() - 1);
    return &asked_.back();
}

}  // namespace velmor::cli
