// Sorting, matrix inverse and function-table evaluation.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "bench_main.h"
#include "vlcore.h"

namespace {

constexpr std::size_t kSortKeys = 1000000;

// Random keys with a tag each, the same for both sorts.
const std::vector<double>& sort_keys() {
    static const std::vector<double> keys = [] {
        std::mt19937_64 rng(12345);
        std::uniform_real_distribution<double> d(-1e6, 1e6);
        std::vector<double> v(kSortKeys);
        for (double& k : v) k = d(rng);
        return v;
    }();
    return keys;
}

void BM_KelMath_Sort(benchmark::State& state) {
    const auto& src = sort_keys();
    std::vector<double> keys(src.size());
    std::vector<int32_t> tags(src.size());
    for (auto _ : state) {
        state.PauseTiming();
        keys = src;
        for (std::size_t i = 0; i < tags.size(); ++i) tags[i] = static_cast<int32_t>(i);
        state.ResumeTiming();
        benchmark::DoNotOptimize(KelMath_Sort(static_cast<uint32_t>(keys.size()), tags.data(), keys.data(), 32));
    }
}
BENCHMARK(BM_KelMath_Sort)->Unit(benchmark::kMillisecond);

void BM_std_sort_pairs(benchmark::State& state) {
    const auto& src = sort_keys();
    std::vector<std::pair<double, int32_t>> pairs(src.size());
    for (auto _ : state) {
        state.PauseTiming();
        for (std::size_t i = 0; i < src.size(); ++i) pairs[i] = {src[i], static_cast<int32_t>(i)};
        state.ResumeTiming();
        std::sort(pairs.begin(), pairs.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        benchmark::DoNotOptimize(pairs.data());
    }
}
BENCHMARK(BM_std_sort_pairs)->Unit(benchmark::kMillisecond);

const vlbench::Compare kSort("BM_KelMath_Sort", "BM_std_sort_pairs", 1.3);

void BM_KelMath_Inverse128(benchmark::State& state) {
    constexpr uint32_t n = 128;
    std::mt19937 rng(1);
    std::uniform_real_distribution<double> d(-1.0, 1.0);
    std::vector<double> a(n * n);
    for (std::size_t i = 0; i < a.size(); ++i) a[i] = d(rng) + (i % (n + 1) == 0 ? 2.0 * n : 0.0);
    std::vector<double> work(a.size());
    for (auto _ : state) {
        work = a;
        benchmark::DoNotOptimize(KelMath_Inverse(n, work.data(), 0));
    }
}
BENCHMARK(BM_KelMath_Inverse128)->Unit(benchmark::kMicrosecond);

// One evaluation of a row through the command entry.
void evaluate_row(benchmark::State& state, const char* name, std::vector<double> args) {
    uint16_t row = 0;
    KelMath_function(0, VL_MATH_FIND, const_cast<char*>(name), &row, 0);
    const uint32_t code = (static_cast<uint32_t>(row) << 16) | VL_MATH_EVAL;
    double out = 0.0;
    for (auto _ : state) {
        std::vector<double> in = args;  // SIN in degrees would overwrite it
        benchmark::DoNotOptimize(KelMath_function(0, code, in.data(), &out, 0));
        benchmark::DoNotOptimize(out);
    }
}
void BM_eval_SIN(benchmark::State& state) { evaluate_row(state, "SIN", {0.7}); }
void BM_eval_TTABLE(benchmark::State& state) { evaluate_row(state, "TTABLE", {0.975, 10.0}); }
void BM_eval_INCBETA(benchmark::State& state) { evaluate_row(state, "INCBETA", {0.3, 2.5, 4.0}); }
BENCHMARK(BM_eval_SIN);
BENCHMARK(BM_eval_TTABLE);
BENCHMARK(BM_eval_INCBETA);

}  // namespace
