// Tokens and number parsing against the C runtime on the same inputs.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench_main.h"
#include "vlcore.h"

namespace {

// Numbers as worksheets and data files hold them.
std::vector<std::string> number_texts() {
    std::mt19937 rng(42);
    std::uniform_real_distribution<double> mant(-1000.0, 1000.0);
    std::uniform_int_distribution<int> exp10(-12, 12), kind(0, 3);
    std::vector<std::string> out;
    char buf[64];
    for (int i = 0; i < 4096; ++i) {
        switch (kind(rng)) {
            case 0: std::snprintf(buf, sizeof buf, "%d", static_cast<int>(mant(rng) * 100)); break;
            case 1: std::snprintf(buf, sizeof buf, "%.3f", mant(rng)); break;
            case 2: std::snprintf(buf, sizeof buf, "%.6g", mant(rng)); break;
            default: std::snprintf(buf, sizeof buf, "%.4fe%d", mant(rng) / 1000.0, exp10(rng)); break;
        }
        out.emplace_back(buf);
    }
    return out;
}

const std::vector<std::string>& inputs() {
    static const auto v = number_texts();
    return v;
}

void BM_KELUTIL_str2real(benchmark::State& state) {
    std::vector<std::vector<char>> bufs;
    for (const auto& s : inputs()) bufs.emplace_back(s.begin(), s.end() + 1);
    for (auto _ : state)
        for (auto& b : bufs) benchmark::DoNotOptimize(KELUTIL_str2real(b.data()));
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(bufs.size()));
}
BENCHMARK(BM_KELUTIL_str2real);

void BM_strtod(benchmark::State& state) {
    for (auto _ : state)
        for (const auto& s : inputs()) benchmark::DoNotOptimize(std::strtod(s.c_str(), nullptr));
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(inputs().size()));
}
BENCHMARK(BM_strtod);

const char* const kScript =
    "x = sin(a+b)*1.5e-3; worksheet -edit ascii; plot.color(2)=\"red line\"; y=2e+3^2 / (c[1]+d[2]); "
    "type \"result is\" $(x); layer.x.from=0; layer.x.to=12.5; run.section(File.VLX,Main);";

void BM_KELUTIL_next_token(benchmark::State& state) {
    std::vector<char> token(std::strlen(kScript) + 1);
    for (auto _ : state) {
        const char* p = kScript;
        while (*p) {
            p = KELUTIL_next_token(token.data(), p);
            if (*p == ';') ++p;
            benchmark::DoNotOptimize(token.data());
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(std::strlen(kScript)));
}
BENCHMARK(BM_KELUTIL_next_token);

// The same line through strtod wherever a number starts, and strcspn for
// the words: a C runtime's way of walking it.
void BM_strtod_line_scan(benchmark::State& state) {
    for (auto _ : state) {
        const char* p = kScript;
        while (*p) {
            char* end;
            const double v = std::strtod(p, &end);
            benchmark::DoNotOptimize(v);
            if (end == p) end = const_cast<char*>(p) + std::max<std::size_t>(1, std::strcspn(p, " +-/=^;*()[]\""));
            p = end;
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(std::strlen(kScript)));
}
BENCHMARK(BM_strtod_line_scan);

const vlbench::Compare kStr2Real("BM_KELUTIL_str2real", "BM_strtod", 1.0);
const vlbench::Compare kTokens("BM_KELUTIL_next_token", "BM_strtod_line_scan", 0);

}  // namespace
