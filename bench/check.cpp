// Checks templates. The peer evaluates the same template.

#include <string>

#include "DistinctTags.h"
#include "Ratio.h"
#include "check/TemplateCheck.h"
#include "core/kvTag.h"
#include "platform/MemoryServices.h"
#include "text/privStrCat.h"

namespace velmor::bench {
namespace {

std::u16string flatTemplate(std::int64_t tags, bool isRtf) {
    std::u16string text = isRtf ? u"{\\rtf1\\ansi " : u"";
    for (std::size_t i = 0; i < static_cast<std::size_t>(tags); ++i) {
        text.append(isRtf ? paragraph : u"a line of text\r\n").append(distinctTag(i));
    }
    return isRtf ? text + u"}" : text;
}

void checked(benchmark::State& state, bool isRtf) {
    platform::MemoryServices services;
    const std::u16string text = flatTemplate(state.range(0), isRtf);
    for (auto _ : state) benchmark::DoNotOptimize(TemplateCheck(services, nullptr).run(u"template", text));
    state.SetComplexityN(state.range(0));
}

void evaluated(benchmark::State& state, bool isRtf) {
    platform::MemoryServices services;
    const std::u16string text = flatTemplate(state.range(0), isRtf);
    for (auto _ : state) {
        const auto tag = std::make_shared<kvTag>(services);
        tag->Value(text);
        benchmark::DoNotOptimize(tag->resultBuilder());
    }
    state.SetComplexityN(state.range(0));
}

void addBesideEvaluation(const std::string& name, bool isRtf) {
    benchmark::RegisterBenchmark((name + "/ours").c_str(), checked, isRtf)
        ->Unit(benchmark::kMillisecond)
        ->Arg(10000)
        ->Arg(100000);
    benchmark::RegisterBenchmark((name + "/peer").c_str(), evaluated, isRtf)
        ->Unit(benchmark::kMillisecond)
        ->Arg(10000)
        ->Arg(100000);
}

}  // namespace
}  // namespace velmor::bench

int main(int argc, char** argv) {
    using namespace velmor::bench;
    keepMemory();
    addBesideEvaluation("text", false);
    addBesideEvaluation("rtf", true);
    return runWithRatios(argc, argv);
}
