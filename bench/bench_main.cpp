// Benchmark driver: runs the benchmarks and then prints, for each pair
// registered with vlbench::compare, the ratio of the library's time to the
// time of the reference on the same inputs in the same run.

#include "bench_main.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace vlbench {
namespace {

struct Pair {
    std::string ours, reference;
    double target;
};

std::vector<Pair>& pairs() {
    static std::vector<Pair> p;
    return p;
}

class RatioReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const auto& r : runs)
            if (!r.error_occurred && r.run_type == Run::RT_Iteration)
                times_[r.benchmark_name()] = r.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }
    // Prints the ratios; answers false when a ratio misses its target.
    bool print_ratios() const {
        bool all_met = true;
        std::printf("\n%-44s %-30s %8s %8s\n", "library", "reference", "ratio", "target");
        for (const auto& p : pairs()) {
            const auto a = times_.find(p.ours), b = times_.find(p.reference);
            if (a == times_.end() || b == times_.end() || b->second <= 0) continue;
            const double ratio = a->second / b->second;
            if (p.target <= 0) {
                std::printf("%-44s %-30s %8.3f %8s\n", p.ours.c_str(), p.reference.c_str(), ratio, "-");
                continue;
            }
            const bool met = ratio <= p.target;
            all_met = all_met && met;
            std::printf("%-44s %-30s %8.3f %6s%.2f %s\n", p.ours.c_str(), p.reference.c_str(), ratio, "<=", p.target,
                        met ? "met" : "MISSED");
        }
        return all_met;
    }

  private:
    std::map<std::string, double> times_;
};

}  // namespace

void compare(const char* ours, const char* reference, double target) { pairs().push_back({ours, reference, target}); }

}  // namespace vlbench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    vlbench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print_ratios();
    benchmark::Shutdown();
    return 0;
}
