#include "rtf/read/GroupSet.h"

#include "text/Compare.h"

namespace velmor {
namespace {

struct Opening {
    Group group;
    std::u16string_view word;
};

constexpr Opening plainOpenings[] = {
    {Group::fontTable, u"fonttbl"},
    {Group::colourTable, u"colortbl"},
    {Group::listTable, u"listtable"},
    {Group::styleSheet, u"stylesheet"},
    {Group::header, u"header"},
    {Group::footer, u"footer"},
    {Group::listOverrideTable, u"listoverridetable"},
};

constexpr Opening starredOpenings[] = {
    {Group::newHeader, u"korvanenewheader"},
    {Group::newFooter, u"korvanenewfooter"},
    {Group::mergePageBreak, u"korvanemergepagebreak"},
    {Group::section, u"korvanesection"},
    {Group::tableMarker, u"korvane\\"},
    {Group::background, u"background"},
    {Group::generator, u"generator"},
    {Group::listTable, u"listtable"},
    {Group::listOverrideTable, u"listoverridetable"},
};

template <std::size_t count>
void noteAmong(const Opening (&openings)[count], std::u16string_view rest, GroupSet& found) {
    const char16_t first = rest.empty() ? u'\0' : foldUnit(rest[0]);
    for (const Opening& opening : openings) {
        if (first == opening.word[0] && equalIgnoringCase(rest.substr(0, opening.word.size()), opening.word)) {
            found.add(opening.group);
        }
    }
}

}  // namespace

void GroupSet::note(std::u16string_view text, std::size_t index) noexcept {
    constexpr std::size_t longest = 26;
    const std::u16string_view opening = text.substr(index, longest);
    if (opening.size() < 3 || opening[1] != u'\\') return;
    if (opening[2] != u'*') {
        noteAmong(plainOpenings, opening.substr(2), *this);
    } else if (opening.size() > 4 && opening[3] == u'\\') {
        noteAmong(starredOpenings, opening.substr(4), *this);
    }
}

}  // namespace velmor
