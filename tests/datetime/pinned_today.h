// Date tests that read "today": regional settings as RegionalSettings makes
// them, and the clock pinned to Thursday 19 November 2026 00:00 in a zone
// where local time is UTC.
#pragma once

#include <cstdlib>
#include <string>

#include "civil.h"
#include "regional_settings.h"
#include "support.h"

namespace vltest {

inline double day_value(int64_t y, int m, int d) {
    return static_cast<double>(days_from_civil(y, m, d)) + kUnixDayValue;
}
inline double hours(double h, double m = 0, double s = 0) { return (h * 3600 + m * 60 + s) / 86400.0; }

class PinnedToday : public RegionalSettings {
  protected:
    void SetUp() override {
        pin(2026, 11, 19);
        set_env("TZ", "UTC0");
        DateTime_CvtDouble(nullptr, nullptr, 5);
        RegionalSettings::SetUp();
    }
    void TearDown() override {
        RegionalSettings::TearDown();
        set_env("VLCORE_NOW", nullptr);
        set_env("TZ", nullptr);
        DateTime_CvtDouble(nullptr, nullptr, 5);
    }
    // Moves today to another day, at midnight.
    static void pin(int64_t y, int m, int d) {
        set_env("VLCORE_NOW", std::to_string(days_from_civil(y, m, d) * 86400).c_str());
    }
    const double today_ = day_value(2026, 11, 19);
};

}  // namespace vltest
