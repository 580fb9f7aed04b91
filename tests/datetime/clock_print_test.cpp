// The short road for the clock tail of date texts must print exactly what
// the general time printer prints.

#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include "datetime/time_text.h"
#include "support.h"

using namespace vl::datetime;

namespace {

std::string general(double v) {
    char out[64];
    *print_time(v, kTimeHoursMinutesSeconds, out) = '\0';
    return out;
}

std::string shortcut(double v) {
    char out[64];
    *print_clock(v, out) = '\0';
    return out;
}

TEST(ClockTail, ShortRoadPrintsAsTheGeneralPrinter) {
    std::mt19937_64 rng(20261119);
    std::uniform_real_distribution<double> day(240.0, 5373484.0), frac(0.0, 1.0);
    int checked = 0;
    auto check = [&](double v) {
        ASSERT_EQ(shortcut(v), general(v)) << "value " << std::hexfloat << v;
        ++checked;
    };
    // Random instants, and instants on every carry: each second, each
    // half hundredth around 59.5 s, and their neighbouring doubles.
    for (int i = 0; i < 200000; ++i) check(day(rng));
    for (double d : {240.0, 2415018.0, 2460374.0, 5373483.0}) {
        for (int s = 0; s < 86400; s += 7) {
            const double v = d + s / 86400.0;
            check(v);
            check(std::nextafter(v, 0.0));
            check(std::nextafter(v, 1e300));
        }
        for (int m = 0; m < 1440; m += 13) {
            const double v = d + (m * 60 + 59.995) / 86400.0;
            check(v);
            check(std::nextafter(v, 0.0));
            check(std::nextafter(v, 1e300));
        }
        check(d + frac(rng));
    }
    EXPECT_GT(checked, 200000);
}

}  // namespace
