// privStrCat; the peer is std::u16string with the same work.

#include <string>

#include "Ratio.h"
#include "text/privStrCat.h"

namespace {

using velmor::privStrCat;

constexpr std::u16string_view piece = u"{\\f1 some words\\par}";

// ---- 100,000 appends

void appendOurs(benchmark::State& state, std::u16string_view text) {
    for (auto _ : state) {
        privStrCat builder;
        for (int i = 0; i < 100000; ++i) builder.Append(text);
        benchmark::DoNotOptimize(builder.Length());
    }
}

void appendPeer(benchmark::State& state, std::u16string_view text) {
    for (auto _ : state) {
        std::u16string builder;
        for (int i = 0; i < 100000; ++i) builder.append(text);
        benchmark::DoNotOptimize(builder.size());
    }
}

std::u16string document(std::size_t length) {
    std::u16string text;
    while (text.size() < length) text.append(piece).append(u" and what follows it, \\b of course\\b0 ");
    text.resize(length);
    return text;
}

// ---- Find. Half of our searches ignore case; the peer's are exact.

constexpr std::u16string_view soughtWords[] = {u"<KV:", u"\\trowd", u"{\\fonttbl", u"{\\rtf", u"\\page", u"</KV>"};

template <typename Find>
void findAll(benchmark::State& state, Find find) {
    std::u16string text = document(static_cast<std::size_t>(state.range(0)));
    for (const std::u16string_view word : soughtWords) text += word;
    for (auto _ : state) {
        for (const std::u16string_view word : soughtWords) benchmark::DoNotOptimize(find(text, word));
    }
    state.SetComplexityN(state.range(0));
}

void findOurs(benchmark::State& state) {
    privStrCat builder;
    bool binary = false;
    findAll(state, [&](const std::u16string& text, std::u16string_view word) {
        if (builder.Length() == 0) builder.Append(text);
        binary = !binary;
        return builder.Find(word, 1, binary);
    });
}

void findPeer(benchmark::State& state) {
    findAll(state, [](const std::u16string& text, std::u16string_view word) { return text.find(word); });
}

BENCHMARK_CAPTURE(appendOurs, one, u"x")->Name("append one unit/ours");
BENCHMARK_CAPTURE(appendPeer, one, u"x")->Name("append one unit/peer");
BENCHMARK_CAPTURE(appendOurs, twenty, piece)->Name("append 19 units/ours");
BENCHMARK_CAPTURE(appendPeer, twenty, piece)->Name("append 19 units/peer");
BENCHMARK(findOurs)->Name("find/ours")->Arg(1 << 16)->Arg(1 << 21);
BENCHMARK(findPeer)->Name("find/peer")->Arg(1 << 16)->Arg(1 << 21);

}  // namespace

int main(int argc, char** argv) {
    velmor::bench::keepMemory();
    return velmor::bench::runWithRatios(argc, argv);
}
