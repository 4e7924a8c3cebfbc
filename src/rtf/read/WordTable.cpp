#include "rtf/read/WordTable.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace velmor {
namespace {

using Traits = std::uint32_t;

constexpr Traits bit(WordTrait trait) noexcept {
    return static_cast<Traits>(1u << static_cast<unsigned>(trait));
}

constexpr Traits none = 0;
constexpr Traits shown = bit(WordTrait::shown);
constexpr Traits shownCell = bit(WordTrait::shownCell);
constexpr Traits shownGroup = bit(WordTrait::shownGroup);
constexpr Traits hiddenGroup = bit(WordTrait::hiddenGroup);
constexpr Traits anchoredGroup = bit(WordTrait::anchoredGroup);
constexpr Traits numberGroup = bit(WordTrait::numberGroup);
constexpr Traits apartGroup = bit(WordTrait::apartGroup);
constexpr Traits documentWord = bit(WordTrait::documentWord);
constexpr Traits documentGroup = bit(WordTrait::documentGroup);
constexpr Traits section = bit(WordTrait::section);
constexpr Traits paragraph = bit(WordTrait::paragraph);
constexpr Traits endsParagraph = bit(WordTrait::endsParagraph);
constexpr Traits row = bit(WordTrait::row);
constexpr Traits font = bit(WordTrait::font);
constexpr Traits moreFont = bit(WordTrait::moreFont);
constexpr Traits colour = bit(WordTrait::colour);
constexpr Traits moreColour = bit(WordTrait::moreColour);
constexpr Traits themeColour = bit(WordTrait::themeColour);
constexpr Traits listPart = bit(WordTrait::listPart);
constexpr Traits beginsText = bit(WordTrait::beginsText);
constexpr Traits edge = bit(WordTrait::edge);
constexpr Traits borderLine = bit(WordTrait::borderLine);
constexpr Traits sectionPage = bit(WordTrait::sectionPage);
constexpr Traits columns = bit(WordTrait::columns);
constexpr Traits sectionStart = bit(WordTrait::sectionStart);
constexpr Traits sectionBreak = bit(WordTrait::sectionBreak);
constexpr Traits generatorRest = bit(WordTrait::generatorRest);

struct Row {
    std::u16string_view letters;
    Traits traits;
    Word word = Word::other;
};

// Sorted by the letters. Ignorable destinations (\*) that are not here are hidden, too.
constexpr Row table[] = {
    {u"ApplyBrkRules", documentWord},
    {u"adeff", documentWord | moreFont},
    {u"adeflang", documentWord},
    {u"adjustright", paragraph},
    {u"aenddoc", documentWord},
    {u"aendnotes", documentWord},
    {u"af", moreFont},
    {u"afc", colour},
    {u"aftnbj", documentWord},
    {u"aftncn", documentGroup},
    {u"aftnnalc", documentWord},
    {u"aftnnar", documentWord},
    {u"aftnnauc", documentWord},
    {u"aftnnchi", documentWord},
    {u"aftnnrlc", documentWord},
    {u"aftnnruc", documentWord},
    {u"aftnrestart", documentWord},
    {u"aftnrstcont", documentWord},
    {u"aftnsep", documentGroup},
    {u"aftnsepc", documentGroup},
    {u"aftnstart", documentWord},
    {u"aftntj", documentWord},
    {u"allowfieldendsel", documentWord},
    {u"allprot", documentWord},
    {u"alntblind", documentWord},
    {u"annotation", hiddenGroup | apartGroup | anchoredGroup},
    {u"annotprot", documentWord},
    {u"ansi", documentWord},
    {u"ansicpg", documentWord},
    {u"asianbrkrule", documentWord},
    {u"aspalpha", paragraph},
    {u"aspnum", paragraph},
    {u"autofmtoverride", documentWord},
    {u"bdbfhdr", documentWord},
    {u"bdrrlswsix", documentWord},
    {u"bin", none, Word::bin},
    {u"binfsxn", section | sectionPage},
    {u"binsxn", section | sectionPage},
    {u"bkmkend", anchoredGroup},
    {u"bkmkstart", anchoredGroup},
    {u"bookfold", documentWord},
    {u"bookfoldrev", documentWord},
    {u"bookfoldsheets", documentWord},
    {u"box", paragraph},
    {u"brdrb", edge},
    {u"brdrbar", edge},
    {u"brdrbtw", edge},
    {u"brdrcf", colour},
    {u"brdrl", edge},
    {u"brdrr", edge},
    {u"brdrt", edge},
    {u"brkfrm", documentWord},
    {u"brsp", paragraph | borderLine},
    {u"bullet", shown},
    {u"caccentfive", themeColour},
    {u"caccentfour", themeColour},
    {u"caccentone", themeColour},
    {u"caccentsix", themeColour},
    {u"caccentthree", themeColour},
    {u"caccenttwo", themeColour},
    {u"cachedcolbal", documentWord},
    {u"cb", colour},
    {u"cbackgroundone", themeColour},
    {u"cbackgroundtwo", themeColour},
    {u"cbpat", paragraph | colour},
    {u"cell", shownCell | endsParagraph, Word::cell},
    {u"cellx", row, Word::cellx},
    {u"cf", colour},
    {u"cfollowedhyperlink", themeColour},
    {u"cfpat", paragraph | colour},
    {u"chcbpat", colour},
    {u"chcfpat", colour},
    {u"chdate", shown},
    {u"chdpa", shown},
    {u"chdpl", shown},
    {u"chftn", shown},
    {u"chpgn", shown},
    {u"chtime", shown},
    {u"chyperlink", themeColour},
    {u"clcbpat", colour},
    {u"clcbpatraw", moreColour},
    {u"clcfpat", colour},
    {u"clcfpatraw", moreColour},
    {u"cmaindarkone", themeColour},
    {u"cmaindarktwo", themeColour},
    {u"cmainlightone", themeColour},
    {u"cmainlighttwo", themeColour},
    {u"colno", section | columns},
    {u"colorschememapping", documentGroup},
    {u"colortbl", hiddenGroup},
    {u"cols", section | columns},
    {u"colsr", section | columns},
    {u"colsx", section | columns},
    {u"column", shown},
    {u"colw", section | columns},
    {u"contextualspace", paragraph},
    {u"cs", none, Word::cs},
    {u"cshade", themeColour},
    {u"ctextone", themeColour},
    {u"ctexttwo", themeColour},
    {u"ctint", themeColour},
    {u"cufi", paragraph},
    {u"culi", paragraph},
    {u"curi", paragraph},
    {u"cvmme", documentWord},
    {u"datastore", documentGroup},
    {u"defchp", documentGroup},
    {u"deff", documentWord | moreFont},
    {u"defformat", documentWord},
    {u"deflang", documentWord},
    {u"deflangfe", documentWord},
    {u"defpap", documentGroup},
    {u"deftab", documentWord},
    {u"dghorigin", documentWord},
    {u"dghshow", documentWord},
    {u"dghspace", documentWord},
    {u"dgmargin", documentWord},
    {u"dgsnap", documentWord},
    {u"dgvorigin", documentWord},
    {u"dgvshow", documentWord},
    {u"dgvspace", documentWord},
    {u"dntblnsbdb", documentWord},
    {u"do", shownGroup},
    {u"doctype", documentWord},
    {u"docvar", documentGroup},
    {u"donotembedlingdata", documentWord},
    {u"donotembedsysfont", documentWord},
    {u"donotshowcomments", documentWord},
    {u"donotshowinsdel", documentWord},
    {u"donotshowmarkup", documentWord},
    {u"donotshowprops", documentWord},
    {u"dptxbxtext", apartGroup},
    {u"ds", none, Word::ds},
    {u"emdash", shown},
    {u"emspace", shown},
    {u"endash", shown},
    {u"enddoc", documentWord},
    {u"endnhere", section},
    {u"endnotes", documentWord},
    {u"enforceprot", documentWord},
    {u"enspace", shown},
    {u"expshrtn", documentWord},
    {u"f", font, Word::f},
    {u"faauto", paragraph},
    {u"facenter", paragraph},
    {u"facingp", none, Word::facingp},
    {u"fafixed", paragraph},
    {u"fahang", paragraph},
    {u"faroman", paragraph},
    {u"favar", paragraph},
    {u"felnbrelev", documentWord},
    {u"fet", documentWord},
    {u"fi", paragraph},
    {u"field", anchoredGroup},
    {u"filetbl", hiddenGroup | documentGroup},
    {u"fldinst", hiddenGroup},
    {u"fonttbl", hiddenGroup},
    {u"footer", hiddenGroup | apartGroup},
    {u"footerf", hiddenGroup | apartGroup},
    {u"footerl", hiddenGroup | apartGroup},
    {u"footerr", hiddenGroup | apartGroup},
    {u"footery", section, Word::footery},
    {u"footnote", shownGroup | apartGroup},
    {u"forceupgrade", documentWord},
    {u"formdisp", documentWord},
    {u"formprot", documentWord},
    {u"formshade", documentWord},
    {u"fracwidth", documentWord},
    {u"fromhtml", documentWord},
    {u"fromtext", documentWord},
    {u"ftnalt", documentWord},
    {u"ftnbj", documentWord},
    {u"ftncn", documentGroup},
    {u"ftnlytwnine", documentWord},
    {u"ftnnalc", documentWord},
    {u"ftnnar", documentWord},
    {u"ftnnauc", documentWord},
    {u"ftnnchi", documentWord},
    {u"ftnnrlc", documentWord},
    {u"ftnnruc", documentWord},
    {u"ftnrestart", documentWord},
    {u"ftnrstcont", documentWord},
    {u"ftnrstpg", documentWord},
    {u"ftnsep", documentGroup},
    {u"ftnsepc", documentGroup},
    {u"ftnstart", documentWord},
    {u"ftntj", documentWord},
    {u"grfdocevents", documentWord},
    {u"gutter", documentWord},
    {u"gutterprl", documentWord},
    {u"guttersxn", section | sectionPage},
    {u"header", hiddenGroup | apartGroup},
    {u"headerf", hiddenGroup | apartGroup},
    {u"headerl", hiddenGroup | apartGroup},
    {u"headerr", hiddenGroup | apartGroup},
    {u"headery", section, Word::headery},
    {u"highlight", colour},
    {u"hlinkbase", documentGroup},
    {u"horzdoc", documentWord},
    {u"horzsect", section},
    {u"htmautsp", documentWord},
    {u"hyphauto", documentWord},
    {u"hyphcaps", documentWord},
    {u"hyphconsec", documentWord},
    {u"hyphhotz", documentWord},
    {u"hyphpar", paragraph},
    {u"ignoremixedcontent", documentWord},
    {u"ilfomacatclnup", documentWord},
    {u"indmirror", paragraph},
    {u"indrlsweleven", documentWord},
    {u"info", hiddenGroup | documentGroup},
    {u"intbl", none, Word::intbl},
    {u"itap", none, Word::itap},
    {u"jcompress", documentWord},
    {u"jexpand", documentWord},
    {u"keep", paragraph},
    {u"keepn", paragraph},
    {u"korvane", none, Word::korvane},
    {u"krnprsnet", documentWord},
    {u"landscape", documentWord},
    {u"lastrow", row, Word::lastrow},
    {u"latentstyles", documentGroup},
    {u"lbr", shown},
    {u"ldblquote", shown},
    {u"lfolevel", listPart},
    {u"li", paragraph},
    {u"lin", paragraph},
    {u"line", shown},
    {u"linebetcol", section | columns},
    {u"linecont", section},
    {u"linemod", section},
    {u"lineppage", section},
    {u"linerestart", section | sectionStart},
    {u"linestart", documentWord},
    {u"linestarts", section | sectionStart},
    {u"linex", section},
    {u"linkstyles", documentWord},
    {u"lisa", paragraph},
    {u"lisb", paragraph},
    {u"list", listPart},
    {u"listlevel", listPart},
    {u"listoverride", listPart},
    {u"listoverridetable", hiddenGroup},
    {u"listtable", hiddenGroup},
    {u"listtext", hiddenGroup | numberGroup},
    {u"lnbrkrule", documentWord},
    {u"lndscpsxn", section | sectionPage},
    {u"lnongrid", documentWord},
    {u"lquote", shown},
    {u"ls", none, Word::ls},
    {u"ltrdoc", documentWord},
    {u"ltrpar", paragraph},
    {u"ltrrow", row},
    {u"ltrsect", section},
    {u"lytcalctblwd", documentWord},
    {u"lytexcttp", documentWord},
    {u"lytprtmet", documentWord},
    {u"lyttblrtgr", documentWord},
    {u"mac", documentWord},
    {u"mailmerge", documentGroup},
    {u"makebackup", documentWord},
    {u"margb", documentWord},
    {u"margbsxn", section | sectionPage},
    {u"margl", documentWord},
    {u"marglsxn", section | sectionPage},
    {u"margmirror", documentWord},
    {u"margmirsxn", section | sectionPage},
    {u"margr", documentWord},
    {u"margrsxn", section | sectionPage},
    {u"margt", documentWord},
    {u"margtsxn", section | sectionPage},
    {u"mmathFont", moreFont},
    {u"mmathPr", documentGroup},
    {u"msmcap", documentWord},
    {u"muser", documentWord},
    {u"nafterindp", documentWord},
    {u"nestcell", shownCell | endsParagraph, Word::nestcell},
    {u"nestrow", endsParagraph, Word::nestrow},
    {u"nesttableprops", none, Word::nesttableprops},
    {u"newtblstyruls", documentWord},
    {u"nextfile", documentGroup},
    {u"nobrkwrptbl", documentWord},
    {u"nocolbal", documentWord},
    {u"nocompatoptions", documentWord},
    {u"nocxsptable", documentWord},
    {u"noextrasprl", documentWord},
    {u"nofeaturethrottle", documentWord},
    {u"nogrowautofit", documentWord},
    {u"noindnmbrts", documentWord},
    {u"nojkernpunct", documentWord},
    {u"nolead", documentWord},
    {u"noline", paragraph},
    {u"nolnhtadjtbl", documentWord},
    {u"nonesttables", hiddenGroup | apartGroup, Word::nonesttables},
    {u"nonshppict", hiddenGroup},
    {u"nooverflow", paragraph},
    {u"nosnaplinegrid", paragraph},
    {u"nospaceforul", documentWord},
    {u"notabind", documentWord},
    {u"notbrkcnstfrctbl", documentWord},
    {u"notcvasp", documentWord},
    {u"notvatxbx", documentWord},
    {u"noultrlspc", documentWord},
    {u"nowidctlpar", paragraph},
    {u"nowwrap", paragraph},
    {u"noxlattoyen", documentWord},
    {u"object", shownGroup},
    {u"ogutter", documentWord},
    {u"oldas", documentWord},
    {u"oldlinewrap", documentWord},
    {u"otblrul", documentWord},
    {u"page", shown, Word::page},
    {u"paperh", documentWord},
    {u"paperw", documentWord},
    {u"par", endsParagraph, Word::par},
    {u"pard", beginsText, Word::pard},
    {u"password", documentGroup},
    {u"passwordhash", documentGroup},
    {u"pc", documentWord},
    {u"pca", documentWord},
    {u"pgbrdrb", none, Word::pgbrdrb},
    {u"pgbrdrfoot", none, Word::pgbrdrfoot},
    {u"pgbrdrhead", none, Word::pgbrdrhead},
    {u"pgbrdrl", none, Word::pgbrdrl},
    {u"pgbrdropt", none, Word::pgbrdropt},
    {u"pgbrdrr", none, Word::pgbrdrr},
    {u"pgbrdrsnap", none, Word::pgbrdrsnap},
    {u"pgbrdrt", none, Word::pgbrdrt},
    {u"pghsxn", section | sectionPage},
    {u"pgnrestart", sectionStart},
    {u"pgnstart", documentWord},
    {u"pgnstarts", sectionStart},
    {u"pgptbl", documentGroup},
    {u"pgwsxn", section | sectionPage},
    {u"pict", shownGroup},
    {u"plain", beginsText, Word::plain},
    {u"pncf", colour},
    {u"pnf", moreFont},
    {u"pntext", hiddenGroup | numberGroup},
    {u"prcolbl", documentWord},
    {u"printdata", documentWord},
    {u"private", documentWord},
    {u"protlevel", documentWord},
    {u"protusertbl", documentGroup},
    {u"psover", documentWord},
    {u"psz", documentWord},
    {u"qc", paragraph},
    {u"qd", paragraph},
    {u"qj", paragraph},
    {u"qk", paragraph},
    {u"ql", paragraph},
    {u"qmspace", shown},
    {u"qr", paragraph},
    {u"qt", paragraph},
    {u"rdblquote", shown},
    {u"readonlyrecommended", documentWord},
    {u"readprot", documentWord},
    {u"relyonvml", documentWord},
    {u"remdttm", documentWord},
    {u"rempersonalinfo", documentWord},
    {u"revbar", documentWord},
    {u"revisions", documentWord},
    {u"revprop", documentWord},
    {u"revprot", documentWord},
    {u"revtbl", documentGroup},
    {u"ri", paragraph},
    {u"rin", paragraph},
    {u"row", shownCell | endsParagraph, Word::row},
    {u"rquote", shown},
    {u"rsidtbl", documentGroup},
    {u"rtldoc", documentWord},
    {u"rtlgutter", documentWord},
    {u"rtlpar", paragraph},
    {u"rtlrow", row},
    {u"rtlsect", section},
    {u"rxe", hiddenGroup},
    {u"s", paragraph, Word::s},
    {u"sa", paragraph},
    {u"saauto", paragraph},
    {u"saveinvalidxml", documentWord},
    {u"saveprevpict", documentWord},
    {u"sb", paragraph},
    {u"sbauto", paragraph},
    {u"sect", endsParagraph, Word::sect},
    {u"sectd", beginsText | sectionStart, Word::sectd},
    {u"sectnum", shown},
    {u"sectrsid", section},
    {u"shading", paragraph},
    {u"showplaceholdtext", documentWord},
    {u"showxmlerrors", documentWord},
    {u"shp", shownGroup},
    {u"shpgrp", shownGroup},
    {u"shppict", shownGroup},
    {u"shprslt", apartGroup},
    {u"shptxt", apartGroup},
    {u"sl", paragraph},
    {u"slmult", paragraph},
    {u"snaptogridincell", documentWord},
    {u"softline", shown},
    {u"splytwnine", documentWord},
    {u"sprsbsp", documentWord},
    {u"sprslnsp", documentWord},
    {u"sprsspbf", documentWord},
    {u"sprstsm", documentWord},
    {u"sprstsp", documentWord},
    {u"stextflow", section},
    {u"stshfbi", documentWord | moreFont},
    {u"stshfdbch", documentWord | moreFont},
    {u"stshfhich", documentWord | moreFont},
    {u"stshfloch", documentWord | moreFont},
    {u"stylelock", documentWord},
    {u"stylelockbackcomp", documentWord},
    {u"stylelockenforced", documentWord},
    {u"stylelockqfset", documentWord},
    {u"stylelocktheme", documentWord},
    {u"stylesheet", hiddenGroup},
    {u"stylesortmethod", documentWord},
    {u"subfontbysize", documentWord},
    {u"swpbdr", documentWord},
    {u"tab", shown},
    {u"tb", paragraph},
    {u"tc", hiddenGroup},
    {u"tcn", hiddenGroup},
    {u"template", documentGroup},
    {u"themedata", documentGroup},
    {u"themelang", documentWord},
    {u"themelangcs", documentWord},
    {u"themelangfe", documentWord},
    {u"titlepg", section | sectionStart, Word::titlepg},
    {u"tldot", paragraph},
    {u"tleq", paragraph},
    {u"tlhyph", paragraph},
    {u"tlmdot", paragraph},
    {u"tlth", paragraph},
    {u"tlul", paragraph},
    {u"toplinepunct", documentWord},
    {u"tqc", paragraph},
    {u"tqdec", paragraph},
    {u"tqr", paragraph},
    {u"trackformatting", documentWord},
    {u"trackmoves", documentWord},
    {u"transmf", documentWord},
    {u"trcbpat", moreColour},
    {u"trcfpat", moreColour},
    {u"trkeep", row, Word::trkeep},
    {u"trowd", shownCell, Word::trowd},
    {u"truncatefontheight", documentWord},
    {u"truncex", documentWord},
    {u"ts", row, Word::ts},
    {u"tscellcbpat", moreColour},
    {u"tscellcfpat", moreColour},
    {u"twoonone", documentWord},
    {u"tx", paragraph},
    {u"u", shown, Word::u},
    {u"uc", none, Word::uc},
    {u"ulc", colour},
    {u"useltbaln", documentWord},
    {u"usenormstyforlist", documentWord},
    {u"userprops", documentGroup},
    {u"usexform", documentWord},
    {u"utinl", documentWord},
    {u"validatexml", documentWord},
    {u"vertdoc", documentWord},
    {u"vertsect", section},
    {u"viewbksp", documentWord},
    {u"viewkind", documentWord},
    {u"viewnobound", documentWord},
    {u"viewscale", documentWord},
    {u"viewzk", documentWord},
    {u"wgrffmtfilter", documentGroup},
    {u"widctlpar", paragraph},
    {u"widowctrl", documentWord},
    {u"windowcaption", documentWord},
    {u"wpjst", documentWord},
    {u"wpsp", documentWord},
    {u"wptb", documentWord},
    {u"wrapdefault", paragraph},
    {u"wraptrsp", documentWord},
    {u"writereservhash", documentGroup},
    {u"wrppunct", documentWord},
    {u"xe", hiddenGroup},
    {u"xmlnstbl", documentGroup},
    {u"yts", none, Word::yts},
};

// Traits of every word that begins so; but see traitsOfFamily.
constexpr Row families[] = {
    {u"box", generatorRest},
    {u"brdr", paragraph | borderLine | generatorRest},
    {u"brsp", generatorRest},
    {u"cl", row},
    {u"colno", generatorRest},
    {u"cols", generatorRest},
    {u"colw", generatorRest},
    {u"footery", generatorRest},
    {u"gutter", generatorRest},
    {u"headery", generatorRest},
    {u"irow", row},
    {u"linebetcol", generatorRest},
    {u"lndscpsxn", generatorRest},
    {u"marg", generatorRest},
    {u"pgbrd", generatorRest},
    {u"pgbrdr", section},
    {u"pghsxn", generatorRest},
    {u"pgn", section},
    {u"pgwsxn", generatorRest},
    {u"saftn", section},
    {u"sbk", section | sectionStart | sectionBreak},
    {u"sectd", section},
    {u"secte", section},
    {u"sectl", section},
    {u"sectspecify", section},
    {u"sectun", section},
    {u"sftn", section},
    {u"tbl", row},
    {u"tdfrm", row},
    {u"titlepg", generatorRest},
    {u"tph", row},
    {u"tpos", row},
    {u"tpv", row},
    {u"tr", row},
    {u"vertal", section},
};

constexpr bool isBefore(const Row& left, const Row& right) noexcept {
    return left.letters < right.letters;
}
static_assert(std::is_sorted(std::begin(table), std::end(table), isBefore));

// Where the families of each first letter begin; those of the next letter end them.
constexpr auto familiesFrom = [] {
    std::array<std::uint8_t, u'z' + 2> begins{};
    for (const Row& family : families) ++begins[family.letters[0] + 1u];
    for (std::size_t i = 1; i < begins.size(); ++i) begins[i] = static_cast<std::uint8_t>(begins[i] + begins[i - 1]);
    return begins;
}();
static_assert(std::is_sorted(std::begin(families), std::end(families), isBefore));

constexpr Traits traitsOfFamily(std::u16string_view letters) noexcept {
    Traits traits = none;
    for (std::size_t i = familiesFrom[letters[0]]; i < familiesFrom[letters[0] + 1u]; ++i) {
        if (letters.starts_with(families[i].letters)) traits |= families[i].traits;
    }
    return letters == u"pgnstart" ? none : traits;
}

// The rows by hash, each in the first free slot from its own one on, with the traits of their families.
class Index {
public:
    constexpr Index() {
        for (const Row& known : table) {
            std::size_t slot = slotOf(known.letters);
            while (!slots_[slot].letters.empty()) slot = (slot + 1) % slots;
            slots_[slot] = known;
            slots_[slot].traits |= traitsOfFamily(known.letters);
        }
    }

