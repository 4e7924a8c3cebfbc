#include "rtf/read/WordTable.h"

#include <algorithm>
#include <iterator>

namespace velmor {
namespace {

struct Row {
    std::u16string_view letters;
    std::uint8_t traits;
};

constexpr std::uint8_t bit(WordTrait trait) noexcept {
    return static_cast<std::uint8_t>(1u << static_cast<unsigned>(trait));
}

constexpr std::uint8_t shown = bit(WordTrait::shown);
constexpr std::uint8_t shownCell = bit(WordTrait::shownCell);
constexpr std::uint8_t shownGroup = bit(WordTrait::shownGroup);
constexpr std::uint8_t hiddenGroup = bit(WordTrait::hiddenGroup);

// Sorted by the letters. Ignorable destinations (\*) that are not here are hidden, too.
constexpr Row table[] = {
    {u"annotation", hiddenGroup},
    {u"bullet", shown},
    {u"cell", shownCell},
    {u"chdate", shown},
    {u"chdpa", shown},
    {u"chdpl", shown},
    {u"chftn", shown},
    {u"chpgn", shown},
    {u"chtime", shown},
    {u"colortbl", hiddenGroup},
    {u"column", shown},
    {u"do", shownGroup},
    {u"emdash", shown},
    {u"emspace", shown},
    {u"endash", shown},
    {u"enspace", shown},
    {u"filetbl", hiddenGroup},
    {u"fldinst", hiddenGroup},
    {u"fonttbl", hiddenGroup},
    {u"footer", hiddenGroup},
    {u"footerf", hiddenGroup},
    {u"footerl", hiddenGroup},
    {u"footerr", hiddenGroup},
    {u"footnote", shownGroup},
    {u"header", hiddenGroup},
    {u"headerf", hiddenGroup},
    {u"headerl", hiddenGroup},
    {u"headerr", hiddenGroup},
    {u"info", hiddenGroup},
    {u"lbr", shown},
    {u"ldblquote", shown},
    {u"line", shown},
    {u"listoverridetable", hiddenGroup},
    {u"listtable", hiddenGroup},
    {u"listtext", hiddenGroup},
    {u"lquote", shown},
    {u"nestcell", shownCell},
    {u"nonesttables", hiddenGroup},
    {u"nonshppict", hiddenGroup},
    {u"object", shownGroup},
    {u"page", shown},
    {u"pict", shownGroup},
    {u"pntext", hiddenGroup},
    {u"qmspace", shown},
    {u"rdblquote", shown},
    {u"row", shownCell},
    {u"rquote", shown},
    {u"rxe", hiddenGroup},
    {u"sectnum", shown},
    {u"shp", shownGroup},
    {u"shpgrp", shownGroup},
    {u"shppict", shownGroup},
    {u"softline", shown},
    {u"stylesheet", hiddenGroup},
    {u"tab", shown},
    {u"tc", hiddenGroup},
    {u"tcn", hiddenGroup},
    {u"trowd", shownCell},
    {u"u", shown},
    {u"xe", hiddenGroup},
};

constexpr bool isBefore(const Row& left, const Row& right) noexcept {
    return left.letters < right.letters;
}
static_assert(std::is_sorted(std::begin(table), std::end(table), isBefore));

}  // namespace

bool wordIs(WordTrait trait, std::u16string_view letters) noexcept {
    const Row* const found = std::lower_bound(std::begin(table), std::end(table), Row{letters, 0}, isBefore);
    return found != std::end(table) && found->letters == letters && (found->traits & bit(trait)) != 0;
}

}  // namespace velmor
