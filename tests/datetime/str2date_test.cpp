// Text to dates: the reading by the regional pictures, the formats, the one
// retry, the flag words, and a round trip through the printer.

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "pinned_today.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::day_value;
using vltest::hours;
using vltest::Intl;

constexpr double kMissing = VL_MISSING_VALUE;

using Row = std::vector<std::string>;

double read(const std::string& text, uint32_t flags = 0, uint32_t format = 0) {
    std::vector<char> buffer = vltest::writable(text);
    return KELUTIL_str2date(buffer.data(), flags, format);
}

class ReadDate : public vltest::PinnedToday {};

TEST_F(ReadDate, ReadsAsTheTableSays) {
    vltest::for_rows("datetime/str2date_reads.tsv", 5, [](const Row& row) {
        pin(vltest::moment(row[3]));
        vltest::expect_moment(read(row[0], vltest::word(row[1]), vltest::word(row[2])), row[4]);
    });
}

TEST_F(ReadDate, TheCallersTextIsOnlyRead) {
    std::vector<char> text = vltest::writable("mar/5/2024 1:05 pm");
    const std::vector<char> before = text;
    EXPECT_NEAR(KELUTIL_str2date(text.data(), 0, 0), day_value(2024, 3, 5) + hours(13, 5), 1e-7);
    EXPECT_EQ(text, before);
    EXPECT_EQ(KELUTIL_str2date_ex(text.data(), 0, 0), KELUTIL_str2date(text.data(), 0, 0));
}

TEST_F(ReadDate, DayFirstPictureReadsDayFirst) {
    apply(Intl{.iDate = "1", .sShortDate = "dd/MM/yyyy"});
    EXPECT_EQ(read("3/5/99"), day_value(1999, 5, 3));
    EXPECT_EQ(read("13/5/99"), day_value(1999, 5, 13));
    EXPECT_EQ(vltest::bits(read("5/13/99")), vltest::bits(kMissing));
}

// What the printer writes, the reader reads back, wherever the format
// keeps the whole date.
TEST_F(ReadDate, PrintedDatesReadBack) {
    for (const Intl& intl :
         {Intl{}, Intl{.iDate = "1", .sDate = ".", .sShortDate = "dd.MM.yyyy", .sLongDate = "dddd d MMMM yyyy"}}) {
        SCOPED_TRACE(intl.sShortDate ? intl.sShortDate : "month first");
        apply(intl);
        int failures = 0;
        for (int64_t z = vltest::days_from_civil(1900, 1, 1);
             z <= vltest::days_from_civil(2199, 12, 31) && failures < 5; z += 11) {
            const double value = static_cast<double>(z) + vltest::kUnixDayValue;
            const int64_t year = vltest::civil_from_days(z).year;
            for (uint32_t format : {0, 1, 9, 10, 11, 12, 13, 14, 15}) {
                // The compact forms keep two digits of the year.
                if (format >= 11 && (year < 1945 || year > 2044)) continue;
                char out[64];
                KELUTIL_date2str(value, format, out);
                const double back = read(out, 0, format);
                if (back != value) {
                    ADD_FAILURE() << "format " << format << " printed \"" << out << "\" for " << value << ", read "
                                  << back;
                    ++failures;
                }
            }
        }
    }
}

// Texts that end where a timestamp's digits or separators would follow, in
// buffers of exactly their own size: the reader must stop at the end.
// Under the sanitizers a read past the end fails the test.
TEST_F(ReadDate, ShortTextsAreReadNoFurtherThanTheirEnd) {
    for (const char* text : {"2", "22", "202", "2024", "2024-", "2024-03-0", "2024-03-05 1", "2024-03-05 13:0",
                             "2024-03-05 13:05:", "2024-03-05 13:05:0"}) {
        SCOPED_TRACE(text);
        const std::size_t n = std::strlen(text) + 1;
        auto exact = std::make_unique<char[]>(n);
        std::memcpy(exact.get(), text, n);
        const double got = KELUTIL_str2date(exact.get(), 0, 0);
        EXPECT_TRUE(got == kMissing || got > 0.0);
        EXPECT_STREQ(exact.get(), text);
    }
}

}  // namespace
