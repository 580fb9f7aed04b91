// Dates to text: the format table, the flag words, the questions, and the
// regional pictures.

#include <cstring>
#include <string>

#include "civil.h"
#include "regional_settings.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::Intl;
using vltest::Poisoned;

constexpr double kDaysPerSecond = 1.1574074074074073e-5;
// Tuesday 5 March 2024 13:05:09.
const double kSample = 2460374.0 + 47109 * kDaysPerSecond;

struct Printed {
    std::string text;
    uint16_t result;
    bool clean_behind;  // nothing written behind the terminator
};

Printed print(double value, uint32_t format) {
    Poisoned out(80);
    const uint16_t rc = KELUTIL_date2str(value, format, out.data());
    const std::string text = out.text();
    return {text, rc, out.clean_from(text.size() + 1)};
}

struct Row {
    const char* name;
    uint32_t format;
    const char* text;
};

void check_rows(double value, std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const Printed p = print(value, row.format);
        EXPECT_EQ(p.text, row.text) << "format " << row.format;
        EXPECT_EQ(p.result, 0);
        EXPECT_TRUE(p.clean_behind);
    }
}

class DateText : public vltest::RegionalSettings {};

TEST_F(DateText, FormatTableUnderTheDefaultSettings) {
    check_rows(kSample, {
                            {"0 short picture", 0, "03/05/24"},
                            {"1 long picture", 1, "Tue March 5, 2024"},
                            {"2 month and day", 2, "Mar 5"},
                            {"3 numbers", 3, "3/5"},
                            {"4 day", 4, "5"},
                            {"5 weekday", 5, "Tue"},
                            {"6 weekday letter", 6, "T"},
                            {"7 year", 7, "2024"},
                            {"8 short year", 8, "24"},
                            {"9 with minutes", 9, "03/05/24 13:05"},
                            {"10 with seconds", 10, "03/05/24 13:05:09"},
                            {"11 compact", 11, "240305"},
                            {"12 compact with minutes", 12, "240305 13:05"},
                            {"13 compact with seconds", 13, "240305 13:05:09"},
                            {"14 digits", 14, "240305 1305"},
                            {"15 digits with seconds", 15, "240305 130509"},
                            {"16 month abbreviation", 16, "Mar"},
                            {"17 month letter", 17, "M"},
                            {"18 quarter", 18, "Q1"},
                            {"fullest word", 33292, "03/05/24 13:05:09.000"},
                            {"high bits of the word ignored", 0x10000 + 1, "Tue March 5, 2024"},
                        });
}

TEST_F(DateText, DayFirstSwapsOnlyTheTwoPartFormats) {
    apply(Intl{.iDate = "1"});
    check_rows(kSample, {
                            {"2 day first", 2, "5 Mar"},
                            {"3 day first", 3, "5/3"},
                            {"0 follows the picture, not the order", 0, "03/05/24"},
                            {"16 has no second text", 16, "Mar"},
                        });
    apply(Intl{.iDate = "2"});
    check_rows(kSample, {{"date order 2 is month first", 2, "Mar 5"}});
}

TEST_F(DateText, NoDateAtAllPrintsTwoDashes) {
    for (uint32_t format = 0; format <= 20; ++format) {
        SCOPED_TRACE("format " + std::to_string(format));
        EXPECT_EQ(print(VL_MISSING_VALUE, format).text, "--");
        EXPECT_EQ(print(VL_MISSING_VALUE, format).result, 0);
        // 1.0 lies before the calendar; 19 and 20 are the custom slots.
        EXPECT_EQ(print(1.0, format).text, "--");
        EXPECT_EQ(print(5373483.5, format).text, "--");
    }
    EXPECT_EQ(print(VL_MISSING_VALUE, 2048 + 1).text, "--") << "before the month name";
}

