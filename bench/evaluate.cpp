// Evaluates templates. The floor is a loop over the same bytes.

#include <ctemplate/template.h>
#include <sys/resource.h>

#include <cstdio>
#include <memory>
#include <string>

#include "DistinctTags.h"
#include "Ratio.h"
#include "core/kvTag.h"
#include "core/kvTags.h"
#include "platform/MemoryServices.h"
#include "properties/privProperties.h"
#include "text/privStrCat.h"

namespace velmor::bench {
namespace {

// prefix, number, suffix
std::u16string numbered(std::u16string_view prefix, std::size_t value, std::u16string_view suffix = {}) {
    std::u16string text(prefix);
    return text.append(number(value)).append(suffix);
}

enum class Shape { distinct, noSeparator, equal, properties256, owned };

std::u16string tagText(Shape shape, std::size_t index) {
    if (shape == Shape::distinct) return distinctTag(index);
    std::u16string text = u"<KV:TAG>PROPERTY:";
    const std::u16string own = number(index);
    switch (shape) {
        case Shape::distinct:
            break;
        case Shape::noSeparator:
            text.append(u"n").append(own).append(u"=v").append(own);
            break;
        case Shape::equal:
            text.append(u"n123456=v123456:");
            break;
        case Shape::properties256:
            text.append(u"p").append(number(index % 256)).append(u"=unused:");
            break;
        case Shape::owned:
            text.append(u"n").append(own).append(u"=:");
            break;
    }
    return text.append(u"</KV>");
}

struct Workload {
    std::u16string text = u"{\\rtf1\\ansi ";
    PropertiesRef properties;
    platform::MemoryServices services;

