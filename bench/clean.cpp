// Cleans with merging. The peer is a loop that reads the same RTF word by word and copies it.

#include <string>

#include "Ratio.h"
#include "platform/MemoryServices.h"
#include "rtf/clean/CleanRTF.h"
#include "rtf/read/RtfReader.h"

namespace {

using velmor::CleanOptions;

std::u16string number(std::size_t value) {
    const std::string digits = std::to_string(value);
    return {digits.begin(), digits.end()};
}

// ---- Documents as word processors write them, with 12 fonts and 10 colours each

constexpr std::size_t fontCount = 12;
constexpr std::size_t colourCount = 10;

std::u16string header(std::size_t seed) {
    std::u16string text = u"{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl";
    for (std::size_t i = 0; i < fontCount; ++i) {
        text.append(u"{\\f" + number(i) + u"\\fswiss\\fcharset0\\fprq2{\\*\\panose 020b0604020202020204} Font ");
        text.append(number((seed * 5 + i * 7) % 40) + u";}");
    }
    text.append(u"}{\\colortbl;");
    for (std::size_t i = 0; i < colourCount; ++i) {
        text.append(u"\\red" + number((seed * 3 + i) % 60) + u"\\green" + number(i) + u"\\blue0;");
    }
    return text.append(u"}{\\*\\generator Korvane RTF Control;}\r\n");
}

std::u16string paragraph(std::size_t i) {
    return u"\\pard\\plain \\ql \\li0\\ri0\\widctlpar\\faauto\\f" + number(i % fontCount) + u"\\fs24\\lang1031 {\\cf" +
           number(1 + i % colourCount) +
           u" Some words of an ordinary letter, with \\b one\\b0  word in bold, and so on to the end of the "
           u"line.\\par }\r\n";
}

std::u16string row(std::size_t i) {
    std::u16string text = u"\\trowd\\trgaph108\\trleft-108";
    for (const std::u16string_view edge : {u"2844", u"5796", u"8748"}) {
        text.append(u"\\clvertalt\\clbrdrt\\brdrs\\brdrw10\\clwWidth2952\\cellx").append(edge);
    }
    return text + u"\\pard\\intbl{\\f" + number(i % fontCount) + u" first\\cell second\\cell third\\cell}\\row\r\n";
}

enum class Shape { lifted, plain };

// A host with one embedded document for every hundred kilobytes, or with none.
std::u16string document(std::size_t length, Shape shape) {
    std::u16string text = header(0);
    text.reserve(length + 4096);
    std::size_t i = 0;
    while (text.size() < length) {
        const std::size_t end = std::min(length, text.size() + 100000);
        if (shape == Shape::lifted) text.append(header(i));
        for (; text.size() < end; ++i) text.append(i % 8 == 0 ? row(i) : paragraph(i));
        if (shape == Shape::lifted) text.append(u"}");
    }
    return text.append(u"}");
}

// ---- Ours and the floor

std::u16string tokenizeAndCopy(const std::u16string& text) {
    std::u16string copy;
    copy.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        if (text[at] == u'\\') {
            while (end < text.size() && velmor::isLetter(text[end])) ++end;
            if (end == at + 1) ++end;
            while (end < text.size() && (text[end] == u'-' || (text[end] >= u'0' && text[end] <= u'9'))) ++end;
            if (end < text.size() && text[end] == u' ') ++end;
        } else if (text[at] != u'{' && text[at] != u'}') {
            while (end < text.size() && text[end] != u'\\' && text[end] != u'{' && text[end] != u'}') ++end;
        }
        end = std::min(end, text.size());
        copy.append(text, at, end - at);
        at = end;
    }
    return copy;
}

enum class Work { copying, cleaning, tolerantCleaning };

void measure(benchmark::State& state, Shape shape, Work work) {
    const std::u16string text = document(static_cast<std::size_t>(state.range(0)), shape);
    velmor::platform::MemoryServices machine;
    CleanOptions options;
    options.tolerant = work == Work::tolerantCleaning;
    for (auto _ : state) {
        state.PauseTiming();
        std::u16string value = text;
        state.ResumeTiming();
        if (work != Work::copying) {
            velmor::Module1::CleanRTFText(value, options, machine);
            benchmark::DoNotOptimize(value.data());
        } else {
            const std::u16string copy = tokenizeAndCopy(value);
            benchmark::DoNotOptimize(copy.data());
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    state.SetComplexityN(static_cast<std::int64_t>(text.size()));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const int size : {1'000'000, 10'000'000, 100'000'000}) benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->MinTime(0.2);
}

BENCHMARK_CAPTURE(measure, lifted, Shape::lifted, Work::cleaning)->Name("merging/ours")->Apply(sizes);
BENCHMARK_CAPTURE(measure, lifted, Shape::lifted, Work::copying)->Name("merging/peer")->Apply(sizes);
BENCHMARK_CAPTURE(measure, lifted, Shape::lifted, Work::tolerantCleaning)->Name("tolerant/ours")->Apply(sizes);
BENCHMARK_CAPTURE(measure, lifted, Shape::lifted, Work::copying)->Name("tolerant/peer")->Apply(sizes);
BENCHMARK_CAPTURE(measure, plain, Shape::plain, Work::cleaning)->Name("one_document/ours")->Apply(sizes);
BENCHMARK_CAPTURE(measure, plain, Shape::plain, Work::copying)->Name("one_document/peer")->Apply(sizes);

}  // namespace

int main(int argc, char** argv) {
    return velmor::bench::runWithRatios(argc, argv);
}
