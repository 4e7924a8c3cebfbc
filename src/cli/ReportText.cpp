#include "cli/ReportText.h"

#include <algorithm>

#include "cli/LineText.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

Json paragraphsOf(const Story& story) {
    Json paragraphs = Json::array();
    for (const Story::Paragraph& each : story.paragraphs()) {
        paragraphs.push_back(each.table == 0 ? Json::array({each.end, each.number})
                                             : Json::array({each.end, each.table, each.row, each.cell}));
    }
    return paragraphs;
}

}  // namespace

Json reportText(std::u16string_view text, std::size_t most) {
    return toUtf8(withoutLoneSurrogates(std::u16string(text.substr(0, most))));
}

Json reportStories(const TemplateFile& file) {
    Json stories = Json::array();
    std::size_t left = mostOfTemplate;
    for (const Story& story : file.stories()) {
        stories.push_back({{"name", toUtf8(story.name())},
                           {"text", reportText(story.text(), left)},
                           {"paragraphs", paragraphsOf(story)}});
        left -= std::min(left, story.text().size());
    }
    return stories;
}

bool isReportCut(const TemplateFile& file) {
    std::size_t size = 0;
    for (const Story& story : file.stories()) size += story.text().size();
    return size > mostOfTemplate;
}

Json reportPlace(const TemplateFile& file, std::size_t index) {
    const auto [story, unit] = file.seenAt(index);
    return Json::array({&story - file.stories().data(), unit});
}

}  // namespace velmor::cli
