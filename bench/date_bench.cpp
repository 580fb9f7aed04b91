// Dates to text against the C runtime's road on the same dates: gmtime_r
// to break the number down, strftime to print it.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "bench_main.h"
#include "vlcore.h"

namespace {

// The runtime's epoch as a date value.
constexpr double kUnixDayValue = 2440587.0;

// Dates with times of day spread over 1900 to 2100, as date values and as
// the same instants in seconds since 1970.
struct Dates {
    std::vector<double> values;
    std::vector<time_t> seconds;
};

const Dates& dates() {
    static const Dates d = [] {
        Dates out;
        std::mt19937 rng(7);
        std::uniform_int_distribution<int64_t> day(-25567, 47482);  // 1900-01-01 to 2099-12-31
        std::uniform_int_distribution<int64_t> second(0, 86399);
        for (int i = 0; i < 4096; ++i) {
            const int64_t dd = day(rng), ss = second(rng);
            out.values.push_back(static_cast<double>(dd) + kUnixDayValue + static_cast<double>(ss) / 86400.0);
            out.seconds.push_back(static_cast<time_t>(dd * 86400 + ss));
        }
        return out;
    }();
    return d;
}

void BM_date2str(benchmark::State& state, uint32_t format) {
    const auto& v = dates().values;
    char out[64];
    std::size_t i = 0;
    for (auto _ : state) {
        KELUTIL_date2str(v[i++ & 4095], format, out);
        benchmark::DoNotOptimize(out);
    }
}

void BM_strftime(benchmark::State& state, const char* picture) {
    const auto& s = dates().seconds;
    char out[64];
    std::size_t i = 0;
    for (auto _ : state) {
        std::tm t{};
        gmtime_r(&s[i++ & 4095], &t);
        std::strftime(out, sizeof out, picture, &t);
        benchmark::DoNotOptimize(out);
    }
}

void BM_cvtdouble(benchmark::State& state) {
    const auto& v = dates().values;
    VL_DATE_RECORD r{};
    std::size_t i = 0;
    for (auto _ : state) {
        double x = v[i++ & 4095];
        benchmark::DoNotOptimize(DateTime_CvtDouble(&x, &r, 0));
        benchmark::DoNotOptimize(r);
    }
}

void BM_gmtime(benchmark::State& state) {
    const auto& s = dates().seconds;
    std::size_t i = 0;
    for (auto _ : state) {
        std::tm t{};
        benchmark::DoNotOptimize(gmtime_r(&s[i++ & 4095], &t));
        benchmark::DoNotOptimize(t);
    }
}

BENCHMARK_CAPTURE(BM_date2str, short_date, 0u);
BENCHMARK_CAPTURE(BM_strftime, short_date, "%m/%d/%y");
BENCHMARK_CAPTURE(BM_date2str, long_date, 1u);
BENCHMARK_CAPTURE(BM_strftime, long_date, "%a %B %e, %Y");
BENCHMARK_CAPTURE(BM_date2str, date_time, 10u);
BENCHMARK_CAPTURE(BM_strftime, date_time, "%m/%d/%y %H:%M:%S");
BENCHMARK(BM_cvtdouble);
BENCHMARK(BM_gmtime);

const vlbench::Compare kShort("BM_date2str/short_date", "BM_strftime/short_date", 0.333);
const vlbench::Compare kLong("BM_date2str/long_date", "BM_strftime/long_date", 0.333);
const vlbench::Compare kDateTime("BM_date2str/date_time", "BM_strftime/date_time", 0.333);
// The record alone against the runtime's whole road, as the target is set,
// and against gmtime_r alone for a closer look.
const vlbench::Compare kRecord("BM_cvtdouble", "BM_strftime/short_date", 0.333);
const vlbench::Compare kRecordOnly("BM_cvtdouble", "BM_gmtime", 0);

}  // namespace

