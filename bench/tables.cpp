// Marks tables. The peer is a loop that reads the same RTF word by word and copies it.

#include <string>

#include "Ratio.h"
#include "TableTexts.h"
#include "rtf/tables/TableMarkers.h"

namespace {

using namespace velmor::bench;

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
