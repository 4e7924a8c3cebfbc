// Converts nested tables. The peer is a loop that reads the same RTF word by word and copies it.

#include <string>
#include <utility>

#include "Ratio.h"
#include "TableTexts.h"
#include "rtf/tables/NestedTables.h"
#include "rtf/tables/TableMarkers.h"

namespace {

using namespace velmor::bench;

class Markers {
public:
    std::u16string around(std::u16string_view table) {
        std::u16string identity = u"{00000000-0000-0000-0000-000000000000}";
        for (std::size_t i = 36, n = ++count_; n > 0; n /= 10) identity[i--] = static_cast<char16_t>(u'0' + n % 10);
        std::u16string text(velmor::startTableMarker);
        text.append(identity).append(u"}").append(table).append(velmor::endTableMarker);
        return text.append(identity).append(u"}");
    }

private:
    std::size_t count_ = 0;
};

std::u16string tableOf(std::u16string_view firstCell) {
    std::u16string text = row(u"\\irow0\\irowband0");
    text.replace(text.find(u"second"), 6, firstCell);
    return text.append(row(u"\\irow1\\irowband1")).append(row(u"\\irow2\\lastrow"));
}

// Tables of three rows, each in a cell of the one around it, `levels` deep, or in sequence without
// nesting.
std::u16string document(std::size_t length, int levels) {
    std::u16string text = u"{\\rtf1\\ansi";
    Markers markers;
    while (text.size() < length) {
        std::u16string table = u"second";
        for (int level = 0; level < levels; ++level) table = markers.around(tableOf(table));
        text.append(paragraph).append(table);
    }
    return text.append(u"}");
}

// All tables in one cell.
std::u16string oneCell(std::size_t length) {
    Markers markers;
    std::u16string cell;
    while (cell.size() < length) cell.append(markers.around(tableOf(u"second")));
    return u"{\\rtf1\\ansi" + markers.around(tableOf(cell)) + u"}";
}

template <typename Work>
void run(benchmark::State& state, const std::u16string& text, Work work) {
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
    velmor::Module1::ConvertNestedTables(value, {});
}

void peer(std::u16string& value) {
    value = copied(value);
}

template <typename Make>
void registerShape(const std::string& name, Make make) {
    for (const bool isOurs : {true, false}) {
        benchmark::RegisterBenchmark((name + (isOurs ? "/ours" : "/peer")).c_str(),
                                     [=](benchmark::State& state) {
                                         const std::u16string text = make(static_cast<std::size_t>(state.range(0)));
                                         run(state, text, isOurs ? ours : peer);
                                     })
            ->Arg(100000)
            ->Arg(1000000)
            ->Arg(10000000)
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace

int main(int argc, char** argv) {
    velmor::bench::keepMemory();
    registerShape("tables of one level", [](std::size_t length) { return document(length, 1); });
    registerShape("tables in tables", [](std::size_t length) { return document(length, 2); });
    registerShape("tables of four levels", [](std::size_t length) { return document(length, 4); });
    registerShape("all tables in one cell", oneCell);
    return velmor::bench::runWithRatios(argc, argv);
}
