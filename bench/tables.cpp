// Marking tables beside a loop that reads the same RTF word by word and copies it.

#include <string>

#include "Ratio.h"
#include "rtf/RtfScanner.h"
#include "rtf/TableMarkers.h"

namespace {

class CountedGuids : public velmor::platform::Guids {
public:
    std::u16string next() override {
        std::u16string identity = u"{00000000-0000-0000-0000-000000000000}";
        for (std::size_t i = 36, n = ++count_; n > 0; n /= 10) identity[i--] = static_cast<char16_t>(u'0' + n % 10);
        return identity;
    }

private:
    std::size_t count_ = 0;
};

// ---- Texts as word processors write them: the definition before the cells, and once more behind them.

std::u16string definition(std::u16string_view place) {
    std::u16string text(u"\\trowd ");
    text.append(place).append(u"\\ts11\\trgaph108\\trleft-108\\trbrdrt\\brdrs\\brdrw10 \\trbrdrl\\brdrs\\brdrw10 ");
    text.append(u"\\trftsWidth1\\trpaddl108\\trpaddr108\\trpaddfl3\\trpaddfr3");
    for (const std::u16string_view edge : {u"2844", u"5796", u"8748"}) {
        text.append(u"\\clvertalt\\clbrdrt\\brdrs\\brdrw10 \\clbrdrb\\brdrs\\brdrw10 \\cltxlrtb\\clftsWidth3");
        text.append(u"\\clwWidth2952\\clshdrawnil \\cellx").append(edge);
    }
    return text;
}

constexpr std::u16string_view paragraph =
    u"\\pard\\plain \\ql \\li0\\ri0\\widctlpar\\faauto\\rin0\\lin0\\itap0 \\fs24\\lang1031\\cgrid {\\insrsid1 Some "
    u"words of "
    u"an ordinary letter, with \\b one\\b0  word in bold, and so on to the end of the line.\\par }";

std::u16string row(std::u16string_view place) {
    std::u16string text = definition(place);
    text.append(
        u"\\pard \\ql \\li0\\ri0\\widctlpar\\intbl\\faauto\\rin0\\lin0 {\\insrsid2 first\\cell second\\cell third");
    text.append(u"\\cell }\\pard \\ql \\li0\\ri0\\widctlpar\\intbl\\faauto\\rin0\\lin0 {\\insrsid2 ");
    return text.append(definition(place)).append(u"\\row }");
}

enum class Shape { tables, rows, noTables };

std::u16string document(std::size_t length, Shape shape) {
    std::u16string piece(paragraph);
    if (shape == Shape::tables) {
        piece.append(row(u"\\irow0\\irowband0")).append(row(u"\\irow1\\irowband1")).append(row(u"\\irow2\\lastrow"));
    }
    if (shape == Shape::rows) piece = row(u"\\irow1\\irowband1");
    std::u16string text = u"{\\rtf1\\ansi";
    if (shape == Shape::rows) text.append(row(u"\\irow0\\irowband0"));
    while (text.size() < length) text.append(piece);
    if (shape == Shape::rows) text.append(row(u"\\irow9\\lastrow"));
    return text.append(u"}");
}

// ---- Floor: words with their numbers, braces and runs of text, each appended as it is found.

std::size_t tokenEnd(const std::u16string& text, std::size_t i) {
    if (text[i] == u'{' || text[i] == u'}') return i + 1;
    if (text[i] != u'\\') {
        while (i < text.size() && text[i] != u'\\' && text[i] != u'{' && text[i] != u'}') ++i;
        return i;
    }
    if (++i == text.size() || !velmor::isLetter(text[i])) return std::min(text.size(), i + 1);
    while (i < text.size() && velmor::isLetter(text[i])) ++i;
    while (i < text.size() && (text[i] == u'-' || (text[i] >= u'0' && text[i] <= u'9'))) ++i;
    return i < text.size() && text[i] == u' ' ? i + 1 : i;
}

std::u16string copied(const std::u16string& text) {
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t end = tokenEnd(text, i);
        result.append(text, i, end - i);
        i = end;
    }
    return result;
}

template <typename Work>
void run(benchmark::State& state, Shape shape, Work work) {
    const std::u16string text = document(static_cast<std::size_t>(state.range(0)), shape);
    for (auto _ : state) {
        state.PauseTiming();
        std::u16string value = text;
        state.ResumeTiming();
        work(value);
        benchmark::DoNotOptimize(value.data());
    }
    state.SetComplexityN(state.range(0));
}

void ours(std::u16string& value) {
    CountedGuids guids;
    velmor::addTableMarkers(value, guids);
}

void peer(std::u16string& value) {
    value = copied(value);
}

void registerShape(const std::string& name, Shape shape) {
    for (const bool isOurs : {true, false}) {
        benchmark::RegisterBenchmark((name + (isOurs ? "/ours" : "/peer")).c_str(),
                                     [=](benchmark::State& state) { run(state, shape, isOurs ? ours : peer); })
            ->Arg(100000)
            ->Arg(1000000)
            ->Arg(10000000)
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace

int main(int argc, char** argv) {
    registerShape("mark tables", Shape::tables);
    registerShape("mark one table of many rows", Shape::rows);
    registerShape("mark a text without tables", Shape::noTables);
    return velmor::bench::runWithRatios(argc, argv);
}
