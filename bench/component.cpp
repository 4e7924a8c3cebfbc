// Evaluates distinct tags through the component like an early-bound host, from a BSTR to Result. The
// native build of the program calls the engine itself, so tools/bench can compare the two. For each
// number of tags it prints the smallest seconds of several runs of the floor and of the evaluation,
// their ratio, and at the end the exponents of growth.
//   bench_component [VELMOR3.DLL [NUMBER_OF_TAGS ...]]

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "DistinctTags.h"

#ifdef _WIN32
#include "kvVelmor3.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Windows.h"
#else
#include "core/kvTag.h"
#include "platform/MemoryServices.h"
#include "text/privStrCat.h"
#endif

namespace velmor::bench {
namespace {

#ifdef _WIN32

using platform::ComPtr;

[[noreturn]] void fail(const char* what, HRESULT code) {
    std::fprintf(stderr, "bench_component: %s fails with 0x%08lX\n", what, static_cast<unsigned long>(code));
    std::exit(1);
}

void check(const char* what, HRESULT code) {
    if (FAILED(code)) fail(what, code);
}

// Needs no registration: the class factory comes from the DLL itself.
class Evaluator {
public:
    explicit Evaluator(const char* component) {
        check("CoInitialize", CoInitialize(nullptr));
        const HMODULE module = LoadLibraryA(component ? component : "Velmor3.dll");
        if (!module) fail("LoadLibrary", HRESULT_FROM_WIN32(GetLastError()));
        using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        const auto get =
            reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
        if (!get) fail("GetProcAddress", HRESULT_FROM_WIN32(GetLastError()));
        check("DllGetClassObject", get(CLSID_kvTag, IID_IClassFactory, reinterpret_cast<void**>(factory_.put())));
    }

    // The length of the result.
    std::size_t evaluate(const std::u16string& text) {
        ComPtr<_kvTag> tag;
        check("CreateInstance", factory_->CreateInstance(nullptr, IID__kvTag, reinterpret_cast<void**>(tag.put())));
        const auto* const units = reinterpret_cast<const OLECHAR*>(text.data());
        const BSTR value = SysAllocStringLen(units, static_cast<UINT>(text.size()));
        if (!value) fail("SysAllocString", E_OUTOFMEMORY);
        check("Value", tag->put_Value(value));
        SysFreeString(value);
        BSTR result = nullptr;
        check("Result", tag->get_Result(&result));
        const std::size_t length = SysStringLen(result);
        SysFreeString(result);
        return length;
    }

private:
    ComPtr<IClassFactory> factory_;
};

#else

class Evaluator {
public:
    explicit Evaluator(const char*) {}

    std::size_t evaluate(const std::u16string& text) {
        const auto tag = std::make_shared<kvTag>(services_);
        tag->Value(text);
        return tag->resultBuilder()->contiguous().size();
    }

private:
    platform::MemoryServices services_;
};

#endif

std::u16string templateOf(std::size_t tags) {
    std::u16string text = u"{\\rtf1\\ansi ";
    for (std::size_t index = 0; index < tags; ++index) text.append(paragraph).append(distinctTag(index));
    return text + u"}";
}

// The smallest of several runs, since other load of the machine only adds to it.
template <class Work>
double seconds(Work work, std::size_t length) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(2);
    double best = 0;
    for (int run = 0; run < 3 || Clock::now() < end; ++run) {
        const Clock::time_point start = Clock::now();
        if (work() < length) {
            std::fputs("bench_component: text was lost\n", stderr);
            std::exit(1);
        }
        const double passed = std::chrono::duration<double>(Clock::now() - start).count();
        best = run == 0 ? passed : std::min(best, passed);
    }
    return best;
}

struct Row {
    double tags, floor, ours;
};

// Least squares through the logarithms of size and time.
double exponent(const std::vector<Row>& rows, double Row::*time) {
    double n = 0, x = 0, y = 0, xx = 0, xy = 0;
    for (const Row& row : rows) {
        const double lx = std::log(row.tags), ly = std::log(row.*time);
        n += 1, x += lx, y += ly, xx += lx * lx, xy += lx * ly;
    }
    return (n * xy - x * y) / (n * xx - x * x);
}

int run(const char* component, const std::vector<std::size_t>& sizes) {
    Evaluator evaluator(component);
    std::vector<Row> rows;
    std::printf("%10s %12s %12s %8s\n", "tags", "floor ms", "ours ms", "ratio");
    for (const std::size_t tags : sizes) {
        const std::u16string text = templateOf(tags);
        const std::size_t left = tags * paragraph.size();
        const double floor = seconds([&] { return floorOf(text).size(); }, left);
        const double ours = seconds([&] { return evaluator.evaluate(text); }, left);
        rows.push_back({static_cast<double>(tags), floor, ours});
        std::printf("%10zu %12.3f %12.3f %8.2f\n", tags, floor * 1000, ours * 1000, ours / floor);
    }
    if (rows.size() > 1) {
        std::printf("growth exponent %.3f (floor %.3f)\n", exponent(rows, &Row::ours), exponent(rows, &Row::floor));
    }
    return 0;
}

}  // namespace
}  // namespace velmor::bench

int main(int count, char** values) {
    std::vector<std::size_t> sizes;
    for (int index = 2; index < count; ++index) sizes.push_back(std::strtoul(values[index], nullptr, 10));
    if (sizes.empty()) sizes = {1000, 10000, 100000, 300000};
    return velmor::bench::run(count > 1 ? values[1] : nullptr, sizes);
}
