// The date and time picture operations.  The same table, pictures.tsv, runs
// natively and under Windows, so the native pictures print what the
// system's do.

#include <string>

#include "data/data_support.h"
#include "platform/platform.h"
#include "support.h"

namespace {

TEST(Picture, PrintsAsTheSystemDoes) {
    for (const vltest::Case& c : vltest::cases("platform/pictures.tsv")) {
        SCOPED_TRACE(c.what);
        const auto field = [&](std::size_t i) { return static_cast<uint16_t>(c.number(i)); };
        // The weekday is left 0, wrong for most dates.
        const vl::platform::SystemTime t{field(0), field(1), 0, field(2), field(3), field(4), field(5), 0};
        vltest::Poisoned out(61);
        const int32_t n = c.kind == "date" ? vl::platform::date_picture(t, c.c_str(6), {out.data(), out.size()})
                                           : vl::platform::time_picture(t, c.c_str(6), {out.data(), out.size()});
        const auto& text = c.text(7);
        EXPECT_EQ(n, text ? static_cast<int32_t>(text->size() + 1) : 0);
        if (text) {
            EXPECT_EQ(out.text(), *text);
        }
    }
}

}  // namespace
