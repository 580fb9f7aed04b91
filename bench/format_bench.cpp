// Number printing against the C runtime's snprintf on the same values:
// "*" against "%g", "*6" against "%.6g", ".2" against "%.2f", and the
// digit-row converter's general form against "%g".

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

#include "bench_main.h"
#include "vlcore.h"

namespace {

// Values as worksheets hold them: measurements with a few decimals, counts,
// money, small and large scientific values, and some zeros.
std::vector<double> worksheet_values() {
    std::mt19937 rng(42);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::uniform_int_distribution<int> exp10(-9, 9), kind(0, 5), count(0, 100000);
    std::vector<double> out;
    for (int i = 0; i < 4096; ++i) {
        const double sign = unit(rng) < 0.2 ? -1.0 : 1.0;
        switch (kind(rng)) {
            case 0: out.push_back(sign * std::round(unit(rng) * 100000.0) / 1000.0); break;  // 3 decimals
            case 1: out.push_back(count(rng)); break;
            case 2: out.push_back(std::round(unit(rng) * 1e6) / 100.0); break;  // money
            case 3: out.push_back(sign * unit(rng) * std::pow(10.0, exp10(rng))); break;
            case 4: out.push_back(sign * (1.0 + unit(rng)) * std::pow(10.0, exp10(rng) * 2)); break;
            default: out.push_back(i % 3 == 0 ? 0.0 : sign * unit(rng) * 50.0); break;
        }
    }
    return out;
}

const std::vector<double>& values() {
    static const auto v = worksheet_values();
    return v;
}

void items(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(values().size()));
}

void real2str(benchmark::State& state, const char* format) {
    char buf[VL_FORMAT_ROOM];
    for (auto _ : state)
        for (const double v : values()) benchmark::DoNotOptimize(KELUTIL_real2str(v, buf, format));
    items(state);
}

void reference(benchmark::State& state, const char* format) {
    char buf[VL_FORMAT_ROOM];
    for (auto _ : state)
        for (const double v : values()) benchmark::DoNotOptimize(std::snprintf(buf, sizeof buf, format, v));
    items(state);
}

void BM_real2str_auto(benchmark::State& state) { real2str(state, "*"); }
void BM_snprintf_g(benchmark::State& state) { reference(state, "%g"); }
void BM_real2str_digits6(benchmark::State& state) { real2str(state, "*6"); }
void BM_snprintf_6g(benchmark::State& state) { reference(state, "%.6g"); }
void BM_real2str_decimals2(benchmark::State& state) { real2str(state, ".2"); }
void BM_snprintf_2f(benchmark::State& state) { reference(state, "%.2f"); }

void BM_real_str_general(benchmark::State& state) {
    char buf[VL_REAL_STR_ROOM];
    for (auto _ : state)
        for (const double v : values()) benchmark::DoNotOptimize(KELUTIL_real_str(v, VL_REAL_GENERAL, 7, 6, buf));
    items(state);
}
void BM_snprintf_g_again(benchmark::State& state) { reference(state, "%g"); }

BENCHMARK(BM_real2str_auto);
BENCHMARK(BM_snprintf_g);
BENCHMARK(BM_real2str_digits6);
BENCHMARK(BM_snprintf_6g);
BENCHMARK(BM_real2str_decimals2);
BENCHMARK(BM_snprintf_2f);
BENCHMARK(BM_real_str_general);
BENCHMARK(BM_snprintf_g_again);

const vlbench::Compare kAuto("BM_real2str_auto", "BM_snprintf_g", 0.5);
const vlbench::Compare kDigits("BM_real2str_digits6", "BM_snprintf_6g", 0.5);
const vlbench::Compare kDecimals("BM_real2str_decimals2", "BM_snprintf_2f", 0.5);
const vlbench::Compare kRealStr("BM_real_str_general", "BM_snprintf_g_again", 0.5);

}  // namespace