TEST_F(DateText, MonthAndWeekdayNumbers) {
    const struct {
        const char* name;
        double value;
        uint32_t format;
        const char* text;
    } cases[] = {
        {"13 is January", 13.0, 2048 + 1, "January"},
        {"cut to three", 13.0, 2048, "Jan"},
        {"first letter", 13.0, 2048 + 2, "J"},
        {"0 is no month", 0.0, 2048 + 1, ""},
        {"fraction cut", 12.9, 2048 + 1, "December"},
        {"May is short anyway", 5.0, 2048, "May"},
        {"Sunday", 0.0, 1024 + 1, "Sunday"},
        {"7 is Sunday again", 7.0, 1024 + 1, "Sunday"},
        {"negative is no weekday", -1.0, 1024 + 1, ""},
        {"Wednesday cut", 3.0, 1024, "Wed"},
        {"weekday letter", 6.0, 1024 + 2, "S"},
        {"month wins over weekday", 2.0, 2048 + 1024 + 1, "February"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Printed p = print(c.value, c.format);
        EXPECT_EQ(p.text, c.text);
        EXPECT_EQ(p.result, 0);
        EXPECT_TRUE(p.clean_behind);
    }
}

TEST_F(DateText, StyleWordsAndTheOverride) {
    check_rows(kSample,
               {
                   {"weekday letter word", 16384 + 66, "T"},
                   {"quarter word", 16384 + 352, "Q1"},
                   {"year word holds the override: short date", 16384 + 384, "03/05/24"},
                   {"override of the long date", 128 + 1, "03/05/24"},
                   {"override keeps compact", 128 + 11, "240305"},
                   {"override drops the time", 128 + 10, "03/05/24"},
                   {"weekday number", 16384 + 80, "3"},
                   {"part 16 full month and day", 16384 + 16, "March 5"},
                   {"single drops the day", 16384 + 256 + 32, "3"},
                   {"time behind a part", 32768 + 16384 + 48, "5 13:05"},
                   {"digits and seconds behind the long date", 32768 + 512 + 8 + 1, "Tue March 5, 2024 130509"},
                   {"part 112 prints nothing", 16384 + 112, ""},
               });
    // A layout of its own with part 0 leaves the buffer as it was.
    Poisoned out(16);
    EXPECT_EQ(KELUTIL_date2str(kSample, 16384, out.data()), 0);
    EXPECT_TRUE(out.clean_from(0));
}

TEST_F(DateText, StepsPrintWithTheirUnitOrAnswerAStyle) {
    const struct {
        const char* name;
        double days;
        const char* text;
    } texts[] = {
        {"a week", 7.0, "1week"},
        {"a day and a half", 1.5, "36hour"},
        {"a year", 365.0, "1year"},
        {"two quarters", 182.0, "2quarter"},
        {"a month", 31.0, "1month"},
        {"six hours", 0.25, "6hour"},
        {"a day and a quarter", 1.25, "30hour"},
    };
    for (const auto& c : texts) {
        SCOPED_TRACE(c.name);
        const Printed p = print(c.days, 4096);
        EXPECT_EQ(p.text, c.text);
        EXPECT_EQ(p.result, 0);
    }
    const struct {
        const char* name;
        double days;
        uint32_t format;
        uint16_t style;
    } styles[] = {
        // Two or more of the largest fitting unit go one unit up; fewer stay.
        {"three days: weeks, which have no style", 3.0, 21, 16384},
        {"eight days: a week is told by its days", 8.0, 127, 16384 + 66},
        {"two weeks: month letters", 14.0, 8192, 16384 + 274},
        {"forty days: month letters", 40.0, 8192, 16384 + 274},
        {"two months: quarters", 62.0, 8192, 16384 + 352},
        {"a quarter and more: quarters", 100.0, 8192, 16384 + 352},
        {"two quarters: years", 182.0, 8192, 16384 + 384},
        {"two years: years", 730.0, 8192, 16384 + 384},
        {"under a minute", 1.0 / 4096.0, 8192, 0},
        {"an hour and a half: hours, no style", 0.0625, 8192, 16384},
    };
    for (const auto& c : styles) {
        SCOPED_TRACE(c.name);
        Poisoned out(8);
        EXPECT_EQ(KELUTIL_date2str(c.days, c.format, out.data()), c.style);
        EXPECT_TRUE(out.clean_from(0)) << "nothing is printed";
    }
}

TEST_F(DateText, QuestionsWithoutABuffer) {
    const struct {
        const char* name;
        uint32_t word;
        uint16_t answer;
    } cases[] = {
        {"fullest format", 4096, 33292},
        {"fullest, low bits ignored", 4096 + 55, 33292},
        {"language flag, default", 24576, 0},
        {"long date prints a whole date by the long picture", 28672 + 1, 1},
        {"short date", 28672 + 0, 0},
        {"compact rows", 28672 + 11, 0},
        {"9 to 15 are whole dates", 28672 + 15, 0},
        {"parts", 28672 + 2, 1},
        {"quarter", 28672 + 18, 1},
        {"custom slots", 28672 + 19, 0},
        {"custom slot 20", 28672 + 20, 0},
        {"beyond the table", 28672 + 21, 1},
        {"other word", 2, 0},
        {"reload", 32768, 0},
        {"reload with low bits", 32768 + 7, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(KELUTIL_date2str(123.0, c.word, nullptr), c.answer);
    }
}

TEST_F(DateText, LanguageFlagComesFromTheFirstLetter) {
    const struct {
        const char* language;
        uint16_t flag;
    } cases[] = {{"HUN", 1}, {"hun", 1}, {"ENU", 0}, {"xh", 0}, {"E", 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.language);
        apply(Intl{.sLanguage = c.language});
        EXPECT_EQ(KELUTIL_date2str(0.0, 24576, nullptr), c.flag);
        EXPECT_EQ(KELUTIL_Main(nullptr, 0, 0, 4), c.flag);
    }
}

TEST_F(DateText, TwoDigitYearsOnlyWhereTheyCantBeMistaken) {
    const struct {
        int year;
        const char* text;
    } cases[] = {{2050, "03/05/2050"}, {1944, "03/05/1944"}, {1945, "03/05/45"},
                 {2044, "03/05/44"},   {100, "03/05/0100"},  {9999, "03/05/9999"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.year);
        const double v = static_cast<double>(vltest::days_from_civil(c.year, 3, 5)) + vltest::kUnixDayValue;
        EXPECT_EQ(print(v, 0).text, c.text);
        EXPECT_EQ(print(v, 8).text, std::string(c.text).substr(std::strlen(c.text) - 2)) << "format 8: year mod 100";
    }
}

TEST_F(DateText, RegionalPictures) {
    const struct {
        const char* name;
        Intl intl;
        const char* short_text;
        const char* long_text;
    } cases[] = {
        {"day first with dots",
         {.iDate = "1", .sDate = ".", .sShortDate = "dd.MM.yyyy"},
         "05.03.2024",
         "Tue March 5, 2024"},
        {"ISO order with dashes", {.sDate = "-", .sShortDate = "yyyy-MM-dd"}, "2024-03-05", "Tue March 5, 2024"},
        {"single digits", {.sShortDate = "M/d/yy"}, "3/5/24", "Tue March 5, 2024"},
        {"a picture with other separators than sDate is one field",
         {.sDate = "/", .sShortDate = "dd.MM.yy"},
         "//",
         "Tue March 5, 2024"},
        {"long picture with blanks and commas",
         {.sLongDate = "dddd, MMMM dd, yyyy"},
         "03/05/24",
         "Tuesday, March 05, 2024"},
        // Every part cut at a blank gets a blank behind it, the last of
        // three parts too.
        {"long picture day first with blanks", {.sLongDate = "d MMMM yyyy"}, "03/05/24", "5 March 2024 "},
        {"long picture with apostrophes",
         {.sLongDate = "dddd', 'd'. 'MMMM' 'yyyy"},
         "03/05/24",
         "Tuesday, 5. March 2024"},
        {"five letters: the letter, then the name", {.sLongDate = "ddddd' 'MMMMM"}, "03/05/24", "dTuesday MMarch"},
        {"neither blank nor apostrophe: the default", {.sLongDate = "dd/MM/yyyy"}, "03/05/24", "Tue March 5, 2024"},
        {"yy in a long picture", {.sLongDate = "MMM' 'yy"}, "03/05/24", "Mar 24"},
        {"month abbreviation in the short picture",
         {.sDate = "-", .sShortDate = "dd-MMM-yyyy"},
         "05-Mar-2024",
         "Tue March 5, 2024"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        apply(c.intl);
        EXPECT_EQ(print(kSample, 0).text, c.short_text);
        EXPECT_EQ(print(kSample, 1).text, c.long_text);
    }
}

// The short and long dates of every day of three centuries, under several
// settings, against texts built from an independent calendar.
TEST_F(DateText, EveryDayOfThreeCenturiesPrintsItsCalendarDate) {
    const char* const months[] = {"January", "February", "March",     "April",   "May",      "June",
                                  "July",    "August",   "September", "October", "November", "December"};
    const char* const weekdays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    auto two = [](int n) {
        char b[8];
        std::snprintf(b, sizeof b, "%02d", n);
        return std::string(b);
    };
    auto four = [](int64_t n) {
        char b[8];
        std::snprintf(b, sizeof b, "%04d", static_cast<int>(n));
        return std::string(b);
    };
    auto yy = [&](int64_t y) { return y >= 1945 && y <= 2044 ? two(static_cast<int>(y % 100)) : four(y); };
    const struct {
        const char* name;
        Intl intl;
    } settings[] = {
        {"defaults", Intl{}},
        {"day first, dots, four-digit year",
         Intl{.iDate = "1", .sDate = ".", .sShortDate = "dd.MM.yyyy", .sLongDate = "dddd', 'd'. 'MMMM' 'yyyy"}},
        {"year first, apostrophes",
         Intl{.iDate = "2", .sDate = "-", .sShortDate = "yyyy-M-d", .sLongDate = "yyyy'. 'MMMM' 'dd'., 'dddd"}},
    };
    for (int s = 0; s < 3; ++s) {
        SCOPED_TRACE(settings[s].name);
        apply(settings[s].intl);
        int failures = 0;
        for (int64_t z = vltest::days_from_civil(1900, 1, 1);
             z <= vltest::days_from_civil(2199, 12, 31) && failures < 5; ++z) {
            const vltest::Civil c = vltest::civil_from_days(z);
            const std::string month = months[c.month - 1], weekday = weekdays[vltest::weekday_from_days(z)];
            std::string want_short, want_long;
            switch (s) {
                case 0:
                    want_short = two(c.month) + "/" + two(c.day) + "/" + yy(c.year);
                    want_long = weekday.substr(0, 3) + " " + month + " " + std::to_string(c.day) + ", " + four(c.year);
                    break;
                case 1:
                    want_short = two(c.day) + "." + two(c.month) + "." + four(c.year);
                    want_long = weekday + ", " + std::to_string(c.day) + ". " + month + " " + four(c.year);
                    break;
                default:
                    want_short = four(c.year) + "-" + std::to_string(c.month) + "-" + std::to_string(c.day);
                    want_long = four(c.year) + ". " + month + " " + two(c.day) + "., " + weekday;
                    break;
            }
            // Noon, so that no rounding can move the day.
            const double v = static_cast<double>(z) + vltest::kUnixDayValue + 0.5;
            const std::string got_short = print(v, 0).text, got_long = print(v, 1).text;
            if (got_short != want_short || got_long != want_long) {
                ADD_FAILURE() << "day " << v << ": <" << got_short << "> <" << got_long << ">, want <" << want_short
                              << "> <" << want_long << ">";
                ++failures;
            }
        }
    }
}

TEST_F(DateText, ExactlyTheTextAndItsTerminatorAreWritten) {
    // The caller gives room for the longest text; a buffer that fits the
    // text exactly is enough, and nothing behind it is touched.
    for (uint32_t format : {0u, 1u, 10u, 33292u, 18u}) {
        SCOPED_TRACE(format);
        const std::string text = print(kSample, format).text;
        Poisoned out(text.size() + 1 + 4);
        KELUTIL_date2str(kSample, format, out.data());
        EXPECT_EQ(out.text(), text);
        EXPECT_EQ(out.untouched_from(0), text.size() + 1);
        EXPECT_TRUE(out.clean_from(text.size() + 1));
    }
}

}  // namespace
