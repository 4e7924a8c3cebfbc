#include "rtf/read/GroupSet.h"

#include "text/Compare.h"

namespace velmor {
namespace {

struct Opening {
    Group group;
    std::u16string_view word;
    bool ignorable = false;  // "\*" precedes it
};

constexpr Opening openings[] = {
    {Group::fontTable, u"fonttbl"},
    {Group::colourTable, u"colortbl"},
    {Group::listTable, u"listtable"},
    {Group::listTable, u"listtable", true},
    {Group::listOverrideTable, u"listoverridetable"},
    {Group::listOverrideTable, u"listoverridetable", true},
    {Group::styleSheet, u"stylesheet"},
    {Group::header, u"header"},
    {Group::footer, u"footer"},
    {Group::newHeader, u"korvanenewheader", true},
    {Group::newFooter, u"korvanenewfooter", true},
    {Group::mergePageBreak, u"korvanemergepagebreak", true},
    {Group::section, u"korvanesection", true},
    {Group::tableMarker, u"korvane\\", true},
    {Group::background, u"background", true},
    {Group::generator, u"generator", true},
};

}  // namespace

void GroupSet::note(std::u16string_view text, std::size_t index) noexcept {
    constexpr std::size_t longest = 26;
    std::u16string_view rest = text.substr(index + 1, longest);
    const bool ignorable = rest.starts_with(u"\\*");
    if (ignorable) rest.remove_prefix(2);
    if (rest.size() < 2 || rest[0] != u'\\') return;
    rest.remove_prefix(1);
    const char16_t first = foldUnit(rest[0]);
    for (const Opening& opening : openings) {
        if (first != opening.word[0] || ignorable != opening.ignorable) continue;
        if (equalIgnoringCase(rest.substr(0, opening.word.size()), opening.word)) add(opening.group);
    }
}

}  // namespace velmor
