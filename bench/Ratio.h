#pragma once

#include <benchmark/benchmark.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace velmor::bench {

// Runs all benchmarks and prints below their table the ratio of each X/ours to X/peer with the same
// arguments, and, where X/ours ran on several sizes (SetComplexityN), the exponent of its growth. Of
// repeated runs the smallest processor time counts, since other load of the machine only adds to it.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            const std::string name = run.run_name.function_name;
            const std::size_t slash = name.rfind('/');
            if (slash == std::string::npos) continue;
            const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
            Row& row = rows_[name.substr(0, slash) + argumentsOf(run)];
            double& best = name.substr(slash + 1) == "ours" ? row.ours : row.peer;
            if (best == 0 || seconds < best) best = seconds;
            if (run.complexity_n > 0) row.size = static_cast<double>(run.complexity_n);
            row.group = name.substr(0, slash);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        std::map<std::string, std::vector<Row>> groups;
        std::printf("\n%-48s %12s\n", "ours to peer", "ratio");
        for (const auto& [name, row] : rows_) {
            if (row.ours > 0 && row.peer > 0) std::printf("%-48s %12.4f\n", name.c_str(), row.ours / row.peer);
            if (row.ours > 0 && row.size > 0) groups[row.group].push_back(row);
        }
        for (const auto& [group, sizes] : groups) {
            if (sizes.size() < 2) continue;
            std::printf("%-48s %12.3f (peer %.3f)\n", (group + ": growth exponent").c_str(),
                        exponent(sizes, &Row::ours), exponent(sizes, &Row::peer));
        }
    }

private:
    struct Row {
        std::string group;
        double ours = 0;
        double peer = 0;
        double size = 0;
    };

    static std::string argumentsOf(const Run& run) { return run.run_name.args.empty() ? "" : "/" + run.run_name.args; }

    // Least squares through the logarithms of size and time.
    static double exponent(const std::vector<Row>& rows, double Row::*time) {
        double n = 0, x = 0, y = 0, xx = 0, xy = 0;
        for (const Row& row : rows) {
            if (row.*time <= 0) continue;
            const double lx = std::log(row.size), ly = std::log(row.*time);
            n += 1, x += lx, y += ly, xx += lx * lx, xy += lx * ly;
        }
        return n < 2 ? 0 : (n * xy - x * y) / (n * xx - x * x);
    }

    std::map<std::string, Row> rows_;
};

// Keeps freed memory in the program, if the C library can, so that no run depends on the previous ones.
// Otherwise the first touch of fresh pages, which costs both sides the same, hides the difference.
inline void keepMemory() {
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
#endif
}

inline int runWithRatios(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

}  // namespace velmor::bench
