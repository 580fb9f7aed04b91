// The date and time picture operations.  The same table runs natively and
// under Windows, so the native pictures print what the system's do.

#include <string>

#include "platform/platform.h"
#include "support.h"

namespace {

using vl::platform::SystemTime;

// Tuesday 5 March 2005 13:05:09; the weekday field is left wrong on
// purpose, the operations work it out from the date.
constexpr SystemTime kSample{2005, 3, 0, 5, 13, 5, 9, 0};

struct Row {
    const char* name;
    bool date;  // date_picture, or time_picture
    SystemTime t;
    const char* picture;
    const char* text;  // null: the operation fails
};

TEST(Picture, PrintsAsTheSystemDoes) {
    const Row rows[] = {
        {"empty date", true, kSample, "", ""},
        {"empty time", false, kSample, "", ""},
        {"days", true, kSample, "d dd ddd dddd ddddd", "5 05 Sat Saturday Saturday"},
        {"months", true, kSample, "M MM MMM MMMM MMMMM", "3 03 Mar March March"},
        {"years", true, kSample, "y yy yyy yyyy yyyyy", "05 05 2005 2005 2005"},
        {"era", true, kSample, "g gg", "AD ADAD"},
        {"time letters in a date", true, kSample, "h H m s t", "h H m s t"},
        {"other capitals", true, kSample, "D Y S T", "D Y S T"},
        {"times", false, kSample, "h hh H HH m mm s ss t tt", "1 01 13 13 5 05 9 09 P PM"},
        {"long runs", false, kSample, "hhh HHH mmm sss ttt", "01 13 05 09 PM"},
        {"date letters in a time", false, kSample, "d M y g", "d M y g"},
        {"midnight", false, {2005, 3, 0, 5, 0, 0, 0, 0}, "h:mm t tt H", "12:00 A AM 0"},
        {"noon", false, {2005, 3, 0, 5, 12, 0, 0, 0}, "h tt", "12 PM"},
        {"quotes", true, kSample, "'dd' d 'it''s' '' ''''", "dd 5 it's  '"},
        {"open quote", false, kSample, "hh 'mm", "01 mm"},
        {"unquoted apostrophe", false, kSample, "it's", "iPs"},
        {"leap day", true, {2004, 2, 0, 29, 0, 0, 0, 0}, "dddd d MMMM", "Sunday 29 February"},
        {"first system year", true, {1601, 1, 0, 1, 0, 0, 0, 0}, "yyyy ddd", "1601 Mon"},
        {"before 1601", true, {1600, 12, 0, 31, 0, 0, 0, 0}, "", nullptr},
        {"no 30 February", true, {2004, 2, 0, 30, 0, 0, 0, 0}, "d", nullptr},
        {"no month 13", true, {2004, 13, 0, 1, 0, 0, 0, 0}, "d", nullptr},
        {"hour 24", false, {2004, 1, 0, 1, 24, 0, 0, 0}, "", nullptr},
        {"minute 60", false, {2004, 1, 0, 1, 1, 60, 0, 0}, "mm", nullptr},
        {"a time ignores the date", false, {1500, 13, 0, 5, 1, 2, 3, 0}, "HH:mm:ss", "01:02:03"},
        {"a date ignores the time", true, {2004, 1, 0, 1, 30, 70, 0, 0}, "yyyy", "2004"},
        {"63 characters do not fit", true, kSample, "dddd dddd dddd dddd dddd dddd MMMM ddd", nullptr},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        vltest::Poisoned out(61);
        const int32_t n = r.date ? vl::platform::date_picture(r.t, r.picture, {out.data(), out.size()})
                                 : vl::platform::time_picture(r.t, r.picture, {out.data(), out.size()});
        if (!r.text) {
            EXPECT_EQ(n, 0);
            continue;
        }
        EXPECT_EQ(out.text(), r.text);
        EXPECT_EQ(n, static_cast<int32_t>(std::string(r.text).size() + 1));
    }
}

TEST(Picture, EveryMonthAndWeekdayName) {
    constexpr const char* kMonths[] = {"Jan January",   "Feb February", "Mar March",    "Apr April",
                                       "May May",       "Jun June",     "Jul July",     "Aug August",
                                       "Sep September", "Oct October",  "Nov November", "Dec December"};
    for (uint16_t m = 1; m <= 12; ++m) {
        SCOPED_TRACE(m);
        char out[61];
        vl::platform::date_picture({2024, m, 0, 1, 0, 0, 0, 0}, "MMM MMMM", out);
        EXPECT_STREQ(out, kMonths[m - 1]);
    }
    // 7 to 13 January 2024 run from Sunday to Saturday.
    constexpr const char* kDays[] = {"Sun Sunday",   "Mon Monday", "Tue Tuesday", "Wed Wednesday",
                                     "Thu Thursday", "Fri Friday", "Sat Saturday"};
    for (uint16_t d = 0; d < 7; ++d) {
        SCOPED_TRACE(d);
        char out[61];
        vl::platform::date_picture({2024, 1, 0, static_cast<uint16_t>(7 + d), 0, 0, 0, 0}, "ddd dddd", out);
        EXPECT_STREQ(out, kDays[d]);
    }
}

}  // namespace
