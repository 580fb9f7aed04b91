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

class PinnedToday : public RegionalSettings {
  protected:
    void SetUp() override {
        pin(today_);
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
    static void pin(double day) {
        set_env("VLCORE_NOW", std::to_string(static_cast<int64_t>(day - kUnixDayValue) * 86400).c_str());
    }
    const double today_ = day_value(2026, 11, 19);
};

}  // namespace vltest
