// Reads and writes the text form of 100,000 mixed properties. The peer is RapidJSON on the same data.

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <memory>
#include <string>

#include "Ratio.h"
#include "platform/MemoryServices.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"

namespace {

using velmor::privProperties;

velmor::platform::MemoryServices& services() {
    static velmor::platform::MemoryServices machine;
    return machine;
}

std::shared_ptr<privProperties> mixed(std::int64_t count) {
    const auto made = std::make_shared<privProperties>(services());
    for (std::int32_t i = 0; i < count; ++i) {
        const std::u16string name = u"Property" + velmor::fromUtf8(std::to_string(i));
        switch (i % 6) {
            case 0:
                made->AddLng(name, i * 7919);
                break;
            case 1:
                made->AddDbl(name, i / 16.0);
                break;
            case 2:
                made->AddBoolean(name, i % 4 == 2);
                break;
            case 3:
                made->AddStr(name, u"12 High Street, " + name);
                break;
            case 4:
                made->AddStr(name, u"Dear \"" + name + u"\": we thank you for your letter of last week");
                break;
            default:
                made->AddStr(name, name + u" said \"yes\", and more: it was well received");
                break;
        }
    }
    return made;
}

// The same names and values as one JSON object.
std::string json(const privProperties& data) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.StartObject();
    for (std::int32_t i = 1; i <= data.Count(); ++i) {
        const auto property = data.Item(i);
        writer.Key(velmor::toUtf8(property->Name()).c_str());
        switch (property->ValueType()) {
            case 3:
                writer.Int(property->ValueLng());
                break;
            case 5:
                writer.Double(property->ValueDbl());
                break;
            case 11:
                writer.Bool(property->ValueBoolean());
                break;
            default:
                writer.String(velmor::toUtf8(property->ValueStr()).c_str());
                break;
        }
    }
    writer.EndObject();
    return buffer.GetString();
}

void readOurs(benchmark::State& state) {
    const std::u16string text = mixed(state.range(0))->Stored();
    for (auto _ : state) {
        const auto collection = std::make_shared<privProperties>(services());
        collection->Build(text);
        benchmark::DoNotOptimize(collection->Count());
    }
    state.SetComplexityN(state.range(0));
}

void readPeer(benchmark::State& state) {
    const std::string text = json(*mixed(state.range(0)));
    for (auto _ : state) {
        rapidjson::Document document;
        document.Parse(text.c_str(), text.size());
        benchmark::DoNotOptimize(document.MemberCount());
    }
    state.SetComplexityN(state.range(0));
}

void writeOurs(benchmark::State& state) {
    const auto collection = mixed(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(collection->Stored());
    state.SetComplexityN(state.range(0));
}

void writePeer(benchmark::State& state) {
    const std::string text = json(*mixed(state.range(0)));
    rapidjson::Document document;
    document.Parse(text.c_str(), text.size());
    for (auto _ : state) {
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        document.Accept(writer);
        benchmark::DoNotOptimize(buffer.GetSize());
    }
    state.SetComplexityN(state.range(0));
}

void bothOurs(benchmark::State& state) {
    const std::u16string text = mixed(state.range(0))->Stored();
    for (auto _ : state) {
        const auto collection = std::make_shared<privProperties>(services());
        collection->Build(text);
        benchmark::DoNotOptimize(collection->Stored());
    }
    state.SetComplexityN(state.range(0));
}

void bothPeer(benchmark::State& state) {
    const std::string text = json(*mixed(state.range(0)));
    for (auto _ : state) {
        rapidjson::Document document;
        document.Parse(text.c_str(), text.size());
        rapidjson::StringBuffer buffer;
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        document.Accept(writer);
        benchmark::DoNotOptimize(buffer.GetSize());
    }
    state.SetComplexityN(state.range(0));
}

void add(const char* name, void (*run)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name, run)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
    add("property text read/ours", readOurs);
    add("property text read/peer", readPeer);
    add("property text written/ours", writeOurs);
    add("property text written/peer", writePeer);
    add("property text read and written/ours", bothOurs);
    add("property text read and written/peer", bothPeer);
    return velmor::bench::runWithRatios(argc, argv);
}