    Workload(Shape shape, std::size_t tags) : properties(std::make_shared<privProperties>(services)) {
        for (std::size_t i = 0; i < tags; ++i) text.append(paragraph).append(tagText(shape, i));
        text += u"}";
        if (shape == Shape::properties256) {
            for (std::size_t i = 0; i < 256; ++i) properties->AddStr(numbered(u"p", i), numbered(u"value ", i));
        }
        if (shape == Shape::owned) {
            for (std::size_t i = 0; i < tags; ++i) properties->AddStr(numbered(u"n", i), numbered(u"v", i));
        }
    }
};

const Workload& workload(Shape shape, std::size_t tags) {
    static std::unique_ptr<Workload> kept;
    static Shape keptShape;
    static std::size_t keptTags = 0;
    if (!kept || keptShape != shape || keptTags != tags) {
        kept.reset();
        kept = std::make_unique<Workload>(shape, tags);
        keptShape = shape;
        keptTags = tags;
    }
    return *kept;
}

std::shared_ptr<const privStrCat> evaluate(Workload& given) {
    const auto tag = std::make_shared<kvTag>(given.services);
    tag->Properties(Collection(given.properties));
    tag->Value(given.text);
    return tag->resultBuilder();
}

void ours(benchmark::State& state, Shape shape) {
    auto& given = const_cast<Workload&>(workload(shape, static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) benchmark::DoNotOptimize(evaluate(given));
    state.SetComplexityN(state.range(0));
}

void peer(benchmark::State& state, Shape shape) {
    const Workload& given = workload(shape, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(floorOf(given.text));
    state.SetComplexityN(state.range(0));
}

std::size_t peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

void addBesideFloor(const char* name, Shape shape, std::initializer_list<std::int64_t> sizes) {
    const std::string group = name;
    auto* mine = benchmark::RegisterBenchmark((group + "/ours").c_str(), ours, shape)->Unit(benchmark::kMillisecond);
    auto* floor = benchmark::RegisterBenchmark((group + "/peer").c_str(), peer, shape)->Unit(benchmark::kMillisecond);
    for (const std::int64_t size : sizes) {
        mine->Arg(size);
        floor->Arg(size);
    }
}

// The peer evaluates as many distinct tags.
void addBesideDistinct(const char* name, Shape shape, std::int64_t size) {
    const std::string group = name;
    benchmark::RegisterBenchmark((group + "/ours").c_str(), ours, shape)->Unit(benchmark::kMillisecond)->Arg(size);
    benchmark::RegisterBenchmark((group + "/peer").c_str(), ours, Shape::distinct)
        ->Unit(benchmark::kMillisecond)
        ->Arg(size);
}

// Chains: each top-level tag reads p0, whose text holds the tag of p1, and so
// on, 16 deep. The peer evaluates as many flat tags as the chains dispatch.
void nestedOurs(benchmark::State& state) {
    const auto chains = static_cast<std::size_t>(state.range(0));
    platform::MemoryServices services;
    const auto properties = std::make_shared<privProperties>(services);
    for (std::size_t i = 0; i < 16; ++i) {
        properties->AddStr(numbered(u"p", i),
                           i == 15 ? std::u16string(u"end") : numbered(u"level <KV:TAG>PROPERTY:p", i + 1, u"=:</KV>"));
    }
    std::u16string text;
    for (std::size_t i = 0; i < chains; ++i) text += u"row <KV:TAG>PROPERTY:p0=:</KV>\r\n";
    for (auto _ : state) {
        const auto tag = std::make_shared<kvTag>(services);
        tag->Properties(Collection(properties));
        tag->Value(text);
        benchmark::DoNotOptimize(tag->resultBuilder());
    }
}

void nestedPeer(benchmark::State& state) {
    auto& given = const_cast<Workload&>(workload(Shape::distinct, static_cast<std::size_t>(state.range(0)) * 16));
    for (auto _ : state) benchmark::DoNotOptimize(evaluate(given));
}

// The same chains of ctemplate: each template includes the next one.
void nestedTemplates(benchmark::State& state) {
    constexpr int levels = 16;
    const auto name = [](int level) { return "p" + std::to_string(level); };
    for (int i = 0; i < levels; ++i) {
        ctemplate::StringToTemplateCache(name(i), i == levels - 1 ? "end" : "level {{>NEXT}}", ctemplate::DO_NOT_STRIP);
    }
    ctemplate::StringToTemplateCache("rows", "{{#ROW}}row {{>NEXT}}\r\n{{/ROW}}", ctemplate::DO_NOT_STRIP);
    ctemplate::TemplateDictionary rows("rows");
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        ctemplate::TemplateDictionary* at = rows.AddSectionDictionary("ROW");
        for (int level = 0; level < levels; ++level) {
            at = at->AddIncludeDictionary("NEXT");
            at->SetFilename(name(level));
        }
    }
    for (auto _ : state) {
        std::string result;
        ctemplate::ExpandTemplate("rows", ctemplate::DO_NOT_STRIP, &rows, &result);
        benchmark::DoNotOptimize(result.data());
    }
}

void printMemory(std::size_t tags) {
    auto& given = const_cast<Workload&>(workload(Shape::distinct, tags));
    const std::size_t before = peakMemory();
    const auto result = evaluate(given);
    const double above = static_cast<double>(peakMemory() - before);
    const double characters = 2.0 * static_cast<double>(given.text.size());
    std::printf(
        "memory above the caller's text, %zu tags of %.0f characters: %.1f MB = %.2f bytes a character, or 4 bytes "
        "a character and %.0f a tag\n",
        tags, characters / 2 / static_cast<double>(tags), above / 1e6, above / characters * 2,
        (above - 2 * characters) / static_cast<double>(tags));
}

}  // namespace
}  // namespace velmor::bench

int main(int argc, char** argv) {
    using namespace velmor::bench;
    printMemory(1000000);
    addBesideFloor("distinct", Shape::distinct, {1000, 10000, 100000, 1000000});
    addBesideDistinct("noSeparator", Shape::noSeparator, 100000);
    addBesideDistinct("equal", Shape::equal, 100000);
    addBesideDistinct("properties256", Shape::properties256, 100000);
    addBesideDistinct("owned", Shape::owned, 100000);
    benchmark::RegisterBenchmark("nested16/ours", nestedOurs)->Arg(5000)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("nested16/peer", nestedPeer)->Arg(5000)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("nested16 of ctemplate/ours", nestedOurs)->Arg(5000)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("nested16 of ctemplate/peer", nestedTemplates)
        ->Arg(5000)
        ->Unit(benchmark::kMillisecond);
    return runWithRatios(argc, argv);
}
