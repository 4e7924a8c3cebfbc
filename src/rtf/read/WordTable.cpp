#include "rtf/read/WordTable.h"

#include <algorithm>
#include <array>

namespace velmor {
namespace {

constexpr std::uint32_t bit(WordTrait trait) noexcept {
    return 1u << static_cast<unsigned>(trait);
}

// The words that have a trait. "pgn*" means every word that begins so, except \pgnstart, which describes a document.
// Ignorable destinations (\*) that are not here are hidden, too.
struct TraitWords {
    WordTrait trait;
    std::u16string_view words;
};
constexpr TraitWords table[] = {
    {WordTrait::shown,
     u"bullet chdate chdpa chdpl chftn chpgn chtime column emdash emspace endash enspace lbr ldblquote "
     u"line lquote page qmspace rdblquote rquote sectnum softline tab u"},
    {WordTrait::shownCell, u"cell nestcell row trowd"},
    {WordTrait::shownGroup, u"do footnote object pict shp shpgrp shppict"},
    {WordTrait::hiddenGroup,
     u"annotation colortbl filetbl fldinst fonttbl footer footerf footerl footerr header headerf headerl "
     u"headerr info listoverridetable listtable listtext nonesttables nonshppict pntext rxe stylesheet tc "
     u"tcn xe"},
    {WordTrait::anchoredGroup, u"annotation bkmkend bkmkstart field"},
    {WordTrait::numberGroup, u"listtext pntext"},
    {WordTrait::apartGroup,
     u"annotation dptxbxtext footer footerf footerl footerr footnote header headerf headerl headerr "
     u"nonesttables shprslt shptxt"},
    {WordTrait::documentWord,
     u"ApplyBrkRules adeff adeflang aenddoc aendnotes aftnbj aftnnalc aftnnar aftnnauc aftnnchi aftnnrlc "
     u"aftnnruc aftnrestart aftnrstcont aftnstart aftntj allowfieldendsel allprot alntblind annotprot ansi "
     u"ansicpg asianbrkrule autofmtoverride bdbfhdr bdrrlswsix bookfold bookfoldrev bookfoldsheets brkfrm "
     u"cachedcolbal cvmme deff defformat deflang deflangfe deftab dghorigin dghshow dghspace dgmargin "
     u"dgsnap dgvorigin dgvshow dgvspace dntblnsbdb doctype donotembedlingdata donotembedsysfont "
     u"donotshowcomments donotshowinsdel donotshowmarkup donotshowprops enddoc endnotes enforceprot "
     u"expshrtn felnbrelev fet forceupgrade formdisp formprot formshade fracwidth fromhtml fromtext ftnalt "
     u"ftnbj ftnlytwnine ftnnalc ftnnar ftnnauc ftnnchi ftnnrlc ftnnruc ftnrestart ftnrstcont ftnrstpg "
     u"ftnstart ftntj grfdocevents gutter gutterprl horzdoc htmautsp hyphauto hyphcaps hyphconsec hyphhotz "
     u"ignoremixedcontent ilfomacatclnup indrlsweleven jcompress jexpand krnprsnet landscape linestart "
     u"linkstyles lnbrkrule lnongrid ltrdoc lytcalctblwd lytexcttp lytprtmet lyttblrtgr mac makebackup "
     u"margb margl margmirror margr margt msmcap muser nafterindp newtblstyruls nobrkwrptbl nocolbal "
     u"nocompatoptions nocxsptable noextrasprl nofeaturethrottle nogrowautofit noindnmbrts nojkernpunct "
     u"nolead nolnhtadjtbl nospaceforul notabind notbrkcnstfrctbl notcvasp notvatxbx noultrlspc "
     u"noxlattoyen ogutter oldas oldlinewrap otblrul paperh paperw pc pca pgnstart prcolbl printdata "
     u"private protlevel psover psz readonlyrecommended readprot relyonvml remdttm rempersonalinfo revbar "
     u"revisions revprop revprot rtldoc rtlgutter saveinvalidxml saveprevpict showplaceholdtext "
     u"showxmlerrors snaptogridincell splytwnine sprsbsp sprslnsp sprsspbf sprstsm sprstsp stshfbi "
     u"stshfdbch stshfhich stshfloch stylelock stylelockbackcomp stylelockenforced stylelockqfset "
     u"stylelocktheme stylesortmethod subfontbysize swpbdr themelang themelangcs themelangfe toplinepunct "
     u"trackformatting trackmoves transmf truncatefontheight truncex twoonone useltbaln usenormstyforlist "
     u"usexform utinl validatexml vertdoc viewbksp viewkind viewnobound viewscale viewzk widowctrl "
     u"windowcaption wpjst wpsp wptb wraptrsp wrppunct"},
    {WordTrait::documentGroup,
     u"aftncn aftnsep aftnsepc colorschememapping datastore defchp defpap docvar filetbl ftncn ftnsep "
     u"ftnsepc hlinkbase info latentstyles mailmerge mmathPr nextfile password passwordhash pgptbl "
     u"protusertbl revtbl rsidtbl template themedata userprops wgrffmtfilter writereservhash xmlnstbl"},
    {WordTrait::section,
     u"binfsxn binsxn colno cols colsr colsx colw endnhere footery guttersxn headery horzsect linebetcol "
     u"linecont linemod lineppage linerestart linestarts linex lndscpsxn ltrsect margbsxn marglsxn "
     u"margmirsxn margrsxn margtsxn pgbrdr* pghsxn pgn* pgwsxn rtlsect saftn* sbk* sectd* secte* sectl* "
     u"sectrsid sectspecify* sectun* sftn* stextflow titlepg vertal* vertsect"},
    {WordTrait::paragraph,
     u"adjustright aspalpha aspnum box brdr* brsp cbpat cfpat contextualspace cufi culi curi faauto "
     u"facenter fafixed fahang faroman favar fi hyphpar indmirror keep keepn li lin lisa lisb ltrpar "
     u"noline nooverflow nosnaplinegrid nowidctlpar nowwrap qc qd qj qk ql qr qt ri rin rtlpar s sa saauto "
     u"sb sbauto shading sl slmult tb tldot tleq tlhyph tlmdot tlth tlul tqc tqdec tqr tx widctlpar "
     u"wrapdefault"},
    {WordTrait::endsParagraph, u"cell nestcell nestrow par row sect"},
    {WordTrait::row, u"cellx cl* irow* lastrow ltrrow rtlrow tbl* tdfrm* tph* tpos* tpv* tr* trkeep ts"},
    {WordTrait::font, u"f"},
    {WordTrait::moreFont, u"adeff af deff mmathFont pnf stshfbi stshfdbch stshfhich stshfloch"},
    {WordTrait::colour, u"afc brdrcf cb cbpat cf cfpat chcbpat chcfpat clcbpat clcfpat highlight pncf ulc"},
    {WordTrait::moreColour, u"clcbpatraw clcfpatraw trcbpat trcfpat tscellcbpat tscellcfpat"},
    {WordTrait::themeColour,
     u"caccentfive caccentfour caccentone caccentsix caccentthree caccenttwo cbackgroundone cbackgroundtwo "
     u"cfollowedhyperlink chyperlink cmaindarkone cmaindarktwo cmainlightone cmainlighttwo cshade ctextone "
     u"ctexttwo ctint"},
    {WordTrait::listPart, u"lfolevel list listlevel listoverride"},
    {WordTrait::beginsText, u"pard plain sectd"},
    {WordTrait::edge, u"brdrb brdrbar brdrbtw brdrl brdrr brdrt"},
    {WordTrait::borderLine, u"brdr* brsp"},
    {WordTrait::sectionPage,
     u"binfsxn binsxn guttersxn lndscpsxn margbsxn marglsxn margmirsxn margrsxn margtsxn pghsxn pgwsxn"},
    {WordTrait::columns, u"colno cols colsr colsx colw linebetcol"},
    {WordTrait::sectionStart, u"linerestart linestarts pgnrestart pgnstarts sbk* sectd titlepg"},
    {WordTrait::sectionBreak, u"sbk*"},
    {WordTrait::generatorRest,
     u"box* brdr* brsp* colno* cols* colw* footery* gutter* headery* linebetcol* lndscpsxn* marg* pgbrd* "
     u"pghsxn* pgwsxn* titlepg*"},
};

// The letters of each Word but the first, in their order.
constexpr std::u16string_view named =
    u"bin cell cellx cs ds f facingp intbl itap korvane lastrow ls nestcell nestrow nesttableprops nonesttables page "
    u"par "
    u"pard plain row s sect sectd trkeep trowd ts u uc yts headery footery titlepg pgbrdrt pgbrdrb pgbrdrl pgbrdrr "
    u"pgbrdropt pgbrdrsnap pgbrdrhead pgbrdrfoot";

template <typename Take>
constexpr void forEachWord(std::u16string_view words, Take take) {
    while (!words.empty()) {
        const std::size_t end = std::min(words.find(u' '), words.size());
        take(words.substr(0, end));
        words.remove_prefix(std::min(end + 1, words.size()));
    }
}

struct Row {
    std::u16string_view letters;
    std::uint32_t traits = 0;
    Word word = Word::other;
};

constexpr bool beginsBefore(const Row& left, const Row& right) noexcept {
    return left.letters[0] < right.letters[0];
}

// The beginnings of words, by their first letters.
constexpr auto families = [] {
    constexpr std::size_t count = [] {
        std::size_t stars = 0;
        for (const auto& [trait, words] : table)
            stars += static_cast<std::size_t>(std::count(words.begin(), words.end(), u'*'));
        return stars;
    }();
    std::array<Row, count> rows{};
    auto next = rows.begin();
    for (const auto& [trait, words] : table) {
        forEachWord(words, [&, own = bit(trait)](std::u16string_view word) {
            if (word.back() == u'*') *next++ = {word.substr(0, word.size() - 1), own};
        });
    }
    std::sort(rows.begin(), rows.end(), beginsBefore);
    return rows;
}();

constexpr std::uint32_t traitsOfFamily(std::u16string_view letters) noexcept {
    std::uint32_t traits = 0;
    const auto [first, last] = std::equal_range(families.begin(), families.end(), Row{letters}, beginsBefore);
    for (auto family = first; family != last; ++family) {
        if (letters.starts_with(family->letters)) traits |= family->traits;
    }
    return letters == u"pgnstart" ? 0 : traits;
}

// The words of the table by hash, each in the first free slot from its own one on, with the traits of their families.
class Index {
public:
    constexpr Index() {
        for (const auto& [trait, words] : table) {
            forEachWord(words, [&, own = bit(trait)](std::u16string_view word) {
                if (word.back() != u'*') add(word).traits |= own;
            });
        }
        auto word = Word::other;
        forEachWord(named, [&](std::u16string_view letters) {
            word = static_cast<Word>(static_cast<unsigned>(word) + 1);
            add(letters).word = word;
        });
    }