// Text to dates, format 0, against strptime on the same texts: typical
// columns of data files.
namespace {

struct Column {
    std::vector<std::string> texts;
    const char* picture;  // the same texts for strptime
    // The regional short picture and date separator the column is read
    // by; null for the library's defaults.
    const char* short_picture = nullptr;
    const char* separator = nullptr;
};

// Regional settings for the length of a run: a profile file that
// VLCORE_PROFILE names, and the library's reload around it.
class RegionalPicture {
  public:
    RegionalPicture(const char* short_picture, const char* separator) : active_(short_picture != nullptr) {
        if (!active_) return;
        if (const char* was = std::getenv("VLCORE_PROFILE")) saved_ = was;
        if (std::FILE* f = std::fopen(path_.c_str(), "w")) {
            std::fprintf(f, "[intl]\nsShortDate=%s\nsDate=%s\n", short_picture, separator);
            std::fclose(f);
        }
        setenv("VLCORE_PROFILE", path_.c_str(), 1);
        KELUTIL_date2str(0.0, 32768, nullptr);
    }
    ~RegionalPicture() {
        if (!active_) return;
        if (saved_.empty())
            unsetenv("VLCORE_PROFILE");
        else
            setenv("VLCORE_PROFILE", saved_.c_str(), 1);
        KELUTIL_date2str(0.0, 32768, nullptr);
        std::remove(path_.c_str());
    }
    RegionalPicture(const RegionalPicture&) = delete;
    RegionalPicture& operator=(const RegionalPicture&) = delete;

  private:
    bool active_;
    std::string saved_;
    std::string path_ = "/tmp/vlcore_bench_regional.ini";
};

const Column& column(int which) {
    static const std::array<Column, 3> columns = [] {
        std::array<Column, 3> c = {Column{{}, "%m/%d/%y"}, Column{{}, "%Y-%m-%d %H:%M", "yyyy-MM-dd", "-"},
                                   Column{{}, "%b %d, %Y"}};
        static const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
        std::mt19937 rng(11);
        for (int i = 0; i < 4096; ++i) {
            const int y = 1950 + static_cast<int>(rng() % 90), m = 1 + static_cast<int>(rng() % 12),
                      d = 1 + static_cast<int>(rng() % 28), h = static_cast<int>(rng() % 24),
                      mi = static_cast<int>(rng() % 60);
            char t[40];
            std::snprintf(t, sizeof t, "%d/%d/%02d", m, d, y % 100);
            c[0].texts.emplace_back(t);
            std::snprintf(t, sizeof t, "%04d-%02d-%02d %02d:%02d", y, m, d, h, mi);
            c[1].texts.emplace_back(t);
            std::snprintf(t, sizeof t, "%s %d, %d", kMonths[m - 1], d, y);
            c[2].texts.emplace_back(t);
        }
        return c;
    }();
    return columns[which];
}

void BM_str2date(benchmark::State& state, int which) {
    const Column& c = column(which);
    const auto& texts = c.texts;
    // ISO texts read year first only where the regional picture says so;
    // by the default month-first picture they hold no date.
    const RegionalPicture regional(c.short_picture, c.separator);
    // The entry only reads its text, so it reads the column in place, as
    // strptime does.
    std::vector<std::string> column_texts = texts;
    if (KELUTIL_str2date(column_texts[0].data(), 0, 0) == VL_MISSING_VALUE) {
        state.SkipWithError("the column's texts read as no date");
        return;
    }
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(KELUTIL_str2date(column_texts[i++ & 4095].data(), 0, 0));
    }
}

void BM_strptime(benchmark::State& state, int which) {
    const Column& c = column(which);
    std::size_t i = 0;
    for (auto _ : state) {
        std::tm t{};
        benchmark::DoNotOptimize(strptime(c.texts[i++ & 4095].c_str(), c.picture, &t));
        benchmark::DoNotOptimize(t);
    }
}

BENCHMARK_CAPTURE(BM_str2date, numbers, 0);
BENCHMARK_CAPTURE(BM_strptime, numbers, 0);
BENCHMARK_CAPTURE(BM_str2date, iso_time, 1);
BENCHMARK_CAPTURE(BM_strptime, iso_time, 1);
BENCHMARK_CAPTURE(BM_str2date, month_name, 2);
BENCHMARK_CAPTURE(BM_strptime, month_name, 2);

const vlbench::Compare kReadNumbers("BM_str2date/numbers", "BM_strptime/numbers", 0.5);
const vlbench::Compare kReadIso("BM_str2date/iso_time", "BM_strptime/iso_time", 0.5);
const vlbench::Compare kReadName("BM_str2date/month_name", "BM_strptime/month_name", 0.5);

}  // namespace