    // Null for a word without a row.
    const Row* find(std::u16string_view letters) const noexcept {
        std::size_t slot = slotOf(letters);
        while (!slots_[slot].letters.empty() && slots_[slot].letters != letters) slot = (slot + 1) % slots;
        return slots_[slot].letters.empty() ? nullptr : &slots_[slot];
    }

private:
    static constexpr std::size_t slots = 2048;
    static_assert(std::size(table) < slots / 2);

    static constexpr std::size_t slotOf(std::u16string_view letters) noexcept {
        const std::size_t size = letters.size();
        return (letters[0] + letters[size / 2] * 31u + letters[size - 1] * 247u + size * 61u) % slots;
    }

    std::array<Row, slots> slots_{};
};

constexpr Index knownWords;

}  // namespace

WordMeaning meaningOf(std::u16string_view letters) noexcept {
    if (letters.empty()) return {};
    const Row* const known = knownWords.find(letters);
    return known == nullptr ? WordMeaning{Word::other, traitsOfFamily(letters)}
                            : WordMeaning{known->word, known->traits};
}

WordSet::WordSet(std::initializer_list<WordTrait> traits, std::initializer_list<Word> words) {
    for (const WordTrait trait : traits) traits_ |= bit(trait);
    for (const Word word : words) words_ |= std::uint64_t{1} << static_cast<unsigned>(word);
    for (const Row& known : table) {
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