    // Without letters where the word has no row.
    constexpr const Row& find(std::u16string_view letters) const noexcept { return slots_[slotOf(letters)]; }
    const auto& rows() const noexcept { return slots_; }

private:
    static constexpr std::size_t slots = 2048;

    // The slot of the word, or the free one for it.
    constexpr std::size_t slotOf(std::u16string_view letters) const noexcept {
        const std::size_t size = letters.size();
        std::size_t slot = (letters[0] + letters[size / 2] * 31u + letters[size - 1] * 247u + size * 61u) % slots;
        while (!slots_[slot].letters.empty() && slots_[slot].letters != letters) slot = (slot + 1) % slots;
        return slot;
    }

    constexpr Row& add(std::u16string_view letters) {
        Row& row = slots_[slotOf(letters)];
        if (row.letters.empty()) row = {letters, traitsOfFamily(letters)};
        return row;
    }

    std::array<Row, slots> slots_{};
};

constexpr Index knownWords;
static_assert(knownWords.find(u"pgbrdrfoot").word == Word::pgbrdrfoot);

}  // namespace

WordMeaning meaningOf(std::u16string_view letters) noexcept {
    if (letters.empty()) return {};
    const Row& known = knownWords.find(letters);
    return known.letters.empty() ? WordMeaning{Word::other, traitsOfFamily(letters)}
                                 : WordMeaning{known.word, known.traits};
}

std::optional<StyleKind> styleKindOf(Word word) noexcept {
    switch (word) {
        case Word::s:
            return StyleKind::paragraph;
        case Word::cs:
            return StyleKind::character;
        case Word::ds:
            return StyleKind::section;
        case Word::ts:
            return StyleKind::table;
        default:
            return std::nullopt;
    }
}

WordSet::WordSet(std::initializer_list<WordTrait> traits, std::initializer_list<Word> words) {
    for (const WordTrait trait : traits) traits_ |= bit(trait);
    for (const Word word : words) words_ |= std::uint64_t{1} << static_cast<unsigned>(word);
    for (const Row& known : knownWords.rows()) {
        if (holds({known.word, known.traits})) add(known.letters);
    }
    for (const Row& family : families) {
        if ((family.traits & traits_) != 0) add(family.letters);
    }
}

// A beginning of less than three letters may go on with anything.
void WordSet::add(std::u16string_view beginning) {
    char16_t letters[unitsOfKey] = {};
    const std::size_t length = std::min(unitsOfKey, beginning.size());
    std::copy_n(beginning.begin(), length, letters);
    const std::size_t first = keyOf(letters);
    const std::size_t count = std::size_t{1} << (5 * (unitsOfKey - length));
    for (std::size_t key = first; key < first + count; ++key) beginnings_.set(key);
}

}  // namespace velmor
