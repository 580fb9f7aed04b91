// The pinned clock: tests of date code never read the real date.

#include <cstdlib>

#include "platform/platform.h"
#include "support.h"

namespace {

void set_pin(const char* value) { vltest::set_env("VLCORE_NOW", value); }

TEST(Clock, VlcoreNowPinsTheInstant) {
    const struct {
        const char* pin;
        int64_t seconds;
        int32_t millis;
    } cases[] = {
        {"1795046400", 1795046400, 0},  // Thursday 19 November 2026, midnight UTC
        {"0", 0, 0},
        {"86400.25", 86400, 250},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pin);
        set_pin(c.pin);
        const auto t = vl::platform::now();
        EXPECT_EQ(t.seconds, c.seconds);
        EXPECT_EQ(t.millis, c.millis);
    }
    set_pin(nullptr);
    // Unpinned, the real clock is well past the pinned instants.
    EXPECT_GT(vl::platform::now().seconds, 1700000000);
}

}  // namespace
