// Letters: one template for many sets of properties, by the library's interface. The peers are ctemplate, and the same
// template that is not compiled before.

#include <ctemplate/template.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "Ratio.h"
#include "velmor/velmor.h"

namespace velmor::bench {
namespace {

constexpr std::array<const char*, 8> fieldNames = {"Title", "Name", "Street", "City",
                                                   "Order", "Date", "Amount", "Clerk"};

// A field as a tag of either library.
std::string field(std::size_t index, bool isOurs) {
    const std::string name = fieldNames[index];
    return isOurs ? "<KV:TAG>PROPERTY:" + name + "=:</KV>" : "{{" + name + "}}";
}

std::string smallLetter(bool isOurs) {
    const auto at = [&](std::size_t index) { return field(index, isOurs); };
    return at(0) + " " + at(1) + "\n" + at(2) + "\n" + at(3) + "\n\nDear " + at(0) + " " + at(1) +
           ",\n\nthank you for your order " + at(4) + " of " + at(5) + ". Please pay " + at(6) +
           " within thirty days.\n\nYours sincerely\n" + at(7) + "\n";
}

std::string value(std::size_t index, std::size_t letter) {
    return std::string(fieldNames[index]) + " no " + std::to_string(letter);
}

std::string byVelmor(const Engine& engine, const Template& compiled, std::size_t letter) {
    Properties properties;
    for (std::size_t i = 0; i < fieldNames.size(); ++i) properties.setText(fieldNames[i], value(i, letter));
    return utf8(engine.evaluate(compiled, properties).text);
}

std::string byCtemplate(ctemplate::Template& compiled, std::size_t letter) {
    ctemplate::TemplateDictionary values("letter");
    for (std::size_t i = 0; i < fieldNames.size(); ++i) values.SetValue(fieldNames[i], value(i, letter));
    std::string text;
    compiled.Expand(&text, &values);
    return text;
}

void smallOurs(benchmark::State& state) {
    const Engine engine = Engine::make().value();
    const Template compiled = engine.compile(smallLetter(true));
    std::size_t letter = 0;
    for (auto _ : state) benchmark::DoNotOptimize(byVelmor(engine, compiled, ++letter).data());
}

void smallPeer(benchmark::State& state) {
    ctemplate::Template* const compiled =
        ctemplate::Template::StringToTemplate(smallLetter(false), ctemplate::DO_NOT_STRIP);
    std::size_t letter = 0;
    for (auto _ : state) benchmark::DoNotOptimize(byCtemplate(*compiled, ++letter).data());
    delete compiled;
}

// An RTF letter of so many tags, with a paragraph of text at each.
std::u16string longLetter(std::size_t tags) {
    std::u16string text = u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}";
    for (std::size_t i = 0; i < tags; ++i) {
        text +=
            u"\\pard\\plain\\sa160\\sl288\\slmult1\\f0\\fs21 The instruments left our workshop on the day, and "
            u"<KV:TAG>PROPERTY:" +
            utf16(fieldNames[i % fieldNames.size()]) + u"=nobody:</KV> has signed for them.\\par\n";
    }
    return text + u"}";
}

Properties longValues() {
    Properties properties;
    for (std::size_t i = 0; i < fieldNames.size(); ++i) properties.setText(fieldNames[i], value(i, 1));
    return properties;
}

void compiledOurs(benchmark::State& state) {
    const Engine engine = Engine::make().value();
    const Template compiled = engine.compile(longLetter(static_cast<std::size_t>(state.range(0))));
    Properties properties = longValues();
    for (auto _ : state) benchmark::DoNotOptimize(engine.evaluate(compiled, properties).text.data());
}

void compiledPeer(benchmark::State& state) {
    const Engine engine = Engine::make().value();
    const std::u16string text = longLetter(static_cast<std::size_t>(state.range(0)));
    Properties properties = longValues();
    for (auto _ : state) benchmark::DoNotOptimize(engine.evaluate(text, properties).text.data());
}

void requireSameLetters() {
    const Engine engine = Engine::make().value();
    ctemplate::Template* const theirs =
        ctemplate::Template::StringToTemplate(smallLetter(false), ctemplate::DO_NOT_STRIP);
    if (byVelmor(engine, engine.compile(smallLetter(true)), 7) != byCtemplate(*theirs, 7)) {
        std::fputs("the letters differ\n", stderr);
        std::exit(1);
    }
    delete theirs;
}

// What tools/compare_letters compares `velmor render` with: ctemplate on the lines of a file of plain values that are
// separated by commas, their names in the first line.
int expandFile(const char* templateFile, const char* dataFile, const char* outputFile) {
    ctemplate::Template* const compiled = ctemplate::Template::GetTemplate(templateFile, ctemplate::DO_NOT_STRIP);
    std::ifstream data(dataFile);
    std::ofstream output(outputFile);
    std::vector<std::string> names;
    std::string line, text;
    while (compiled != nullptr && std::getline(data, line)) {
        std::vector<std::string> values;
        std::istringstream fields(line);
        for (std::string each; std::getline(fields, each, ',');) values.push_back(each);
        if (names.empty()) {
            names = values;
            continue;
        }
        ctemplate::TemplateDictionary dictionary("letter");
        for (std::size_t i = 0; i < values.size(); ++i) dictionary.SetValue(names.at(i), values[i]);
        text.clear();
        compiled->Expand(&text, &dictionary);
        output << text;
    }
    return compiled != nullptr && output.flush() ? 0 : 1;
}

}  // namespace
}  // namespace velmor::bench

int main(int argc, char** argv) {
    using namespace velmor::bench;
    if (argc == 5 && std::string(argv[1]) == "--ctemplate") return expandFile(argv[2], argv[3], argv[4]);
    requireSameLetters();
    benchmark::RegisterBenchmark("small letter of ctemplate/ours", smallOurs);
    benchmark::RegisterBenchmark("small letter of ctemplate/peer", smallPeer);
    benchmark::RegisterBenchmark("compiled to first evaluation/ours", compiledOurs)->Arg(10)->Arg(100)->Arg(1000);
    benchmark::RegisterBenchmark("compiled to first evaluation/peer", compiledPeer)->Arg(10)->Arg(100)->Arg(1000);
    return runWithRatios(argc, argv);
}
