#include "check/TemplateFile.h"

#include <utility>

namespace velmor {

TemplateFile::TemplateFile(std::u16string name, std::u16string source, std::vector<SourcePlace> includedFrom)
    : name_(std::move(name)),
      source_(std::move(source)),
      includedFrom_(std::move(includedFrom)),
      text_(readVisibleText(source_)) {
    for (std::uint32_t story = 0; story < stories().size(); ++story) findTags(story);
}

void TemplateFile::findTags(std::uint32_t story) {
    std::vector<std::uint32_t> around;
    const auto leave = [&] {
        tags_[around.back()].next = static_cast<std::uint32_t>(tags_.size());
        around.pop_back();
    };
    for (const TagSpan& span : findMarkerPairs(stories()[story].text())) {
        while (!around.empty() && tags_[around.back()].span.close < span.open) leave();
        const std::uint32_t parent = around.empty() ? TemplateTag::noTag : around.back();
        const auto index = static_cast<std::uint32_t>(tags_.size());
        tags_.push_back({story, span, parent, static_cast<std::uint32_t>(around.size()), index + 1});
        if (span.complete()) around.push_back(index);
    }
    while (!around.empty()) leave();
}

TemplateFile::Seen TemplateFile::seenAt(std::size_t index) const {
    const Story* nearest = &stories().front();
    std::size_t begin = source_.size();
    for (const Story& story : stories()) {
        const std::size_t unit = story.unitAt(index);
        if (unit == story.text().size() || story.source(unit).begin >= begin) continue;
        nearest = &story;
        begin = story.source(unit).begin;
    }
    const std::size_t unit = nearest->unitAt(index);
    const bool isLineEnd = unit > 0 && (unit == nearest->text().size() || nearest->text()[unit] == u'\n');
    return {*nearest, unit - (isLineEnd ? 1 : 0)};
}

SourcePlace TemplateFile::placeOf(std::size_t index) const {
    if (!lines_) lines_.emplace(source_);
    const auto [line, column] = lines_->at(index);
    return {name_, index + 1, line, column};
}

}  // namespace velmor
